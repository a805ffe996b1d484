#pragma once

#include "host/CVRServices.h"

#include <QElapsedTimer>

// Passes every call on to the host's electrical services and adds up the time spent in the two
// calls that reach the database on behalf of the import: the query runner and the ready-made
// property-value query. The time includes what the host does around a statement (preparing,
// binding, collecting the rows); StatementClock measures the statements alone.
class TimedServices final : public CVRServices
{
public:
    explicit TimedServices(CVRServices& inner) : m_inner(inner) {}

    qint64 queryNs() const { return m_queryNs; }
    qint64 propertyNs() const { return m_propertyNs; }
    // Of queryNs(): preparing and binding the statements.
    qint64 prepareNs() const { return m_prepareNs; }
    int queries() const { return m_queries; }
    int propertyQueries() const { return m_propertyQueries; }
    void reset();

    CVRCommandManager* GetCommandManager() override { return m_inner.GetCommandManager(); }
    CVRQueryResponse RunQuery(const std::shared_ptr<CVRQuery>& query) override;
    KVString GetCurrentLanguage() override { return m_inner.GetCurrentLanguage(); }
    QList<int> GetDescriptionLanguages() override { return m_inner.GetDescriptionLanguages(); }
    KVString GetWorkingFolder() override { return m_inner.GetWorkingFolder(); }
    KVString GetBaseFolder() override { return m_inner.GetBaseFolder(); }
    ILongOperationRunner* GetLongOperationRunner(CFxDocument* document) override
    {
        return m_inner.GetLongOperationRunner(document);
    }
    CVRQueryResponse GetComponentPropertyValue(const KVString& componentKey,
                                               const KVString& propertyName) override;
    KVString GetComponentBlockName(const KVString& componentKey, const KVString& standard) override
    {
        return m_inner.GetComponentBlockName(componentKey, standard);
    }

private:
    CVRServices& m_inner;
    qint64 m_queryNs = 0;
    qint64 m_propertyNs = 0;
    qint64 m_prepareNs = 0;
    int m_queries = 0;
    int m_propertyQueries = 0;
};
