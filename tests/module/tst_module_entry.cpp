// The module library as the host's runtime sees it: loaded by path, created through its export,
// initialised against a recording host, its commands and function run, and deleted again. The
// test links none of the module's own libraries: everything it reaches of the module goes
// through the two exports.

#include "LoadedModule.h"
#include "ModalDialogWatcher.h"
#include "ModuleTestHost.h"
#include "common/TraceLine.h"

#include "host/CFxSystemServices.h"
#include "host/CVRCommand.h"
#include "host/OdAlloc.h"

#include <QDialog>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTest>

#ifdef Q_OS_UNIX
#include <dlfcn.h>
#endif

#include <atomic>
#include <cstdlib>
#include <new>
#include <thread>
#include <vector>

namespace {

const QString kInsertCommand = QStringLiteral("VRINSAUTO");
const QString kSettingsCommand = QStringLiteral("VRINSAUTOCONFIG");
const QString kTempFolderFunction = QStringLiteral("kvGetTempDir");
const QString kDebugSetting = QStringLiteral("FxThreadsDisable");
const QString kPickerFilter =
    QStringLiteral("Settings file (*.cfa)|*.cfa||&*.cfa&All Files (*.*)|*.*||&*.*&&");

// The resources that the host has current before a command runs.
KVModuleHandle const kHostResources = reinterpret_cast<KVModuleHandle>(quintptr(0x4b560001));

QString jsonText(const QString& text)
{
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

QString fileDialogLine(int mode, const QString& filter, const QString& folder, int result,
                       const QString& path)
{
    return QStringLiteral(
               R"({"op":"fileDialog","mode":%1,"filter":%2,"folder":%3,"result":%4,"path":%5})")
        .arg(mode)
        .arg(jsonText(filter), jsonText(folder))
        .arg(result)
        .arg(jsonText(path));
}

// Allocators and new-handlers for the allocation tests (plain functions: the runtime and the
// standard library take function pointers).
std::atomic<int> g_allocations{0};
std::atomic<int> g_failedAllocations{0};
std::atomic<int> g_newHandlerCalls{0};
std::atomic<void*> g_lastFreed{nullptr};

void* countingAlloc(std::size_t size)
{
    ++g_allocations;
    return std::malloc(size);
}

void countingFree(void* memory)
{
    g_lastFreed = memory;
    std::free(memory);
}

void* failingAlloc(std::size_t)
{
    ++g_failedAllocations;
    return nullptr;
}

// Frees memory the second time it is called: the runtime's allocator works again.
void recoveringNewHandler()
{
    if (++g_newHandlerCalls == 2)
        odrxSetAllocator(&countingAlloc, &countingFree);
}

// Has nothing to free: removes itself, as a new-handler that gives up does.
void givingUpNewHandler()
{
    ++g_newHandlerCalls;
    std::set_new_handler(nullptr);
}

enum class CloseBy { Button, Escape, WindowClose, Accept, Reject };

// Ends a modal dialog the way a user or the dialog's own code does; false when it cannot.
bool closeDialog(QWidget* dialog, CloseBy closeBy, const QString& button)
{
    switch (closeBy) {
    case CloseBy::Button:
        if (auto* close = dialog->findChild<QPushButton*>(button)) {
            close->click();
            return true;
        }
        return false;
    case CloseBy::Escape:
        QTest::keyClick(dialog, Qt::Key_Escape);
        return true;
    case CloseBy::WindowClose:
        dialog->close();
        return true;
    case CloseBy::Accept:
    case CloseBy::Reject:
        if (auto* modal = qobject_cast<QDialog*>(dialog)) {
            closeBy == CloseBy::Accept ? modal->accept() : modal->reject();
            return true;
        }
        return false;
    }
    return false;
}

} // namespace

Q_DECLARE_METATYPE(CloseBy)

class tst_ModuleEntry : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    // The library and its exports.
    void exportsOnlyTheEntryPoints();
    void internalSymbolsAreNotResolvable();
    void createModuleObjectTwiceGivesOneObject();
    void apiVersion();
    void referenceCount();
    void referenceCountIsAtomic();
    void moduleNameIsTheLibraryFile();
    void debugSettingIsDeclaredAtLoad();

    // initApp and uninitApp.
    void initAppRegistersCommandsThenFunction();
    void initAppWithoutCommandManager();
    void uninitAppRemovesTheCommands();
    void uninitAppWithoutServicesOrManager_data();
    void uninitAppWithoutServicesOrManager();

    // The commands.
    void pickerArguments_data();
    void pickerArguments();
    void cancelledPickerOpensNothing_data();
    void cancelledPickerOpensNothing();
    void chosenFileOpensTheDialog_data();
    void chosenFileOpensTheDialog();
    void companionThatCannotBeCreatedIsReported();
    void commandsKeepNothingBetweenRuns();

    // kvGetTempDir.
    void tempFolderFunction_data();
    void tempFolderFunction();
    void tempFolderFunctionWithoutDocument();

    // Deletion and allocation.
    void deletionAllowsANewObject();
    void allocationFailureRetriesThroughTheNewHandler();
    void allocationFailureWithoutNewHandlerThrows();

    void cleanupTestCase();

private:
    OdRxModule* module();
    // Runs initApp on a host and answers the named command.
    std::shared_ptr<CVRCommand> registeredCommand(ModuleTestHost& host, const QString& name);
    // A settings file copied from the test data into `folder`, with or without its .cfb and
    // .cfc; its .cfa path.
    QString copySettings(const QString& folder, bool withCompanions = true);
    void addCommandColumns();

    LoadedModule m_library{QStringLiteral(KV_MODULE_LIBRARY)};
    OdRxModule* m_module = nullptr;
    KVString m_descriptionBeforeLoad;
};

void tst_ModuleEntry::initTestCase()
{
    // The host's registry is read before the library is loaded, to see what loading adds.
    m_descriptionBeforeLoad = CFxDebugSettings::Get()->description(kDebugSetting);
    QVERIFY2(m_library.load(), qPrintable(m_library.errorString()));
}

OdRxModule* tst_ModuleEntry::module()
{
    if (!m_module) {
        KVModuleHandle handle = m_library.nativeHandle();
        m_module = m_library.createModuleObject()(handle);
    }
    return m_module;
}

std::shared_ptr<CVRCommand> tst_ModuleEntry::registeredCommand(ModuleTestHost& host,
                                                               const QString& name)
{
    module()->initApp();
    return host.command(name);
}

QString tst_ModuleEntry::copySettings(const QString& folder, bool withCompanions)
{
    const QDir source(QStringLiteral(KV_TEST_DATA_DIR "/settings"));
    const QStringList suffixes =
        withCompanions ? QStringList{".cfa", ".cfb", ".cfc"} : QStringList{".cfa"};
    for (const QString& suffix : suffixes) {
        const QString name = QStringLiteral("canonical") + suffix;
        if (!QFile::copy(source.filePath(name), QDir(folder).filePath(name)))
            return {};
    }
    return QDir(folder).filePath(QStringLiteral("canonical.cfa"));
}

void tst_ModuleEntry::addCommandColumns()
{
    QTest::addColumn<QString>("command");
}

void tst_ModuleEntry::exportsOnlyTheEntryPoints()
{
    const QString nm = QStandardPaths::findExecutable(QStringLiteral("nm"));
    if (nm.isEmpty())
        QSKIP("nm is not installed");
    QProcess process;
    process.start(nm,
                  {QStringLiteral("-D"), QStringLiteral("--defined-only"), m_library.fileName()});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 0);
    QStringList exported;
    const QStringList lines =
        QString::fromLocal8Bit(process.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        // "address type name": an upper-case type is a global symbol, "u" a unique global one.
        const QStringList fields = line.simplified().split(u' ');
        if (fields.size() == 3 && (fields[1].at(0).isUpper() || fields[1] == u"u"))
            exported.append(fields[2]);
    }
    exported.sort();
    QCOMPARE(exported, (QStringList{QStringLiteral("odrxCreateModuleObject"),
                                    QStringLiteral("odrxGetAPIVersion")}));
}

void tst_ModuleEntry::internalSymbolsAreNotResolvable()
{
    // The module's class and a settings-editor function linked into the library.
    QVERIFY(!m_library.resolve("_ZN16CKVInsertAutoApp7initAppEv"));
    QVERIFY(!m_library.resolve("_ZN18SettingsFilePicker6filterEv"));
    QVERIFY(m_library.resolve("odrxGetAPIVersion"));
}

void tst_ModuleEntry::createModuleObjectTwiceGivesOneObject()
{
    QVERIFY(!m_module);
    const KVModuleHandle native = m_library.nativeHandle();
    KVModuleHandle first = native;
    OdRxModule* created = m_library.createModuleObject()(first);
    QVERIFY(created);
    m_module = created;
    // The object took the handle over.
    QCOMPARE(first, nullptr);
    QCOMPARE(created->moduleHandle(), native);

    const KVModuleHandle other = reinterpret_cast<KVModuleHandle>(quintptr(0x1234));
    KVModuleHandle second = other;
    QCOMPARE(m_library.createModuleObject()(second), created);
    QCOMPARE(second, other);
    QCOMPARE(created->moduleHandle(), native);
}

void tst_ModuleEntry::apiVersion()
{
    std::uint32_t major = 0;
    std::uint32_t minor = 1;
    std::uint32_t patch = 2;
    std::uint32_t build = 3;
    m_library.getApiVersion()(major, minor, patch, build);
    QCOMPARE(major, 26u);
    QCOMPARE(minor, 8u);
    QCOMPARE(patch, 0u);
    QCOMPARE(build, 54832u);
}

void tst_ModuleEntry::referenceCount()
{
    OdRxModule* object = module();
    QCOMPARE(object->numRefs(), 0);
    object->addRef();
    object->addRef();
    QCOMPARE(object->numRefs(), 2);
    object->release();
    QCOMPARE(object->numRefs(), 1);
    object->release();
    QCOMPARE(object->numRefs(), 0);
}

void tst_ModuleEntry::referenceCountIsAtomic()
{
    OdRxModule* object = module();
    constexpr int kThreads = 4;
    constexpr int kRounds = 200000;
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([object] {
                for (int i = 0; i < kRounds; ++i)
                    object->addRef();
            });
        }
    }
    QCOMPARE(object->numRefs(), kThreads * kRounds);
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([object] {
                for (int i = 0; i < kRounds; ++i)
                    object->release();
            });
        }
    }
    QCOMPARE(object->numRefs(), 0);
}

void tst_ModuleEntry::moduleNameIsTheLibraryFile()
{
    const QFileInfo name(module()->moduleName());
    QVERIFY2(name.isAbsolute(), qPrintable(name.filePath()));
    QCOMPARE(name.canonicalFilePath(), QFileInfo(m_library.fileName()).canonicalFilePath());
}

void tst_ModuleEntry::debugSettingIsDeclaredAtLoad()
{
    QCOMPARE(m_descriptionBeforeLoad, KVString());
    QCOMPARE(CFxDebugSettings::Get()->description(kDebugSetting),
             KVString("Disable multi threading for the Foreach template"));
    QCOMPARE(CFxDebugSettings::Get()->names().count(kDebugSetting), 1);
#ifdef Q_OS_UNIX
    // The host's registry outlives the library: its texts must not point into the library's
    // read-only data, which goes away when the host unloads the module.
    const KVStringList names = CFxDebugSettings::Get()->names();
    const KVString name = names.at(names.indexOf(kDebugSetting));
    const KVString description = CFxDebugSettings::Get()->description(kDebugSetting);
    const QString library = QFileInfo(m_library.fileName()).canonicalFilePath();
    for (const KVString& text : {name, description}) {
        Dl_info info{};
        if (dladdr(text.constData(), &info) && info.dli_fname) {
            QVERIFY2(QFileInfo(QFile::decodeName(info.dli_fname)).canonicalFilePath() != library,
                     qPrintable(text));
        }
    }
#endif
}

void tst_ModuleEntry::initAppRegistersCommandsThenFunction()
{
    ModuleTestHost host;
    const auto installed = host.install();
    module()->initApp();

    QCOMPARE(host.events(), (QStringList{QStringLiteral("add VRINSAUTO undoable 2"),
                                         QStringLiteral("add VRINSAUTOCONFIG notUndoable 2"),
                                         QStringLiteral("function kvGetTempDir")}));
    QVERIFY(host.command(kInsertCommand));
    QVERIFY(host.command(kSettingsCommand));
    QVERIFY(host.function(kTempFolderFunction));
    QCOMPARE(host.traceLines(),
             QStringList{QStringLiteral(R"({"op":"registerFunction","name":"kvGetTempDir"})")});
}

void tst_ModuleEntry::initAppWithoutCommandManager()
{
    ModuleTestHost host;
    host.setHasCommandManager(false);
    const auto installed = host.install();
    module()->initApp();
    QCOMPARE(host.events(), QStringList{QStringLiteral("function kvGetTempDir")});
}

void tst_ModuleEntry::uninitAppRemovesTheCommands()
{
    ModuleTestHost host;
    const auto installed = host.install();
    module()->initApp();
    module()->uninitApp();

    QCOMPARE(host.events().mid(3), (QStringList{QStringLiteral("remove VRINSAUTO"),
                                                QStringLiteral("remove VRINSAUTOCONFIG")}));
    QVERIFY(!host.command(kInsertCommand));
    QVERIFY(!host.command(kSettingsCommand));
    // The function stays with the host.
    QVERIFY(host.function(kTempFolderFunction));
}

void tst_ModuleEntry::uninitAppWithoutServicesOrManager_data()
{
    QTest::addColumn<bool>("hasServices");
    QTest::addColumn<bool>("hasManager");
    QTest::newRow("no electrical services") << false << true;
    QTest::newRow("no command manager") << true << false;
}

void tst_ModuleEntry::uninitAppWithoutServicesOrManager()
{
    QFETCH(bool, hasServices);
    QFETCH(bool, hasManager);
    ModuleTestHost host;
    host.setHasElectricalServices(hasServices);
    host.setHasCommandManager(hasManager);
    const auto installed = host.install();
    module()->uninitApp();
    QCOMPARE(host.events(), QStringList());
    QCOMPARE(host.traceLines(), QStringList());
}

void tst_ModuleEntry::pickerArguments_data()
{
    addCommandColumns();
    QTest::addColumn<QString>("workingFolder");
    QTest::addColumn<QString>("initialFolder");
    for (const QString& command : {kInsertCommand, kSettingsCommand}) {
        const QByteArray name = command.toLatin1();
        QTest::addRow("%s, working folder", name.constData())
            << command << QStringLiteral("C:\\Projetos\\Painel")
            << QStringLiteral("C:\\Projetos\\Painel/Automatic Insertion");
        QTest::addRow("%s, working folder with a separator at the end", name.constData())
            << command << QStringLiteral("/srv/projects/")
            << QStringLiteral("/srv/projects//Automatic Insertion");
        QTest::addRow("%s, no working folder", name.constData())
            << command << QString() << QString();
    }
}

void tst_ModuleEntry::pickerArguments()
{
    QFETCH(QString, command);
    QFETCH(QString, workingFolder);
    QFETCH(QString, initialFolder);
    ModuleTestHost host;
    host.host().electrical().setWorkingFolder(workingFolder);
    const auto installed = host.install();
    const std::shared_ptr<CVRCommand> registered = registeredCommand(host, command);
    QVERIFY(registered);
    // Nothing queued: the host's dialog is cancelled.
    const qsizetype traceBefore = host.traceLines().size();
    registered->run(nullptr);

    QCOMPARE(host.fileDialogCalls().size(), 1);
    const ModuleTestHost::FileDialogCall& call = host.fileDialogCalls().constFirst();
    QCOMPARE(call.flag, 0);
    QCOMPARE(call.path, KVString());
    QCOMPARE(call.parent, TestHost::kMainWindow);
    QCOMPARE(call.mode, 2);
    QCOMPARE(call.title, KVString());
    QCOMPARE(call.defaultName, KVString());
    QCOMPARE(call.filter, KVString(kPickerFilter));
    QCOMPARE(call.initialFolder, KVString(initialFolder));
    QCOMPARE(call.reserved1, nullptr);
    QCOMPARE(call.reserved2, nullptr);
    QCOMPARE(call.reserved3, nullptr);
    QCOMPARE(call.reserved4, 0);
    KV_COMPARE_TRACE(host.traceLines().mid(traceBefore),
                     {TraceLine::service(QStringLiteral("GetWorkingFolder"), workingFolder),
                      fileDialogLine(2, kPickerFilter, initialFolder, 0, QString())});
}

void tst_ModuleEntry::cancelledPickerOpensNothing_data()
{
    addCommandColumns();
    QTest::addColumn<int>("result");
    for (const QString& command : {kInsertCommand, kSettingsCommand}) {
        const QByteArray name = command.toLatin1();
        QTest::addRow("%s, cancelled", name.constData()) << command << 0;
        QTest::addRow("%s, IDOK is not the host's OK", name.constData()) << command << 1;
        QTest::addRow("%s, 5101", name.constData()) << command << KV_RESULT_OK + 1;
        QTest::addRow("%s, failure", name.constData()) << command << -1;
    }
}

void tst_ModuleEntry::cancelledPickerOpensNothing()
{
    QFETCH(QString, command);
    QFETCH(int, result);
    ModuleTestHost host;
    host.host().system().queueFileDialogAnswer(result, QStringLiteral("ignored.cfa"));
    FakeSystemServices::ResourceContext& resources = host.host().system().resourceContext();
    resources.setCurrent(kHostResources);
    const auto installed = host.install();
    const std::shared_ptr<CVRCommand> registered = registeredCommand(host, command);
    QVERIFY(registered);
    const qsizetype traceBefore = host.traceLines().size();

    ModalDialogWatcher watcher([&resources] { return resources.current(); },
                               [](QWidget* dialog) { dialog->close(); });
    registered->run(nullptr);
    QTest::qWait(20);

    QCOMPARE(watcher.seen().size(), 0);
    QCOMPARE(resources.switches(), QList<KVModuleHandle>{kHostResources});
    QCOMPARE(resources.current(), kHostResources);
    // No message either: the picker's lines are all the command wrote.
    QCOMPARE(host.traceLines().size() - traceBefore, 2);
    QCOMPARE(host.host().system().messages().size(), 0);
}

void tst_ModuleEntry::chosenFileOpensTheDialog_data()
{
    addCommandColumns();
    QTest::addColumn<QString>("dialogClass");
    QTest::addColumn<CloseBy>("closeBy");
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("pathShown");
    struct Dialog
    {
        QString command;
        QString className;
        QString closeButton;
        // The settings dialog shows the path in a label; the main dialog creates the missing
        // companion files next to it.
        bool pathShown;
    };
    for (const Dialog& dialog :
         {Dialog{kSettingsCommand, QStringLiteral("CIConfigAuto"), QStringLiteral("2"), true},
          Dialog{kInsertCommand, QStringLiteral("CIInsereAuto"), QStringLiteral("2"), false}}) {
        const QByteArray name = dialog.command.toLatin1();
        const auto row = [&](const char* how, CloseBy closeBy, const QString& button) {
            QTest::addRow("%s, %s", name.constData(), how)
                << dialog.command << dialog.className << closeBy << button << dialog.pathShown;
        };
        row("Close", CloseBy::Button, dialog.closeButton);
        row("Escape", CloseBy::Escape, QString());
        row("window closed", CloseBy::WindowClose, QString());
        row("accepted", CloseBy::Accept, QString());
        row("rejected", CloseBy::Reject, QString());
    }
}

void tst_ModuleEntry::chosenFileOpensTheDialog()
{
    QFETCH(QString, command);
    QFETCH(QString, dialogClass);
    QFETCH(CloseBy, closeBy);
    QFETCH(QString, button);
    QFETCH(bool, pathShown);
    ModuleTestHost host;
    const QString settingsPath = copySettings(host.host().folder(), pathShown);
    QVERIFY(!settingsPath.isEmpty());
    const QString blockPath = host.host().path(QStringLiteral("canonical.cfb"));
    const QString symbolPath = host.host().path(QStringLiteral("canonical.cfc"));
    QCOMPARE(QFileInfo::exists(blockPath), pathShown);
    host.host().system().queueFileDialogAnswer(KV_RESULT_OK, settingsPath);
    FakeSystemServices::ResourceContext& resources = host.host().system().resourceContext();
    resources.setCurrent(kHostResources);
    const auto installed = host.install();
    const std::shared_ptr<CVRCommand> registered = registeredCommand(host, command);
    QVERIFY(registered);

    bool closeFailed = false;
    ModalDialogWatcher watcher(
        [&resources] { return resources.current(); },
        [&](QWidget* dialog) { closeFailed = !closeDialog(dialog, closeBy, button); });
    registered->run(nullptr);

    QVERIFY(!closeFailed);
    QCOMPARE(watcher.seen().size(), 1);
    const ModalDialogWatcher::Seen& seen = watcher.seen().constFirst();
    QCOMPARE(seen.className, dialogClass);
    QVERIFY(!seen.hasParent);
    // The module's resources were current while the dialog was open...
    QCOMPARE(seen.resources, module()->moduleHandle());
    QVERIFY(seen.resources != nullptr);
    // ...and the host's are current again, through one switch each way.
    QCOMPARE(resources.switches(),
             (QList<KVModuleHandle>{kHostResources, module()->moduleHandle(), kHostResources}));
    QCOMPARE(resources.current(), kHostResources);
    // The dialog works on the file that was picked.
    if (pathShown) {
        QVERIFY2(seen.labels.contains(QStringLiteral("Settings: ") + settingsPath),
                 qPrintable(seen.labels.join(u'\n')));
    } else {
        QVERIFY(QFileInfo::exists(blockPath));
        QVERIFY(QFileInfo::exists(symbolPath));
    }
    QCOMPARE(host.host().language().commandLine(), QString());
}

void tst_ModuleEntry::companionThatCannotBeCreatedIsReported()
{
    ModuleTestHost host;
    const QString settingsPath = copySettings(host.host().folder(), false);
    QVERIFY(!settingsPath.isEmpty());
    // A folder where the block file should be: it cannot be created as a file.
    const QString blockPath = host.host().path(QStringLiteral("canonical.cfb"));
    QVERIFY(QDir().mkpath(blockPath));
    host.host().system().queueFileDialogAnswer(KV_RESULT_OK, settingsPath);
    const auto installed = host.install();
    const std::shared_ptr<CVRCommand> registered = registeredCommand(host, kInsertCommand);
    QVERIFY(registered);

    ModalDialogWatcher watcher([] { return KVModuleHandle(); },
                               [](QWidget* dialog) { dialog->close(); });
    registered->run(nullptr);

    // The dialog still opens; the command line names the file.
    QCOMPARE(watcher.seen().size(), 1);
    const QString commandLine = host.host().language().commandLine();
    QVERIFY2(commandLine.startsWith(u'\n') && commandLine.contains(blockPath) &&
                 commandLine.contains(QStringLiteral("folder")),
             qPrintable(commandLine));
    QVERIFY(!commandLine.contains(QStringLiteral(".cfc")));
    QVERIFY(QFileInfo(host.host().path(QStringLiteral("canonical.cfc"))).isFile());
}

void tst_ModuleEntry::commandsKeepNothingBetweenRuns()
{
    // A second run asks for the file again and opens the dialog on the new answer only.
    ModuleTestHost host;
    const QString settingsPath = copySettings(host.host().folder());
    QVERIFY(!settingsPath.isEmpty());
    host.host().system().queueFileDialogAnswer(KV_RESULT_OK, settingsPath);
    host.host().system().queueFileDialogAnswer(0, QString());
    const auto installed = host.install();
    const std::shared_ptr<CVRCommand> registered = registeredCommand(host, kSettingsCommand);
    QVERIFY(registered);

    ModalDialogWatcher watcher([] { return KVModuleHandle(); },
                               [](QWidget* dialog) { dialog->close(); });
    registered->run(nullptr);
    registered->run(nullptr);
    QTest::qWait(20);
    QCOMPARE(host.fileDialogCalls().size(), 2);
    QCOMPARE(host.fileDialogCalls().at(1).path, KVString());
    QCOMPARE(watcher.seen().size(), 1);
}

void tst_ModuleEntry::tempFolderFunction_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("empty folder") << QString();
    QTest::newRow("folder") << QStringLiteral("C:\\Users\\kv\\AppData\\Local\\Temp\\");
    QTest::newRow("folder with spaces") << QStringLiteral("/tmp/kv temp/");
}

void tst_ModuleEntry::tempFolderFunction()
{
    QFETCH(QString, folder);
    ModuleTestHost host;
    host.host().system().setTempFolder(folder);
    const auto installed = host.install();
    module()->initApp();
    const DrawingLanguageFunction function = host.function(kTempFolderFunction);
    QVERIFY(function);
    const qsizetype traceBefore = host.traceLines().size();

    QCOMPARE(function(), 1);
    QCOMPARE(host.host().document().lispResults(), QStringList{folder});
    QCOMPARE(host.traceLines().mid(traceBefore),
             QStringList{QStringLiteral(R"({"op":"result","value":%1})").arg(jsonText(folder))});
}

void tst_ModuleEntry::tempFolderFunctionWithoutDocument()
{
    ModuleTestHost host;
    host.host().system().setTempFolder(QStringLiteral("/tmp/"));
    host.setHasDocument(false);
    const auto installed = host.install();
    module()->initApp();
    const DrawingLanguageFunction function = host.function(kTempFolderFunction);
    QVERIFY(function);
    QCOMPARE(function(), 1);
    QCOMPARE(host.host().document().lispResults(), QStringList());
}

void tst_ModuleEntry::deletionAllowsANewObject()
{
    OdRxModule* first = module();
    first->addRef();
    g_allocations = 0;
    g_lastFreed = nullptr;
    odrxSetAllocator(&countingAlloc, &countingFree);
    first->deleteModule();
    m_module = nullptr;
    // The runtime's allocator takes the memory back.
    QCOMPARE(g_lastFreed.load(), static_cast<void*>(first));

    const KVModuleHandle native = m_library.nativeHandle();
    KVModuleHandle handle = native;
    OdRxModule* second = m_library.createModuleObject()(handle);
    m_module = second;
    odrxSetAllocator(nullptr, nullptr);
    // A new object: allocated through the runtime, the handle taken over again, no references.
    QCOMPARE(g_allocations.load(), 1);
    QCOMPARE(handle, nullptr);
    QCOMPARE(second->numRefs(), 0);
    QCOMPARE(second->moduleHandle(), native);
}

void tst_ModuleEntry::allocationFailureRetriesThroughTheNewHandler()
{
    module()->deleteModule();
    m_module = nullptr;
    g_allocations = 0;
    g_failedAllocations = 0;
    g_newHandlerCalls = 0;
    odrxSetAllocator(&failingAlloc, &std::free);
    const std::new_handler previous = std::set_new_handler(&recoveringNewHandler);

    const KVModuleHandle native = m_library.nativeHandle();
    KVModuleHandle handle = native;
    OdRxModule* created = m_library.createModuleObject()(handle);
    std::set_new_handler(previous);
    odrxSetAllocator(nullptr, nullptr);
    m_module = created;

    QVERIFY(created);
    QCOMPARE(g_failedAllocations.load(), 2);
    QCOMPARE(g_newHandlerCalls.load(), 2);
    QCOMPARE(g_allocations.load(), 1);
    QCOMPARE(handle, nullptr);
    QCOMPARE(created->moduleHandle(), native);
}

void tst_ModuleEntry::allocationFailureWithoutNewHandlerThrows()
{
    module()->deleteModule();
    m_module = nullptr;
    g_failedAllocations = 0;
    g_newHandlerCalls = 0;
    odrxSetAllocator(&failingAlloc, &std::free);
    const std::new_handler previous = std::set_new_handler(&givingUpNewHandler);

    const KVModuleHandle native = m_library.nativeHandle();
    KVModuleHandle handle = native;
    bool threw = false;
    try {
        m_library.createModuleObject()(handle);
    } catch (const std::bad_alloc&) {
        threw = true;
    }
    std::set_new_handler(previous);
    odrxSetAllocator(nullptr, nullptr);

    QVERIFY(threw);
    QCOMPARE(g_newHandlerCalls.load(), 1);
    QCOMPARE(g_failedAllocations.load(), 2);
    // Nothing was created: the caller keeps its handle, and the next call creates the object.
    QCOMPARE(handle, native);
    OdRxModule* created = m_library.createModuleObject()(handle);
    QVERIFY(created);
    m_module = created;
    QCOMPARE(handle, nullptr);
}

void tst_ModuleEntry::cleanupTestCase()
{
    if (m_module)
        m_module->deleteModule();
    m_module = nullptr;
}

QTEST_MAIN(tst_ModuleEntry)
#include "tst_module_entry.moc"
