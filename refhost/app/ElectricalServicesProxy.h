#pragma once

#include "host/CVRServices.h"

namespace KvHost {

// The electrical services the module sees in the desktop host: the queries, languages and
// folders of the current reference host (which is rebuilt when the settings change or another
// drawing is opened), with the desktop host's own command manager, which outlives those
// rebuilds and so keeps the module's commands, and its progress-dialog runner.
class ElectricalServicesProxy final : public CVRServices
{
public:
    ElectricalServicesProxy(CVRCommandManager& commands, ILongOperationRunner& runner)
        : m_commands(commands), m_runner(runner)
    {}

    // The services answering queries; null while no standard database is set up.
    void setTarget(CVRServices* target) { m_target = target; }
    CVRServices* target() const { return m_target; }

    CVRCommandManager* GetCommandManager() override { return &m_commands; }
    CVRQueryResponse RunQuery(const std::shared_ptr<CVRQuery>& query) override;
    KVString GetCurrentLanguage() override;
    QList<int> GetDescriptionLanguages() override;
    KVString GetWorkingFolder() override;
    KVString GetBaseFolder() override;
    ILongOperationRunner* GetLongOperationRunner(CFxDocument* document) override;
    CVRQueryResponse GetComponentPropertyValue(const KVString& componentKey,
                                               const KVString& propertyName) override;
    KVString GetComponentBlockName(const KVString& componentKey, const KVString& standard) override;

private:
    CVRCommandManager& m_commands;
    ILongOperationRunner& m_runner;
    CVRServices* m_target = nullptr;
};

} // namespace KvHost
