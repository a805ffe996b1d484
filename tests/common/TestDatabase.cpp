#include "TestDatabase.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>
#include <QUuid>

namespace {

QString uniqueName(const char* prefix)
{
    return QString::fromLatin1(prefix) + QUuid::createUuid().toString(QUuid::Id128).left(12);
}

} // namespace

TestDatabase::TestDatabase() : m_connection(uniqueName("kv_test_")) {}

TestDatabase::~TestDatabase()
{
    close();
}

QString TestDatabase::postgresUrl()
{
    return qEnvironmentVariable("KV_TEST_PGURL");
}

bool TestDatabase::openSqlite(const QString& filePath)
{
    close();
    m_kind = Kind::SQLite;
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
    db.setDatabaseName(filePath);
    if (!db.open())
        return fail(filePath + QLatin1String(": ") + db.lastError().text());
    m_open = true;
    return true;
}

bool TestDatabase::openPostgres(const QString& url)
{
    close();
    m_kind = Kind::PostgreSQL;
    const QUrl parsed(url);
    if (!parsed.isValid() || parsed.scheme() != QLatin1String("postgresql"))
        return fail(url + QLatin1String(": not a postgresql:// address"));
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), m_connection);
    db.setHostName(parsed.host());
    db.setPort(parsed.port(5432));
    db.setUserName(parsed.userName());
    db.setPassword(parsed.password());
    db.setDatabaseName(parsed.path().mid(1));
    if (!db.open())
        return fail(url + QLatin1String(": ") + db.lastError().text());
    m_open = true;
    m_schema = uniqueName("kv_test_").toLower();
    return exec(QStringLiteral("SET client_min_messages TO WARNING; CREATE SCHEMA %1; "
                               "SET search_path TO %1")
                    .arg(m_schema));
}

void TestDatabase::close()
{
    if (!QSqlDatabase::contains(m_connection))
        return;
    {
        QSqlDatabase db = QSqlDatabase::database(m_connection, false);
        if (m_open && !m_schema.isEmpty())
            QSqlQuery(db).exec(QStringLiteral("DROP SCHEMA %1 CASCADE").arg(m_schema));
        db.close();
    }
    QSqlDatabase::removeDatabase(m_connection);
    m_open = false;
    m_schema.clear();
}

QSqlDatabase TestDatabase::database() const
{
    return QSqlDatabase::database(m_connection, false);
}

bool TestDatabase::exec(const QString& sqlText)
{
    if (!m_open)
        return fail(QStringLiteral("the test database is not open"));
    QSqlDatabase db = database();
    for (const QString& statement : splitStatements(sqlText)) {
        QSqlQuery query(db);
        if (!query.exec(statement))
            return fail(statement + QLatin1String(": ") + query.lastError().text());
    }
    return true;
}

QStringList TestDatabase::splitStatements(const QString& sqlText)
{
    QStringList statements;
    QString current;
    QChar quote;
    for (qsizetype i = 0; i < sqlText.size(); ++i) {
        const QChar c = sqlText.at(i);
        if (!quote.isNull()) {
            current += c;
            if (c == quote)
                quote = QChar();
        } else if (c == u'\'' || c == u'"') {
            quote = c;
            current += c;
        } else if (c == u'-' && sqlText.mid(i, 2) == QLatin1String("--")) {
            while (i < sqlText.size() && sqlText.at(i) != u'\n')
                ++i;
        } else if (c == u';') {
            if (!current.trimmed().isEmpty())
                statements.append(current.trimmed());
            current.clear();
        } else {
            current += c;
        }
    }
    if (!current.trimmed().isEmpty())
        statements.append(current.trimmed());
    return statements;
}

bool TestDatabase::fail(const QString& error)
{
    m_error = error;
    return false;
}
