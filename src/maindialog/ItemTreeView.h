#pragma once

#include "TVNode.h"

#include <QTreeView>

class CTVNodesUtil;
class ItemTreeIconDelegate;

// The item tree control of the main dialog: shows a CTVNodesUtil with the images of its node
// kinds and keeps the view's current row and expanded rows in step with the tree's own current
// node and expanded state, whichever side changes them. It announces the start of a drag and
// every double click, and answers hit tests as a tree control does; the main dialog does the
// rest.
class ItemTreeView final : public QTreeView
{
    Q_OBJECT

public:
    // Where a point lies relative to the rows area (the viewport).
    enum HitFlag {
        OnItem = 0x0001,
        Nowhere = 0x0002,
        Above = 0x0100,
        Below = 0x0200,
        ToRight = 0x0400,
        ToLeft = 0x0800,
    };
    Q_DECLARE_FLAGS(HitFlags, HitFlag)

    struct HitTest
    {
        TVNode node;
        HitFlags flags;
    };

    explicit ItemTreeView(QWidget* parent = nullptr);

    void setTree(CTVNodesUtil* tree);
    CTVNodesUtil* tree() const { return m_tree; }

    // The row under `point` (viewport coordinates): any point of a row hits its node; a point
    // outside the viewport hits nothing and says on which side it lies.
    HitTest hitTest(const QPoint& point) const;
    // The height of one row.
    int itemHeight() const;
    // The rectangle of a node's row in viewport coordinates; empty when it is not shown.
    QRect nodeRect(TVNode node) const;
    // A picture of the node's row, as the drag shows it.
    QPixmap dragPixmap(TVNode node) const;

signals:
    // The user moved the mouse far enough with the left button held after pressing it on a
    // node. `point` is the press point in viewport coordinates.
    void beginDrag(TVNode node, const QPoint& point);
    // A double click anywhere in the control.
    void doubleClickedAt(const QPoint& point);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void onModelCurrentChanged(TVNode current);
    void onModelExpandedChanged(TVNode node, bool expanded);
    void onViewCurrentChanged(const QModelIndex& current);
    void syncFromModel();

    CTVNodesUtil* m_tree = nullptr;
    ItemTreeIconDelegate* m_delegate;
    TVNode m_pressedNode;
    QPoint m_pressPoint;
    bool m_syncing = false;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(ItemTreeView::HitFlags)
