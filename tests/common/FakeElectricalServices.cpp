#include "FakeElectricalServices.h"

#include <QSqlError>

namespace {

// The host's own statements, not the module's: prepared here with their bound values.
class HostStatement final : public CVRQuery
{
public:
    HostStatement(QString sql, QList<QPair<QString, QVariant>> binds)
        : m_sql(std::move(sql)), m_binds(std::move(binds))
    {}
    QString cacheKey() const override { return {}; }
    QSqlQuery statement(const QSqlDatabase& db) const override
    {
        QSqlQuery query(db);
        query.prepare(m_sql);
        for (const auto& [name, value] : m_binds)
            query.bindValue(name, value);
        return query;
    }

private:
    QString m_sql;
    QList<QPair<QString, QVariant>> m_binds;
};

} // namespace

CVRQueryResponse FakeElectricalServices::RunQuery(const std::shared_ptr<CVRQuery>& query)
{
    ++m_queries;
    if (m_connection.isEmpty() || !QSqlDatabase::contains(m_connection))
        return CVRQueryResponse::failure(QStringLiteral("no database is open"));
    if (!query->IsSelect())
        return CVRQueryResponse::failure(QStringLiteral("the query service only reads"));
    const QSqlDatabase db = QSqlDatabase::database(m_connection, false);
    CVRQueryResponse response = query->Execute(db);
    // PostgreSQL folds unquoted names to lower case; the standard's databases name their
    // columns in upper case and the host reports them so.
    if (db.driverName() == QLatin1String("QPSQL")) {
        QList<CVRColumn> columns = response.getColumns();
        for (CVRColumn& column : columns)
            column.name = column.name.toUpper();
        response.setColumns(std::move(columns));
    }
    return response;
}

CVRQueryResponse FakeElectricalServices::GetComponentPropertyValue(const KVString& componentKey,
                                                                   const KVString& propertyName)
{
    if (m_connection.isEmpty() || !QSqlDatabase::contains(m_connection))
        return CVRQueryResponse::failure(QStringLiteral("no database is open"));
    const HostStatement statement(
        QStringLiteral("SELECT VALUE FROM CUSTOM_PROPERTIES WHERE RTRIM(LTRIM(ITEM_KEY)) = :key "
                       "AND TAG = :tag"),
        {{QStringLiteral(":key"), componentKey.trimmed()}, {QStringLiteral(":tag"), propertyName}});
    return statement.Execute(QSqlDatabase::database(m_connection, false));
}

KVString FakeElectricalServices::GetComponentBlockName(const KVString& componentKey,
                                                       const KVString& standard)
{
    if (m_connection.isEmpty() || !QSqlDatabase::contains(m_connection))
        return {};
    const HostStatement statement(
        QStringLiteral("SELECT KV_DWG FROM BDKV WHERE KV_KEY = :key AND KV_KEY_NOR = :standard"),
        {{QStringLiteral(":key"), componentKey}, {QStringLiteral(":standard"), standard}});
    const CVRQueryResponse response =
        statement.Execute(QSqlDatabase::database(m_connection, false));
    if (response.failed())
        return {};
    return response.getSingleResult().toString().trimmed();
}
