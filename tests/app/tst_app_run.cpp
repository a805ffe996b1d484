// The insertion engine run inside the desktop host: the example item tree (examples/tree) built
// into a job as the main dialog does and run through the host's binding, with the progress
// dialog as the long-operation runner; then one UNDO and one REDO in the window, SAVE, and the
// saved file read back with ezdxf.
#include "AppTestSupport.h"

#include "DesktopHost.h"
#include "MainWindow.h"

#include "DxfDrawingWriter.h"

#include "engine/CEInsAutoJobBuilder.h"
#include "engine/CInsAutoLogic.h"
#include "maindialog/CTVNodesUtil.h"
#include "maindialog/ItemTreeJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPlainTextEdit>
#include <QProcess>
#include <QTest>
#include <QTreeWidget>

using namespace AppTest;

class TestAppRun : public QObject
{
    Q_OBJECT

private slots:
    void runIsOneUndoableStep();
};

void TestAppRun::runIsOneUndoableStep()
{
    ExampleSetup example;
    QVERIFY2(example.error.isEmpty(), qPrintable(example.error));
    QTemporaryDir out;
    const QString saved = out.filePath(QStringLiteral("run.dxf"));

    KvHost::DesktopHost host(example.settingsFile);
    QVERIFY2(host.isConnected(), qPrintable(host.connectionProblem()));
    host.system().setScriptedAnswers({saved});
    KvHost::MainWindow window(host);
    window.show();

    CTVNodesUtil tree;
    const ItemTreeJson::ReadResult read =
        ItemTreeJson::read(examplePath(QStringLiteral("tree/example-tree.json")), tree);
    QVERIFY2(read.ok(), qPrintable(read.error));
    CEInsAutoJobBuildResult built =
        CEInsAutoJobBuilder::build(examplePath(QStringLiteral("settings/example.cfa")), tree);
    QVERIFY2(built.ok(), qPrintable(built.errors.join('\n')));

    QString error;
    const QByteArray before = RefHost::DxfDrawingWriter::toDxf(host.drawing(), &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    host.installBinding();
    CInsAutoLogic().Executar(built.job);
    emit host.drawingChanged();

    QCOMPARE(host.runner().runCount(), 1);
    QCOMPARE(host.runner().lastSteps(), int(built.job.items.size()));
    QVERIFY(host.drawing().pageLayers().size() > 1);
    QVERIFY(host.drawing().references().size() > 0);
    QVERIFY2(host.system().messages().isEmpty(), qPrintable(host.system().messages().join('\n')));
    QVERIFY(window.outputPane()->toPlainText().contains(
        QStringLiteral("Automatic insertion completed")));
    const QByteArray after = RefHost::DxfDrawingWriter::toDxf(host.drawing(), &error);
    const qsizetype pages = host.drawing().pageLayers().size();
    const qsizetype references = host.drawing().references().size();
    QCOMPARE(window.pageTree()->topLevelItem(0)->childCount(), int(pages));

    QVERIFY(window.execute(QStringLiteral("UNDO")));
    QCOMPARE(RefHost::DxfDrawingWriter::toDxf(host.drawing(), &error), before);
    QCOMPARE(window.pageTree()->topLevelItem(0)->childCount(), 1);
    QVERIFY(!host.canUndo());
    QVERIFY(window.execute(QStringLiteral("REDO")));
    QCOMPARE(RefHost::DxfDrawingWriter::toDxf(host.drawing(), &error), after);

    QVERIFY(window.execute(QStringLiteral("SAVE")));
    QCOMPARE(host.filePath(), saved);
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"),
                 {QStringLiteral(KV_SOURCE_DIR "/tests/app/read_drawing.py"), saved});
    QVERIFY(python.waitForFinished(60000));
    QVERIFY2(python.exitCode() == 0, python.readAllStandardError().constData());
    const QJsonObject json = QJsonDocument::fromJson(python.readAllStandardOutput()).object();
    QCOMPARE(json.value("layers").toArray().size(), pages);
    const QJsonArray inserts = json.value("inserts").toArray();
    QCOMPARE(inserts.size(), references);
    // Every reference of the drawing is in the file on its page with its attribute values.
    for (qsizetype i = 0; i < references; ++i) {
        const RefHost::BlockReference& reference = host.drawing().references().at(i);
        const QJsonObject insert = inserts.at(i).toObject();
        QCOMPARE(insert.value("layer").toString(), reference.layer);
        QCOMPARE(insert.value("block").toString().toUpper(), reference.blockName.toUpper());
        const QJsonObject attributes = insert.value("attributes").toObject();
        for (const RefHost::AttributeValue& attribute : reference.attributes)
            QCOMPARE(attributes.value(attribute.tag).toString(), attribute.value);
    }
}

QTEST_MAIN(TestAppRun)
#include "tst_app_run.moc"
