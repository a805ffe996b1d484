#include "../common/ProgramRun.h"
#include "SettingsTestSupport.h"

#include <QDir>
#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

using namespace SettingsTestSupport;

namespace {

const QString kProgram = QStringLiteral(KV_BINARY_DIR "/refhost/cli/kvinsertauto");

using Run = ProgramRun::Result;

// Runs the program with `input` on its standard input; `encoding` set means
// KVINSERTAUTO_SETTINGS_ENCODING has that value, otherwise it is not set at all.
Run runProgram(const QStringList& args, const QByteArray& input = {},
               const QByteArray& encoding = {})
{
    const QString variable = QLatin1String(SettingsEncoding::kEnvironmentVariable);
    ProgramRun::Options options;
    options.removedEnvironment = {variable};
    if (!encoding.isEmpty())
        options.environment.insert(variable, QString::fromLatin1(encoding));
    options.input = input;
    options.timeoutMs = 30000;
    return ProgramRun::run(kProgram, args, options);
}

// Every file under `folder` with its bytes, to see that nothing was written.
QMap<QString, QByteArray> snapshot(const QString& folder)
{
    QMap<QString, QByteArray> files;
    QDirIterator it(folder, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        files.insert(path, QFileInfo(path).isDir() ? QByteArray("<folder>") : readBytes(path));
    }
    return files;
}

bool copySettings(const QString& fromBase, const QString& toBase)
{
    for (const char* extension : {".cfa", ".cfb", ".cfc"}) {
        const QByteArray bytes = readBytes(fromBase + QLatin1String(extension));
        if (bytes.startsWith("<cannot read") ||
            !writeBytes(toBase + QLatin1String(extension), bytes))
            return false;
    }
    return true;
}

const QByteArray kValidJson = R"({
  "main": {"gapBeforeVar": "ANTES", "gapAfterVar": "DEPOIS", "startPoint": "30,250",
           "spaceWidth": "12.5", "separatorMode": 2, "pageSize": "380", "pageMode": "-1",
           "fields": [{"fieldName": " Descrição ", "attribute": "", "search": "X=", "show": true},
                      {"fieldName": "Tensão", "attribute": "T", "search": " ", "show": false}]},
  "blocks": [{"blockName": "B1", "position": "", "angle": "0"}],
  "symbols": [{"blockName": "S1", "position": "1,2", "angle": " "}]
})";

} // namespace

class TestSettingsCli : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void roundTrip_data();
    void roundTrip();
    void dumpPrintsStoredTexts();
    void dumpNewSettingsFileCreatesCompanions();
    void writeFromJson();
    void badInput_data();
    void badInput();
};

void TestSettingsCli::initTestCase()
{
    QVERIFY2(QFileInfo(kProgram).isExecutable(), qPrintable(kProgram));
}

void TestSettingsCli::roundTrip_data()
{
    QTest::addColumn<QString>("base");
    QTest::newRow("canonical") << QStringLiteral(KV_TEST_DATA_DIR "/settings/canonical");
    QTest::newRow("example") << QStringLiteral(KV_SOURCE_DIR "/examples/settings/example");
}

void TestSettingsCli::roundTrip()
{
    QFETCH(QString, base);
    if (!QFile::exists(base + ".cfa"))
        QSKIP("no such settings file in this tree");
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(QDir(dir.path()).mkpath("in") && QDir(dir.path()).mkpath("out"));
    const QString in = dir.filePath("in/set");
    const QString out = dir.filePath("out/set");
    QVERIFY(copySettings(base, in));

    const Run dump = runProgram({"settings", "dump", in + ".cfa"});
    QVERIFY2(dump.exitCode == 0, dump.err.constData());
    QVERIFY(dump.err.isEmpty());
    QJsonParseError parseError;
    QJsonDocument::fromJson(dump.out, &parseError);
    QCOMPARE(parseError.error, QJsonParseError::NoError);

    const Run write = runProgram({"settings", "write", out + ".cfa"}, dump.out);
    QVERIFY2(write.exitCode == 0, write.err.constData());
    for (const char* extension : {".cfa", ".cfb", ".cfc"}) {
        const QByteArray original = readBytes(base + QLatin1String(extension));
        QCOMPARE(readBytes(in + QLatin1String(extension)), original); // dump changed nothing
        QCOMPARE(readBytes(out + QLatin1String(extension)), original);
    }
}

void TestSettingsCli::dumpPrintsStoredTexts()
{
    QTemporaryDir dir;
    QVERIFY(
        copySettings(QStringLiteral(KV_TEST_DATA_DIR "/settings/canonical"), dir.filePath("set")));
    const Run dump = runProgram({"settings", "dump", dir.filePath("set.cfa")});
    QCOMPARE(dump.exitCode, 0);
    const QJsonObject root = QJsonDocument::fromJson(dump.out).object();
    QCOMPARE(root.keys(), QStringList({"blocks", "main", "symbols"}));
    const QJsonObject main = root.value("main").toObject();
    QCOMPARE(main.value("gapBeforeVar").toString(), QStringLiteral("ANTES"));
    QCOMPARE(main.value("spaceWidth").toString(), QStringLiteral("12.5"));
    QCOMPARE(main.value("separatorMode").toString(), QStringLiteral("2"));
    QCOMPARE(main.value("pageMode").toString(), QStringLiteral("1"));
    const QJsonArray fields = main.value("fields").toArray();
    QCOMPARE(fields.size(), 4);
    const QJsonObject second = fields.at(1).toObject();
    QCOMPARE(second.value("fieldName").toString(), QStringLiteral("Descrição"));
    QCOMPARE(second.value("attribute").toString(), QStringLiteral(" ")); // not a default
    QCOMPARE(second.value("show"), QJsonValue(true));
    QCOMPARE(fields.at(2).toObject().value("search").toString(), QStringLiteral("TENSÃO="));
    QCOMPARE(fields.at(2).toObject().value("show"), QJsonValue(false));
    const QJsonArray blocks = root.value("blocks").toArray();
    QCOMPARE(blocks.size(), 2);
    QCOMPARE(blocks.at(1).toObject(),
             QJsonObject({{"blockName", "Legenda"}, {"position", "10.5,5"}, {"angle", "90"}}));
    QCOMPARE(root.value("symbols").toArray().size(), 2);
}

void TestSettingsCli::dumpNewSettingsFileCreatesCompanions()
{
    QTemporaryDir dir;
    QVERIFY(writeBytes(dir.filePath("new.cfa"), QByteArray()));
    const Run dump = runProgram({"settings", "dump", dir.filePath("new.cfa")});
    QVERIFY2(dump.exitCode == 0, dump.err.constData());
    QCOMPARE(QFileInfo(dir.filePath("new.cfb")).size(), 0);
    QCOMPARE(QFileInfo(dir.filePath("new.cfc")).size(), 0);
    QVERIFY(QFileInfo::exists(dir.filePath("new.cfb")));
    const QJsonObject root = QJsonDocument::fromJson(dump.out).object();
    QCOMPARE(root.value("main").toObject().value("fields").toArray().size(), 0);
    QCOMPARE(root.value("main").toObject().value("pageMode").toString(), QString());
    const QJsonArray defaultRow = {
        QJsonObject({{"blockName", "..."}, {"position", "0,0"}, {"angle", "0"}})};
    QCOMPARE(root.value("blocks").toArray(), defaultRow);
    QCOMPARE(root.value("symbols").toArray(), defaultRow);
}

void TestSettingsCli::writeFromJson()
{
    QTemporaryDir dir;
    const Run write = runProgram({"settings", "write", dir.filePath("w.cfa")}, kValidJson);
    QVERIFY2(write.exitCode == 0, write.err.constData());
    QVERIFY(write.out.isEmpty() && write.err.isEmpty());
    QCOMPARE(readBytes(dir.filePath("w.cfa")),
             QByteArray("ANTES\r\nDEPOIS\r\n30,250\r\n12.5\r\n2\r\n380\r\n-1\r\n"
                        "Descri\xc3\xa7\xc3\xa3o; ;X=;S;\r\nTens\xc3\xa3o;T; ;N;"));
    QCOMPARE(readBytes(dir.filePath("w.cfb")), QByteArray("B1;;0;"));
    QCOMPARE(readBytes(dir.filePath("w.cfc")), QByteArray("S1;1,2; ;"));

    // The same under an explicit Windows code page.
    const Run windows =
        runProgram({"settings", "write", dir.filePath("win.cfa")}, kValidJson, "windows-1252");
    QVERIFY2(windows.exitCode == 0, windows.err.constData());
    QVERIFY(
        readBytes(dir.filePath("win.cfa")).endsWith("Descri\xe7\xe3o; ;X=;S;\r\nTens\xe3o;T; ;N;"));
}

void TestSettingsCli::badInput_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("file"); // relative to a fresh folder; "" for no argument
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QString>("message"); // must appear in the one line on stderr

    const QByteArray json = kValidJson;
    auto replaced = [&json](const char* before, const char* after) {
        QByteArray changed = json;
        changed.replace(before, after);
        return changed;
    };
    QTest::newRow("dump: missing file")
        << "dump"
        << "missing.cfa" << QByteArray() << QByteArray() << "missing.cfa: no such file";
    QTest::newRow("dump: a folder")
        << "dump"
        << "folder.cfa" << QByteArray() << QByteArray() << "folder.cfa: is a folder";
    QTest::newRow("dump: no file named")
        << "dump"
        << "" << QByteArray() << QByteArray() << "usage: kvinsertauto settings dump";
    QTest::newRow("dump: unknown code page")
        << "dump"
        << "present.cfa" << QByteArray() << QByteArray("klingon-9")
        << "KVINSERTAUTO_SETTINGS_ENCODING=\"klingon-9\"";
    QTest::newRow("write: folder does not exist")
        << "write"
        << "nowhere/set.cfa" << json << QByteArray() << "does not exist";
    QTest::newRow("write: capital extension")
        << "write"
        << "SET.CFA" << json << QByteArray() << "SET.CFA: the name holds no lowercase";
    QTest::newRow("write: .cfa is a folder")
        << "write"
        << "folder.cfa" << json << QByteArray() << "folder.cfa: is a folder";
    QTest::newRow("write: .cfc is a folder")
        << "write"
        << "blocked.cfa" << json << QByteArray() << "blocked.cfc: is a folder";
    QTest::newRow("write: unknown code page") << "write"
                                              << "set.cfa" << json << QByteArray("klingon-9")
                                              << "KVINSERTAUTO_SETTINGS_ENCODING=\"klingon-9\"";
    QTest::newRow("write: malformed JSON") << "write"
                                           << "set.cfa" << QByteArray("{\"main\": ") << QByteArray()
                                           << "standard input: malformed JSON at offset";
    QTest::newRow("write: empty input")
        << "write"
        << "set.cfa" << QByteArray() << QByteArray() << "standard input: malformed JSON";
    QTest::newRow("write: not an object")
        << "write"
        << "set.cfa" << QByteArray("[]") << QByteArray() << "standard input: $ must be an object";
    QTest::newRow("write: no main") << "write"
                                    << "set.cfa" << QByteArray("{}") << QByteArray()
                                    << "$.main is missing (expected an object)";
    QTest::newRow("write: show is text")
        << "write"
        << "set.cfa" << replaced("\"show\": true", "\"show\": \"yes\"") << QByteArray()
        << "$.main.fields[0].show must be true or false, not a string";
    QTest::newRow("write: separator not an integer")
        << "write"
        << "set.cfa" << replaced("\"separatorMode\": 2", "\"separatorMode\": \"abc\"")
        << QByteArray() << "$.main.separatorMode must be an integer, not a string";
    QTest::newRow("write: separator a fraction")
        << "write"
        << "set.cfa" << replaced("\"separatorMode\": 2", "\"separatorMode\": 1.5") << QByteArray()
        << "$.main.separatorMode must be an integer, not a number";
    QTest::newRow("write: page size a number")
        << "write"
        << "set.cfa" << replaced("\"pageSize\": \"380\"", "\"pageSize\": 380") << QByteArray()
        << "$.main.pageSize must be a string, not a number";
    QTest::newRow("write: blocks not an array")
        << "write"
        << "set.cfa" << replaced("\"blocks\": [", "\"blocks\": {\"x\": [") + "}" << QByteArray()
        << "$.blocks must be an array";
    QTest::newRow("write: symbol without angle") << "write"
                                                 << "set.cfa" << replaced(", \"angle\": \" \"", "")
                                                 << QByteArray() << "$.symbols[0].angle is missing";
    QTest::newRow("write: field row not an object")
        << "write"
        << "set.cfa" << replaced("\"fields\": [", "\"fields\": [3, ") << QByteArray()
        << "$.main.fields[0] must be an object, not a number";
    QTest::newRow("unknown action")
        << "frob"
        << "set.cfa" << QByteArray() << QByteArray() << "usage: kvinsertauto settings dump";
}

void TestSettingsCli::badInput()
{
    QFETCH(QString, action);
    QFETCH(QString, file);
    QFETCH(QByteArray, input);
    QFETCH(QByteArray, encoding);
    QFETCH(QString, message);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(QDir(dir.path()).mkpath("folder.cfa"));
    QVERIFY(QDir(dir.path()).mkpath("blocked.cfc"));
    QVERIFY(writeBytes(dir.filePath("present.cfa"), "A\r\nB"));
    const QMap<QString, QByteArray> before = snapshot(dir.path());

    QStringList args = {"settings", action};
    if (!file.isEmpty())
        args.append(dir.filePath(file));
    const Run run = runProgram(args, input, encoding);
    QCOMPARE(run.exitCode, 2);
    QVERIFY(run.out.isEmpty());
    const QString err = run.errText();
    QVERIFY2(err.contains(message), qPrintable(err));
    if (action != u"frob")
        QCOMPARE(err.count(u'\n'), 1);
    QCOMPARE(snapshot(dir.path()), before);
}

QTEST_GUILESS_MAIN(TestSettingsCli)
#include "tst_settings_cli.moc"
