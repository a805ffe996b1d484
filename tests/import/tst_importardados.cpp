#include "import/CCImportarDados.h"

#include "host/CFxDocument.h"
#include "host/CFxSystemServices.h"
#include "host/CVRServices.h"
#include "host/HostBinding.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

#include <stdexcept>

// The importer's reading side: the file dialog, the settings file's own line rules, the rows
// it takes and skips, and the warnings it shows.
class tst_importardados : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void chooseFileAsksTheHostDialog();
    void chooseFileWithoutWorkingFolder();
    void chooseFileTranslatesTheFilterWordInItsOwnContext();
    void cancelledDialog();
    void missingSheet();
    void noRowBelowTheHeader();
    void readsTheListedColumns_data();
    void readsTheListedColumns();
    void rowWithoutFirstColumnIsSkipped();
    void columnListedTwice();
    void unknownColumn();
    void titleOutsideTheHeaderRow();
    void noFieldLines();
    void settingsFileMissing();
    void allRowsSkipped();
    void unreadableWorkbook_data();
    void unreadableWorkbook();
    void damageFoundWhileReading();
    void warningsAreTranslatedWhenShown();
    void exceptionIsLoggedAndThrownOn();

    void settingsLines_data();
    void settingsLines();
    void headerLines_data();
    void headerLines();
    void loadingAgainStartsAfresh();
};

namespace {

QString dataFile(const QString& name)
{
    return QStringLiteral(KV_TEST_DATA_DIR "/xlsx/") + name;
}

struct DialogCall
{
    int flag = -1;
    KVWindowId parent = 0;
    int mode = -1;
    KVString title;
    KVString defaultName;
    KVString filter;
    KVString initialFolder;
};

struct Message
{
    MessageKind kind;
    KVString title;
    KVString text;
};

class FakeSystemServices final : public CFxSystemServices
{
public:
    int FileDialog(int flag, KVString& path, KVWindowId parent, int mode, const KVString& title,
                   const KVString& defaultName, const KVString& filter,
                   const KVString& initialFolder, void*, void*, void*, int) override
    {
        dialogCalls.append({flag, parent, mode, title, defaultName, filter, initialFolder});
        if (throwFromDialog)
            throw std::runtime_error("the dialog failed");
        path = answerPath;
        return answerCode;
    }
    CFxResourceContext* GetResourceContext() override { return nullptr; }
    KVString GetMessageBoxTitle() override { return QStringLiteral("Host caption"); }
    int ShowMessageBox(MessageKind kind, KVWindowId, const KVString& title,
                       const KVString& text) override
    {
        messages.append({kind, title, text});
        return 1;
    }
    KVString GetTempFolder() override { return QDir::tempPath(); }

    KVString answerPath;
    int answerCode = KV_RESULT_OK;
    bool throwFromDialog = false;
    QList<DialogCall> dialogCalls;
    QList<Message> messages;
};

class FakeElectricalServices final : public CVRServices
{
public:
    CVRCommandManager* GetCommandManager() override { return nullptr; }
    CVRQueryResponse RunQuery(const std::shared_ptr<CVRQuery>&) override { return {}; }
    KVString GetCurrentLanguage() override { return QStringLiteral("1"); }
    QList<int> GetDescriptionLanguages() override { return {1}; }
    KVString GetWorkingFolder() override { return workingFolder; }
    KVString GetBaseFolder() override { return {}; }
    ILongOperationRunner* GetLongOperationRunner(CFxDocument*) override { return nullptr; }
    CVRQueryResponse GetComponentPropertyValue(const KVString&, const KVString&) override
    {
        return {};
    }
    KVString GetComponentBlockName(const KVString&, const KVString&) override { return {}; }

    KVString workingFolder = QStringLiteral("/work/folder");
};

class FakeDocument final : public CFxDocument
{
public:
    void SetLispResultString(const KVString&) override {}
    void WriteElectricalLog(const KVString& text) override { log.append(text); }

    QStringList log;
};

// Translates a few texts, each only in the context it belongs to.
class ContextTranslator final : public QTranslator
{
public:
    QString translate(const char* context, const char* sourceText, const char*, int) const override
    {
        const QString key = QString::fromUtf8(context) + u'|' + QString::fromUtf8(sourceText);
        if (key == u"KVOfficeSystem|Worksheet Files")
            return QStringLiteral("Planilhas");
        if (key == u"KVInsertAuto|Worksheet Files")
            return QStringLiteral("WRONG CONTEXT");
        if (key == u"KVInsertAuto|Error loading data from spreadsheet.")
            return QStringLiteral("Erro ao carregar dados da planilha.");
        return {};
    }
    bool isEmpty() const override { return false; }
};

const QByteArray kHeader = "G1\r\nG2\r\n0,0\r\n5\r\n1\r\n300\r\n0\r\n";

} // namespace

// The host pieces the importer reaches, installed for one test.
struct ImportHost
{
    FakeSystemServices system;
    FakeElectricalServices electrical;
    FakeDocument document;
    std::unique_ptr<ScopedHostBinding> binding;
};

namespace {
ImportHost* g_host = nullptr;
QTemporaryDir* g_folder = nullptr;

// Writes a settings file with these exact bytes and returns its path.
QString writeSettings(const QByteArray& bytes)
{
    const QString path = g_folder->filePath(QStringLiteral("settings.cfa"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        qFatal("cannot write %s", qPrintable(path));
    file.write(bytes);
    return path;
}

QStringList messageTexts()
{
    QStringList texts;
    for (const Message& message : std::as_const(g_host->system.messages))
        texts.append(message.text);
    return texts;
}

// An importer on `workbook` (in the test data) and settings with these field lines.
bool import(CCImportarDados& importer, const QString& workbook, const QByteArray& fieldLines)
{
    importer.SetSettingsPath(writeSettings(kHeader + fieldLines));
    g_host->system.answerPath = dataFile(workbook);
    return importer.Importar();
}
} // namespace

void tst_importardados::init()
{
    // The settings files are read in UTF-8 whatever the machine's locale.
    qputenv("KVINSERTAUTO_SETTINGS_ENCODING", "UTF-8");
    g_folder = new QTemporaryDir;
    QVERIFY(g_folder->isValid());
    g_host = new ImportHost;
    HostBinding binding;
    binding.system = &g_host->system;
    binding.electrical = &g_host->electrical;
    binding.document = &g_host->document;
    binding.mainWindow = 77;
    g_host->binding = std::make_unique<ScopedHostBinding>(binding);
}

void tst_importardados::cleanup()
{
    delete g_host;
    g_host = nullptr;
    delete g_folder;
    g_folder = nullptr;
}

void tst_importardados::chooseFileAsksTheHostDialog()
{
    CCImportarDados importer;
    g_host->system.answerPath = QStringLiteral("/chosen/list.xlsx");
    QCOMPARE(importer.ChooseFile(), QStringLiteral("/chosen/list.xlsx"));
    QCOMPARE(g_host->system.dialogCalls.size(), 1);
    const DialogCall call = g_host->system.dialogCalls.first();
    QCOMPARE(call.mode, 2); // open an existing file
    QCOMPARE(call.parent, KVWindowId(77));
    QCOMPARE(call.filter,
             QStringLiteral("Worksheet Files (*.xlsx)&*.xlsx&Worksheet Files (*.xlsm)&*.xlsm&&"));
    QCOMPARE(call.initialFolder, QStringLiteral("/work/folder/Automatic Insertion"));
    QCOMPARE(call.title, QString());
    QCOMPARE(call.defaultName, QString());

    // Any answer but the normal one is a cancel, whatever path the dialog left behind.
    g_host->system.answerCode = 5101;
    QCOMPARE(importer.ChooseFile(), QString());
    g_host->system.answerCode = 0;
    QCOMPARE(importer.ChooseFile(), QString());
}

void tst_importardados::chooseFileWithoutWorkingFolder()
{
    g_host->electrical.workingFolder.clear();
    CCImportarDados importer;
    importer.ChooseFile();
    QCOMPARE(g_host->system.dialogCalls.first().initialFolder, QString());
}

void tst_importardados::chooseFileTranslatesTheFilterWordInItsOwnContext()
{
    ContextTranslator translator;
    QCoreApplication::installTranslator(&translator);
    CCImportarDados importer;
    importer.ChooseFile();
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(g_host->system.dialogCalls.first().filter,
             QStringLiteral("Planilhas (*.xlsx)&*.xlsx&Planilhas (*.xlsm)&*.xlsm&&"));
}

void tst_importardados::cancelledDialog()
{
    CCImportarDados importer;
    importer.SetSettingsPath(writeSettings(kHeader + "ITEM;A;P;S;"));
    g_host->system.answerCode = 2;
    g_host->system.answerPath = dataFile(QStringLiteral("import-openpyxl.xlsx"));
    QVERIFY(!importer.Importar());
    QVERIFY(g_host->system.messages.isEmpty());
    QCOMPARE(importer.filePath(), QString());
    QVERIFY(!importer.excel());
    QVERIFY(importer.values().isEmpty());
}

void tst_importardados::missingSheet()
{
    CCImportarDados importer;
    QVERIFY(!import(importer, QStringLiteral("import-no-sheet1.xlsx"), "ITEM;A;P;S;"));
    QVERIFY(g_host->system.messages.isEmpty());
    QVERIFY(importer.values().isEmpty());
    // The settings are read only once the sheet is known to be there.
    QVERIFY(importer.columns().isEmpty());
}

void tst_importardados::noRowBelowTheHeader()
{
    CCImportarDados importer;
    QVERIFY(!import(importer, QStringLiteral("import-header-only.xlsx"), "ITEM;A;P;S;"));
    QVERIFY(g_host->system.messages.isEmpty());
    QCOMPARE(importer.excel()->VerifyRowCount(QStringLiteral("Sheet1")), 11);
    QCOMPARE(importer.columns(), QStringList{QStringLiteral("ITEM")});
}

void tst_importardados::readsTheListedColumns_data()
{
    QTest::addColumn<QString>("workbook");
    QTest::newRow("openpyxl") << "import-openpyxl.xlsx";
    QTest::newRow("xlsxwriter") << "import-xlsxwriter.xlsx";
}

void tst_importardados::readsTheListedColumns()
{
    QFETCH(QString, workbook);
    CCImportarDados importer;
    QCOMPARE(importer.headerRow(), 11);
    QVERIFY(import(importer, workbook,
                   "ITEM; ;ITEM;S;\r\nREF;Reference;REF=;N;\r\nDESCRIPTION;DESC; ;S;"));
    QVERIFY(g_host->system.messages.isEmpty());
    QCOMPARE(importer.filePath(), dataFile(workbook));
    QCOMPARE(importer.columns(), (QStringList{"ITEM", "REF", "DESCRIPTION"}));
    // Rows 12, 14, 16 and 17 as a person counts them; 13 has no item and 15 is missing.
    // Cell texts are taken as they stand, blanks and case kept.
    const QStringList expected = {
        "1", "3RT2015", "Contactor", "2", "12.7", "Motor \"big\"",
        "3", "",        "Lamp",      "4", "",     "  Blanks and Case kept  "};
    QCOMPARE(importer.values(), expected);
    QCOMPARE(importer.values().size() % importer.columns().size(), 0);
}

void tst_importardados::rowWithoutFirstColumnIsSkipped()
{
    // Row 13 has a description, a code, a reference and a note, but no item number.
    CCImportarDados importer;
    QVERIFY(import(importer, QStringLiteral("import-openpyxl.xlsx"),
                   "ITEM;I;I;S;\r\nCODE;C;C;S;\r\nNOTE;N;N;S;"));
    QCOMPARE(importer.values(),
             (QStringList{"1", "K1", "", "2", "M1", "note", "3", "", "", "4", "k3", ""}));
    QVERIFY(!importer.values().contains(QStringLiteral("K2")));

    // The first listed column decides, whichever it is: with the code first, row 13 is taken
    // with its empty item number, and row 16 (no code) is skipped.
    CCImportarDados byCode;
    QVERIFY(import(byCode, QStringLiteral("import-openpyxl.xlsx"), "CODE;C;C;S;\r\nITEM;I;I;S;"));
    QCOMPARE(byCode.values(), (QStringList{"K1", "1", "K2", "", "M1", "2", "k3", "4"}));
}

void tst_importardados::columnListedTwice()
{
    CCImportarDados importer;
    QVERIFY(import(importer, QStringLiteral("import-openpyxl.xlsx"),
                   "ITEM;I;I;S;\r\nCODE;C;C;N;\r\nITEM;J;J;N;"));
    QCOMPARE(importer.values(),
             (QStringList{"1", "K1", "1", "2", "M1", "2", "3", "", "3", "4", "k3", "4"}));
}

void tst_importardados::unknownColumn()
{
    CCImportarDados importer;
    QVERIFY(!import(importer, QStringLiteral("import-openpyxl.xlsx"),
                    "ITEM;I;I;S;\r\n  MISSING  ;M;M;N;"));
    QCOMPARE(messageTexts(),
             QStringList{QStringLiteral("Error loading data from spreadsheet. MISSING")});
    const Message message = g_host->system.messages.first();
    QCOMPARE(message.kind, MessageKind::Warning);
    QCOMPARE(message.title, QStringLiteral("Host caption"));
    // What was read before the warning stays.
    QCOMPARE(importer.values(), QStringList{QStringLiteral("1")});
}

void tst_importardados::titleOutsideTheHeaderRow()
{
    // "ELSEWHERE" is a title in row 5; only row 11 holds the titles.
    CCImportarDados importer;
    QVERIFY(!import(importer, QStringLiteral("import-xlsxwriter.xlsx"), "ELSEWHERE;E;E;S;"));
    QCOMPARE(messageTexts(),
             QStringList{QStringLiteral("Error loading data from spreadsheet. ELSEWHERE")});
    QVERIFY(importer.values().isEmpty());
}

void tst_importardados::noFieldLines()
{
    CCImportarDados importer;
    QVERIFY(!import(importer, QStringLiteral("import-openpyxl.xlsx"), QByteArray()));
    QCOMPARE(messageTexts(), QStringList{QStringLiteral("Error loading data from spreadsheet.")});
    QCOMPARE(importer.separatorMode(), QStringLiteral("1"));
}

void tst_importardados::settingsFileMissing()
{
    CCImportarDados importer;
    importer.SetSettingsPath(g_folder->filePath(QStringLiteral("missing.cfa")));
    g_host->system.answerPath = dataFile(QStringLiteral("import-openpyxl.xlsx"));
    QVERIFY(!importer.Importar());
    QCOMPARE(messageTexts(), QStringList{QStringLiteral("Error loading data from spreadsheet.")});
    QCOMPARE(importer.gapBeforeVar(), QString());
    QCOMPARE(importer.pageMode(), QString());
    QVERIFY(importer.columns().isEmpty());
}

void tst_importardados::allRowsSkipped()
{
    CCImportarDados importer;
    QVERIFY(
        import(importer, QStringLiteral("import-all-skipped.xlsx"), "ITEM;I;I;S;\r\nCODE;C;C;S;"));
    QVERIFY(g_host->system.messages.isEmpty());
    QVERIFY(importer.values().isEmpty());
}

void tst_importardados::unreadableWorkbook_data()
{
    QTest::addColumn<QString>("workbook");
    QTest::addColumn<QString>("problem");
    QTest::newRow("not a zip") << "hostile-not-a-zip.xlsx"
                               << "it is not a zip archive";
    QTest::newRow("truncated") << "hostile-truncated.xlsx"
                               << "not a zip archive";
    QTest::newRow("damaged sheet") << "hostile-garbage-sheet.xlsx"
                                   << "is not well-formed XML";
    QTest::newRow("missing sheet part") << "hostile-missing-sheet-part.xlsx"
                                        << "part xl/worksheets/sheet1.xml is missing";
    QTest::newRow("file gone") << "no-such-file.xlsx"
                               << "the file does not exist";
}

void tst_importardados::unreadableWorkbook()
{
    QFETCH(QString, workbook);
    QFETCH(QString, problem);
    CCImportarDados importer;
    QVERIFY(!import(importer, workbook, "ITEM;I;I;S;"));
    QCOMPARE(g_host->system.messages.size(), 1);
    const Message message = g_host->system.messages.first();
    QCOMPARE(message.kind, MessageKind::Warning);
    QVERIFY2(message.text.contains(QDir::toNativeSeparators(dataFile(workbook))),
             qPrintable(message.text));
    QVERIFY2(message.text.contains(problem), qPrintable(message.text));
    QCOMPARE(message.text, importer.excel()->error().message());
    QVERIFY(importer.values().isEmpty());
}

void tst_importardados::damageFoundWhileReading()
{
    // Row 12 reads; row 13 refers to a shared string that does not exist, which is found as
    // soon as row 13 is read, before any of its values is taken.
    CCImportarDados importer;
    QVERIFY(
        !import(importer, QStringLiteral("import-damaged-row.xlsx"), "ITEM;I;I;S;\r\nCODE;C;C;S;"));
    QCOMPARE(g_host->system.messages.size(), 1);
    const QString text = g_host->system.messages.first().text;
    QVERIFY2(text.contains(u"import-damaged-row.xlsx"), qPrintable(text));
    QVERIFY2(text.contains(u"refers to shared string \"99\""), qPrintable(text));
    QCOMPARE(importer.values(), (QStringList{"1", "10"}));
}

void tst_importardados::warningsAreTranslatedWhenShown()
{
    ContextTranslator translator;
    QCoreApplication::installTranslator(&translator);
    CCImportarDados importer;
    const bool result =
        import(importer, QStringLiteral("import-openpyxl.xlsx"), "NOT THERE;N;N;S;");
    QCoreApplication::removeTranslator(&translator);
    QVERIFY(!result);
    QCOMPARE(messageTexts(),
             QStringList{QStringLiteral("Erro ao carregar dados da planilha. NOT THERE")});
}

void tst_importardados::exceptionIsLoggedAndThrownOn()
{
    CCImportarDados importer;
    importer.SetSettingsPath(writeSettings(kHeader + "ITEM;I;I;S;"));
    g_host->system.throwFromDialog = true;
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, importer.Importar());
    QCOMPARE(g_host->document.log,
             QStringList{QStringLiteral("CCImportarDados::Importar : the dialog failed")});
    QVERIFY(g_host->system.messages.isEmpty());
}

void tst_importardados::settingsLines_data()
{
    QTest::addColumn<QByteArray>("fieldLines");
    QTest::addColumn<QStringList>("columns");
    QTest::addColumn<QStringList>("searchProps");
    QTest::addColumn<QStringList>("showFlags");
    QTest::addColumn<QString>("lispFieldList");

    QTest::newRow("as the settings dialog writes them")
        << QByteArray("ITEM; ;ITEM;S;\r\nREF;Reference;REF=;N;") << QStringList{"ITEM", "REF"}
        << QStringList{"ITEM", "REF="} << QStringList{"S", "N"}
        << "(cons \"ITEM\" \" \") (cons \"REF\" \"Reference\") ";
    QTest::newRow("empty second field shifts the arrays")
        << QByteArray("NAME;;PROP;S\r\nNEXT;A;P;N;") << QStringList{"NAME", "NEXT"}
        << QStringList{"S\n", "P"} << QStringList{"N"}
        << "(cons \"NAME\" \"PROP\") (cons \"NEXT\" \"A\") ";
    QTest::newRow("empty second field on the last line")
        << QByteArray("NAME;;PROP;S;") << QStringList{"NAME"} << QStringList{"S"} << QStringList{}
        << "(cons \"NAME\" \"PROP\") ";
    QTest::newRow("only field 1 leaves the pair open")
        << QByteArray("ONLY") << QStringList{"ONLY"} << QStringList{} << QStringList{}
        << "(cons \"ONLY\" ";
    QTest::newRow("only field 1 before another line")
        << QByteArray("ONLY\r\nNEXT;A;P;S;") << QStringList{"ONLY", "NEXT"} << QStringList{"P"}
        << QStringList{"S"} << "(cons \"ONLY\" (cons \"NEXT\" \"A\") ";
    QTest::newRow("no closing separator keeps the line end in the show flag")
        << QByteArray("ITEM;A;P;S\r\nNEXT;B;Q;S;") << QStringList{"ITEM", "NEXT"}
        << QStringList{"P", "Q"} << QStringList{"S\n", "S"}
        << "(cons \"ITEM\" \"A\") (cons \"NEXT\" \"B\") ";
    QTest::newRow("blank line ignored")
        << QByteArray("A;B;C;S;\r\n\r\n   \r\nD;E;F;N;") << QStringList{"A", "D"}
        << QStringList{"C", "F"} << QStringList{"S", "N"}
        << "(cons \"A\" \"B\") (cons \"D\" \"E\") ";
    QTest::newRow("double quotes become apostrophes in the list only")
        << QByteArray("T\"1;A\"2;P;S;") << QStringList{"T\"1"} << QStringList{"P"}
        << QStringList{"S"} << "(cons \"T'1\" \"A'2\") ";
    QTest::newRow("field 1 trimmed, the others not")
        << QByteArray("  ITEM\t; Attr ; Prop ; S ;") << QStringList{"ITEM"} << QStringList{" Prop "}
        << QStringList{" S "} << "(cons \"ITEM\" \" Attr \") ";
    QTest::newRow("leading and doubled separators")
        << QByteArray(";;ITEM;;A;P;S;extra;more;") << QStringList{"ITEM"} << QStringList{"P"}
        << QStringList{"S"} << "(cons \"ITEM\" \"A\") ";
    QTest::newRow("blank first field ignores the line")
        << QByteArray(" ;A;P;S;\r\nITEM;B;Q;N;") << QStringList{"ITEM"} << QStringList{"Q"}
        << QStringList{"N"} << "(cons \"ITEM\" \"B\") ";
    {
        // 598 characters: the first 511 (up to ";AAAA;") are one line, the rest another.
        const QByteArray longLine = QByteArray(505, 'X') + ";AAAA;PPPP;S;" + QByteArray(80, 'Z');
        const QString xs(505, u'X');
        QTest::newRow("a line longer than 511 characters is cut")
            << longLine << QStringList{xs, "PPPP"} << QStringList{QString(80, u'Z')}
            << QStringList{} << "(cons \"" + xs + "\" \"AAAA\") (cons \"PPPP\" \"S\") ";
    }
}

void tst_importardados::settingsLines()
{
    QFETCH(QByteArray, fieldLines);
    CCImportarDados importer;
    importer.SetSettingsPath(writeSettings(kHeader + fieldLines));
    importer.LoadSettings();
    QTEST(QStringList(importer.columns()), "columns");
    QTEST(QStringList(importer.searchProps()), "searchProps");
    QTEST(QStringList(importer.showFlags()), "showFlags");
    QTEST(QString(importer.lispFieldList()), "lispFieldList");
    QCOMPARE(importer.pageMode(), QStringLiteral("0"));
}

void tst_importardados::headerLines_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("headers"); // the seven texts in file order

    QTest::newRow("stored whole, blanks kept")
        << QByteArray(" GAP \r\nB\r\n10,20\r\n5\r\n2\r\n300\r\n1\r\n")
        << QStringList{" GAP ", "B", "10,20", "5", "2", "300", "1"};
    QTest::newRow("a blank line stores an empty text")
        << QByteArray("A\r\n\r\n10,20\r\n5\r\n2\r\n300\r\n1\r\n")
        << QStringList{"A", "", "10,20", "5", "2", "300", "1"};
    QTest::newRow("the last line without a line end loses its last character")
        << QByteArray("A\r\nB\r\n10,20\r\n5\r\n2\r\n300")
        << QStringList{"A", "B", "10,20", "5", "2", "30", ""};
    QTest::newRow("seventh line last without a line end")
        << QByteArray("A\r\nB\r\n10,20\r\n5\r\n2\r\n300\r\n12")
        << QStringList{"A", "B", "10,20", "5", "2", "300", "1"};
    QTest::newRow("fewer than seven lines")
        << QByteArray("A\r\nB\r\n") << QStringList{"A", "B", "", "", "", "", ""};
    QTest::newRow("empty file") << QByteArray() << QStringList{"", "", "", "", "", "", ""};
}

void tst_importardados::headerLines()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, headers);
    CCImportarDados importer;
    importer.SetSettingsPath(writeSettings(bytes));
    importer.LoadSettings();
    const QStringList read = {importer.gapBeforeVar(),  importer.gapAfterVar(),
                              importer.startPoint(),    importer.spaceWidth(),
                              importer.separatorMode(), importer.pageSize(),
                              importer.pageMode()};
    QCOMPARE(read, headers);
    QVERIFY(importer.columns().isEmpty());
    QCOMPARE(importer.lispFieldList(), QString());
}

void tst_importardados::loadingAgainStartsAfresh()
{
    CCImportarDados importer;
    importer.SetSettingsPath(writeSettings(kHeader + "A;B;C;S;"));
    importer.LoadSettings();
    QCOMPARE(importer.lispFieldList(), QStringLiteral("(cons \"A\" \"B\") "));
    importer.SetSettingsPath(writeSettings("X\r\nY\r\n1,1\r\n2\r\n3\r\n4\r\n5\r\nD;E;F;N;"));
    importer.LoadSettings();
    // The list is built afresh and the header texts are replaced.
    QCOMPARE(importer.lispFieldList(), QStringLiteral("(cons \"D\" \"E\") "));
    QCOMPARE(importer.gapBeforeVar(), QStringLiteral("X"));
    QCOMPARE(importer.pageMode(), QStringLiteral("5"));
}

QTEST_GUILESS_MAIN(tst_importardados)
#include "tst_importardados.moc"
