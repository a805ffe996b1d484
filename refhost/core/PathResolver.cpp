#include "PathResolver.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

namespace RefHost {

namespace {

const QString kDwgSuffix = QStringLiteral(".dwg");

// The entry of `folder` named `name` ignoring case, exact spelling first.
std::optional<QString> findEntry(const QString& folder, const QString& name)
{
    const QString exact = folder + name;
    if (QFileInfo::exists(exact))
        return exact;
    const QDir dir(folder.isEmpty() ? QStringLiteral(".") : folder);
    const QStringList entries = dir.entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& entry : entries) {
        if (entry.compare(name, Qt::CaseInsensitive) == 0)
            return folder + entry;
    }
    return std::nullopt;
}

} // namespace

QString PathResolver::normalized(const QString& path)
{
    QString result = path;
    result.replace(QLatin1Char('\\'), QLatin1Char('/'));
    while (result.contains(QStringLiteral("//")))
        result.replace(QStringLiteral("//"), QStringLiteral("/"));
    return result;
}

std::optional<QString> PathResolver::resolve(const QString& path)
{
    const QString clean = normalized(path);
    if (clean.isEmpty())
        return std::nullopt;
    const bool absolute = clean.startsWith(QLatin1Char('/'));
    QString current = absolute ? QStringLiteral("/") : QString();
    const QStringList parts = clean.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    for (qsizetype i = 0; i < parts.size(); ++i) {
        const QString& part = parts.at(i);
        if (part == u".")
            continue;
        if (part == u"..") {
            current += QStringLiteral("../");
            continue;
        }
        const std::optional<QString> entry = findEntry(current, part);
        if (!entry)
            return std::nullopt;
        current = *entry;
        if (i + 1 < parts.size()) {
            if (!QFileInfo(current).isDir())
                return std::nullopt;
            current += QLatin1Char('/');
        }
    }
    if (current.isEmpty())
        return std::nullopt;
    return current;
}

bool PathResolver::fileExists(const QString& path)
{
    const std::optional<QString> found = resolve(path);
    return found && QFileInfo(*found).isFile();
}

std::optional<QString> PathResolver::blockSource(const QString& path)
{
    const QString clean = normalized(path);
    if (clean.endsWith(kDwgSuffix, Qt::CaseInsensitive)) {
        const QString dxf = clean.chopped(kDwgSuffix.size()) + QStringLiteral(".dxf");
        const std::optional<QString> found = resolve(dxf);
        if (found && QFileInfo(*found).isFile())
            return found;
        return std::nullopt;
    }
    const std::optional<QString> found = resolve(clean);
    if (found && QFileInfo(*found).isFile())
        return found;
    return std::nullopt;
}

bool PathResolver::blockFileExists(const QString& path)
{
    // The block source first: for a ".dwg" path it is the ".dxf" beside it, which usually
    // exists as spelt, while looking for the ".dwg" itself lists the folder in vain.
    return blockSource(path).has_value() || fileExists(path);
}

} // namespace RefHost
