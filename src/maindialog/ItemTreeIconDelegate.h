#pragma once

#include <QIcon>
#include <QList>
#include <QStyledItemDelegate>

// Draws each node of the item tree with the image its ImageIndexRole names: 0 an item without
// symbols, 1 an item with symbols, 2 a symbol, 3 a page, 4 a space.
class ItemTreeIconDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit ItemTreeIconDelegate(QObject* parent = nullptr);

    // The image list, by image index; a null icon for an index outside it.
    static QIcon image(int index);
    static int imageCount();

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};
