#include "CQueryInsAutoCustomProperties.h"

const char* const CQueryInsAutoCustomProperties::kSql =
    "SELECT TAG, VALUE FROM CUSTOM_PROPERTIES WHERE RTRIM(LTRIM( ITEM_KEY )) = :key AND "
    "ITEM_TYPE IN (0,1,2)";

CQueryInsAutoCustomProperties::CQueryInsAutoCustomProperties(KVString key) : m_key(std::move(key))
{}

QSqlQuery CQueryInsAutoCustomProperties::statement(const QSqlDatabase& db) const
{
    QSqlQuery query(db);
    query.prepare(QString::fromLatin1(kSql));
    query.bindValue(QStringLiteral(":key"), m_key.toQString());
    return query;
}
