#pragma once

#include "CEInsAutoJob.h"

#include <QStringList>

class CTVNodesUtil;

// What building a job gives: the job, and one text per settings file that could not be read
// (naming the file and the problem; such a file counts as empty).
struct CEInsAutoJobBuildResult
{
    CEInsAutoJob job;
    QStringList errors;

    bool ok() const { return errors.isEmpty(); }
};

// Builds the insertion job from the settings files and the item tree, as the main dialog
// does when the user starts a run.
class CEInsAutoJobBuilder
{
public:
    // The header texts and field map from the .cfa, the page components from the .cfc and
    // the page blocks from the .cfb; no items. A companion that does not exist gives an
    // empty list and is not created.
    static CEInsAutoJobBuildResult fromSettings(const KVString& cfaPath);

    // The same, with the tree's items. The conversion consumes the tree's symbols and
    // attribute lists, so the tree serves one run.
    static CEInsAutoJobBuildResult build(const KVString& cfaPath, CTVNodesUtil& tree);

    // The rows of a .cfb or .cfc as fixed items, leaving out the "..." rows.
    static QList<CEInsAutoFixedItem> fixedItems(const KVString& path, QStringList& errors);
};
