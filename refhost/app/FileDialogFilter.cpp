#include "FileDialogFilter.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace KvHost {

namespace {

// "Label (*.x)" loses its trailing parenthesis: the pattern part supplies it again.
QString bareLabel(QString label)
{
    const qsizetype bar = label.indexOf(QLatin1Char('|'));
    if (bar >= 0)
        label.truncate(bar);
    static const QRegularExpression trailingPatterns(QStringLiteral("\\s*\\([^()]*\\)\\s*$"));
    label.remove(trailingPatterns);
    return label.trimmed();
}

} // namespace

QStringList FileDialogFilter::toNameFilters(const QString& hostFilter)
{
    QStringList parts = hostFilter.split(QLatin1Char('&'));
    while (!parts.isEmpty() && parts.last().trimmed().isEmpty())
        parts.removeLast();
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QStringList patterns = parts.at(i + 1).split(QLatin1Char(';'), Qt::SkipEmptyParts);
        for (QString& pattern : patterns)
            pattern = pattern.trimmed();
        patterns.removeAll(QString());
        if (patterns.isEmpty())
            continue;
        QString label = bareLabel(parts.at(i));
        if (label.isEmpty())
            label = patterns.join(QLatin1Char(' '));
        filters.append(QStringLiteral("%1 (%2)").arg(label, patterns.join(QLatin1Char(' '))));
    }
    // A label without a pattern (an odd count) still offers its classic tail, if any.
    if (parts.size() % 2 == 1) {
        const QString& last = parts.last();
        const qsizetype bar = last.indexOf(QLatin1Char('|'));
        if (bar >= 0) {
            const QString pattern = last.mid(bar + 1).section(QStringLiteral("|"), 0, 0).trimmed();
            if (!pattern.isEmpty())
                filters.append(QStringLiteral("%1 (%2)").arg(bareLabel(last), pattern));
        }
    }
    if (filters.isEmpty())
        filters.append(QCoreApplication::translate("kvhost", "All Files (*)"));
    return filters;
}

QStringList FileDialogFilter::patternsOf(const QString& nameFilter)
{
    const qsizetype open = nameFilter.lastIndexOf(QLatin1Char('('));
    const qsizetype close = nameFilter.lastIndexOf(QLatin1Char(')'));
    if (open < 0 || close < open)
        return {};
    return nameFilter.mid(open + 1, close - open - 1).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

} // namespace KvHost
