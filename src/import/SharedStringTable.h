#pragma once

#include "WorkbookLimits.h"

#include <QList>
#include <QString>

namespace Xlsx::Internal {

class ZipPackage;

// The workbook's shared strings, kept compactly: all texts end to end in one buffer and the
// offset where each one starts, so a table of many short texts costs little more than its
// characters.
class SharedStringTable final
{
public:
    // Reads `partName`; returns false and sets `problem` when it cannot be read or goes past
    // the limits.
    bool load(ZipPackage& package, const QString& partName, const WorkbookLimits& limits,
              QString* problem);

    qsizetype size() const { return m_offsets.isEmpty() ? 0 : m_offsets.size() - 1; }
    // The text at `index`; `index` must be below size().
    QString at(qsizetype index) const;

private:
    QString m_characters;
    QList<quint32> m_offsets; // size() + 1 entries once loaded
};

} // namespace Xlsx::Internal
