#pragma once

#include "host/KVString.h"
#include "maindialog/ItemListController.h"

#include <QList>

#include <optional>

class CTVNodesUtil;

// One line of the item editor: the field's show letter (its code), its name, its value and
// whether the user may change the value.
struct ItemEditorLine
{
    KVString code;
    KVString name;
    KVString value;
    bool editable = true;

    friend bool operator==(const ItemEditorLine&, const ItemEditorLine&) = default;
};

// The item editor without its window: which fields it offers, what "Ok" makes of them and how
// the answer goes into the item tree.
class ItemEditorForm final
{
public:
    // The field whose value is the item's name and cannot be edited.
    static constexpr const char* kItemField = "ITEM";

    struct Lines
    {
        QList<ItemEditorLine> lines;
        // Why the settings file gave no lines (it could not be opened); empty otherwise.
        QString error;
    };

    // The fields of the settings file `settingsPath`. The item editor takes field rows from
    // the seventh line on, one line earlier than the settings reader, so the pagination index
    // is offered as a field too; lines are not trimmed, so a line end stays in the last token
    // of its line. The field "ITEM" shows `itemName` and is read-only. With `editedAttributes`
    // (texts FIELD=VALUE of the item being edited) a field takes the value of the first entry
    // with its name, split at the first "=".
    static Lines readLines(const KVString& settingsPath, const KVString& itemName,
                           const std::optional<QStringList>& editedAttributes);

    // "Ok": the attribute texts FIELD=VALUE of every line, in order, and the item's label made
    // of the values of the lines whose code is "S" (any case), joined with " - ".
    static ItemEditorResult confirm(const QList<ItemEditorLine>& lines);

    // Writes the answer into the tree: in edit mode the current node's label and attributes
    // (nothing when no node is current), otherwise a new item at the end, selected. Returns the
    // item written, or null.
    static TVNode apply(CTVNodesUtil& tree, bool editMode, const ItemEditorResult& result);
};
