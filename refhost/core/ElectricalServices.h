#pragma once

#include "CommandManager.h"
#include "DatabaseConnection.h"
#include "TerminalLongOperationRunner.h"

#include "host/CVRServices.h"

#include <QHash>
#include <QSqlQuery>

#include <memory>
#include <optional>

namespace RefHost {

// The electrical services of the reference host: the query service over the standard's
// database (read-only), the folders, the languages, the long-operation runner and the command
// manager. Column names are answered in upper case whatever the database reports, so that
// SQLite and PostgreSQL (which folds unquoted names to lower case) answer alike.
class ElectricalServices final : public CVRServices
{
public:
    struct Settings
    {
        QString standard;      // the standard whose rows the ready-made queries read
        QString language;      // empty: the lowest language found in BDMENUS
        QString workingFolder; // the user's working folder
        QString baseFolder;    // the folder holding "DADOS/<standard>/BLOCOS/"
    };

    ElectricalServices(std::unique_ptr<DatabaseConnection> connection, Settings settings,
                       Console& console);
    ~ElectricalServices() override;

    CVRCommandManager* GetCommandManager() override { return &m_commands; }
    // Runs the statement as it is on the read-only connection: anything that would write fails
    // there, also after a statement that tried to turn the protection off. A query with a
    // cache key is answered from the cache after its first success.
    CVRQueryResponse RunQuery(const std::shared_ptr<CVRQuery>& query) override;
    KVString GetCurrentLanguage() override;
    QList<int> GetDescriptionLanguages() override;
    KVString GetWorkingFolder() override { return m_settings.workingFolder; }
    KVString GetBaseFolder() override { return m_settings.baseFolder; }
    ILongOperationRunner* GetLongOperationRunner(CFxDocument* document) override;
    // One value (column "VALUE"), or no row: the VALUE of CUSTOM_PROPERTIES whose trimmed
    // ITEM_KEY is the trimmed key, whose trimmed TAG equals the name ignoring case and whose
    // ITEM_TYPE is 0, 1 or 2; when there is none, the BDKV column of that name (ignoring case)
    // in the row of the key and the standard.
    CVRQueryResponse GetComponentPropertyValue(const KVString& componentKey,
                                               const KVString& propertyName) override;
    KVString GetComponentBlockName(const KVString& componentKey, const KVString& standard) override;

    CommandManager& commands() { return m_commands; }
    TerminalLongOperationRunner& runner() { return m_runner; }
    const DatabaseConnection& connection() const { return *m_connection; }

    // The SQL texts of the ready-made queries, for the documentation and the tests.
    static QString propertyValueSql();
    static QString bdkvColumnSql(const QString& column);
    static QString blockNameSql();
    static QString languagesSql();

private:
    CVRQueryResponse runPrepared(QSqlQuery& query, const QString& sql,
                                 const QList<QPair<QString, QVariant>>& values);
    std::optional<QString> bdkvColumn(const QString& name);

    std::unique_ptr<DatabaseConnection> m_connection;
    Settings m_settings;
    Console& m_console;
    CommandManager m_commands;
    TerminalLongOperationRunner m_runner;
    QHash<QString, CVRQueryResponse> m_cache;
    std::optional<QList<int>> m_languages;
    std::optional<QStringList> m_bdkvColumns;
    // Prepared once and reused; destroyed before the connection.
    QSqlQuery m_propertyQuery;
    QSqlQuery m_blockNameQuery;
    QHash<QString, QSqlQuery> m_bdkvQueries;
};

} // namespace RefHost
