#pragma once

#include "ItemTreeModel.h"

#include "engine/CEInsAutoJob.h"

// The item tree with its operations: items at the root, and under each item its symbols, page
// breaks and spaces in the order in which they are applied. Operations that are asked to
// select make the new node visible and current. Operations given a missing node answer false
// or null and change nothing.
class CTVNodesUtil : public ItemTreeModel
{
    Q_OBJECT

public:
    explicit CTVNodesUtil(QObject* parent = nullptr);

    // Inserts an Item as the last root node, with image 0; the node owns `attributes`.
    TVNode AddItem(const KVString& name, std::unique_ptr<CELstAtributos> attributes, bool select);
    // The same, directly after the root node `after` (TVNode::first(): before all items; null
    // or a node that is not at the root: last).
    TVNode AddItemAfter(const KVString& name, std::unique_ptr<CELstAtributos> attributes,
                        bool select, TVNode after);
    // Inserts a Page or space node: as the first child of `reference` when that is an Item,
    // otherwise under `item` directly after `reference` (last when `reference` is not a child
    // of `item`). Null (nothing inserted) without a reference, without an item to insert
    // under, or for a kind that is not a Page or a space.
    TVNode AddMarker(TVNode item, TVNode reference, const KVString& text, TVNodeKind kind,
                     bool select);
    // Inserts a Symbol node under `item` directly after `after` (last when `after` is null or
    // not a child of `item`), and gives `item` image 1. Null when `item` is not an Item.
    TVNode AddSymbol(TVNode item, TVNode after, const KVString& description,
                     std::unique_ptr<CEComponente> symbol, bool select);
    // Stores the name; the label is the name for Items, Symbols and kind 3, empty otherwise.
    bool SetName(TVNode node, const KVString& name);
    // Replaces the node's attribute list; the node takes ownership.
    bool SetAttributes(TVNode node, std::unique_ptr<CELstAtributos> attributes);

    // TVNodeKind::None for a missing node.
    TVNodeKind GetKind(TVNode node) const;
    // The record keeps ownership; null for a missing node or a node without one.
    const CEComponente* GetSymbol(TVNode node) const;
    const CELstAtributos* GetAttributes(TVNode node) const;
    KVString GetName(TVNode node) const;
    // The node's label as shown.
    KVString GetText(TVNode node) const;

    // Deletes an Item with its children, or a Symbol, kind 3, Page or space node alone.
    // False, and nothing deleted, for any other kind.
    bool RemoveNode(TVNode node);

    // The job's items: one per root Item that has children, in tree order. The tree is left
    // unchanged.
    QList<CEInsAutoItem> JobItems() const;
    // The same, and the tree's symbols and attribute lists are released: the conversion
    // consumes them, so the tree is not used for another run afterwards.
    QList<CEInsAutoItem> TakeJobItems();
};
