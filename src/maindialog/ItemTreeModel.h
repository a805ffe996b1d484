#pragma once

#include "TVNode.h"
#include "TVNodeData.h"

#include <QAbstractItemModel>
#include <QHash>

#include <memory>

namespace ItemTreeInternal {
struct Node;
}

// The store of the item tree: two levels (items at the root, their symbols, pages and spaces
// under them), one record per node, and per node its image index and expanded state. It also
// keeps the current (selected) node, because the tree's operations select what they create.
// Views show it through the usual item-model interface; the tree's own operations live in
// CTVNodesUtil, which derives from this class.
class ItemTreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Role {
        ImageIndexRole = Qt::UserRole + 1, // int: index in the tree's image list (0-4)
        KindRole,                          // int: TVNodeKind
        NameRole,                          // QString
        MarkerTextRole,                    // QString
        SymbolKeyRole,                     // QString: key of a Symbol node's component
        AttributesRole,                    // QStringList: an Item node's FIELD=VALUE texts
        NodeIdRole,                        // quint64: TVNode::fromId() gives the handle back
        ExpandedRole,                      // bool
    };

    explicit ItemTreeModel(QObject* parent = nullptr);
    ~ItemTreeModel() override;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QHash<int, QByteArray> roleNames() const override;

    TVNode nodeAt(const QModelIndex& index) const;
    QModelIndex indexOf(TVNode node) const;
    bool contains(TVNode node) const;

    // Navigation. A null parent stands for the root level; a missing node answers null.
    TVNode parentNode(TVNode node) const;
    TVNode firstChild(TVNode parent = {}) const;
    TVNode lastChild(TVNode parent = {}) const;
    TVNode nextSibling(TVNode node) const;
    TVNode previousSibling(TVNode node) const;
    // The node after `node` in the order in which an expanded tree lists its rows: the first
    // child of an expanded node, else the next sibling, else the next sibling of the nearest
    // ancestor that has one.
    TVNode nextVisible(TVNode node) const;
    QList<TVNode> children(TVNode parent = {}) const;
    int childCount(TVNode parent = {}) const;
    bool isEmpty() const;
    int nodeCount() const;

    // The node's record; null for a missing node.
    const TVNodeData* record(TVNode node) const;

    // -1 for a missing node.
    int image(TVNode node) const;
    bool setImage(TVNode node, int image);

    bool isExpanded(TVNode node) const;
    bool setExpanded(TVNode node, bool expanded);
    // For a view's expanded/collapsed notifications.
    bool setExpanded(const QModelIndex& index, bool expanded);

    TVNode current() const { return m_current; }
    // A missing node clears the current node.
    void setCurrent(TVNode node);
    // Expands the node's ancestors so that the node would be shown.
    void ensureVisible(TVNode node);
    // Makes the node visible and current; false (and nothing changed) for a missing node.
    bool selectNode(TVNode node);

    // Deletes every node.
    void clear();

signals:
    void currentChanged(TVNode current, TVNode previous);
    void expandedChanged(TVNode node, bool expanded);

protected:
    // Inserts a node under `parent` (null: the root level): after `after` when that is a child
    // of `parent`, first when `after` is TVNode::first(), last otherwise. Null when `parent`
    // is given but missing.
    TVNode insertNode(TVNode parent, TVNode after, TVNodeData&& data, int image);
    // Deletes the node with its children. When the current node goes, the removed node's next
    // sibling becomes current, else its parent, else its previous sibling. A parent left
    // without children is no longer expanded.
    bool removeNode(TVNode node);
    TVNodeData* mutableRecord(TVNode node);
    // Tells views that the node's record changed.
    void recordChanged(TVNode node);

private:
    using Node = ItemTreeInternal::Node;

    Node* find(TVNode node) const;
    Node* nodeFromIndex(const QModelIndex& index) const;
    QModelIndex indexOfNode(const Node* node) const;
    static int rowOf(const Node* node);
    // Marks the rows of `parent`'s children from `fromRow` on as to be renumbered.
    static void rowsShifted(Node* parent, int fromRow);
    void forget(Node* node);

    std::unique_ptr<Node> m_root;
    QHash<quint64, Node*> m_nodes;
    quint64 m_lastId = 0;
    TVNode m_current;
};
