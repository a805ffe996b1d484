#include "ReaderRole.h"

#include "PostgresRolePrivileges.h"

#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QUrl>

#include <tuple>

namespace RefHost {

namespace {

// The key of the advisory lock that makes concurrent set-ups of reader roles in one database
// take turns ("KVREADER" in ASCII).
constexpr qint64 kLockKey = 0x4b56524541444552;

const QString kWith = QStringLiteral(
    "WITH r AS (SELECT CAST(:role AS name) AS role), "
    "st AS (SELECT to_regclass(x) AS oid FROM unnest(string_to_array(:tables, ',')) AS x) ");

QString firstLine(const QSqlError& error)
{
    QString text = error.databaseText().trimmed();
    if (text.isEmpty())
        text = error.text().trimmed();
    return text.section(u'\n', 0, 0).trimmed();
}

class Session
{
public:
    Session(const QSqlDatabase& db, QString role, QStringList tables)
        : m_db(db), m_role(std::move(role)), m_tables(std::move(tables))
    {}

    // Runs `sql` after the common WITH clause, with the role and the tables bound.
    bool select(QSqlQuery& query, const QString& sql)
    {
        query = QSqlQuery(m_db);
        if (!query.prepare(kWith + sql)) {
            m_error = firstLine(query.lastError());
            return false;
        }
        query.bindValue(QStringLiteral(":role"), m_role);
        query.bindValue(QStringLiteral(":tables"), m_tables.join(u','));
        if (!query.exec()) {
            m_error = firstLine(query.lastError());
            return false;
        }
        return true;
    }

    // Runs a statement without values (the names in it are quoted); on success notes `change`.
    bool change(const QString& sql, const QString& change, QStringList& changes)
    {
        QSqlQuery query(m_db);
        if (!query.exec(sql)) {
            m_error = firstLine(query.lastError());
            return false;
        }
        changes.append(change);
        return true;
    }

    const QString& error() const { return m_error; }

private:
    QSqlDatabase m_db;
    QString m_role;
    QStringList m_tables;
    QString m_error;
};

} // namespace

QString ReaderRole::defaultName()
{
    return QStringLiteral("kvinsertauto_reader");
}

bool ReaderRole::isValidName(const QString& name)
{
    static const QRegularExpression plain(QStringLiteral("^[a-z_][a-z0-9_]{0,62}$"));
    return plain.match(name).hasMatch();
}

QString ReaderRole::connectionUrl(const QString& url, const QString& role)
{
    QUrl reader(url, QUrl::StrictMode);
    reader.setPassword({});
    reader.setUserName(role);
    return reader.toString(QUrl::FullyEncoded);
}

ReaderRole::Result ReaderRole::setUp(const QSqlDatabase& db, const QString& name,
                                     const QStringList& tables)
{
    Result result;
    auto failed = [&result, &name](const QString& problem) {
        result.error = QStringLiteral("reader role %1: %2").arg(name, problem);
        return result;
    };
    if (!isValidName(name))
        return failed(QStringLiteral("not a plain lower-case name (letters, digits and \"_\", "
                                     "at most 63 characters)"));
    const QString role = u'"' + name + u'"';
    Session session(db, name, tables);
    QSqlQuery query;

    if (!session.select(query, QStringLiteral("SELECT current_user = r.role OR session_user = "
                                              "r.role, pg_advisory_xact_lock(%1) FROM r")
                                   .arg(kLockKey)) ||
        !query.next())
        return failed(session.error());
    if (query.value(0).toBool())
        return failed(QStringLiteral("it is the role that loads the standard, which may write"));

    if (!session.select(query, QStringLiteral("SELECT rolcanlogin FROM r, pg_roles WHERE "
                                              "rolname = r.role")))
        return failed(session.error());
    if (!query.next()) {
        // Another load may create the same role at this moment (roles are shared by all the
        // databases of the server, and the advisory lock is the database's): its CREATE waits
        // for that load and then fails as a duplicate, and the role is then simply there.
        QSqlQuery create(db);
        create.exec(QStringLiteral("SAVEPOINT kv_reader_role"));
        if (create.exec(QStringLiteral("CREATE ROLE %1 LOGIN NOSUPERUSER NOCREATEDB NOCREATEROLE "
                                       "NOREPLICATION NOBYPASSRLS NOINHERIT")
                            .arg(role))) {
            create.exec(QStringLiteral("RELEASE SAVEPOINT kv_reader_role"));
            result.created = true;
            result.changes.append(QStringLiteral("created the login role %1").arg(name));
        } else {
            const QString code = create.lastError().nativeErrorCode();
            const QString problem = firstLine(create.lastError());
            create.exec(QStringLiteral("ROLLBACK TO SAVEPOINT kv_reader_role"));
            if (code != u"42710" && code != u"23505")
                return failed(QStringLiteral("cannot be created: %1").arg(problem));
        }
    } else if (!query.value(0).toBool()) {
        if (!session.change(QStringLiteral("ALTER ROLE %1 LOGIN").arg(role),
                            QStringLiteral("allowed %1 to log in").arg(name), result.changes))
            return failed(session.error());
    }

    // What cannot be taken away here is refused rather than changed: these belong to whoever
    // made the role.
    {
        const PostgresRolePrivileges::Report report =
            PostgresRolePrivileges::check(db, name, tables);
        if (!report.error.isEmpty())
            return failed(report.error);
        QStringList foreign;
        for (const QString& excess : report.excess) {
            if (!excess.contains(QLatin1String(" on ")))
                foreign.append(excess);
            else if (excess.startsWith(QLatin1String("owner of ")))
                foreign.append(excess);
        }
        if (!foreign.isEmpty())
            return failed(QStringLiteral("exists and may do more than read the standard (%1); "
                                         "name another role with --reader-role")
                              .arg(foreign.join(QLatin1String("; "))));
    }

    if (!session.select(
            query, QStringLiteral("SELECT quote_ident(current_database()), current_database(),"
                                  " has_database_privilege(r.role, current_database(), 'CONNECT'),"
                                  " has_database_privilege(r.role, current_database(), 'CREATE'),"
                                  " has_database_privilege(r.role, current_database(), "
                                  "'TEMPORARY') FROM r")) ||
        !query.next())
        return failed(session.error());
    {
        const QString quoted = query.value(0).toString();
        const QString database = query.value(1).toString();
        const bool connect = query.value(2).toBool();
        const bool create = query.value(3).toBool();
        const bool temporary = query.value(4).toBool();
        if (!connect &&
            !session.change(QStringLiteral("GRANT CONNECT ON DATABASE %1 TO %2").arg(quoted, role),
                            QStringLiteral("granted CONNECT on database %1").arg(database),
                            result.changes))
            return failed(session.error());
        if (create &&
            !session.change(
                QStringLiteral("REVOKE CREATE ON DATABASE %1 FROM PUBLIC, %2").arg(quoted, role),
                QStringLiteral("revoked CREATE on database %1 from PUBLIC").arg(database),
                result.changes))
            return failed(session.error());
        if (temporary &&
            !session.change(
                QStringLiteral("REVOKE TEMPORARY ON DATABASE %1 FROM PUBLIC, %2").arg(quoted, role),
                QStringLiteral("revoked TEMPORARY on database %1 from PUBLIC (grant it by name "
                               "to the roles that make temporary tables)")
                    .arg(database),
                result.changes))
            return failed(session.error());
    }

    if (!session.select(query, QStringLiteral("SELECT DISTINCT quote_ident(n.nspname), n.nspname,"
                                              " has_schema_privilege(r.role, n.oid, 'USAGE'),"
                                              " has_schema_privilege(r.role, n.oid, 'CREATE')"
                                              " FROM r, pg_namespace n JOIN pg_class c ON "
                                              "c.relnamespace = n.oid"
                                              " WHERE c.oid IN (SELECT oid FROM st)")))
        return failed(session.error());
    struct SchemaRights
    {
        QString quoted;
        QString name;
        bool usage;
        bool create;
    };
    QList<SchemaRights> schemas;
    while (query.next()) {
        schemas.append({query.value(0).toString(), query.value(1).toString(),
                        query.value(2).toBool(), query.value(3).toBool()});
    }
    for (const SchemaRights& schema : std::as_const(schemas)) {
        if (!schema.usage &&
            !session.change(
                QStringLiteral("GRANT USAGE ON SCHEMA %1 TO %2").arg(schema.quoted, role),
                QStringLiteral("granted USAGE on schema %1").arg(schema.name), result.changes))
            return failed(session.error());
        if (schema.create &&
            !session.change(
                QStringLiteral("REVOKE CREATE ON SCHEMA %1 FROM PUBLIC, %2")
                    .arg(schema.quoted, role),
                QStringLiteral("revoked CREATE on schema %1 from PUBLIC").arg(schema.name),
                result.changes))
            return failed(session.error());
    }

    if (!session.select(
            query, QStringLiteral("SELECT CAST(c.oid AS regclass)::text,"
                                  " has_table_privilege(r.role, c.oid, 'SELECT'),"
                                  " has_table_privilege(r.role, c.oid, 'INSERT, UPDATE, DELETE, "
                                  "TRUNCATE, REFERENCES, TRIGGER')"
                                  " FROM r, pg_class c WHERE c.oid IN (SELECT oid FROM st) "
                                  "ORDER BY 1")))
        return failed(session.error());
    QList<std::tuple<QString, bool, bool>> tableRights;
    while (query.next()) {
        tableRights.append(
            {query.value(0).toString(), query.value(1).toBool(), query.value(2).toBool()});
    }
    for (const auto& [table, select, more] : std::as_const(tableRights)) {
        result.tables.append(table);
        if (more &&
            !session.change(QStringLiteral("REVOKE ALL ON %1 FROM PUBLIC, %2").arg(table, role),
                            QStringLiteral("revoked every right but SELECT on %1").arg(table),
                            result.changes))
            return failed(session.error());
        if ((more || !select) &&
            !session.change(QStringLiteral("GRANT SELECT ON %1 TO %2").arg(table, role),
                            QStringLiteral("granted SELECT on %1").arg(table), result.changes))
            return failed(session.error());
    }

    // The outcome is checked the way the module's connection checks its own role.
    const PostgresRolePrivileges::Report report = PostgresRolePrivileges::check(db, name, tables);
    if (!report.error.isEmpty())
        return failed(report.error);
    if (!report.excess.isEmpty())
        return failed(QStringLiteral("may still do more than read the standard: %1")
                          .arg(report.excess.join(QLatin1String("; "))));
    if (!report.missing.isEmpty())
        return failed(
            QStringLiteral("still lacks %1").arg(report.missing.join(QLatin1String("; "))));
    return result;
}

} // namespace RefHost
