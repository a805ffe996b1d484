#include "CVRQuery.h"

#include <QSqlError>
#include <QSqlField>
#include <QSqlRecord>

CVRQueryResponse CVRQueryResponse::failure(const QString& error)
{
    CVRQueryResponse response;
    response.setError(error);
    return response;
}

QVariant CVRQueryResponse::getSingleResult() const
{
    if (m_rows.isEmpty() || m_rows.first().isEmpty())
        return {};
    return m_rows.first().first();
}

CVRQueryResponse CVRQuery::Execute(const QSqlDatabase& db) const
{
    QSqlQuery query = statement(db);
    if (!query.exec())
        return CVRQueryResponse::failure(query.lastError().text());
    return collectResponse(query);
}

CVRQueryResponse collectResponse(QSqlQuery& query)
{
    CVRQueryResponse response;
    response.setSucceeded(true);
    const QSqlRecord record = query.record();
    QList<CVRColumn> columns;
    columns.reserve(record.count());
    for (int i = 0; i < record.count(); ++i) {
        const QSqlField field = record.field(i);
        columns.append({field.name(), field.metaType().id(), field.length()});
    }
    response.setColumns(std::move(columns));
    while (query.next()) {
        QVariantList row;
        row.reserve(record.count());
        for (int i = 0; i < record.count(); ++i)
            row.append(query.value(i));
        response.appendRow(std::move(row));
    }
    if (query.lastError().isValid()) {
        response.setSucceeded(false);
        response.setError(query.lastError().text());
    }
    return response;
}
