#pragma once

#include "RecordingCommandManager.h"
#include "SyncLongOperationRunner.h"

#include "host/CVRServices.h"

// The host's electrical services over a real database connection: the module's queries are
// prepared and executed on it as the host's query runner would. The long-operation runner is
// synchronous; the folders and languages are scripted.
class FakeElectricalServices final : public CVRServices
{
public:
    // --- scripting
    // The name of the QSqlDatabase connection queries run on; empty for "no database", which
    // makes every query fail.
    void setConnectionName(const QString& name) { m_connection = name; }
    // Without a runner the host answers null to GetLongOperationRunner.
    void setHasRunner(bool hasRunner) { m_hasRunner = hasRunner; }
    void setCurrentLanguage(const KVString& language) { m_language = language; }
    void setDescriptionLanguages(const QList<int>& languages) { m_languages = languages; }
    void setWorkingFolder(const KVString& folder) { m_workingFolder = folder; }
    void setBaseFolder(const KVString& folder) { m_baseFolder = folder; }

    // --- reading back
    SyncLongOperationRunner& runner() { return m_runner; }
    RecordingCommandManager& commandManager() { return m_commands; }
    int queryCount() const { return m_queries; }

    // CVRServices
    CVRCommandManager* GetCommandManager() override { return &m_commands; }
    CVRQueryResponse RunQuery(const std::shared_ptr<CVRQuery>& query) override;
    KVString GetCurrentLanguage() override { return m_language; }
    QList<int> GetDescriptionLanguages() override { return m_languages; }
    KVString GetWorkingFolder() override { return m_workingFolder; }
    KVString GetBaseFolder() override { return m_baseFolder; }
    ILongOperationRunner* GetLongOperationRunner(CFxDocument*) override
    {
        return m_hasRunner ? &m_runner : nullptr;
    }
    // VALUE of CUSTOM_PROPERTIES for the key (trimmed) and tag.
    CVRQueryResponse GetComponentPropertyValue(const KVString& componentKey,
                                               const KVString& propertyName) override;
    // KV_DWG of the key's row in BDKV for the standard, trimmed; empty when there is none.
    KVString GetComponentBlockName(const KVString& componentKey, const KVString& standard) override;

private:
    QString m_connection;
    bool m_hasRunner = true;
    KVString m_language = QStringLiteral("0");
    QList<int> m_languages;
    KVString m_workingFolder;
    KVString m_baseFolder;
    SyncLongOperationRunner m_runner;
    RecordingCommandManager m_commands;
    int m_queries = 0;
};
