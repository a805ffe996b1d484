#pragma once

#include "settings/SettingsWriter.h"

#include <QString>

// The command-line program's "settings write": the three files are written exactly as the
// settings dialog's "Save" writes them (writeSettingsFiles), but first into a temporary folder;
// each is then put in place through a temporary file beside it that is renamed over the old
// one, and only once all three are ready. A failure before the renames leaves the files in
// place as they were; the dialog's own "Save" is not changed.
namespace SettingsAtomicWriter {

// Writes the .cfb, the .cfa and the .cfc of `cfaPath` (whose name must hold a lowercase ".cfa",
// so that the three paths differ). Empty on success; otherwise the problem, naming the file.
QString write(const SettingsDialogContents& contents, const QString& cfaPath);

} // namespace SettingsAtomicWriter
