#include "ItemTreeIconDelegate.h"

#include "ItemTreeModel.h"

#include "resources/KVIcons.h"

#include <array>

namespace {

// The images of the item tree in image-list order.
constexpr std::array<const char*, 5> kImageNames = {"tree-item", "tree-item-symbol", "tree-symbol",
                                                    "tree-page", "tree-space"};

} // namespace

ItemTreeIconDelegate::ItemTreeIconDelegate(QObject* parent) : QStyledItemDelegate(parent) {}

QIcon ItemTreeIconDelegate::image(int index)
{
    static const QList<QIcon> images = [] {
        QList<QIcon> result;
        for (const char* name : kImageNames)
            result.append(KVIcons::icon(QString::fromLatin1(name)));
        return result;
    }();
    return images.value(index);
}

int ItemTreeIconDelegate::imageCount()
{
    return static_cast<int>(kImageNames.size());
}

void ItemTreeIconDelegate::initStyleOption(QStyleOptionViewItem* option,
                                           const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    const QVariant imageIndex = index.data(ItemTreeModel::ImageIndexRole);
    if (!imageIndex.isValid())
        return;
    const QIcon icon = image(imageIndex.toInt());
    if (icon.isNull())
        return;
    option->features |= QStyleOptionViewItem::HasDecoration;
    option->icon = icon;
    option->decorationSize = QSize(16, 16);
}
