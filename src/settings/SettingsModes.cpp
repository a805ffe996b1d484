#include "SettingsModes.h"

#include "host/KVString.h"

#include <QtGlobal>

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

// The entries are translated where the dialog shows them; the markers let lupdate find them.
QStringList separatorModeTexts()
{
    return {QStringLiteral(QT_TRANSLATE_NOOP("KVInsertAuto", "Automatic")),
            QStringLiteral(QT_TRANSLATE_NOOP("KVInsertAuto", "Automatic+space")),
            QStringLiteral(QT_TRANSLATE_NOOP("KVInsertAuto", "Horizontal space")),
            QStringLiteral(QT_TRANSLATE_NOOP("KVInsertAuto", "Page")),
            QStringLiteral(QT_TRANSLATE_NOOP("KVInsertAuto", "Vertical space"))};
}

QStringList paginationModeTexts()
{
    return {QStringLiteral(QT_TRANSLATE_NOOP("KVInsertAuto", "Create page")),
            QStringLiteral(QT_TRANSLATE_NOOP("KVInsertAuto", "Using Page"))};
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
