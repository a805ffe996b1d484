#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

namespace RefHost {

// What a PostgreSQL role may do on the database of a connection beyond reading a standard's
// tables. Both the standard loader (for the reader role it sets up) and the query connection
// (for its own login role) ask this, so that they agree on what "read-only" means.
class PostgresRolePrivileges final
{
public:
    struct Report
    {
        QStringList excess;  // one text per thing the role may do beyond reading, e.g. "superuser"
        QStringList missing; // what it lacks to read the standard, e.g. "SELECT on s.bdkv"
        QString error;       // the checks could not run
    };

    // Checks `role` on `db`. `tables` are the standard's table names as unquoted (case-folded)
    // names resolved through the connection's search path; tables that do not exist are left
    // out. Looked at: the role's attributes (superuser, CREATEROLE, CREATEDB, REPLICATION),
    // any role it is a member of (the predefined pg_read_server_files and the like included),
    // ownership and every privilege other than SELECT on the tables, CREATE on the tables'
    // schemas and on every schema of the search path, CREATE and TEMPORARY on the database.
    static Report check(const QSqlDatabase& db, const QString& role, const QStringList& tables);

    // The standard's tables that exist through the connection's search path, named as PostgreSQL
    // writes them (with the schema when it is not on the search path, e.g. "standards.bdkv").
    static QStringList existingTables(const QSqlDatabase& db, const QStringList& tables,
                                      QString* error);
};

} // namespace RefHost
