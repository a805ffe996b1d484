#include "SettingsJson.h"

#include "host/Translate.h"
#include "settings/SettingsModes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <limits>

namespace {

// Reads the JSON members into the dialog's contents, naming the first member that is wrong.
class JsonReader
{
public:
    std::optional<QString> error;

    QString text(const QJsonObject& object, const QString& key, const QString& where)
    {
        const QJsonValue value = object.value(key);
        if (!value.isString()) {
            fail(where + u'.' + key, value, QStringLiteral("a string"));
            return {};
        }
        return value.toString();
    }

    bool boolean(const QJsonObject& object, const QString& key, const QString& where)
    {
        const QJsonValue value = object.value(key);
        if (!value.isBool()) {
            fail(where + u'.' + key, value, QStringLiteral("true or false"));
            return false;
        }
        return value.toBool();
    }

    // A list index: a JSON integer, or a string holding a decimal integer (as dump prints it).
    int index(const QJsonObject& object, const QString& key, const QString& where)
    {
        const QJsonValue value = object.value(key);
        static const QRegularExpression decimal(QStringLiteral("^-?[0-9]{1,10}$"));
        if (value.isString() && decimal.match(value.toString()).hasMatch()) {
            bool ok = false;
            const int number = value.toString().toInt(&ok);
            if (ok)
                return number;
        }
        if (value.isDouble()) {
            const double number = value.toDouble();
            // The range first: converting a double beyond the integer's range is undefined.
            if (number >= std::numeric_limits<int>::min() &&
                number <= std::numeric_limits<int>::max() &&
                number == static_cast<double>(static_cast<int>(number)))
                return static_cast<int>(number);
        }
        fail(where + u'.' + key, value, QStringLiteral("an integer"));
        return kNoIndex;
    }

    // Checks that `number`, read by index(), is the index of an entry of a list of `entries`
    // entries or -1 for none: the only values the dialog can hold. Types are checked before
    // ranges, so a member of the wrong type is the one reported.
    void checkListIndex(int number, const QString& where, qsizetype entries)
    {
        if (error || (number >= kNoModeChosen && number < entries))
            return;
        error = QStringLiteral("%1 must be -1 (no entry chosen) or an entry of the list, 0 to %2, "
                               "not %3")
                    .arg(where)
                    .arg(entries - 1)
                    .arg(number);
    }

    QJsonObject object(const QJsonValue& value, const QString& where)
    {
        if (!value.isObject())
            fail(where, value, QStringLiteral("an object"));
        return value.toObject();
    }

    QJsonArray array(const QJsonObject& object, const QString& key, const QString& where)
    {
        const QJsonValue value = object.value(key);
        if (!value.isArray())
            fail(where + u'.' + key, value, QStringLiteral("an array"));
        return value.toArray();
    }

private:
    static constexpr int kNoIndex = -1;

    static QString kindOf(const QJsonValue& value)
    {
        switch (value.type()) {
        case QJsonValue::Null:
            return QStringLiteral("null");
        case QJsonValue::Bool:
            return QStringLiteral("a boolean");
        case QJsonValue::Double:
            return QStringLiteral("a number");
        case QJsonValue::String:
            return QStringLiteral("a string");
        case QJsonValue::Array:
            return QStringLiteral("an array");
        case QJsonValue::Object:
            return QStringLiteral("an object");
        case QJsonValue::Undefined:
            break;
        }
        return QStringLiteral("missing");
    }

    void fail(const QString& where, const QJsonValue& value, const QString& expected)
    {
        if (error)
            return;
        error = value.isUndefined()
                    ? QStringLiteral("%1 is missing (expected %2)").arg(where, expected)
                    : QStringLiteral("%1 must be %2, not %3").arg(where, expected, kindOf(value));
    }
};

QList<SettingsDialogContents::PlacementLine>
placementLines(JsonReader& reader, const QJsonObject& root, const QString& key)
{
    QList<SettingsDialogContents::PlacementLine> lines;
    const QJsonArray rows = reader.array(root, key, QStringLiteral("$"));
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const QString where = QStringLiteral("$.%1[%2]").arg(key).arg(i);
        const QJsonObject row = reader.object(rows.at(i), where);
        if (reader.error)
            break;
        lines.append({reader.text(row, QStringLiteral("blockName"), where),
                      reader.text(row, QStringLiteral("position"), where),
                      reader.text(row, QStringLiteral("angle"), where)});
    }
    return lines;
}

} // namespace

SettingsJsonResult settingsContentsFromJson(const QByteArray& json)
{
    SettingsJsonResult result;
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        result.problem = QStringLiteral("malformed JSON at offset %1: %2")
                             .arg(parseError.offset)
                             .arg(parseError.errorString());
        return result;
    }
    if (!document.isObject()) {
        result.problem = QStringLiteral("$ must be an object");
        return result;
    }

    JsonReader reader;
    const QJsonObject root = document.object();
    const QString mainWhere = QStringLiteral("$.main");
    const QJsonObject main = reader.object(root.value(QStringLiteral("main")), mainWhere);
    SettingsDialogContents contents;
    if (!reader.error) {
        contents.gapBeforeVar = reader.text(main, QStringLiteral("gapBeforeVar"), mainWhere);
        contents.gapAfterVar = reader.text(main, QStringLiteral("gapAfterVar"), mainWhere);
        contents.startPoint = reader.text(main, QStringLiteral("startPoint"), mainWhere);
        contents.spaceWidth = reader.text(main, QStringLiteral("spaceWidth"), mainWhere);
        contents.separatorIndex = reader.index(main, QStringLiteral("separatorMode"), mainWhere);
        contents.pageSize = reader.text(main, QStringLiteral("pageSize"), mainWhere);
        contents.paginationIndex = reader.index(main, QStringLiteral("pageMode"), mainWhere);
        reader.checkListIndex(contents.separatorIndex, mainWhere + QStringLiteral(".separatorMode"),
                              separatorModeTexts().size());
        reader.checkListIndex(contents.paginationIndex, mainWhere + QStringLiteral(".pageMode"),
                              paginationModeTexts().size());
        const QJsonArray fields = reader.array(main, QStringLiteral("fields"), mainWhere);
        for (qsizetype i = 0; i < fields.size() && !reader.error; ++i) {
            const QString where = QStringLiteral("$.main.fields[%1]").arg(i);
            const QJsonObject field = reader.object(fields.at(i), where);
            if (reader.error)
                break;
            // The dialog's "Show" cell holds the text of its chosen entry.
            const bool show = reader.boolean(field, QStringLiteral("show"), where);
            contents.fields.append({reader.text(field, QStringLiteral("fieldName"), where),
                                    reader.text(field, QStringLiteral("attribute"), where),
                                    reader.text(field, QStringLiteral("search"), where),
                                    show ? kvTr("Yes") : kvTr("No")});
        }
    }
    if (!reader.error)
        contents.blocks = placementLines(reader, root, QStringLiteral("blocks"));
    if (!reader.error)
        contents.symbols = placementLines(reader, root, QStringLiteral("symbols"));
    if (reader.error) {
        result.problem = *reader.error;
        return result;
    }
    result.contents = std::move(contents);
    return result;
}
