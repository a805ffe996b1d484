// The item list built through the main dialog's buttons, mouse and keyboard: Add item, Edit
// item, Add symbol from the palette, Add page, Add space, Remove, Copy item, the "Symbols
// selected:" list and the count beside "Items not imported:".
#include "MainDialogTestSupport.h"

#include "common/TestHost.h"
#include "settingsui/FakePalette.h"
#include "settingsui/IAdicionaItem.h"
#include "settingsui/widgets/CIListViewPropriedade.h"
#include "settingsui/widgets/CITreeSimbolosPopup.h"

#include <QLabel>
#include <QListView>

using namespace MainDialogTest;
using ItemTreeTestSupport::describe;
using ItemTreeTestSupport::describeChildren;
using ListView::CIListViewPropriedade;

class tst_maindialog_items : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void addItemProposesTheNextNumber();
    void addItemCancelledStillCountsTheNumber();
    void doubleClickEditsTheSelectedItem();
    void doubleClickOnAChildEditsNothing();
    void doubleClickWithNothingSelectedChangesNothing();
    void addSymbolFromThePalette();
    void addSymbolAfterTheSelectedChild();
    void addSymbolFallsBackToOtherLanguages();
    void addPageFirstUnderAnItemOrAfterAChild();
    void addSpaceBeforeAnyImportIsVertical();
    void addSpaceAfterImportFollowsTheSeparator_data();
    void addSpaceAfterImportFollowsTheSeparator();
    void removeTheOnlySymbolScansVisibleRows();
    void removeAnItem();
    void copyItemReversesMarkersAfterASymbol();
    void copyItemWithoutChildrenRaisesTheCount();
    void symbolsSelectedLineSelectsItsNode();

private:
    // A dialog over the example host, shown, with its settings loaded.
    struct Opened
    {
        std::unique_ptr<ExampleHost> host;
        std::unique_ptr<CIInsereAuto> dialog;
    };
    Opened open(QStringList fileDialogAnswers = {});
    static bool addFromPalette(CIInsereAuto& dialog, const QString& key);

    ExampleStandard m_standard;
};

namespace {

CIListViewPropriedade* fieldList(QWidget* editor)
{
    return editor->findChild<CIListViewPropriedade*>(QStringLiteral("14017"));
}

int fieldRow(const CIListViewPropriedade& list, const QString& name)
{
    for (int row = 0; row < list.GetPropertyCount(); ++row) {
        if (list.GetPropertyName(row) == name)
            return row;
    }
    return -1;
}

QString countText(const QWidget& dialog)
{
    return dialog.findChild<QLabel*>(QStringLiteral("231"))->text();
}

QStringList selectedLines(const CIInsereAuto& dialog)
{
    const auto* list = dialog.findChild<QListView*>(QStringLiteral("14039"));
    QStringList lines;
    for (int row = 0; row < list->model()->rowCount(); ++row)
        lines.append(list->model()->index(row, 0).data().toString());
    return lines;
}

// Types a value into a cell as a user does before pressing "Ok": the cell's editor is opened
// with F2 and left open (Return in a cell editor also presses the dialog's default button).
bool typeValue(CIListViewPropriedade& list, int row, const QString& text)
{
    DialogTest::clickCell(list, row, CIListViewPropriedade::kValueColumn);
    QTest::keyClick(&list, Qt::Key_F2);
    QWidget* editor = QApplication::focusWidget();
    if (!editor || editor == &list || !list.isEditing())
        return false;
    QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(editor, Qt::Key_Backspace);
    QTest::keyClicks(editor, text);
    return true;
}

// Fills the fields of the item editor that a test names and confirms it. What the editor
// showed is kept for the test to look at.
struct EditorAnswer
{
    QMap<QString, QString> typed;
    bool confirm = true;
    QMap<QString, QString> shown;
    QString title;
    bool typedAll = true;

    void operator()(QWidget* modal)
    {
        title = modal->windowTitle();
        // Typing goes to the focused editor of a cell, so the editor must be the active window.
        modal->activateWindow();
        typedAll = QTest::qWaitFor([modal] { return QApplication::activeWindow() == modal; });
        CIListViewPropriedade* list = fieldList(modal);
        if (!list) {
            typedAll = false;
            return;
        }
        for (int row = 0; row < list->GetPropertyCount(); ++row)
            shown.insert(list->GetPropertyName(row), list->GetPropertyValue(row));
        for (auto it = typed.cbegin(); it != typed.cend(); ++it) {
            const int row = fieldRow(*list, it.key());
            typedAll = typedAll && row >= 0 && typeValue(*list, row, it.value());
        }
        QTest::mouseClick(button(*modal, confirm ? "1" : "2"), Qt::LeftButton);
    }
};

} // namespace

void tst_maindialog_items::initTestCase()
{
    QVERIFY2(m_standard.load(), qPrintable(m_standard.error()));
}

void tst_maindialog_items::cleanup()
{
    while (QGuiApplication::overrideCursor())
        QGuiApplication::restoreOverrideCursor();
}

tst_maindialog_items::Opened tst_maindialog_items::open(QStringList fileDialogAnswers)
{
    Opened opened;
    opened.host = std::make_unique<ExampleHost>(m_standard, std::move(fileDialogAnswers));
    if (!opened.host->ok())
        qWarning("%s", qPrintable(opened.host->error()));
    opened.dialog = std::make_unique<CIInsereAuto>();
    opened.dialog->LoadSettings(m_standard.settings());
    if (!showDialog(*opened.dialog))
        qWarning("the dialog was not shown");
    return opened;
}

bool tst_maindialog_items::addFromPalette(CIInsereAuto& dialog, const QString& key)
{
    if (!dialog.isPanelShown() && !clickButton(dialog, "14012"))
        return false;
    auto* palette = dialog.findChild<CITreeSimbolosPopup*>(QStringLiteral("14018"));
    QTreeWidgetItem* line = palette->findEntry(key);
    if (!line)
        return false;
    palette->scrollToItem(line);
    QTest::mouseClick(palette->viewport(), Qt::LeftButton, {},
                      palette->visualItemRect(line).center());
    return clickButton(dialog, "14025");
}

void tst_maindialog_items::addItemProposesTheNextNumber()
{
    Opened opened = open();
    CIInsereAuto& dialog = *opened.dialog;
    const CTVNodesUtil& tree = dialog.itemList().tree();
    for (int number = 1; number <= 2; ++number) {
        EditorAnswer answer;
        answer.typed = {{"TAG", QStringLiteral("-K%1").arg(number)}, {"DESCRIPTION", "Relay"}};
        ModalWatch watch(std::ref(answer));
        QVERIFY(clickButton(dialog, "14014"));
        QVERIFY(watch.opened());
        QVERIFY(answer.typedAll);
        QCOMPARE(answer.title, QStringLiteral("Add item"));
        QCOMPARE(answer.shown.value("ITEM"), QString::number(number));
        QCOMPARE(countText(dialog), QString::number(number));
    }
    QCOMPARE(itemTexts(tree), (QStringList{"-K1 - Relay", "-K2 - Relay"}));
    const TVNode second = tree.children().last();
    QCOMPARE(tree.current(), second);
    QVERIFY(attributeTexts(tree.GetAttributes(second)).contains(QStringLiteral("ITEM=2")));
    QVERIFY(button(dialog, "14009")->isEnabled());
    QVERIFY(button(dialog, "14015")->isEnabled());
    QVERIFY(button(dialog, "14017")->isEnabled());
}

void tst_maindialog_items::addItemCancelledStillCountsTheNumber()
{
    Opened opened = open();
    CIInsereAuto& dialog = *opened.dialog;
    EditorAnswer cancelled;
    cancelled.confirm = false;
    {
        ModalWatch watch(std::ref(cancelled));
        QVERIFY(clickButton(dialog, "14014"));
        QVERIFY(watch.opened());
    }
    QCOMPARE(cancelled.shown.value("ITEM"), QStringLiteral("1"));
    QVERIFY(dialog.itemList().tree().isEmpty());
    QCOMPARE(countText(dialog), QStringLiteral("0"));
    EditorAnswer next;
    ModalWatch watch(std::ref(next));
    QVERIFY(clickButton(dialog, "14014"));
    QCOMPARE(next.shown.value("ITEM"), QStringLiteral("2"));
    QCOMPARE(countText(dialog), QStringLiteral("1"));
}

void tst_maindialog_items::doubleClickEditsTheSelectedItem()
{
    Opened opened = open();
    CIInsereAuto& dialog = *opened.dialog;
    ItemListController& list = dialog.itemList();
    list.addItem(QStringLiteral("-K1"), {QStringLiteral("ITEM=1"), QStringLiteral("TAG=-K1")});
    const TVNode edited = list.addItem(
        QStringLiteral("-K5 - Old"),
        {QStringLiteral("ITEM=5"), QStringLiteral("TAG=-K5"), QStringLiteral("DESCRIPTION=Old")});
    ItemTreeView* view = itemTree(dialog);
    clickNode(*view, edited);

    EditorAnswer answer;
    answer.typed = {{"DESCRIPTION", "Heater"}};
    ModalWatch watch(std::ref(answer));
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, rowPoint(*view, edited, 0.5));
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, rowPoint(*view, edited, 0.5));
    QVERIFY(watch.opened());
    QVERIFY(answer.typedAll);
    QCOMPARE(answer.title, QStringLiteral("Edit item"));
    QCOMPARE(answer.shown.value("TAG"), QStringLiteral("-K5"));
    QCOMPARE(answer.shown.value("DESCRIPTION"), QStringLiteral("Old"));
    QCOMPARE(list.tree().GetText(edited), QStringLiteral("-K5 - Heater"));
    const QStringList attributes = attributeTexts(list.tree().GetAttributes(edited));
    QVERIFY(attributes.contains(QStringLiteral("DESCRIPTION=Heater")));
    QVERIFY(attributes.contains(QStringLiteral("ITEM=5")));
    QCOMPARE(itemTexts(list.tree()), (QStringList{"-K1", "-K5 - Heater"}));
    // Editing does not count an item.
    QCOMPARE(countText(dialog), QStringLiteral("2"));
}

void tst_maindialog_items::doubleClickOnAChildEditsNothing()
{
    Opened opened = open();
    CIInsereAuto& dialog = *opened.dialog;
    ItemListController& list = dialog.itemList();
    const TVNode item = list.addItem(QStringLiteral("A"), {QStringLiteral("TAG=A")});
    const TVNode page = list.addPage();
    ItemTreeView* view = itemTree(dialog);
    clickNode(*view, page);
    ModalWatch watch([](QWidget*) {});
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, rowPoint(*view, page, 0.5));
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, rowPoint(*view, page, 0.5));
    QCoreApplication::processEvents();
    QVERIFY(!watch.opened());
    QCOMPARE(list.tree().GetText(item), QStringLiteral("A"));
}

void tst_maindialog_items::doubleClickWithNothingSelectedChangesNothing()
{
    Opened opened = open();
    CIInsereAuto& dialog = *opened.dialog;
    ItemListController& list = dialog.itemList();
    const TVNode item = list.addItem(QStringLiteral("A"), {QStringLiteral("TAG=A")});
    list.tree().setCurrent({});
    ItemTreeView* view = itemTree(dialog);
    // Below the last row: the editor opens on empty values, and confirming it changes nothing.
    const QPoint below = rowPoint(*view, item, 4.0);
    EditorAnswer answer;
    answer.typed = {{"TAG", "-X"}};
    ModalWatch watch(std::ref(answer));
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, below);
    QTest::mouseRelease(view->viewport(), Qt::LeftButton, {}, below);
    QVERIFY(watch.opened());
    QCOMPARE(answer.title, QStringLiteral("Edit item"));
    QCOMPARE(answer.shown.value("TAG"), QString());
    QCOMPARE(itemTexts(list.tree()), QStringList{"A"});
    QCOMPARE(attributeTexts(list.tree().GetAttributes(item)), QStringList{"TAG=A"});
}

void tst_maindialog_items::addSymbolFromThePalette()
{
    Opened opened = open();
    CIInsereAuto& dialog = *opened.dialog;
    ItemListController& list = dialog.itemList();
    const TVNode item = list.addItem(QStringLiteral("-X1"), {});
    QCOMPARE(countText(dialog), QStringLiteral("1"));
    QVERIFY(addFromPalette(dialog, QStringLiteral("1503")));
    const CTVNodesUtil& tree = list.tree();
    QCOMPARE(describe(tree), QStringLiteral("-X1[S:1503]"));
    const TVNode symbol = tree.firstChild(item);
    QCOMPARE(tree.GetText(symbol), QStringLiteral("Protective earth terminal 2.5 mm2"));
    QCOMPARE(tree.current(), symbol);
    QCOMPARE(tree.image(item), 1);
    // The first symbol of an item counts it as imported.
    QCOMPARE(countText(dialog), QStringLiteral("0"));
    QCOMPARE(selectedLines(dialog), QStringList{"Protective earth terminal 2.5 mm2"});
    // A second symbol on the same item leaves the count.
    QVERIFY(addFromPalette(dialog, QStringLiteral("1501")));
    QCOMPARE(countText(dialog), QStringLiteral("0"));
}

void tst_maindialog_items::addSymbolAfterTheSelectedChild()
{
    Opened opened = open();
    CIInsereAuto& dialog = *opened.dialog;
    ItemListController& list = dialog.itemList();
    const TVNode item = list.addItem(QStringLiteral("-X1"), {});
    QVERIFY(addFromPalette(dialog, QStringLiteral("1501")));
    list.addPage();
    QVERIFY(addFromPalette(dialog, QStringLiteral("1502")));
    QCOMPARE(describeChildren(list.tree(), item), QStringLiteral("S:1501,P,S:1502"));
    // With the first symbol selected, the next one lands right after it.
    clickNode(*itemTree(dialog), list.tree().firstChild(item));
    QVERIFY(addFromPalette(dialog, QStringLiteral("1503")));
    QCOMPARE(describeChildren(list.tree(), item), QStringLiteral("S:1501,S:1503,P,S:1502"));
    // With the item selected, it goes last.
    clickNode(*itemTree(dialog), item);
    QVERIFY(addFromPalette(dialog, QStringLiteral("1504")));
    QCOMPARE(describeChildren(list.tree(), item), QStringLiteral("S:1501,S:1503,P,S:1502,S:1504"));
}

void tst_maindialog_items::addSymbolFallsBackToOtherLanguages()
{
    TestHost host;
    FakePalette palette;
    palette.selected = CENorma(QStringLiteral("IEC"), QStringLiteral("IEC"));
    palette.build = [](const CENorma&) {
        CEPastaTree tree;
        tree.roots.push_back(FakePalette::entry(CEPasta::kComponent, "10", {{2, "Dois"}}));
        tree.roots.push_back(
            FakePalette::entry(CEPasta::kComponent, "11", {{3, "Three"}, {1, "One"}}));
        tree.roots.push_back(FakePalette::entry(CEPasta::kComponent, "12", {{3, "Three"}}));
        tree.roots.push_back(FakePalette::entry(CEPasta::kComponent, "13", {}));
        return tree;
    };
    host.electrical().setCurrentLanguage(QStringLiteral("2"));
    host.electrical().setDescriptionLanguages({3, 1, 2});
    HostBinding binding = host.binding();
    binding.palette = &palette;
    const ScopedHostBinding installed(binding);

    CIInsereAuto dialog;
    QVERIFY(showDialog(dialog));
    ItemListController& list = dialog.itemList();
    const TVNode item = list.addItem(QStringLiteral("A"), {});
    for (const char* key : {"10", "11", "12", "13"}) {
        list.tree().setCurrent(item);
        QVERIFY2(addFromPalette(dialog, QString::fromLatin1(key)), key);
    }
    QStringList descriptions;
    for (const TVNode child : list.tree().children(item))
        descriptions.append(list.tree().GetSymbol(child)->GetDescricao());
    // The current language (2) first, then the others in ascending order (1, 3); an entry
    // without any description gives an empty one.
    QCOMPARE(descriptions, (QStringList{"Dois", "One", "Three", ""}));
}

void tst_maindialog_items::addPageFirstUnderAnItemOrAfterAChild()
{
    Opened opened = open();
    CIInsereAuto& dialog = *opened.dialog;
    ItemListController& list = dialog.itemList();
    const TVNode item = list.addItem(QStringLiteral("-X1"), {});
    QVERIFY(addFromPalette(dialog, QStringLiteral("1501")));
    QVERIFY(addFromPalette(dialog, QStringLiteral("1502")));
    ItemTreeView* view = itemTree(dialog);
    clickNode(*view, item);
    QVERIFY(clickButton(dialog, "14011"));
    QCOMPARE(describeChildren(list.tree(), item), QStringLiteral("P,S:1501,S:1502"));
    const TVNode page = list.tree().firstChild(item);
    QCOMPARE(list.tree().GetText(page), QStringLiteral("Page"));
    QCOMPARE(list.tree().current(), page);
    clickNode(*view, list.tree().nextSibling(page));
    QVERIFY(clickButton(dialog, "14011"));
    QCOMPARE(describeChildren(list.tree(), item), QStringLiteral("P,S:1501,P,S:1502"));
    // Nothing selected: nothing is added.
    list.tree().setCurrent({});
    QVERIFY(clickButton(dialog, "14011"));
    QCOMPARE(describeChildren(list.tree(), item), QStringLiteral("P,S:1501,P,S:1502"));
}

void tst_maindialog_items::addSpaceBeforeAnyImportIsVertical()
{
    Opened opened = open();
    CIInsereAuto& dialog = *opened.dialog;
    ItemListController& list = dialog.itemList();
    const TVNode item = list.addItem(QStringLiteral("-X1"), {});
    QVERIFY(clickButton(dialog, "14010"));
    QCOMPARE(describeChildren(list.tree(), item), QStringLiteral("V"));
    QCOMPARE(list.tree().GetText(list.tree().firstChild(item)), QStringLiteral("Vertical space"));
}

void tst_maindialog_items::addSpaceAfterImportFollowsTheSeparator_data()
{
    QTest::addColumn<QByteArray>("separator");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("text");
    QTest::newRow("horizontal space") << QByteArray("2") << "H"
                                      << "Horizontal space";
    QTest::newRow("automatic+space") << QByteArray("1") << "V"
                                     << "Vertical space";
    QTest::newRow("page") << QByteArray("3") << "V"
                          << "Vertical space";
}

void tst_maindialog_items::addSpaceAfterImportFollowsTheSeparator()
{
    QFETCH(QByteArray, separator);
    QFETCH(QString, expected);
    QFETCH(QString, text);
    // The example settings with another separator mode (the fifth header line).
    QList<QByteArray> lines = readBytes(m_standard.settings()).split('\n');
    lines[4] = separator + '\r';
    const QString cfa = m_standard.path(QStringLiteral("separator-%1.cfa").arg(separator));
    QVERIFY(writeBytes(cfa, lines.join('\n')));

    Opened opened = open({exampleFile(QStringLiteral("sheets/example.xlsx"))});
    CIInsereAuto& dialog = *opened.dialog;
    dialog.LoadSettings(cfa);
    QVERIFY(clickButton(dialog, "14007"));
    ItemListController& list = dialog.itemList();
    QCOMPARE(list.tree().childCount(), 18);
    QCOMPARE(dialog.importedHeaders().separatorMode, QString::fromLatin1(separator));
    const TVNode first = list.tree().firstChild();
    clickNode(*itemTree(dialog), first);
    const QString before = describeChildren(list.tree(), first);
    QVERIFY(clickButton(dialog, "14010"));
    QCOMPARE(describeChildren(list.tree(), first), expected + u',' + before);
    QCOMPARE(list.tree().GetText(list.tree().firstChild(first)), text);
}

void tst_maindialog_items::removeTheOnlySymbolScansVisibleRows()
{
    Opened opened = open();
    CIInsereAuto& dialog = *opened.dialog;
    ItemListController& list = dialog.itemList();
    const CTVNodesUtil& tree = list.tree();
    const TVNode first = list.addItem(QStringLiteral("A"), {});
    QVERIFY(addFromPalette(dialog, QStringLiteral("1501")));
    const TVNode second = list.addItem(QStringLiteral("B"), {});
    QVERIFY(addFromPalette(dialog, QStringLiteral("1502")));
    QCOMPARE(countText(dialog), QStringLiteral("0"));
    ItemTreeView* view = itemTree(dialog);
    // Adding a symbol opened its item; the user closes both and opens them again with the
    // keyboard, so B's symbol is a visible row after A's.
    for (const TVNode item : {second, first}) {
        clickNode(*view, item);
        QTest::keyClick(view, Qt::Key_Left);
        QVERIFY(!tree.isExpanded(item));
        QTest::keyClick(view, Qt::Key_Right);
        QVERIFY(tree.isExpanded(item));
    }
    clickNode(*view, tree.firstChild(first));
    QVERIFY(clickButton(dialog, "14009"));
    // B's symbol was found by the scan: count and A's image stay.
    QCOMPARE(describe(tree), QStringLiteral("A[] B[S:1502]"));
    QCOMPARE(countText(dialog), QStringLiteral("0"));
    QCOMPARE(tree.image(first), 1);
    QCOMPARE(selectedLines(dialog), QStringList{"Feed-through terminal 4 mm2, grey"});

    // Closed, B's symbol is not among the rows scanned. (The new symbol is A's first again,
    // which counts A as imported once more.)
    QVERIFY(addFromPalette(dialog, QStringLiteral("1503")));
    QCOMPARE(countText(dialog), QStringLiteral("-1"));
    clickNode(*view, second);
    QTest::keyClick(view, Qt::Key_Left);
    QVERIFY(!tree.isExpanded(second));
    clickNode(*view, tree.firstChild(first));
    QVERIFY(clickButton(dialog, "14009"));
    QCOMPARE(describe(tree), QStringLiteral("A[] B[S:1502]"));
    QCOMPARE(countText(dialog), QStringLiteral("0"));
    QCOMPARE(tree.image(first), 0);
}

void tst_maindialog_items::removeAnItem()
{
    Opened opened = open();
    CIInsereAuto& dialog = *opened.dialog;
    ItemListController& list = dialog.itemList();
    const TVNode withSymbols = list.addItem(QStringLiteral("A"), {});
    QVERIFY(addFromPalette(dialog, QStringLiteral("1501")));
    QVERIFY(addFromPalette(dialog, QStringLiteral("1502")));
    const TVNode other = list.addItem(QStringLiteral("B"), {});
    QVERIFY(addFromPalette(dialog, QStringLiteral("1501")));
    const TVNode empty = list.addItem(QStringLiteral("C"), {});
    QCOMPARE(countText(dialog), QStringLiteral("1"));
    ItemTreeView* view = itemTree(dialog);
    // An item with symbols: its lines of "Symbols selected:" go (the first line of each
    // description), the count stays.
    clickNode(*view, withSymbols);
    QVERIFY(clickButton(dialog, "14009"));
    QCOMPARE(itemTexts(list.tree()), (QStringList{"B", "C"}));
    QCOMPARE(countText(dialog), QStringLiteral("1"));
    QCOMPARE(selectedLines(dialog), QStringList{"Feed-through terminal 2.5 mm2, grey"});
    QCOMPARE(list.selectedSymbols().line(0).node, list.tree().firstChild(other));
    // An item without children: the count goes down.
    clickNode(*view, empty);
    QVERIFY(clickButton(dialog, "14009"));
    QCOMPARE(itemTexts(list.tree()), QStringList{"B"});
    QCOMPARE(countText(dialog), QStringLiteral("0"));
}

void tst_maindialog_items::copyItemReversesMarkersAfterASymbol()
{
    Opened opened = open();
    CIInsereAuto& dialog = *opened.dialog;
    ItemListController& list = dialog.itemList();
    const CTVNodesUtil& tree = list.tree();
    ItemTreeView* view = itemTree(dialog);
    const TVNode source = list.addItem(QStringLiteral("S"), {QStringLiteral("TAG=S")});
    QVERIFY(clickButton(dialog, "14011"));                   // [P]
    QVERIFY(addFromPalette(dialog, QStringLiteral("1501"))); // [P, A]
    list.setSeparatorMode(QStringLiteral("2"));
    QVERIFY(clickButton(dialog, "14010")); // [P, A, H]
    list.setSeparatorMode(QString());
    QVERIFY(clickButton(dialog, "14010")); // [P, A, H, V]
    QCOMPARE(describeChildren(tree, source), QStringLiteral("P,S:1501,H,V"));
    const QString countBefore = countText(dialog);

    clickNode(*view, source);
    QVERIFY(clickButton(dialog, "14017"));
    QCOMPARE(tree.childCount(), 2);
    const TVNode copy = tree.lastChild();
    QCOMPARE(tree.GetText(copy), QStringLiteral("S"));
    QCOMPARE(attributeTexts(tree.GetAttributes(copy)), QStringList{"TAG=S"});
    QCOMPARE(describeChildren(tree, copy), QStringLiteral("S:1501,V,H"));
    QCOMPARE(describeChildren(tree, source), QStringLiteral("P,P,S:1501,H,V"));
    QCOMPARE(countText(dialog), countBefore);
    // The copy is not selected and its symbol is not listed under "Symbols selected:".
    QCOMPARE(tree.current(), source);
    QCOMPARE(selectedLines(dialog).size(), 1);
    // A child selected: nothing is copied.
    clickNode(*view, tree.firstChild(source));
    QVERIFY(clickButton(dialog, "14017"));
    QCOMPARE(tree.childCount(), 2);
}

void tst_maindialog_items::copyItemWithoutChildrenRaisesTheCount()
{
    Opened opened = open();
    CIInsereAuto& dialog = *opened.dialog;
    ItemListController& list = dialog.itemList();
    const TVNode item = list.addItem(QStringLiteral("A"), {QStringLiteral("TAG=A")});
    QCOMPARE(countText(dialog), QStringLiteral("1"));
    clickNode(*itemTree(dialog), item);
    QVERIFY(clickButton(dialog, "14017"));
    QCOMPARE(itemTexts(list.tree()), (QStringList{"A", "A"}));
    QCOMPARE(countText(dialog), QStringLiteral("2"));
}

void tst_maindialog_items::symbolsSelectedLineSelectsItsNode()
{
    Opened opened = open();
    CIInsereAuto& dialog = *opened.dialog;
    ItemListController& list = dialog.itemList();
    const CTVNodesUtil& tree = list.tree();
    const TVNode first = list.addItem(QStringLiteral("A"), {});
    QVERIFY(addFromPalette(dialog, QStringLiteral("1501")));
    list.addItem(QStringLiteral("B"), {});
    QVERIFY(addFromPalette(dialog, QStringLiteral("1502")));
    ItemTreeView* view = itemTree(dialog);
    clickNode(*view, first);
    QTest::keyClick(view, Qt::Key_Left);
    QVERIFY(!tree.isExpanded(first));

    auto* lines = dialog.findChild<QListView*>(QStringLiteral("14039"));
    QTest::mouseClick(lines->viewport(), Qt::LeftButton, {},
                      lines->visualRect(lines->model()->index(0, 0)).center());
    const TVNode symbol = tree.firstChild(first);
    QCOMPARE(tree.current(), symbol);
    QVERIFY(tree.isExpanded(first));
    QVERIFY(view->isExpanded(tree.indexOf(first)));
    QCOMPARE(view->currentIndex(), tree.indexOf(symbol));
}

QTEST_MAIN(tst_maindialog_items)
#include "tst_maindialog_items.moc"
