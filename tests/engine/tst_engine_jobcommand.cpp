// The job as JSON, and the command-line verb "job" that prints it.

#include "../common/ProgramRun.h"
#include "engine/CEInsAutoJobJson.h"

#include <QTemporaryDir>
#include <QtTest>

// Declared before the helpers: moc stops parsing at the raw strings below.
class TestEngineJobCommand final : public QObject
{
    Q_OBJECT

private slots:
    void jobJsonMembersInRecordOrder();
    void emptyJobJson();
    void printsTheJob();
    void missingSettingsFile();
    void settingsPathIsAFolder();
    void badTreeJson();
    void missingArguments_data();
    void missingArguments();
};

namespace {

const QString kProgram = QStringLiteral(KV_BINARY_DIR "/refhost/cli/kvinsertauto");

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

using Outcome = ProgramRun::Result;

Outcome runProgram(const QStringList& args)
{
    ProgramRun::Options options;
    options.timeoutMs = 20000;
    return ProgramRun::run(kProgram, args, options);
}

const QByteArray kTree = R"([
  {"name": "1 - \"M1\"", "attributes": ["TAG1=M1", "PAGE=3=x", "NOTE=a \"b\""],
   "children": [{"kind": "page"}, {"kind": "symbol", "key": "10", "description": "Relay"},
                {"kind": "hspace"}, {"kind": "vspace"}]},
  {"name": "no children", "attributes": ["TAG1=X"]},
  {"name": "2", "children": [{"kind": "symbol", "key": "7'A", "description": "Quote"}]}
])";

} // namespace

void TestEngineJobCommand::jobJsonMembersInRecordOrder()
{
    CEInsAutoJob job;
    job.gapBeforeVar = "A";
    job.gapAfterVar = "B";
    job.startPoint = "1,2";
    job.spaceWidth = "3";
    job.pageMode = "0";
    job.fieldMap = {{"F", "T@"}, {"G", " "}};
    job.items = {{"I \\ \"x\"", {{"F", "v"}}, {{"0", "10"}, {"", ""}}}, {"J", {}, {{"1", ""}}}};
    job.pageComponents = {{"20", "1,2", "90"}};
    job.pageBlocks = {{"FRAME", "0,0", "0"}, {"LOGO", "5,5", "45"}};

    const QByteArray expected = R"({
  "gapBeforeVar": "A",
  "gapAfterVar": "B",
  "startPoint": "1,2",
  "spaceWidth": "3",
  "pageMode": "0",
  "fieldMap": [
    {"fieldName": "F", "target": "T@"},
    {"fieldName": "G", "target": " "}
  ],
  "items": [
    {
      "name": "I \\ \"x\"",
      "values": [
        {"name": "F", "value": "v"}
      ],
      "entries": [
        {"kind": "0", "key": "10"},
        {"kind": "", "key": ""}
      ]
    },
    {
      "name": "J",
      "values": [],
      "entries": [
        {"kind": "1", "key": ""}
      ]
    }
  ],
  "pageComponents": [
    {"name": "20", "position": "1,2", "angle": "90"}
  ],
  "pageBlocks": [
    {"name": "FRAME", "position": "0,0", "angle": "0"},
    {"name": "LOGO", "position": "5,5", "angle": "45"}
  ]
}
)";
    QCOMPARE(CEInsAutoJobJson::toJson(job), expected);
}

void TestEngineJobCommand::emptyJobJson()
{
    const QByteArray expected = R"({
  "gapBeforeVar": "",
  "gapAfterVar": "",
  "startPoint": "",
  "spaceWidth": "",
  "pageMode": "",
  "fieldMap": [],
  "items": [],
  "pageComponents": [],
  "pageBlocks": []
}
)";
    QCOMPARE(CEInsAutoJobJson::toJson(CEInsAutoJob()), expected);
}

void TestEngineJobCommand::printsTheJob()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(writeFile(dir.filePath("s.cfa"), "GAP_A\r\nGAP_D\r\n10,20\r\n5\r\n2\r\nA3\r\n1\r\n"
                                             "TAG1;TAG1;S;S;\r\nPAGE;FOLHA@CARIMBO; ;N;"));
    QVERIFY(writeFile(dir.filePath("s.cfb"), "FRAME;10,20;90;\r\nLOGO; ; ;"));
    QVERIFY(writeFile(dir.filePath("t.json"), kTree));

    const Outcome outcome =
        runProgram({"job", "--settings", dir.filePath("s.cfa"), "--tree", dir.filePath("t.json")});

    QCOMPARE(outcome.err, QByteArray());
    QCOMPARE(outcome.exitCode, 0);
    const QByteArray expected = R"({
  "gapBeforeVar": "GAP_A",
  "gapAfterVar": "GAP_D",
  "startPoint": "10,20",
  "spaceWidth": "5",
  "pageMode": "1",
  "fieldMap": [
    {"fieldName": "TAG1", "target": "TAG1"},
    {"fieldName": "PAGE", "target": "FOLHA@CARIMBO"}
  ],
  "items": [
    {
      "name": "1 - 'M1'",
      "values": [
        {"name": "TAG1", "value": "M1"},
        {"name": "PAGE", "value": "3=x"},
        {"name": "NOTE", "value": "a 'b'"}
      ],
      "entries": [
        {"kind": "1", "key": ""},
        {"kind": "0", "key": "10"},
        {"kind": "2", "key": ""},
        {"kind": "4", "key": ""}
      ]
    },
    {
      "name": "2",
      "values": [],
      "entries": [
        {"kind": "0", "key": "7'A"}
      ]
    }
  ],
  "pageComponents": [],
  "pageBlocks": [
    {"name": "FRAME", "position": "10,20", "angle": "90"},
    {"name": "LOGO", "position": "0,0", "angle": "0"}
  ]
}
)";
    QCOMPARE(outcome.out, expected);
    // Printing a job writes nothing: the missing .cfc is not created.
    QVERIFY(!QFileInfo::exists(dir.filePath("s.cfc")));
}

void TestEngineJobCommand::missingSettingsFile()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(writeFile(dir.filePath("t.json"), kTree));
    const QString cfa = dir.filePath("absent.cfa");

    const Outcome outcome =
        runProgram({"job", "--settings", cfa, "--tree", dir.filePath("t.json")});

    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(outcome.out, QByteArray());
    QCOMPARE(outcome.err, ("kvinsertauto job: " + cfa + ": no such file\n").toUtf8());
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{"t.json"});
}

void TestEngineJobCommand::settingsPathIsAFolder()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(writeFile(dir.filePath("t.json"), kTree));

    const Outcome outcome =
        runProgram({"job", "--settings", dir.path(), "--tree", dir.filePath("t.json")});

    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(outcome.out, QByteArray());
    QCOMPARE(outcome.err,
             ("kvinsertauto job: " + dir.path() + ": is a folder, not a file\n").toUtf8());
}

void TestEngineJobCommand::badTreeJson()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(writeFile(dir.filePath("s.cfa"), "\r\n\r\n0,0\r\n5\r\n0\r\n\r\n0"));
    QVERIFY(writeFile(dir.filePath("t.json"), R"([{"name": "A", "children": [{"kind": "x"}]}])"));

    const Outcome outcome =
        runProgram({"job", "--settings", dir.filePath("s.cfa"), "--tree", dir.filePath("t.json")});

    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(outcome.out, QByteArray());
    QCOMPARE(outcome.err.count('\n'), 1);
    QVERIFY2(outcome.err.startsWith("kvinsertauto job: " + dir.filePath("t.json").toUtf8() + ": "),
             outcome.err.constData());
}

void TestEngineJobCommand::missingArguments_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::newRow("nothing") << QStringList{"job"};
    QTest::newRow("no tree") << QStringList{"job", "--settings", "s.cfa"};
    QTest::newRow("no settings") << QStringList{"job", "--tree", "t.json"};
    QTest::newRow("value missing") << QStringList{"job", "--tree", "t.json", "--settings"};
    QTest::newRow("unknown option") << QStringList{"job", "--settings", "s", "--tree", "t", "-x"};
}

void TestEngineJobCommand::missingArguments()
{
    QFETCH(QStringList, args);
    const Outcome outcome = runProgram(args);
    QCOMPARE(outcome.exitCode, 2);
    QCOMPARE(outcome.out, QByteArray());
    QVERIFY(!outcome.err.isEmpty());
}

QTEST_GUILESS_MAIN(TestEngineJobCommand)
#include "tst_engine_jobcommand.moc"
