#include "DialogTestSupport.h"
#include "FakePalette.h"

#include "host/HostBinding.h"
#include "settingsui/IDlgComps.h"
#include "settingsui/widgets/CITreeSimbolosPopup.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

using namespace DialogTest;

namespace {

struct Palette
{
    FakePalette palette;
    std::unique_ptr<ScopedHostBinding> installed;

    Palette()
    {
        palette.selected = CENorma("IEC", "IEC 60617");
        palette.build = [](const CENorma&) { return FakePalette::sampleTree(); };
        HostBinding binding;
        binding.palette = &palette;
        installed = std::make_unique<ScopedHostBinding>(binding);
    }
};

CITreeSimbolosPopup* tree(QWidget* dialog)
{
    return dialog->findChild<CITreeSimbolosPopup*>("14018");
}

QPushButton* button(QWidget* dialog, const char* id)
{
    return dialog->findChild<QPushButton*>(QString::fromLatin1(id));
}

// Selects a line with the mouse, the way a user does.
void clickLine(CITreeSimbolosPopup* tree, QTreeWidgetItem* item)
{
    tree->scrollToItem(item);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualItemRect(item).center());
}

} // namespace

class TestSymbolChooser : public QObject
{
    Q_OBJECT

private slots:
    void closingAtOnceReturnsNothing();
    void escapeReturnsNothing();
    void componentThenFolderThenCancelKeepsTheKey();
    void addReturnsTheSelectedComponent();
    void keyboardSelection();
    void runClearsThePreviousKey();
    void opensOnTheSelectedStandard();
    void withoutSelectedStandardNothingCanBeChosen();
    void textsGoThroughTranslation();
};

void TestSymbolChooser::closingAtOnceReturnsNothing()
{
    Palette host;
    IDlgComps dialog;
    bool addEnabled = true;
    actOnModal([&](QWidget* modal) {
        addEnabled = button(modal, "14001")->isEnabled();
        QTest::mouseClick(button(modal, "8"), Qt::LeftButton);
    });
    QCOMPARE(dialog.Run(), KVString());
    QVERIFY(!addEnabled);
}

void TestSymbolChooser::escapeReturnsNothing()
{
    Palette host;
    IDlgComps dialog;
    actOnModal([](QWidget* modal) { QTest::keyClick(modal, Qt::Key_Escape); });
    QCOMPARE(dialog.Run(), KVString());
    QVERIFY(!dialog.isVisible());
}

void TestSymbolChooser::componentThenFolderThenCancelKeepsTheKey()
{
    Palette host;
    IDlgComps dialog;
    QList<bool> addStates;
    actOnModal([&](QWidget* modal) {
        CITreeSimbolosPopup* symbols = tree(modal);
        QTreeWidgetItem* fuse = symbols->topLevelItem(1);
        clickLine(symbols, fuse);
        addStates << button(modal, "14001")->isEnabled();
        clickLine(symbols, symbols->topLevelItem(0));
        addStates << button(modal, "14001")->isEnabled();
        QTest::mouseClick(button(modal, "8"), Qt::LeftButton);
    });
    QCOMPARE(dialog.Run(), KVString("301"));
    QCOMPARE(addStates, QList<bool>({true, false}));
}

void TestSymbolChooser::addReturnsTheSelectedComponent()
{
    Palette host;
    IDlgComps dialog;
    actOnModal([](QWidget* modal) {
        CITreeSimbolosPopup* symbols = tree(modal);
        QTreeWidgetItem* motors = symbols->topLevelItem(0);
        QTest::mouseDClick(symbols->viewport(), Qt::LeftButton, {},
                           symbols->visualItemRect(motors).center());
        clickLine(symbols, motors->child(2));
        QTest::keyClick(symbols, Qt::Key_Right);
        QTest::keyClick(symbols, Qt::Key_Down);
        QTest::mouseClick(button(modal, "14001"), Qt::LeftButton);
    });
    QCOMPARE(dialog.Run(), KVString("201"));
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
}

void TestSymbolChooser::keyboardSelection()
{
    Palette host;
    IDlgComps dialog;
    actOnModal([](QWidget* modal) {
        CITreeSimbolosPopup* symbols = tree(modal);
        symbols->setFocus();
        QTest::keyClick(symbols, Qt::Key_Home);
        QTest::keyClick(symbols, Qt::Key_Right);
        QTest::keyClick(symbols, Qt::Key_Down);
        QTest::keyClick(symbols, Qt::Key_Down);
        QTest::keyClick(modal, Qt::Key_Escape);
    });
    QCOMPARE(dialog.Run(), KVString("102"));
}

void TestSymbolChooser::runClearsThePreviousKey()
{
    Palette host;
    IDlgComps dialog;
    actOnModal([](QWidget* modal) {
        clickLine(tree(modal), tree(modal)->topLevelItem(1));
        QTest::mouseClick(button(modal, "14001"), Qt::LeftButton);
    });
    QCOMPARE(dialog.Run(), KVString("301"));
    actOnModal([](QWidget* modal) { QTest::mouseClick(button(modal, "8"), Qt::LeftButton); });
    QCOMPARE(dialog.Run(), KVString());
}

void TestSymbolChooser::opensOnTheSelectedStandard()
{
    Palette host;
    IDlgComps dialog;
    int lines = 0;
    actOnModal([&](QWidget* modal) {
        lines = tree(modal)->topLevelItemCount();
        QTest::mouseClick(button(modal, "8"), Qt::LeftButton);
    });
    dialog.Run();
    QCOMPARE(lines, 2);
    QCOMPARE(host.palette.loads.size(), 1);
    QCOMPARE(host.palette.loads.first().first, CENorma("IEC", "IEC 60617"));
    QCOMPARE(host.palette.loads.first().second, 0);
}

void TestSymbolChooser::withoutSelectedStandardNothingCanBeChosen()
{
    Palette host;
    host.palette.selected.reset();
    IDlgComps dialog;
    bool addEnabled = true;
    actOnModal([&](QWidget* modal) {
        CITreeSimbolosPopup* symbols = tree(modal);
        if (symbols->topLevelItemCount() == 1)
            clickLine(symbols, symbols->topLevelItem(0));
        addEnabled = button(modal, "14001")->isEnabled();
        QTest::mouseClick(button(modal, "14001"), Qt::LeftButton);
        QTest::mouseClick(button(modal, "8"), Qt::LeftButton);
    });
    QCOMPARE(dialog.Run(), KVString());
    QVERIFY(!addEnabled);
    QVERIFY(host.palette.loads.isEmpty());
}

void TestSymbolChooser::textsGoThroughTranslation()
{
    Palette host;
    BracketTranslator translator;
    QCoreApplication::installTranslator(&translator);
    IDlgComps dialog;
    QStringList texts;
    actOnModal([&](QWidget* modal) {
        texts << modal->windowTitle() << modal->findChild<QLabel*>("14020")->text()
              << button(modal, "14001")->text() << button(modal, "8")->text();
        QTest::mouseClick(button(modal, "8"), Qt::LeftButton);
    });
    dialog.Run();
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(texts, QStringList({"[Symbols:]", "[List of Symbols:]", "[Add]", "[Cancel]"}));
}

QTEST_MAIN(TestSymbolChooser)
#include "tst_settingsui_chooser.moc"
