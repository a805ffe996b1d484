#pragma once

#include "settings/SettingsEncoding.h"
#include "settings/SettingsTextFile.h"

#include <QByteArray>
#include <QString>

// Checks the three settings files of a .cfa path before a verb reads them. The module reads any
// bytes without complaint (a damaged file reads as empty or odd texts), so the command-line
// program looks at the files first and refuses those that the settings dialog cannot have
// written: binary data, bytes that are not text in the settings encoding, lines longer than
// the reader's line buffer (the reader would cut them into pieces), a .cfa that is not empty
// (a new settings file) but lacks some of its seven header lines, and companions that are
// folders or cannot be created where they are missing.
namespace SettingsInputCheck {

// The longest line, in characters without its line end, that the reader takes in one piece:
// its buffer holds SettingsTextFile::kLineBufferSize characters, one of them the terminator and
// one the line end.
inline constexpr int kLongestLine = SettingsTextFile::kLineBufferSize - 2;
// A .cfa starts with this many header lines.
inline constexpr int kHeaderLines = 7;

// Empty when the bytes of one settings file read as what the settings dialog writes; otherwise
// the problem, starting with `path`. `isMain` is true for the .cfa.
QString checkContents(const QString& path, const QByteArray& bytes,
                      const SettingsEncoding& encoding, bool isMain);

// Empty when the .cfa at `cfaPath` and its two companions can be read as settings files (a
// missing companion is fine where it can be created: the readers create it empty); otherwise
// one problem naming the file (or the environment, when the settings encoding is unknown).
QString check(const QString& cfaPath);

} // namespace SettingsInputCheck
