// Drawing -> DXF -> Drawing with the reference host's own writer and reader.
#include "DxfDrawingReader.h"
#include "DxfDrawingWriter.h"
#include "DxfTextCodec.h"
#include "tst_dxf_compare.h"
#include "tst_dxf_samples.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <limits>

using namespace RefHost;

class TestDxfRoundTrip : public QObject
{
    Q_OBJECT

private:
    static QByteArray readAll(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // The names of the LAYER table's entries, in file order.
    static QStringList layerTable(const QByteArray& text)
    {
        const QList<QByteArray> lines = text.split('\n');
        QStringList names;
        bool inLayers = false;
        bool inEntry = false;
        for (qsizetype i = 0; i + 1 < lines.size(); i += 2) {
            const int code = lines[i].trimmed().toInt();
            const QByteArray& value = lines[i + 1];
            if (code == 2 && value == "LAYER" && !inLayers)
                inLayers = true;
            else if (inLayers && code == 0 && value == "ENDTAB")
                break;
            else if (inLayers && code == 0)
                inEntry = value == "LAYER";
            else if (inEntry && code == 2)
                names.append(DxfTextCodec().decode(value));
        }
        return names;
    }

private slots:
    void roundTripKeepsEverything()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString path = dir.filePath(QStringLiteral("drawing.dxf"));
        const Drawing original = DxfSamples::richDrawing();
        QCOMPARE(DxfDrawingWriter::write(original, path), QString());
        const DxfDrawingReader::Result result = DxfDrawingReader::read(path);
        QVERIFY2(result.drawing.has_value(), qPrintable(result.error));
        QCOMPARE(result.error, QString());
        DxfCompare::compareDrawings(*result.drawing, original);
    }

    void rewritingGivesTheSameBytes()
    {
        QTemporaryDir dir;
        const QString first = dir.filePath(QStringLiteral("first.dxf"));
        const QString second = dir.filePath(QStringLiteral("second.dxf"));
        QCOMPARE(DxfDrawingWriter::write(DxfSamples::richDrawing(), first), QString());
        const DxfDrawingReader::Result result = DxfDrawingReader::read(first);
        QVERIFY2(result.drawing, qPrintable(result.error));
        QCOMPARE(DxfDrawingWriter::write(*result.drawing, second), QString());
        const QByteArray a = readAll(first);
        QVERIFY(a.size() > 1000);
        QCOMPARE(readAll(second), a);
    }

    void writtenFileIsR2000InWindows1252()
    {
        QString error;
        const QByteArray text = DxfDrawingWriter::toDxf(DxfSamples::richDrawing(), &error);
        QCOMPARE(error, QString());
        QVERIFY(text.contains("$ACADVER\n  1\nAC1015\n"));
        QVERIFY(text.contains("$DWGCODEPAGE\n  3\nANSI_1252\n"));
        QVERIFY(text.endsWith("  0\nEOF\n"));
        for (char c : text)
            QVERIFY2(c == '\n' || static_cast<unsigned char>(c) >= 0x20,
                     "no control characters but line ends");
        // Characters of the code page are its bytes; the others, and blanks at the ends of a
        // value, travel as AutoCAD's escapes.
        QVERIFY(text.contains("Contator a\xE7\xE3o \\U+2126 \xE9"));
        QVERIFY(text.contains("\\U+0020\\U+0020-K2\\U+0020\n"));
        QVERIFY(text.contains("literal \\U+005CU+0041, caret ^J"));
        // The handle seed lies above every handle used.
        const qsizetype at = text.indexOf("$HANDSEED\n  5\n");
        QVERIFY(at >= 0);
        const qsizetype start = at + int(strlen("$HANDSEED\n  5\n"));
        bool ok = false;
        const qulonglong seed =
            text.mid(start, text.indexOf('\n', start) - start).toULongLong(&ok, 16);
        QVERIFY(ok);
        // Every handle is unique and below the seed.
        const QList<QByteArray> lines = text.split('\n');
        QSet<qulonglong> handles;
        for (qsizetype i = 2; i + 1 < lines.size(); i += 2) {
            if (lines[i].trimmed() != "5" || lines[i - 1] == "$HANDSEED")
                continue;
            const qulonglong handle = lines[i + 1].toULongLong(&ok, 16);
            QVERIFY2(ok && handle < seed, lines[i + 1].constData());
            QVERIFY2(!handles.contains(handle), lines[i + 1].constData());
            handles.insert(handle);
        }
        QVERIFY(handles.size() > 50);
    }

    // The smallest useful drawing, compared byte for byte with the file kept in the tests'
    // data. Set KV_UPDATE_GOLDEN=1 to write the file anew after a deliberate format change.
    void smallDrawingMatchesGoldenFile()
    {
        Drawing drawing;
        drawing.groups() = {
            PageGroup{QStringLiteral("PAGE"),
                      {Page{QStringLiteral("First"), QStringLiteral("PAGE$1"), false}}}};
        drawing.setCurrentLayer(QStringLiteral("PAGE$1"));
        BlockDefinition block;
        block.name = QStringLiteral("S");
        block.geometry = {DxfSamples::line(0, 0, 10, 0)};
        block.attributes = {DxfSamples::attribute(QStringLiteral("TAG"), 0, 2, 2.5)};
        drawing.blocks().insert(block.name, block);
        BlockReference reference =
            DxfSamples::reference(QStringLiteral("S"), QStringLiteral("PAGE$1"), 5, 7,
                                  {{QStringLiteral("TAG"), QStringLiteral("-S1")}});
        reference.componentKey = QStringLiteral("7");
        drawing.references() = {reference};
        DrawingVariable variable;
        variable.text = QStringLiteral("IEC");
        drawing.variables().insert(QStringLiteral("*NORMA_UTILIZADA*"), variable);

        QString error;
        const QByteArray text = DxfDrawingWriter::toDxf(drawing, &error);
        QCOMPARE(error, QString());
        const QString golden = QStringLiteral(KV_TEST_DATA_DIR "/dxf/golden_small.dxf");
        if (qEnvironmentVariableIntValue("KV_UPDATE_GOLDEN") == 1) {
            QFile out(golden);
            QVERIFY(out.open(QIODevice::WriteOnly));
            out.write(text);
        }
        const QByteArray expected = readAll(golden);
        QVERIFY2(!expected.isEmpty(), "golden file missing");
        QCOMPARE(text, expected);
    }

    // Pages first (after layer "0" when no page is called so), then the current layer and the
    // references' layers, each name once ignoring case; case-folded forms decide equality.
    void layerTableHoldsEachNameOnceIgnoringCase_data()
    {
        QTest::addColumn<QStringList>("pages");
        QTest::addColumn<QString>("current");
        QTest::addColumn<QStringList>("references");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("references on pages and on other layers")
            << QStringList{QStringLiteral("PAGE$1"), QStringLiteral("Page$2")}
            << QStringLiteral("Notes")
            << QStringList{QStringLiteral("page$2"), QStringLiteral("Extra"),
                           QStringLiteral("PAGE$1"), QStringLiteral("EXTRA"),
                           QStringLiteral("notes"),  QStringLiteral("Other")}
            << QStringList{QStringLiteral("0"),      QStringLiteral("PAGE$1"),
                           QStringLiteral("Page$2"), QStringLiteral("Notes"),
                           QStringLiteral("Extra"),  QStringLiteral("Other")};
        QTest::newRow("a page called 0, a current page")
            << QStringList{QStringLiteral("A$1"), QStringLiteral("0")} << QStringLiteral("a$1")
            << QStringList{QStringLiteral("0"), QStringLiteral("b"), QStringLiteral("B"),
                           QStringLiteral("a$1")}
            << QStringList{QStringLiteral("A$1"), QStringLiteral("0"), QStringLiteral("b")};
        // Simple case folding: the sharp s is not "SS", the Greek final sigma is a sigma.
        QTest::newRow("letters beyond ASCII")
            << QStringList{QStringLiteral("P$1")} << QString()
            << QStringList{QStringLiteral("Stra\u00DFe"), QStringLiteral("STRASSE"),
                           QStringLiteral("\u00C4RGER"),  QStringLiteral("\u00E4rger"),
                           QStringLiteral("\u03A3"),      QStringLiteral("\u03C2"),
                           QStringLiteral("\u03C3")}
            << QStringList{QStringLiteral("0"),           QStringLiteral("P$1"),
                           QStringLiteral("Stra\u00DFe"), QStringLiteral("STRASSE"),
                           QStringLiteral("\u00C4RGER"),  QStringLiteral("\u03A3")};
    }

    void layerTableHoldsEachNameOnceIgnoringCase()
    {
        QFETCH(QStringList, pages);
        QFETCH(QString, current);
        QFETCH(QStringList, references);
        QFETCH(QStringList, expected);
        Drawing drawing;
        PageGroup group{QStringLiteral("G"), {}};
        for (const QString& layer : std::as_const(pages))
            group.pages.append(Page{QString(), layer, false});
        drawing.groups() = {group};
        if (!current.isEmpty())
            QVERIFY(drawing.setCurrentLayer(current));
        for (const QString& layer : std::as_const(references))
            drawing.references().append(
                DxfSamples::reference(QStringLiteral("S"), layer, 0, 0, {}));
        QString error;
        const QByteArray text = DxfDrawingWriter::toDxf(drawing, &error);
        QCOMPARE(error, QString());
        QCOMPARE(layerTable(text), expected);
    }

    void writeReplacesAnExistingFileAndLeavesNoTemporaryFiles()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("drawing.dxf"));
        QFile old(path);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("old contents");
        old.close();
        QCOMPARE(DxfDrawingWriter::write(Drawing::withSinglePage(), path), QString());
        QVERIFY(readAll(path).startsWith("999\n"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("drawing.dxf")});
    }

    void invalidDrawingLeavesTheFileUntouched_data()
    {
        QTest::addColumn<int>("fault");
        QTest::addColumn<QString>("expected");
        QTest::newRow("empty block name") << 0 << QStringLiteral("block name");
        QTest::newRow("reference without layer") << 1 << QStringLiteral("has no layer");
        QTest::newRow("position not finite") << 2 << QStringLiteral("not a finite number");
        QTest::newRow("page layer twice") << 3 << QStringLiteral("appears twice");
        QTest::newRow("attribute value too long") << 4 << QStringLiteral("longer than 1000 bytes");
        QTest::newRow("block names differing in case")
            << 5 << QStringLiteral("differ only in case");
        QTest::newRow("block geometry not finite") << 6 << QStringLiteral("not a finite number");
    }

    void invalidDrawingLeavesTheFileUntouched()
    {
        QFETCH(int, fault);
        QFETCH(QString, expected);
        Drawing drawing = DxfSamples::richDrawing();
        switch (fault) {
        case 0:
            drawing.blocks().insert(QString(), BlockDefinition());
            break;
        case 1:
            drawing.references()[0].layer.clear();
            break;
        case 2:
            drawing.references()[1].y = std::numeric_limits<double>::quiet_NaN();
            break;
        case 3:
            drawing.groups()[1].pages.append(Page{QString(), QStringLiteral("forca$1"), false});
            break;
        case 4:
            drawing.references()[0].attributes[0].value =
                QString(400, QChar(0x2126)); // 7 bytes each once escaped
            break;
        case 5:
            drawing.blocks().insert(QStringLiteral("lamp"), BlockDefinition());
            break;
        case 6:
            drawing.blocks()[QStringLiteral("LAMP")].geometry[0].radius =
                std::numeric_limits<double>::infinity();
            break;
        }
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("kept.dxf"));
        QFile old(path);
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("previous drawing");
        old.close();
        const QString error = DxfDrawingWriter::write(drawing, path);
        QVERIFY2(error.contains(expected), qPrintable(error));
        QVERIFY2(error.startsWith(path), qPrintable(error));
        QCOMPARE(readAll(path), QByteArray("previous drawing"));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList{QStringLiteral("kept.dxf")});
    }

    void writeIntoMissingFolderFails()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("no/such/folder/drawing.dxf"));
        const QString error = DxfDrawingWriter::write(DxfSamples::richDrawing(), path);
        QVERIFY2(error.startsWith(path), qPrintable(error));
        QVERIFY(!QFile::exists(path));
    }

    void emptyDrawingRoundTrips()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("empty.dxf"));
        const Drawing empty;
        QCOMPARE(DxfDrawingWriter::write(empty, path), QString());
        const DxfDrawingReader::Result result = DxfDrawingReader::read(path);
        QVERIFY2(result.drawing, qPrintable(result.error));
        DxfCompare::compareDrawings(*result.drawing, empty);
    }

    // A drawing made by another program (ezdxf): its GROUP$N layers become pages.
    void foreignDrawingPagesFromLayerNames()
    {
        const DxfDrawingReader::Result result =
            DxfDrawingReader::read(QStringLiteral(KV_TEST_DATA_DIR "/dxf/drawing_foreign.dxf"));
        QVERIFY2(result.drawing, qPrintable(result.error));
        const Drawing& drawing = *result.drawing;
        QCOMPARE(drawing.pageLayers(),
                 (QStringList{QStringLiteral("SHEET$1"), QStringLiteral("SHEET$2"),
                              QStringLiteral("SHEET$10"), QStringLiteral("TERM$1")}));
        QCOMPARE(drawing.groups().size(), 2);
        QCOMPARE(drawing.groups()[0].name, QStringLiteral("SHEET"));
        QVERIFY(drawing.groups()[0].pages[1].frozen);
        QVERIFY(!drawing.groups()[0].pages[0].frozen);
        QCOMPARE(drawing.currentLayer(), QStringLiteral("SHEET$1"));
        QVERIFY(drawing.blocks().contains(QStringLiteral("RELAY")));
        QCOMPARE(drawing.references().size(), 2);
        const BlockReference& relay = drawing.references()[0];
        QCOMPARE(relay.blockName, QStringLiteral("RELAY"));
        QCOMPARE(relay.layer, QStringLiteral("SHEET$2"));
        DXF_COMPARE_REAL(relay.x, 50.0);
        DXF_COMPARE_REAL(relay.rotationDegrees, 45.0);
        QCOMPARE(relay.attributes.size(), 2);
        QCOMPARE(relay.attributes[0].tag, QStringLiteral("TAG"));
        QCOMPARE(relay.attributes[0].value, QStringLiteral("-K7"));
        QCOMPARE(relay.attributes[1].value, QStringLiteral("Rel\u00e9"));
        QCOMPARE(drawing.blocks().value(QStringLiteral("RELAY")).attributes.size(), 2);
    }
};

QTEST_GUILESS_MAIN(TestDxfRoundTrip)
#include "tst_dxf_roundtrip.moc"
