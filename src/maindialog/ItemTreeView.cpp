#include "ItemTreeView.h"

#include "CTVNodesUtil.h"
#include "ItemTreeIconDelegate.h"

#include <QApplication>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>

ItemTreeView::ItemTreeView(QWidget* parent)
    : QTreeView(parent), m_delegate(new ItemTreeIconDelegate(this))
{
    setHeaderHidden(true);
    header()->setStretchLastSection(true);
    setItemDelegate(m_delegate);
    setIconSize(QSize(16, 16));
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    // Items are moved by the dialog's own drag (see CIInsereAuto), and a double click edits an
    // item rather than opening or closing it.
    setDragEnabled(false);
    setExpandsOnDoubleClick(false);
}

void ItemTreeView::setTree(CTVNodesUtil* tree)
{
    if (m_tree)
        disconnect(m_tree, nullptr, this, nullptr);
    m_tree = tree;
    setModel(tree);
    if (!tree)
        return;
    connect(tree, &ItemTreeModel::currentChanged, this,
            [this](TVNode current) { onModelCurrentChanged(current); });
    connect(tree, &ItemTreeModel::expandedChanged, this, &ItemTreeView::onModelExpandedChanged);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) { onViewCurrentChanged(current); });
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) {
        if (!m_syncing)
            m_tree->setExpanded(index, true);
    });
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
        if (!m_syncing)
            m_tree->setExpanded(index, false);
    });
    // While rows come and go the selection model moves its current row on its own; the tree
    // decides which node is current, so the view follows it once the change is over.
    auto hold = [this] { m_syncing = true; };
    auto release = [this] {
        m_syncing = false;
        syncFromModel();
    };
    connect(tree, &QAbstractItemModel::rowsAboutToBeRemoved, this, hold);
    connect(tree, &QAbstractItemModel::rowsRemoved, this, release);
    connect(tree, &QAbstractItemModel::rowsAboutToBeInserted, this, hold);
    connect(tree, &QAbstractItemModel::rowsInserted, this, release);
    connect(tree, &QAbstractItemModel::modelAboutToBeReset, this, hold);
    connect(tree, &QAbstractItemModel::modelReset, this, release);
    syncFromModel();
}

void ItemTreeView::syncFromModel()
{
    if (!m_tree)
        return;
    m_syncing = true;
    // Expanded rows first: the current node may lie inside one of them.
    for (const TVNode item : m_tree->children()) {
        const QModelIndex index = m_tree->indexOf(item);
        if (isExpanded(index) != m_tree->isExpanded(item))
            setExpanded(index, m_tree->isExpanded(item));
    }
    const QModelIndex current = m_tree->indexOf(m_tree->current());
    if (current != currentIndex()) {
        if (current.isValid())
            selectionModel()->setCurrentIndex(current, QItemSelectionModel::ClearAndSelect);
        else
            selectionModel()->clear();
    }
    m_syncing = false;
}

void ItemTreeView::onModelCurrentChanged(TVNode current)
{
    if (m_syncing)
        return;
    m_syncing = true;
    const QModelIndex index = m_tree->indexOf(current);
    if (index.isValid()) {
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        scrollTo(index);
    } else {
        selectionModel()->clear();
    }
    m_syncing = false;
}

void ItemTreeView::onModelExpandedChanged(TVNode node, bool expanded)
{
    const QModelIndex index = m_tree->indexOf(node);
    if (!index.isValid() || isExpanded(index) == expanded)
        return;
    const bool wasSyncing = m_syncing;
    m_syncing = true;
    setExpanded(index, expanded);
    m_syncing = wasSyncing;
}

void ItemTreeView::onViewCurrentChanged(const QModelIndex& current)
{
    if (m_syncing || !m_tree)
        return;
    m_syncing = true;
    m_tree->setCurrent(m_tree->nodeAt(current));
    m_syncing = false;
}

ItemTreeView::HitTest ItemTreeView::hitTest(const QPoint& point) const
{
    HitTest result;
    const QRect area = viewport()->rect();
    if (point.y() < area.top())
        result.flags |= Above;
    if (point.y() > area.bottom())
        result.flags |= Below;
    if (point.x() < area.left())
        result.flags |= ToLeft;
    if (point.x() > area.right())
        result.flags |= ToRight;
    if (result.flags)
        return result;
    // A row is hit over its whole width, indentation included.
    const QModelIndex index = indexAt(QPoint(area.left() + area.width() / 2, point.y()));
    if (m_tree && index.isValid()) {
        result.node = m_tree->nodeAt(index);
        result.flags = OnItem;
    } else {
        result.flags = Nowhere;
    }
    return result;
}

int ItemTreeView::itemHeight() const
{
    if (m_tree && !m_tree->isEmpty()) {
        const int height = rowHeight(m_tree->index(0, 0));
        if (height > 0)
            return height;
    }
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    return m_delegate->sizeHint(option, QModelIndex()).height();
}

QRect ItemTreeView::nodeRect(TVNode node) const
{
    if (!m_tree)
        return {};
    const QModelIndex index = m_tree->indexOf(node);
    if (!index.isValid())
        return {};
    QRect rect = visualRect(index);
    if (!rect.isValid())
        return {};
    // The whole row, from the left edge of the viewport, as the hit test counts it.
    rect.setLeft(viewport()->rect().left());
    rect.setRight(viewport()->rect().right());
    return rect;
}

QPixmap ItemTreeView::dragPixmap(TVNode node) const
{
    if (!m_tree)
        return {};
    const QModelIndex index = m_tree->indexOf(node);
    QRect rect = visualRect(index);
    if (!rect.isValid())
        return {};
    // The node's image and label, as the row shows them without its selection.
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = QRect(QPoint(0, 0), rect.size());
    option.state &= ~QStyle::State_Selected;
    option.state &= ~QStyle::State_HasFocus;
    QPixmap pixmap(rect.size() * devicePixelRatioF());
    pixmap.setDevicePixelRatio(devicePixelRatioF());
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    m_delegate->paint(&painter, option, index);
    return pixmap;
}

void ItemTreeView::mousePressEvent(QMouseEvent* event)
{
    m_pressedNode = {};
    if (event->button() == Qt::LeftButton && m_tree) {
        m_pressPoint = event->position().toPoint();
        m_pressedNode = hitTest(m_pressPoint).node;
    }
    QTreeView::mousePressEvent(event);
}

void ItemTreeView::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_pressedNode.isNull() && (event->buttons() & Qt::LeftButton) &&
        (event->position().toPoint() - m_pressPoint).manhattanLength() >=
            QApplication::startDragDistance()) {
        const TVNode node = m_pressedNode;
        m_pressedNode = {};
        emit beginDrag(node, m_pressPoint);
        return;
    }
    QTreeView::mouseMoveEvent(event);
}

void ItemTreeView::mouseReleaseEvent(QMouseEvent* event)
{
    m_pressedNode = {};
    QTreeView::mouseReleaseEvent(event);
}

void ItemTreeView::mouseDoubleClickEvent(QMouseEvent* event)
{
    QTreeView::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton)
        emit doubleClickedAt(event->position().toPoint());
}
