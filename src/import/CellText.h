#pragma once

#include <QString>
#include <QStringView>

// How cell contents become the texts a person sees in a spreadsheet program.
namespace Xlsx::Internal::CellText {

// A number as the General format shows it: the shortest digits that read back as the same
// number, rounded to at most 15 significant digits, without trailing zeros, and positional
// ("1", "12.7", "0.1", "123456789012345") unless the number is 1E+15 or larger or below 1E-9
// in size, which get a mantissa and an exponent ("1.5E+20", "1E-10").
QString formatGeneral(double value);

// The date of a serial day number as yyyy-mm-dd, the time of day dropped. In the 1900 system
// day 1 is 1900-01-01 and day 60 is the 29 February 1900 that spreadsheet programs keep for
// compatibility; in the 1904 system day 0 is 1904-01-01. Empty when the number is not a date
// (negative or after 9999-12-31).
QString formatDate(double serial, bool date1904);

// A cell reference such as "AB12": zero-based column and one-based row. Returns false when
// `reference` is not one. `row` is 0 when the reference has no digits ("AB").
bool parseCellReference(QStringView reference, int* column, int* row);

// A number as a cell's value holds it ("12.7", "1E-10", " 3 "): decimal, blanks at the ends
// allowed. Returns false when `text` is not one. Much cheaper than the general conversions,
// which matters because it runs for every numeric cell.
bool parseNumber(QStringView text, double* value);

// A decimal row or index number; -1 when `text` is not one or is larger than `limit`.
int parseIndex(QStringView text, int limit);

} // namespace Xlsx::Internal::CellText
