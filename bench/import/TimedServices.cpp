#include "TimedServices.h"

void TimedServices::reset()
{
    m_queryNs = m_propertyNs = 0;
    m_queries = m_propertyQueries = 0;
}

CVRQueryResponse TimedServices::RunQuery(const std::shared_ptr<CVRQuery>& query)
{
    QElapsedTimer timer;
    timer.start();
    CVRQueryResponse response = m_inner.RunQuery(query);
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
