#include "TranslationForm.h"

#include <QRegularExpression>

namespace TranslationForm {

namespace {

QStringList allMatches(const QRegularExpression& expression, const QString& text)
{
    QStringList found;
    for (auto it = expression.globalMatch(text); it.hasNext();)
        found.append(it.next().captured(0));
    return found;
}

} // namespace

QStringList placeholders(const QString& text)
{
    static const QRegularExpression marker(QStringLiteral("%(\\d+)"));
    QStringList found = allMatches(marker, text);
    found.sort();
    return found;
}

QString filterPattern(const QString& text)
{
    static const QRegularExpression filter(QStringLiteral("^.+ (\\([^()]*\\)\\|[^|]*\\|\\|)$"));
    const auto match = filter.match(text);
    return match.hasMatch() ? match.captured(1) : QString();
}

QStringList patternGroups(const QString& text)
{
    static const QRegularExpression group(QStringLiteral("\\([^()]*\\*[^()]*\\)"));
    return allMatches(group, text);
}

QStringList upperCaseWords(const QString& text)
{
    static const QRegularExpression word(QStringLiteral("\\b[A-Z][A-Z0-9_]{1,}\\b"));
    QStringList found = allMatches(word, text);
    found.sort();
    return found;
}

QString leadingSpace(const QString& text)
{
    qsizetype i = 0;
    while (i < text.size() && text.at(i).isSpace())
        ++i;
    return text.left(i);
}

QString trailingSpace(const QString& text)
{
    qsizetype i = text.size();
    while (i > 0 && text.at(i - 1).isSpace())
        --i;
    return text.mid(i);
}

} // namespace TranslationForm
