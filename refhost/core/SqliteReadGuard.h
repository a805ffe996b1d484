#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

namespace RefHost {

// An SQLite authorizer on an open connection that lets statements read the named tables and do
// nothing else: no other table (not sqlite_master either), no ATTACH, no PRAGMA but the
// column and index listings Qt's driver asks for, no writes, no transactions, no extension
// loading. A statement that tries anything else fails when it is prepared ("not authorized").
// The read-only open and "PRAGMA query_only" stay in place under it.
// The guard must live as long as the connection it is installed on.
class SqliteReadGuard final
{
public:
    // `tables` are compared ignoring case.
    explicit SqliteReadGuard(const QStringList& tables);

    // Installs the guard on the open connection `db`; the error text, or empty.
    QString install(const QSqlDatabase& db);

    bool allows(const char* table) const;

private:
    QStringList m_tables; // upper case
};

} // namespace RefHost
