// "kvinsertauto run --sheet": the example spreadsheet imported and run in one command, on the
// example standard in SQLite and in PostgreSQL. Both drawings, read back with the reference
// host's DXF reader, hold the same pages and the same block references with the same
// attribute values; and the run from the spreadsheet places what the run from the imported
// tree (the import verb's output) places.
#include "DxfDrawingReader.h"

#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QUuid>

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
    QString m_postgresName;
    QString m_readerRole;
};

namespace {

struct Run
{
    int exitCode = -1;
    QByteArray out;
    QString err;
};

Run runProgram(const QStringList& args)
{
    QProcess process;
    process.start(QStringLiteral(KV_CLI_PROGRAM), args);
    Run run;
    if (!process.waitForFinished(180000)) {
        process.kill();
        process.waitForFinished();
        run.err = QStringLiteral("the program did not finish");
        return run;
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = process.readAllStandardOutput();
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

QString example(const QString& relative)
{
    return QStringLiteral(KV_SOURCE_DIR "/examples/") + relative;
}

// `readerRole`: on PostgreSQL, the role that may only read the standard (see load-standard).
QString loadStandard(const QString& database, const QString& readerRole = QString())
{
    QStringList args = {"load-standard", "--database", database};
    if (!readerRole.isEmpty())
        args += {"--reader-role", readerRole};
    const Run run = runProgram(
        args + QStringList{example("standard/schema.sql"), example("standard/data.sql")});
    return run.exitCode == 0 ? QString() : run.err;
}

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
    if (m_postgresName.isEmpty() || !QSqlDatabase::contains("admin"))
        return;
    {
        QSqlDatabase admin = QSqlDatabase::database("admin");
        QSqlQuery(admin).exec(QStringLiteral("DROP DATABASE IF EXISTS %1").arg(m_postgresName));
        QSqlQuery(admin).exec(QStringLiteral("DROP ROLE IF EXISTS %1").arg(m_readerRole));
        admin.close();
    }
    QSqlDatabase::removeDatabase("admin");
}

QString tst_import_run::runSheet(const QString& database, const QString& name)
{
    const QString out = m_dir.filePath(name);
    const Run run = runProgram(runArguments(database, out) +
                               QStringList{"--sheet", example("sheets/example.xlsx")});
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
    const QUrl server(url);
    m_postgresName =
        QStringLiteral("kv_import_run_") + QUuid::createUuid().toString(QUuid::Id128).left(12);
    {
        QSqlDatabase admin = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), "admin");
        admin.setHostName(server.host());
        admin.setPort(server.port(5432));
        admin.setUserName(server.userName());
        admin.setPassword(server.password());
        admin.setDatabaseName(server.path().mid(1));
        QVERIFY2(admin.open(), qPrintable(admin.lastError().text()));
        QSqlQuery create(admin);
        QVERIFY2(create.exec(QStringLiteral("CREATE DATABASE %1").arg(m_postgresName)),
                 qPrintable(create.lastError().text()));
    }
    QUrl own(server);
    own.setPath(u'/' + m_postgresName);
    // Loaded as the server's user; the run connects as the role that may only read.
    m_readerRole = m_postgresName + QStringLiteral("_reader");
    const QString loaded = loadStandard(own.toString(), m_readerRole);
    QVERIFY2(loaded.isEmpty(), qPrintable(loaded));
    own.setUserName(m_readerRole);
    own.setPassword({});

    const QString sqliteOut = runSheet(m_sqlite, QStringLiteral("sqlite.dxf"));
    const QString postgresOut = runSheet(own.toString(), QStringLiteral("postgres.dxf"));
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
    const Run imported =
        runProgram({"import", "--settings", example("settings/example.cfa"), "--sheet",
                    example("sheets/example.xlsx"), "--database", m_sqlite});
    QVERIFY2(imported.exitCode == 0, qPrintable(imported.err));
    QFile file(tree);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(imported.out);
    file.close();

    const QString fromTree = m_dir.filePath(QStringLiteral("tree.dxf"));
    const Run run = runProgram(runArguments(m_sqlite, fromTree) + QStringList{"--tree", tree});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    const QString fromSheet = runSheet(m_sqlite, QStringLiteral("sheet.dxf"));
    QVERIFY(!fromSheet.isEmpty());
    QCOMPARE(readContents(fromTree), readContents(fromSheet));
}

QTEST_GUILESS_MAIN(tst_import_run)
#include "tst_import_run.moc"
