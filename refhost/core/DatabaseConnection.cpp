#include "DatabaseConnection.h"

#include "PostgresRolePrivileges.h"
#include "ReaderRole.h"
#include "StandardLoader.h"

#include <QAtomicInt>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>
#include <QUrlQuery>

namespace RefHost {

namespace {

QString nextConnectionName()
{
    static QAtomicInt counter;
    return QStringLiteral("kvref-%1").arg(counter.fetchAndAddRelaxed(1) + 1);
}

// Runs a statement on a fresh connection while it is being set up; the error text or empty.
QString runSetup(const QSqlDatabase& db, const QString& sql, QString* firstValue = nullptr)
{
    QSqlQuery query(db);
    if (!query.exec(sql))
        return query.lastError().text();
    if (firstValue && query.next())
        *firstValue = query.value(0).toString();
    return {};
}

// A value of a libpq connection string, quoted so that blanks and quotes survive.
QString conninfoValue(const QString& value)
{
    QString escaped = value;
    escaped.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    escaped.replace(QLatin1Char('\''), QStringLiteral("\\'"));
    return QLatin1Char('\'') + escaped + QLatin1Char('\'');
}

// The connection parameters of the URL's query (libpq names: "sslmode", "options", ...; "host"
// is taken as the host), with `serverOptions` for the server. Options given in the URL are kept
// after these.
QString postgresConnectOptions(const QUrlQuery& query, QString serverOptions)
{
    QStringList parameters{QStringLiteral("connect_timeout=10")};
    for (const auto& [key, value] : query.queryItems(QUrl::FullyDecoded)) {
        if (key == u"host")
            continue;
        if (key == u"options")
            serverOptions += QLatin1Char(' ') + value;
        else
            parameters.append(key + QLatin1Char('=') + conninfoValue(value));
    }
    serverOptions = serverOptions.trimmed();
    if (!serverOptions.isEmpty())
        parameters.append(QStringLiteral("options=") + conninfoValue(serverOptions));
    return parameters.join(QLatin1Char(';'));
}

// The login role of a PostgreSQL connection must not be able to change the standard: the
// error text naming the role and what it may do, or empty.
QString checkPostgresRole(const QSqlDatabase& db, const QString& description)
{
    QString role;
    if (const QString error = runSetup(db, QStringLiteral("SELECT current_user"), &role);
        !error.isEmpty())
        return error;
    const PostgresRolePrivileges::Report report =
        PostgresRolePrivileges::check(db, role, StandardLoader::standardTables());
    if (!report.error.isEmpty())
        return QStringLiteral("the rights of the role \"%1\" cannot be checked: %2")
            .arg(role, report.error);
    if (report.excess.isEmpty())
        return {};
    return QStringLiteral("the role \"%1\" may write (%2); connect as the read-only role that "
                          "kvinsertauto load-standard sets up, e.g. %3")
        .arg(role, report.excess.join(QLatin1String("; ")),
             ReaderRole::connectionUrl(description, ReaderRole::defaultName()));
}

} // namespace

bool DatabaseConnection::isPostgresUrl(const QString& spec)
{
    return spec.startsWith(QStringLiteral("postgresql://"), Qt::CaseInsensitive) ||
           spec.startsWith(QStringLiteral("postgres://"), Qt::CaseInsensitive);
}

QString DatabaseConnection::addPostgresDatabase(const QString& spec, const QString& name,
                                                const QString& serverOptions, QString* description)
{
    const QUrl url(spec, QUrl::StrictMode);
    *description = url.toString(QUrl::RemovePassword);
    const QUrlQuery query(url);
    const QString host = query.hasQueryItem(QStringLiteral("host"))
                             ? query.queryItemValue(QStringLiteral("host"))
                             : url.host();
    const QString database = url.path().mid(1);
    if (!url.isValid() || host.isEmpty() || database.isEmpty()) {
        return QStringLiteral("%1: not a PostgreSQL URL (postgresql://user@host:port/database)")
            .arg(*description);
    }
    if (!QSqlDatabase::isDriverAvailable(QStringLiteral("QPSQL")))
        return QStringLiteral("%1: the Qt PostgreSQL driver (QPSQL) is not installed")
            .arg(*description);
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), name);
    db.setHostName(host);
    db.setPort(url.port(5432));
    db.setDatabaseName(database);
    db.setUserName(url.userName(QUrl::FullyDecoded));
    db.setPassword(url.password(QUrl::FullyDecoded));
    db.setConnectOptions(postgresConnectOptions(query, serverOptions));
    return {};
}

DatabaseConnection::Opened DatabaseConnection::open(const QString& spec)
{
    Opened result;
    const QString name = nextConnectionName();
    const bool postgres = isPostgresUrl(spec);
    QString description = spec;
    {
        QSqlDatabase db;
        if (postgres) {
            // Every transaction of the session is read-only. The server's notices and warnings
            // (a statement text may hold a COMMIT outside any transaction) are not the user's
            // business: libpq would print them on the error output.
            result.error = addPostgresDatabase(
                spec, name,
                QStringLiteral("-c default_transaction_read_only=on -c client_min_messages=error"),
                &description);
            if (!result.error.isEmpty())
                return result;
            db = QSqlDatabase::database(name, false);
        } else {
            const QFileInfo file(spec);
            if (!file.isFile()) {
                result.error = QStringLiteral("%1: database file not found").arg(spec);
                return result;
            }
            db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
            db.setDatabaseName(file.absoluteFilePath());
            db.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY;QSQLITE_BUSY_TIMEOUT=5000"));
        }

        QString problem;
        std::unique_ptr<SqliteReadGuard> guard;
        if (!db.open()) {
            problem = db.lastError().text();
        } else if (postgres) {
            QString readOnly;
            problem = runSetup(db, QStringLiteral("SHOW default_transaction_read_only"), &readOnly);
            if (problem.isEmpty() && readOnly != u"on")
                problem = QStringLiteral("the session could not be made read-only");
            if (problem.isEmpty())
                problem = checkPostgresRole(db, description);
        } else {
            // Reading the schema proves the file is an SQLite database. The page cache (about
            // 32 MB) and the memory map (256 MB) speed up the repeated lookups of a run.
            problem = runSetup(db, QStringLiteral("SELECT count(*) FROM sqlite_master"));
            if (problem.isEmpty())
                problem = runSetup(db, QStringLiteral("PRAGMA cache_size = -32768"));
            if (problem.isEmpty())
                problem = runSetup(db, QStringLiteral("PRAGMA mmap_size = 268435456"));
            if (problem.isEmpty())
                problem = runSetup(db, QStringLiteral("PRAGMA query_only = 1"));
            if (problem.isEmpty()) {
                guard = std::make_unique<SqliteReadGuard>(StandardLoader::standardTables());
                problem = guard->install(db);
            }
        }
        if (!problem.isEmpty()) {
            result.error = QStringLiteral("%1: cannot open the database: %2")
                               .arg(description, problem.trimmed());
            db.close();
            db = QSqlDatabase();
            QSqlDatabase::removeDatabase(name);
            return result;
        }
        result.connection.reset(
            new DatabaseConnection(db, description, postgres, std::move(guard)));
    }
    return result;
}

DatabaseConnection::DatabaseConnection(QSqlDatabase db, QString description, bool postgres,
                                       std::unique_ptr<SqliteReadGuard> guard)
    : m_guard(std::move(guard)), m_db(std::move(db)), m_description(std::move(description)),
      m_postgres(postgres)
{}

DatabaseConnection::~DatabaseConnection()
{
    const QString name = m_db.connectionName();
    m_db.close();
    m_db = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

} // namespace RefHost
