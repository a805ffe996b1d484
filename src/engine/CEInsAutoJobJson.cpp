#include "CEInsAutoJobJson.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace CEInsAutoJobJson {
namespace {

QByteArray text(const QString& value)
{
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2);
}

// {"a": "x", "b": "y"} on one line, members in the given order.
QByteArray record(std::initializer_list<QPair<const char*, QString>> members)
{
    QByteArray line = "{";
    for (const auto& [name, value] : members) {
        if (line.size() > 1)
            line += ", ";
        line += text(QString::fromLatin1(name)) + ": " + text(value);
    }
    return line + '}';
}

// An array with one element per line at `indent`, or [] when empty.
QByteArray array(const QList<QByteArray>& elements, int indent)
{
    if (elements.isEmpty())
        return "[]";
    const QByteArray inner(indent + 2, ' ');
    QByteArray result = "[\n";
    for (qsizetype i = 0; i < elements.size(); ++i) {
        result += inner + elements.at(i);
        result += i + 1 < elements.size() ? ",\n" : "\n";
    }
    return result + QByteArray(indent, ' ') + ']';
}

QByteArray item(const CEInsAutoItem& item)
{
    QList<QByteArray> values;
    for (const CEInsAutoPair& pair : item.values)
        values.append(record({{"name", pair.name}, {"value", pair.value}}));
    QList<QByteArray> entries;
    for (const CEInsAutoEntry& entry : item.entries)
        entries.append(record({{"kind", entry.kind}, {"key", entry.key}}));
    return "{\n      \"name\": " + text(item.name) + ",\n      \"values\": " + array(values, 6) +
           ",\n      \"entries\": " + array(entries, 6) + "\n    }";
}

QByteArray fixedItems(const QList<CEInsAutoFixedItem>& items)
{
    QList<QByteArray> elements;
    for (const CEInsAutoFixedItem& fixed : items) {
        elements.append(
            record({{"name", fixed.name}, {"position", fixed.position}, {"angle", fixed.angle}}));
    }
    return array(elements, 2);
}

} // namespace

QByteArray toJson(const CEInsAutoJob& job)
{
    QList<QByteArray> fieldMap;
    for (const CEInsAutoFieldMap& field : job.fieldMap)
        fieldMap.append(record({{"fieldName", field.fieldName}, {"target", field.target}}));
    QList<QByteArray> items;
    for (const CEInsAutoItem& jobItem : job.items)
        items.append(item(jobItem));

    QByteArray json = "{\n";
    json += "  \"gapBeforeVar\": " + text(job.gapBeforeVar) + ",\n";
    json += "  \"gapAfterVar\": " + text(job.gapAfterVar) + ",\n";
    json += "  \"startPoint\": " + text(job.startPoint) + ",\n";
    json += "  \"spaceWidth\": " + text(job.spaceWidth) + ",\n";
    json += "  \"pageMode\": " + text(job.pageMode) + ",\n";
    json += "  \"fieldMap\": " + array(fieldMap, 2) + ",\n";
    json += "  \"items\": " + array(items, 2) + ",\n";
    json += "  \"pageComponents\": " + fixedItems(job.pageComponents) + ",\n";
    json += "  \"pageBlocks\": " + fixedItems(job.pageBlocks) + "\n";
    return json + "}\n";
}

} // namespace CEInsAutoJobJson
