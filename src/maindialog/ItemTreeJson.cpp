#include "ItemTreeJson.h"

#include "host/Translate.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <cmath>
#include <limits>

namespace ItemTreeJson {
namespace {

struct ChildRecord
{
    TVNodeKind kind = TVNodeKind::None;
    KVString key;
    KVString description;
};

struct ItemRecord
{
    KVString name;
    QStringList attributes;
    bool expanded = false;
    QList<ChildRecord> children;
};

// A problem at one place of the document.
struct Problem
{
    QString path;
    QString text;
};

const char* kindName(TVNodeKind kind)
{
    switch (kind) {
    case TVNodeKind::Symbol:
        return "symbol";
    case TVNodeKind::Page:
        return "page";
    case TVNodeKind::HorizontalSpace:
        return "hspace";
    case TVNodeKind::VerticalSpace:
        return "vspace";
    default:
        return nullptr;
    }
}

std::optional<TVNodeKind> kindFromName(const QString& name)
{
    for (const TVNodeKind kind : {TVNodeKind::Symbol, TVNodeKind::Page, TVNodeKind::HorizontalSpace,
                                  TVNodeKind::VerticalSpace}) {
        if (name == QLatin1String(kindName(kind)))
            return kind;
    }
    return std::nullopt;
}

QString quoted(const QString& text)
{
    return u'"' + text + u'"';
}

// Rejects members other than `allowed`, so that a misspelt member is not silently ignored.
std::optional<Problem> checkMembers(const QJsonObject& object, const QString& path,
                                    const QStringList& allowed)
{
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (!allowed.contains(it.key()))
            return Problem{path, QStringLiteral("unknown member %1").arg(quoted(it.key()))};
    }
    return std::nullopt;
}

std::optional<Problem> readString(const QJsonObject& object, const QString& key,
                                  const QString& path, bool required, KVString& out)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined()) {
        if (required)
            return Problem{path, QStringLiteral("missing member %1").arg(quoted(key))};
        return std::nullopt;
    }
    if (!value.isString())
        return Problem{path + u'.' + key, QStringLiteral("expected a string")};
    out = value.toString();
    return std::nullopt;
}

std::optional<Problem> readInt(const QJsonObject& object, const QString& key, int& out)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined())
        return Problem{QString(), QStringLiteral("missing member %1").arg(quoted(key))};
    const double number = value.toDouble();
    if (!value.isDouble() || std::trunc(number) != number ||
        number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
        return Problem{key, QStringLiteral("expected a whole number")};
    out = static_cast<int>(number);
    return std::nullopt;
}

std::optional<Problem> readChild(const QJsonValue& value, const QString& path, ChildRecord& out)
{
    if (!value.isObject())
        return Problem{path, QStringLiteral("expected an object")};
    const QJsonObject object = value.toObject();
    KVString kindText;
    if (auto problem = readString(object, QStringLiteral("kind"), path, true, kindText))
        return problem;
    const std::optional<TVNodeKind> kind = kindFromName(kindText);
    if (!kind) {
        return Problem{path + QStringLiteral(".kind"),
                       QStringLiteral("unknown kind %1 (expected \"symbol\", \"page\", "
                                      "\"hspace\" or \"vspace\")")
                           .arg(quoted(kindText))};
    }
    out.kind = *kind;
    if (*kind != TVNodeKind::Symbol)
        return checkMembers(object, path, {QStringLiteral("kind")});
    if (auto problem = checkMembers(
            object, path,
            {QStringLiteral("kind"), QStringLiteral("key"), QStringLiteral("description")}))
        return problem;
    if (auto problem = readString(object, QStringLiteral("key"), path, true, out.key))
        return problem;
    return readString(object, QStringLiteral("description"), path, true, out.description);
}

std::optional<Problem> readItem(const QJsonValue& value, const QString& path, ItemRecord& out)
{
    if (!value.isObject())
        return Problem{path, QStringLiteral("expected an object")};
    const QJsonObject object = value.toObject();
    if (auto problem = checkMembers(object, path,
                                    {QStringLiteral("name"), QStringLiteral("attributes"),
                                     QStringLiteral("expanded"), QStringLiteral("children")}))
        return problem;
    if (auto problem = readString(object, QStringLiteral("name"), path, true, out.name))
        return problem;

    const QJsonValue attributes = object.value(QStringLiteral("attributes"));
    if (!attributes.isUndefined()) {
        if (!attributes.isArray())
            return Problem{path + QStringLiteral(".attributes"),
                           QStringLiteral("expected an array of strings")};
        const QJsonArray array = attributes.toArray();
        for (qsizetype i = 0; i < array.size(); ++i) {
            if (!array.at(i).isString()) {
                return Problem{path + QStringLiteral(".attributes[%1]").arg(i),
                               QStringLiteral("expected a string")};
            }
            out.attributes.append(array.at(i).toString());
        }
    }

    const QJsonValue expanded = object.value(QStringLiteral("expanded"));
    if (!expanded.isUndefined()) {
        if (!expanded.isBool())
            return Problem{path + QStringLiteral(".expanded"),
                           QStringLiteral("expected true or false")};
        out.expanded = expanded.toBool();
    }

    const QJsonValue children = object.value(QStringLiteral("children"));
    if (!children.isUndefined()) {
        if (!children.isArray())
            return Problem{path + QStringLiteral(".children"), QStringLiteral("expected an array")};
        const QJsonArray array = children.toArray();
        for (qsizetype i = 0; i < array.size(); ++i) {
            ChildRecord child;
            if (auto problem =
                    readChild(array.at(i), path + QStringLiteral(".children[%1]").arg(i), child))
                return problem;
            out.children.append(child);
        }
    }
    return std::nullopt;
}

std::optional<Problem> readItems(const QJsonArray& array, const QString& path,
                                 QList<ItemRecord>& out)
{
    for (qsizetype i = 0; i < array.size(); ++i) {
        ItemRecord item;
        if (auto problem = readItem(array.at(i), path + QStringLiteral("[%1]").arg(i), item))
            return problem;
        out.append(item);
    }
    return std::nullopt;
}

std::optional<Problem> readDocument(const QJsonDocument& document, QList<ItemRecord>& items,
                                    std::optional<Counts>& counts)
{
    if (document.isArray())
        return readItems(document.array(), QString(), items);
    if (!document.isObject()) {
        return Problem{QString(),
                       QStringLiteral("expected an array of items or an object with "
                                      "\"itemCount\", \"lastItemNumber\" and \"items\"")};
    }
    const QJsonObject object = document.object();
    if (auto problem = checkMembers(object, QString(),
                                    {QStringLiteral("itemCount"), QStringLiteral("lastItemNumber"),
                                     QStringLiteral("items")}))
        return problem;
    Counts read;
    if (auto problem = readInt(object, QStringLiteral("itemCount"), read.itemCount))
        return problem;
    if (auto problem = readInt(object, QStringLiteral("lastItemNumber"), read.lastItemNumber))
        return problem;
    const QJsonValue array = object.value(QStringLiteral("items"));
    if (array.isUndefined())
        return Problem{QString(), QStringLiteral("missing member \"items\"")};
    if (!array.isArray())
        return Problem{QStringLiteral("items"), QStringLiteral("expected an array of items")};
    if (auto problem = readItems(array.toArray(), QStringLiteral("items"), items))
        return problem;
    counts = read;
    return std::nullopt;
}

void fillTree(const QList<ItemRecord>& items, CTVNodesUtil& tree)
{
    tree.clear();
    for (const ItemRecord& item : items) {
        const TVNode node = tree.AddItem(item.name, makeAttributeList(item.attributes), false);
        for (const ChildRecord& child : item.children) {
            if (child.kind == TVNodeKind::Symbol) {
                tree.AddSymbol(node, TVNode(), child.description,
                               std::make_unique<CEComponente>(child.key, child.description), false);
            } else {
                // After the last child, or first when there is none yet.
                const TVNode last = tree.lastChild(node);
                tree.AddMarker(node, last.isNull() ? node : last, defaultMarkerText(child.kind),
                               child.kind, false);
            }
        }
        tree.setExpanded(node, item.expanded);
    }
}

QString lineAndColumn(const QByteArray& json, qsizetype offset)
{
    const QByteArray before = json.left(offset);
    const qsizetype line = before.count('\n') + 1;
    const qsizetype column = offset - (before.lastIndexOf('\n') + 1) + 1;
    return QStringLiteral("line %1, column %2").arg(line).arg(column);
}

QJsonObject childObject(const CTVNodesUtil& tree, TVNode child)
{
    const TVNodeKind kind = tree.GetKind(child);
    QJsonObject object{{QStringLiteral("kind"), QLatin1String(kindName(kind))}};
    if (kind == TVNodeKind::Symbol) {
        const CEComponente* symbol = tree.GetSymbol(child);
        object.insert(QStringLiteral("key"), symbol ? QString(symbol->GetKey()) : QString());
        object.insert(QStringLiteral("description"),
                      symbol ? QString(symbol->GetDescricao()) : QString(tree.GetName(child)));
    }
    return object;
}

QJsonArray itemArray(const CTVNodesUtil& tree)
{
    QJsonArray items;
    for (const TVNode node : tree.children()) {
        QJsonArray children;
        for (const TVNode child : tree.children(node)) {
            if (kindName(tree.GetKind(child)))
                children.append(childObject(tree, child));
        }
        items.append(QJsonObject{
            {QStringLiteral("name"), QString(tree.GetName(node))},
            {QStringLiteral("attributes"),
             QJsonArray::fromStringList(attributeTexts(tree.GetAttributes(node)))},
            {QStringLiteral("expanded"), tree.isExpanded(node)},
            {QStringLiteral("children"), children},
        });
    }
    return items;
}

} // namespace

ReadResult parse(const QByteArray& json, const QString& fileName, CTVNodesUtil& tree)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        return {
            QStringLiteral("%1: not valid JSON at %2: %3")
                .arg(fileName, lineAndColumn(json, parseError.offset), parseError.errorString()),
            std::nullopt};
    }
    QList<ItemRecord> items;
    std::optional<Counts> counts;
    if (const std::optional<Problem> problem = readDocument(document, items, counts)) {
        const QString where =
            problem->path.isEmpty() ? QString() : problem->path + QStringLiteral(": ");
        return {QStringLiteral("%1: %2%3").arg(fileName, where, problem->text), std::nullopt};
    }
    fillTree(items, tree);
    return {QString(), counts};
}

ReadResult read(const QString& path, CTVNodesUtil& tree)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {QStringLiteral("%1: cannot be read: %2").arg(path, file.errorString()),
                std::nullopt};
    return parse(file.readAll(), path, tree);
}

QByteArray toJson(const CTVNodesUtil& tree, const std::optional<Counts>& counts)
{
    if (!counts)
        return QJsonDocument(itemArray(tree)).toJson(QJsonDocument::Indented);
    const QJsonObject object{
        {QStringLiteral("itemCount"), counts->itemCount},
        {QStringLiteral("lastItemNumber"), counts->lastItemNumber},
        {QStringLiteral("items"), itemArray(tree)},
    };
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

QString write(const QString& path, const CTVNodesUtil& tree, const std::optional<Counts>& counts)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return QStringLiteral("%1: cannot be written: %2").arg(path, file.errorString());
    file.write(toJson(tree, counts));
    if (!file.commit())
        return QStringLiteral("%1: cannot be written: %2").arg(path, file.errorString());
    return {};
}

} // namespace ItemTreeJson
