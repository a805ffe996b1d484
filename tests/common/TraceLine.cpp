#include "TraceLine.h"

#include <QJsonDocument>

namespace TraceLine {
namespace {

QString json(const QJsonValue& value)
{
    const QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(text.mid(1, text.size() - 2));
}

QString array(const QJsonArray& values)
{
    return QString::fromUtf8(QJsonDocument(values).toJson(QJsonDocument::Compact));
}

// One line from (key, JSON text) pairs, in order.
QString line(std::initializer_list<QPair<const char*, QString>> fields)
{
    QString text = QStringLiteral("{");
    bool first = true;
    for (const auto& [key, value] : fields) {
        if (!first)
            text += u',';
        first = false;
        text += json(QString::fromLatin1(key)) + u':' + value;
    }
    return text + u'}';
}

QString op(const char* name)
{
    return json(QString::fromLatin1(name));
}

QString boolean(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

QString getvar(const QString& name, const QString& value)
{
    return line({{"op", op("getvar")}, {"name", json(name)}, {"value", json(value)}});
}

QString setvar(const QString& name, const QString& value)
{
    return line({{"op", op("setvar")}, {"name", json(name)}, {"value", json(value)}});
}

QString setvar(const QString& name, const char* value)
{
    return setvar(name, QString::fromUtf8(value));
}

QString setvar(const QString& name, bool value)
{
    return line({{"op", op("setvar")}, {"name", json(name)}, {"value", boolean(value)}});
}

QString setvarList(const QString& name, const QStringList& values)
{
    return line({{"op", op("setvar")},
                 {"name", json(name)},
                 {"value", array(QJsonArray::fromStringList(values))}});
}

QString getLayer(const QString& layer)
{
    return line({{"op", op("getLayer")}, {"value", json(layer)}});
}

QString fileExists(const QString& path, bool exists)
{
    return line({{"op", op("fileExists")}, {"path", json(path)}, {"value", boolean(exists)}});
}

QString insertBlock(const QString& path, const QString& name, const QString& layer, double x,
                    double y, double angle)
{
    return line({{"op", op("insertBlock")},
                 {"path", json(path)},
                 {"name", json(name)},
                 {"layer", json(layer)},
                 {"x", json(x)},
                 {"y", json(y)},
                 {"angle", json(angle)}});
}

QString regen()
{
    return line({{"op", op("regen")}});
}

QString writeAttribute(const QString& layer, const QString& block, const QString& tag,
                       const QString& value)
{
    return line({{"op", op("writeAttribute")},
                 {"layer", json(layer)},
                 {"block", json(block)},
                 {"tag", json(tag)},
                 {"value", json(value)}});
}

QString invoke(const QString& function, const QStringList& args)
{
    return invokeTyped(function, QJsonArray::fromStringList(args));
}

QString invokeTyped(const QString& function, const QJsonArray& args)
{
    return line({{"op", op("invoke")}, {"fn", json(function)}, {"args", array(args)}});
}

QString lispvar(const QString& name, const std::optional<QJsonArray>& value)
{
    return line({{"op", op("lispvar")},
                 {"name", json(name)},
                 {"value", value ? array(*value) : QStringLiteral("null")}});
}

QString print(const QString& text)
{
    return line({{"op", op("print")}, {"text", json(text)}});
}

QString longOperation(const QString& title)
{
    return line({{"op", op("longOperation")}, {"title", json(title)}});
}

QString progress(int total)
{
    return line({{"op", op("progress")}, {"total", QString::number(total)}});
}

QString meter()
{
    return line({{"op", op("meter")}});
}

QString query(const QString& sql, const QList<QPair<QString, QJsonValue>>& binds)
{
    QString bindText = QStringLiteral("{");
    for (qsizetype i = 0; i < binds.size(); ++i) {
        if (i)
            bindText += u',';
        bindText += json(binds[i].first) + u':' + json(binds[i].second);
    }
    bindText += u'}';
    return line({{"op", op("query")}, {"sql", json(sql)}, {"bind", bindText}});
}

QString queryFailed(const QString& error)
{
    return line({{"op", op("queryFailed")}, {"error", json(error)}});
}

QString critical(const QString& text)
{
    return line({{"op", op("message")}, {"kind", op("critical")}, {"text", json(text)}});
}

QString warning(const QString& text)
{
    return line({{"op", op("message")}, {"kind", op("warning")}, {"text", json(text)}});
}

QString blockName(const QString& key, const QString& standard, const QString& value)
{
    return line({{"op", op("blockName")},
                 {"key", json(key)},
                 {"standard", json(standard)},
                 {"value", json(value)}});
}

QString service(const QString& call, const std::optional<QString>& value)
{
    return line({{"op", op("service")},
                 {"call", json(call)},
                 {"value", value ? json(*value) : QStringLiteral("null")}});
}

QString diff(const QStringList& actual, const QStringList& expected)
{
    if (actual == expected)
        return {};
    qsizetype at = 0;
    while (at < actual.size() && at < expected.size() && actual[at] == expected[at])
        ++at;
    QString text = QStringLiteral("traces differ at line %1 (actual %2 lines, expected %3)\n")
                       .arg(at + 1)
                       .arg(actual.size())
                       .arg(expected.size());
    text += QStringLiteral("   actual: %1\n").arg(actual.value(at, QStringLiteral("<end>")));
    text += QStringLiteral(" expected: %1\n").arg(expected.value(at, QStringLiteral("<end>")));
    text += QStringLiteral("actual trace:\n");
    for (qsizetype i = 0; i < actual.size(); ++i)
        text += QStringLiteral("%1%2: %3\n").arg(i == at ? u'>' : u' ').arg(i + 1).arg(actual[i]);
    return text;
}

} // namespace TraceLine
