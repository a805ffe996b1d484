#include "SettingsLine.h"

namespace {

bool isCWhiteSpace(QChar c)
{
    switch (c.unicode()) {
    case u' ':
    case u'\t':
    case u'\n':
    case u'\r':
    case u'\v':
    case u'\f':
        return true;
    default:
        return false;
    }
}

} // namespace

QString SettingsLine::trimmed(const QString& line)
{
    qsizetype begin = 0;
    qsizetype end = line.size();
    while (begin < end && isCWhiteSpace(line.at(begin)))
        ++begin;
    while (end > begin && isCWhiteSpace(line.at(end - 1)))
        --end;
    return line.mid(begin, end - begin);
}

QStringList SettingsLine::cells(const QString& line)
{
    return line.split(u';', Qt::SkipEmptyParts);
}
