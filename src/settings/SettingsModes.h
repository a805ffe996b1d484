#pragma once

#include <QString>
#include <QStringList>

#include <optional>

// The index of the entry chosen in the "Separator:" list, stored as decimal text. The list is
// not sorted, so the values follow the order in which its entries are added.
enum class SeparatorMode : int {
    Automatic = 0,
    AutomaticSpace = 1,
    HorizontalSpace = 2,
    Page = 3,
    VerticalSpace = 4,
};

// The index of the entry chosen in the sorted "Pagination:" list, stored as decimal text.
enum class PaginationMode : int {
    CreatePage = 0, // every page break creates a new page
    UsingPage = 1,  // page breaks go on over the drawing's existing following pages
};

// The stored value when no entry is chosen.
inline constexpr int kNoModeChosen = -1;

// The untranslated entry texts of the two lists, in the order of their values.
QStringList separatorModeTexts();
QStringList paginationModeTexts();

// The entry that a stored value selects: the text read as a number in the C library's manner
// ("abc" reads as 0); nothing for an empty text, for -1 or for any value outside the list.
std::optional<SeparatorMode> separatorModeFromText(const QString& stored);
std::optional<PaginationMode> paginationModeFromText(const QString& stored);
