#pragma once

#include "KVString.h"

#include <QList>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

// One column as the query service describes it.
struct CVRColumn
{
    QString name;
    int typeCode = 0; // a QMetaType id
    int length = -1;  // declared length where the driver knows it, else -1
};

// The answer of the host's query runner.
class CVRQueryResponse
{
public:
    CVRQueryResponse() = default;

    static CVRQueryResponse failure(const QString& error);

    bool succeeded() const { return m_succeeded; }
    bool failed() const { return !m_succeeded; }
    const QString& errorText() const { return m_error; }
    const QList<CVRColumn>& getColumns() const { return m_columns; }
    const QList<QVariantList>& getResult() const { return m_rows; }
    // The first value of the first row, or an invalid QVariant when there is none.
    QVariant getSingleResult() const;

    void setSucceeded(bool ok) { m_succeeded = ok; }
    void setError(const QString& error) { m_error = error; }
    void setColumns(QList<CVRColumn> columns) { m_columns = std::move(columns); }
    void appendRow(QVariantList row) { m_rows.append(std::move(row)); }

private:
    bool m_succeeded = false;
    QString m_error;
    QList<CVRColumn> m_columns;
    QList<QVariantList> m_rows;
};

// A database access of the module: an SQL text or a prepared statement with bound values,
// handed to the host's query runner, which owns the connection.
class CVRQuery
{
public:
    virtual ~CVRQuery() = default;

    // True when the statement only reads (its text, trimmed, begins with "select").
    virtual bool IsSelect() const { return true; }
    // A key under which the host may cache the answer; empty for "never cache".
    virtual QString cacheKey() const = 0;
    // Prepares the statement on `db` and binds its values; the runner executes it.
    virtual QSqlQuery statement(const QSqlDatabase& db) const = 0;

    bool IsCacheable() const { return !cacheKey().isEmpty(); }
    // Prepares and executes the statement on `db` and collects the answer.
    CVRQueryResponse Execute(const QSqlDatabase& db) const;
};

// Collects the rows and column descriptions of an executed query.
CVRQueryResponse collectResponse(QSqlQuery& query);
