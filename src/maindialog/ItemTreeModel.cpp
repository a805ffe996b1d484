#include "ItemTreeModel.h"

#include <algorithm>
#include <vector>

namespace ItemTreeInternal {

struct Node
{
    quint64 id = 0;
    TVNodeData data;
    int image = 0;
    bool expanded = false;
    Node* parent = nullptr;
    std::vector<std::unique_ptr<Node>> children;
    // The node's row among its parent's children, valid when it is below the parent's
    // rowsKnown. Rows are renumbered lazily: an insertion or removal only lowers rowsKnown, so
    // appending many children and asking their rows costs constant time per node.
    mutable std::size_t row = 0;
    // The first rowsKnown children have their row up to date.
    mutable std::size_t rowsKnown = 0;
};

} // namespace ItemTreeInternal

ItemTreeModel::ItemTreeModel(QObject* parent)
    : QAbstractItemModel(parent), m_root(std::make_unique<Node>())
{}

ItemTreeModel::~ItemTreeModel() = default;

ItemTreeModel::Node* ItemTreeModel::find(TVNode node) const
{
    if (node.isNull() || node.isFirst())
        return nullptr;
    return m_nodes.value(node.id(), nullptr);
}

ItemTreeModel::Node* ItemTreeModel::nodeFromIndex(const QModelIndex& index) const
{
    if (!index.isValid() || index.model() != this)
        return nullptr;
    return static_cast<Node*>(index.internalPointer());
}

int ItemTreeModel::rowOf(const Node* node)
{
    const Node* parent = node->parent;
    const auto& siblings = parent->children;
    if (node->row < parent->rowsKnown && siblings[node->row].get() == node)
        return static_cast<int>(node->row);
    // Renumber from the first stale row up to the node.
    for (std::size_t row = parent->rowsKnown; row < siblings.size(); ++row) {
        siblings[row]->row = row;
        parent->rowsKnown = row + 1;
        if (siblings[row].get() == node)
            break;
    }
    return static_cast<int>(node->row);
}

void ItemTreeModel::rowsShifted(Node* parent, int fromRow)
{
    parent->rowsKnown = std::min(parent->rowsKnown, static_cast<std::size_t>(fromRow));
}

QModelIndex ItemTreeModel::indexOfNode(const Node* node) const
{
    if (!node || node == m_root.get())
        return {};
    return createIndex(rowOf(node), 0, const_cast<Node*>(node));
}

QModelIndex ItemTreeModel::index(int row, int column, const QModelIndex& parent) const
{
    if (column != 0 || row < 0 || (parent.isValid() && parent.column() != 0))
        return {};
    const Node* parentNode = parent.isValid() ? nodeFromIndex(parent) : m_root.get();
    if (!parentNode || row >= static_cast<int>(parentNode->children.size()))
        return {};
    return createIndex(row, 0, parentNode->children[row].get());
}

QModelIndex ItemTreeModel::parent(const QModelIndex& child) const
{
    const Node* node = nodeFromIndex(child);
    if (!node)
        return {};
    return indexOfNode(node->parent);
}

int ItemTreeModel::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid() && parent.column() != 0)
        return 0;
    const Node* node = parent.isValid() ? nodeFromIndex(parent) : m_root.get();
    return node ? static_cast<int>(node->children.size()) : 0;
}

int ItemTreeModel::columnCount(const QModelIndex&) const
{
    return 1;
}

QVariant ItemTreeModel::data(const QModelIndex& index, int role) const
{
    const Node* node = nodeFromIndex(index);
    if (!node)
        return {};
    const TVNodeData& data = node->data;
    switch (role) {
    case Qt::DisplayRole:
        return QString(data.displayText);
    case ImageIndexRole:
        return node->image;
    case KindRole:
        return static_cast<int>(data.kind);
    case NameRole:
        return QString(data.name);
    case MarkerTextRole:
        return QString(data.markerText);
    case SymbolKeyRole:
        return data.symbol ? QString(data.symbol->GetKey()) : QString();
    case AttributesRole:
        return attributeTexts(data.attributes.get());
    case NodeIdRole:
        return node->id;
    case ExpandedRole:
        return node->expanded;
    default:
        return {};
    }
}

Qt::ItemFlags ItemTreeModel::flags(const QModelIndex& index) const
{
    const Node* node = nodeFromIndex(index);
    if (!node)
        return Qt::NoItemFlags;
    Qt::ItemFlags result = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    // Only whole items are dragged; their children travel with them.
    if (node->parent == m_root.get())
        result |= Qt::ItemIsDragEnabled;
    else
        result |= Qt::ItemNeverHasChildren;
    return result;
}

QHash<int, QByteArray> ItemTreeModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractItemModel::roleNames();
    names.insert(ImageIndexRole, "imageIndex");
    names.insert(KindRole, "kind");
    names.insert(NameRole, "name");
    names.insert(MarkerTextRole, "markerText");
    names.insert(SymbolKeyRole, "symbolKey");
    names.insert(AttributesRole, "attributes");
    names.insert(NodeIdRole, "nodeId");
    names.insert(ExpandedRole, "expanded");
    return names;
}

TVNode ItemTreeModel::nodeAt(const QModelIndex& index) const
{
    const Node* node = nodeFromIndex(index);
    return node ? TVNode::fromId(node->id) : TVNode();
}

QModelIndex ItemTreeModel::indexOf(TVNode node) const
{
    return indexOfNode(find(node));
}

bool ItemTreeModel::contains(TVNode node) const
{
    return find(node) != nullptr;
}

TVNode ItemTreeModel::parentNode(TVNode node) const
{
    const Node* n = find(node);
    if (!n || n->parent == m_root.get())
        return {};
    return TVNode::fromId(n->parent->id);
}

TVNode ItemTreeModel::firstChild(TVNode parent) const
{
    const Node* n = parent.isNull() ? m_root.get() : find(parent);
    if (!n || n->children.empty())
        return {};
    return TVNode::fromId(n->children.front()->id);
}

TVNode ItemTreeModel::lastChild(TVNode parent) const
{
    const Node* n = parent.isNull() ? m_root.get() : find(parent);
    if (!n || n->children.empty())
        return {};
    return TVNode::fromId(n->children.back()->id);
}

TVNode ItemTreeModel::nextSibling(TVNode node) const
{
    const Node* n = find(node);
    if (!n)
        return {};
    const auto& siblings = n->parent->children;
    const size_t row = static_cast<size_t>(rowOf(n));
    return row + 1 < siblings.size() ? TVNode::fromId(siblings[row + 1]->id) : TVNode();
}

TVNode ItemTreeModel::previousSibling(TVNode node) const
{
    const Node* n = find(node);
    if (!n)
        return {};
    const int row = rowOf(n);
    return row > 0 ? TVNode::fromId(n->parent->children[row - 1]->id) : TVNode();
}

TVNode ItemTreeModel::nextVisible(TVNode node) const
{
    const Node* n = find(node);
    if (!n)
        return {};
    if (n->expanded && !n->children.empty())
        return TVNode::fromId(n->children.front()->id);
    for (; n && n != m_root.get(); n = n->parent) {
        const TVNode sibling = nextSibling(TVNode::fromId(n->id));
        if (!sibling.isNull())
            return sibling;
    }
    return {};
}

QList<TVNode> ItemTreeModel::children(TVNode parent) const
{
    QList<TVNode> result;
    const Node* n = parent.isNull() ? m_root.get() : find(parent);
    if (n) {
        for (const auto& child : n->children)
            result.append(TVNode::fromId(child->id));
    }
    return result;
}

int ItemTreeModel::childCount(TVNode parent) const
{
    const Node* n = parent.isNull() ? m_root.get() : find(parent);
    return n ? static_cast<int>(n->children.size()) : 0;
}

bool ItemTreeModel::isEmpty() const
{
    return m_root->children.empty();
}

int ItemTreeModel::nodeCount() const
{
    return static_cast<int>(m_nodes.size());
}

const TVNodeData* ItemTreeModel::record(TVNode node) const
{
    const Node* n = find(node);
    return n ? &n->data : nullptr;
}

TVNodeData* ItemTreeModel::mutableRecord(TVNode node)
{
    Node* n = find(node);
    return n ? &n->data : nullptr;
}

void ItemTreeModel::recordChanged(TVNode node)
{
    const QModelIndex index = indexOf(node);
    if (index.isValid())
        emit dataChanged(index, index);
}

int ItemTreeModel::image(TVNode node) const
{
    const Node* n = find(node);
    return n ? n->image : -1;
}

bool ItemTreeModel::setImage(TVNode node, int image)
{
    Node* n = find(node);
    if (!n)
        return false;
    if (n->image != image) {
        n->image = image;
        const QModelIndex index = indexOfNode(n);
        emit dataChanged(index, index, {ImageIndexRole});
    }
    return true;
}

bool ItemTreeModel::isExpanded(TVNode node) const
{
    const Node* n = find(node);
    return n && n->expanded;
}

bool ItemTreeModel::setExpanded(TVNode node, bool expanded)
{
    Node* n = find(node);
    if (!n)
        return false;
    if (n->expanded != expanded) {
        n->expanded = expanded;
        const QModelIndex index = indexOfNode(n);
        emit dataChanged(index, index, {ExpandedRole});
        emit expandedChanged(node, expanded);
    }
    return true;
}

bool ItemTreeModel::setExpanded(const QModelIndex& index, bool expanded)
{
    return setExpanded(nodeAt(index), expanded);
}

void ItemTreeModel::setCurrent(TVNode node)
{
    const TVNode next = find(node) ? node : TVNode();
    if (next == m_current)
        return;
    const TVNode previous = m_current;
    m_current = next;
    emit currentChanged(m_current, previous);
}

void ItemTreeModel::ensureVisible(TVNode node)
{
    for (TVNode ancestor = parentNode(node); !ancestor.isNull(); ancestor = parentNode(ancestor))
        setExpanded(ancestor, true);
}

bool ItemTreeModel::selectNode(TVNode node)
{
    if (!contains(node))
        return false;
    ensureVisible(node);
    setCurrent(node);
    return true;
}

TVNode ItemTreeModel::insertNode(TVNode parent, TVNode after, TVNodeData&& data, int image)
{
    Node* parentNode = parent.isNull() ? m_root.get() : find(parent);
    if (!parentNode)
        return {};
    auto& siblings = parentNode->children;
    int row = static_cast<int>(siblings.size());
    if (after.isFirst()) {
        row = 0;
    } else if (const Node* afterNode = find(after); afterNode && afterNode->parent == parentNode) {
        row = rowOf(afterNode) + 1;
    }

    auto node = std::make_unique<Node>();
    node->id = ++m_lastId;
    node->data = std::move(data);
    node->image = image;
    node->parent = parentNode;
    node->row = static_cast<std::size_t>(row);
    const TVNode handle = TVNode::fromId(node->id);

    beginInsertRows(indexOfNode(parentNode), row, row);
    m_nodes.insert(node->id, node.get());
    siblings.insert(siblings.begin() + row, std::move(node));
    rowsShifted(parentNode, row);
    // Every row before the new one is known, so the new one is too.
    if (parentNode->rowsKnown == static_cast<std::size_t>(row))
        parentNode->rowsKnown = static_cast<std::size_t>(row) + 1;
    endInsertRows();
    return handle;
}

void ItemTreeModel::forget(Node* node)
{
    for (const auto& child : node->children)
        forget(child.get());
    m_nodes.remove(node->id);
}

bool ItemTreeModel::removeNode(TVNode node)
{
    Node* n = find(node);
    if (!n)
        return false;
    Node* parentNode = n->parent;

    TVNode nextCurrent = m_current;
    bool currentGoes = false;
    for (const Node* c = find(m_current); c; c = c->parent) {
        if (c == n) {
            currentGoes = true;
            break;
        }
    }
    if (currentGoes) {
        nextCurrent = nextSibling(node);
        if (nextCurrent.isNull())
            nextCurrent = parentNode == m_root.get() ? TVNode() : TVNode::fromId(parentNode->id);
        if (nextCurrent.isNull())
            nextCurrent = previousSibling(node);
    }

    const int row = rowOf(n);
    beginRemoveRows(indexOfNode(parentNode), row, row);
    forget(n);
    parentNode->children.erase(parentNode->children.begin() + row);
    rowsShifted(parentNode, row);
    endRemoveRows();

    if (parentNode != m_root.get() && parentNode->children.empty())
        setExpanded(TVNode::fromId(parentNode->id), false);
    if (currentGoes) {
        const TVNode previous = m_current;
        m_current = nextCurrent;
        emit currentChanged(m_current, previous);
    }
    return true;
}

void ItemTreeModel::clear()
{
    if (m_root->children.empty())
        return;
    beginResetModel();
    m_root->children.clear();
    m_root->rowsKnown = 0;
    m_nodes.clear();
    endResetModel();
    setCurrent({});
}
