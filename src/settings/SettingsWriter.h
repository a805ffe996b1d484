#pragma once

#include "host/KVString.h"

#include <QList>
#include <QString>

// What the settings dialog holds when the user saves: the texts of its edit boxes, the
// indices chosen in its two lists and the cell texts of its three lists.
struct SettingsDialogContents
{
    struct FieldLine
    {
        QString fieldName; // "Field"
        QString attribute; // "Attribute"
        QString search;    // "Search"
        QString show;      // "Show": the text of the chosen entry, "Yes" or "No" as shown
    };
    struct PlacementLine
    {
        QString blockName; // "Block"
        QString position;  // "Point"
        QString angle;     // "Angle"
    };

    QString gapBeforeVar;     // "Previous:"
    QString gapAfterVar;      // "Next:"
    QString startPoint;       // "Initial point:"
    QString spaceWidth;       // "Space:"
    int separatorIndex = -1;  // "Separator:", -1 when no entry is chosen
    QString pageSize;         // "Page size:"
    int paginationIndex = -1; // "Pagination:", -1 when no entry is chosen
    QList<FieldLine> fields;
    QList<PlacementLine> blocks;
    QList<PlacementLine> symbols;
};

// Which files a save wrote. The dialog remembers the paths of the files written.
struct SettingsWriteResult
{
    bool mainWritten = false;    // the .cfa and the .cfb
    bool symbolsWritten = false; // the .cfc
    KVString cfaPath;            // set when mainWritten
    KVString cfbPath;            // set when mainWritten
    KVString cfcPath;            // set when symbolsWritten
    // Why the save stopped early or a write failed, naming the file; empty when all went well.
    QString error;
};

// The settings dialog's "Save": writes the .cfb, .cfa and .cfc of `cfaPath` from `contents`.
// A .cfa that cannot be opened for writing shows "Error saving settings file." through the
// host and stops with the .cfb left empty; a .cfc that cannot be opened stops silently.
SettingsWriteResult writeSettingsFiles(const SettingsDialogContents& contents,
                                       const KVString& cfaPath);
