#include "DialogTestSupport.h"
#include "FakePalette.h"
#include "common/TestHost.h"

#include "settings/SettingsWriter.h"
#include "settingsui/CIConfigAuto.h"
#include "settingsui/IDlgComps.h"
#include "settingsui/widgets/CIListViewEdit.h"
#include "settingsui/widgets/CITreeSimbolosPopup.h"

#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace DialogTest;
using ListView::CIListViewEdit;

namespace {

const QByteArray kCfa = "PREV\r\nNEXT\r\n40,200\r\n10\r\n1\r\n380\r\n1\r\n"
                        "ITEM;ITEM; ;N;\r\n"
                        "TAG;TAG;=KV_TAG;S;";
const QByteArray kCfb = "TITLE;0,0;0;\r\nLEGEND;10,20;90;";
const QByteArray kCfc = "1001;100,50;0;";

// The host the dialog runs against: the recording fakes, a palette, a working folder, a base
// folder and the standard in use.
struct Host
{
    TestHost test;
    FakePalette palette;
    std::unique_ptr<ScopedHostBinding> installed;

    Host()
    {
        test.electrical().setWorkingFolder("/home/user/kv");
        test.electrical().setBaseFolder("N:\\KV\\");
        test.cad().setVar("*NORMA_UTILIZADA*", "IEC");
        palette.selected = CENorma("IEC", "IEC");
        palette.build = [](const CENorma&) { return FakePalette::sampleTree(); };
        HostBinding binding = test.binding();
        binding.palette = &palette;
        installed = std::make_unique<ScopedHostBinding>(binding);
    }
    FakeSystemServices& system() { return test.system(); }
    QString path(const QString& name) const { return test.path(name); }

    // Writes the three example files under `name` and returns the .cfa path.
    QString writeExample(const QString& name = "example")
    {
        const QString cfa = path(name + ".cfa");
        writeFile(cfa, kCfa);
        writeFile(path(name + ".cfb"), kCfb);
        writeFile(path(name + ".cfc"), kCfc);
        return cfa;
    }
};

template <typename T> T* control(const QWidget& dialog, const char* id)
{
    T* widget = dialog.findChild<T*>(QString::fromLatin1(id));
    if (!widget)
        qWarning("no control %s", id);
    return widget;
}

CIListViewEdit* list(const QWidget& dialog, const char* id)
{
    return control<CIListViewEdit>(dialog, id);
}

void click(const QWidget& dialog, const char* id)
{
    QTest::mouseClick(control<QPushButton>(dialog, id), Qt::LeftButton);
}

QStringList line(const CIListViewEdit* list, int row)
{
    QStringList cells;
    for (int column = 0; column < list->GetColumnCount(); ++column)
        cells << list->GetCellText(row, column);
    return cells;
}

bool showDialog(CIConfigAuto& dialog)
{
    dialog.show();
    dialog.activateWindow();
    return QTest::qWaitForWindowActive(&dialog);
}

// Replaces the text of an edit box the way a user does.
void retype(QLineEdit* box, const QString& text)
{
    QTest::mouseClick(box, Qt::LeftButton);
    QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(box, text);
}

} // namespace

class TestConfigDialog : public QObject
{
    Q_OBJECT

private slots:
    void opensWithTheFilesContents();
    void firstTimeSettingsFile();
    void modeIndicesSelectEntries_data();
    void modeIndicesSelectEntries();
    void textsGoThroughTranslation();
    void addButtonsAppendDefaultRows();
    void removeWithoutMarkDoesNothing();
    void removeDeletesTheMarkedRow();
    void saveWritesWhatTheWriterWrites();
    void saveUsesTheSettingsPickerInSaveMode();
    void cancelledSaveWritesNothing();
    void unwritableSettingsFileWarns();
    void closeDropsEdits();
    void enterInABoxNeitherSavesNorCloses();
    void symbolChooserReturningNothingLeavesTheCell();
    void symbolChooserKeyIsWritten();
    void blockCellBrowsesTheBlockFolder();
    void resizeMovesTheControlsBelowTheFieldList();
    void tabOrderFollowsTheLayout();
};

void TestConfigDialog::opensWithTheFilesContents()
{
    Host host;
    const QString cfa = host.writeExample();
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QCOMPARE(dialog.blockFilePath(), KVString(host.path("example.cfb")));
    QCOMPARE(dialog.symbolFilePath(), KVString(host.path("example.cfc")));
    QVERIFY(showDialog(dialog));

    QCOMPARE(control<QLineEdit>(dialog, "14024")->text(), QString("PREV"));
    QCOMPARE(control<QLineEdit>(dialog, "14027")->text(), QString("NEXT"));
    QCOMPARE(control<QLineEdit>(dialog, "14033")->text(), QString("40,200"));
    QCOMPARE(control<QLineEdit>(dialog, "14035")->text(), QString("10"));
    QCOMPARE(control<QLineEdit>(dialog, "14034")->text(), QString("380"));
    QCOMPARE(control<QComboBox>(dialog, "14031")->currentText(), QString("Automatic+space"));
    QCOMPARE(control<QComboBox>(dialog, "14032")->currentText(), QString("Using Page"));

    const CIListViewEdit* fields = list(dialog, "14017");
    QCOMPARE(fields->GetLineCount(), 2);
    QCOMPARE(line(fields, 0), QStringList({"ITEM", "ITEM", " ", "No"}));
    QCOMPARE(line(fields, 1), QStringList({"TAG", "TAG", "=KV_TAG", "Yes"}));
    QCOMPARE(fields->GetCellName(1, 2), KVString("NOVOCAMPO"));
    QCOMPARE(*fields->GetCellKind(0, 3), ListView::CellKind::Choice);
    const CIListViewEdit* blocks = list(dialog, "232");
    QCOMPARE(blocks->GetLineCount(), 2);
    QCOMPARE(line(blocks, 1), QStringList({"LEGEND", "10,20", "90"}));
    QCOMPARE(*blocks->GetCellKind(0, 0), ListView::CellKind::File);
    const CIListViewEdit* symbols = list(dialog, "237");
    QCOMPARE(symbols->GetLineCount(), 1);
    QCOMPARE(line(symbols, 0), QStringList({"1001", "100,50", "0"}));
    QCOMPARE(*symbols->GetCellKind(0, 0), ListView::CellKind::Button);
    QCOMPARE(control<QLabel>(dialog, "220")->text(), "Settings: " + cfa);
    QCOMPARE(dialog.windowTitle(), QString("Settings - Automatic insertion"));
    // Opening reads and writes nothing else.
    QCOMPARE(readFile(cfa), kCfa);
    QVERIFY(host.system().fileDialogCalls().isEmpty());
}

void TestConfigDialog::firstTimeSettingsFile()
{
    Host host;
    const QString cfa = host.path("new.cfa");
    QVERIFY(writeFile(cfa, {}));
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));

    for (const char* id : {"14024", "14027", "14033", "14034", "14035"})
        QCOMPARE(control<QLineEdit>(dialog, id)->text(), QString());
    QCOMPARE(control<QComboBox>(dialog, "14031")->currentIndex(), -1);
    QCOMPARE(control<QComboBox>(dialog, "14032")->currentIndex(), -1);
    QCOMPARE(control<QComboBox>(dialog, "14031")->count(), 5);
    QCOMPARE(control<QComboBox>(dialog, "14032")->count(), 2);
    QCOMPARE(list(dialog, "14017")->GetLineCount(), 0);
    for (const char* id : {"232", "237"}) {
        QCOMPARE(list(dialog, id)->GetLineCount(), 1);
        QCOMPARE(line(list(dialog, id), 0), QStringList({"...", "0,0", "0"}));
    }
    QCOMPARE(readFile(host.path("new.cfb")), QByteArray());
    QCOMPARE(readFile(host.path("new.cfc")), QByteArray());
}

void TestConfigDialog::modeIndicesSelectEntries_data()
{
    QTest::addColumn<QByteArray>("separator");
    QTest::addColumn<QByteArray>("pagination");
    QTest::addColumn<QString>("separatorText");
    QTest::addColumn<QString>("paginationText");
    QTest::newRow("first entries") << QByteArray("0") << QByteArray("0") << "Automatic"
                                   << "Create page";
    QTest::newRow("last entries") << QByteArray("4") << QByteArray("1") << "Vertical space"
                                  << "Using Page";
    QTest::newRow("none chosen") << QByteArray("-1") << QByteArray("-1") << ""
                                 << "";
    QTest::newRow("out of range") << QByteArray("5") << QByteArray("2") << ""
                                  << "";
    QTest::newRow("leading number") << QByteArray("3x") << QByteArray("1 ") << "Page"
                                    << "Using Page";
}

void TestConfigDialog::modeIndicesSelectEntries()
{
    QFETCH(QByteArray, separator);
    QFETCH(QByteArray, pagination);
    QFETCH(QString, separatorText);
    QFETCH(QString, paginationText);
    Host host;
    const QString cfa = host.path("modes.cfa");
    QVERIFY(writeFile(cfa, "a\r\nb\r\nc\r\nd\r\n" + separator + "\r\nf\r\n" + pagination));
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));
    QCOMPARE(control<QComboBox>(dialog, "14031")->currentText(), separatorText);
    QCOMPARE(control<QComboBox>(dialog, "14032")->currentText(), paginationText);
}

void TestConfigDialog::textsGoThroughTranslation()
{
    BracketTranslator translator;
    QCoreApplication::installTranslator(&translator);
    Host host;
    const QString cfa = host.writeExample();
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));
    QCoreApplication::removeTranslator(&translator);

    QCOMPARE(dialog.windowTitle(), QString("[Settings - Automatic insertion]"));
    const QList<QPair<const char*, QString>> labels = {
        {"221", "[Field list:]"},     {"239", "[List of Symbols:]"},
        {"234", "[List of blocks:]"}, {"223", "[Previous:]"},
        {"224", "[Next:]"},           {"225", "[Separator:]"},
        {"229", "[Pagination:]"},     {"226", "[Initial point:]"},
        {"227", "[Page size:]"},      {"228", "[Space:]"}};
    for (const auto& [id, text] : labels)
        QCOMPARE(control<QLabel>(dialog, id)->text(), text);
    QCOMPARE(control<QLabel>(dialog, "220")->text(), "[Settings: ]" + cfa);
    for (const auto& [id, text] : QList<QPair<const char*, QString>>{
             {"236", "[Items:]"}, {"238", "[Symbols:]"}, {"235", "[Blocks]"}, {"222", "[Spacing]"}})
        QCOMPARE(control<QGroupBox>(dialog, id)->title(), text);
    for (const auto& [id, text] : QList<QPair<const char*, QString>>{{"14019", "[Add]"},
                                                                     {"14021", "[Remove]"},
                                                                     {"14037", "[Add]"},
                                                                     {"240", "[Remove]"},
                                                                     {"14036", "[Add]"},
                                                                     {"233", "[Remove]"},
                                                                     {"1", "[Save]"},
                                                                     {"2", "[Close]"}})
        QCOMPARE(control<QPushButton>(dialog, id)->text(), text);
    QAbstractItemModel* fields = list(dialog, "14017")->model();
    QCOMPARE(fields->headerData(0, Qt::Horizontal).toString(), QString("[Field]"));
    QCOMPARE(fields->headerData(3, Qt::Horizontal).toString(), QString("[Show]"));
    QCOMPARE(list(dialog, "232")->model()->headerData(2, Qt::Horizontal).toString(),
             QString("[Angle]"));
    QCOMPARE(control<QComboBox>(dialog, "14031")->itemText(1), QString("[Automatic+space]"));
    // The "Show" cells hold the translated entries, and a save turns them back into S and N.
    QCOMPARE(line(list(dialog, "14017"), 1).last(), QString("[Yes]"));
    QCoreApplication::installTranslator(&translator);
    host.system().queueFileDialogAnswer(KV_RESULT_OK, host.path("again.cfa"));
    click(dialog, "1");
    QCoreApplication::removeTranslator(&translator);
    QVERIFY(readFile(host.path("again.cfa")).endsWith("ITEM;ITEM; ;N;\r\nTAG;TAG;=KV_TAG;S;"));
}

void TestConfigDialog::addButtonsAppendDefaultRows()
{
    Host host;
    const QString cfa = host.writeExample();
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));

    click(dialog, "14019");
    CIListViewEdit* fields = list(dialog, "14017");
    QCOMPARE(fields->GetLineCount(), 3);
    QCOMPARE(line(fields, 2), QStringList({"...", "", "", "No"}));
    QCOMPARE(fields->GetChoiceIndex(2, 3), 0);
    QCOMPARE(fields->GetCellName(2, 0), KVString("NOVOCAMPO"));

    click(dialog, "14036");
    CIListViewEdit* blocks = list(dialog, "232");
    QCOMPARE(blocks->GetLineCount(), 3);
    QCOMPARE(line(blocks, 2), QStringList({"...", "0,0", "0"}));
    QCOMPARE(blocks->GetCellName(2, 1), KVString("NOVOCAMPO"));
    QCOMPARE(blocks->GetStartFolder(), KVString("N:\\KV\\Dados\\IEC\\BLOCOS\\"));

    click(dialog, "14037");
    click(dialog, "14037");
    CIListViewEdit* symbols = list(dialog, "237");
    QCOMPARE(symbols->GetLineCount(), 3);
    QCOMPARE(line(symbols, 2), QStringList({"...", "0,0", "0"}));
}

void TestConfigDialog::removeWithoutMarkDoesNothing()
{
    Host host;
    const QString cfa = host.writeExample();
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));
    for (const char* button : {"14021", "233", "240"})
        click(dialog, button);
    QCOMPARE(list(dialog, "14017")->GetLineCount(), 2);
    QCOMPARE(list(dialog, "232")->GetLineCount(), 2);
    QCOMPARE(list(dialog, "237")->GetLineCount(), 1);
}

void TestConfigDialog::removeDeletesTheMarkedRow()
{
    Host host;
    const QString cfa = host.writeExample();
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));

    CIListViewEdit* fields = list(dialog, "14017");
    clickCell(*fields, 0, 1);
    click(dialog, "14021");
    QCOMPARE(fields->GetLineCount(), 1);
    QCOMPARE(line(fields, 0).first(), QString("TAG"));
    // The mark went with its row: a second press removes nothing.
    click(dialog, "14021");
    QCOMPARE(fields->GetLineCount(), 1);

    CIListViewEdit* blocks = list(dialog, "232");
    clickCell(*blocks, 1, 2);
    click(dialog, "233");
    QCOMPARE(blocks->GetLineCount(), 1);
    QCOMPARE(line(blocks, 0).first(), QString("TITLE"));
    // A mark in one list does not remove from another.
    clickCell(*blocks, 0, 1);
    click(dialog, "240");
    QCOMPARE(list(dialog, "237")->GetLineCount(), 1);
    QCOMPARE(blocks->GetLineCount(), 1);
}

void TestConfigDialog::saveWritesWhatTheWriterWrites()
{
    Host host;
    const QString cfa = host.writeExample();
    QDir(host.test.folder()).mkdir("saved");
    QDir(host.test.folder()).mkdir("reference");
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));

    // Edits through the controls.
    retype(control<QLineEdit>(dialog, "14024"), "GAP_BEFORE");
    retype(control<QLineEdit>(dialog, "14035"), "  12.5 ");
    auto* separator = control<QComboBox>(dialog, "14031");
    // From "Next:" the Tab key reaches the separator box; Down chooses the next entry.
    control<QLineEdit>(dialog, "14027")->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), separator);
    QTest::keyClick(separator, Qt::Key_Down);
    QCOMPARE(separator->currentIndex(), 2);
    CIListViewEdit* fields = list(dialog, "14017");
    click(dialog, "14019");
    QVERIFY(typeIntoCell(*fields, 2, 0, "  QTY "));
    QVERIFY(typeIntoCell(*fields, 2, 1, "QUANTITY"));
    clickCell(*fields, 2, 3);
    QTest::keyClick(fields, Qt::Key_F2);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QTRY_COMPARE(fields->GetCellText(2, 3), KVString("Yes"));
    QVERIFY(typeIntoCell(*fields, 0, 2, ""));
    CIListViewEdit* blocks = list(dialog, "232");
    QVERIFY(typeIntoCell(*blocks, 1, 1, ""));
    CIListViewEdit* symbols = list(dialog, "237");
    click(dialog, "14037");
    QVERIFY(typeIntoCell(*symbols, 1, 2, "270"));

    const QString target = host.path("saved/other.cfa");
    host.system().queueFileDialogAnswer(KV_RESULT_OK, target);
    click(dialog, "1");
    QVERIFY(dialog.isVisible());
    QVERIFY(host.system().messages().isEmpty());

    // The same contents, written by the settings writer itself.
    SettingsDialogContents expected;
    expected.gapBeforeVar = "GAP_BEFORE";
    expected.gapAfterVar = "NEXT";
    expected.startPoint = "40,200";
    expected.spaceWidth = "  12.5 ";
    expected.separatorIndex = 2;
    expected.pageSize = "380";
    expected.paginationIndex = 1;
    expected.fields = {{"ITEM", "ITEM", "", "No"},
                       {"TAG", "TAG", "=KV_TAG", "Yes"},
                       {"  QTY ", "QUANTITY", "", "Yes"}};
    expected.blocks = {{"TITLE", "0,0", "0"}, {"LEGEND", "", "90"}};
    expected.symbols = {{"1001", "100,50", "0"}, {"...", "0,0", "270"}};
    const QString reference = host.path("reference/other.cfa");
    QVERIFY(writeSettingsFiles(expected, reference).error.isEmpty());
    for (const char* extension : {".cfa", ".cfb", ".cfc"}) {
        const QString saved = host.path(QStringLiteral("saved/other") + extension);
        QCOMPARE(readFile(saved),
                 readFile(host.path(QStringLiteral("reference/other") + extension)));
    }
    QCOMPARE(readFile(target),
             QByteArray("GAP_BEFORE\r\nNEXT\r\n40,200\r\n  12.5 \r\n2\r\n380\r\n1"
                        "\r\nITEM;ITEM; ;N;\r\nTAG;TAG;=KV_TAG;S;\r\nQTY;QUANTITY; ;S;"));
    QCOMPARE(readFile(host.path("saved/other.cfb")), QByteArray("TITLE;0,0;0;\r\nLEGEND;;90;"));

    // The dialog now works on the new files; the old ones are untouched.
    QCOMPARE(dialog.settingsPath(), KVString(target));
    QCOMPARE(dialog.blockFilePath(), KVString(host.path("saved/other.cfb")));
    QCOMPARE(dialog.symbolFilePath(), KVString(host.path("saved/other.cfc")));
    QCOMPARE(control<QLabel>(dialog, "220")->text(), "Settings: " + target);
    QCOMPARE(readFile(cfa), kCfa);
    QCOMPARE(readFile(host.path("example.cfb")), kCfb);
}

void TestConfigDialog::saveUsesTheSettingsPickerInSaveMode()
{
    Host host;
    const QString cfa = host.writeExample();
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));
    host.system().queueFileDialogAnswer(KV_RESULT_OK, host.path("x.cfa"));
    click(dialog, "1");
    QCOMPARE(host.system().fileDialogCalls().size(), 1);
    const auto call = host.system().fileDialogCalls().first();
    QCOMPARE(call.flag, 0);
    QCOMPARE(call.mode, 4);
    QCOMPARE(call.title, KVString());
    QCOMPARE(call.defaultName, KVString());
    QCOMPARE(call.filter,
             KVString("Settings file (*.cfa)|*.cfa||&*.cfa&All Files (*.*)|*.*||&*.*&&"));
    QCOMPARE(call.initialFolder, KVString("/home/user/kv/Automatic Insertion"));

    // Without a working folder the dialog starts nowhere in particular.
    host.test.electrical().setWorkingFolder({});
    click(dialog, "1");
    QCOMPARE(host.system().fileDialogCalls().size(), 2);
    QCOMPARE(host.system().fileDialogCalls().last().initialFolder, KVString());
}

void TestConfigDialog::cancelledSaveWritesNothing()
{
    Host host;
    const QString cfa = host.writeExample();
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));
    retype(control<QLineEdit>(dialog, "14024"), "CHANGED");
    const QStringList before = QDir(host.test.folder()).entryList(QDir::Files);
    host.system().queueFileDialogAnswer(2, host.path("cancelled.cfa"));
    click(dialog, "1");
    QCOMPARE(host.system().fileDialogCalls().size(), 1);
    QCOMPARE(QDir(host.test.folder()).entryList(QDir::Files), before);
    QVERIFY(host.system().messages().isEmpty());
    QCOMPARE(readFile(cfa), kCfa);
    QCOMPARE(dialog.settingsPath(), KVString(cfa));
    QVERIFY(dialog.isVisible());
}

void TestConfigDialog::unwritableSettingsFileWarns()
{
    Host host;
    const QString cfa = host.writeExample();
    // A folder in place of the .cfa: it cannot be opened for writing.
    QVERIFY(QDir(host.test.folder()).mkdir("locked.cfa"));
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));
    host.system().queueFileDialogAnswer(KV_RESULT_OK, host.path("locked.cfa"));
    click(dialog, "1");

    QCOMPARE(host.system().messages().size(), 1);
    const auto message = host.system().messages().first();
    QCOMPARE(message.kind, MessageKind::Warning);
    QCOMPARE(message.text, KVString("Error saving settings file."));
    QCOMPARE(message.title, KVString("Test host"));
    QCOMPARE(message.parent, TestHost::kMainWindow);
    QVERIFY(dialog.isVisible());
    QCOMPARE(dialog.settingsPath(), KVString(cfa));
    QCOMPARE(readFile(host.path("locked.cfb")), QByteArray());
    QVERIFY(!QFile::exists(host.path("locked.cfc")));
}

void TestConfigDialog::closeDropsEdits()
{
    Host host;
    const QString cfa = host.writeExample();
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));
    retype(control<QLineEdit>(dialog, "14024"), "CHANGED");
    click(dialog, "14019");
    click(dialog, "2");
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QVERIFY(host.system().fileDialogCalls().isEmpty());
    QCOMPARE(readFile(cfa), kCfa);
    QCOMPARE(readFile(host.path("example.cfb")), kCfb);
    QCOMPARE(readFile(host.path("example.cfc")), kCfc);
}

void TestConfigDialog::enterInABoxNeitherSavesNorCloses()
{
    Host host;
    const QString cfa = host.writeExample();
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));
    auto* previous = control<QLineEdit>(dialog, "14024");
    retype(previous, "X");
    QTest::keyClick(previous, Qt::Key_Return);
    QTest::keyClick(previous, Qt::Key_Enter);
    QVERIFY(dialog.isVisible());
    QVERIFY(host.system().fileDialogCalls().isEmpty());
    // Enter in a list cell's editor stores the edit and leaves the dialog open too.
    QVERIFY(typeIntoCell(*list(dialog, "14017"), 0, 0, "NAME"));
    QVERIFY(dialog.isVisible());
    QVERIFY(host.system().fileDialogCalls().isEmpty());
}

void TestConfigDialog::symbolChooserReturningNothingLeavesTheCell()
{
    Host host;
    const QString cfa = host.writeExample();
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));
    CIListViewEdit* symbols = list(dialog, "237");

    bool chooserSeen = false;
    actOnModal([&](QWidget* modal) {
        chooserSeen = qobject_cast<IDlgComps*>(modal) != nullptr;
        QTest::mouseClick(modal->findChild<QPushButton*>("8"), Qt::LeftButton);
    });
    clickCellButton(*symbols, 0, 0);
    QVERIFY(chooserSeen);
    QCOMPARE(line(symbols, 0), QStringList({"1001", "100,50", "0"}));
    QVERIFY(!symbols->GetCellValue(0, 0).isValid());
    QCOMPARE(host.palette.loads.size(), 1);
}

void TestConfigDialog::symbolChooserKeyIsWritten()
{
    Host host;
    const QString cfa = host.writeExample();
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));
    CIListViewEdit* symbols = list(dialog, "237");
    click(dialog, "14037");

    actOnModal([](QWidget* modal) {
        auto* tree = modal->findChild<CITreeSimbolosPopup*>("14018");
        // "Motors", opened with the right arrow, then its first component.
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                          tree->visualItemRect(tree->topLevelItem(0)).center());
        QTest::keyClick(tree, Qt::Key_Right);
        QTest::keyClick(tree, Qt::Key_Down);
        QTest::mouseClick(modal->findChild<QPushButton*>("14001"), Qt::LeftButton);
    });
    symbols->setFocus();
    clickCell(*symbols, 1, 0);
    QTest::keyClick(symbols, Qt::Key_F2);
    QCOMPARE(line(symbols, 1), QStringList({"101", "0,0", "0"}));
    QCOMPARE(symbols->GetCellValue(1, 0).toString(), QString("101"));
    QCOMPARE(line(symbols, 0).first(), QString("1001"));

    host.system().queueFileDialogAnswer(KV_RESULT_OK, host.path("chosen.cfa"));
    click(dialog, "1");
    QCOMPARE(readFile(host.path("chosen.cfc")), QByteArray("1001;100,50;0;\r\n101;0,0;0;"));
}

void TestConfigDialog::blockCellBrowsesTheBlockFolder()
{
    Host host;
    const QString cfa = host.writeExample();
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));
    CIListViewEdit* blocks = list(dialog, "232");
    host.system().queueFileDialogAnswer(KV_RESULT_OK, "N:\\KV\\Dados\\IEC\\BLOCOS\\MOTOR_3PH.dwg");
    clickCellButton(*blocks, 1, 0);
    QCOMPARE(host.system().fileDialogCalls().size(), 1);
    const auto call = host.system().fileDialogCalls().first();
    QCOMPARE(call.mode, 2);
    QCOMPARE(call.initialFolder, KVString("N:\\KV\\Dados\\IEC\\BLOCOS\\"));
    QVERIFY(call.filter.startsWith("Drawing files (*.dwg)|*.dwg||&*.dwg&"));
    QCOMPARE(line(blocks, 1), QStringList({"MOTOR_3PH", "10,20", "90"}));
}

void TestConfigDialog::resizeMovesTheControlsBelowTheFieldList()
{
    Host host;
    const QString cfa = host.writeExample();
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));
    const QSize first = dialog.size();
    QCOMPARE(dialog.minimumSize(), first);
    const auto geometry = [&](const char* id) {
        return dialog.findChild<QWidget*>(QString::fromLatin1(id))->geometry();
    };
    const QList<const char*> ids = {"236", "14017", "14019", "222", "14024", "14031", "238",
                                    "237", "240",   "235",   "232", "220",   "1",     "2"};
    QHash<QString, QRect> before;
    for (const char* id : ids)
        before.insert(id, geometry(id));

    dialog.resize(first + QSize(100, 80));
    const auto expect = [&](const char* id, int x, int y, int width, int height) {
        const QRect was = before.value(id);
        QCOMPARE(geometry(id),
                 QRect(was.x() + x, was.y() + y, was.width() + width, was.height() + height));
    };
    expect("236", 0, 0, 100, 80);
    expect("14017", 0, 0, 100, 80);
    expect("14019", 100, 0, 0, 0);
    expect("222", 0, 80, 100, 0);
    expect("14024", 0, 80, 0, 0);
    expect("14031", 0, 80, 0, 0);
    expect("238", 0, 80, 100, 0);
    expect("237", 0, 80, 100, 0);
    expect("240", 100, 80, 0, 0);
    expect("235", 0, 80, 100, 0);
    expect("232", 0, 80, 100, 0);
    expect("220", 0, 80, 100, 0);
    expect("1", 100, 80, 0, 0);
    expect("2", 100, 80, 0, 0);

    dialog.resize(first - QSize(50, 50));
    QCOMPARE(dialog.size(), first);
}

void TestConfigDialog::tabOrderFollowsTheLayout()
{
    Host host;
    const QString cfa = host.writeExample();
    CIConfigAuto dialog;
    dialog.SetSettingsPath(cfa);
    QVERIFY(showDialog(dialog));
    list(dialog, "14017")->setFocus();
    QStringList order;
    for (int i = 0; i < 18; ++i) {
        order << QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QCOMPARE(order, QStringList({"14017", "14019", "14021", "14024", "14027", "14031", "14033",
                                 "14034", "14032", "14035", "237", "14037", "240", "232", "14036",
                                 "233", "1", "2"}));
    QCOMPARE(QApplication::focusWidget()->objectName(), QString("14017"));
}

QTEST_MAIN(TestConfigDialog)
#include "tst_settingsui_config.moc"
