#pragma once

#include "host/CVRQuery.h"

// The custom properties (tag and value) of one component key, as a prepared statement.
class CQueryInsAutoCustomProperties final : public CVRQuery
{
public:
    static const char* const kSql;

    explicit CQueryInsAutoCustomProperties(KVString key);

    QString cacheKey() const override { return {}; }
    QSqlQuery statement(const QSqlDatabase& db) const override;

private:
    KVString m_key;
};
