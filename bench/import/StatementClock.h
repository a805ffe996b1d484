#pragma once

#include <QSqlDatabase>

#include <array>

// Adds up the time that SQLite itself reports for every statement it runs on one connection
// (its profile trace), by kind of statement. This is the statements' own time inside the
// database, without Qt's and the host's work around them.
class StatementClock
{
public:
    enum Kind { Search, Dictionary, PropertyValue, Other, KindCount };

    // False when the connection is not an SQLite one.
    bool attach(const QSqlDatabase& db);
    void detach();
    void reset();

    qint64 ns(Kind kind) const { return m_ns[kind]; }
    int count(Kind kind) const { return m_count[kind]; }
    qint64 totalNs() const;

    void add(const char* sql, qint64 ns);

private:
    void* m_handle = nullptr;
    std::array<qint64, KindCount> m_ns{};
    std::array<int, KindCount> m_count{};
};
