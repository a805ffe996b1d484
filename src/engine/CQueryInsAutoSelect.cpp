#include "CQueryInsAutoSelect.h"

CQueryInsAutoSelect::CQueryInsAutoSelect(QString sql) : m_sql(std::move(sql)) {}

bool CQueryInsAutoSelect::IsSelect() const
{
    return m_sql.trimmed().startsWith(QLatin1String("select"), Qt::CaseInsensitive);
}

QSqlQuery CQueryInsAutoSelect::statement(const QSqlDatabase& db) const
{
    QSqlQuery query(db);
    query.prepare(m_sql);
    return query;
}
