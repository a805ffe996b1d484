// The written DXF read by an independent reader: tests/refhost/scripts/check_dxf.py, which uses
// Debian's ezdxf, compares the file with a description of the drawing made here from the
// in-memory model (not from the DXF text).
#include "DxfBlockReader.h"
#include "DxfDrawingWriter.h"
#include "tst_dxf_samples.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace RefHost;

namespace {

const QString Python = QStringLiteral("/usr/bin/python3");
const QString Script = QStringLiteral(KV_SOURCE_DIR "/tests/refhost/scripts/check_dxf.py");

QString entityType(GeometryItem::Kind kind)
{
    switch (kind) {
    case GeometryItem::Kind::Line:
        return QStringLiteral("LINE");
    case GeometryItem::Kind::Circle:
        return QStringLiteral("CIRCLE");
    case GeometryItem::Kind::Arc:
        return QStringLiteral("ARC");
    case GeometryItem::Kind::Polyline:
        return QStringLiteral("LWPOLYLINE");
    case GeometryItem::Kind::Text:
        return QStringLiteral("TEXT");
    }
    return QString();
}

QJsonObject blockExpectation(const BlockDefinition* block)
{
    QJsonObject entities;
    QJsonArray attdefs;
    if (block) {
        for (const GeometryItem& item : block->geometry)
            entities[entityType(item.kind)] = entities[entityType(item.kind)].toInt() + 1;
        for (const AttributeDefinition& definition : block->attributes) {
            attdefs.append(QJsonObject{{QStringLiteral("tag"), definition.tag},
                                       {QStringLiteral("prompt"), definition.prompt},
                                       {QStringLiteral("default"), definition.defaultValue},
                                       {QStringLiteral("invisible"), definition.invisible}});
        }
    }
    const QPointF base = block ? block->basePoint : QPointF();
    return QJsonObject{{QStringLiteral("base"), QJsonArray{base.x(), base.y()}},
                       {QStringLiteral("entities"), entities},
                       {QStringLiteral("attdefs"), attdefs}};
}

// What the DXF must hold, in check_dxf.py's terms, derived from the drawing model.
QJsonObject expectation(const Drawing& drawing)
{
    QJsonArray layers;
    for (int g = 0; g < drawing.groups().size(); ++g) {
        const PageGroup& group = drawing.groups()[g];
        for (int p = 0; p < group.pages.size(); ++p) {
            const Page& page = group.pages[p];
            layers.append(QJsonObject{
                {QStringLiteral("name"), page.layer},
                {QStringLiteral("frozen"), page.frozen},
                {QStringLiteral("page"), QJsonObject{{QStringLiteral("group"), group.name},
                                                     {QStringLiteral("group_index"), g},
                                                     {QStringLiteral("page_index"), p},
                                                     {QStringLiteral("title"), page.title}}}});
        }
    }
    QJsonObject blocks;
    for (auto it = drawing.blocks().cbegin(); it != drawing.blocks().cend(); ++it)
        blocks[it.key()] = blockExpectation(&it.value());
    QJsonArray inserts;
    for (const BlockReference& reference : drawing.references()) {
        if (!drawing.findPage(reference.layer))
            layers.append(QJsonObject{{QStringLiteral("name"), reference.layer},
                                      {QStringLiteral("frozen"), false}});
        if (!drawing.blocks().contains(reference.blockName))
            blocks[reference.blockName] = blockExpectation(nullptr);
        QJsonArray attribs;
        for (const AttributeValue& attribute : reference.attributes)
            attribs.append(QJsonArray{attribute.tag, attribute.value});
        inserts.append(QJsonObject{
            {QStringLiteral("block"), reference.blockName},
            {QStringLiteral("layer"), reference.layer},
            {QStringLiteral("insert"), QJsonArray{reference.x, reference.y, reference.z}},
            {QStringLiteral("rotation"), reference.rotationDegrees},
            {QStringLiteral("attribs"), attribs},
            {QStringLiteral("component_key"), reference.componentKey},
            {QStringLiteral("associated"), QJsonArray::fromStringList(reference.associated)}});
    }
    QJsonObject variables;
    for (auto it = drawing.variables().cbegin(); it != drawing.variables().cend(); ++it) {
        const DrawingVariable& variable = it.value();
        int kind = 0;
        QStringList texts{variable.text};
        if (variable.kind == DrawingVariable::Kind::Boolean) {
            kind = 1;
            texts.clear();
        } else if (variable.kind == DrawingVariable::Kind::TextList) {
            kind = 2;
            texts = variable.list;
        }
        variables[it.key()] =
            QJsonObject{{QStringLiteral("kind"), kind},
                        {QStringLiteral("boolean"), variable.boolean},
                        {QStringLiteral("texts"), QJsonArray::fromStringList(texts)}};
    }
    return QJsonObject{{QStringLiteral("version"), QStringLiteral("AC1015")},
                       {QStringLiteral("current_layer"), drawing.currentLayer()},
                       {QStringLiteral("layers"), layers},
                       {QStringLiteral("blocks"), blocks},
                       {QStringLiteral("inserts"), inserts},
                       {QStringLiteral("variables"), variables}};
}

struct CheckRun
{
    int exitCode = -1;
    QString output;
};

CheckRun runCheck(const QString& dxf, const QJsonObject& expected, const QString& folder)
{
    const QString json = folder + QStringLiteral("/expected.json");
    QFile file(json);
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write(QJsonDocument(expected).toJson());
    file.close();
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(Python, {Script, dxf, json});
    if (!process.waitForFinished(120000)) {
        process.kill();
        process.waitForFinished();
        return {-1, QStringLiteral("check_dxf.py did not finish")};
    }
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromUtf8(process.readAll())};
}

} // namespace

class TestDxfEzdxf : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        if (!QFileInfo(Python).isExecutable())
            QSKIP("/usr/bin/python3 is not installed");
        QProcess probe;
        probe.start(Python, {QStringLiteral("-c"), QStringLiteral("import ezdxf")});
        if (!probe.waitForFinished(60000) || probe.exitCode() != 0)
            QSKIP("Python's ezdxf is not installed (Debian package python3-ezdxf)");
    }

    void ezdxfReadsTheWrittenDrawing_data()
    {
        QTest::addColumn<int>("drawingNumber");
        QTest::newRow("rich drawing") << 0;
        QTest::newRow("single empty page") << 1;
    }

    void ezdxfReadsTheWrittenDrawing()
    {
        QFETCH(int, drawingNumber);
        const Drawing drawing =
            drawingNumber == 0 ? DxfSamples::richDrawing() : Drawing::withSinglePage();
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("drawing.dxf"));
        QCOMPARE(DxfDrawingWriter::write(drawing, path), QString());
        const CheckRun run = runCheck(path, expectation(drawing), dir.path());
        QVERIFY2(run.exitCode == 0, qPrintable(run.output));
        QVERIFY2(run.output.contains(QStringLiteral("matches")), qPrintable(run.output));
    }

    // The example standard's block drawings, read, placed on a page with attribute values and
    // written again.
    void ezdxfReadsADrawingOfTheExampleBlocks()
    {
        const QDir folder(QStringLiteral(KV_SOURCE_DIR "/examples/network/DADOS/IEC/BLOCOS"));
        const QStringList files = folder.entryList({QStringLiteral("*.dxf")}, QDir::Files);
        if (files.isEmpty())
            QSKIP("no example block drawings in this checkout");
        Drawing drawing = Drawing::withSinglePage(QStringLiteral("EXAMPLE"));
        double x = 0;
        for (const QString& file : files) {
            const DxfBlockReader::Result read = DxfBlockReader::read(folder.filePath(file));
            QVERIFY2(read.block, qPrintable(read.error));
            drawing.blocks().insert(read.block->name, *read.block);
            BlockReference reference =
                DxfSamples::reference(read.block->name, drawing.currentLayer(), x, 0);
            for (const AttributeDefinition& definition : read.block->attributes)
                reference.attributes.append(
                    {definition.tag, definition.tag.toLower() + QStringLiteral(" \u00e7")});
            drawing.references().append(reference);
            x += 60;
        }
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("examples.dxf"));
        QCOMPARE(DxfDrawingWriter::write(drawing, path), QString());
        const CheckRun run = runCheck(path, expectation(drawing), dir.path());
        QVERIFY2(run.exitCode == 0, qPrintable(run.output));
    }

    // The checker itself must notice a difference, or the test above proves nothing.
    void checkerNoticesDifferences_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<QString>("reported");
        QTest::newRow("attribute value")
            << QStringLiteral("attribute") << QStringLiteral("attributes of INSERT 1");
        QTest::newRow("frozen state")
            << QStringLiteral("frozen") << QStringLiteral("frozen state of layer");
        QTest::newRow("page title")
            << QStringLiteral("title") << QStringLiteral("group and title of page");
        QTest::newRow("variable") << QStringLiteral("variable")
                                  << QStringLiteral("texts of variable");
        QTest::newRow("rotation") << QStringLiteral("rotation")
                                  << QStringLiteral("rotation of INSERT 2");
    }

    void checkerNoticesDifferences()
    {
        QFETCH(QString, change);
        QFETCH(QString, reported);
        const Drawing drawing = DxfSamples::richDrawing();
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("drawing.dxf"));
        QCOMPARE(DxfDrawingWriter::write(drawing, path), QString());
        Drawing different = drawing;
        if (change == QLatin1String("attribute"))
            different.references()[0].attributes[1].value += QLatin1Char('!');
        else if (change == QLatin1String("frozen"))
            different.groups()[0].pages[0].frozen = !different.groups()[0].pages[0].frozen;
        else if (change == QLatin1String("title"))
            different.groups()[1].pages[0].title = QStringLiteral("Other");
        else if (change == QLatin1String("variable"))
            different.variables()[QStringLiteral("PBLLSTREGCAUTO")].list[1] = QStringLiteral("-K2");
        else
            different.references()[1].rotationDegrees = 45;
        const CheckRun run = runCheck(path, expectation(different), dir.path());
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.output.contains(reported), qPrintable(run.output));
    }

    void checkerRejectsADamagedFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("drawing.dxf"));
        QCOMPARE(DxfDrawingWriter::write(DxfSamples::richDrawing(), path), QString());
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.resize(file.size() / 3));
        file.close();
        const CheckRun run = runCheck(path, expectation(DxfSamples::richDrawing()), dir.path());
        QVERIFY2(run.exitCode != 0, qPrintable(run.output));
    }
};

QTEST_GUILESS_MAIN(TestDxfEzdxf)
#include "tst_dxf_ezdxf.moc"
