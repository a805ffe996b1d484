#pragma once

// kv_testhost: a recording host for the module's unit tests.
//
// A TestHost owns one fake of every host interface (FakeCad, FakeDrawingLanguage,
// FakeElectricalServices with its SyncLongOperationRunner and RecordingCommandManager,
// FakeSystemServices, FakeDocument), a temporary folder and, once created, a real database
// on which the module's queries are prepared and executed. install() puts the fakes in place
// behind a HostTrace, so every call the module makes through src/host/ is written as one
// JSON line; traceLines() reads them back.
//
//     TestHost host;
//     QVERIFY2(host.createDatabase(R"(CREATE TABLE BDKV (KV_KEY VARCHAR(20), KV_DWG VARCHAR(40));
//                                     INSERT INTO BDKV VALUES ('10', 'RELAY'))"),
//              qPrintable(host.errorText()));
//     host.cad().setVar("*NORMA_UTILIZADA*", "IEC");        // drawing variables
//     host.cad().setCurrentLayer("P1$1");                    // the current page
//     host.cad().addFile("N:/DADOS\\IEC\\BLOCOS\\RELAY.dwg"); // files that exist
//     host.language().onInvoke("criarpagina", [&](const KVStringList&) {
//         host.cad().setCurrentLayer("P2$1");                // what a function does
//     });
//     host.language().setVariable("*L_PAGINAS*", chain);     // drawing-language variables
//     {
//         const auto installed = host.install();
//         ... run the module ...
//     }
//     KV_COMPARE_TRACE(host.traceLines(), expected);         // see TraceLine.h
//
// Message boxes are answered OK at once and kept (system().messages()); file dialogs answer
// what was queued with system().queueFileDialogAnswer(). The database is SQLite in the
// temporary folder, or with createDatabase(sql, TestDatabase::Kind::PostgreSQL) a fresh schema
// on the server named by KV_TEST_PGURL (a test skips that row when the variable is not set).

#include "FakeCad.h"
#include "FakeDocument.h"
#include "FakeDrawingLanguage.h"
#include "FakeElectricalServices.h"
#include "FakeSystemServices.h"
#include "TestDatabase.h"

#include "host/HostBinding.h"
#include "host/HostTrace.h"

#include <QBuffer>
#include <QTemporaryDir>

#include <memory>

class TestHost
{
public:
    static constexpr KVWindowId kMainWindow = 0x4b56;

    TestHost();
    ~TestHost();
    TestHost(const TestHost&) = delete;
    TestHost& operator=(const TestHost&) = delete;

    // The temporary folder (removed with the host) and a path inside it.
    QString folder() const { return m_dir.path(); }
    QString path(const QString& relative) const { return m_dir.filePath(relative); }

    // Creates the standard's database from SQL text and points the query service at it.
    bool createDatabase(const QString& sqlText,
                        TestDatabase::Kind kind = TestDatabase::Kind::SQLite);
    // Runs more SQL on the database (for instance to make a table disappear).
    bool execSql(const QString& sqlText);
    TestDatabase& database() { return m_database; }
    QString errorText() const { return m_error; }

    FakeCad& cad() { return m_cad; }
    FakeDrawingLanguage& language() { return m_language; }
    FakeElectricalServices& electrical() { return m_electrical; }
    SyncLongOperationRunner& runner() { return m_electrical.runner(); }
    FakeSystemServices& system() { return m_system; }
    FakeDocument& document() { return m_document; }

    // The fakes as a binding, without the trace.
    HostBinding binding();
    // Installs the traced binding until the returned object is destroyed.
    [[nodiscard]] std::unique_ptr<ScopedHostBinding> install();

    // The trace lines written since the start or the last clearTrace(), without newlines.
    QStringList traceLines() const;
    void clearTrace();

private:
    QTemporaryDir m_dir;
    TestDatabase m_database;
    QString m_error;
    FakeCad m_cad;
    FakeDrawingLanguage m_language;
    FakeElectricalServices m_electrical;
    FakeSystemServices m_system;
    FakeDocument m_document;
    QByteArray m_traceBytes;
    QBuffer m_traceBuffer;
    std::unique_ptr<HostTrace> m_trace;
};
