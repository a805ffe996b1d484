#include "SettingsTestSupport.h"
#include "settings/SettingsTextFile.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace SettingsTestSupport;

// One read: the text returned and the end-of-file indicator after it.
using Reads = QList<QPair<QString, bool>>;

class TestSettingsTextFile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void readLine_data();
    void readLine();
    void readLineOnMissingFileReadsAsEmpty();
    void openFolderForReadingFails();
    void reopenClearsEndOfFile();
    void closeSaysWhetherAFileWasOpen();
    void writeLineSeparatesWithCrLf();
    void writeLineTurnsInnerLineEndsIntoCrLf();
    void writeLineOnClosedHandleFails();
    void openForWritingTruncates();
    void openFolderForWritingFails();
    void ensureExistsKeepsContents();
    void ensureExistsCreatesMissingFile();
    void ensureExistsInMissingFolderFails();
    void companionPath_data();
    void companionPath();

private:
    QString path(const QString& name) const { return m_dir.filePath(name); }

    QTemporaryDir m_dir;
};

void TestSettingsTextFile::initTestCase()
{
    QVERIFY(m_dir.isValid());
    qunsetenv(SettingsEncoding::kEnvironmentVariable);
}

void TestSettingsTextFile::readLine_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Reads>("reads");

    const QString x511(511, u'x');
    const QString x510(510, u'x');
    QTest::newRow("empty file") << QByteArray() << Reads{{"", true}, {"", true}};
    QTest::newRow("no final line end") << QByteArray("abc") << Reads{{"abc", true}, {"", true}};
    QTest::newRow("final CR LF") << QByteArray("abc\r\n") << Reads{{"abc\n", false}, {"", true}};
    QTest::newRow("two lines") << QByteArray("a\r\nb") << Reads{{"a\n", false}, {"b", true}};
    QTest::newRow("blank line") << QByteArray("\r\n\r\nz")
                                << Reads{{"\n", false}, {"\n", false}, {"z", true}};
    QTest::newRow("LF alone") << QByteArray("a\nb\n")
                              << Reads{{"a\n", false}, {"b\n", false}, {"", true}};
    QTest::newRow("lone CR stays")
        << QByteArray("a\rb\r\n") << Reads{{"a\rb\n", false}, {"", true}};
    QTest::newRow("CR CR LF") << QByteArray("a\r\r\n") << Reads{{"a\r\n", false}, {"", true}};
    QTest::newRow("510 characters and line end")
        << (x510.toLatin1() + "\r\n") << Reads{{x510 + "\n", false}, {"", true}};
    QTest::newRow("511 characters and line end")
        << (x511.toLatin1() + "\r\n") << Reads{{x511, false}, {"\n", false}, {"", true}};
    QTest::newRow("600 characters")
        << QByteArray(600, 'y') << Reads{{QString(511, u'y'), false}, {QString(89, u'y'), true}};
    // A full buffer stops the read before the end is seen, so the indicator waits one more read.
    QTest::newRow("exactly 511 characters") << x511.toLatin1() << Reads{{x511, false}, {"", true}};
    QTest::newRow("exactly 1022 characters")
        << QByteArray(1022, 'x') << Reads{{x511, false}, {x511, false}, {"", true}};
}

void TestSettingsTextFile::readLine()
{
    QFETCH(QByteArray, bytes);
    QFETCH(Reads, reads);
    const QString file = path(QStringLiteral("read.txt"));
    QVERIFY(writeBytes(file, bytes));

    SettingsTextFile handle;
    QVERIFY(handle.openForReading(file).ok());
    QVERIFY(!handle.atEnd()); // even on an empty file: nothing has been read yet
    for (const auto& [text, atEnd] : reads) {
        QCOMPARE(handle.readLine(), text);
        QCOMPARE(handle.atEnd(), atEnd);
    }
}

void TestSettingsTextFile::readLineOnMissingFileReadsAsEmpty()
{
    const QString missing = path(QStringLiteral("missing.cfa"));
    SettingsTextFile handle;
    const SettingsFileStatus status = handle.openForReading(missing);
    QVERIFY(!status.ok());
    QVERIFY2(status.error.contains(missing), qPrintable(status.error));
    QVERIFY(!handle.isOpen());
    QVERIFY(!QFile::exists(missing));
    QCOMPARE(handle.readLine(), QString());
    QVERIFY(handle.atEnd());
}

void TestSettingsTextFile::openFolderForReadingFails()
{
    SettingsTextFile handle;
    const SettingsFileStatus status = handle.openForReading(m_dir.path());
    QVERIFY(!status.ok());
    QVERIFY2(status.error.contains(m_dir.path()) && status.error.contains(u"folder"),
             qPrintable(status.error));
}

void TestSettingsTextFile::reopenClearsEndOfFile()
{
    const QString file = path(QStringLiteral("reopen.txt"));
    QVERIFY(writeBytes(file, "only"));
    SettingsTextFile handle;
    QVERIFY(handle.openForReading(file).ok());
    QCOMPARE(handle.readLine(), QStringLiteral("only"));
    QVERIFY(handle.atEnd());
    QVERIFY(handle.openForReading(file).ok());
    QVERIFY(!handle.atEnd());
    QCOMPARE(handle.readLine(), QStringLiteral("only"));
}

void TestSettingsTextFile::closeSaysWhetherAFileWasOpen()
{
    const QString file = path(QStringLiteral("close.txt"));
    QVERIFY(writeBytes(file, "x"));
    SettingsTextFile handle;
    QVERIFY(!handle.close());
    QVERIFY(handle.openForReading(file).ok());
    QVERIFY(handle.close());
    QVERIFY(!handle.close());
    QVERIFY(handle.openForWriting(file).ok());
    QVERIFY(handle.close());
}

void TestSettingsTextFile::writeLineSeparatesWithCrLf()
{
    const QString file = path(QStringLiteral("write.txt"));
    SettingsTextFile handle;
    QVERIFY(handle.openForWriting(file).ok());
    QCOMPARE(handle.linesWritten(), 0);
    QVERIFY(handle.writeLine(QStringLiteral("first")));
    QVERIFY(handle.writeLine(QString()));
    QVERIFY(handle.writeLine(QStringLiteral("third;")));
    QCOMPARE(handle.linesWritten(), 3);
    QVERIFY(handle.close());
    QCOMPARE(readBytes(file), QByteArray("first\r\n\r\nthird;"));
}

void TestSettingsTextFile::writeLineTurnsInnerLineEndsIntoCrLf()
{
    const QString file = path(QStringLiteral("inner.txt"));
    SettingsTextFile handle;
    QVERIFY(handle.openForWriting(file).ok());
    QVERIFY(handle.writeLine(QStringLiteral("a\nb")));
    handle.close();
    QCOMPARE(readBytes(file), QByteArray("a\r\nb"));
}

void TestSettingsTextFile::writeLineOnClosedHandleFails()
{
    SettingsTextFile handle;
    QVERIFY(!handle.writeLine(QStringLiteral("nowhere")));
    QCOMPARE(handle.linesWritten(), 0);
}

void TestSettingsTextFile::openForWritingTruncates()
{
    const QString file = path(QStringLiteral("truncate.txt"));
    QVERIFY(writeBytes(file, "old contents that are longer"));
    SettingsTextFile handle;
    QVERIFY(handle.openForWriting(file).ok());
    QVERIFY(handle.writeLine(QStringLiteral("new")));
    handle.close();
    QCOMPARE(readBytes(file), QByteArray("new"));
}

void TestSettingsTextFile::openFolderForWritingFails()
{
    SettingsTextFile handle;
    const SettingsFileStatus status = handle.openForWriting(m_dir.path());
    QVERIFY(!status.ok());
    QVERIFY2(status.error.contains(m_dir.path()), qPrintable(status.error));
    QVERIFY(!handle.isOpen());
    QVERIFY(!handle.writeLine(QStringLiteral("x")));
}

void TestSettingsTextFile::ensureExistsKeepsContents()
{
    const QString file = path(QStringLiteral("keep.cfb"));
    QVERIFY(writeBytes(file, "A;0,0;0;"));
    QVERIFY(SettingsTextFile::ensureExists(file).ok());
    QCOMPARE(readBytes(file), QByteArray("A;0,0;0;"));
}

void TestSettingsTextFile::ensureExistsCreatesMissingFile()
{
    const QString file = path(QStringLiteral("new.cfc"));
    QVERIFY(!QFile::exists(file));
    QVERIFY(SettingsTextFile::ensureExists(file).ok());
    QVERIFY(QFile::exists(file));
    QCOMPARE(QFileInfo(file).size(), 0);
}

void TestSettingsTextFile::ensureExistsInMissingFolderFails()
{
    const QString file = path(QStringLiteral("no-such-folder/new.cfc"));
    const SettingsFileStatus status = SettingsTextFile::ensureExists(file);
    QVERIFY(!status.ok());
    QVERIFY2(status.error.contains(file), qPrintable(status.error));
}

void TestSettingsTextFile::companionPath_data()
{
    QTest::addColumn<QString>("cfa");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain") << "/data/set.cfa"
                           << ".cfb"
                           << "/data/set.cfb";
    QTest::newRow("symbols") << "/data/set.cfa"
                             << ".cfc"
                             << "/data/set.cfc";
    QTest::newRow("without dot") << "/data/set.cfa"
                                 << "cfc"
                                 << "/data/set.cfc";
    QTest::newRow("capitals") << "/data/SET.CFA"
                              << ".cfb"
                              << "/data/SET.CFA";
    QTest::newRow("mixed case") << "/data/set.Cfa"
                                << ".cfb"
                                << "/data/set.Cfa";
    QTest::newRow("folder too") << "/x.cfa/set.cfa"
                                << ".cfb"
                                << "/x.cfb/set.cfb";
    QTest::newRow("twice in the name") << "set.cfa.cfa"
                                       << ".cfc"
                                       << "set.cfc.cfc";
    QTest::newRow("inside a word") << "/a.cfaz/set.cfa"
                                   << ".cfb"
                                   << "/a.cfbz/set.cfb";
    QTest::newRow("Windows path") << "C:\\Dados\\set.cfa"
                                  << ".cfb"
                                  << "C:\\Dados\\set.cfb";
}

void TestSettingsTextFile::companionPath()
{
    QFETCH(QString, cfa);
    QFETCH(QString, extension);
    QFETCH(QString, expected);
    QCOMPARE(QString(::companionPath(cfa, extension)), expected);
}

QTEST_GUILESS_MAIN(TestSettingsTextFile)
#include "tst_settings_textfile.moc"
