#include "../common/ProgramRun.h"
#include "DxfDrawingReader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QScopeGuard>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace RefHost;

namespace {

const QString kProgram = QStringLiteral(KV_BINARY_DIR "/refhost/cli/kvinsertauto");
const QString kExamples = QStringLiteral(KV_SOURCE_DIR "/examples");

using Outcome = ProgramRun::Result;

Outcome runProgram(const QStringList& args)
{
    ProgramRun::Options options;
    options.timeoutMs = 60000;
    return ProgramRun::run(kProgram, args, options);
}

// The lines of the error stream that are the program's own: Qt's note about a missing
// XDG_RUNTIME_DIR (written when the program starts its GUI application for pictures on a
// machine without a session) belongs to the environment.
QStringList ownLines(const QString& err)
{
    QStringList lines;
    for (const QString& line : err.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        if (!line.startsWith(QStringLiteral("QStandardPaths: ")))
            lines.append(line);
    }
    return lines;
}

// The error lines, without the progress lines.
QStringList errorLines(const QString& err)
{
    QStringList lines;
    for (const QString& line : ownLines(err)) {
        if (!line.startsWith(QStringLiteral("progress: ")))
            lines.append(line);
    }
    return lines;
}

} // namespace

class TestRefHostRun : public QObject
{
    Q_OBJECT

private:
    QStringList baseArguments(const QString& out) const
    {
        return {QStringLiteral("run"),
                QStringLiteral("--settings"),
                kExamples + QStringLiteral("/settings/example.cfa"),
                QStringLiteral("--tree"),
                kExamples + QStringLiteral("/tree/example-tree.json"),
                QStringLiteral("--database"),
                m_database,
                QStringLiteral("--standard"),
                QStringLiteral("IEC"),
                QStringLiteral("--network-dir"),
                kExamples + QStringLiteral("/network"),
                QStringLiteral("--out"),
                out};
    }

private slots:
    void initTestCase()
    {
        QVERIFY2(QFile::exists(kProgram), qPrintable(kProgram));
        QVERIFY(m_dir.isValid());
        m_database = m_dir.filePath(QStringLiteral("example.db"));
        const Outcome loaded =
            runProgram({QStringLiteral("load-standard"), QStringLiteral("--database"), m_database,
                        kExamples + QStringLiteral("/standard/schema.sql"),
                        kExamples + QStringLiteral("/standard/data.sql")});
        QVERIFY2(loaded.exitCode == 0, qPrintable(loaded.errText()));
    }

    void runsTheExample()
    {
        QTemporaryDir dir;
        const QString out = dir.filePath(QStringLiteral("example.dxf"));
        const QString trace = dir.filePath(QStringLiteral("trace.jsonl"));
        const QString pages = dir.filePath(QStringLiteral("pages"));
        const Outcome run = runProgram(baseArguments(out) << QStringLiteral("--trace") << trace
                                                          << QStringLiteral("--pages") << pages);
        QVERIFY2(run.exitCode == 0, qPrintable(run.errText()));
        QCOMPARE(errorLines(run.errText()), QStringList());

        const DxfDrawingReader::Result read = DxfDrawingReader::read(out);
        QVERIFY2(read.drawing, qPrintable(read.error));
        const Drawing& drawing = *read.drawing;
        const QStringList layers = drawing.pageLayers();
        QVERIFY(layers.size() >= 2);
        QCOMPARE(layers.first(), QStringLiteral("PAGE$1"));
        QVERIFY(!drawing.references().isEmpty());
        QCOMPARE(drawing.references().first().layer, QStringLiteral("PAGE$1"));
        QCOMPARE(run.outText(), QStringLiteral("\n\nAutomatic insertion completed\n"
                                               "Wrote %1: %2 pages, %3 block references\n"
                                               "Wrote %2 page pictures to %4\n")
                                    .arg(out)
                                    .arg(layers.size())
                                    .arg(drawing.references().size())
                                    .arg(pages));

        // Every page numbered by the page macros, every symbol of the tree placed with its key.
        for (const BlockReference& reference : drawing.references()) {
            for (const AttributeValue& attribute : reference.attributes) {
                if (attribute.tag == u"PAGE_COUNT")
                    QCOMPARE(attribute.value, QString::number(layers.size()));
            }
        }
        QSet<QString> keys;
        for (const BlockReference& reference : drawing.references())
            keys.insert(reference.componentKey);
        QVERIFY(keys.contains(QStringLiteral("1014")));

        QStringList pictures = QDir(pages).entryList(QDir::Files, QDir::Name);
        QStringList expected;
        for (QString layer : layers)
            expected.append(layer.replace(QLatin1Char('$'), QLatin1Char('-')) +
                            QStringLiteral(".png"));
        expected.sort();
        QCOMPARE(pictures, expected);

        QFile traceFile(trace);
        QVERIFY(traceFile.open(QIODevice::ReadOnly));
        const QList<QByteArray> lines = traceFile.readAll().trimmed().split('\n');
        QVERIFY(lines.size() > 10);
        for (const QByteArray& line : lines)
            QVERIFY2(QJsonDocument::fromJson(line).isObject(), line.constData());
        QCOMPARE(lines.at(lines.size() - 2), QByteArray(R"({"op":"print","text":"\n\n"})"));
        QCOMPARE(lines.last(),
                 QByteArray(R"({"op":"print","text":"Automatic insertion completed"})"));

        // Nothing else is left in the output folder (no temporary files).
        QStringList written =
            QDir(dir.path())
                .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name);
        QCOMPARE(written, (QStringList{"example.dxf", "pages", "trace.jsonl"}));
    }

    void continuesAGivenDrawing()
    {
        QTemporaryDir dir;
        const QString first = dir.filePath(QStringLiteral("first.dxf"));
        const QString second = dir.filePath(QStringLiteral("second.dxf"));
        const Outcome run1 = runProgram(baseArguments(first));
        QVERIFY2(run1.exitCode == 0, qPrintable(run1.errText()));
        const Outcome run2 =
            runProgram(baseArguments(second) << QStringLiteral("--drawing") << first);
        QVERIFY2(run2.exitCode == 0, qPrintable(run2.errText()));

        const DxfDrawingReader::Result a = DxfDrawingReader::read(first);
        const DxfDrawingReader::Result b = DxfDrawingReader::read(second);
        QVERIFY2(a.drawing && b.drawing, qPrintable(a.error + b.error));
        const QList<BlockReference>& before = a.drawing->references();
        const QList<BlockReference>& after = b.drawing->references();
        QVERIFY(after.size() > before.size());
        QVERIFY(b.drawing->pageLayers().size() > a.drawing->pageLayers().size());
        // The earlier references are still there, where they were; the new run starts on the
        // page that was current.
        for (qsizetype i = 0; i < before.size(); ++i) {
            QCOMPARE(after.at(i).blockName, before.at(i).blockName);
            QCOMPARE(after.at(i).layer, before.at(i).layer);
            QCOMPARE(after.at(i).x, before.at(i).x);
            QCOMPARE(after.at(i).y, before.at(i).y);
        }
        QCOMPARE(after.at(before.size()).layer, a.drawing->currentLayer());
    }

    void importsASpreadsheet()
    {
        QTemporaryDir dir;
        const QString out = dir.filePath(QStringLiteral("sheet.dxf"));
        const QString trace = dir.filePath(QStringLiteral("trace.jsonl"));
        QStringList args = baseArguments(out) << QStringLiteral("--trace") << trace;
        const qsizetype tree = args.indexOf(QStringLiteral("--tree"));
        args[tree] = QStringLiteral("--sheet");
        args[tree + 1] = kExamples + QStringLiteral("/sheets/example.xlsx");
        const Outcome run = runProgram(args);
        QVERIFY2(run.exitCode == 0, qPrintable(run.errText()));
        const DxfDrawingReader::Result read = DxfDrawingReader::read(out);
        QVERIFY2(read.drawing, qPrintable(read.error));
        QVERIFY(!read.drawing->references().isEmpty());

        // The import's conversation with the host is in the trace: the file dialog answered
        // the spreadsheet.
        QFile traceFile(trace);
        QVERIFY(traceFile.open(QIODevice::ReadOnly));
        bool dialog = false;
        for (const QByteArray& line : traceFile.readAll().split('\n')) {
            const QJsonObject object = QJsonDocument::fromJson(line).object();
            if (object.value(QStringLiteral("op")).toString() == u"fileDialog") {
                QCOMPARE(object.value(QStringLiteral("result")).toInt(), 5100);
                QCOMPARE(object.value(QStringLiteral("path")).toString(), args[tree + 1]);
                dialog = true;
                break;
            }
        }
        QVERIFY(dialog);
    }

    // The same job on the same standard loaded into PostgreSQL places the same blocks with the
    // same attribute values.
    void sameDrawingOnPostgres()
    {
        const QString server = qEnvironmentVariable("KV_TEST_PGURL");
        if (server.isEmpty())
            QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server to test against "
                  "(scripts/test.sh starts a throw-away one)");
        // A schema of this test's own, created and dropped through a connection of its own.
        const QString schema =
            QStringLiteral("kvref_run_%1").arg(QCoreApplication::applicationPid());
        const QUrl serverUrl(server);
        {
            QSqlDatabase admin = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), schema);
            admin.setHostName(serverUrl.host());
            admin.setPort(serverUrl.port(5432));
            admin.setDatabaseName(serverUrl.path().mid(1));
            admin.setUserName(serverUrl.userName());
            admin.setPassword(serverUrl.password());
            QVERIFY2(admin.open(), qPrintable(admin.lastError().text()));
            QSqlQuery create(admin);
            create.exec(QStringLiteral("SET client_min_messages = warning"));
            QVERIFY2(create.exec(QStringLiteral("CREATE SCHEMA %1").arg(schema)),
                     qPrintable(create.lastError().text()));
        }
        const QString role = schema + QStringLiteral("_reader");
        auto dropSchema = qScopeGuard([&schema, &role] {
            {
                QSqlQuery drop(QSqlDatabase::database(schema));
                drop.exec(QStringLiteral("DROP SCHEMA %1 CASCADE").arg(schema));
                drop.exec(QStringLiteral("DROP OWNED BY %1").arg(role));
                drop.exec(QStringLiteral("DROP ROLE IF EXISTS %1").arg(role));
            }
            QSqlDatabase::database(schema).close();
            QSqlDatabase::removeDatabase(schema);
        });
        QUrl url(server);
        url.setQuery(QStringLiteral("options=-csearch_path%3D") + schema);
        const QString database = url.toString(QUrl::FullyEncoded);
        const Outcome loaded =
            runProgram({QStringLiteral("load-standard"), QStringLiteral("--database"), database,
                        QStringLiteral("--reader-role"), role,
                        kExamples + QStringLiteral("/standard/schema.sql"),
                        kExamples + QStringLiteral("/standard/data.sql")});
        QVERIFY2(loaded.exitCode == 0, qPrintable(loaded.errText()));
        // The run connects as the role that may only read.
        QUrl reader(database);
        reader.setUserName(role);
        reader.setPassword({});

        QTemporaryDir dir;
        const QString onSqlite = dir.filePath(QStringLiteral("sqlite.dxf"));
        const QString onPostgres = dir.filePath(QStringLiteral("postgres.dxf"));
        const Outcome a = runProgram(baseArguments(onSqlite));
        QVERIFY2(a.exitCode == 0, qPrintable(a.errText()));
        QStringList args = baseArguments(onPostgres);
        args[args.indexOf(QStringLiteral("--database")) + 1] = reader.toString(QUrl::FullyEncoded);
        const Outcome b = runProgram(args);
        QVERIFY2(b.exitCode == 0, qPrintable(b.errText()));
        QCOMPARE(errorLines(b.errText()), errorLines(a.errText()));
        QCOMPARE(b.outText(), a.outText().replace(onSqlite, onPostgres));

        const DxfDrawingReader::Result x = DxfDrawingReader::read(onSqlite);
        const DxfDrawingReader::Result y = DxfDrawingReader::read(onPostgres);
        QVERIFY2(x.drawing && y.drawing, qPrintable(x.error + y.error));
        QCOMPARE(y.drawing->pageLayers(), x.drawing->pageLayers());
        const QList<BlockReference>& left = x.drawing->references();
        const QList<BlockReference>& right = y.drawing->references();
        QCOMPARE(right.size(), left.size());
        for (qsizetype i = 0; i < left.size(); ++i) {
            QCOMPARE(right.at(i).blockName, left.at(i).blockName);
            QCOMPARE(right.at(i).layer, left.at(i).layer);
            QCOMPARE(right.at(i).x, left.at(i).x);
            QCOMPARE(right.at(i).y, left.at(i).y);
            QCOMPARE(right.at(i).componentKey, left.at(i).componentKey);
            QCOMPARE(right.at(i).associated, left.at(i).associated);
            QCOMPARE(right.at(i).attributes.size(), left.at(i).attributes.size());
            for (qsizetype k = 0; k < left.at(i).attributes.size(); ++k) {
                QCOMPARE(right.at(i).attributes.at(k).tag, left.at(i).attributes.at(k).tag);
                QCOMPARE(right.at(i).attributes.at(k).value, left.at(i).attributes.at(k).value);
            }
        }
    }

    void badInput_data()
    {
        // The option to change; "-" removes --out, "sheet" gives --sheet in place of --tree.
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("value"); // %1: the temporary folder
        QTest::addColumn<QString>("message");
        QTest::newRow("missing out") << "-"
                                     << ""
                                     << "--out is required";
        QTest::newRow("unknown option") << "--colour"
                                        << "red"
                                        << "unknown argument --colour";
        QTest::newRow("missing settings") << "--settings"
                                          << "%1/none.cfa"
                                          << "%1/none.cfa: no such file";
        QTest::newRow("tree not json") << "--tree"
                                       << "%1/bad.json"
                                       << "%1/bad.json";
        QTest::newRow("missing database") << "--database"
                                          << "%1/none.db"
                                          << "%1/none.db: database file not found";
        QTest::newRow("database not sqlite") << "--database"
                                             << "%1/bad.json"
                                             << "%1/bad.json: cannot open the database";
        QTest::newRow("drawing not dxf") << "--drawing"
                                         << "%1/bad.json"
                                         << "%1/bad.json";
        QTest::newRow("missing drawing") << "--drawing"
                                         << "%1/none.dxf"
                                         << "%1/none.dxf: no such file";
        QTest::newRow("missing network folder") << "--network-dir"
                                                << "%1/nowhere"
                                                << "%1/nowhere: network folder not found";
        QTest::newRow("out folder missing") << "--out"
                                            << "%1/no/such/out.dxf"
                                            << "%1/no/such/out.dxf: the folder";
        QTest::newRow("trace folder missing") << "--trace"
                                              << "%1/no/such/t.jsonl"
                                              << "%1/no/such/t.jsonl: the folder";
        QTest::newRow("tree and sheet") << "--sheet"
                                        << "%1/bad.json"
                                        << "give --tree or --sheet, not both";
        QTest::newRow("missing sheet") << "sheet"
                                       << "%1/none.xlsx"
                                       << "%1/none.xlsx: no such file";
        QTest::newRow("sheet not a workbook") << "sheet"
                                              << "%1/bad.json"
                                              << "%1/bad.json: no rows were imported";
        QTest::newRow("pages is a file") << "--pages"
                                         << "%1/bad.json"
                                         << "%1/bad.json: is a file";
        QTest::newRow("empty standard") << "--standard"
                                        << ""
                                        << "--standard is required";
    }

    void badInput()
    {
        QFETCH(QString, option);
        QFETCH(QString, value);
        QFETCH(QString, message);
        QTemporaryDir dir;
        value.replace(QStringLiteral("%1"), dir.path());
        message.replace(QStringLiteral("%1"), dir.path());
        QFile bad(dir.filePath(QStringLiteral("bad.json")));
        QVERIFY(bad.open(QIODevice::WriteOnly));
        bad.write("{ not json");
        bad.close();

        const QString out = dir.filePath(QStringLiteral("out.dxf"));
        const QString trace = dir.filePath(QStringLiteral("trace.jsonl"));
        QStringList args = baseArguments(out) << QStringLiteral("--trace") << trace;
        if (option == u"sheet") {
            const qsizetype tree = args.indexOf(QStringLiteral("--tree"));
            args[tree] = QStringLiteral("--sheet");
            args[tree + 1] = value;
        } else if (option == u"-") {
            args.removeAt(args.indexOf(QStringLiteral("--out")) + 1);
            args.removeAll(QStringLiteral("--out"));
        } else if (const qsizetype at = args.indexOf(option); at >= 0) {
            args[at + 1] = value;
        } else {
            args << option << value;
        }
        const Outcome run = runProgram(args);
        QCOMPARE(run.exitCode, 2);
        QVERIFY(run.out.isEmpty());
        const QStringList lines = ownLines(run.errText());
        // The import shows its own messages first (a workbook it cannot read); otherwise the
        // one line is all.
        QVERIFY(!lines.isEmpty());
        if (option != u"sheet")
            QCOMPARE(lines.size(), 1);
        QVERIFY2(lines.last().startsWith(QStringLiteral("kvinsertauto run: ")) &&
                     lines.last().contains(message),
                 qPrintable(lines.join(QLatin1Char('\n'))));
        // Nothing was written.
        QCOMPARE(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
                 QStringList{QStringLiteral("bad.json")});
    }

    void help()
    {
        const Outcome run = runProgram({QStringLiteral("run"), QStringLiteral("--help")});
        QCOMPARE(run.exitCode, 0);
        QVERIFY(run.outText().startsWith(QStringLiteral("usage: kvinsertauto run --settings")));
    }

private:
    QTemporaryDir m_dir;
    QString m_database;
};

QTEST_GUILESS_MAIN(TestRefHostRun)
#include "tst_refhost_run.moc"
