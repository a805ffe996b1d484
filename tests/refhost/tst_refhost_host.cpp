#include "CoreTestSupport.h"
#include "ReferenceHost.h"

#include "host/CFxDocument.h"
#include "host/CFxSystemServices.h"
#include "host/CICad.h"
#include "host/CVRServices.h"
#include "host/ComponentPalette.h"
#include "host/DrawingLanguage.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <stdexcept>

using namespace RefHost;

namespace {

struct CountingTask
{
    int steps = 0;
    bool hadProgressor = false;
    longOperationResult operator()(CVRLongOperationTask& task)
    {
        FxProgressorUtils::Progressor* progressor = task.progressor();
        hadProgressor = progressor != nullptr;
        if (!progressor)
            return longOperationResult::Failure;
        progressor->BeginNestedObject(steps, 0);
        for (int i = 0; i < steps; ++i)
            progressor->Meter();
        return longOperationResult::Success;
    }
};

} // namespace

class TestRefHostHost : public QObject
{
    Q_OBJECT

private:
    HostOptions options()
    {
        HostOptions o;
        o.database = m_database;
        o.standard = QStringLiteral("IEC");
        o.networkDir = m_dir->path() + QStringLiteral("/Net");
        o.tempFolder = m_dir->path() + QStringLiteral("/tmp");
        o.workingFolder = m_dir->path() + QStringLiteral("/work");
        o.console = m_console.get();
        o.blockReader = m_reader.reader();
        return o;
    }

    QString err() const { return QString::fromUtf8(m_err.data()); }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        m_database = m_dir->path() + QStringLiteral("/standard.db");
        QCOMPARE(CoreTest::createSqliteStandard(m_database), QString());
        QVERIFY(
            CoreTest::writeBlockDxf(m_dir->path() + QStringLiteral("/Net/DADOS/IEC/BLOCOS/M1.dxf"),
                                    {{QStringLiteral("TAG"), QStringLiteral("M?")}}));
        for (QBuffer* buffer : {&m_out, &m_err, &m_trace}) {
            buffer->close();
            buffer->setData({});
            QVERIFY(buffer->open(QIODevice::WriteOnly));
        }
        m_console = std::make_unique<Console>(&m_out, &m_err);
        m_reader = {};
    }

    void cleanup() { m_console.reset(); }

    void creationErrorsNameTheProblem_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("error"); // %1: the temporary folder
        QTest::newRow("no database") << "database"
                                     << ""
                                     << "no database given";
        QTest::newRow("missing database") << "database"
                                          << "%1/none.db"
                                          << "%1/none.db: database file not found";
        QTest::newRow("no standard") << "standard"
                                     << " "
                                     << "no standard given";
        QTest::newRow("missing network folder") << "networkDir"
                                                << "%1/Elsewhere"
                                                << "%1/Elsewhere: network folder not found";
        QTest::newRow("unwritable trace") << "traceFile"
                                          << "%1/no/such/folder/t.jsonl"
                                          << "%1/no/such/folder/t.jsonl: cannot write the trace: ";
    }

    void creationErrorsNameTheProblem()
    {
        QFETCH(QString, field);
        QFETCH(QString, value);
        QFETCH(QString, error);
        HostOptions o = options();
        value.replace(QStringLiteral("%1"), m_dir->path());
        error.replace(QStringLiteral("%1"), m_dir->path());
        if (field == u"database")
            o.database = value;
        else if (field == u"standard")
            o.standard = value;
        else if (field == u"networkDir")
            o.networkDir = value;
        else if (field == u"traceFile")
            o.traceFile = value;
        const ReferenceHost::Created created = ReferenceHost::create(std::move(o));
        QVERIFY(!created.host);
        QVERIFY2(created.error.startsWith(error), qPrintable(created.error));
    }

    void blocksAreReadFromDxfByDefault()
    {
        HostOptions o = options();
        o.blockReader = {};
        ReferenceHost::Created created = ReferenceHost::create(std::move(o));
        QVERIFY2(created.host, qPrintable(created.error));
        ScopedHostBinding bound(created.host->binding());
        QVERIFY(
            CICad::InserirBloco(m_dir->path() + QStringLiteral("\\net\\dados\\iec\\blocos\\m1.dwg"),
                                QStringLiteral("M1"), QStringLiteral("PAGE$1"), 1, 2, 0, 45));
        QVERIFY2(m_err.data().isEmpty(), m_err.data().constData());
        QCOMPARE(m_reader.calls, 0);
        const Drawing& drawing = created.host->drawing();
        QCOMPARE(drawing.references().size(), 1);
        QCOMPARE(drawing.references().first().attributes.size(), 1);
        QCOMPARE(drawing.references().first().attributes.first().tag, QStringLiteral("TAG"));
        QCOMPARE(drawing.references().first().attributes.first().value, QStringLiteral("M?"));
        QVERIFY(!drawing.blocks().value(QStringLiteral("M1")).geometry.isEmpty());

        // A file that is no DXF: the reader's error, one line, nothing placed.
        QFile bad(m_dir->path() + QStringLiteral("/Net/DADOS/IEC/BLOCOS/BAD.dxf"));
        QVERIFY(bad.open(QIODevice::WriteOnly));
        bad.write("not a drawing\n");
        bad.close();
        QVERIFY(
            !CICad::InserirBloco(m_dir->path() + QStringLiteral("/Net/DADOS/IEC/BLOCOS/BAD.dwg"),
                                 QStringLiteral("BAD"), {}, 0, 0, 0, 0));
        QCOMPARE(drawing.references().size(), 1);
        QVERIFY2(err().startsWith(QStringLiteral("error: ")) &&
                     err().contains(QStringLiteral("BAD.dxf")) &&
                     err().count(QLatin1Char('\n')) == 1,
                 qPrintable(err()));
    }

    void theInstalledHostAnswersTheModule()
    {
        ReferenceHost::Created created = ReferenceHost::create(options());
        QVERIFY2(created.host, qPrintable(created.error));
        ReferenceHost& host = *created.host;
        QVERIFY(!host.isTracing());
        ScopedHostBinding bound(host.binding());

        QCOMPARE(host.drawing().pageLayers(), QStringList{QStringLiteral("PAGE$1")});
        QCOMPARE(CICad::GetLayerCorrente(), QStringLiteral("PAGE$1"));
        QCOMPARE(CICad::GetVarStr(QStringLiteral("*NORMA_UTILIZADA*")), QStringLiteral("IEC"));
        QCOMPARE(CICad::GetVarStr(QStringLiteral("*DIRETORIO_REDE*")),
                 m_dir->path() + QStringLiteral("/Net/"));
        QCOMPARE(GetElectricalServices()->GetBaseFolder(), m_dir->path() + QStringLiteral("/Net/"));
        QCOMPARE(GetElectricalServices()->GetWorkingFolder(),
                 m_dir->path() + QStringLiteral("/work"));
        QCOMPARE(GetElectricalServices()->GetComponentBlockName(QStringLiteral("100"),
                                                                QStringLiteral("IEC")),
                 QStringLiteral("M1"));
        QCOMPARE(CIRegistro().GetCaminhoTemp(), m_dir->path() + QStringLiteral("/tmp/"));
        QVERIFY(GetComponentPalette());
        QCOMPARE(GetComponentPalette()->GetNormaSelecionada()->GetKey(), QStringLiteral("IEC"));
        QVERIFY(
            GetComponentPalette()->carga(*GetComponentPalette()->GetNormaSelecionada(), 0).ok());

        QCOMPARE(CFxMessageBox::warning(CFxUtils::GetMainWindowId(), QStringLiteral("Careful")),
                 HeadlessSystemServices::kMessageOk);
        CFxMessageBox::critical(0, QStringLiteral("The component was not found on this standard"));
        electricalLog(ACTIVE_DOCUMENT(),
                      QStringLiteral("CIInsereAuto::OnBnClickedBtImportar : bad"));
        kvPrintf(QStringLiteral("\n\nAutomatic insertion completed"));
        QCOMPARE(err(), QStringLiteral("warning: Careful\n"
                                       "critical: The component was not found on this standard\n"
                                       "log: CIInsereAuto::OnBnClickedBtImportar : bad\n"));
        QCOMPARE(m_out.data(), QByteArray("\n\nAutomatic insertion completed"));
        QCOMPARE(GetFxSystemServices()->GetMessageBoxTitle(), QStringLiteral("KVInsertAuto"));

        ACTIVE_DOCUMENT()->SetLispResultString(QStringLiteral("/tmp/"));
        QCOMPARE(host.document().lispResult(), QStringLiteral("/tmp/"));
    }

    void aComponentIsPlacedThroughTheBoundary()
    {
        ReferenceHost::Created created = ReferenceHost::create(options());
        QVERIFY2(created.host, qPrintable(created.error));
        ScopedHostBinding bound(created.host->binding());
        QVERIFY(
            CoreTest::writeBlockDxf(m_dir->path() + QStringLiteral("/Net/DADOS/IEC/BLOCOS/L1.dxf"),
                                    {{QStringLiteral("TAG"), QStringLiteral("H?")}}));
        // What the run does for one symbol: publish, check the block file, insert.
        CICad::SetVarStr(QStringLiteral("KV_KEY"), QStringLiteral("100"));
        CICad::SetVarStr(QStringLiteral("KV_DWG"), QStringLiteral("M1"));
        CICad::SetVarLstStr(QStringLiteral("PBLLSTREGCAUTO"),
                            KVStringList{QStringLiteral("TAG"), QStringLiteral("-M1")});
        QVERIFY(
            CICad::FileExists(m_dir->path() + QStringLiteral("/Net/DADOS\\IEC\\BLOCOS\\M1.dwg")));
        kvInvokeTyped({LispItem::fromText(QStringLiteral("inserirAuto")),
                       LispItem::fromInteger(100), LispItem::fromPoint({5, 6, 0})});
        QVERIFY2(m_err.data().isEmpty(), m_err.data().constData());
        const QList<BlockReference>& refs = created.host->drawing().references();
        QCOMPARE(refs.size(), 1);
        QCOMPARE(refs.first().attributes.first().value, QStringLiteral("-M1"));
        QCOMPARE(refs.first().layer, QStringLiteral("PAGE$1"));

        // A per-page component is not published: its block comes from the database.
        kvInvokeTyped({LispItem::fromText(QStringLiteral("inserirAuto")),
                       LispItem::fromInteger(200), LispItem::fromPoint({50, 6, 0}),
                       LispItem::fromText(QStringLiteral("0.0"))});
        QVERIFY2(m_err.data().isEmpty(), m_err.data().constData());
        QCOMPARE(refs.size(), 2);
        QCOMPARE(refs.last().blockName, QStringLiteral("L1"));
        QCOMPARE(refs.last().attributes.first().value, QStringLiteral("H?"));
    }

    void givenDrawingIsUsed()
    {
        HostOptions o = options();
        Drawing drawing;
        drawing.addPageLayer(QStringLiteral("SHEET$4"));
        drawing.setCurrentLayer(QStringLiteral("SHEET$4"));
        o.drawing = drawing;
        ReferenceHost::Created created = ReferenceHost::create(std::move(o));
        QVERIFY2(created.host, qPrintable(created.error));
        QCOMPARE(created.host->drawing().currentLayer(), QStringLiteral("SHEET$4"));
        QCOMPARE(created.host->drawing().groups().size(), 1);
    }

    void networkDirVariableEndsWithASeparator_data()
    {
        QTest::addColumn<QString>("given");
        QTest::addColumn<QString>("value");
        QTest::newRow("bare") << "/net"
                              << "/net/";
        QTest::newRow("slash") << "/net/"
                               << "/net/";
        QTest::newRow("backslash") << "C:\\net\\"
                                   << "C:\\net\\";
        QTest::newRow("empty") << ""
                               << "";
    }

    void networkDirVariableEndsWithASeparator()
    {
        QFETCH(QString, given);
        QFETCH(QString, value);
        QCOMPARE(ReferenceHost::networkDirVariableValue(given), value);
    }

    void fileDialogAnswersInOrderThenCancels()
    {
        HostOptions o = options();
        o.fileDialogAnswers = {QStringLiteral("/a/settings.cfa"), QStringLiteral("/b/sheet.xlsx")};
        ReferenceHost::Created created = ReferenceHost::create(std::move(o));
        QVERIFY2(created.host, qPrintable(created.error));
        ScopedHostBinding bound(created.host->binding());
        CFxSystemServices* system = GetFxSystemServices();
        KVString path;
        auto ask = [&] {
            return system->FileDialog(0, path, 0, CFxSystemServices::kOpenExisting, {}, {}, {}, {},
                                      nullptr, nullptr, nullptr, 0);
        };
        QCOMPARE(ask(), KV_RESULT_OK);
        QCOMPARE(path, QStringLiteral("/a/settings.cfa"));
        QCOMPARE(ask(), KV_RESULT_OK);
        QCOMPARE(path, QStringLiteral("/b/sheet.xlsx"));
        path = QStringLiteral("unchanged");
        QCOMPARE(ask(), HeadlessSystemServices::kDialogCancelled);
        QCOMPARE(path, QStringLiteral("unchanged"));

        CFxResourceContext* resources = system->GetResourceContext();
        int module = 0;
        QCOMPARE(resources->setCurrent(&module), nullptr);
        QCOMPARE(resources->setCurrent(nullptr), static_cast<void*>(&module));
    }

    void traceRecordsTheConversation()
    {
        HostOptions o = options();
        o.traceDevice = &m_trace;
        ReferenceHost::Created created = ReferenceHost::create(std::move(o));
        QVERIFY2(created.host, qPrintable(created.error));
        QVERIFY(created.host->isTracing());
        {
            ScopedHostBinding bound(created.host->binding());
            CICad::SetVarStr(QStringLiteral("KV_KEY"), QStringLiteral("100"));
            kvInvokeVoid(QStringLiteral("criarpagina"), QStringLiteral("PAGE"),
                         QStringLiteral("0"));
            CICad::GetLayerCorrente();
            CFxMessageBox::warning(0, QStringLiteral("Careful"));
            GetElectricalServices()->GetComponentBlockName(QStringLiteral("100"),
                                                           QStringLiteral("IEC"));
        }
        // The untraced binding does not write.
        {
            ScopedHostBinding bound(created.host->untracedBinding());
            CICad::SetVarStr(QStringLiteral("KV_KEY"), QStringLiteral("200"));
        }
        const QList<QByteArray> lines = m_trace.data().split('\n');
        QCOMPARE(lines.size(), 6); // five lines and the empty text after the last newline
        QCOMPARE(lines.at(0), QByteArray(R"({"op":"setvar","name":"KV_KEY","value":"100"})"));
        QCOMPARE(lines.at(1),
                 QByteArray(R"({"op":"invoke","fn":"criarpagina","args":["PAGE","0"]})"));
        QCOMPARE(lines.at(2), QByteArray(R"({"op":"getLayer","value":"PAGE$2"})"));
        QCOMPARE(lines.at(3), QByteArray(R"({"op":"message","kind":"warning","text":"Careful"})"));
        QCOMPARE(
            QJsonDocument::fromJson(lines.at(4)).object().value(QStringLiteral("value")).toString(),
            QStringLiteral("M1"));
        QCOMPARE(lines.at(5), QByteArray());
    }

    void traceFileIsWritten()
    {
        HostOptions o = options();
        o.traceFile = m_dir->path() + QStringLiteral("/trace.jsonl");
        {
            ReferenceHost::Created created = ReferenceHost::create(std::move(o));
            QVERIFY2(created.host, qPrintable(created.error));
            ScopedHostBinding bound(created.host->binding());
            CICad::Regen();
            QCOMPARE(created.host->cad().regenCount(), 1);
        }
        QFile file(m_dir->path() + QStringLiteral("/trace.jsonl"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("{\"op\":\"regen\"}\n"));
    }

    void progressAsPlainLines()
    {
        TerminalLongOperationRunner runner(*m_console);
        CountingTask task{20};
        QCOMPARE(runner.run(std::ref(task), {}, false, true), longOperationResult::Success);
        QVERIFY(task.hadProgressor);
        QStringList expected;
        for (int done : {0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20})
            expected.append(QStringLiteral("progress: %1/20").arg(done));
        QCOMPARE(err(), expected.join(QLatin1Char('\n')) + QLatin1Char('\n'));
        QCOMPARE(runner.runCount(), 1);
    }

    void progressAsABarOnATerminal()
    {
        Console terminal(&m_out, &m_err, true);
        TerminalLongOperationRunner runner(terminal);
        CountingTask task{3};
        QCOMPARE(runner.run(std::ref(task), QStringLiteral("Inserting"), false, true),
                 longOperationResult::Success);
        QCOMPARE(err(), QStringLiteral("\rInserting [..............................] 0/3"
                                       "\rInserting [##########....................] 1/3"
                                       "\rInserting [####################..........] 2/3"
                                       "\rInserting [##############################] 3/3\n"));
    }

    void anEscapingExceptionFailsTheOperation()
    {
        TerminalLongOperationRunner runner(*m_console);
        const longOperationResult result = runner.run(
            [](CVRLongOperationTask&) -> longOperationResult { throw std::runtime_error("boom"); },
            {}, false, true);
        QCOMPARE(result, longOperationResult::Failure);
        QCOMPARE(err(), QStringLiteral("error: long operation failed: boom\n"));
        QCOMPARE(runner.run({}, {}, false, false), longOperationResult::Failure);
    }

    void commandsByName()
    {
        CommandManager manager;
        int runs = 0;
        manager.AddCommand(makeUndoableFunctionCommand(
            QStringLiteral("VRINSAUTO"), [&runs](CFxCommandContext*) { ++runs; },
            CVRCommand::runTime::Session));
        manager.AddCommand(makeNotUndoableFunctionCommand(
            QStringLiteral("VRINSAUTOCONFIG"), [&runs](CFxCommandContext*) { runs += 10; },
            CVRCommand::runTime::Session));
        QCOMPARE(manager.names(), (QStringList{"VRINSAUTO", "VRINSAUTOCONFIG"}));
        QVERIFY(manager.run(QStringLiteral("vrinsauto")));
        QCOMPARE(runs, 1);
        QVERIFY(manager.find(QStringLiteral("VRINSAUTO"))->isUndoable());
        QVERIFY(!manager.find(QStringLiteral("VRINSAUTOCONFIG"))->isUndoable());
        manager.AddCommand(makeUndoableFunctionCommand(
            QStringLiteral("VRInsAuto"), [&runs](CFxCommandContext*) { runs += 100; },
            CVRCommand::runTime::Session));
        QCOMPARE(manager.names().size(), 2);
        QVERIFY(manager.run(QStringLiteral("VRINSAUTO")));
        QCOMPARE(runs, 101);
        manager.RemoveCommand(QStringLiteral("vrinsauto"));
        QVERIFY(!manager.run(QStringLiteral("VRINSAUTO")));
        QCOMPARE(manager.names(), QStringList{QStringLiteral("VRINSAUTOCONFIG")});
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_database;
    QBuffer m_out;
    QBuffer m_err;
    QBuffer m_trace;
    std::unique_ptr<Console> m_console;
    CoreTest::StandInBlockReader m_reader;
};

QTEST_GUILESS_MAIN(TestRefHostHost)
#include "tst_refhost_host.moc"
