#include "StatementClock.h"

#include <QSqlDriver>
#include <QVariant>

#include <cstring>
#include <numeric>

#include <sqlite3.h>

namespace {

int profile(unsigned type, void* context, void* statement, void* elapsed)
{
    if (type == SQLITE_TRACE_PROFILE) {
        static_cast<StatementClock*>(context)->add(
            sqlite3_sql(static_cast<sqlite3_stmt*>(statement)),
            static_cast<qint64>(*static_cast<sqlite3_int64*>(elapsed)));
    }
    return 0;
}

bool startsWith(const char* text, const char* prefix)
{
    return text && std::strncmp(text, prefix, std::strlen(prefix)) == 0;
}

} // namespace

bool StatementClock::attach(const QSqlDatabase& db)
{
    const QVariant handle = db.driver() ? db.driver()->handle() : QVariant();
    if (!handle.isValid() || std::strcmp(handle.typeName(), "sqlite3*") != 0)
        return false;
    sqlite3* connection = *static_cast<sqlite3* const*>(handle.constData());
    if (!connection)
        return false;
    sqlite3_trace_v2(connection, SQLITE_TRACE_PROFILE, profile, this);
    m_handle = connection;
    return true;
}

void StatementClock::detach()
{
    if (m_handle)
        sqlite3_trace_v2(static_cast<sqlite3*>(m_handle), 0, nullptr, nullptr);
    m_handle = nullptr;
}

void StatementClock::reset()
{
    m_ns.fill(0);
    m_count.fill(0);
}

qint64 StatementClock::totalNs() const
{
    return std::accumulate(m_ns.begin(), m_ns.end(), qint64(0));
}

void StatementClock::add(const char* sql, qint64 ns)
{
    Kind kind = Other;
    if (startsWith(sql, "SELECT MENU_KEY, MENU_DESCR FROM BDMENUS"))
        kind = Search;
    else if (startsWith(sql, "SELECT DIC_FIELD FROM BDDIC"))
        kind = Dictionary;
    else if (startsWith(sql, "SELECT VALUE FROM CUSTOM_PROPERTIES"))
        kind = PropertyValue;
    m_ns[kind] += ns;
    ++m_count[kind];
}
