#include "ElectricalServicesProxy.h"

#include <QCoreApplication>

namespace KvHost {

CVRQueryResponse ElectricalServicesProxy::RunQuery(const std::shared_ptr<CVRQuery>& query)
{
    if (!m_target)
        return CVRQueryResponse::failure(
            QCoreApplication::translate("kvhost", "no standard database is set up"));
    return m_target->RunQuery(query);
}

KVString ElectricalServicesProxy::GetCurrentLanguage()
{
    return m_target ? m_target->GetCurrentLanguage() : KVString();
}

QList<int> ElectricalServicesProxy::GetDescriptionLanguages()
{
    return m_target ? m_target->GetDescriptionLanguages() : QList<int>();
}

KVString ElectricalServicesProxy::GetWorkingFolder()
{
    return m_target ? m_target->GetWorkingFolder() : KVString();
}

KVString ElectricalServicesProxy::GetBaseFolder()
{
    return m_target ? m_target->GetBaseFolder() : KVString();
}

ILongOperationRunner* ElectricalServicesProxy::GetLongOperationRunner(CFxDocument* document)
{
    // Without a database there is nothing a run could do.
    return m_target && document ? &m_runner : nullptr;
}

CVRQueryResponse ElectricalServicesProxy::GetComponentPropertyValue(const KVString& componentKey,
                                                                    const KVString& propertyName)
{
    return m_target ? m_target->GetComponentPropertyValue(componentKey, propertyName)
                    : CVRQueryResponse();
}

KVString ElectricalServicesProxy::GetComponentBlockName(const KVString& componentKey,
                                                        const KVString& standard)
{
    return m_target ? m_target->GetComponentBlockName(componentKey, standard) : KVString();
}

} // namespace KvHost
