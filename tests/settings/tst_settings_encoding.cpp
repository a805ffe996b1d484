#include "RecordingSystemServices.h"
#include "SettingsTestSupport.h"
#include "host/HostBinding.h"
#include "settings/SettingsFiles.h"
#include "settings/SettingsTextFile.h"
#include "settings/SettingsWriter.h"

#include <QStringEncoder>
#include <QTemporaryDir>
#include <QtTest>

using namespace SettingsTestSupport;

class TestSettingsEncoding : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void writeLine_data();
    void writeLine();
    void readLine_data();
    void readLine();
    void emptyVariableMeansLocale();
    void icuCodePageWritesQuestionMarks();
    void unknownNameFailsReading();
    void unknownNameFailsWritingAndCreatesNothing();
    void unknownNameStopsTheSave();
    void windowsSettingsRoundTrip();
    void windowsFileWithoutTheVariableIsNotReadAsWritten();

private:
    QString path(const QString& name) const { return m_dir.filePath(name); }

    QTemporaryDir m_dir;
};

void TestSettingsEncoding::initTestCase()
{
    QVERIFY(m_dir.isValid());
    qunsetenv(SettingsEncoding::kEnvironmentVariable);
}

namespace {

void addEncodingRows()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("bytes");

    const QString fields = QStringLiteral("Descrição;Tensão;");
    // Qt's locale encoding on Linux is UTF-8 whatever the locale says.
    QTest::newRow("locale (unset)")
        << QByteArray() << fields << QByteArray("Descri\xc3\xa7\xc3\xa3o;Tens\xc3\xa3o;");
    QTest::newRow("windows-1252") << QByteArray("windows-1252") << fields
                                  << QByteArray("Descri\xe7\xe3o;Tens\xe3o;");
    QTest::newRow("Windows-1252 in capitals")
        << QByteArray("Windows-1252") << fields << QByteArray("Descri\xe7\xe3o;Tens\xe3o;");
    QTest::newRow("cp1252") << QByteArray("cp1252") << fields
                            << QByteArray("Descri\xe7\xe3o;Tens\xe3o;");
    QTest::newRow("windows-1252 high range")
        << QByteArray("windows-1252") << QStringLiteral("€‚ƒ„…†‡ˆ‰Š‹ŒŽ‘’“”•–—˜™š›œžŸ")
        << QByteArray("\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8a\x8b\x8c\x8e\x91\x92\x93\x94\x95"
                      "\x96\x97\x98\x99\x9a\x9b\x9c\x9e\x9f");
    QTest::newRow("ISO-8859-1") << QByteArray("ISO-8859-1") << fields
                                << QByteArray("Descri\xe7\xe3o;Tens\xe3o;");
    QTest::newRow("UTF-8") << QByteArray("UTF-8") << fields
                           << QByteArray("Descri\xc3\xa7\xc3\xa3o;Tens\xc3\xa3o;");
}

} // namespace

void TestSettingsEncoding::writeLine_data()
{
    addEncodingRows();
    // Characters the code page cannot hold come out as "?", one per character.
    QTest::newRow("windows-1252 unencodable")
        << QByteArray("windows-1252") << QStringLiteral("AĀ\U0001F600Z") << QByteArray("A??Z");
    QTest::newRow("ISO-8859-1 unencodable")
        << QByteArray("ISO-8859-1") << QStringLiteral("5€") << QByteArray("5?");
}

void TestSettingsEncoding::writeLine()
{
    QFETCH(QByteArray, encoding);
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    ScopedSettingsEncoding scoped(encoding);

    const QString file = path(QStringLiteral("encoded.cfa"));
    SettingsTextFile handle;
    QVERIFY(handle.openForWriting(file).ok());
    QVERIFY(handle.writeLine(text));
    QVERIFY(handle.writeLine(text));
    handle.close();
    QCOMPARE(readBytes(file), bytes + "\r\n" + bytes);
}

void TestSettingsEncoding::readLine_data()
{
    addEncodingRows();
    // Bytes the code page leaves undefined read as the C1 control of the same value.
    QTest::newRow("windows-1252 undefined bytes")
        << QByteArray("windows-1252") << QStringLiteral("\u0081\u008d\u008f\u0090\u009d")
        << QByteArray("\x81\x8d\x8f\x90\x9d");
    QTest::newRow("ISO-8859-1 C1 range")
        << QByteArray("ISO-8859-1") << QStringLiteral("\u0080\u009f") << QByteArray("\x80\x9f");
}

void TestSettingsEncoding::readLine()
{
    QFETCH(QByteArray, encoding);
    QFETCH(QString, text);
    QFETCH(QByteArray, bytes);
    ScopedSettingsEncoding scoped(encoding);

    const QString file = path(QStringLiteral("decoded.cfa"));
    QVERIFY(writeBytes(file, bytes + "\r\n" + bytes));
    SettingsTextFile handle;
    QVERIFY(handle.openForReading(file).ok());
    QCOMPARE(handle.readLine(), text + u'\n');
    QCOMPARE(handle.readLine(), text);
    QVERIFY(handle.atEnd());
}

void TestSettingsEncoding::emptyVariableMeansLocale()
{
    ScopedSettingsEncoding scoped(" ");
    QString error;
    const auto encoding = SettingsEncoding::fromEnvironment(&error);
    QVERIFY2(encoding.has_value(), qPrintable(error));
    QCOMPARE(encoding->encode(QStringLiteral("ã")), QByteArray("\xc3\xa3"));
}

void TestSettingsEncoding::icuCodePageWritesQuestionMarks()
{
    if (!QStringEncoder("ISO-8859-15").isValid())
        QSKIP("this Qt build knows no ISO-8859-15 converter");
    ScopedSettingsEncoding scoped("ISO-8859-15");
    const QString file = path(QStringLiteral("latin9.cfa"));
    SettingsTextFile handle;
    QVERIFY(handle.openForWriting(file).ok());
    QVERIFY(handle.writeLine(QStringLiteral("Tensão 5€ Ā")));
    handle.close();
    QCOMPARE(readBytes(file), QByteArray("Tens\xe3o 5\xa4 ?"));
    QVERIFY(handle.openForReading(file).ok());
    QCOMPARE(handle.readLine(), QStringLiteral("Tensão 5€ ?"));
}

void TestSettingsEncoding::unknownNameFailsReading()
{
    const QString file = path(QStringLiteral("unknown-read.cfa"));
    QVERIFY(writeBytes(file, "x"));
    ScopedSettingsEncoding scoped("klingon-9");
    SettingsTextFile handle;
    const SettingsFileStatus status = handle.openForReading(file);
    QVERIFY(!status.ok());
    QVERIFY2(status.error.contains(u"KVINSERTAUTO_SETTINGS_ENCODING") &&
                 status.error.contains(u"klingon-9") && status.error.contains(file),
             qPrintable(status.error));
    QCOMPARE(handle.readLine(), QString());
}

void TestSettingsEncoding::unknownNameFailsWritingAndCreatesNothing()
{
    const QString file = path(QStringLiteral("unknown-write.cfa"));
    ScopedSettingsEncoding scoped("klingon-9");
    SettingsTextFile handle;
    const SettingsFileStatus status = handle.openForWriting(file);
    QVERIFY(!status.ok());
    QVERIFY2(status.error.contains(u"KVINSERTAUTO_SETTINGS_ENCODING") &&
                 status.error.contains(u"klingon-9"),
             qPrintable(status.error));
    QVERIFY(!QFile::exists(file));
}

void TestSettingsEncoding::unknownNameStopsTheSave()
{
    RecordingSystemServices system;
    HostBinding binding;
    binding.system = &system;
    ScopedHostBinding host(binding);
    ScopedSettingsEncoding scoped("klingon-9");

    const QString cfa = path(QStringLiteral("unknown-save.cfa"));
    const SettingsWriteResult result = writeSettingsFiles({}, cfa);
    QVERIFY(!result.mainWritten);
    QVERIFY(result.error.contains(u"klingon-9"));
    QCOMPARE(system.messages.size(), 1);
    QCOMPARE(system.messages.first().text, QStringLiteral("Error saving settings file."));
    QVERIFY(!QFile::exists(cfa));
    QVERIFY(!QFile::exists(path(QStringLiteral("unknown-save.cfb"))));
}

void TestSettingsEncoding::windowsSettingsRoundTrip()
{
    ScopedSettingsEncoding scoped("windows-1252");
    SettingsDialogContents contents;
    contents.gapBeforeVar = QStringLiteral("ESPAÇO_ANTES");
    contents.gapAfterVar = QStringLiteral("ESPAÇO_DEPOIS");
    contents.startPoint = QStringLiteral("10,20");
    contents.spaceWidth = QStringLiteral("5");
    contents.separatorIndex = 1;
    contents.pageSize = QStringLiteral("8");
    contents.paginationIndex = 0;
    contents.fields = {
        {QStringLiteral("Descrição"), QStringLiteral("DESCRIÇÃO"), QStringLiteral("DESCRICAO="),
         QStringLiteral("Yes")},
        {QStringLiteral("Tensão"), QStringLiteral("TENSÃO"), QString(), QStringLiteral("No")}};
    contents.blocks = {{QStringLiteral("Legenda_ção"), QStringLiteral("1,2"), QStringLiteral("0")}};
    contents.symbols = {
        {QStringLiteral("Motor trifásico"), QStringLiteral("3,4"), QStringLiteral("90")}};

    const QString cfa = path(QStringLiteral("windows.cfa"));
    const SettingsWriteResult result = writeSettingsFiles(contents, cfa);
    QVERIFY(result.mainWritten && result.symbolsWritten);
    QCOMPARE(readBytes(cfa),
             QByteArray("ESPA\xc7O_ANTES\r\nESPA\xc7O_DEPOIS\r\n10,20\r\n5\r\n1\r\n"
                        "8\r\n0\r\nDescri\xe7\xe3o;DESCRI\xc7\xc3O;DESCRICAO=;S;\r\n"
                        "Tens\xe3o;TENS\xc3O; ;N;"));
    QCOMPARE(readBytes(path(QStringLiteral("windows.cfb"))),
             QByteArray("Legenda_\xe7\xe3o;1,2;0;"));
    QCOMPARE(readBytes(path(QStringLiteral("windows.cfc"))),
             QByteArray("Motor trif\xe1sico;3,4;90;"));

    const SettingsFiles files = readSettingsFiles(cfa);
    QVERIFY(files.errors.isEmpty());
    QCOMPARE(QString(files.main->gapBeforeVar()), QStringLiteral("ESPAÇO_ANTES"));
    QCOMPARE(files.main->fieldCount(), 2);
    QCOMPARE(QString(files.main->field(0)->fieldName()), QStringLiteral("Descrição"));
    QCOMPARE(QString(files.main->field(0)->attribute()), QStringLiteral("DESCRIÇÃO"));
    QCOMPARE(QString(files.main->field(1)->fieldName()), QStringLiteral("Tensão"));
    QCOMPARE(QString(files.blocks->row(0)->blockName()), QStringLiteral("Legenda_ção"));
    QCOMPARE(QString(files.symbols->row(0)->blockName()), QStringLiteral("Motor trifásico"));
}

void TestSettingsEncoding::windowsFileWithoutTheVariableIsNotReadAsWritten()
{
    const QString file = path(QStringLiteral("windows-read-as-utf8.cfa"));
    QVERIFY(writeBytes(file, "Tens\xe3o"));
    SettingsTextFile handle;
    QVERIFY(handle.openForReading(file).ok());
    QCOMPARE(handle.readLine(), QStringLiteral("Tens\uFFFDo"));
}

QTEST_GUILESS_MAIN(TestSettingsEncoding)
#include "tst_settings_encoding.moc"
