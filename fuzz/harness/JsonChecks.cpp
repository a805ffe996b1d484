// Checks of the two JSON readers of the command-line program: the item tree's file and the
// settings given to "settings write".
#include "ReaderChecks.h"
#include "ScratchFile.h"

#include "cli/SettingsJson.h"
#include "maindialog/ItemTreeJson.h"
#include "settings/SettingsFiles.h"
#include "settings/SettingsLine.h"

#include <algorithm>

namespace ReaderChecks {

namespace {

// A text that the settings files keep unchanged: no line end inside, nothing that trimming
// removes, no half of a surrogate pair, and short enough to stay one line.
bool survivesSettingsFile(const QString& text)
{
    if (text.size() > 100 || SettingsLine::trimmed(text) != text)
        return false;
    return std::none_of(text.cbegin(), text.cend(), [](QChar c) {
        return c == u'\n' || c == u'\r' || c.isSurrogate() || c == QChar::ReplacementCharacter;
    });
}

bool allSurvive(const SettingsDialogContents& contents)
{
    for (const auto& field : contents.fields) {
        for (const QString& text : {field.fieldName, field.attribute, field.search, field.show}) {
            if (!survivesSettingsFile(text) && !text.trimmed().isEmpty())
                return false;
        }
    }
    for (const auto* list : {&contents.blocks, &contents.symbols}) {
        for (const auto& line : *list) {
            for (const QString& text : {line.blockName, line.position, line.angle}) {
                if (!survivesSettingsFile(text) && !text.isEmpty())
                    return false;
            }
        }
    }
    return true;
}

// Saves the contents the way the settings dialog does and reads the files back the way the
// dialogs do: the save must succeed, and what the files keep unchanged must come back.
QString checkWrittenSettings(const SettingsDialogContents& contents)
{
    recordOutcome(QStringLiteral("settings read"));
    const QString cfaPath = ScratchFolder::instance().path(QStringLiteral("json.cfa"));
    const SettingsWriteResult written = writeSettingsFiles(contents, cfaPath);
    if (!written.error.isEmpty() || !written.mainWritten || !written.symbolsWritten)
        return QStringLiteral("the settings were not saved: ") + written.error;
    const SettingsFiles files = readSettingsFiles(cfaPath);
    if (!files.errors.isEmpty())
        return QStringLiteral("the saved settings do not read: ") + files.errors.join(u"; ");

    const CEArquivoCfg& main = *files.main;
    const QList<std::pair<QString, QString>> header = {
        {contents.gapBeforeVar, main.gapBeforeVar()},
        {contents.gapAfterVar, main.gapAfterVar()},
        {contents.startPoint, main.startPoint()},
        {contents.spaceWidth, main.spaceWidth()},
        {QString::number(contents.separatorIndex), main.separatorMode()},
        {contents.pageSize, main.pageSize()},
        {QString::number(contents.paginationIndex), main.pageMode()}};
    recordOutcome(QStringLiteral("settings saved and read back"));
    const bool headerSurvives = std::all_of(header.cbegin(), header.cend(), [](const auto& pair) {
        return survivesSettingsFile(pair.first);
    });
    if (!headerSurvives)
        return {};
    for (qsizetype i = 0; i < header.size(); ++i) {
        if (header.at(i).first != header.at(i).second) {
            return QStringLiteral("header line %1 was saved as \"%2\" and reads back as \"%3\"")
                .arg(i + 1)
                .arg(header.at(i).first, header.at(i).second);
        }
    }
    if (!allSurvive(contents))
        return {};
    if (main.fieldCount() != contents.fields.size())
        return QStringLiteral("%1 field lines saved, %2 read back")
            .arg(contents.fields.size())
            .arg(main.fieldCount());
    const auto expectedRows = [](const QList<SettingsDialogContents::PlacementLine>& lines) {
        return std::max<qsizetype>(1, lines.size()); // an empty file reads as one default row
    };
    if (files.blocks->rowCount() != expectedRows(contents.blocks) ||
        files.symbols->rowCount() != expectedRows(contents.symbols)) {
        return QStringLiteral("%1 block and %2 symbol rows saved, %3 and %4 read back")
            .arg(contents.blocks.size())
            .arg(contents.symbols.size())
            .arg(files.blocks->rowCount())
            .arg(files.symbols->rowCount());
    }
    return {};
}

} // namespace

QString treeJson(const QByteArray& input)
{
    const QString fileName = QStringLiteral("input.json");
    CTVNodesUtil tree;
    auto attributes = std::make_unique<CELstAtributos>();
    attributes->append(QStringLiteral("TAG=K1"));
    tree.AddItem(QStringLiteral("an item that only a failed read leaves in place"),
                 std::move(attributes), false);
    const QByteArray before = ItemTreeJson::toJson(tree);

    const ItemTreeJson::ReadResult result = ItemTreeJson::parse(input, fileName, tree);
    recordOutcome(result.ok() ? QStringLiteral("tree read, %1 items").arg(tree.children().size())
                              : QStringLiteral("error: ") + result.error);
    if (!result.ok()) {
        if (!result.error.startsWith(fileName + QStringLiteral(": ")))
            return QStringLiteral("the error does not name the file: ") + result.error;
        if (ItemTreeJson::toJson(tree) != before)
            return QStringLiteral("a failed read changed the tree");
        return {};
    }

    // What was read writes out in a form that reads back to the same tree.
    const QByteArray written = ItemTreeJson::toJson(tree, result.counts);
    CTVNodesUtil again;
    const ItemTreeJson::ReadResult reread = ItemTreeJson::parse(written, fileName, again);
    if (!reread.ok())
        return QStringLiteral("the tree as written does not read back: ") + reread.error;
    if (reread.counts != result.counts)
        return QStringLiteral("the counts change when the tree is written and read back");
    if (ItemTreeJson::toJson(again, reread.counts) != written)
        return QStringLiteral("the tree changes when it is written and read back");
    return {};
}

QString settingsJson(const QByteArray& input)
{
    const SettingsJsonResult result = settingsContentsFromJson(input);
    recordOutcome(QStringLiteral("error: ") + result.problem);
    if (result.contents.has_value() == !result.problem.isEmpty())
        return QStringLiteral("the JSON reader answers both or neither of contents and problem");
    if (!result.contents)
        return {};
    return checkWrittenSettings(*result.contents);
}

} // namespace ReaderChecks
