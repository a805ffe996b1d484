// Tests of the command-line verb "kvinsertauto load-standard": exit statuses, the one-line
// messages on errors, and that a refused load writes nothing.

#include "../common/ProgramRun.h"
#include "LoaderTestSupport.h"

#include <QRegularExpression>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

namespace {

using Run = ProgramRun::Result;

// A run of "kvinsertauto load-standard" with `args`.
Run runProgram(const QStringList& args)
{
    ProgramRun::Options options;
    options.timeoutMs = 60000;
    return ProgramRun::run(QStringLiteral(KV_CLI_PROGRAM),
                           QStringList{QStringLiteral("load-standard")} + args, options);
}

int insertsInto(const QString& table)
{
    QFile file(LoaderTest::dataSql());
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QString text = QString::fromUtf8(file.readAll());
    return int(text.count(QStringLiteral("\nINSERT INTO %1 ").arg(table)));
}

} // namespace

class tst_LoaderCli final : public QObject
{
    Q_OBJECT

private slots:
    void loadsTheExample();
    void refusedLoads_data();
    void refusedLoads();
    void badArguments_data();
    void badArguments();
    void postgresUrl();
};

void tst_LoaderCli::loadsTheExample()
{
    QTemporaryDir dir;
    const QString database = dir.filePath(QStringLiteral("example.db"));
    const QStringList scripts = {LoaderTest::schemaSql(), LoaderTest::dataSql()};

    Run run = runProgram(QStringList{QStringLiteral("--database"), database} + scripts);
    QVERIFY2(run.exitCode == 0, qPrintable(run.errText()));
    QCOMPARE(run.errText(), QString());
    const QString out = run.outText();
    QVERIFY2(out.startsWith(QLatin1String("Loaded ")), qPrintable(out));
    QVERIFY2(out.contains(QStringLiteral("  BDKV: %1 rows\n").arg(insertsInto("BDKV"))),
             qPrintable(out));
    QVERIFY2(out.contains(QLatin1String("kv_custom_properties_tag_value")), qPrintable(out));

    // Loading again needs --drop; with it the standard is replaced, not doubled.
    run = runProgram(QStringList{QStringLiteral("--database"), database} + scripts);
    QCOMPARE(run.exitCode, 2);
    run = runProgram(QStringList{QStringLiteral("--drop"), QStringLiteral("--database"), database} +
                     scripts);
    QVERIFY2(run.exitCode == 0, qPrintable(run.errText()));
    QVERIFY(run.outText().contains(QStringLiteral("  BDKV: %1 rows\n").arg(insertsInto("BDKV"))));
}

void tst_LoaderCli::refusedLoads_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QString>("message"); // after "PATH:"

    QTest::newRow("syntax error on line 3")
        << QByteArray("-- extra rows\nINSERT INTO BDDIC (DIC_FIELD, DIC_DESCR) VALUES ('A', 'a');\n"
                      "INSERT INTO BDDIC (DIC_FIELD DIC_DESCR) VALUES ('B', 'b');\n")
        << QStringLiteral("^3: .*syntax error");
    QTest::newRow("cycle")
        << QByteArray("INSERT INTO BDVINCL (VL_KEY_A, VL_KEY_B, VL_QTDE) VALUES ('1501', '1602', "
                      "'1');\n")
        << QStringLiteral("^ the associations in BDVINCL form a cycle: 1501 -> 1602 -> 1501 ");
    QTest::newRow("unterminated text")
        << QByteArray("INSERT INTO BDDIC (DIC_FIELD, DIC_DESCR) VALUES ('A, 'a');\n")
        << QStringLiteral("^1: unterminated quoted text$");
}

void tst_LoaderCli::refusedLoads()
{
    QFETCH(QByteArray, script);
    QFETCH(QString, message);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("extra.sql"));
    QVERIFY(LoaderTest::writeFile(path, script));
    const QString database = dir.filePath(QStringLiteral("new.db"));

    const Run run = runProgram({QStringLiteral("--database"), database, LoaderTest::schemaSql(),
                                LoaderTest::dataSql(), path});
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.out, QByteArray());
    // One line, naming the file first.
    const QString err = run.errText();
    QVERIFY2(err.endsWith(u'\n') && err.count(u'\n') == 1, qPrintable(err));
    QVERIFY2(err.startsWith(path + u':'), qPrintable(err));
    const QString rest = err.mid(path.size() + 1).chopped(1);
    QVERIFY2(QRegularExpression(message).match(rest).hasMatch(), qPrintable(rest));
    QVERIFY(!QFile::exists(database));
}

void tst_LoaderCli::badArguments_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("stream"); // where the text goes
    QTest::addColumn<QString>("text");

    QTest::newRow("nothing") << QStringList{} << 2 << "err"
                             << "usage: kvinsertauto load-standard";
    QTest::newRow("no files") << QStringList{"--database", "x.db"} << 2 << "err"
                              << "usage: kvinsertauto load-standard";
    QTest::newRow("no database") << QStringList{"a.sql"} << 2 << "err"
                                 << "usage: kvinsertauto load-standard";
    QTest::newRow("database without value") << QStringList{"a.sql", "--database"} << 2 << "err"
                                            << "--database needs a value";
    QTest::newRow("unknown option")
        << QStringList{"--database", "x.db", "--fast", "a.sql"} << 2 << "err"
        << "unknown option --fast";
    QTest::newRow("help") << QStringList{"--help"} << 0 << "out"
                          << "usage: kvinsertauto load-standard --database DB [--drop]";
    QTest::newRow("missing file") << QStringList{"--database", "@TMP@/x.db", "@TMP@/none.sql"} << 2
                                  << "err"
                                  << "@TMP@/none.sql: cannot be read: ";
    QTest::newRow("bad url") << QStringList{"--database", "postgresql:///", "a.sql"} << 2 << "err"
                             << "not a PostgreSQL URL";
}

void tst_LoaderCli::badArguments()
{
    QFETCH(QStringList, args);
    QFETCH(int, exitCode);
    QFETCH(QString, stream);
    QFETCH(QString, text);
    QTemporaryDir dir;
    for (QString& arg : args)
        arg.replace(QLatin1String("@TMP@"), dir.path());
    text.replace(QLatin1String("@TMP@"), dir.path());

    const Run run = runProgram(args);
    QCOMPARE(run.exitCode, exitCode);
    const QString written = stream == u"out" ? run.outText() : run.errText();
    QVERIFY2(written.contains(text), qPrintable(written));
    QVERIFY(!QFile::exists(dir.filePath(QStringLiteral("x.db"))));
}

void tst_LoaderCli::postgresUrl()
{
    if (LoaderTest::postgresUrl().isEmpty())
        QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server to run this test against");
    LoaderTest::ScratchDatabase scratch(LoaderTest::ScratchDatabase::Kind::Postgres);
    QVERIFY2(scratch.isReady(), qPrintable(scratch.error()));
    QSqlQuery query(scratch.db());
    QVERIFY(query.exec(QStringLiteral("SELECT current_schema()")) && query.next());
    QUrl url(LoaderTest::postgresUrl());
    url.setQuery(QStringLiteral("options=-csearch_path%3D") + query.value(0).toString());

    const Run run = runProgram({QStringLiteral("--database"), url.toString(),
                                LoaderTest::schemaSql(), LoaderTest::dataSql()});
    QVERIFY2(run.exitCode == 0, qPrintable(run.errText()));
    QCOMPARE(run.errText(), QString()); // no notices from the server
    QVERIFY(run.outText().contains(QLatin1String("kv_custom_properties_value_trgm")));
    QCOMPARE(scratch.rowCount(QStringLiteral("BDKV")), insertsInto("BDKV"));
}

QTEST_GUILESS_MAIN(tst_LoaderCli)
#include "tst_loader_cli.moc"
