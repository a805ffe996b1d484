#include "RecordingSystemServices.h"
#include "SettingsTestSupport.h"
#include "host/HostBinding.h"
#include "settings/CEArquivoCfg.h"
#include "settings/SettingsFiles.h"
#include "settings/SettingsWriter.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <memory>

using namespace SettingsTestSupport;

namespace {

const QByteArray kHeader = "GAP_BEFORE\r\nGAP_AFTER\r\n10,20\r\n5\r\n1\r\n8\r\n0";
const QStringList kHeaderTexts = {"GAP_BEFORE", "GAP_AFTER", "10,20", "5", "1", "8", "0"};

// Rows as compact texts, so that a whole list is compared at once.
QStringList describeFields(const CEArquivoCfg& file)
{
    QStringList rows;
    for (int i = 0; i < file.fieldCount(); ++i) {
        const CECampoCfg* row = file.field(i);
        rows.append(QStringList{row->fieldName(), row->attribute(), row->search(),
                                row->show() ? QStringLiteral("S") : QStringLiteral("N")}
                        .join(u'|'));
    }
    return rows;
}

QStringList describeRows(const CEArquivoCfg& file)
{
    QStringList rows;
    for (int i = 0; i < file.rowCount(); ++i) {
        const CECampoCfg* row = file.row(i);
        rows.append(
            QStringList{row->blockName(), row->storedPosition(), row->storedAngle()}.join(u'|'));
    }
    return rows;
}

QStringList headerTexts(const CEArquivoCfg& file)
{
    return {file.gapBeforeVar(),  file.gapAfterVar(), file.startPoint(), file.spaceWidth(),
            file.separatorMode(), file.pageSize(),    file.pageMode()};
}

// Translates "Yes" as a Portuguese host would.
class PortugueseYes final : public QTranslator
{
public:
    QString translate(const char* context, const char* sourceText, const char* = nullptr,
                      int = -1) const override
    {
        if (qstrcmp(context, "KVInsertAuto") == 0 && qstrcmp(sourceText, "Yes") == 0)
            return QStringLiteral("Sim");
        return {};
    }
    bool isEmpty() const override { return false; }
};

SettingsDialogContents goldenContents()
{
    SettingsDialogContents contents;
    contents.gapBeforeVar = QStringLiteral("GAP_BEFORE");
    contents.gapAfterVar = QStringLiteral(" GAP_AFTER "); // edit texts are written as they stand
    contents.startPoint = QStringLiteral("10,20");
    contents.spaceWidth = QString();
    contents.separatorIndex = 3;
    contents.pageSize = QStringLiteral("12");
    contents.paginationIndex = -1;
    contents.fields = {{" Tag ", "TAG", "TAG=", "Yes"},
                       {"NAME", "", "S", "No"},
                       {"Desc", "DESC", "  ", "yes"},
                       {"", "", "", ""}};
    contents.blocks = {{"LEGEND", "0,0", "0"}, {"NAME", "", "0"}, {" raw ", " 1,2 ", ""}};
    contents.symbols = {{"K1", "5,5", "90"}};
    return contents;
}

} // namespace

class TestSettingsFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    // Reading the main file.
    void readMainFile_data();
    void readMainFile();
    void longFieldLineBecomesTwoRows();
    void missingMainFileReadsAsEmpty();
    void closeReportsWhetherAFileWasOpen();

    // Reading a block or symbol file.
    void readListFile_data();
    void readListFile();
    void blankPlaceholdersReadAsDefaults();
    void listFileInMissingFolderReadsAsEmpty();

    // The three files together.
    void newSettingsFileCreatesCompanions();
    void capitalExtensionReadsOneFileThrice();
    void ensureCompanionFilesKeepsExistingOnes();

    // Writing.
    void writeGoldenFiles();
    void writeOverwritesLongerFiles();
    void emptyFieldListGivesSevenLines();
    void emptyAttributeRoundTrip();
    void emptyPointRoundTrip_data();
    void emptyPointRoundTrip();
    void showComparesWithTranslatedYes();
    void mainFileNotWritableWarnsAndLeavesBlockFileEmpty();
    void symbolFileNotWritableStopsSilently();
    void writeThenReadGivesTheContents();

private:
    QString path(const QString& name) const { return m_dir.filePath(name); }
    std::unique_ptr<CEArquivoCfg> readMain(const QByteArray& bytes);
    std::unique_ptr<CEArquivoCfg> readList(const QByteArray& bytes);

    QTemporaryDir m_dir;
    int m_fileNumber = 0;
};

void TestSettingsFiles::initTestCase()
{
    QVERIFY(m_dir.isValid());
    qunsetenv(SettingsEncoding::kEnvironmentVariable);
}

void TestSettingsFiles::init()
{
    ++m_fileNumber;
}

std::unique_ptr<CEArquivoCfg> TestSettingsFiles::readMain(const QByteArray& bytes)
{
    const QString file = path(QStringLiteral("main%1.cfa").arg(m_fileNumber));
    if (!writeBytes(file, bytes))
        return nullptr;
    auto arquivo = std::make_unique<CEArquivoCfg>();
    if (!arquivo->OpenMainFile(file))
        return nullptr;
    arquivo->ReadMainFile();
    if (arquivo->CloseMainFile() != 1)
        return nullptr;
    return arquivo;
}

std::unique_ptr<CEArquivoCfg> TestSettingsFiles::readList(const QByteArray& bytes)
{
    const QString file = path(QStringLiteral("list%1.cfb").arg(m_fileNumber));
    if (!writeBytes(file, bytes))
        return nullptr;
    auto arquivo = std::make_unique<CEArquivoCfg>();
    if (!arquivo->OpenListFile(file))
        return nullptr;
    arquivo->ReadListFile();
    if (arquivo->CloseListFile() != 1)
        return nullptr;
    return arquivo;
}

void TestSettingsFiles::readMainFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("header");
    QTest::addColumn<QStringList>("fields");

    const QStringList noHeader(7, QString());
    QTest::newRow("empty file") << QByteArray() << noHeader << QStringList();
    QTest::newRow("seven header lines only") << kHeader << kHeaderTexts << QStringList();
    QTest::newRow("fewer than seven lines")
        << QByteArray("A\r\nB\r\n1,2") << QStringList{"A", "B", "1,2", "", "", "", ""}
        << QStringList();
    QTest::newRow("six lines and a line end")
        << QByteArray("A\r\nB\r\nC\r\nD\r\nE\r\nF\r\n")
        << QStringList{"A", "B", "C", "D", "E", "F", ""} << QStringList();
    QTest::newRow("header lines trimmed")
        << QByteArray(" A \t\r\n\tB\r\n 1,2 \r\n5\r\n 0\r\n8 \r\n1\t")
        << QStringList{"A", "B", "1,2", "5", "0", "8", "1"} << QStringList();
    QTest::newRow("one field row")
        << kHeader + "\r\nTag;TAG;TAG=;S;" << kHeaderTexts << QStringList{"Tag|TAG|TAG=|S"};
    QTest::newRow("empty attribute written as a blank")
        << kHeader + "\r\nNAME; ;S;N;" << kHeaderTexts << QStringList{"NAME| |S|N"};
    QTest::newRow("line end after the last field row")
        << kHeader + "\r\nTag;TAG;TAG=;S;\r\n"
        << kHeaderTexts << QStringList{"Tag|TAG|TAG=|S", "Tag|TAG|TAG=|S"};
    QTest::newRow("line end after the seventh line") << kHeader + "\r\n"
                                                     << kHeaderTexts << QStringList{"|||N"};
    QTest::newRow("tokens not trimmed")
        << kHeader + "\r\nA; B ;\tC;S;" << kHeaderTexts << QStringList{"A| B |\tC|S"};
    QTest::newRow("show only for S")
        << kHeader + "\r\nA;B;C;s;\r\nA;B;C;Yes;\r\nA;B;C;S ;\r\nA;B;C;S;" << kHeaderTexts
        << QStringList{"A|B|C|N", "A|B|C|N", "A|B|C|N", "A|B|C|S"};
    QTest::newRow("missing tokens keep the previous row")
        << kHeader + "\r\nA;B;C;S;\r\nD;" << kHeaderTexts << QStringList{"A|B|C|S", "D|B|C|S"};
    QTest::newRow("empty cells vanish")
        << kHeader + "\r\nX;Y;Z;S;\r\nA;;C;N;" << kHeaderTexts << QStringList{"X|Y|Z|S", "A|C|N|S"};
    QTest::newRow("leading separators skipped")
        << kHeader + "\r\n;;A;B;C;S;" << kHeaderTexts << QStringList{"A|B|C|S"};
    QTest::newRow("further tokens ignored")
        << kHeader + "\r\nA;B;C;S;E;F;" << kHeaderTexts << QStringList{"A|B|C|S"};
    QTest::newRow("no final separator")
        << kHeader + "\r\nA;B;C;S" << kHeaderTexts << QStringList{"A|B|C|S"};
    QTest::newRow("blank line among field rows")
        << kHeader + "\r\nA;B;C;S;\r\n\r\nD;E;F;N;" << kHeaderTexts
        << QStringList{"A|B|C|S", "A|B|C|S", "D|E|F|N"};
    QTest::newRow("white space line among field rows")
        << kHeader + "\r\nA;B;C;S;\r\n \t \r\nD;E;F;N;" << kHeaderTexts
        << QStringList{"A|B|C|S", "A|B|C|S", "D|E|F|N"};
    QTest::newRow("LF line ends") << QByteArray(kHeader).replace("\r\n", "\n") +
                                         "\nA;B;C;S;\nD;E;F;N;"
                                  << kHeaderTexts << QStringList{"A|B|C|S", "D|E|F|N"};
}

void TestSettingsFiles::readMainFile()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, header);
    QFETCH(QStringList, fields);
    const auto file = readMain(bytes);
    QVERIFY(file);
    QCOMPARE(headerTexts(*file), header);
    QCOMPARE(describeFields(*file), fields);
    QCOMPARE(file->rowCount(), 0);
}

void TestSettingsFiles::longFieldLineBecomesTwoRows()
{
    // 300 + 1 + 291 + 8 = 600 characters: the first read stops after 511 of them, inside the
    // attribute, and the rest arrives as a line of its own.
    const QByteArray name(300, 'n');
    const QByteArray attribute(291, 'a');
    const QByteArray line = name + ';' + attribute + ";SRCH;S;";
    QCOMPARE(line.size(), 600);
    const auto file = readMain(kHeader + "\r\n" + line + "\r\nLast;L;;N;");
    QVERIFY(file);
    const QString firstAttribute(210, u'a');
    const QString secondName(81, u'a');
    QCOMPARE(describeFields(*file),
             QStringList({QString::fromLatin1(name) + u'|' + firstAttribute + "||N",
                          secondName + "|SRCH|S|N", "Last|L|N|N"}));
}

void TestSettingsFiles::missingMainFileReadsAsEmpty()
{
    const QString missing = path(QStringLiteral("missing.cfa"));
    CEArquivoCfg file;
    const SettingsFileStatus status = file.OpenMainFile(missing);
    QVERIFY(!status.ok());
    QVERIFY(status.error.contains(missing));
    file.ReadMainFile();
    QCOMPARE(file.CloseMainFile(), 0);
    QCOMPARE(headerTexts(file), QStringList(7, QString()));
    QCOMPARE(file.fieldCount(), 0);
    QVERIFY(!QFile::exists(missing));
}

void TestSettingsFiles::closeReportsWhetherAFileWasOpen()
{
    const QString cfa = path(QStringLiteral("close.cfa"));
    QVERIFY(writeBytes(cfa, kHeader));
    CEArquivoCfg file;
    QCOMPARE(file.CloseMainFile(), 0);
    QVERIFY(file.OpenMainFile(cfa).ok());
    QCOMPARE(file.CloseListFile(), 0);
    QCOMPARE(file.CloseMainFile(), 1);
    QCOMPARE(file.CloseMainFile(), 0);
    QVERIFY(file.OpenListFile(path(QStringLiteral("close.cfb"))).ok());
    QCOMPARE(file.CloseListFile(), 1);
    QCOMPARE(file.CloseListFile(), 0);
}

void TestSettingsFiles::readListFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("rows");

    QTest::newRow("empty file") << QByteArray() << QStringList{"...|0,0|0"};
    QTest::newRow("one row") << QByteArray("LEGEND;1,2;90;") << QStringList{"LEGEND|1,2|90"};
    QTest::newRow("empty point, first row") << QByteArray("NAME;;0;") << QStringList{"NAME|0|"};
    QTest::newRow("empty point after a row")
        << QByteArray("A;1,1;90;\r\nNAME;;0;") << QStringList{"A|1,1|90", "NAME|0|90"};
    QTest::newRow("line end after the last row")
        << QByteArray("A;1,1;90;\r\nB;2,2;0;\r\n") << QStringList{"A|1,1|90", "B|2,2|0", "B|2,2|0"};
    QTest::newRow("only a line end") << QByteArray("\r\n") << QStringList{"...|0,0|0", "...|0,0|0"};
    QTest::newRow("blank line before the first row")
        << QByteArray("\r\nA;1;2;") << QStringList{"...|0,0|0", "A|1|2"};
    QTest::newRow("blank line after a row keeps it")
        << QByteArray("A;1;2;\r\n\r\nB;3;4;") << QStringList{"A|1|2", "A|1|2", "B|3|4"};
    QTest::newRow("further tokens ignored") << QByteArray("A;1;2;X;Y;") << QStringList{"A|1|2"};
    QTest::newRow("cells not trimmed")
        << QByteArray("A; 1,2 ;\t90;") << QStringList{"A| 1,2 |\t90"};
    QTest::newRow("missing tokens keep the previous row")
        << QByteArray("A;1;2;\r\nB;") << QStringList{"A|1|2", "B|1|2"};
    QTest::newRow("LF line ends") << QByteArray("A;1;2;\nB;3;4;") << QStringList{"A|1|2", "B|3|4"};
}

void TestSettingsFiles::readListFile()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, rows);
    const auto file = readList(bytes);
    QVERIFY(file);
    QCOMPARE(describeRows(*file), rows);
    QCOMPARE(file->fieldCount(), 0);
    QCOMPARE(headerTexts(*file), QStringList(7, QString()));
}

void TestSettingsFiles::blankPlaceholdersReadAsDefaults()
{
    const auto file = readList("A; ; ;\r\nB;;;");
    QVERIFY(file);
    QCOMPARE(file->rowCount(), 2);
    QCOMPARE(QString(file->row(0)->position()), QStringLiteral("0,0"));
    QCOMPARE(QString(file->row(0)->angle()), QStringLiteral("0"));
    // "B;;;" has one token: the point and angle stay blank from the row before.
    QCOMPARE(QString(file->row(1)->blockName()), QStringLiteral("B"));
    QCOMPARE(QString(file->row(1)->position()), QStringLiteral("0,0"));
}

void TestSettingsFiles::listFileInMissingFolderReadsAsEmpty()
{
    const QString cfb = path(QStringLiteral("no-such-folder/set.cfb"));
    CEArquivoCfg file;
    const SettingsFileStatus status = file.OpenListFile(cfb);
    QVERIFY(!status.ok());
    QVERIFY2(status.error.contains(cfb), qPrintable(status.error));
    file.ReadListFile();
    QCOMPARE(file.CloseListFile(), 0);
    QCOMPARE(describeRows(file), QStringList{"...|0,0|0"});
}

void TestSettingsFiles::newSettingsFileCreatesCompanions()
{
    QDir folder(path(QStringLiteral("new")));
    QVERIFY(folder.mkpath(QStringLiteral(".")));
    const QString cfa = folder.filePath(QStringLiteral("set.cfa"));
    QVERIFY(writeBytes(cfa, QByteArray()));
    const QString cfb = folder.filePath(QStringLiteral("set.cfb"));
    const QString cfc = folder.filePath(QStringLiteral("set.cfc"));
    QVERIFY(!QFile::exists(cfb) && !QFile::exists(cfc));

    const SettingsFiles files = readSettingsFiles(cfa);
    QVERIFY2(files.errors.isEmpty(), qPrintable(files.errors.join(u'\n')));
    QCOMPARE(QString(files.cfbPath), cfb);
    QCOMPARE(QString(files.cfcPath), cfc);
    QVERIFY(QFile::exists(cfb) && QFile::exists(cfc));
    QCOMPARE(QFileInfo(cfb).size(), 0);
    QCOMPARE(QFileInfo(cfc).size(), 0);
    QCOMPARE(headerTexts(*files.main), QStringList(7, QString()));
    QCOMPARE(files.main->fieldCount(), 0);
    QCOMPARE(describeRows(*files.blocks), QStringList{"...|0,0|0"});
    QCOMPARE(describeRows(*files.symbols), QStringList{"...|0,0|0"});
    QCOMPARE(readBytes(cfa), QByteArray());
}

void TestSettingsFiles::capitalExtensionReadsOneFileThrice()
{
    const QString cfa = path(QStringLiteral("CAPITALS.CFA"));
    QVERIFY(writeBytes(cfa, kHeader + "\r\nTag;TAG;TAG=;S;"));
    const SettingsFiles files = readSettingsFiles(cfa);
    QCOMPARE(QString(files.cfbPath), cfa);
    QCOMPARE(QString(files.cfcPath), cfa);
    QVERIFY(!QFile::exists(path(QStringLiteral("CAPITALS.cfb"))));
    QCOMPARE(describeFields(*files.main), QStringList{"Tag|TAG|TAG=|S"});
    // The main file read as a list: each header line is a row of one token.
    QCOMPARE(files.blocks->rowCount(), 8);
    QCOMPARE(QString(files.blocks->row(0)->blockName()), QStringLiteral("GAP_BEFORE"));
    QCOMPARE(readBytes(cfa), kHeader + "\r\nTag;TAG;TAG=;S;");
}

void TestSettingsFiles::ensureCompanionFilesKeepsExistingOnes()
{
    const QString cfa = path(QStringLiteral("companions.cfa"));
    const QString cfb = path(QStringLiteral("companions.cfb"));
    const QString cfc = path(QStringLiteral("companions.cfc"));
    QVERIFY(writeBytes(cfb, "KEEP;0,0;0;"));
    QVERIFY(ensureCompanionFiles(cfa).ok());
    QCOMPARE(readBytes(cfb), QByteArray("KEEP;0,0;0;"));
    QVERIFY(QFile::exists(cfc));
    QCOMPARE(QFileInfo(cfc).size(), 0);
    QVERIFY(!QFile::exists(cfa));
    QVERIFY(!ensureCompanionFiles(path(QStringLiteral("missing/x.cfa"))).ok());
}

void TestSettingsFiles::writeGoldenFiles()
{
    const QString cfa = path(QStringLiteral("golden.cfa"));
    const SettingsWriteResult result = writeSettingsFiles(goldenContents(), cfa);
    QVERIFY2(result.error.isEmpty(), qPrintable(result.error));
    QVERIFY(result.mainWritten);
    QVERIFY(result.symbolsWritten);
    QCOMPARE(QString(result.cfaPath), cfa);
    QCOMPARE(QString(result.cfbPath), path(QStringLiteral("golden.cfb")));
    QCOMPARE(QString(result.cfcPath), path(QStringLiteral("golden.cfc")));
    const QString golden = QStringLiteral(KV_TEST_DATA_DIR "/settings/golden");
    for (const char* extension : {".cfa", ".cfb", ".cfc"}) {
        const QByteArray expected = readBytes(golden + QLatin1String(extension));
        QVERIFY(!expected.startsWith("<cannot read"));
        QCOMPARE(readBytes(path(QStringLiteral("golden")) + QLatin1String(extension)), expected);
    }
}

void TestSettingsFiles::writeOverwritesLongerFiles()
{
    const QString cfa = path(QStringLiteral("over.cfa"));
    const QByteArray old(4000, 'z');
    for (const char* name : {"over.cfa", "over.cfb", "over.cfc"})
        QVERIFY(writeBytes(path(QLatin1String(name)), old));
    SettingsDialogContents contents;
    contents.symbols = {{"K1", "1,1", "0"}};
    QVERIFY(writeSettingsFiles(contents, cfa).symbolsWritten);
    QCOMPARE(readBytes(cfa), QByteArray("\r\n\r\n\r\n\r\n-1\r\n\r\n-1"));
    QCOMPARE(readBytes(path(QStringLiteral("over.cfb"))), QByteArray());
    QCOMPARE(readBytes(path(QStringLiteral("over.cfc"))), QByteArray("K1;1,1;0;"));
}

void TestSettingsFiles::emptyFieldListGivesSevenLines()
{
    SettingsDialogContents contents;
    contents.gapBeforeVar = QStringLiteral("GAP_BEFORE");
    contents.gapAfterVar = QStringLiteral("GAP_AFTER");
    contents.startPoint = QStringLiteral("10,20");
    contents.spaceWidth = QStringLiteral("5");
    contents.separatorIndex = 1;
    contents.pageSize = QStringLiteral("8");
    contents.paginationIndex = 0;
    const QString cfa = path(QStringLiteral("seven.cfa"));
    QVERIFY(writeSettingsFiles(contents, cfa).symbolsWritten);
    QCOMPARE(readBytes(cfa), kHeader);
    QCOMPARE(readBytes(path(QStringLiteral("seven.cfb"))), QByteArray());
    QCOMPARE(readBytes(path(QStringLiteral("seven.cfc"))), QByteArray());
}

void TestSettingsFiles::emptyAttributeRoundTrip()
{
    SettingsDialogContents contents;
    contents.fields = {{"NAME", "", "S", "No"}};
    const QString cfa = path(QStringLiteral("attribute.cfa"));
    QVERIFY(writeSettingsFiles(contents, cfa).mainWritten);
    QVERIFY(readBytes(cfa).endsWith("\r\n-1\r\nNAME; ;S;N;"));
    const SettingsFiles files = readSettingsFiles(cfa);
    QCOMPARE(describeFields(*files.main), QStringList{"NAME| |S|N"});
    QCOMPARE(QString(files.main->field(0)->attribute()), QStringLiteral(" "));
}

void TestSettingsFiles::emptyPointRoundTrip_data()
{
    QTest::addColumn<QList<QStringList>>("blocks");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("rows");
    QTest::newRow("first row") << QList<QStringList>{{"NAME", "", "0"}} << QByteArray("NAME;;0;")
                               << QStringList{"NAME|0|"};
    QTest::newRow("after a row") << QList<QStringList>{{"A", "1,1", "90"}, {"NAME", "", "0"}}
                                 << QByteArray("A;1,1;90;\r\nNAME;;0;")
                                 << QStringList{"A|1,1|90", "NAME|0|90"};
}

void TestSettingsFiles::emptyPointRoundTrip()
{
    QFETCH(QList<QStringList>, blocks);
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, rows);
    SettingsDialogContents contents;
    for (const QStringList& cells : blocks)
        contents.blocks.append({cells.at(0), cells.at(1), cells.at(2)});
    const QString cfa = path(QStringLiteral("point%1.cfa").arg(m_fileNumber));
    QVERIFY(writeSettingsFiles(contents, cfa).symbolsWritten);
    const QString cfb = path(QStringLiteral("point%1.cfb").arg(m_fileNumber));
    QCOMPARE(readBytes(cfb), bytes);
    const SettingsFiles files = readSettingsFiles(cfa);
    QCOMPARE(describeRows(*files.blocks), rows);
}

void TestSettingsFiles::showComparesWithTranslatedYes()
{
    PortugueseYes translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    SettingsDialogContents contents;
    contents.fields = {{"A", "A", "", "Sim"}, {"B", "B", "", "SIM"}, {"C", "C", "", "Yes"}};
    const QString cfa = path(QStringLiteral("translated.cfa"));
    const bool written = writeSettingsFiles(contents, cfa).mainWritten;
    QCoreApplication::removeTranslator(&translator);
    QVERIFY(written);
    QVERIFY2(readBytes(cfa).endsWith("\r\nA;A; ;S;\r\nB;B; ;S;\r\nC;C; ;N;"), readBytes(cfa));
}

void TestSettingsFiles::mainFileNotWritableWarnsAndLeavesBlockFileEmpty()
{
    RecordingSystemServices system;
    HostBinding binding;
    binding.system = &system;
    binding.mainWindow = 42;
    ScopedHostBinding host(binding);

    // The .cfa is a folder, so it cannot be opened for writing.
    const QString cfa = path(QStringLiteral("folder.cfa"));
    QVERIFY(QDir().mkpath(cfa));
    const QString cfb = path(QStringLiteral("folder.cfb"));
    const QString cfc = path(QStringLiteral("folder.cfc"));
    QVERIFY(writeBytes(cfb, "OLD;0,0;0;"));
    QVERIFY(writeBytes(cfc, "KEPT;0,0;0;"));

    const SettingsWriteResult result = writeSettingsFiles(goldenContents(), cfa);
    QVERIFY(!result.mainWritten);
    QVERIFY(!result.symbolsWritten);
    QVERIFY(result.cfaPath.isEmpty() && result.cfbPath.isEmpty() && result.cfcPath.isEmpty());
    QVERIFY2(result.error.contains(cfa), qPrintable(result.error));

    QCOMPARE(system.messages.size(), 1);
    const RecordingSystemServices::Message& message = system.messages.first();
    QCOMPARE(message.kind, MessageKind::Warning);
    QCOMPARE(message.parent, KVWindowId(42));
    QCOMPARE(message.title, QStringLiteral("Test host"));
    QCOMPARE(message.text, QStringLiteral("Error saving settings file."));

    QCOMPARE(readBytes(cfb), QByteArray()); // opened first, then left empty
    QCOMPARE(readBytes(cfc), QByteArray("KEPT;0,0;0;"));
    QVERIFY(QFileInfo(cfa).isDir());
}

void TestSettingsFiles::symbolFileNotWritableStopsSilently()
{
    RecordingSystemServices system;
    HostBinding binding;
    binding.system = &system;
    ScopedHostBinding host(binding);

    const QString cfa = path(QStringLiteral("nosymbols.cfa"));
    const QString cfc = path(QStringLiteral("nosymbols.cfc"));
    QVERIFY(QDir().mkpath(cfc));
    const SettingsWriteResult result = writeSettingsFiles(goldenContents(), cfa);
    QVERIFY(result.mainWritten);
    QVERIFY(!result.symbolsWritten);
    QCOMPARE(QString(result.cfaPath), cfa);
    QCOMPARE(QString(result.cfbPath), path(QStringLiteral("nosymbols.cfb")));
    QVERIFY(result.cfcPath.isEmpty());
    QVERIFY(system.messages.isEmpty());
    const QString golden = QStringLiteral(KV_TEST_DATA_DIR "/settings/golden");
    QCOMPARE(readBytes(cfa), readBytes(golden + ".cfa"));
    QCOMPARE(readBytes(path(QStringLiteral("nosymbols.cfb"))), readBytes(golden + ".cfb"));
}

void TestSettingsFiles::writeThenReadGivesTheContents()
{
    SettingsDialogContents contents;
    contents.gapBeforeVar = QStringLiteral("*GAP_BEFORE*");
    contents.gapAfterVar = QStringLiteral("*GAP_AFTER*");
    contents.startPoint = QStringLiteral("30,250,0");
    contents.spaceWidth = QStringLiteral("12.5");
    contents.separatorIndex = 4;
    contents.pageSize = QStringLiteral("380");
    contents.paginationIndex = 1;
    contents.fields = {{"ITEM", "TAG", "TAG=", "Yes"}, {"Description", "DESC", "", "No"}};
    contents.blocks = {{"FRAME", "0,0", "0"}, {"LOGO", "10,5", "90"}};
    contents.symbols = {{"KV-123", "100,100", "0"}};
    const QString cfa = path(QStringLiteral("roundtrip.cfa"));
    QVERIFY(writeSettingsFiles(contents, cfa).symbolsWritten);

    const SettingsFiles files = readSettingsFiles(cfa);
    QVERIFY(files.errors.isEmpty());
    QCOMPARE(headerTexts(*files.main),
             QStringList({"*GAP_BEFORE*", "*GAP_AFTER*", "30,250,0", "12.5", "4", "380", "1"}));
    QCOMPARE(describeFields(*files.main), QStringList({"ITEM|TAG|TAG=|S", "Description|DESC| |N"}));
    QCOMPARE(describeRows(*files.blocks), QStringList({"FRAME|0,0|0", "LOGO|10,5|90"}));
    QCOMPARE(describeRows(*files.symbols), QStringList({"KV-123|100,100|0"}));
}

QTEST_GUILESS_MAIN(TestSettingsFiles)
#include "tst_settings_files.moc"
