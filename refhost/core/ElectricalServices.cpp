#include "ElectricalServices.h"

#include <QRegularExpression>
#include <QSqlError>
#include <QSqlField>
#include <QSqlRecord>

#include <algorithm>

namespace RefHost {

namespace {

void upperCaseColumns(CVRQueryResponse& response)
{
    QList<CVRColumn> columns = response.getColumns();
    for (CVRColumn& column : columns)
        column.name = column.name.toUpper();
    response.setColumns(std::move(columns));
}

} // namespace

ElectricalServices::ElectricalServices(std::unique_ptr<DatabaseConnection> connection,
                                       Settings settings, Console& console)
    : m_connection(std::move(connection)), m_settings(std::move(settings)), m_console(console),
      m_runner(console)
{}

ElectricalServices::~ElectricalServices()
{
    // Statements must go before the connection they were prepared on.
    m_propertyQuery = QSqlQuery();
    m_blockNameQuery = QSqlQuery();
    m_bdkvQueries.clear();
}

QString ElectricalServices::propertyValueSql()
{
    return QStringLiteral("SELECT VALUE FROM CUSTOM_PROPERTIES"
                          " WHERE RTRIM(LTRIM(ITEM_KEY)) = :key"
                          " AND UPPER(RTRIM(LTRIM(TAG))) = :tag AND ITEM_TYPE IN (0,1,2)");
}

QString ElectricalServices::bdkvColumnSql(const QString& column)
{
    return QStringLiteral("SELECT %1 AS VALUE FROM BDKV WHERE KV_KEY = :key AND KV_KEY_NOR = "
                          ":standard")
        .arg(column);
}

QString ElectricalServices::blockNameSql()
{
    return QStringLiteral("SELECT KV_DWG FROM BDKV WHERE KV_KEY = :key AND KV_KEY_NOR = :standard");
}

QString ElectricalServices::languagesSql()
{
    return QStringLiteral("SELECT DISTINCT MENU_KEY_LANG FROM BDMENUS ORDER BY MENU_KEY_LANG");
}

CVRQueryResponse ElectricalServices::RunQuery(const std::shared_ptr<CVRQuery>& query)
{
    if (!query)
        return CVRQueryResponse::failure(QStringLiteral("no query given"));
    const QString key = query->cacheKey();
    if (!key.isEmpty()) {
        const auto cached = m_cache.constFind(key);
        if (cached != m_cache.constEnd())
            return cached.value();
    }
    CVRQueryResponse response = query->Execute(m_connection->database());
    if (m_connection->isPostgres()) {
        // Every transaction of the session starts read-only. A statement may change that
        // default (SET, set_config) though not for itself: put it back before the next one.
        QSqlQuery reset(m_connection->database());
        reset.exec(QStringLiteral("RESET default_transaction_read_only"));
    }
    upperCaseColumns(response);
    if (!key.isEmpty() && response.succeeded())
        m_cache.insert(key, response);
    return response;
}

KVString ElectricalServices::GetCurrentLanguage()
{
    if (!m_settings.language.isEmpty())
        return m_settings.language;
    const QList<int> languages = GetDescriptionLanguages();
    return languages.isEmpty() ? QString() : QString::number(languages.first());
}

QList<int> ElectricalServices::GetDescriptionLanguages()
{
    if (m_languages)
        return *m_languages;
    QList<int> languages;
    QSqlQuery query(m_connection->database());
    if (query.exec(languagesSql())) {
        while (query.next()) {
            bool ok = false;
            const int language = query.value(0).toString().trimmed().toInt(&ok);
            if (ok && !languages.contains(language))
                languages.append(language);
        }
    }
    std::sort(languages.begin(), languages.end());
    m_languages = languages;
    return languages;
}

ILongOperationRunner* ElectricalServices::GetLongOperationRunner(CFxDocument*)
{
    return &m_runner;
}

CVRQueryResponse ElectricalServices::runPrepared(QSqlQuery& query, const QString& sql,
                                                 const QList<QPair<QString, QVariant>>& values)
{
    if (query.lastQuery() != sql) {
        query = QSqlQuery(m_connection->database());
        if (!query.prepare(sql))
            return CVRQueryResponse::failure(query.lastError().text());
    }
    for (const auto& [name, value] : values)
        query.bindValue(name, value);
    if (!query.exec())
        return CVRQueryResponse::failure(query.lastError().text());
    CVRQueryResponse response = collectResponse(query);
    query.finish();
    upperCaseColumns(response);
    return response;
}

CVRQueryResponse ElectricalServices::GetComponentPropertyValue(const KVString& componentKey,
                                                               const KVString& propertyName)
{
    const QString key = componentKey.trimmed();
    const QString property = propertyName.trimmed();
    CVRQueryResponse response =
        runPrepared(m_propertyQuery, propertyValueSql(),
                    {{QStringLiteral(":key"), key}, {QStringLiteral(":tag"), property.toUpper()}});
    if (response.failed() || !response.getResult().isEmpty())
        return response;

    const std::optional<QString> column = bdkvColumn(property);
    if (!column)
        return response;
    return runPrepared(
        m_bdkvQueries[*column], bdkvColumnSql(*column),
        {{QStringLiteral(":key"), key}, {QStringLiteral(":standard"), m_settings.standard}});
}

KVString ElectricalServices::GetComponentBlockName(const KVString& componentKey,
                                                   const KVString& standard)
{
    const CVRQueryResponse response =
        runPrepared(m_blockNameQuery, blockNameSql(),
                    {{QStringLiteral(":key"), componentKey.trimmed()},
                     {QStringLiteral(":standard"), QString(standard)}});
    if (response.failed()) {
        m_console.error(
            QStringLiteral("%1: block name of component %2: %3")
                .arg(m_connection->description(), componentKey, response.errorText().trimmed()));
        return {};
    }
    const QVariant value = response.getSingleResult();
    return value.isValid() ? value.toString().trimmed() : QString();
}

// The column of BDKV named `name` ignoring case, spelled as the database spells it. Only names
// that are plain identifiers can be columns, so the name never reaches the SQL text unchecked.
std::optional<QString> ElectricalServices::bdkvColumn(const QString& name)
{
    if (!m_bdkvColumns) {
        QStringList columns;
        const QSqlDatabase& db = m_connection->database();
        QSqlRecord record = db.record(QStringLiteral("BDKV"));
        if (record.isEmpty())
            record = db.record(QStringLiteral("bdkv"));
        for (int i = 0; i < record.count(); ++i)
            columns.append(record.fieldName(i));
        m_bdkvColumns = columns;
    }
    for (const QString& column : std::as_const(*m_bdkvColumns)) {
        if (column.compare(name, Qt::CaseInsensitive) != 0)
            continue;
        static const QRegularExpression identifier(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
        if (identifier.match(column).hasMatch())
            return column;
    }
    return std::nullopt;
}

} // namespace RefHost
