#include "KVString.h"

#include <climits>

namespace {

// Length of the longest prefix of `s` (after leading blanks) that reads as a decimal number,
// in the manner of the C library's strtol/strtod but independent of the process locale.
qsizetype numberPrefix(const QString& s, qsizetype start, bool allowFraction)
{
    qsizetype i = start;
    if (i < s.size() && (s[i] == u'+' || s[i] == u'-'))
        ++i;
    const qsizetype digitsStart = i;
    while (i < s.size() && s[i].isDigit() && s[i].unicode() < 128)
        ++i;
    qsizetype digits = i - digitsStart;
    if (allowFraction && i < s.size() && s[i] == u'.') {
        qsizetype j = i + 1;
        while (j < s.size() && s[j].isDigit() && s[j].unicode() < 128)
            ++j;
        digits += j - i - 1;
        i = j;
    }
    if (digits == 0)
        return 0;
    if (allowFraction && i < s.size() && (s[i] == u'e' || s[i] == u'E')) {
        qsizetype j = i + 1;
        if (j < s.size() && (s[j] == u'+' || s[j] == u'-'))
            ++j;
        const qsizetype expStart = j;
        while (j < s.size() && s[j].isDigit() && s[j].unicode() < 128)
            ++j;
        if (j > expStart)
            i = j;
    }
    return i - start;
}

qsizetype skipBlanks(const QString& s)
{
    qsizetype i = 0;
    while (i < s.size() && s[i].isSpace())
        ++i;
    return i;
}

} // namespace

int KVString::toIntLenient() const
{
    const qsizetype start = skipBlanks(*this);
    const qsizetype len = numberPrefix(*this, start, false);
    if (len == 0)
        return 0;
    bool ok = false;
    const qlonglong value = QStringView(*this).mid(start, len).toLongLong(&ok);
    if (!ok) // out of range: saturate like strtol
        return mid(start, 1) == u"-" ? INT_MIN : INT_MAX;
    if (value > INT_MAX)
        return INT_MAX;
    if (value < INT_MIN)
        return INT_MIN;
    return static_cast<int>(value);
}

double KVString::toDoubleLenient() const
{
    const qsizetype start = skipBlanks(*this);
    const qsizetype len = numberPrefix(*this, start, true);
    if (len == 0)
        return 0.0;
    return QStringView(*this).mid(start, len).toDouble();
}
