#pragma once

#include "host/LispValue.h"

#include <optional>

// Names and layout of what the reference host keeps in its DXF drawings beyond plain
// geometry; the writer and the reader both follow them (docs/dxf.md describes them).
namespace RefHost::DxfConventions {

// Extended data of a page's LAYER record:
//   1070 format (1), 1071 group index, 1071 page index in the group,
//   string group name, string page title.
inline constexpr char PageApp[] = "KVREF_PAGE";
// Extended data of an INSERT: 1070 format (1), string component key,
//   1071 count of associated-component texts, then that many strings.
inline constexpr char ReferenceApp[] = "KVREF_REFERENCE";
// Extended data of a BLOCK written only because references name it (1070 1): the drawing
// had no definition for it, and the reader leaves it out again.
inline constexpr char PlaceholderApp[] = "KVREF_PLACEHOLDER";
inline constexpr int Format = 1;

// A string in extended data: 1071 piece count, then the pieces as 1000 groups.
// A string in a record: 91 piece count, then the pieces as 1 groups.
inline constexpr int PieceBytes = 240;

// The application dictionary in the root dictionary, and its two sub-dictionaries, one
// record (XRECORD) per variable.
inline constexpr char AppDictionary[] = "KVREF";
inline constexpr char VariablesDictionary[] = "VARIABLES";
inline constexpr char LispVariablesDictionary[] = "LISP_VARIABLES";

// Variable record: 280 1, 70 kind (0 text, 1 boolean, 2 text list), 290 boolean,
//   90 string count, then the strings.
// Drawing-language variable record: 280 1, 90 item count, then per item 70 kind
//   (0 list begin, 1 list end, 2 dotted pair, 3 text, 4 integer, 5 real, 6 point) and its
//   value: a string, 160 integer, 40 real, or 10/20/30.
inline int lispKindCode(LispItem::Kind kind)
{
    switch (kind) {
    case LispItem::Kind::ListBegin:
        return 0;
    case LispItem::Kind::ListEnd:
        return 1;
    case LispItem::Kind::DottedPair:
        return 2;
    case LispItem::Kind::Text:
        return 3;
    case LispItem::Kind::Integer:
        return 4;
    case LispItem::Kind::Real:
        return 5;
    case LispItem::Kind::Point:
        return 6;
    }
    return 3;
}

inline std::optional<LispItem::Kind> lispKindFromCode(qint64 code)
{
    static constexpr LispItem::Kind kinds[] = {LispItem::Kind::ListBegin,  LispItem::Kind::ListEnd,
                                               LispItem::Kind::DottedPair, LispItem::Kind::Text,
                                               LispItem::Kind::Integer,    LispItem::Kind::Real,
                                               LispItem::Kind::Point};
    if (code < 0 || code >= qint64(std::size(kinds)))
        return std::nullopt;
    return kinds[code];
}
} // namespace RefHost::DxfConventions
