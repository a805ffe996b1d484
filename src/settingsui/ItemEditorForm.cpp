#include "ItemEditorForm.h"

#include "maindialog/CTVNodesUtil.h"
#include "settings/SettingsLine.h"
#include "settings/SettingsTextFile.h"

namespace {

// Field rows start on this line of the file (counting from 1).
constexpr int kFirstFieldLine = 7;

std::optional<KVString> attributeValue(const QStringList& attributes, const QString& field)
{
    for (const QString& entry : attributes) {
        const qsizetype equals = entry.indexOf(u'=');
        const QString name = equals < 0 ? entry : entry.left(equals);
        if (name == field)
            return equals < 0 ? QString() : entry.mid(equals + 1);
    }
    return std::nullopt;
}

} // namespace

ItemEditorForm::Lines ItemEditorForm::readLines(const KVString& settingsPath,
                                                const KVString& itemName,
                                                const std::optional<QStringList>& editedAttributes)
{
    Lines result;
    if (settingsPath.trimmed().isEmpty())
        return result;
    SettingsTextFile file;
    if (const SettingsFileStatus opened = file.openForReading(settingsPath); !opened) {
        result.error = opened.error;
        return result;
    }
    // Tokens missing from a line keep the previous line's values.
    QString name;
    QString show;
    int lineNumber = 0;
    while (!file.atEnd()) {
        const QString line = file.readLine();
        ++lineNumber;
        if (lineNumber < kFirstFieldLine || line.isEmpty())
            continue;
        const QStringList tokens = SettingsLine::cells(line);
        if (!tokens.isEmpty())
            name = tokens.at(0);
        if (tokens.size() > 3)
            show = tokens.at(3);

        ItemEditorLine entry{show, name, {}, true};
        if (name == QLatin1String(kItemField)) {
            entry.value = itemName;
            entry.editable = false;
        }
        if (editedAttributes) {
            if (const std::optional<KVString> value = attributeValue(*editedAttributes, name))
                entry.value = *value;
        }
        result.lines.append(entry);
    }
    file.close();
    return result;
}

ItemEditorResult ItemEditorForm::confirm(const QList<ItemEditorLine>& lines)
{
    ItemEditorResult result;
    bool first = true;
    for (const ItemEditorLine& line : lines) {
        result.attributes.append(line.name + u'=' + line.value);
        if (line.code.toUpper() != u"S")
            continue;
        if (!first)
            result.name += QStringLiteral(" - ");
        result.name += line.value;
        first = false;
    }
    return result;
}

TVNode ItemEditorForm::apply(CTVNodesUtil& tree, bool editMode, const ItemEditorResult& result)
{
    if (!editMode)
        return tree.AddItem(result.name, makeAttributeList(result.attributes), true);
    const TVNode selected = tree.current();
    if (selected.isNull() || tree.GetKind(selected) != TVNodeKind::Item)
        return {};
    tree.SetName(selected, result.name);
    tree.SetAttributes(selected, makeAttributeList(result.attributes));
    return selected;
}
