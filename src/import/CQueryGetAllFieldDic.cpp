#include "CQueryGetAllFieldDic.h"

const char* const CQueryGetAllFieldDic::kSql = "SELECT DIC_FIELD FROM BDDIC";
const char* const CQueryGetAllFieldDic::kCacheKey = "{CQueryGetAllFieldDic}";

QString CQueryGetAllFieldDic::cacheKey() const
{
    return QString::fromLatin1(kCacheKey);
}

QSqlQuery CQueryGetAllFieldDic::statement(const QSqlDatabase& db) const
{
    QSqlQuery query(db);
    query.prepare(QString::fromLatin1(kSql));
    return query;
}
