#pragma once

#include "CTVNodesUtil.h"
#include "SelectedSymbolList.h"

#include "host/CEPasta.h"
#include "host/DescriptionLanguages.h"

#include <QObject>

#include <functional>
#include <optional>

// What the item editor hands back when the user confirms it: the item's label and its
// attribute texts (FIELD=VALUE).
struct ItemEditorResult
{
    KVString name;
    QStringList attributes;
};

// The main dialog's work on the item list without any widget: the tree, the "Symbols
// selected:" list, the count shown beside "Items not imported:" and the number from which new
// items are proposed. Each operation works on the tree's current node (S) and its parent (P)
// and does nothing when its precondition fails.
class ItemListController final : public QObject
{
    Q_OBJECT

public:
    // Runs the item editor for a new item with the proposed name; nothing when cancelled.
    using AddItemEditor = std::function<std::optional<ItemEditorResult>(const KVString&)>;
    // Runs the item editor on the attributes of the item being edited (empty when nothing is
    // selected); nothing when cancelled.
    using EditItemEditor = std::function<std::optional<ItemEditorResult>(const QStringList&)>;

    explicit ItemListController(QObject* parent = nullptr);

    CTVNodesUtil& tree() { return m_tree; }
    const CTVNodesUtil& tree() const { return m_tree; }
    SelectedSymbolList& selectedSymbols() { return m_selectedSymbols; }
    const SelectedSymbolList& selectedSymbols() const { return m_selectedSymbols; }

    // Not the number of items: each operation changes it by its own rule, and the import
    // sets it.
    int itemCount() const { return m_itemCount; }
    void setItemCount(int count);
    int lastItemNumber() const { return m_lastItemNumber; }
    void setLastItemNumber(int number);
    // The settings' separator mode as copied by the last import; "2" makes Add space add
    // horizontal spaces.
    KVString separatorMode() const { return m_separatorMode; }
    void setSeparatorMode(const KVString& mode) { m_separatorMode = mode; }
    const DescriptionLanguages& descriptionLanguages() const { return m_languages; }
    void setDescriptionLanguages(const DescriptionLanguages& languages);

    // Add item: raises lastItemNumber, proposes it as the name, and on confirmation appends the
    // item, selects it and raises itemCount.
    TVNode addItem(const AddItemEditor& editor);
    // Add item with the editor's answer already known.
    TVNode addItem(const KVString& name, const QStringList& attributes);
    // Edit item: when nothing or an Item is selected, runs the editor and on confirmation
    // replaces the selected item's attributes and name. True when an item was changed.
    bool editItem(const EditItemEditor& editor);
    // Add symbol: adds the palette's component to the selected item, or right after the
    // selected child, selects it and lists it under "Symbols selected:". The description is
    // the entry's in the current language or, when empty, in the first fallback language
    // that has one.
    TVNode addSymbol(const CEPasta& entry);
    TVNode addPage();
    TVNode addSpace();
    bool remove();
    TVNode copyItem();
    // Re-creates the root item `item` after `target` (null: at the end; TVNode::first():
    // before all items) with its children in order, then deletes the original.
    TVNode moveItem(TVNode item, TVNode target);
    // Makes the Symbol node of a "Symbols selected:" line visible and current.
    bool selectSymbolLine(int row);

    // Remove, Add (the run) and Copy item are enabled exactly when the tree holds a node.
    bool hasNodes() const { return !m_tree.isEmpty(); }
    // The palette's add-to-item button is enabled for a component while a node is selected.
    bool canAddSymbol(const CEPasta& entry) const;

    // The tree as the job's items; consumes the tree's symbols and attribute lists.
    QList<CEInsAutoItem> takeJobItems() { return m_tree.TakeJobItems(); }

signals:
    void itemCountChanged(int count);

private:
    TVNode cloneChild(TVNode target, TVNode child, TVNode symbolAfter, TVNode markerReference);

    CTVNodesUtil m_tree;
    SelectedSymbolList m_selectedSymbols;
    int m_itemCount = 0;
    int m_lastItemNumber = 0;
    KVString m_separatorMode;
    DescriptionLanguages m_languages;
};
