#include "ReaderChecks.h"

namespace ReaderChecks {

namespace {

QString& outcome()
{
    static QString text;
    return text;
}

} // namespace

QString lastOutcome()
{
    return outcome();
}

void recordOutcome(const QString& text)
{
    outcome() = text;
}

const QList<Reader>& readers()
{
    static const QList<Reader> list = {
        {QStringLiteral("settings_main"), &settingsMainFile},
        {QStringLiteral("settings_list"), &settingsListFile},
        {QStringLiteral("workbook"), &workbook},
        {QStringLiteral("workbook_parts"), &workbookParts},
        {QStringLiteral("tree_json"), &treeJson},
        {QStringLiteral("settings_json"), &settingsJson},
        {QStringLiteral("dxf_block"), &dxfBlock},
        {QStringLiteral("dxf_drawing"), &dxfDrawing},
    };
    return list;
}

const Reader* findReader(const QString& name)
{
    for (const Reader& reader : readers()) {
        if (reader.name == name)
            return &reader;
    }
    return nullptr;
}

} // namespace ReaderChecks
