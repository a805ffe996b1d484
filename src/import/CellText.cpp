#include "CellText.h"

#include <QDate>

#include <charconv>
#include <cmath>

namespace Xlsx::Internal::CellText {

namespace {

constexpr int kMaxSignificantDigits = 15;
constexpr int kLargestPositionalExponent = 14;
constexpr int kSmallestPositionalExponent = -9;

// Decimal digits and exponent of |value| in scientific notation, shortest round-trip form,
// or rounded to `precision` digits after the first when precision >= 0.
bool scientificDigits(double value, int precision, QByteArray* digits, int* exponent)
{
    char buffer[64];
    const std::to_chars_result result =
        precision < 0
            ? std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific)
            : std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific,
                            precision);
    if (result.ec != std::errc())
        return false;
    const std::string_view text(buffer, size_t(result.ptr - buffer));
    const size_t e = text.find('e');
    if (e == std::string_view::npos)
        return false;
    digits->clear();
    for (size_t i = 0; i < e; ++i) {
        if (text[i] >= '0' && text[i] <= '9')
            digits->append(text[i]);
    }
    int exp = 0;
    const char* first = text.data() + e + 1;
    if (*first == '+')
        ++first;
    if (std::from_chars(first, text.data() + text.size(), exp).ec != std::errc())
        return false;
    *exponent = exp;
    while (digits->size() > 1 && digits->endsWith('0'))
        digits->chop(1);
    return true;
}

} // namespace

QString formatGeneral(double value)
{
    if (!std::isfinite(value)) // a workbook cannot hold one; show what a formula would
        return QStringLiteral("#NUM!");
    if (value == 0)
        return QStringLiteral("0");
    const double magnitude = std::fabs(value);
    QByteArray digits;
    int exponent = 0;
    if (!scientificDigits(magnitude, -1, &digits, &exponent))
        return QString::number(value, 'g', kMaxSignificantDigits);
    if (digits.size() > kMaxSignificantDigits &&
        !scientificDigits(magnitude, kMaxSignificantDigits - 1, &digits, &exponent)) {
        return QString::number(value, 'g', kMaxSignificantDigits);
    }

    QByteArray text;
    if (value < 0)
        text.append('-');
    if (exponent > kLargestPositionalExponent || exponent < kSmallestPositionalExponent) {
        text.append(digits[0]);
        if (digits.size() > 1) {
            text.append('.');
            text.append(digits.constData() + 1, digits.size() - 1);
        }
        text.append(exponent < 0 ? "E-" : "E+");
        const int absExponent = std::abs(exponent);
        if (absExponent < 10)
            text.append('0');
        text.append(QByteArray::number(absExponent));
    } else if (exponent < 0) {
        text.append("0.");
        text.append(QByteArray(-exponent - 1, '0'));
        text.append(digits);
    } else if (digits.size() <= exponent + 1) {
        text.append(digits);
        text.append(QByteArray(exponent + 1 - digits.size(), '0'));
    } else {
        text.append(digits.constData(), exponent + 1);
        text.append('.');
        text.append(digits.constData() + exponent + 1, digits.size() - exponent - 1);
    }
    return QString::fromLatin1(text);
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
