#include "SqliteReadGuard.h"

#include <QSqlDriver>
#include <QVariant>

#include <sqlite3.h>

#include <cstring>

namespace RefHost {

namespace {

// The pragmas that only describe a table; Qt's driver uses them for QSqlDatabase::record().
bool isListingPragma(const char* name)
{
    static const char* const listings[] = {"table_info", "table_xinfo", "index_list", "index_info",
                                           "index_xinfo"};
    for (const char* listing : listings) {
        if (name && sqlite3_stricmp(name, listing) == 0)
            return true;
    }
    return false;
}

int authorize(void* data, int action, const char* arg1, const char* arg2, const char* database,
              const char*)
{
    const SqliteReadGuard& guard = *static_cast<const SqliteReadGuard*>(data);
    switch (action) {
    case SQLITE_SELECT:
    case SQLITE_RECURSIVE:
        return SQLITE_OK;
    case SQLITE_READ:
        // Only the main database's standard tables; reading sqlite_master or a temporary or
        // attached database is refused.
        if ((!database || std::strcmp(database, "main") == 0) && guard.allows(arg1))
            return SQLITE_OK;
        return SQLITE_DENY;
    case SQLITE_FUNCTION:
        return arg2 && sqlite3_stricmp(arg2, "load_extension") == 0 ? SQLITE_DENY : SQLITE_OK;
    case SQLITE_PRAGMA:
        // A listing with a value would be a write ("PRAGMA table_info = x" is not one, but
        // nothing reads it that way); listings of other tables tell what else is there.
        return isListingPragma(arg1) && (!arg2 || guard.allows(arg2)) ? SQLITE_OK : SQLITE_DENY;
    default:
        return SQLITE_DENY;
    }
}

} // namespace

SqliteReadGuard::SqliteReadGuard(const QStringList& tables)
{
    for (const QString& table : tables)
        m_tables.append(table.toUpper());
}

bool SqliteReadGuard::allows(const char* table) const
{
    return table && m_tables.contains(QString::fromUtf8(table).toUpper());
}

QString SqliteReadGuard::install(const QSqlDatabase& db)
{
    const QVariant handle = db.driver() ? db.driver()->handle() : QVariant();
    if (!handle.isValid() || std::strcmp(handle.typeName(), "sqlite3*") != 0)
        return QStringLiteral("not an SQLite connection");
    sqlite3* connection = *static_cast<sqlite3* const*>(handle.constData());
    if (!connection)
        return QStringLiteral("the connection is not open");
    if (sqlite3_set_authorizer(connection, authorize, this) != SQLITE_OK)
        return QString::fromUtf8(sqlite3_errmsg(connection));
    return {};
}

} // namespace RefHost
