#pragma once

// Helpers shared by the standard loader's tests: a scratch database on SQLite or PostgreSQL,
// and the paths of the example standard.

#include <QAtomicInt>
#include <QCoreApplication>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QTemporaryDir>
#include <QUrl>

#include <memory>

namespace LoaderTest {

inline QString exampleFile(const QString& relative)
{
    return QStringLiteral(KV_SOURCE_DIR "/examples/") + relative;
}

inline QString schemaSql()
{
    return exampleFile(QStringLiteral("standard/schema.sql"));
}

inline QString dataSql()
{
    return exampleFile(QStringLiteral("standard/data.sql"));
}

// The PostgreSQL server the tests may use, from KV_TEST_PGURL; empty when none is configured.
inline QString postgresUrl()
{
    return qEnvironmentVariable("KV_TEST_PGURL");
}

// An empty database for one test: an SQLite file in a temporary folder, or a schema of its own
// on the PostgreSQL server of KV_TEST_PGURL (dropped again at the end), so that tests never
// touch tables they did not create.
class ScratchDatabase
{
public:
    enum class Kind { Sqlite, Postgres };

    explicit ScratchDatabase(Kind kind) : m_kind(kind)
    {
        static QAtomicInt counter;
        const int n = counter.fetchAndAddRelaxed(1) + 1;
        m_connection = QStringLiteral("loader-test-%1").arg(n);
        if (kind == Kind::Sqlite) {
            m_path = m_dir.filePath(QStringLiteral("standard.db"));
            m_db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connection);
            m_db.setDatabaseName(m_path);
            if (!m_db.open())
                m_error = m_db.lastError().text();
            return;
        }
        const QUrl url(postgresUrl());
        m_db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), m_connection);
        m_db.setHostName(url.host());
        m_db.setPort(url.port(5432));
        m_db.setDatabaseName(url.path().mid(1));
        m_db.setUserName(url.userName());
        m_db.setPassword(url.password());
        if (!m_db.open()) {
            m_error = m_db.lastError().text();
            return;
        }
        m_schema =
            QStringLiteral("kv_loader_test_%1_%2").arg(QCoreApplication::applicationPid()).arg(n);
        QSqlQuery query(m_db);
        // Only the test's schema is searched: tables elsewhere on the server stay invisible.
        if (!query.exec(QStringLiteral("SET client_min_messages = warning")) ||
            !query.exec(QStringLiteral("DROP SCHEMA IF EXISTS %1 CASCADE").arg(m_schema)) ||
            !query.exec(QStringLiteral("CREATE SCHEMA %1").arg(m_schema)) ||
            !query.exec(QStringLiteral("SET search_path TO %1").arg(m_schema))) {
            m_error = query.lastError().text();
        }
    }

    ~ScratchDatabase()
    {
        if (!m_schema.isEmpty() && m_db.isOpen()) {
            QSqlQuery query(m_db);
            query.exec(QStringLiteral("DROP SCHEMA IF EXISTS %1 CASCADE").arg(m_schema));
        }
        m_db.close();
        m_db = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_connection);
    }

    ScratchDatabase(const ScratchDatabase&) = delete;
    ScratchDatabase& operator=(const ScratchDatabase&) = delete;

    bool isReady() const { return m_error.isEmpty() && m_db.isOpen(); }
    const QString& error() const { return m_error; }
    QSqlDatabase& db() { return m_db; }
    Kind kind() const { return m_kind; }
    bool isPostgres() const { return m_kind == Kind::Postgres; }
    const QString& sqlitePath() const { return m_path; }

    // The number of rows of `table`, or -1 when it cannot be counted (e.g. it does not exist).
    int rowCount(const QString& table)
    {
        QSqlQuery query(m_db);
        if (!query.exec(QStringLiteral("SELECT COUNT(*) FROM %1").arg(table)) || !query.next())
            return -1;
        return query.value(0).toInt();
    }

private:
    Kind m_kind;
    QTemporaryDir m_dir;
    QString m_connection;
    QString m_path;
    QString m_schema;
    QString m_error;
    QSqlDatabase m_db;
};

// Writes `text` to `path`; false when it cannot.
inline bool writeFile(const QString& path, const QByteArray& text)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

} // namespace LoaderTest
