#pragma once

#include <QtGlobal>

// The kind of a node of the item tree, stored as a 32-bit integer in the node's record. Value 0
// is the kind of a record that the creating operation has not set yet; value 3 is never
// created, but labels and removal treat it like a Symbol.
enum class TVNodeKind : qint32 {
    None = 0,
    Item = 1,
    Symbol = 2,
    Unnamed = 3,
    Page = 4,
    HorizontalSpace = 5,
    VerticalSpace = 6,
};

// Image indexes of the item tree's image list.
namespace TVNodeImage {
inline constexpr int ItemWithoutSymbol = 0;
inline constexpr int ItemWithSymbol = 1;
inline constexpr int Symbol = 2;
inline constexpr int Page = 3;
inline constexpr int Space = 4;
} // namespace TVNodeImage

// Page and space nodes are the layout markers placed among an item's symbols.
constexpr bool isMarkerKind(TVNodeKind kind)
{
    return kind == TVNodeKind::Page || kind == TVNodeKind::HorizontalSpace ||
           kind == TVNodeKind::VerticalSpace;
}
