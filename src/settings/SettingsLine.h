#pragma once

#include <QString>
#include <QStringList>

// The two text rules that every reader of the settings files shares.
namespace SettingsLine {

// Trims blanks, tabs and line ends (the C library's white space: " \t\n\r\v\f") at both ends.
QString trimmed(const QString& line);

// Splits a line at ";" the way a tokenizer does: empty tokens are skipped, so a run of ";"
// counts as one separator and leading ";" are ignored. Tokens are not trimmed.
QStringList cells(const QString& line);

} // namespace SettingsLine
