// The desktop host without the insertion module's dialogs: filter notation, module loading and
// refusal, settings that persist, the command line, message boxes, progress, drawings and
// undo.
#include "AppTestSupport.h"

#include "AppStartup.h"
#include "CommandLineEdit.h"
#include "DesktopHost.h"
#include "FileDialogFilter.h"
#include "GuiSystemServices.h"
#include "HostSettingsDialog.h"
#include "MainWindow.h"
#include "ModuleLoader.h"
#include "ProgressRunner.h"

#include "DxfDrawingReader.h"

#include "host/DrawingLanguage.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QCompleter>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLibrary>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProcess>
#include <QSettings>
#include <QTest>
#include <QThread>
#include <QTreeWidget>

using namespace AppTest;

class TestAppHost : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void nameFilters_data();
    void nameFilters();

    void refusesUnsupportedVersion_data();
    void refusesUnsupportedVersion();
    void refusesLibraryWithoutExports();
    void missingLibraryIsNamed();
    void programRefusesUnsupportedModule();
    void loadsModuleCommands();
    void settingsCommandOpensSettingsDialog();
    void moduleFunctionFromTheCommandLine();
    void moduleFunctionOutlivesRebuildAndGoesWithTheModule();

    void settingsPersist();
    void settingsDialogEditsEverySetting();
    void badDatabaseIsReportedAndKept();

    void commandLineHistoryAndCompletion();
    void unknownCommandIsReported();
    void messageBoxHasOneOkAndHostTitle();
    void fileDialogScriptedAnswers();
    void fileDialogIsQtDialogWithNameFilters();
    void progressRunnerMetersAndStaysResponsive();

    void newDrawingHasOnePage();
    void openReportsBadFile();
    void saveAndOpenKeepDrawing();
    void undoRedoOneStep();
    void pagesMoveWithCommandsAndList();

private:
    std::unique_ptr<ExampleSetup> m_example;
};

void TestAppHost::initTestCase()
{
    m_example = std::make_unique<ExampleSetup>();
    QVERIFY2(m_example->error.isEmpty(), qPrintable(m_example->error));
}

void TestAppHost::nameFilters_data()
{
    QTest::addColumn<QString>("hostFilter");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("settings picker")
        << QStringLiteral("Settings file (*.cfa)|*.cfa||&*.cfa&All Files (*.*)|*.*||&*.*&&")
        << QStringList{QStringLiteral("Settings file (*.cfa)"), QStringLiteral("All Files (*.*)")};
    QTest::newRow("workbooks")
        << QStringLiteral("Worksheet Files (*.xlsx)&*.xlsx&Worksheet Files (*.xlsm)&*.xlsm&&")
        << QStringList{QStringLiteral("Worksheet Files (*.xlsx)"),
                       QStringLiteral("Worksheet Files (*.xlsm)")};
    QTest::newRow("label without parentheses") << QStringLiteral("Drawing|*.dxf||&*.dxf&&")
                                               << QStringList{QStringLiteral("Drawing (*.dxf)")};
    QTest::newRow("several patterns") << QStringLiteral("Pictures&*.png;*.svg&&")
                                      << QStringList{QStringLiteral("Pictures (*.png *.svg)")};
    QTest::newRow("empty") << QString() << QStringList{QStringLiteral("All Files (*)")};
}

void TestAppHost::nameFilters()
{
    QFETCH(QString, hostFilter);
    QFETCH(QStringList, expected);
    QCOMPARE(KvHost::FileDialogFilter::toNameFilters(hostFilter), expected);
}

void TestAppHost::refusesUnsupportedVersion_data()
{
    QTest::addColumn<QString>("library");
    QTest::addColumn<QString>("version");
    QTest::newRow("older major") << QStringLiteral(KV_FAKE_OLD_MODULE)
                                 << QStringLiteral("25.8.0.1234");
    QTest::newRow("other minor") << QStringLiteral(KV_FAKE_MINOR_MODULE)
                                 << QStringLiteral("26.7.0.1234");
}

void TestAppHost::refusesUnsupportedVersion()
{
    QFETCH(QString, library);
    QFETCH(QString, version);
    KvHost::ModuleLoader loader;
    const QString problem = loader.load(library);
    QCOMPARE(problem, QStringLiteral("%1: the module was built for runtime interface %2; this host "
                                     "supports 26.8")
                          .arg(library, version));
    QVERIFY(!loader.isLoaded());
    // The refused library was never asked for its module object.
    QLibrary probe(library);
    QVERIFY(probe.load());
    auto creations = reinterpret_cast<int (*)()>(probe.resolve("kvFakeModuleCreations"));
    QVERIFY(creations);
    QCOMPARE(creations(), 0);
}

void TestAppHost::refusesLibraryWithoutExports()
{
    KvHost::ModuleLoader loader;
    const QString library = QStringLiteral(KV_NOT_A_MODULE);
    QCOMPARE(loader.load(library),
             library + QStringLiteral(": not a module: odrxGetAPIVersion or odrxCreateModuleObject "
                                      "is missing"));
    QVERIFY(!loader.isLoaded());
}

void TestAppHost::missingLibraryIsNamed()
{
    QTemporaryDir dir;
    KvHost::ModuleLoader loader;
    const QString path = KvHost::ModuleLoader::libraryPath(dir.path());
    QCOMPARE(loader.load(path), path + QStringLiteral(": the module library was not found"));
}

void TestAppHost::programRefusesUnsupportedModule()
{
    // The program itself, started on a plug-in folder whose module was built for 25.8.
    QTemporaryDir plugins;
    const QString library = KvHost::ModuleLoader::libraryPath(plugins.path());
    QVERIFY(QFile::copy(QStringLiteral(KV_FAKE_OLD_MODULE), library));
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    // Scripted: the message box is written, not shown.
    environment.insert(QStringLiteral("KVHOST_FILE_DIALOG_ANSWERS"), QString());
    // The settings name no interface language, so the program speaks the system's: English here.
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    program.setProcessEnvironment(environment);
    const QString picture = plugins.filePath(QStringLiteral("window.png"));
    program.start(QStringLiteral(KV_KVHOST_PROGRAM),
                  {QStringLiteral("--config"), m_example->settingsFile, QStringLiteral("--plugins"),
                   plugins.path(), QStringLiteral("--screenshot"), picture});
    QVERIFY(program.waitForFinished(30000));
    const QString errors = QString::fromLocal8Bit(program.readAllStandardError());
    QCOMPARE(program.exitCode(), 0);
    QVERIFY2(errors.contains(QStringLiteral("kvhost: %1: the module was built for runtime "
                                            "interface 25.8.0.1234; this host supports 26.8")
                                 .arg(library)),
             qPrintable(errors));
    QVERIFY(QFileInfo(picture).size() > 0);
}

void TestAppHost::loadsModuleCommands()
{
    KvHost::DesktopHost host(m_example->settingsFile);
    QVERIFY2(host.isConnected(), qPrintable(host.connectionProblem()));
    KvHost::AppOptions options;
    options.pluginFolder = QStringLiteral(KV_MODULE_DIR);
    KvHost::ModuleLoader loader;
    QCOMPARE(KvHost::loadModule(options, host, loader), QString());
    QVERIFY(loader.isLoaded());
    QCOMPARE(loader.version().text(), QStringLiteral("26.8.0.54832"));
    QVERIFY(host.commands().find(QStringLiteral("VRINSAUTO")));
    QVERIFY(host.commands().find(QStringLiteral("VRINSAUTO"))->isUndoable());
    QVERIFY(host.commands().find(QStringLiteral("vrinsautoconfig")));
    QVERIFY(!host.commands().find(QStringLiteral("VRINSAUTOCONFIG"))->isUndoable());
    loader.unload();
    QVERIFY(!host.commands().find(QStringLiteral("VRINSAUTO")));
    QVERIFY(!host.commands().find(QStringLiteral("VRINSAUTOCONFIG")));
}

void TestAppHost::settingsPersist()
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("kvhost.ini"));
    KvHost::HostSettings settings;
    settings.database = QStringLiteral("postgresql://kv@db.example:5433/standard");
    settings.networkFolder = QStringLiteral("/srv/network");
    settings.standard = QStringLiteral("IEC");
    settings.descriptionLanguage = QStringLiteral("2");
    settings.interfaceLanguage = QStringLiteral("pt_BR");
    {
        KvHost::DesktopHost host(file);
        QVERIFY(!host.isConnected());
        // The URL cannot be reached; the settings are kept anyway for the person to correct.
        QVERIFY(!host.applySettings(settings).isEmpty());
    }
    const KvHost::HostSettings read = KvHost::HostSettings::load(file);
    QCOMPARE(read.database, settings.database);
    QCOMPARE(read.networkFolder, settings.networkFolder);
    QCOMPARE(read.standard, settings.standard);
    QCOMPARE(read.descriptionLanguage, settings.descriptionLanguage);
    QCOMPARE(read.interfaceLanguage, settings.interfaceLanguage);
    KvHost::DesktopHost again(file);
    QCOMPARE(again.settings().database, settings.database);
    QCOMPARE(QSettings(file, QSettings::IniFormat).value("standard/name").toString(),
             QStringLiteral("IEC"));
}

void TestAppHost::settingsDialogEditsEverySetting()
{
    KvHost::HostSettings before;
    before.database = QStringLiteral("a.db");
    before.lastFolder = QStringLiteral("/kept");
    KvHost::HostSettingsDialog dialog(before);
    dialog.databaseEdit()->setText(QStringLiteral("  b.db "));
    dialog.networkFolderEdit()->setText(QStringLiteral("/net"));
    dialog.standardEdit()->setText(QStringLiteral("IEC"));
    dialog.descriptionLanguageEdit()->setText(QStringLiteral("2"));
    dialog.interfaceLanguageBox()->setCurrentIndex(
        dialog.interfaceLanguageBox()->findData(QStringLiteral("es")));
    const KvHost::HostSettings after = dialog.settings();
    QCOMPARE(after.database, QStringLiteral("b.db"));
    QCOMPARE(after.networkFolder, QStringLiteral("/net"));
    QCOMPARE(after.standard, QStringLiteral("IEC"));
    QCOMPARE(after.descriptionLanguage, QStringLiteral("2"));
    QCOMPARE(after.interfaceLanguage, QStringLiteral("es"));
    QCOMPARE(after.lastFolder, QStringLiteral("/kept"));
}

void TestAppHost::badDatabaseIsReportedAndKept()
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("kvhost.ini"));
    const QString missing = dir.filePath(QStringLiteral("missing.db"));
    KvHost::DesktopHost host(file);
    KvHost::HostSettings settings;
    settings.database = missing;
    settings.standard = QStringLiteral("IEC");
    const QString problem = host.applySettings(settings);
    QVERIFY2(problem.contains(missing), qPrintable(problem));
    QVERIFY(!host.isConnected());
    QVERIFY(!QFileInfo::exists(missing)); // never created
    QCOMPARE(host.drawing().pageLayers(), QStringList{QStringLiteral("PAGE$1")});
}

void TestAppHost::commandLineHistoryAndCompletion()
{
    KvHost::DesktopHost host(m_example->settingsFile);
    host.system().setScriptedAnswers({});
    KvHost::MainWindow window(host);
    KvHost::CommandLineEdit* line = window.commandLine();
    QVERIFY(line->commandNames().contains(QStringLiteral("UNDO")));
    QVERIFY(line->commandNames().contains(QStringLiteral("NEXTPAGE")));

    QTest::keyClicks(line, QStringLiteral("zoom in"));
    QTest::keyClick(line, Qt::Key_Return);
    QTest::keyClicks(line, QStringLiteral("prevpage"));
    QTest::keyClick(line, Qt::Key_Return);
    QCOMPARE(line->history(), (QStringList{QStringLiteral("ZOOM IN"), QStringLiteral("PREVPAGE")}));
    QVERIFY(window.outputPane()->toPlainText().contains(QStringLiteral("Command: ZOOM IN")));
    QVERIFY(window.outputPane()->toPlainText().contains(QStringLiteral("This is the first page")));

    QTest::keyClicks(line, QStringLiteral("dra"));
    QTest::keyClick(line, Qt::Key_Up);
    QCOMPARE(line->text(), QStringLiteral("PREVPAGE"));
    QTest::keyClick(line, Qt::Key_Up);
    QCOMPARE(line->text(), QStringLiteral("ZOOM IN"));
    QTest::keyClick(line, Qt::Key_Up);
    QCOMPARE(line->text(), QStringLiteral("ZOOM IN"));
    QTest::keyClick(line, Qt::Key_Down);
    QTest::keyClick(line, Qt::Key_Down);
    QCOMPARE(line->text(), QStringLiteral("dra")); // the draft comes back

    line->clear();
    line->commandCompleter()->setCompletionPrefix(QStringLiteral("nex"));
    QCOMPARE(line->commandCompleter()->currentCompletion(), QStringLiteral("NEXTPAGE"));
    line->commandCompleter()->setCompletionPrefix(QStringLiteral("re"));
    QCOMPARE(line->commandCompleter()->completionCount(), 1); // REDO
}

void TestAppHost::unknownCommandIsReported()
{
    KvHost::DesktopHost host(m_example->settingsFile);
    KvHost::MainWindow window(host);
    QVERIFY(!window.execute(QStringLiteral("nosuch")));
    QVERIFY(
        window.outputPane()->toPlainText().contains(QStringLiteral("Unknown command \"NOSUCH\"")));
}

void TestAppHost::messageBoxHasOneOkAndHostTitle()
{
    KvHost::GuiSystemServices system;
    QString title;
    QString text;
    int buttons = -1;
    QMessageBox::StandardButton only = QMessageBox::NoButton;
    ModalAnswer answer([&](QWidget* modal) {
        auto* box = qobject_cast<QMessageBox*>(modal);
        QVERIFY(box);
        title = box->windowTitle();
        text = box->text();
        buttons = int(box->buttons().size());
        only = box->standardButton(box->buttons().constFirst());
        box->buttons().constFirst()->click();
    });
    QCOMPARE(system.ShowMessageBox(MessageKind::Critical, 0, system.GetMessageBoxTitle(),
                                   QStringLiteral("The component was not found on this standard")),
             KvHost::GuiSystemServices::kMessageOk);
    QVERIFY(answer.answered());
    QCOMPARE(title, QStringLiteral("KVInsertAuto"));
    QCOMPARE(text, QStringLiteral("The component was not found on this standard"));
    QCOMPARE(buttons, 1);
    QCOMPARE(only, QMessageBox::Ok);
    QCOMPARE(system.messages(),
             QStringList{QStringLiteral("critical: The component was not found on this standard")});
}

void TestAppHost::fileDialogScriptedAnswers()
{
    KvHost::GuiSystemServices system;
    system.setScriptedAnswers({QStringLiteral("/a.cfa")});
    KVString path = QStringLiteral("unchanged");
    QCOMPARE(system.FileDialog(0, path, 0, CFxSystemServices::kOpenExisting, {}, {},
                               QStringLiteral("Settings file (*.cfa)|*.cfa||&*.cfa&&"),
                               QStringLiteral("/w/Automatic Insertion"), nullptr, nullptr, nullptr,
                               0),
             KV_RESULT_OK);
    QCOMPARE(QString(path), QStringLiteral("/a.cfa"));
    QCOMPARE(system.FileDialog(0, path, 0, CFxSystemServices::kOpenExisting, {}, {}, {}, {},
                               nullptr, nullptr, nullptr, 0),
             KvHost::GuiSystemServices::kDialogCancelled);
    QCOMPARE(QString(path), QStringLiteral("/a.cfa"));
    QCOMPARE(system.fileDialogRequests().size(), 2);
    QCOMPARE(system.fileDialogRequests().first().nameFilters,
             QStringList{QStringLiteral("Settings file (*.cfa)")});
    QCOMPARE(system.fileDialogRequests().first().initialFolder,
             QStringLiteral("/w/Automatic Insertion"));
}

// The dialog the host shows is built apart from showing it, so that it is checked without
// driving a modal dialog.
void TestAppHost::fileDialogIsQtDialogWithNameFilters()
{
    const QString settingsFolder = examplePath(QStringLiteral("settings"));
    const QStringList filters = KvHost::FileDialogFilter::toNameFilters(
        QStringLiteral("Settings file (*.cfa)|*.cfa||&*.cfa&All Files (*.*)|*.*||&*.*&&"));
    const std::unique_ptr<QFileDialog> open = KvHost::GuiSystemServices::makeFileDialog(
        nullptr, CFxSystemServices::kOpenExisting, QStringLiteral("Pick"), settingsFolder, filters);
    QCOMPARE(open->nameFilters(), (QStringList{QStringLiteral("Settings file (*.cfa)"),
                                               QStringLiteral("All Files (*.*)")}));
    QCOMPARE(open->selectedNameFilter(), QStringLiteral("Settings file (*.cfa)"));
    QCOMPARE(open->directory().absolutePath(), QDir(settingsFolder).absolutePath());
    QCOMPARE(open->acceptMode(), QFileDialog::AcceptOpen);
    QCOMPARE(open->fileMode(), QFileDialog::ExistingFile);
    QCOMPARE(open->windowTitle(), QStringLiteral("Pick"));

    QTemporaryDir folder;
    const std::unique_ptr<QFileDialog> save = KvHost::GuiSystemServices::makeFileDialog(
        nullptr, CFxSystemServices::kSaveAs, {}, folder.filePath(QStringLiteral("pumps.dxf")),
        KvHost::FileDialogFilter::toNameFilters(QStringLiteral("Drawing (*.dxf)|*.dxf||&*.dxf&&")));
    QCOMPARE(save->acceptMode(), QFileDialog::AcceptSave);
    QCOMPARE(save->fileMode(), QFileDialog::AnyFile);
    QCOMPARE(save->directory().absolutePath(), QDir(folder.path()).absolutePath());
    QCOMPARE(save->nameFilters(), QStringList{QStringLiteral("Drawing (*.dxf)")});
    QCOMPARE(QFileInfo(save->selectedFiles().value(0)).fileName(), QStringLiteral("pumps.dxf"));
}

void TestAppHost::progressRunnerMetersAndStaysResponsive()
{
    KvHost::ProgressRunner runner;
    int timerShots = 0;
    QTimer timer;
    timer.setInterval(1);
    connect(&timer, &QTimer::timeout, this, [&timerShots]() { ++timerShots; });
    timer.start();
    const longOperationResult result = runner.run(
        [](CVRLongOperationTask& task) -> longOperationResult {
            if (!task.progressor())
                return longOperationResult::Failure;
            task.progressor()->BeginNestedObject(20, 0);
            for (int i = 0; i < 20; ++i) {
                task.progressor()->Meter();
                QThread::msleep(3);
            }
            return longOperationResult::Success;
        },
        {}, false, true);
    QCOMPARE(result, longOperationResult::Success);
    QCOMPARE(runner.lastSteps(), 20);
    // Events were processed while the task ran on this thread.
    QVERIFY2(timerShots > 0, "no event was processed during the operation");

    QString error;
    runner.setErrorSink([&error](const QString& text) { error = text; });
    QCOMPARE(
        runner.run(
            [](CVRLongOperationTask&) -> longOperationResult { throw std::runtime_error("boom"); },
            {}, false, true),
        longOperationResult::Failure);
    QCOMPARE(error, QStringLiteral("long operation failed: boom"));
}

void TestAppHost::newDrawingHasOnePage()
{
    KvHost::DesktopHost host(m_example->settingsFile);
    host.drawing().appendPage(QStringLiteral("OTHER"));
    host.newDrawing();
    QCOMPARE(host.drawing().groups().size(), 1);
    QCOMPARE(host.drawing().groups().first().name, QStringLiteral("PAGE"));
    QCOMPARE(host.drawing().pageLayers(), QStringList{QStringLiteral("PAGE$1")});
    QCOMPARE(host.drawing().currentLayer(), QStringLiteral("PAGE$1"));
}

void TestAppHost::openReportsBadFile()
{
    QTemporaryDir dir;
    const QString bad = dir.filePath(QStringLiteral("bad.dxf"));
    QFile file(bad);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("this is not a drawing\n");
    file.close();
    KvHost::DesktopHost host(m_example->settingsFile);
    host.system().setScriptedAnswers({bad});
    KvHost::MainWindow window(host);
    QVERIFY(window.execute(QStringLiteral("OPEN")));
    QCOMPARE(host.system().messages().size(), 1);
    QVERIFY2(host.system().messages().first().startsWith(QStringLiteral("warning: ") + bad),
             qPrintable(host.system().messages().first()));
    QCOMPARE(host.drawing().pageLayers(), QStringList{QStringLiteral("PAGE$1")});
    QVERIFY(host.filePath().isEmpty());
}

void TestAppHost::saveAndOpenKeepDrawing()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("two-pages"));
    KvHost::DesktopHost host(m_example->settingsFile);
    host.drawing().appendPage(QStringLiteral("PAGE"));
    host.system().setScriptedAnswers({path, path + QStringLiteral(".dxf")});
    KvHost::MainWindow window(host);
    QVERIFY(window.execute(QStringLiteral("SAVE")));
    QCOMPARE(host.filePath(), path + QStringLiteral(".dxf")); // the extension is added
    const RefHost::DxfDrawingReader::Result read = RefHost::DxfDrawingReader::read(host.filePath());
    QVERIFY2(read.drawing, qPrintable(read.error));
    QCOMPARE(read.drawing->pageLayers(),
             (QStringList{QStringLiteral("PAGE$1"), QStringLiteral("PAGE$2")}));

    QVERIFY(window.execute(QStringLiteral("NEW")));
    QCOMPARE(host.drawing().pageLayers().size(), 1);
    QVERIFY(window.execute(QStringLiteral("OPEN")));
    QCOMPARE(host.drawing().pageLayers().size(), 2);
    QCOMPARE(window.pageTree()->topLevelItemCount(), 1);
    QCOMPARE(window.pageTree()->topLevelItem(0)->childCount(), 2);
}

void TestAppHost::undoRedoOneStep()
{
    KvHost::DesktopHost host(m_example->settingsFile);
    KvHost::MainWindow window(host);
    QVERIFY(host.isConnected());
    IDrawingLanguage* language = host.binding().language;
    QVERIFY(language);
    language->invokeVoid({QStringLiteral("inicioInsAuto")});
    language->invokeVoid(
        {QStringLiteral("criarpagina"), QStringLiteral("PAGE"), QStringLiteral("0")});
    language->invokeVoid(
        {QStringLiteral("criarpagina"), QStringLiteral("PAGE"), QStringLiteral("0")});
    language->invokeVoid({QStringLiteral("fimInsAuto")});
    QCOMPARE(host.drawing().pageLayers().size(), 3);
    QVERIFY(host.canUndo());

    QVERIFY(window.execute(QStringLiteral("UNDO")));
    QCOMPARE(host.drawing().pageLayers(), QStringList{QStringLiteral("PAGE$1")});
    QVERIFY(
        window.outputPane()->toPlainText().contains(QStringLiteral("Undone: Automatic insertion")));
    QCOMPARE(window.pageTree()->topLevelItem(0)->childCount(), 1);
    QVERIFY(window.execute(QStringLiteral("UNDO")));
    QVERIFY(window.outputPane()->toPlainText().contains(QStringLiteral("Nothing to undo")));

    QVERIFY(window.execute(QStringLiteral("REDO")));
    QCOMPARE(host.drawing().pageLayers().size(), 3);
    QCOMPARE(window.pageTree()->topLevelItem(0)->childCount(), 3);
}

void TestAppHost::pagesMoveWithCommandsAndList()
{
    KvHost::DesktopHost host(m_example->settingsFile);
    host.drawing().appendPage(QStringLiteral("PAGE"));
    host.drawing().appendPage(QStringLiteral("B"));
    KvHost::MainWindow window(host);
    host.newDrawing(); // refresh through the signal with a fresh drawing
    host.drawing().appendPage(QStringLiteral("PAGE"));
    host.drawing().appendPage(QStringLiteral("B"));
    QVERIFY(window.execute(QStringLiteral("NEXTPAGE")));
    QCOMPARE(host.drawing().currentLayer(), QStringLiteral("PAGE$2"));
    QVERIFY(window.execute(QStringLiteral("NEXTPAGE")));
    QCOMPARE(host.drawing().currentLayer(), QStringLiteral("B$1"));
    QVERIFY(window.execute(QStringLiteral("NEXTPAGE")));
    QCOMPARE(host.drawing().currentLayer(), QStringLiteral("B$1"));
    QCOMPARE(window.pageTree()->topLevelItemCount(), 2);
    QTreeWidgetItem* first = window.pageTree()->topLevelItem(0)->child(0);
    window.pageTree()->setCurrentItem(first);
    QCOMPARE(host.drawing().currentLayer(), QStringLiteral("PAGE$1"));
    QVERIFY(window.execute(QStringLiteral("PREVPAGE")));
    QVERIFY(window.outputPane()->toPlainText().contains(QStringLiteral("This is the first page")));
}

void TestAppHost::settingsCommandOpensSettingsDialog()
{
    KvHost::DesktopHost host(m_example->settingsFile);
    host.system().setScriptedAnswers({examplePath(QStringLiteral("settings/example.cfa"))});
    KvHost::MainWindow window(host);
    KvHost::AppOptions options;
    options.pluginFolder = QStringLiteral(KV_MODULE_DIR);
    KvHost::ModuleLoader loader;
    QCOMPARE(KvHost::loadModule(options, host, loader), QString());
    ModalAnswer settingsDialog([](QWidget* dialog) { dialog->close(); });
    QVERIFY(window.execute(QStringLiteral("VRINSAUTOCONFIG")));
    QVERIFY(settingsDialog.answered());
    QCOMPARE(settingsDialog.className(), QStringLiteral("CIConfigAuto"));
    QCOMPARE(host.system().fileDialogRequests().size(), 1);
    QCOMPARE(host.system().fileDialogRequests().first().mode, CFxSystemServices::kOpenExisting);
    // Cancelled picker: no dialog.
    ModalAnswer none([](QWidget* dialog) { dialog->close(); }, 500);
    QVERIFY(window.execute(QStringLiteral("VRINSAUTOCONFIG")));
    QTest::qWait(600);
    QVERIFY(!none.answered());
    QCOMPARE(host.system().fileDialogRequests().size(), 2);
}

void TestAppHost::moduleFunctionFromTheCommandLine()
{
    KvHost::DesktopHost host(m_example->settingsFile);
    KvHost::MainWindow window(host);
    KvHost::AppOptions options;
    options.pluginFolder = QStringLiteral(KV_MODULE_DIR);
    KvHost::ModuleLoader loader;
    QCOMPARE(KvHost::loadModule(options, host, loader), QString());
    QVERIFY(host.moduleFunctions().contains(QStringLiteral("kvGetTempDir")));

    // The module answers the host's temporary folder, shown as a drawing-language text.
    QVERIFY(window.execute(QStringLiteral("(kvgettempdir)")));
    const QString expected = QLatin1Char('"') + host.system().GetTempFolder() + QLatin1Char('"');
    QVERIFY(!host.system().GetTempFolder().isEmpty());
    QVERIFY2(window.outputPane()->toPlainText().contains(expected),
             qPrintable(window.outputPane()->toPlainText()));

    QVERIFY(!window.execute(QStringLiteral("(kvGetTempDir 1)")));
    QVERIFY(window.outputPane()->toPlainText().contains(
        QStringLiteral("error: kvGetTempDir: takes no arguments")));
    QVERIFY(!window.execute(QStringLiteral("(nosuch)")));
    QVERIFY(
        window.outputPane()->toPlainText().contains(QStringLiteral("Unknown function \"nosuch\"")));
    QVERIFY(!window.execute(QStringLiteral("(kvGetTempDir")));
    QVERIFY(window.outputPane()->toPlainText().contains(QStringLiteral("Unbalanced parentheses")));
    // The run's own functions are not for the command line.
    QVERIFY(!window.execute(QStringLiteral("(fimInsAuto)")));
}

void TestAppHost::moduleFunctionOutlivesRebuildAndGoesWithTheModule()
{
    KvHost::DesktopHost host(m_example->settingsFile);
    KvHost::AppOptions options;
    options.pluginFolder = QStringLiteral(KV_MODULE_DIR);
    KvHost::ModuleLoader loader;
    QCOMPARE(KvHost::loadModule(options, host, loader), QString());
    // Opening another drawing rebuilds the reference host; the function stays.
    QVERIFY(host.isConnected());
    host.newDrawing();
    QCOMPARE(host.applySettings(host.settings()), QString());
    QVERIFY(host.callModuleFunction(QStringLiteral("kvGetTempDir"), 0));
    // Without a database too.
    const KvHost::HostSettings connected = host.settings();
    KvHost::HostSettings none = connected;
    none.database.clear();
    host.applySettings(none);
    QVERIFY(!host.isConnected());
    QVERIFY(host.callModuleFunction(QStringLiteral("kvGetTempDir"), 0));
    QCOMPARE(host.applySettings(connected), QString());

    // Unloading takes the function with the module's code; nothing points into it afterwards.
    loader.unload();
    QVERIFY(!host.moduleFunctions().contains(QStringLiteral("kvGetTempDir")));
    QVERIFY(!host.callModuleFunction(QStringLiteral("kvGetTempDir"), 0));
    // Loaded again, it is registered again.
    QCOMPARE(KvHost::loadModule(options, host, loader), QString());
    QVERIFY(host.callModuleFunction(QStringLiteral("kvGetTempDir"), 0));
}

QTEST_MAIN(TestAppHost)
#include "tst_app_host.moc"
