#pragma once

#include "host/CVRQuery.h"

// Every property name of the standard's field dictionary (BDDIC). The dictionary does not
// change while the host runs, so the host may answer it from its cache.
class CQueryGetAllFieldDic final : public CVRQuery
{
public:
    static const char* const kSql;
    static const char* const kCacheKey;

    QString cacheKey() const override;
    QSqlQuery statement(const QSqlDatabase& db) const override;
};
