#include "StandardPalette.h"

#include <QHash>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>

#include <algorithm>

namespace RefHost {

namespace {

struct Entry
{
    QString key;
    int kind = CEPasta::kFolder;
    QString parent;
    int order = 0;
    QList<QPair<int, QString>> descriptions;
};

using Children = QHash<QString, QStringList>;

void attach(CEPasta* parent, std::vector<std::unique_ptr<CEPasta>>* roots, const QString& key,
            const QHash<QString, Entry>& entries, const Children& children, QSet<QString>& placed)
{
    if (placed.contains(key))
        return;
    placed.insert(key);
    const Entry& entry = entries[key];
    auto node = std::make_unique<CEPasta>(entry.kind, entry.key);
    for (const auto& [language, description] : entry.descriptions)
        node->setDescricao(language, description);
    CEPasta* added = node.get();
    if (parent) {
        parent->addChild(std::move(node));
    } else {
        roots->push_back(std::move(node));
    }
    for (const QString& child : children.value(key))
        attach(added, nullptr, child, entries, children, placed);
}

} // namespace

StandardPalette::StandardPalette(const DatabaseConnection& connection, QString standard)
    : m_connection(connection), m_standard(std::move(standard))
{}

QString StandardPalette::entriesSql()
{
    return QStringLiteral("SELECT MENU_KEY, MENU_KEY_LANG, MENU_DESCR, MENU_PARENT, MENU_KIND, "
                          "MENU_ORDER FROM BDMENUS");
}

QString StandardPalette::componentsSql()
{
    return QStringLiteral("SELECT DISTINCT KV_KEY FROM BDKV WHERE KV_KEY_NOR = :standard");
}

std::optional<CENorma> StandardPalette::GetNormaSelecionada()
{
    if (m_standard.isEmpty())
        return std::nullopt;
    return CENorma(m_standard, m_standard);
}

CEPastaTree StandardPalette::carga(const CENorma& standard, int)
{
    CEPastaTree tree;
    const QString where = m_connection.description();

    QSet<QString> components;
    QSqlQuery query(m_connection.database());
    if (!query.prepare(componentsSql())) {
        tree.error = QStringLiteral("%1: cannot read the palette: %2")
                         .arg(where, query.lastError().text().trimmed());
        return tree;
    }
    query.bindValue(QStringLiteral(":standard"), QString(standard.GetKey()));
    if (!query.exec()) {
        tree.error = QStringLiteral("%1: cannot read the palette: %2")
                         .arg(where, query.lastError().text().trimmed());
        return tree;
    }
    while (query.next())
        components.insert(query.value(0).toString().trimmed());
    if (components.isEmpty()) {
        tree.error = QStringLiteral("%1: the standard \"%2\" has no components")
                         .arg(where, QString(standard.GetKey()));
        return tree;
    }

    if (!query.exec(entriesSql())) {
        tree.error = QStringLiteral("%1: cannot read the palette: %2")
                         .arg(where, query.lastError().text().trimmed());
        return tree;
    }
    QHash<QString, Entry> entries;
    while (query.next()) {
        const QString key = query.value(0).toString().trimmed();
        const int kind = query.value(4).toInt();
        if (key.isEmpty() || (kind == CEPasta::kComponent && !components.contains(key)))
            continue;
        Entry& entry = entries[key];
        if (entry.key.isEmpty()) {
            entry.key = key;
            entry.kind = kind;
            entry.parent = query.value(3).toString().trimmed();
            entry.order = query.value(5).toInt();
        }
        entry.descriptions.append(
            {query.value(1).toString().trimmed().toInt(), query.value(2).toString().trimmed()});
    }

    Children children;
    QStringList top;
    for (const Entry& entry : std::as_const(entries)) {
        const bool atTop = entry.parent.isEmpty() || entry.parent == u"0" ||
                           !entries.contains(entry.parent) || entry.parent == entry.key;
        (atTop ? top : children[entry.parent]).append(entry.key);
    }
    const auto byOrder = [&entries](const QString& a, const QString& b) {
        const Entry& x = entries[a];
        const Entry& y = entries[b];
        return x.order != y.order ? x.order < y.order : x.key < y.key;
    };
    std::sort(top.begin(), top.end(), byOrder);
    for (QStringList& list : children)
        std::sort(list.begin(), list.end(), byOrder);

    QSet<QString> placed;
    for (const QString& key : std::as_const(top))
        attach(nullptr, &tree.roots, key, entries, children, placed);
    return tree;
}

} // namespace RefHost
