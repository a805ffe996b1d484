// Block drawings read with DxfBlockReader: files written by ezdxf (an independent DXF library)
// and hostile files, which must give an error naming the file, never a crash or a hang.
#include "DxfBlockReader.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using namespace RefHost;

namespace {

QString dataFile(const QString& name)
{
    return QStringLiteral(KV_TEST_DATA_DIR "/dxf/") + name;
}

bool near(double a, double b)
{
    return std::abs(a - b) < 1e-6;
}

bool near(const QPointF& a, const QPointF& b)
{
    return near(a.x(), b.x()) && near(a.y(), b.y());
}

QList<GeometryItem> itemsOf(const BlockDefinition& block, GeometryItem::Kind kind)
{
    QList<GeometryItem> items;
    for (const GeometryItem& item : block.geometry) {
        if (item.kind == kind)
            items.append(item);
    }
    return items;
}

// A DXF file from (code, value) pairs.
QByteArray groups(const QList<std::pair<int, QByteArray>>& pairs)
{
    QByteArray text;
    for (const auto& [code, value] : pairs)
        text += QByteArray::number(code) + '\n' + value + '\n';
    return text;
}

QByteArray entities(const QByteArray& body)
{
    return groups({{0, "SECTION"}, {2, "ENTITIES"}}) + body + groups({{0, "ENDSEC"}, {0, "EOF"}});
}

QByteArray lineEntity()
{
    return groups({{0, "LINE"}, {8, "0"}, {10, "0"}, {20, "0"}, {11, "1"}, {21, "1"}});
}

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Blocks B0 .. B15, each inserting the next one ten times: 10^15 lines if expanded blindly.
QByteArray nestingBomb()
{
    QByteArray blocks = groups({{0, "SECTION"}, {2, "BLOCKS"}});
    for (int level = 0; level < 16; ++level) {
        const QByteArray name = "B" + QByteArray::number(level);
        blocks += groups({{0, "BLOCK"}, {2, name}, {70, "0"}, {10, "0"}, {20, "0"}});
        if (level == 15) {
            blocks += lineEntity();
        } else {
            for (int i = 0; i < 10; ++i)
                blocks += groups({{0, "INSERT"},
                                  {2, "B" + QByteArray::number(level + 1)},
                                  {10, QByteArray::number(i)},
                                  {20, "0"}});
        }
        blocks += groups({{0, "ENDBLK"}});
    }
    blocks += groups({{0, "ENDSEC"}});
    return blocks + entities(groups({{0, "INSERT"}, {2, "B0"}, {10, "0"}, {20, "0"}}));
}

} // namespace

class TestDxfBlockReader : public QObject
{
    Q_OBJECT

private slots:
    void readsEverySupportedEntity()
    {
        const DxfBlockReader::Result result =
            DxfBlockReader::read(dataFile(QStringLiteral("symbol_r2000.dxf")));
        QVERIFY2(result.block, qPrintable(result.error));
        const BlockDefinition& block = *result.block;
        QCOMPARE(block.name, QStringLiteral("symbol_r2000"));
        QVERIFY(near(block.basePoint, QPointF(5, 2.5)));

        const QList<GeometryItem> lines = itemsOf(block, GeometryItem::Kind::Line);
        QCOMPARE(lines.size(), 2);
        QVERIFY(near(lines[1].points[0], QPointF(10, 0)));
        QVERIFY(near(lines[1].points[1], QPointF(10, 5)));

        const QList<GeometryItem> circles = itemsOf(block, GeometryItem::Kind::Circle);
        QCOMPARE(circles.size(), 1);
        QVERIFY(near(circles[0].points[0], QPointF(5, 2.5)));
        QVERIFY(near(circles[0].radius, 1.5));

        const QList<GeometryItem> arcs = itemsOf(block, GeometryItem::Kind::Arc);
        QCOMPARE(arcs.size(), 1);
        QVERIFY(near(arcs[0].radius, 2.0));
        QVERIFY(near(arcs[0].startAngle, 0.0));
        QVERIFY(near(arcs[0].endAngle, 180.0));

        // The bulged side (half a circle around (10, 7)) becomes points on that circle.
        const QList<GeometryItem> polylines = itemsOf(block, GeometryItem::Kind::Polyline);
        QCOMPARE(polylines.size(), 1);
        const GeometryItem& outline = polylines[0];
        QVERIFY(outline.closed);
        QVERIFY(outline.points.size() > 6);
        QVERIFY(near(outline.points.first(), QPointF(0, 6)));
        QVERIFY(near(outline.points.last(), QPointF(0, 8)));
        double rightmost = 0;
        for (const QPointF& point : outline.points) {
            rightmost = qMax(rightmost, point.x());
            if (point.x() > 10.0 + 1e-9)
                QVERIFY(near(std::hypot(point.x() - 10, point.y() - 7), 1.0));
        }
        QVERIFY(near(rightmost, 11.0));

        const QList<GeometryItem> texts = itemsOf(block, GeometryItem::Kind::Text);
        QCOMPARE(texts.size(), 2);
        QCOMPARE(texts[0].text, QStringLiteral("K"));
        QVERIFY(near(texts[0].height, 2.0));
        QCOMPARE(texts[1].text,
                 QStringLiteral("Motor \u00e7")); // Windows-1252 byte in an R2000 file
        QVERIFY(near(texts[1].rotation, 90.0));
        QVERIFY(near(texts[1].points[0], QPointF(1, -3)));

        QCOMPARE(block.attributes.size(), 3);
        QCOMPARE(block.attributes[0].tag, QStringLiteral("TAG"));
        QCOMPARE(block.attributes[0].prompt, QStringLiteral("Tag"));
        QCOMPARE(block.attributes[0].defaultValue, QStringLiteral("K?"));
        QVERIFY(near(block.attributes[0].position, QPointF(11, 4)));
        QVERIFY(near(block.attributes[0].height, 2.5));
        QCOMPARE(block.attributes[1].tag, QStringLiteral("DESCRICAO"));
        QVERIFY(near(block.attributes[1].rotation, 30.0));
        QVERIFY(near(block.attributes[1].height, 1.8));
        QVERIFY(!block.attributes[1].invisible);
        QCOMPARE(block.attributes[2].tag, QStringLiteral("CODIGO"));
        QCOMPARE(block.attributes[2].defaultValue, QStringLiteral("0000"));
        QVERIFY(block.attributes[2].invisible);
    }

    void readsUtf8FileWithMTextAndOldPolyline()
    {
        const DxfBlockReader::Result result =
            DxfBlockReader::read(dataFile(QStringLiteral("symbol_r2013.dxf")));
        QVERIFY2(result.block, qPrintable(result.error));
        const BlockDefinition& block = *result.block;
        const QList<GeometryItem> polylines = itemsOf(block, GeometryItem::Kind::Polyline);
        QCOMPARE(polylines.size(), 1);
        QVERIFY(polylines[0].closed);
        QCOMPARE(polylines[0].points.size(), 4);
        QVERIFY(near(polylines[0].points[2], QPointF(4, 4)));
        const QList<GeometryItem> texts = itemsOf(block, GeometryItem::Kind::Text);
        QCOMPARE(texts.size(), 2);
        QCOMPARE(texts[0].text, QStringLiteral("A\u00e7\u00e3o\nLinha 2"));
        // Attached at its top left corner: the first baseline lies one text height lower.
        QVERIFY(near(texts[0].points[0], QPointF(0, 9)));
        QCOMPARE(texts[1].text, QStringLiteral("\u00c9tiqueta"));
        QCOMPARE(block.attributes.size(), 1);
        QCOMPARE(block.attributes[0].prompt, QStringLiteral("Tag \u00e9"));
        QCOMPARE(block.attributes[0].defaultValue, QStringLiteral("X1"));
    }

    void expandsNestedBlocksAndSkipsTheRest()
    {
        const DxfBlockReader::Result result =
            DxfBlockReader::read(dataFile(QStringLiteral("symbol_nested.dxf")));
        QVERIFY2(result.block, qPrintable(result.error));
        const BlockDefinition& block = *result.block;
        // One mirrored arc, two inserted PINs of a circle and a line each; the spline, the
        // hatch and the paper-space line are not part of the symbol.
        QCOMPARE(block.geometry.size(), 5);
        const QList<GeometryItem> arcs = itemsOf(block, GeometryItem::Kind::Arc);
        QCOMPARE(arcs.size(), 1);
        QVERIFY(near(arcs[0].points[0], QPointF(-3, 0)));
        QVERIFY(near(arcs[0].startAngle, 90.0));
        QVERIFY(near(arcs[0].endAngle, 180.0));
        const QList<GeometryItem> circles = itemsOf(block, GeometryItem::Kind::Circle);
        QCOMPARE(circles.size(), 2);
        QVERIFY(near(circles[0].points[0], QPointF(10, 0)));
        QVERIFY(near(circles[0].radius, 0.5));
        QVERIFY(near(circles[1].points[0], QPointF(0, 10)));
        QVERIFY(near(circles[1].radius, 1.0));
        const QList<GeometryItem> lines = itemsOf(block, GeometryItem::Kind::Line);
        QCOMPARE(lines.size(), 2);
        QVERIFY(near(lines[0].points[1], QPointF(12, 0)));
        QVERIFY(near(lines[1].points[0], QPointF(0, 10)));
        QVERIFY(near(lines[1].points[1], QPointF(0, 14)));
        for (const GeometryItem& item : block.geometry) {
            for (const QPointF& point : item.points)
                QVERIFY2(point.x() < 50 && point.y() < 50, "paper space must stay out");
        }
        QCOMPARE(block.attributes.size(), 1);
    }

    void lwpolylineVertexCountIsNotTrusted()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("count.dxf"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(entities(groups({{0, "LWPOLYLINE"},
                                    {8, "0"},
                                    {90, "2147483647"},
                                    {70, "0"},
                                    {10, "1"},
                                    {20, "2"},
                                    {10, "3"},
                                    {20, "4"}})));
        file.close();
        const DxfBlockReader::Result result = DxfBlockReader::read(path);
        QVERIFY2(result.block, qPrintable(result.error));
        QCOMPARE(result.block->geometry.size(), 1);
        QCOMPARE(result.block->geometry[0].points, (QList<QPointF>{QPointF(1, 2), QPointF(3, 4)}));
    }

    // dxflib ignores a BLOCK without a name but would still hand over its entities.
    void entitiesOfANamelessBlockStayOut()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("nameless.dxf"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(
            groups({{0, "SECTION"}, {2, "BLOCKS"}, {0, "BLOCK"}, {70, "0"}, {10, "0"}, {20, "0"}}) +
            lineEntity() + groups({{0, "ENDBLK"}, {0, "ENDSEC"}}) +
            entities(groups({{0, "CIRCLE"}, {10, "1"}, {20, "1"}, {40, "2"}})));
        file.close();
        const DxfBlockReader::Result result = DxfBlockReader::read(path);
        QVERIFY2(result.block, qPrintable(result.error));
        QCOMPARE(result.block->geometry.size(), 1);
        QCOMPARE(int(result.block->geometry[0].kind), int(GeometryItem::Kind::Circle));
    }

    void hostileFilesGiveErrors_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<QString>("expected");

        const QByteArray valid = readAll(dataFile(QStringLiteral("symbol_r2000.dxf")));
        QVERIFY(!valid.isEmpty());
        QByteArray garbage(64 * 1024, '\0');
        QRandomGenerator random(20240611);
        for (char& c : garbage)
            c = char(random.bounded(256));
        // Cut inside a value line, and cut at a group boundary.
        const QByteArray cutInValue = valid.left(valid.indexOf("AcDbCircle") + 5);
        const qsizetype boundary = valid.indexOf("\n  0\nCIRCLE\n");
        const QByteArray cutAtGroup = valid.left(boundary + 1);

        QTest::newRow("empty") << QByteArray() << QStringLiteral("empty");
        QTest::newRow("random bytes")
            << garbage << QStringLiteral("line 1: a group code was expected");
        QTest::newRow("plain text")
            << QByteArray("hello\nworld\n") << QStringLiteral("group code was expected");
        QTest::newRow("cut in a value") << cutInValue << QStringLiteral("truncated");
        QTest::newRow("cut at a group") << cutAtGroup << QStringLiteral("truncated");
        QTest::newRow("binary DXF")
            << QByteArray("AutoCAD Binary DXF\r\n\x1a\0\0\0", 24) << QStringLiteral("binary DXF");
        QTest::newRow("word for a coordinate")
            << entities(groups({{0, "LINE"}, {10, "abc"}, {20, "0"}}))
            << QStringLiteral("\"abc\" is not a valid number");
        QTest::newRow("nan coordinate")
            << entities(groups({{0, "CIRCLE"}, {10, "nan"}, {20, "0"}, {40, "1"}}))
            << QStringLiteral("not a valid number");
        QTest::newRow("huge coordinate")
            << entities(groups({{0, "CIRCLE"}, {10, "1e300"}, {20, "0"}, {40, "1"}}))
            << QStringLiteral("out of range");
        QTest::newRow("word for an integer") << entities(groups({{0, "LWPOLYLINE"}, {90, "many"}}))
                                             << QStringLiteral("not a valid integer");
        QTest::newRow("group code out of range") << entities(groups({{0, "LINE"}, {5000, "x"}}))
                                                 << QStringLiteral("group code was expected");
        QTest::newRow("very long line")
            << entities(groups({{0, "TEXT"}, {1, QByteArray(100000, 'a')}}))
            << QStringLiteral("longer than 4096");
        QTest::newRow("long text for dxflib")
            << entities(groups({{0, "TEXT"}, {10, "0"}, {20, "0"}, {1, QByteArray(3000, 'a')}}))
            << QStringLiteral("longer than 1000");
        QTest::newRow("section not closed")
            << groups({{0, "SECTION"}, {2, "ENTITIES"}}) + lineEntity() +
                   groups({{0, "SECTION"}, {2, "BLOCKS"}, {0, "ENDSEC"}, {0, "EOF"}})
            << QStringLiteral("not closed");
        QTest::newRow("entity outside a section")
            << lineEntity() + groups({{0, "EOF"}}) << QStringLiteral("SECTION was expected");
        QTest::newRow("no EOF") << groups({{0, "SECTION"}, {2, "ENTITIES"}}) + lineEntity() +
                                       groups({{0, "ENDSEC"}})
                                << QStringLiteral("EOF marker");
        QTest::newRow("nothing in model space")
            << entities(QByteArray()) << QStringLiteral("holds no");
        QTest::newRow("undefined block")
            << entities(groups({{0, "INSERT"}, {2, "NOWHERE"}, {10, "0"}, {20, "0"}}))
            << QStringLiteral("does not define");
        QTest::newRow("block inserting itself")
            << groups({{0, "SECTION"},
                       {2, "BLOCKS"},
                       {0, "BLOCK"},
                       {2, "A"},
                       {10, "0"},
                       {20, "0"},
                       {0, "INSERT"},
                       {2, "A"},
                       {10, "1"},
                       {20, "0"},
                       {0, "ENDBLK"},
                       {0, "ENDSEC"}}) +
                   entities(groups({{0, "INSERT"}, {2, "A"}, {10, "0"}, {20, "0"}}))
            << QStringLiteral("contains itself");
        QTest::newRow("nesting bomb") << nestingBomb() << QStringLiteral("expand to more than");
    }

    void hostileFilesGiveErrors()
    {
        QFETCH(QByteArray, contents);
        QFETCH(QString, expected);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("hostile.dxf"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(contents);
        file.close();
        QElapsedTimer timer;
        timer.start();
        const DxfBlockReader::Result result = DxfBlockReader::read(path);
        QVERIFY2(timer.elapsed() < 5000, "reading a hostile file must not take long");
        QVERIFY(!result.block);
        QVERIFY2(result.error.startsWith(path + QStringLiteral(": ")), qPrintable(result.error));
        QVERIFY2(result.error.contains(expected), qPrintable(result.error));
    }

    void missingFolderAndHugeFilesGiveErrors()
    {
        QTemporaryDir dir;
        const QString missing = dir.filePath(QStringLiteral("missing.dxf"));
        QVERIFY(DxfBlockReader::read(missing).error.contains(QStringLiteral("does not exist")));
        QVERIFY(
            DxfBlockReader::read(dir.path()).error.contains(QStringLiteral("not a regular file")));

        const QString huge = dir.filePath(QStringLiteral("huge.dxf"));
        QFile file(huge);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(40 * 1024 * 1024)); // sparse: costs no disk space
        file.close();
        const QString error = DxfBlockReader::read(huge).error;
        QVERIFY2(error.startsWith(huge) && error.contains(QStringLiteral("32 MiB")),
                 qPrintable(error));
    }

    // The example standard's block drawings, whichever exist, must all read.
    void exampleBlockDrawingsRead()
    {
        const QDir blocks(QStringLiteral(KV_SOURCE_DIR "/examples/network/DADOS/IEC/BLOCOS"));
        const QStringList files = blocks.entryList({QStringLiteral("*.dxf")}, QDir::Files);
        if (files.isEmpty())
            QSKIP("no example block drawings in this checkout");
        for (const QString& name : files) {
            const DxfBlockReader::Result result = DxfBlockReader::read(blocks.filePath(name));
            QVERIFY2(result.block, qPrintable(result.error));
            QVERIFY2(!result.block->geometry.isEmpty(), qPrintable(name));
        }
    }
};

QTEST_GUILESS_MAIN(TestDxfBlockReader)
#include "tst_dxf_blockreader.moc"
