#pragma once

// A full dump of a test's standard database, for comparing it before and after something that
// must not change it: the schema (tables, columns, indexes, rights) and every row of every
// table, as text lines. SQLite: the whole file's schema and tables. PostgreSQL: the connection's
// current schema, and the attributes and memberships of `role` when one is named.

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QStringList>

namespace TestDump {

// Every row of `sql` as one line, its values joined by "|"; lines sorted when `sort`.
inline bool appendRows(const QSqlDatabase& db, const QString& prefix, const QString& sql,
                       QStringList& lines, QString& error, bool sort = true)
{
    QSqlQuery query(db);
    if (!query.exec(sql)) {
        error = sql + QLatin1String(": ") + query.lastError().text();
        return false;
    }
    QStringList rows;
    while (query.next()) {
        QStringList values;
        for (int i = 0; i < query.record().count(); ++i)
            values.append(query.isNull(i) ? QStringLiteral("<null>") : query.value(i).toString());
        rows.append(prefix + values.join(u'|'));
    }
    if (sort)
        rows.sort();
    lines += rows;
    return true;
}

// The dump, or an empty list with `error` set.
inline QStringList dumpDatabase(const QSqlDatabase& db, QString& error,
                                const QString& role = QString())
{
    QStringList lines;
    QStringList tables;
    QSqlQuery query(db);
    if (db.driverName() == QLatin1String("QSQLITE")) {
        if (!appendRows(db, QStringLiteral("schema: "),
                        QStringLiteral("SELECT type, name, tbl_name, sql FROM sqlite_master"),
                        lines, error))
            return {};
        if (!query.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table' "
                                       "ORDER BY name"))) {
            error = query.lastError().text();
            return {};
        }
    } else {
        const QStringList schema = {
            QStringLiteral("SELECT c.relname, c.relkind, c.relacl::text, "
                           "pg_get_userbyid(c.relowner) FROM pg_class c "
                           "WHERE c.relnamespace = CAST(current_schema() AS regnamespace)"),
            QStringLiteral("SELECT table_name, ordinal_position, column_name, data_type, "
                           "character_maximum_length FROM information_schema.columns "
                           "WHERE table_schema = current_schema()"),
            QStringLiteral("SELECT indexname, indexdef FROM pg_indexes "
                           "WHERE schemaname = current_schema()"),
            QStringLiteral("SELECT nspname, nspacl::text, pg_get_userbyid(nspowner) "
                           "FROM pg_namespace WHERE nspname = current_schema()"),
            QStringLiteral("SELECT proname FROM pg_proc "
                           "WHERE pronamespace = CAST(current_schema() AS regnamespace)"),
        };
        for (const QString& sql : schema) {
            if (!appendRows(db, QStringLiteral("schema: "), sql, lines, error))
                return {};
        }
        if (!role.isEmpty()) {
            const QString quoted = u'\'' + role + u'\'';
            if (!appendRows(db, QStringLiteral("role: "),
                            QStringLiteral("SELECT rolname, rolsuper, rolinherit, rolcreaterole, "
                                           "rolcreatedb, rolcanlogin, rolreplication, "
                                           "rolbypassrls FROM pg_roles WHERE rolname = %1")
                                .arg(quoted),
                            lines, error) ||
                !appendRows(db, QStringLiteral("member of: "),
                            QStringLiteral("SELECT b.rolname FROM pg_auth_members m JOIN pg_roles "
                                           "b ON b.oid = m.roleid JOIN pg_roles u ON u.oid = "
                                           "m.member WHERE u.rolname = %1")
                                .arg(quoted),
                            lines, error))
                return {};
        }
        if (!query.exec(QStringLiteral("SELECT tablename FROM pg_tables "
                                       "WHERE schemaname = current_schema() ORDER BY 1"))) {
            error = query.lastError().text();
            return {};
        }
    }
    while (query.next())
        tables.append(query.value(0).toString());
    for (const QString& table : std::as_const(tables)) {
        if (!appendRows(db, table + QLatin1String(": "),
                        QStringLiteral("SELECT * FROM %1").arg(table), lines, error))
            return {};
    }
    if (lines.isEmpty())
        error = QStringLiteral("the database is empty");
    return lines;
}

} // namespace TestDump
