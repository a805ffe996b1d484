#include "CellText.h"

#include <QDate>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace Xlsx::Internal::CellText {

namespace {

constexpr int kMaxSignificantDigits = 15;
constexpr int kLargestPositionalExponent = 14;
constexpr int kSmallestPositionalExponent = -9;

// The significant digits of |value| (without trailing zeros) and the decimal exponent of the
// first one, in the shortest form that reads back as the same number, or rounded to
// `precision` digits after the first when precision >= 0.
struct Digits
{
    char text[32];
    int count = 0;
    int exponent = 0;
};

bool scientificDigits(double value, int precision, Digits* digits)
{
    char buffer[64];
    const std::to_chars_result result =
        precision < 0
            ? std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific)
            : std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific,
                            precision);
    if (result.ec != std::errc())
        return false;
    const char* e = std::find(buffer, result.ptr, 'e');
    if (e == result.ptr)
        return false;
    digits->count = 0;
    for (const char* c = buffer; c != e && digits->count < int(sizeof digits->text); ++c) {
        if (*c >= '0' && *c <= '9')
            digits->text[digits->count++] = *c;
    }
    const char* first = e + 1;
    if (first != result.ptr && *first == '+')
        ++first;
    if (std::from_chars(first, result.ptr, digits->exponent).ec != std::errc())
        return false;
    while (digits->count > 1 && digits->text[digits->count - 1] == '0')
        --digits->count;
    return digits->count > 0;
}

} // namespace

QString formatGeneral(double value)
{
    if (!std::isfinite(value)) // a workbook cannot hold one; show what a formula would
        return QStringLiteral("#NUM!");
    if (value == 0)
        return QStringLiteral("0");
    const double magnitude = std::fabs(value);
    Digits digits;
    if (!scientificDigits(magnitude, -1, &digits) ||
        (digits.count > kMaxSignificantDigits &&
         !scientificDigits(magnitude, kMaxSignificantDigits - 1, &digits))) {
        return QString::number(value, 'g', kMaxSignificantDigits);
    }

    // At most a sign, 15 digits, a point and 9 leading zeros, or an exponent of 3 digits.
    char text[64];
    int length = 0;
    auto put = [&](char c) { text[length++] = c; };
    auto putDigits = [&](int from, int to) {
        for (int i = from; i < to; ++i)
            put(digits.text[i]);
    };
    if (value < 0)
        put('-');
    const int exponent = digits.exponent;
    if (exponent > kLargestPositionalExponent || exponent < kSmallestPositionalExponent) {
        put(digits.text[0]);
        if (digits.count > 1) {
            put('.');
            putDigits(1, digits.count);
        }
        put('E');
        put(exponent < 0 ? '-' : '+');
        const int absExponent = std::abs(exponent);
        if (absExponent < 10)
            put('0');
        length = int(std::to_chars(text + length, text + sizeof text, absExponent).ptr - text);
    } else if (exponent < 0) {
        put('0');
        put('.');
        for (int i = 0; i < -exponent - 1; ++i)
            put('0');
        putDigits(0, digits.count);
    } else if (digits.count <= exponent + 1) {
        putDigits(0, digits.count);
        for (int i = digits.count; i < exponent + 1; ++i)
            put('0');
    } else {
        putDigits(0, exponent + 1);
        put('.');
        putDigits(exponent + 1, digits.count);
    }
    return QString::fromLatin1(text, length);
}

QString formatDate(double serial, bool date1904)
{
    constexpr double kMillisecondsPerDay = 86400000.0;
    constexpr double kLastDay1900 = 2958465.0; // 9999-12-31
    if (!std::isfinite(serial) || serial < 0)
        return {};
    // Rounded to the millisecond first, as spreadsheet programs do, so that 0.99999999999
    // of a day is the next day rather than the last instant of this one.
    const double days = std::floor(std::round(serial * kMillisecondsPerDay) / kMillisecondsPerDay);
    const double lastDay = date1904 ? kLastDay1900 - 1462 : kLastDay1900;
    if (days > lastDay)
        return {};
    const qint64 day = qint64(days);
    QDate date;
    if (date1904) {
        date = QDate(1904, 1, 1).addDays(day);
    } else if (day == 0) {
        return QStringLiteral("1900-01-00");
    } else if (day == 60) {
        return QStringLiteral("1900-02-29");
    } else {
        date = QDate(1899, 12, day < 60 ? 31 : 30).addDays(day);
    }
    return date.toString(u"yyyy-MM-dd");
}

bool parseNumber(QStringView text, double* value)
{
    text = text.trimmed();
    if (!text.isEmpty() && text.front() == u'+')
        text = text.mid(1);
    char buffer[64];
    if (text.isEmpty() || text.size() > qsizetype(sizeof buffer))
        return false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c > 127)
            return false;
        buffer[i] = char(c);
    }
    const char* end = buffer + text.size();
    double result = 0;
    const std::from_chars_result parsed =
        std::from_chars(buffer, end, result, std::chars_format::general);
    if (parsed.ec != std::errc() || parsed.ptr != end || !std::isfinite(result))
        return false;
    *value = result;
    return true;
}

bool parseCellReference(QStringView reference, int* column, int* row)
{
    qsizetype i = 0;
    qint64 col = 0;
    while (i < reference.size() && i < 4) {
        const char16_t c = reference[i].unicode();
        if (c >= u'A' && c <= u'Z')
            col = col * 26 + (c - u'A' + 1);
        else if (c >= u'a' && c <= u'z')
            col = col * 26 + (c - u'a' + 1);
        else
            break;
        ++i;
    }
    if (i == 0 || i > 3)
        return false;
    int r = 0;
    if (i < reference.size()) {
        r = parseIndex(reference.mid(i), 0x7FFFFFFF);
        if (r <= 0)
            return false;
    }
    *column = int(col - 1);
    *row = r;
    return true;
}

int parseIndex(QStringView text, int limit)
{
    if (text.isEmpty() || text.size() > 10)
        return -1;
    qint64 value = 0;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9')
            return -1;
        value = value * 10 + (c.unicode() - u'0');
    }
    return value > limit ? -1 : int(value);
}

} // namespace Xlsx::Internal::CellText
