#include "StandardNames.h"

#include <QSqlError>
#include <QSqlQuery>

namespace StandardNames {

QStringList list(const RefHost::DatabaseConnection& connection)
{
    QStringList standards;
    QSqlQuery query(connection.database());
    if (query.exec(QStringLiteral("SELECT DISTINCT KV_KEY_NOR FROM BDKV"))) {
        while (query.next())
            standards.append(query.value(0).toString().trimmed());
    }
    standards.removeAll(QString());
    standards.removeDuplicates();
    standards.sort();
    return standards;
}

QString checkKnown(const RefHost::DatabaseConnection& connection, const QString& standard)
{
    QSqlQuery query(connection.database());
    query.prepare(QStringLiteral("SELECT COUNT(*) FROM BDKV WHERE KV_KEY_NOR = :standard"));
    query.bindValue(QStringLiteral(":standard"), standard);
    if (!query.exec() || !query.next())
        return connection.description() +
               QStringLiteral(": cannot look the standard up in BDKV: %1")
                   .arg(query.lastError().text().simplified());
    if (query.value(0).toLongLong() > 0)
        return {};
    const QStringList standards = list(connection);
    return connection.description() +
           QStringLiteral(": the standard \"%1\" has no components (%2)")
               .arg(standard, standards.isEmpty() ? QStringLiteral("BDKV has no rows")
                                                  : QStringLiteral("the database holds %1")
                                                        .arg(standards.join(QStringLiteral(", "))));
}

} // namespace StandardNames
