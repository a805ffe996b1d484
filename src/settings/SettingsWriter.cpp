#include "SettingsWriter.h"

#include "SettingsLine.h"
#include "SettingsTextFile.h"
#include "host/CFxSystemServices.h"
#include "host/Translate.h"

namespace {

// A field-list cell as saved: trimmed, and one blank in place of an empty text so that the
// reader's tokenizer keeps the column.
QString fieldCell(const QString& text)
{
    const QString cell = SettingsLine::trimmed(text);
    return cell.isEmpty() ? QStringLiteral(" ") : cell;
}

QString fieldRow(const SettingsDialogContents::FieldLine& line)
{
    const QString yes = kvTr("Yes").toUpper();
    const QString show = line.show.toUpper() == yes ? QStringLiteral("S") : QStringLiteral("N");
    QString row;
    for (const QString& cell : {line.fieldName, line.attribute, line.search, show})
        row += fieldCell(cell) + u';';
    return row;
}

// Block and symbol cells are written as they stand: an empty cell stays empty.
QString placementRow(const SettingsDialogContents::PlacementLine& line)
{
    return line.blockName + u';' + line.position + u';' + line.angle + u';';
}

// Writes the rows and notes the first failed write.
void writeLines(SettingsTextFile& file, const QStringList& lines, QString& error)
{
    for (const QString& line : lines) {
        if (!file.writeLine(line) && error.isEmpty() && file.isOpen())
            error = QStringLiteral("cannot write \"%1\": the write failed").arg(file.path());
    }
}

QStringList placementRows(const QList<SettingsDialogContents::PlacementLine>& lines)
{
    QStringList rows;
    for (const auto& line : lines)
        rows.append(placementRow(line));
    return rows;
}

} // namespace

SettingsWriteResult writeSettingsFiles(const SettingsDialogContents& contents,
                                       const KVString& cfaPath)
{
    SettingsWriteResult result;
    const KVString cfbPath = companionPath(cfaPath, QStringLiteral(".cfb"));
    const KVString cfcPath = companionPath(cfaPath, QStringLiteral(".cfc"));

    // The .cfb is opened first and its failure is not looked at: its lines then go nowhere.
    SettingsTextFile blockFile;
    blockFile.openForWriting(cfbPath);
    SettingsTextFile mainFile;
    if (const SettingsFileStatus opened = mainFile.openForWriting(cfaPath); !opened) {
        blockFile.close();
        CFxMessageBox::warning(CFxUtils::GetMainWindowId(), kvTr("Error saving settings file."));
        result.error = opened.error;
        return result;
    }

    QStringList mainLines = {contents.gapBeforeVar,
                             contents.gapAfterVar,
                             contents.startPoint,
                             contents.spaceWidth,
                             QString::number(contents.separatorIndex),
                             contents.pageSize,
                             QString::number(contents.paginationIndex)};
    for (const auto& line : contents.fields)
        mainLines.append(fieldRow(line));
    writeLines(mainFile, mainLines, result.error);
    writeLines(blockFile, placementRows(contents.blocks), result.error);
    mainFile.close();
    blockFile.close();
    result.mainWritten = true;
    result.cfaPath = cfaPath;
    result.cfbPath = cfbPath;

    SettingsTextFile symbolFile;
    if (const SettingsFileStatus opened = symbolFile.openForWriting(cfcPath); !opened) {
        if (result.error.isEmpty())
            result.error = opened.error;
        return result;
    }
    writeLines(symbolFile, placementRows(contents.symbols), result.error);
    symbolFile.close();
    result.symbolsWritten = true;
    result.cfcPath = cfcPath;
    return result;
}
