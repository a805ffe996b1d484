#pragma once

// Helpers shared by the tests of the reference host's query service: a statement as the module
// hands it over, the server the PostgreSQL rows run against, and the answers as short texts.

#include "host/CVRQuery.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QFile>
#include <QList>
#include <QPair>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <utility>

namespace QueryTest {

// A statement as the module hands it over: SQL text with named values, and a cache key.
class TextQuery final : public CVRQuery
{
public:
    explicit TextQuery(QString sql, QList<QPair<QString, QVariant>> values = {}, QString key = {},
                       bool select = true)
        : m_sql(std::move(sql)), m_values(std::move(values)), m_key(std::move(key)),
          m_select(select)
    {}
    bool IsSelect() const override { return m_select; }
    QString cacheKey() const override { return m_key; }
    QSqlQuery statement(const QSqlDatabase& db) const override
    {
        QSqlQuery query(db);
        query.prepare(m_sql);
        for (const auto& [name, value] : m_values)
            query.bindValue(name, value);
        return query;
    }

private:
    QString m_sql;
    QList<QPair<QString, QVariant>> m_values;
    QString m_key;
    bool m_select;
};

// The PostgreSQL server of the tests; empty when none is given.
inline QString postgresUrl()
{
    return qEnvironmentVariable("KV_TEST_PGURL");
}

// The SHA-256 of a file's bytes, to see that a database file was not written; empty when the
// file cannot be read.
inline QByteArray fileDigest(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

// Each row of an answer as its values joined by "|".
inline QStringList rowTexts(const CVRQueryResponse& response)
{
    QStringList rows;
    for (const QVariantList& row : response.getResult()) {
        QStringList values;
        for (const QVariant& value : row)
            values.append(value.toString());
        rows.append(values.join(QLatin1Char('|')));
    }
    return rows;
}

inline QStringList columnNames(const CVRQueryResponse& response)
{
    QStringList names;
    for (const CVRColumn& column : response.getColumns())
        names.append(column.name);
    return names;
}

} // namespace QueryTest
