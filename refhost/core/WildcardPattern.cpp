#include "WildcardPattern.h"

namespace RefHost {

namespace {

// Splits at "," that are not escaped with "`" nor inside brackets.
QStringList splitAlternatives(const QString& pattern)
{
    QStringList parts;
    QString current;
    bool inBrackets = false;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern.at(i);
        if (c == u'`' && i + 1 < pattern.size()) {
            current += c;
            current += pattern.at(++i);
            continue;
        }
        if (c == u'[')
            inBrackets = true;
        else if (c == u']')
            inBrackets = false;
        if (c == u',' && !inBrackets) {
            parts.append(current);
            current.clear();
            continue;
        }
        current += c;
    }
    parts.append(current);
    return parts;
}

QString toRegularExpression(const QString& pattern)
{
    QString rx;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern.at(i);
        switch (c.unicode()) {
        case u'*':
            rx += QStringLiteral(".*");
            break;
        case u'?':
            rx += QStringLiteral(".");
            break;
        case u'#':
            rx += QStringLiteral("[0-9]");
            break;
        case u'@':
            rx += QStringLiteral("\\p{L}");
            break;
        case u'.':
            rx += QStringLiteral("[^\\p{L}0-9]");
            break;
        case u'`':
            if (i + 1 < pattern.size())
                rx += QRegularExpression::escape(QString(pattern.at(++i)));
            else
                rx += QRegularExpression::escape(QStringLiteral("`"));
            break;
        case u'[': {
            const qsizetype close = pattern.indexOf(QLatin1Char(']'), i + 1);
            if (close < 0) {
                rx += QRegularExpression::escape(QStringLiteral("["));
                break;
            }
            QString set = pattern.mid(i + 1, close - i - 1);
            bool negated = false;
            if (set.startsWith(QLatin1Char('~'))) {
                negated = true;
                set.remove(0, 1);
            }
            QString cls;
            for (qsizetype k = 0; k < set.size(); ++k) {
                if (set.at(k) == u'-' && k > 0 && k + 1 < set.size()) {
                    cls += QLatin1Char('-');
                    continue;
                }
                const QChar member = set.at(k);
                if (member == u'\\' || member == u']' || member == u'[' || member == u'^' ||
                    member == u'-')
                    cls += QLatin1Char('\\');
                cls += member;
            }
            rx += (negated ? QStringLiteral("[^") : QStringLiteral("[")) + cls + QLatin1Char(']');
            i = close;
            break;
        }
        default:
            rx += QRegularExpression::escape(QString(c));
        }
    }
    return QRegularExpression::anchoredPattern(rx);
}

} // namespace

WildcardPattern::WildcardPattern(const QString& pattern) : m_pattern(pattern)
{
    for (QString part : splitAlternatives(pattern)) {
        Alternative alternative;
        if (part.startsWith(QLatin1Char('~'))) {
            alternative.negated = true;
            part.remove(0, 1);
        }
        alternative.expression = QRegularExpression(toRegularExpression(part),
                                                    QRegularExpression::CaseInsensitiveOption);
        m_alternatives.append(alternative);
    }
}

bool WildcardPattern::matches(const QString& text) const
{
    for (const Alternative& alternative : m_alternatives) {
        if (!alternative.expression.isValid())
            continue;
        if (alternative.expression.match(text).hasMatch() != alternative.negated)
            return true;
    }
    return false;
}

} // namespace RefHost
