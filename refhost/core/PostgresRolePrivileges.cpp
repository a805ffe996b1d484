#include "PostgresRolePrivileges.h"

#include <QSqlError>
#include <QSqlQuery>

namespace RefHost {

namespace {

// Every statement below starts with these: the role bound once as r.role, and the standard's
// tables that resolve through the search path as the regclass values of st.
const QString kWith = QStringLiteral(
    "WITH r AS (SELECT CAST(:role AS name) AS role), "
    "st AS (SELECT to_regclass(x) AS oid FROM unnest(string_to_array(:tables, ',')) AS x) ");
const QString kTables = QStringLiteral("(SELECT oid FROM st)");

QString firstLine(const QSqlError& error)
{
    return error.text().section(u'\n', 0, 0).trimmed();
}

bool run(QSqlQuery& query, const QString& sql, const QString& role, const QStringList& tables,
         QString* error)
{
    if (!query.prepare(kWith + sql)) {
        *error = firstLine(query.lastError());
        return false;
    }
    query.bindValue(QStringLiteral(":role"), role);
    query.bindValue(QStringLiteral(":tables"), tables.join(u','));
    if (!query.exec()) {
        *error = firstLine(query.lastError());
        return false;
    }
    return true;
}

} // namespace

QStringList PostgresRolePrivileges::existingTables(const QSqlDatabase& db,
                                                   const QStringList& tables, QString* error)
{
    QSqlQuery query(db);
    QStringList names;
    if (!run(query,
             QStringLiteral("SELECT CAST(oid AS regclass)::text FROM st WHERE oid IS NOT NULL"), {},
             tables, error))
        return names;
    while (query.next())
        names.append(query.value(0).toString());
    return names;
}

PostgresRolePrivileges::Report PostgresRolePrivileges::check(const QSqlDatabase& db,
                                                             const QString& role,
                                                             const QStringList& tables)
{
    Report report;
    QSqlQuery query(db);

    if (!run(query,
             QStringLiteral("SELECT rolsuper, rolcreaterole, rolcreatedb, rolreplication"
                            " FROM r, pg_roles WHERE rolname = r.role"),
             role, tables, &report.error))
        return report;
    if (!query.next()) {
        report.error = QStringLiteral("the role \"%1\" does not exist").arg(role);
        return report;
    }
    // A superuser passes every privilege check: naming that is enough.
    if (query.value(0).toBool()) {
        report.excess.append(QStringLiteral("superuser"));
        return report;
    }
    const char* attributes[] = {nullptr, "CREATEROLE", "CREATEDB", "REPLICATION"};
    for (int i = 1; i < 4; ++i) {
        if (query.value(i).toBool())
            report.excess.append(QLatin1String(attributes[i]));
    }

    // Membership gives the privileges of the other role, at once or after SET ROLE; the
    // predefined roles (pg_read_server_files, pg_write_all_data...) are members' rights too.
    if (!run(query,
             QStringLiteral("SELECT b.rolname FROM pg_auth_members m"
                            " JOIN pg_roles b ON b.oid = m.roleid"
                            " JOIN pg_roles u ON u.oid = m.member"
                            " JOIN r ON u.rolname = r.role ORDER BY b.rolname"),
             role, tables, &report.error))
        return report;
    while (query.next())
        report.excess.append(QStringLiteral("member of %1").arg(query.value(0).toString()));

    if (!run(query,
             QStringLiteral("SELECT CAST(c.oid AS regclass)::text, c.relowner = (SELECT oid FROM "
                            "pg_roles WHERE rolname = r.role), "
                            "has_table_privilege(r.role, c.oid, 'SELECT'), "
                            "has_table_privilege(r.role, c.oid, 'INSERT'), "
                            "has_table_privilege(r.role, c.oid, 'UPDATE'), "
                            "has_table_privilege(r.role, c.oid, 'DELETE'), "
                            "has_table_privilege(r.role, c.oid, 'TRUNCATE'), "
                            "has_table_privilege(r.role, c.oid, 'REFERENCES'), "
                            "has_table_privilege(r.role, c.oid, 'TRIGGER') "
                            "FROM r, pg_class c WHERE c.oid IN ") +
                 kTables + QStringLiteral(" ORDER BY 1"),
             role, tables, &report.error))
        return report;
    const char* privileges[] = {"INSERT", "UPDATE", "DELETE", "TRUNCATE", "REFERENCES", "TRIGGER"};
    while (query.next()) {
        const QString table = query.value(0).toString();
        if (query.value(1).toBool())
            report.excess.append(QStringLiteral("owner of %1").arg(table));
        if (!query.value(2).toBool())
            report.missing.append(QStringLiteral("SELECT on %1").arg(table));
        QStringList granted;
        for (int i = 0; i < 6; ++i) {
            if (query.value(3 + i).toBool())
                granted.append(QLatin1String(privileges[i]));
        }
        if (!granted.isEmpty())
            report.excess.append(granted.join(QLatin1String(", ")) + QLatin1String(" on ") + table);
    }

    // A table created in a schema searched before the standard's would take the place of the
    // standard's table of the same name: CREATE on any schema of the search path counts.
    if (!run(query,
             QStringLiteral("SELECT n.nspname, has_schema_privilege(r.role, n.oid, 'CREATE'),"
                            " has_schema_privilege(r.role, n.oid, 'USAGE'),"
                            " n.oid IN (SELECT relnamespace FROM pg_class WHERE oid IN ") +
                 kTables +
                 QStringLiteral(") FROM r, pg_namespace n"
                                " WHERE n.nspname = ANY (current_schemas(false))"
                                " OR n.oid IN (SELECT relnamespace FROM pg_class WHERE oid IN ") +
                 kTables + QStringLiteral(") ORDER BY 1"),
             role, tables, &report.error))
        return report;
    while (query.next()) {
        const QString schema = query.value(0).toString();
        if (query.value(1).toBool())
            report.excess.append(QStringLiteral("CREATE on schema %1").arg(schema));
        if (query.value(3).toBool() && !query.value(2).toBool())
            report.missing.append(QStringLiteral("USAGE on schema %1").arg(schema));
    }

    // CREATE makes schemas (one named after the role comes first in the default search path);
    // TEMPORARY makes tables that come before every schema in the search path.
    if (!run(query,
             QStringLiteral("SELECT current_database(),"
                            " has_database_privilege(r.role, current_database(), "
                            "'CONNECT'),"
                            " has_database_privilege(r.role, current_database(), "
                            "'CREATE'),"
                            " has_database_privilege(r.role, current_database(), "
                            "'TEMPORARY') FROM r"),
             role, tables, &report.error))
        return report;
    if (query.next()) {
        const QString database = query.value(0).toString();
        if (!query.value(1).toBool())
            report.missing.append(QStringLiteral("CONNECT on database %1").arg(database));
        if (query.value(2).toBool())
            report.excess.append(QStringLiteral("CREATE on database %1").arg(database));
        if (query.value(3).toBool())
            report.excess.append(QStringLiteral("TEMPORARY on database %1").arg(database));
    }
    return report;
}

} // namespace RefHost
