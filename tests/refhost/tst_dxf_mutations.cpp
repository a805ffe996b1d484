// Thousands of damaged variants of valid DXF files: both readers must answer each with a result
// or an error naming the file, never crash or hang. The damage is random but seeded, so a failure
// can be repeated.
#include "DxfBlockReader.h"
#include "DxfDrawingReader.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

using namespace RefHost;

namespace {

QByteArray mutate(const QByteArray& original, QRandomGenerator& random)
{
    QList<QByteArray> lines = original.split('\n');
    const int changes = 1 + int(random.bounded(3));
    static const QList<QByteArray> values = {
        "",         "-1",      "0",      "2147483647", "-2147483648", "1e308",  "nan",
        "abc",      "SECTION", "ENDSEC", "EOF",        "BLOCK",       "ENDBLK", "INSERT",
        "POLYLINE", "VERTEX",  "SEQEND", "ATTRIB",     "LWPOLYLINE",  "{"};
    for (int change = 0; change < changes && lines.size() > 2; ++change) {
        const qsizetype at = random.bounded(int(lines.size()));
        switch (random.bounded(7)) {
        case 0: { // a random byte somewhere in a line
            QByteArray& line = lines[at];
            if (!line.isEmpty())
                line[random.bounded(int(line.size()))] = char(random.bounded(256));
            break;
        }
        case 1:
            lines.removeAt(at);
            break;
        case 2:
            lines.insert(at, lines.at(at));
            break;
        case 3:
            lines[at] = values.at(random.bounded(int(values.size())));
            break;
        case 4:
            lines = lines.mid(0, at);
            break;
        case 5: {
            const qsizetype other = random.bounded(int(lines.size()));
            lines.swapItemsAt(at, other);
            break;
        }
        default: // a pair removed: the file stays well-formed but loses a group
            lines.remove(at & ~qsizetype(1),
                         qMin<qsizetype>(2, lines.size() - (at & ~qsizetype(1))));
            break;
        }
    }
    return lines.join('\n');
}

} // namespace

class TestDxfMutations : public QObject
{
    Q_OBJECT

private slots:
    void damagedFilesGiveAnAnswer_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<quint32>("seed");
        for (const char* name : {"symbol_r2000.dxf", "symbol_r2013.dxf", "symbol_nested.dxf",
                                 "drawing_foreign.dxf", "golden_small.dxf"})
            QTest::newRow(name) << QString::fromLatin1(name) << quint32(qHash(QByteArray(name)));
    }

    void damagedFilesGiveAnAnswer()
    {
        QFETCH(QString, file);
        QFETCH(quint32, seed);
        QFile input(QStringLiteral(KV_TEST_DATA_DIR "/dxf/") + file);
        QVERIFY(input.open(QIODevice::ReadOnly));
        const QByteArray original = input.readAll();
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("damaged.dxf"));
        QRandomGenerator random(seed);
        QElapsedTimer timer;
        timer.start();
        int errors = 0;
        for (int round = 0; round < 150; ++round) {
            const QByteArray damaged = mutate(original, random);
            QFile output(path);
            QVERIFY(output.open(QIODevice::WriteOnly | QIODevice::Truncate));
            output.write(damaged);
            output.close();
            const DxfBlockReader::Result block = DxfBlockReader::read(path);
            QVERIFY2(block.block.has_value() == block.error.isEmpty(), qPrintable(block.error));
            QVERIFY(block.error.isEmpty() || block.error.startsWith(path));
            const DxfDrawingReader::Result drawing = DxfDrawingReader::read(path);
            QVERIFY2(drawing.drawing.has_value() == drawing.error.isEmpty(),
                     qPrintable(drawing.error));
            QVERIFY(drawing.error.isEmpty() || drawing.error.startsWith(path));
            errors += block.block ? 0 : 1;
        }
        // Most damage is noticed; some (a changed digit) leaves a readable file.
        QVERIFY2(errors > 40, qPrintable(QString::number(errors)));
        QVERIFY2(timer.elapsed() < 120000, "the readers must not hang on damaged files");
    }
};

QTEST_GUILESS_MAIN(TestDxfMutations)
#include "tst_dxf_mutations.moc"
