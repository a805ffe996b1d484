#pragma once

#include "host/CVRQuery.h"

// A read of the standard's database built by the insertion engine as plain SQL text.
class CQueryInsAutoSelect final : public CVRQuery
{
public:
    explicit CQueryInsAutoSelect(QString sql);

    bool IsSelect() const override;
    // Never cached: the run must see the database as it is.
    QString cacheKey() const override { return {}; }
    QSqlQuery statement(const QSqlDatabase& db) const override;

    const QString& sql() const { return m_sql; }

private:
    QString m_sql;
};
