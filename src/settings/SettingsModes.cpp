#include "SettingsModes.h"

#include "host/KVString.h"

namespace {

std::optional<int> entryIndex(const QString& stored, qsizetype entryCount)
{
    // A new settings file has no value at all, and its dialog shows no choice.
    if (stored.trimmed().isEmpty())
        return std::nullopt;
    const int value = KVString(stored).toIntLenient();
    if (value < 0 || value >= entryCount)
        return std::nullopt;
    return value;
}

} // namespace

QStringList separatorModeTexts()
{
    return {QStringLiteral("Automatic"), QStringLiteral("Automatic+space"),
            QStringLiteral("Horizontal space"), QStringLiteral("Page"),
            QStringLiteral("Vertical space")};
}

QStringList paginationModeTexts()
{
    return {QStringLiteral("Create page"), QStringLiteral("Using Page")};
}

std::optional<SeparatorMode> separatorModeFromText(const QString& stored)
{
    if (const auto index = entryIndex(stored, separatorModeTexts().size()))
        return static_cast<SeparatorMode>(*index);
    return std::nullopt;
}

std::optional<PaginationMode> paginationModeFromText(const QString& stored)
{
    if (const auto index = entryIndex(stored, paginationModeTexts().size()))
        return static_cast<PaginationMode>(*index);
    return std::nullopt;
}
