#pragma once

#include "CTVNodesUtil.h"

#include <QByteArray>
#include <QString>

#include <optional>

// The item tree as a JSON file, for the command-line program: an array of items, or the
// import's form, an object {"itemCount", "lastItemNumber", "items"}. The format is described
// in docs/tree-json.md.
namespace ItemTreeJson {

struct Counts
{
    int itemCount = 0;
    int lastItemNumber = 0;
    friend bool operator==(const Counts&, const Counts&) = default;
};

struct ReadResult
{
    // Empty on success; otherwise names the file, the place in the document and the problem.
    QString error;
    // Present when the document was in the import's form.
    std::optional<Counts> counts;

    bool ok() const { return error.isEmpty(); }
};

// Replaces the tree's content by the document's items. On any error the tree is left as it
// was. `fileName` only names the source in error texts.
ReadResult parse(const QByteArray& json, const QString& fileName, CTVNodesUtil& tree);
ReadResult read(const QString& path, CTVNodesUtil& tree);

// With counts, the import's form; without, the plain array.
QByteArray toJson(const CTVNodesUtil& tree, const std::optional<Counts>& counts = {});
// Empty on success, else the error naming the file.
QString write(const QString& path, const CTVNodesUtil& tree,
              const std::optional<Counts>& counts = {});

} // namespace ItemTreeJson
