#include "ReaderChecks.h"
#include "WorkbookParts.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTest>

namespace {

const QString kRegressionDir = QStringLiteral(KV_SOURCE_DIR "/tests/fuzz-regressions");
const QString kCorpusDir = QStringLiteral(KV_SOURCE_DIR "/fuzz/corpus");
// A regression input INPUT may come with INPUT.outcome: the start of what the check must see of
// it (ReaderChecks::lastOutcome), so that the test asserts the reader's answer, not only that
// there is one.
const QString kOutcomeSuffix = QStringLiteral(".outcome");

// The files under `folder`/`reader`, sorted, hidden ones included (a crash input may start
// with a dot).
QStringList inputFiles(const QString& folder, const QString& reader)
{
    QStringList files;
    QDirIterator it(folder + u'/' + reader, QDir::Files | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString file = it.next();
        if (!file.endsWith(kOutcomeSuffix))
            files.append(file);
    }
    files.sort();
    return files;
}

void addRows(const QString& folder, const QString& label)
{
    for (const ReaderChecks::Reader& reader : ReaderChecks::readers()) {
        for (const QString& file : inputFiles(folder, reader.name)) {
            const QString row =
                QStringLiteral("%1 %2/%3").arg(label, reader.name, QFileInfo(file).fileName());
            QTest::newRow(qPrintable(row)) << reader.name << file;
        }
    }
}

} // namespace

// Every input that once made a reader crash, hang or break one of its rules is kept here and
// read again through the same checks; so is every seed of the fuzz targets.
class TestFuzzRegressions : public QObject
{
    Q_OBJECT

private slots:
    void everyReaderHasSeeds();
    void regressions_data();
    void regressions();
    void seeds_data();
    void seeds();
    void checksReachTheReaders_data();
    void checksReachTheReaders();
    void workbookPartsSplitAtPartLines();

private:
    void replay();
};

void TestFuzzRegressions::everyReaderHasSeeds()
{
    QCOMPARE(ReaderChecks::readers().size(), 8);
    for (const ReaderChecks::Reader& reader : ReaderChecks::readers()) {
        QVERIFY2(!inputFiles(kCorpusDir, reader.name).isEmpty(), qPrintable(reader.name));
        QCOMPARE(ReaderChecks::findReader(reader.name), &reader);
    }
    QCOMPARE(ReaderChecks::findReader(QStringLiteral("no such reader")), nullptr);
}

void TestFuzzRegressions::replay()
{
    if (!QTest::currentDataTag())
        QSKIP("no inputs in this group");
    QFETCH(QString, reader);
    QFETCH(QString, file);
    const ReaderChecks::Reader* found = ReaderChecks::findReader(reader);
    QVERIFY(found);
    QFile input(file);
    QVERIFY2(input.open(QIODevice::ReadOnly), qPrintable(file));
    const QString problem = found->check(input.readAll());
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    QFile outcome(file + kOutcomeSuffix);
    if (outcome.open(QIODevice::ReadOnly)) {
        const QString expected = QString::fromUtf8(outcome.readAll()).trimmed();
        QVERIFY2(ReaderChecks::lastOutcome().startsWith(expected),
                 qPrintable(ReaderChecks::lastOutcome()));
    }
}

void TestFuzzRegressions::regressions_data()
{
    QTest::addColumn<QString>("reader");
    QTest::addColumn<QString>("file");
    addRows(kRegressionDir, QStringLiteral("regression"));
}

void TestFuzzRegressions::regressions()
{
    replay();
}

void TestFuzzRegressions::seeds_data()
{
    QTest::addColumn<QString>("reader");
    QTest::addColumn<QString>("file");
    addRows(kCorpusDir, QStringLiteral("seed"));
}

void TestFuzzRegressions::seeds()
{
    replay();
}

// A check that silently stopped reaching its reader would pass every input: these seeds must
// get as far as they do today.
void TestFuzzRegressions::checksReachTheReaders_data()
{
    QTest::addColumn<QString>("reader");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("outcome");
    const auto row = [](const char* reader, const char* file, const char* outcome) {
        QTest::newRow(file) << QString::fromLatin1(reader) << QString::fromLatin1(file)
                            << QString::fromLatin1(outcome);
    };
    row("settings_main", "example.cfa", "15 lines");
    row("settings_main", "long-field-line.cfa", "10 lines");
    row("settings_list", "trailing-line-end.cfb", "3 lines");
    row("workbook", "example.xlsx", "workbook open, Sheet1 with");
    row("workbook", "hostile-not-a-zip.xlsx", "error: it is not a zip archive");
    row("workbook_parts", "minimal-header-row-11.parts",
        "workbook open, Sheet1 with 13 rows, 4 titles found");
    row("workbook_parts", "example.parts", "workbook open, Sheet1 with");
    row("tree_json", "example-tree.json", "tree read,");
    row("tree_json", "bad-count.json", "error: input.json: ");
    row("settings_json", "docs-example.json", "settings saved and read back");
    row("settings_json", "wrong-types.json", "error: $.main.gapBeforeVar is missing");
    row("dxf_block", "LAMP.dxf", "block with");
    row("dxf_block", "small-hand-made.dxf", "block with");
    row("dxf_drawing", "golden_small.dxf", "drawing read");
}

void TestFuzzRegressions::checksReachTheReaders()
{
    QFETCH(QString, reader);
    QFETCH(QString, file);
    QFETCH(QString, outcome);
    QFile input(kCorpusDir + u'/' + reader + u'/' + file);
    QVERIFY2(input.open(QIODevice::ReadOnly), qPrintable(input.fileName()));
    const QString problem = ReaderChecks::findReader(reader)->check(input.readAll());
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    QVERIFY2(ReaderChecks::lastOutcome().startsWith(outcome),
             qPrintable(ReaderChecks::lastOutcome()));
}

void TestFuzzRegressions::workbookPartsSplitAtPartLines()
{
    const QList<WorkbookParts::Part> parts =
        WorkbookParts::parse("ignored\n== a.xml\n<a/>\n== b/c.xml\nx\n== e.xml\n\ny==z\n== d\n");
    QCOMPARE(parts.size(), 4);
    QCOMPARE(parts.at(0).name, QByteArray("a.xml"));
    QCOMPARE(parts.at(0).bytes, QByteArray("<a/>"));
    QCOMPARE(parts.at(1).name, QByteArray("b/c.xml"));
    QCOMPARE(parts.at(1).bytes, QByteArray("x"));
    QCOMPARE(parts.at(2).name, QByteArray("e.xml"));
    QCOMPARE(parts.at(2).bytes, QByteArray("\ny==z"));
    QCOMPARE(parts.at(3).name, QByteArray("d"));
    QCOMPARE(parts.at(3).bytes, QByteArray());
}

QTEST_GUILESS_MAIN(TestFuzzRegressions)
#include "tst_fuzz_regressions.moc"
