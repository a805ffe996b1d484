#pragma once

#include "DxfContent.h"

#include <QString>
#include <QTransform>

namespace RefHost {

class DxfGroupFile;

// Replaces INSERTs of blocks defined in the same file by the blocks' geometry, placed and
// transformed, recursively. Self-containing blocks, deep nesting and expansions that grow too
// large are reported as errors instead of running away.
class DxfBlockExpander
{
public:
    static constexpr int MaxNesting = 16;
    static constexpr int MaxExpansions = 200000;

    DxfBlockExpander(const DxfContent& content, const DxfGroupFile& file);

    // Appends the geometry of `inserts`, placed by `parent`, to `out`; false on error.
    bool expand(const QList<DxfInsert>& inserts, const QTransform& parent,
                QList<GeometryItem>& out);
    const QString& error() const { return m_error; }

private:
    bool expandLevel(const QList<DxfInsert>& inserts, const QTransform& parent,
                     QList<GeometryItem>& out);
    const DxfBlockContent* find(const QString& name) const;

    const DxfContent& m_content;
    const DxfGroupFile& m_file;
    QStringList m_chain;
    int m_expansions = 0;
    QString m_error;
};

} // namespace RefHost
