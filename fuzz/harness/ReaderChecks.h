#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// Feeds one input to one of the readers of outside input and checks what the reader promises
// whatever the input: it returns (no crash, no hang), it answers either a result or an error
// text that names the file, and the result keeps the reader's own rules (line lengths, row
// counts, round trips). Each check returns an empty text when all held, else a description of
// the broken rule. The fuzz targets abort on a non-empty answer; the regression test fails.
namespace ReaderChecks {

// The settings main file (.cfa) read with CEArquivoCfg, and its lines read with
// SettingsTextFile, in each of the encodings a settings file can be read in.
QString settingsMainFile(const QByteArray& input);
// A block or symbol file (.cfb, .cfc) read with CEArquivoCfg, and its lines.
QString settingsListFile(const QByteArray& input);
// The bytes as an .xlsx workbook read with CIExcel the way the import reads "Sheet1".
QString workbook(const QByteArray& input);
// The same, the input being the package's parts as text (see WorkbookParts.h), which the check
// zips first; this lets the fuzzer change the XML inside a valid package.
QString workbookParts(const QByteArray& input);
// The item tree's JSON file, read into an item tree.
QString treeJson(const QByteArray& input);
// The JSON of "settings write": read, then written as settings files and read back.
QString settingsJson(const QByteArray& input);
// A block drawing read with the DXF block reader.
QString dxfBlock(const QByteArray& input);
// A drawing read with the DXF drawing reader.
QString dxfDrawing(const QByteArray& input);

struct Reader
{
    QString name; // also the folder name of its seed corpus and of its regression inputs
    QString (*check)(const QByteArray& input) = nullptr;
};

const QList<Reader>& readers();

// What the last check saw of its input in a few words ("workbook open, Sheet1 with 20 rows",
// "error: ..."), so that a test can tell that an input reached the reader and how far.
QString lastOutcome();
void recordOutcome(const QString& outcome);

// The reader called `name`, or null.
const Reader* findReader(const QString& name);

} // namespace ReaderChecks
