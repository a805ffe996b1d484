// "kvinsertauto run --sheet": the example spreadsheet imported and run in one command, on the
// example standard in SQLite and in PostgreSQL. Both drawings, read back with the reference
// host's DXF reader, hold the same pages and the same block references with the same
// attribute values; and the run from the spreadsheet places what the run from the imported
// tree (the import verb's output) places.
#include "DxfDrawingReader.h"
#include "ImportCliSupport.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace ImportCli;
using RefHost::Drawing;
using RefHost::DxfDrawingReader;

class tst_import_run : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void sheetRunOnSqlite();
    void sameDrawingOnPostgres();
    void sameDrawingFromTheImportedTree();

private:
    QString runSheet(const QString& database, const QString& name);

    QTemporaryDir m_dir;
    QString m_sqlite;
    ImportCli::ReaderDatabase m_postgres;
};

namespace {

// Everything a drawing places, one line per page and per block reference, in drawing order.
QStringList contents(const Drawing& drawing)
{
    QStringList lines;
    for (const QString& layer : drawing.pageLayers())
        lines.append(QStringLiteral("page ") + layer);
    for (const RefHost::BlockReference& reference : drawing.references()) {
        QString line = QStringLiteral("%1 %2 %3 %4 %5 [%6]")
                           .arg(reference.layer, reference.blockName)
                           .arg(reference.x, 0, 'g', 12)
                           .arg(reference.y, 0, 'g', 12)
                           .arg(reference.rotationDegrees, 0, 'g', 12)
                           .arg(reference.componentKey);
        for (const RefHost::AttributeValue& attribute : reference.attributes)
            line += u' ' + attribute.tag + u'=' + attribute.value;
        lines.append(line);
    }
    return lines;
}

QStringList readContents(const QString& path)
{
    const DxfDrawingReader::Result read = DxfDrawingReader::read(path);
    if (!read.drawing)
        return {QStringLiteral("unreadable: ") + read.error};
    return contents(*read.drawing);
}

QStringList runArguments(const QString& database, const QString& out)
{
    return {"run",
            "--settings",
            example("settings/example.cfa"),
            "--database",
            database,
            "--standard",
            "IEC",
            "--network-dir",
            example("network"),
            "--out",
            out};
}

} // namespace

void tst_import_run::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_sqlite = m_dir.filePath(QStringLiteral("example.db"));
    const QString loaded = loadStandard(m_sqlite);
    QVERIFY2(loaded.isEmpty(), qPrintable(loaded));
}

void tst_import_run::cleanupTestCase()
{
    ImportCli::dropDatabase(m_postgres);
}

QString tst_import_run::runSheet(const QString& database, const QString& name)
{
    const QString out = m_dir.filePath(name);
    const ProgramRun::Result run = runProgram(
        runArguments(database, out) + QStringList{"--sheet", example("sheets/example.xlsx")});
    if (run.exitCode != 0)
        return {};
    return out;
}

void tst_import_run::sheetRunOnSqlite()
{
    const QString out = runSheet(m_sqlite, QStringLiteral("sqlite.dxf"));
    QVERIFY(!out.isEmpty());
    const QStringList lines = readContents(out);
    // The example's 23 symbols, each with its block, besides pages, frames and page components.
    QVERIFY2(lines.filter(QStringLiteral(" [1201] ")).size() == 2, qPrintable(lines.join('\n')));
    QVERIFY(lines.filter(QStringLiteral(" [1014] ")).size() == 1);
    QVERIFY(lines.filter(QStringLiteral("page ")).size() >= 3);
}

void tst_import_run::sameDrawingOnPostgres()
{
    const QString url = qEnvironmentVariable("KV_TEST_PGURL");
    if (url.isEmpty())
        QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server to test against (scripts/test.sh "
              "starts one)");
    // Loaded as the server's user; the run connects as the role that may only read.
    m_postgres = ImportCli::createReaderDatabase(url, QStringLiteral("kv_import_run_"));
    QVERIFY2(m_postgres.error.isEmpty(), qPrintable(m_postgres.error));

    const QString sqliteOut = runSheet(m_sqlite, QStringLiteral("sqlite.dxf"));
    const QString postgresOut = runSheet(m_postgres.readerUrl, QStringLiteral("postgres.dxf"));
    QVERIFY(!sqliteOut.isEmpty());
    QVERIFY(!postgresOut.isEmpty());
    const QStringList fromSqlite = readContents(sqliteOut);
    QVERIFY(fromSqlite.size() > 20);
    QCOMPARE(readContents(postgresOut), fromSqlite);
}

// The import verb's tree, run with --tree, places exactly what run --sheet places.
void tst_import_run::sameDrawingFromTheImportedTree()
{
    const QString tree = m_dir.filePath(QStringLiteral("imported.json"));
    const ProgramRun::Result imported =
        runProgram({"import", "--settings", example("settings/example.cfa"), "--sheet",
                    example("sheets/example.xlsx"), "--database", m_sqlite});
    QVERIFY2(imported.exitCode == 0, qPrintable(imported.errText()));
    QFile file(tree);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(imported.out);
    file.close();

    const QString fromTree = m_dir.filePath(QStringLiteral("tree.dxf"));
    const ProgramRun::Result run =
        runProgram(runArguments(m_sqlite, fromTree) + QStringList{"--tree", tree});
    QVERIFY2(run.exitCode == 0, qPrintable(run.errText()));
    const QString fromSheet = runSheet(m_sqlite, QStringLiteral("sheet.dxf"));
    QVERIFY(!fromSheet.isEmpty());
    QCOMPARE(readContents(fromTree), readContents(fromSheet));
}

QTEST_GUILESS_MAIN(tst_import_run)
#include "tst_import_run.moc"
