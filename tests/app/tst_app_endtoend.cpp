// kvhost driven as a person would: the example standard in a temporary database, VRINSAUTO typed
// in the command line, the settings file and the spreadsheet chosen in the file dialogs, Import
// and Add pressed in the main dialog; then the drawing is checked, undone, redone, saved and the
// saved file read back with ezdxf.
#include "AppTestSupport.h"

#include "AppStartup.h"
#include "CommandLineEdit.h"
#include "DesktopHost.h"
#include "MainWindow.h"
#include "ModuleLoader.h"

#include "DxfDrawingWriter.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPlainTextEdit>
#include <QProcess>
#include <QTest>
#include <QTreeWidget>

using namespace AppTest;

namespace {

// The dialogs' controls carry their numeric identifiers as object names.
QAbstractButton* buttonWithId(QWidget* dialog, const QString& id)
{
    QAbstractButton* button = dialog->findChild<QAbstractButton*>(id);
    return button && button->isVisible() ? button : nullptr;
}

// Rows of every item view of the dialog, top level only.
int listedRows(QWidget* dialog)
{
    int rows = 0;
    for (QAbstractItemView* view : dialog->findChildren<QAbstractItemView*>()) {
        if (view->model() && view->isVisible())
            rows += view->model()->rowCount();
    }
    return rows;
}

const RefHost::BlockReference* findReference(const RefHost::Drawing& drawing, const QString& layer,
                                             const QString& tag)
{
    for (const RefHost::BlockReference& reference : drawing.references()) {
        if (reference.layer != layer)
            continue;
        for (const RefHost::AttributeValue& attribute : reference.attributes) {
            if (attribute.tag == QLatin1String("TAG") && attribute.value == tag)
                return &reference;
        }
    }
    return nullptr;
}

QString attribute(const RefHost::BlockReference& reference, const QString& tag)
{
    for (const RefHost::AttributeValue& value : reference.attributes) {
        if (value.tag == tag)
            return value.value;
    }
    return QStringLiteral("<none>");
}

} // namespace

class TestAppEndToEnd : public QObject
{
    Q_OBJECT

private slots:
    void insertUndoRedoSave();
};

void TestAppEndToEnd::insertUndoRedoSave()
{
    ExampleSetup example;
    QVERIFY2(example.error.isEmpty(), qPrintable(example.error));
    QTemporaryDir out;
    const QString saved = out.filePath(QStringLiteral("pump-station.dxf"));

    KvHost::DesktopHost host(example.settingsFile);
    QVERIFY2(host.isConnected(), qPrintable(host.connectionProblem()));
    host.system().setScriptedAnswers({examplePath(QStringLiteral("settings/example.cfa")),
                                      examplePath(QStringLiteral("sheets/example.xlsx")), saved});
    KvHost::MainWindow window(host);
    window.show();
    KvHost::AppOptions options;
    options.pluginFolder = QStringLiteral(KV_MODULE_DIR);
    KvHost::ModuleLoader loader;
    QCOMPARE(KvHost::loadModule(options, host, loader), QString());
    window.refreshCommands();
    QVERIFY(window.commandLine()->commandNames().contains(QStringLiteral("VRINSAUTO")));

    QString dxfError;
    const QByteArray before = RefHost::DxfDrawingWriter::toDxf(host.drawing(), &dxfError);
    QVERIFY2(dxfError.isEmpty(), qPrintable(dxfError));
    QCOMPARE(host.drawing().references().size(), 0);

    bool imported = false;
    bool added = false;
    int rowsAfterImport = 0;
    ModalAnswer mainDialog([&](QWidget* dialog) {
        QAbstractButton* import = buttonWithId(dialog, QStringLiteral("14007"));
        if (!import) {
            dialog->close(); // fail the checks below instead of waiting for ever
            return;
        }
        const int rowsBefore = listedRows(dialog);
        import->click();
        imported = QTest::qWaitFor([&]() { return listedRows(dialog) > rowsBefore; }, 10000);
        rowsAfterImport = listedRows(dialog);
        QAbstractButton* add = buttonWithId(dialog, QStringLiteral("14015"));
        if (!add) {
            dialog->close();
            return;
        }
        add->click();
        added = true;
    });
    QTest::keyClicks(window.commandLine(), QStringLiteral("vrinsauto"));
    QTest::keyClick(window.commandLine(), Qt::Key_Return);

    QVERIFY(mainDialog.answered());
    QCOMPARE(mainDialog.className(), QStringLiteral("CIInsereAuto"));
    QVERIFY2(imported, "Import listed no items");
    QVERIFY(rowsAfterImport > 0);
    QVERIFY2(added, "no Add button");
    // Both file dialogs were the host's, with the module's filters.
    QCOMPARE(host.system().fileDialogRequests().size(), 2);
    QCOMPARE(
        host.system().fileDialogRequests().at(0).nameFilters,
        (QStringList{QStringLiteral("Settings file (*.cfa)"), QStringLiteral("All Files (*.*)")}));
    QVERIFY(host.system().fileDialogRequests().at(1).nameFilters.join(' ').contains("*.xlsx"));
    QVERIFY2(host.system().messages().isEmpty(), qPrintable(host.system().messages().join('\n')));

    // The run: 18 items over four pages, each page with its title block and earth terminal.
    const RefHost::Drawing& drawing = host.drawing();
    QCOMPARE(host.runner().runCount(), 1);
    QCOMPARE(host.runner().lastSteps(), 18);
    QCOMPARE(drawing.pageLayers(),
             (QStringList{QStringLiteral("PAGE$1"), QStringLiteral("PAGE$2"),
                          QStringLiteral("PAGE$3"), QStringLiteral("PAGE$4")}));
    QCOMPARE(drawing.references().size(), 31);
    const RefHost::BlockReference* breaker =
        findReference(drawing, QStringLiteral("PAGE$1"), QStringLiteral("-F1"));
    QVERIFY(breaker);
    QCOMPARE(breaker->blockName, QStringLiteral("MCB_3P"));
    QCOMPARE(attribute(*breaker, QStringLiteral("ITEM")), QStringLiteral("1"));
    QCOMPARE(attribute(*breaker, QStringLiteral("FUNCTION")),
             QStringLiteral("Main circuit breaker"));
    const RefHost::BlockReference* lamp =
        findReference(drawing, QStringLiteral("PAGE$3"), QStringLiteral("-H2"));
    QVERIFY(lamp);
    QCOMPARE(attribute(*lamp, QStringLiteral("FUNCTION")), QStringLiteral("Fault"));
    QVERIFY(window.outputPane()->toPlainText().contains(
        QStringLiteral("Automatic insertion completed")));
    QCOMPARE(window.pageTree()->topLevelItem(0)->childCount(), 4);
    QVERIFY(host.isModified());
    const QByteArray after = RefHost::DxfDrawingWriter::toDxf(drawing, &dxfError);

    // One UNDO takes the whole run back, pages included; one REDO brings it again.
    QVERIFY(window.execute(QStringLiteral("UNDO")));
    QCOMPARE(host.drawing().pageLayers(), QStringList{QStringLiteral("PAGE$1")});
    QCOMPARE(host.drawing().references().size(), 0);
    QCOMPARE(RefHost::DxfDrawingWriter::toDxf(host.drawing(), &dxfError), before);
    QVERIFY(!host.canUndo());
    QVERIFY(window.execute(QStringLiteral("REDO")));
    QCOMPARE(host.drawing().references().size(), 31);
    QCOMPARE(RefHost::DxfDrawingWriter::toDxf(host.drawing(), &dxfError), after);

    QVERIFY(window.execute(QStringLiteral("SAVE")));
    QCOMPARE(host.filePath(), saved);
    QVERIFY(!host.isModified());

    // The saved file as another program reads it.
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"),
                 {QStringLiteral(KV_SOURCE_DIR "/tests/app/read_drawing.py"), saved});
    QVERIFY(python.waitForFinished(60000));
    QVERIFY2(python.exitCode() == 0, python.readAllStandardError().constData());
    const QJsonObject read = QJsonDocument::fromJson(python.readAllStandardOutput()).object();
    QCOMPARE(read.value("layers").toArray().size(), 4);
    const QJsonArray inserts = read.value("inserts").toArray();
    QCOMPARE(inserts.size(), 31);
    int titleBlocks = 0;
    bool breakerFound = false;
    for (const QJsonValue& value : inserts) {
        const QJsonObject insert = value.toObject();
        const QJsonObject attributes = insert.value("attributes").toObject();
        if (insert.value("block").toString() == QLatin1String("TITLEBLOCK_A3"))
            ++titleBlocks;
        if (attributes.value("TAG").toString() == QLatin1String("-F1")) {
            breakerFound = true;
            QCOMPARE(insert.value("layer").toString(), QStringLiteral("PAGE$1"));
            QCOMPARE(insert.value("block").toString(), QStringLiteral("MCB_3P"));
            QCOMPARE(attributes.value("FUNCTION").toString(),
                     QStringLiteral("Main circuit breaker"));
        }
    }
    QCOMPARE(titleBlocks, 4);
    QVERIFY(breakerFound);
}

QTEST_MAIN(TestAppEndToEnd)
#include "tst_app_endtoend.moc"
