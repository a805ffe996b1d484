// The "kvinsertauto import" verb, run as a program: the example imported on SQLite and on
// PostgreSQL gives the expected tree (the same bytes on both), the trace and the language
// options, and bad input ending in one line that names the file, with exit status 2.
#include "ImportCliSupport.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace ImportCli;

class tst_import_cli : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void exampleTree_data();
    void exampleTree();
    void traceAndLanguage();
    void badInput_data();
    void badInput();

private:
    QString database(const QString& kind);

    QTemporaryDir m_dir;
    QString m_sqlite;
    ImportCli::ReaderDatabase m_postgres;
};

namespace {

QString workbook(const QString& name)
{
    return QStringLiteral(KV_TEST_DATA_DIR "/xlsx/") + name;
}

QByteArray expectedExampleTree()
{
    QFile file(QStringLiteral(KV_SOURCE_DIR "/tests/import/tst_import_example.json"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList importArgs(const QString& settings, const QString& sheet, const QString& database)
{
    return {QStringLiteral("import"),
            QStringLiteral("--settings"),
            settings,
            QStringLiteral("--sheet"),
            sheet,
            QStringLiteral("--database"),
            database};
}

// A settings file as the settings dialog writes it (CR LF between lines).
bool writeSettings(const QString& path, const QStringList& fieldLines)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QStringList lines =
        QStringList{"GAP_BEFORE", "GAP_AFTER", "40,200", "10", "1", "380", "0"} + fieldLines;
    return file.write(lines.join(QStringLiteral("\r\n")).toLatin1()) > 0;
}

} // namespace

void tst_import_cli::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_sqlite = m_dir.filePath(QStringLiteral("example.db"));
    const QString loaded = loadStandard(m_sqlite);
    QVERIFY2(loaded.isEmpty(), qPrintable(loaded));

    const QString url = qEnvironmentVariable("KV_TEST_PGURL");
    if (url.isEmpty())
        return;
    // Loaded as the server's user; the import connects as the role that may only read.
    m_postgres = ImportCli::createReaderDatabase(url, QStringLiteral("kv_import_cli_"));
    QVERIFY2(m_postgres.error.isEmpty(), qPrintable(m_postgres.error));
}

void tst_import_cli::cleanupTestCase()
{
    ImportCli::dropDatabase(m_postgres);
}

QString tst_import_cli::database(const QString& kind)
{
    return kind == u"sqlite" ? m_sqlite : m_postgres.readerUrl;
}

void tst_import_cli::exampleTree_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QStringList>("extra");
    QTest::newRow("sqlite") << "sqlite" << QStringList{};
    QTest::newRow("sqlite, standard named") << "sqlite" << QStringList{"--standard", "IEC"};
    QTest::newRow("sqlite, language named") << "sqlite" << QStringList{"--language", "1"};
    QTest::newRow("postgresql") << "postgresql" << QStringList{};
}

void tst_import_cli::exampleTree()
{
    QFETCH(QString, kind);
    QFETCH(QStringList, extra);
    if (database(kind).isEmpty())
        QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server for this row (scripts/test.sh "
              "starts one)");
    const ProgramRun::Result run =
        runProgram(importArgs(example("settings/example.cfa"), example("sheets/example.xlsx"),
                              database(kind)) +
                   extra);
    QVERIFY2(run.exitCode == 0, qPrintable(run.errText()));
    QCOMPARE(run.errText(), QString());
    QCOMPARE(run.out, expectedExampleTree());
}

void tst_import_cli::traceAndLanguage()
{
    const QString trace = m_dir.filePath(QStringLiteral("trace.jsonl"));
    const ProgramRun::Result run = runProgram(
        importArgs(example("settings/example.cfa"), example("sheets/example.xlsx"), m_sqlite) +
        QStringList{"--language", "2", "--trace", trace});
    QVERIFY2(run.exitCode == 0, qPrintable(run.errText()));
    // The Portuguese descriptions of the example standard.
    QVERIFY2(run.out.contains("\"description\": \"Minidisjuntor 3P C32 A\""), run.out.constData());
    QVERIFY(!run.out.contains("Miniature circuit breaker"));

    QFile file(trace);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().split('\n');
    QVERIFY(lines.size() > 3);
    QVERIFY2(lines.at(0).startsWith("{\"op\":\"service\",\"call\":\"GetWorkingFolder\""),
             lines.at(0).constData());
    QVERIFY2(lines.at(1).startsWith("{\"op\":\"fileDialog\",\"mode\":2,"), lines.at(1).constData());
    QVERIFY(lines.at(1).contains("\"result\":5100,\"path\":\"" KV_SOURCE_DIR
                                 "/examples/sheets/example.xlsx\"}"));
    QCOMPARE(lines.at(2),
             QByteArray(R"({"op":"query","sql":"SELECT DIC_FIELD FROM BDDIC","bind":{}})"));
    int searches = 0;
    for (const QByteArray& line : lines) {
        if (line.startsWith(R"({"op":"query","sql":"SELECT MENU_KEY, MENU_DESCR FROM BDMENUS)")) {
            QVERIFY(line.endsWith(R"(ORDER BY MENU_KEY","bind":{"lang":"2"}})"));
            ++searches;
        }
    }
    QCOMPARE(searches, 18);
}

void tst_import_cli::badInput_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<QString>("message");

    const QString cfa = example("settings/example.cfa");
    const QString xlsx = example("sheets/example.xlsx");
    const QString db = QStringLiteral("@DB@");
    QTest::newRow("no arguments") << QStringList{"import"}
                                  << "kvinsertauto import: --settings is required (see "
                                     "kvinsertauto --help)";
    QTest::newRow("no database") << QStringList{"import", "--settings", cfa, "--sheet", xlsx}
                                 << "kvinsertauto import: --database is required (see "
                                    "kvinsertauto --help)";
    QTest::newRow("unknown argument")
        << importArgs(cfa, xlsx, db) + QStringList{"--tree", "t.json"}
        << "kvinsertauto import: unknown argument --tree (see kvinsertauto --help)";
    QTest::newRow("value missing") << importArgs(cfa, xlsx, db) + QStringList{"--language"}
                                   << "kvinsertauto import: --language needs a value (see "
                                      "kvinsertauto --help)";
    QTest::newRow("no settings file") << importArgs("@TMP@/none.cfa", xlsx, db)
                                      << "kvinsertauto import: @TMP@/none.cfa: no such file";
    QTest::newRow("settings is a folder")
        << importArgs("@TMP@", xlsx, db) << "kvinsertauto import: @TMP@: is a folder, not a file";
    QTest::newRow("no workbook") << importArgs(cfa, "@TMP@/none.xlsx", db)
                                 << "kvinsertauto import: @TMP@/none.xlsx: no such file";
    QTest::newRow("not a workbook")
        << importArgs(cfa, workbook("hostile-not-a-zip.xlsx"), db)
        << "kvinsertauto import: The spreadsheet \"" + workbook("hostile-not-a-zip.xlsx") +
               "\" cannot be read: ";
    QTest::newRow("no Sheet1") << importArgs(cfa, workbook("import-no-sheet1.xlsx"), db)
                               << "kvinsertauto import: " + workbook("import-no-sheet1.xlsx") +
                                      ": no worksheet \"Sheet1\"";
    QTest::newRow("no rows") << importArgs(cfa, workbook("import-header-only.xlsx"), db)
                             << "kvinsertauto import: " + workbook("import-header-only.xlsx") +
                                    ": no rows below the column titles of row 11 of \"Sheet1\"";
    QTest::newRow("column not in the sheet")
        << importArgs("@TMP@/other-column.cfa", xlsx, db)
        << "kvinsertauto import: " + xlsx + ": Error loading data from spreadsheet. QUANTITY";
    QTest::newRow("no field lines")
        << importArgs("@TMP@/no-fields.cfa", xlsx, db)
        << "kvinsertauto import: @TMP@/no-fields.cfa: no field lines: Error loading data from "
           "spreadsheet.";
    QTest::newRow("unknown search property")
        << importArgs("@TMP@/unknown-property.cfa", xlsx, db)
        << "kvinsertauto import: @TMP@/unknown-property.cfa: Invalid configuration file. The "
           "following properties do not exist: WEIGHT, Colour";
    QTest::newRow("no database file") << importArgs(cfa, xlsx, "@TMP@/none.db")
                                      << "kvinsertauto import: @TMP@/none.db: database file not "
                                         "found";
    QTest::newRow("database is not one")
        << importArgs(cfa, xlsx, cfa)
        << "kvinsertauto import: " + cfa + ": cannot open the database: ";
    QTest::newRow("trace is a folder")
        << importArgs(cfa, xlsx, db) + QStringList{"--trace", "@TMP@"}
        << "kvinsertauto import: @TMP@: is a folder, not a file";
}

void tst_import_cli::badInput()
{
    QFETCH(QStringList, args);
    QFETCH(QString, message);
    QVERIFY(
        writeSettings(m_dir.filePath("other-column.cfa"), {"ITEM;ITEM; ;N;", "QUANTITY; ; ;N;"}));
    QVERIFY(writeSettings(m_dir.filePath("no-fields.cfa"), {}));
    QVERIFY(writeSettings(m_dir.filePath("unknown-property.cfa"),
                          {"ITEM;ITEM; ;N;", "TYPE; ;WEIGHT;N;", "MANUFACTURER; ;=Colour;N;"}));
    for (QString& arg : args) {
        arg.replace(QStringLiteral("@TMP@"), m_dir.path());
        arg.replace(QStringLiteral("@DB@"), m_sqlite);
    }
    message.replace(QStringLiteral("@TMP@"), m_dir.path());

    const ProgramRun::Result run = runProgram(args);
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.out, QByteArray());
    const QString err = run.errText();
    QVERIFY2(err.endsWith(u'\n') && err.count(u'\n') == 1, qPrintable(err));
    QVERIFY2(err.startsWith(message), qPrintable(err));
}

QTEST_GUILESS_MAIN(tst_import_cli)
#include "tst_import_cli.moc"
