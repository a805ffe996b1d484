#include "TimedServices.h"

namespace {

// Adds the time the query takes to prepare and bind its statement (SQLite compiles the text
// there) to a counter.
class TimedQuery final : public CVRQuery
{
public:
    TimedQuery(std::shared_ptr<CVRQuery> inner, qint64& ns) : m_inner(std::move(inner)), m_ns(ns) {}
    bool IsSelect() const override { return m_inner->IsSelect(); }
    QString cacheKey() const override { return m_inner->cacheKey(); }
    QSqlQuery statement(const QSqlDatabase& db) const override
    {
        QElapsedTimer timer;
        timer.start();
        QSqlQuery query = m_inner->statement(db);
        m_ns += timer.nsecsElapsed();
        return query;
    }

private:
    std::shared_ptr<CVRQuery> m_inner;
    qint64& m_ns;
};

} // namespace

void TimedServices::reset()
{
    m_queryNs = m_propertyNs = m_prepareNs = 0;
    m_queries = m_propertyQueries = 0;
}

CVRQueryResponse TimedServices::RunQuery(const std::shared_ptr<CVRQuery>& query)
{
    QElapsedTimer timer;
    timer.start();
    CVRQueryResponse response = m_inner.RunQuery(std::make_shared<TimedQuery>(query, m_prepareNs));
    m_queryNs += timer.nsecsElapsed();
    ++m_queries;
    return response;
}

CVRQueryResponse TimedServices::GetComponentPropertyValue(const KVString& componentKey,
                                                          const KVString& propertyName)
{
    QElapsedTimer timer;
    timer.start();
    CVRQueryResponse response = m_inner.GetComponentPropertyValue(componentKey, propertyName);
    m_propertyNs += timer.nsecsElapsed();
    ++m_propertyQueries;
    return response;
}
