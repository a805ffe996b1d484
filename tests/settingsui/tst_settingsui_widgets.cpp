#include "FakePalette.h"
#include "common/TestHost.h"

#include "settingsui/widgets/CIListViewEdit.h"
#include "settingsui/widgets/CIListViewPropriedade.h"
#include "settingsui/widgets/CIResizableDialog.h"
#include "settingsui/widgets/CITreeSimbolosPopup.h"
#include "settingsui/widgets/ListViewEditListener.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

using ListView::CellKind;
using ListView::CIListViewEdit;
using ListView::CIListViewPropriedade;

namespace {

// Writes down every listener call as text, in order.
class RecordingListener final : public ListView::ListViewEditListener
{
public:
    QStringList calls;
    std::function<void(int)> onButton;

    void ItemChanged(int row, int column) override { add("changed", row, column); }
    void OnEnter(int row, int column) override { add("enter", row, column); }
    void OnButtonCell(int row) override
    {
        calls << QStringLiteral("button %1").arg(row);
        if (onButton)
            onButton(row);
    }
    void beginModal(int row, int column) override { add("begin", row, column); }
    void endModal(int row, int column) override { add("end", row, column); }

private:
    void add(const char* what, int row, int column)
    {
        calls << QStringLiteral("%1 %2,%3").arg(QLatin1String(what)).arg(row).arg(column);
    }
};

// A window with a list and a line edit after it, shown and active.
struct ListWindow
{
    QWidget window;
    CIListViewEdit* list;
    QLineEdit* after;

    template <typename List = CIListViewEdit> static List* make(ListWindow& w)
    {
        auto* layout = new QVBoxLayout(&w.window);
        auto* list = new List(&w.window);
        w.list = list;
        w.after = new QLineEdit(&w.window);
        layout->addWidget(list);
        layout->addWidget(w.after);
        w.window.resize(700, 300);
        return list;
    }
    bool show()
    {
        window.show();
        window.activateWindow();
        return QTest::qWaitForWindowActive(&window);
    }
};

QPoint cellCenter(const CIListViewEdit& list, int row, int column)
{
    return list.visualRect(list.model()->index(row, column)).center();
}

void clickCell(CIListViewEdit& list, int row, int column)
{
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, cellCenter(list, row, column));
}

void clickCellButton(CIListViewEdit& list, int row, int column)
{
    const QRect cell = list.visualRect(list.model()->index(row, column));
    const QPoint button(cell.right() - 3, cell.center().y());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, button);
}

// A double click as the platform delivers it: press and release, then the double click.
void doubleClickCell(CIListViewEdit& list, int row, int column)
{
    clickCell(list, row, column);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, cellCenter(list, row, column));
}

QWidget* focused()
{
    return QApplication::focusWidget();
}

// The list of the settings dialog's field list: three text columns and a "Show" choice.
void addFieldColumns(CIListViewEdit& list)
{
    list.AddColumn("Field", 150, CellKind::Text);
    list.AddColumn("Attribute", 200, CellKind::Text);
    list.AddColumn("Search", 160, CellKind::Text);
    list.AddColumn("Show", 50, CellKind::Choice, {"No", "Yes"});
}

} // namespace

class TestWidgets : public QObject
{
    Q_OBJECT

private slots:
    void modelPassesTheModelTester();
    void addLineTakesColumnKindsAndNames();
    void choiceCellTakesOnlyItsEntries();
    void enterEditsAndCommits();
    void f2AndDoubleClickEdit();
    void escapeCancelsTheEdit();
    void tabMovesToTheNextCell();
    void tabOutsideAnEditLeavesTheList();
    void choiceCellIsEditedWithACombo();
    void fileCellBrowsesFromTheStartFolder_data();
    void fileCellBrowsesFromTheStartFolder();
    void fileCellCancelledBrowseKeepsTheText();
    void fileCellEditorBrowsesWithF4();
    void buttonCellAsksTheListener();
    void buttonCellIsNotTypedInto();
    void selectionMarkFollowsTheUser();
    void selectionMarkIsClearedWhenItsLineGoes();
    void propertyListKeepsNamesReadOnly();
    void propertyListTabSkipsReadOnlyCells();
    void resizableDialogMovesAndGrows();
    void resizableDialogRemembersTheFirstSizeAsMinimum();
    void paletteTreeShowsFoldersAndComponents();
    void paletteTreeFallsBackToOtherLanguages();
    void paletteTreeShowsTheLoadError();
    void paletteTreeWithoutSelectedStandard();
};

void TestWidgets::modelPassesTheModelTester()
{
    ListView::ListViewEditModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.appendColumn("A");
    model.appendColumn("B");
    model.appendLine({ListView::ListViewCell{CellKind::Text, "a", {}, {}, {}, true, {}}});
    model.appendLine({});
    QVERIFY(model.setData(model.index(1, 1), "b"));
    QVERIFY(model.removeLine(0));
    QVERIFY(!model.removeLine(5));
    model.appendColumn("C");
    QCOMPARE(model.columnCount(), 3);
    QCOMPARE(model.data(model.index(0, 1)).toString(), QString("b"));
    model.clearLines();
    QCOMPARE(model.rowCount(), 0);
}

void TestWidgets::addLineTakesColumnKindsAndNames()
{
    CIListViewEdit list;
    addFieldColumns(list);
    list.SetStartFolder("C:/blocks/");
    const int row = list.AddLine({"NAME", "TAG"}, "NOVOCAMPO");
    QCOMPARE(row, 0);
    QCOMPARE(list.GetLineCount(), 1);
    QCOMPARE(list.GetCellText(0, 0), KVString("NAME"));
    QCOMPARE(list.GetCellText(0, 1), KVString("TAG"));
    QCOMPARE(list.GetCellText(0, 2), KVString());
    QCOMPARE(list.GetCellText(0, 3), KVString());
    QCOMPARE(list.GetCellName(0, 2), KVString("NOVOCAMPO"));
    QCOMPARE(*list.GetCellKind(0, 3), CellKind::Choice);
    QCOMPARE(*list.GetCellKind(0, 0), CellKind::Text);
    QVERIFY(!list.GetCellKind(1, 0));
    QCOMPARE(list.GetCellText(7, 7), KVString());
    QCOMPARE(list.model()->headerData(1, Qt::Horizontal).toString(), QString("Attribute"));
    QCOMPARE(list.columnWidth(0), 150);
    QCOMPARE(list.columnWidth(3), 50);
}

void TestWidgets::choiceCellTakesOnlyItsEntries()
{
    CIListViewEdit list;
    addFieldColumns(list);
    list.AddLine({"A", "", "", "Yes"});
    list.AddLine({"B", "", "", "Maybe"});
    QCOMPARE(list.GetChoiceIndex(0, 3), 1);
    QCOMPARE(list.GetCellText(0, 3), KVString("Yes"));
    QCOMPARE(list.GetChoiceIndex(1, 3), -1);
    QCOMPARE(list.GetChoiceIndex(0, 0), -1);
    QVERIFY(!list.SetCellText(0, 3, "Perhaps"));
    QVERIFY(list.SetCellText(0, 3, "No"));
    QCOMPARE(list.GetChoiceIndex(0, 3), 0);
}

void TestWidgets::enterEditsAndCommits()
{
    ListWindow w;
    CIListViewEdit* list = ListWindow::make(w);
    addFieldColumns(*list);
    RecordingListener listener;
    list->SetListener(&listener);
    list->AddLine({"...", "", "", "No"});
    QVERIFY(w.show());

    clickCell(*list, 0, 1);
    QTest::keyClick(list, Qt::Key_Return);
    auto* editor = qobject_cast<QLineEdit*>(focused());
    QVERIFY(editor);
    QTest::keyClicks(editor, "TAG1");
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(list->GetCellText(0, 1), KVString("TAG1"));
    QCOMPARE(listener.calls, QStringList({"enter 0,1", "enter 0,1", "changed 0,1"}));
    QVERIFY(!list->isEditing());
}

void TestWidgets::f2AndDoubleClickEdit()
{
    ListWindow w;
    CIListViewEdit* list = ListWindow::make(w);
    addFieldColumns(*list);
    list->AddLine({"A"});
    QVERIFY(w.show());

    clickCell(*list, 0, 0);
    QTest::keyClick(list, Qt::Key_F2);
    auto* editor = qobject_cast<QLineEdit*>(focused());
    QVERIFY(editor);
    editor->selectAll();
    QTest::keyClicks(editor, "B");
    QTest::keyClick(editor, Qt::Key_Enter);
    QTRY_COMPARE(list->GetCellText(0, 0), KVString("B"));

    doubleClickCell(*list, 0, 2);
    editor = qobject_cast<QLineEdit*>(focused());
    QVERIFY(editor);
    QTest::keyClicks(editor, "=KV_TAG");
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(list->GetCellText(0, 2), KVString("=KV_TAG"));
}

void TestWidgets::escapeCancelsTheEdit()
{
    ListWindow w;
    CIListViewEdit* list = ListWindow::make(w);
    addFieldColumns(*list);
    RecordingListener listener;
    list->SetListener(&listener);
    list->AddLine({"KEEP"});
    QVERIFY(w.show());

    clickCell(*list, 0, 0);
    QTest::keyClick(list, Qt::Key_F2);
    auto* editor = qobject_cast<QLineEdit*>(focused());
    QVERIFY(editor);
    QTest::keyClicks(editor, "LOST");
    QTest::keyClick(editor, Qt::Key_Escape);
    QCOMPARE(list->GetCellText(0, 0), KVString("KEEP"));
    QVERIFY(listener.calls.isEmpty());
    QVERIFY(!list->isEditing());
}

void TestWidgets::tabMovesToTheNextCell()
{
    ListWindow w;
    CIListViewEdit* list = ListWindow::make(w);
    addFieldColumns(*list);
    list->AddLine({"", "", "", "No"});
    list->AddLine({"", "", "", "No"});
    QVERIFY(w.show());

    clickCell(*list, 0, 1);
    QTest::keyClick(list, Qt::Key_F2);
    QTest::keyClicks(focused(), "A");
    QTest::keyClick(focused(), Qt::Key_Tab);
    QCOMPARE(list->currentIndex(), list->model()->index(0, 2));
    QTest::keyClicks(focused(), "B");
    QTest::keyClick(focused(), Qt::Key_Tab);
    // The "Show" cell's editor is a combo box; Tab goes on to the next line.
    QVERIFY(qobject_cast<QComboBox*>(focused()));
    QTest::keyClick(focused(), Qt::Key_Tab);
    QCOMPARE(list->currentIndex(), list->model()->index(1, 0));
    QTest::keyClicks(focused(), "C");
    QTest::keyClick(focused(), Qt::Key_Backtab);
    QCOMPARE(list->currentIndex(), list->model()->index(0, 3));
    QTest::keyClick(focused(), Qt::Key_Escape);

    QCOMPARE(list->GetCellText(0, 1), KVString("A"));
    QCOMPARE(list->GetCellText(0, 2), KVString("B"));
    QCOMPARE(list->GetCellText(0, 3), KVString("No"));
    QCOMPARE(list->GetCellText(1, 0), KVString("C"));
}

void TestWidgets::tabOutsideAnEditLeavesTheList()
{
    ListWindow w;
    CIListViewEdit* list = ListWindow::make(w);
    addFieldColumns(*list);
    list->AddLine({"A"});
    QVERIFY(w.show());
    clickCell(*list, 0, 0);
    QCOMPARE(focused(), list);
    QTest::keyClick(list, Qt::Key_Tab);
    QCOMPARE(focused(), w.after);
}

void TestWidgets::choiceCellIsEditedWithACombo()
{
    ListWindow w;
    CIListViewEdit* list = ListWindow::make(w);
    addFieldColumns(*list);
    RecordingListener listener;
    list->SetListener(&listener);
    list->AddLine({"F", "", "", "No"});
    QVERIFY(w.show());

    clickCell(*list, 0, 3);
    QTest::keyClick(list, Qt::Key_F2);
    auto* combo = qobject_cast<QComboBox*>(focused());
    QVERIFY(combo);
    QCOMPARE(combo->count(), 2);
    QCOMPARE(combo->currentText(), QString("No"));
    QTest::keyClick(combo, Qt::Key_Down);
    QTest::keyClick(combo, Qt::Key_Return);
    QTRY_COMPARE(list->GetCellText(0, 3), KVString("Yes"));
    QCOMPARE(list->GetChoiceIndex(0, 3), 1);
    QVERIFY(listener.calls.contains("changed 0,3"));
}

void TestWidgets::fileCellBrowsesFromTheStartFolder_data()
{
    QTest::addColumn<int>("form");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("expected");
    QTest::newRow("base name, backslashes")
        << int(CIListViewEdit::FileCellText::BaseName) << "C:\\Dados\\IEC\\BLOCOS\\MOTOR.dwg"
        << "MOTOR";
    QTest::newRow("base name, slashes")
        << int(CIListViewEdit::FileCellText::BaseName) << "/data/IEC/BLOCOS/LEGEND.A.dwg"
        << "LEGEND.A";
    QTest::newRow("full path") << int(CIListViewEdit::FileCellText::FullPath)
                               << "/data/IEC/BLOCOS/LEGEND.dwg"
                               << "/data/IEC/BLOCOS/LEGEND.dwg";
}

void TestWidgets::fileCellBrowsesFromTheStartFolder()
{
    QFETCH(int, form);
    QFETCH(QString, chosen);
    QFETCH(QString, expected);

    TestHost host;
    const ScopedHostBinding installed(host.binding());
    ListWindow w;
    CIListViewEdit* list = ListWindow::make(w);
    list->AddColumn("Block", 400, CellKind::File);
    list->AddColumn("Point", 80, CellKind::Text);
    list->SetFileCellText(static_cast<CIListViewEdit::FileCellText>(form));
    list->SetFileFilter("Drawings|*.dwg||&*.dwg&&");
    RecordingListener listener;
    list->SetListener(&listener);
    list->SetStartFolder("C:\\Dados\\IEC\\BLOCOS\\");
    list->AddLine({"...", "0,0"});
    list->SetStartFolder("elsewhere");
    QVERIFY(w.show());

    host.system().queueFileDialogAnswer(KV_RESULT_OK, chosen);
    clickCellButton(*list, 0, 0);
    QCOMPARE(host.system().fileDialogCalls().size(), 1);
    const auto call = host.system().fileDialogCalls().first();
    QCOMPARE(call.mode, CFxSystemServices::kOpenExisting);
    QCOMPARE(call.initialFolder, KVString("C:\\Dados\\IEC\\BLOCOS\\"));
    QCOMPARE(call.filter, KVString("Drawings|*.dwg||&*.dwg&&"));
    QCOMPARE(list->GetCellText(0, 0), KVString(expected));
    QCOMPARE(listener.calls, QStringList({"begin 0,0", "end 0,0", "changed 0,0"}));
}

void TestWidgets::fileCellCancelledBrowseKeepsTheText()
{
    TestHost host;
    const ScopedHostBinding installed(host.binding());
    ListWindow w;
    CIListViewEdit* list = ListWindow::make(w);
    list->AddColumn("Block", 400, CellKind::File);
    RecordingListener listener;
    list->SetListener(&listener);
    list->AddLine({"KEEP"});
    QVERIFY(w.show());

    host.system().queueFileDialogAnswer(0, "C:/other.dwg");
    clickCellButton(*list, 0, 0);
    QCOMPARE(host.system().fileDialogCalls().size(), 1);
    QCOMPARE(list->GetCellText(0, 0), KVString("KEEP"));
    QCOMPARE(listener.calls, QStringList({"begin 0,0", "end 0,0"}));
    // A click on the text, away from the button, only selects.
    clickCell(*list, 0, 0);
    QCOMPARE(host.system().fileDialogCalls().size(), 1);
}

void TestWidgets::fileCellEditorBrowsesWithF4()
{
    TestHost host;
    const ScopedHostBinding installed(host.binding());
    ListWindow w;
    CIListViewEdit* list = ListWindow::make(w);
    list->AddColumn("Block", 400, CellKind::File);
    list->SetFileCellText(CIListViewEdit::FileCellText::BaseName);
    list->AddLine({"OLD"});
    QVERIFY(w.show());

    clickCell(*list, 0, 0);
    QTest::keyClick(list, Qt::Key_F2);
    auto* editor = qobject_cast<QLineEdit*>(focused());
    QVERIFY(editor);
    QTest::keyClicks(editor, "TYPED");
    host.system().queueFileDialogAnswer(KV_RESULT_OK, "/b/CHOSEN.dwg");
    QTest::keyClick(editor, Qt::Key_F4);
    QCOMPARE(host.system().fileDialogCalls().size(), 1);
    QCOMPARE(list->GetCellText(0, 0), KVString("CHOSEN"));

    // Typing alone keeps what was typed; the browse action inside the editor browses too.
    QTest::keyClick(list, Qt::Key_F2);
    editor = qobject_cast<QLineEdit*>(focused());
    QVERIFY(editor);
    QList<QToolButton*> buttons = editor->findChildren<QToolButton*>();
    QCOMPARE(buttons.size(), 1);
    host.system().queueFileDialogAnswer(0, {});
    QTest::mouseClick(buttons.first(), Qt::LeftButton);
    QCOMPARE(host.system().fileDialogCalls().size(), 2);
    QCOMPARE(list->GetCellText(0, 0), KVString("CHOSEN"));
}

void TestWidgets::buttonCellAsksTheListener()
{
    ListWindow w;
    CIListViewEdit* list = ListWindow::make(w);
    list->AddColumn("Block", 400, CellKind::Button);
    list->AddColumn("Point", 80, CellKind::Text);
    RecordingListener listener;
    listener.onButton = [list](int row) {
        list->SetCellText(row, 0, "KEY7");
        list->SetCellValue(row, 0, "KEY7");
    };
    list->SetListener(&listener);
    list->AddLine({"...", "0,0"});
    list->AddLine({"...", "0,0"});
    QVERIFY(w.show());

    clickCellButton(*list, 1, 0);
    QCOMPARE(listener.calls, QStringList({"begin 1,0", "button 1", "end 1,0"}));
    QCOMPARE(list->GetCellText(1, 0), KVString("KEY7"));
    QCOMPARE(list->GetCellValue(1, 0).toString(), QString("KEY7"));
    QCOMPARE(list->GetCellText(0, 0), KVString("..."));

    listener.calls.clear();
    clickCell(*list, 0, 0);
    QVERIFY(listener.calls.isEmpty());
    QTest::keyClick(list, Qt::Key_F2);
    QCOMPARE(listener.calls, QStringList({"begin 0,0", "button 0", "end 0,0"}));
    listener.calls.clear();
    QTest::keyClick(list, Qt::Key_Return);
    QCOMPARE(listener.calls, QStringList({"enter 0,0", "begin 0,0", "button 0", "end 0,0"}));
    listener.calls.clear();
    doubleClickCell(*list, 0, 0);
    QCOMPARE(listener.calls, QStringList({"begin 0,0", "button 0", "end 0,0"}));
}

void TestWidgets::buttonCellIsNotTypedInto()
{
    ListWindow w;
    CIListViewEdit* list = ListWindow::make(w);
    list->AddColumn("Block", 400, CellKind::Button);
    list->AddLine({"..."});
    QVERIFY(w.show());
    clickCell(*list, 0, 0);
    QTest::keyClick(list, Qt::Key_F2);
    QVERIFY(!list->isEditing());
    QTest::keyClicks(list, "XYZ");
    QCOMPARE(list->GetCellText(0, 0), KVString("..."));
    QVERIFY(!(list->model()->flags(list->model()->index(0, 0)) & Qt::ItemIsEditable));
}

void TestWidgets::selectionMarkFollowsTheUser()
{
    ListWindow w;
    CIListViewEdit* list = ListWindow::make(w);
    addFieldColumns(*list);
    for (int i = 0; i < 3; ++i)
        list->AddLine({QString::number(i)});
    QVERIFY(w.show());
    QCOMPARE(list->GetSelectionMark(), -1);
    // Tabbing into the list marks nothing.
    w.after->setFocus();
    QTest::keyClick(w.after, Qt::Key_Backtab);
    QCOMPARE(focused(), list);
    QCOMPARE(list->GetSelectionMark(), -1);
    clickCell(*list, 2, 1);
    QCOMPARE(list->GetSelectionMark(), 2);
    QTest::keyClick(list, Qt::Key_Up);
    QCOMPARE(list->GetSelectionMark(), 1);
    list->AddLine({"3"});
    QCOMPARE(list->GetSelectionMark(), 1);
}

void TestWidgets::selectionMarkIsClearedWhenItsLineGoes()
{
    ListWindow w;
    CIListViewEdit* list = ListWindow::make(w);
    addFieldColumns(*list);
    for (int i = 0; i < 4; ++i)
        list->AddLine({QString::number(i)});
    QVERIFY(w.show());
    clickCell(*list, 2, 0);
    QVERIFY(list->DeleteLine(0));
    QCOMPARE(list->GetSelectionMark(), 1);
    QCOMPARE(list->GetCellText(1, 0), KVString("2"));
    QVERIFY(list->DeleteLine(1));
    QCOMPARE(list->GetSelectionMark(), -1);
    QVERIFY(!list->DeleteLine(9));
    QCOMPARE(list->GetLineCount(), 2);
}

void TestWidgets::propertyListKeepsNamesReadOnly()
{
    ListWindow w;
    auto* list = ListWindow::make<CIListViewPropriedade>(w);
    list->InitColumns(150, 200);
    list->AddProperty("S", "ITEM", "7", false);
    list->AddProperty("N", "TAG", "", true);
    QVERIFY(w.show());
    QCOMPARE(list->model()->headerData(0, Qt::Horizontal).toString(), QString("Field"));
    QCOMPARE(list->model()->headerData(1, Qt::Horizontal).toString(), QString("Value"));
    QCOMPARE(list->GetPropertyCode(0), KVString("S"));
    QVERIFY(!list->IsPropertyEditable(0));
    QVERIFY(list->IsPropertyEditable(1));

    // The read-only value does not open an editor.
    clickCell(*list, 0, 1);
    QTest::keyClick(list, Qt::Key_F2);
    QVERIFY(!list->isEditing());
    doubleClickCell(*list, 0, 1);
    QVERIFY(!list->isEditing());
    QCOMPARE(list->GetPropertyValue(0), KVString("7"));
    // Neither does a name.
    clickCell(*list, 1, 0);
    QTest::keyClick(list, Qt::Key_F2);
    QVERIFY(!list->isEditing());

    clickCell(*list, 1, 1);
    QTest::keyClick(list, Qt::Key_Return);
    QTest::keyClicks(focused(), "X1");
    QTest::keyClick(focused(), Qt::Key_Return);
    QTRY_COMPARE(list->GetPropertyValue(1), KVString("X1"));
    QCOMPARE(list->GetPropertyName(1), KVString("TAG"));
}

void TestWidgets::propertyListTabSkipsReadOnlyCells()
{
    ListWindow w;
    auto* list = ListWindow::make<CIListViewPropriedade>(w);
    list->InitColumns(150, 200);
    list->AddProperty("N", "A", "", true);
    list->AddProperty("S", "ITEM", "3", false);
    list->AddProperty("N", "B", "", true);
    QVERIFY(w.show());
    clickCell(*list, 0, 1);
    QTest::keyClick(list, Qt::Key_F2);
    QTest::keyClicks(focused(), "va");
    QTest::keyClick(focused(), Qt::Key_Tab);
    QCOMPARE(list->currentIndex(), list->model()->index(2, 1));
    QTest::keyClicks(focused(), "vb");
    // Tab after the last editable cell ends the edit.
    QTest::keyClick(focused(), Qt::Key_Tab);
    QVERIFY(!list->isEditing());
    QCOMPARE(list->GetPropertyValue(0), KVString("va"));
    QCOMPARE(list->GetPropertyValue(1), KVString("3"));
    QCOMPARE(list->GetPropertyValue(2), KVString("vb"));
}

void TestWidgets::resizableDialogMovesAndGrows()
{
    using Follow = CIResizableDialog::Follow;
    CIResizableDialog dialog;
    auto* grow = new QWidget(&dialog);
    auto* move = new QWidget(&dialog);
    auto* mixed = new QWidget(&dialog);
    auto* still = new QWidget(&dialog);
    grow->setGeometry(10, 10, 100, 50);
    move->setGeometry(120, 70, 40, 20);
    mixed->setGeometry(10, 70, 100, 20);
    still->setGeometry(5, 5, 4, 4);
    dialog.AddResizeRule(grow, Follow::Grow, Follow::Grow);
    dialog.AddResizeRule(move, Follow::Move, Follow::Move);
    dialog.AddResizeRule(mixed, Follow::Grow, Follow::Move);
    dialog.AddResizeRule(still, Follow::Stay, Follow::Stay);
    dialog.resize(200, 120);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(dialog.firstSize(), QSize(200, 120));

    dialog.resize(250, 150);
    QCOMPARE(grow->geometry(), QRect(10, 10, 150, 80));
    QCOMPARE(move->geometry(), QRect(170, 100, 40, 20));
    QCOMPARE(mixed->geometry(), QRect(10, 100, 150, 20));
    QCOMPARE(still->geometry(), QRect(5, 5, 4, 4));

    // Differences are taken from the first size, not from the previous one.
    dialog.resize(210, 130);
    QCOMPARE(grow->geometry(), QRect(10, 10, 110, 60));
    QCOMPARE(move->geometry(), QRect(130, 80, 40, 20));

    // A control registered late starts from where it stands.
    auto* late = new QWidget(&dialog);
    late->setGeometry(0, 0, 10, 10);
    dialog.AddResizeRule(late, Follow::Move, Follow::Grow);
    dialog.resize(230, 140);
    QCOMPARE(late->geometry(), QRect(20, 0, 10, 20));
}

void TestWidgets::resizableDialogRemembersTheFirstSizeAsMinimum()
{
    CIResizableDialog dialog;
    dialog.resize(300, 200);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(dialog.minimumSize(), QSize(300, 200));
    dialog.resize(100, 100);
    QCOMPARE(dialog.size(), QSize(300, 200));
    // Dialog units follow the font: four horizontal units are one average character.
    QVERIFY(dialog.horizontalUnits(4) > 0);
    QCOMPARE(dialog.verticalUnits(8), dialog.fontMetrics().height());
}

void TestWidgets::paletteTreeShowsFoldersAndComponents()
{
    TestHost host;
    FakePalette palette;
    palette.build = [](const CENorma&) { return FakePalette::sampleTree(); };
    HostBinding binding = host.binding();
    binding.palette = &palette;
    const ScopedHostBinding installed(binding);

    CITreeSimbolosPopup tree;
    tree.setDescriptionLanguages(DescriptionLanguages::make(0, {0, 1}));
    QSignalSpy selected(&tree, &CITreeSimbolosPopup::entrySelected);
    QCOMPARE(tree.carga(CENorma("IEC", "IEC 60617"), 0), KVString());
    QCOMPARE(palette.loads.size(), 1);
    QCOMPARE(palette.loads.first().first.GetKey(), KVString("IEC"));
    QCOMPARE(palette.loads.first().second, 0);
    QCOMPARE(tree.topLevelItemCount(), 2);
    QTreeWidgetItem* motors = tree.topLevelItem(0);
    QCOMPARE(motors->text(0), QString("Motors"));
    QCOMPARE(motors->childCount(), 3);
    QCOMPARE(motors->child(2)->child(0)->text(0), QString("Relay 24V"));
    QVERIFY(!motors->icon(0).isNull());
    QVERIFY(motors->icon(0).cacheKey() != motors->child(0)->icon(0).cacheKey());

    tree.setCurrentItem(motors->child(0));
    QCOMPARE(selected.size(), 1);
    const auto* entry = selected.first().first().value<const CEPasta*>();
    QVERIFY(entry);
    QCOMPARE(entry->GetKey(), KVString("101"));
    QCOMPARE(entry->GetTipo(), CEPasta::kComponent);
    QCOMPARE(tree.findEntry("201"), motors->child(2)->child(0));
    QCOMPARE(tree.findEntry("R", CEPasta::kFolder), motors->child(2));
    QVERIFY(!tree.findEntry("R"));
}

void TestWidgets::paletteTreeFallsBackToOtherLanguages()
{
    TestHost host;
    host.electrical().setCurrentLanguage("1");
    host.electrical().setDescriptionLanguages({2, 0, 1});
    FakePalette palette;
    palette.build = [](const CENorma&) {
        CEPastaTree tree;
        tree.roots.push_back(FakePalette::entry(CEPasta::kComponent, "1", {{1, "Um"}, {0, "One"}}));
        tree.roots.push_back(
            FakePalette::entry(CEPasta::kComponent, "2", {{2, "Dos"}, {0, "Two"}}));
        tree.roots.push_back(FakePalette::entry(CEPasta::kComponent, "3", {{2, "Tres"}}));
        tree.roots.push_back(FakePalette::entry(CEPasta::kComponent, "4", {}));
        auto marked = FakePalette::entry(CEPasta::kComponent, "5", {{1, "copia"}, {2, "Cinco"}});
        marked->setPrefersFallbackLanguages(true);
        tree.roots.push_back(std::move(marked));
        return tree;
    };
    HostBinding binding = host.binding();
    binding.palette = &palette;
    const ScopedHostBinding installed(binding);

    CITreeSimbolosPopup tree; // takes the host's languages: current 1, then 0 and 2
    QCOMPARE(tree.descriptionLanguages().current, 1);
    QCOMPARE(tree.descriptionLanguages().fallbacks, QList<int>({0, 2}));
    QCOMPARE(tree.carga(CENorma("IEC", "IEC"), 0), KVString());
    QStringList texts;
    for (int i = 0; i < tree.topLevelItemCount(); ++i)
        texts << tree.topLevelItem(i)->text(0);
    QCOMPARE(texts, QStringList({"Um", "Two", "Tres", "4", "Cinco"}));
}

void TestWidgets::paletteTreeShowsTheLoadError()
{
    FakePalette palette;
    palette.error = "Cannot read BDMENUS of \"/db/iec.sqlite\": no such table";
    HostBinding binding;
    binding.palette = &palette;
    const ScopedHostBinding installed(binding);
    CITreeSimbolosPopup tree;
    QCOMPARE(tree.carga(CENorma("IEC", "IEC"), 0), palette.error);
    QCOMPARE(tree.topLevelItemCount(), 1);
    QCOMPARE(tree.topLevelItem(0)->text(0), palette.error.toQString());
    QVERIFY(!(tree.topLevelItem(0)->flags() & Qt::ItemIsSelectable));
    QVERIFY(!tree.entryOf(tree.topLevelItem(0)));
}

void TestWidgets::paletteTreeWithoutSelectedStandard()
{
    FakePalette palette;
    palette.build = [](const CENorma&) { return FakePalette::sampleTree(); };
    HostBinding binding;
    binding.palette = &palette;
    const ScopedHostBinding installed(binding);
    CITreeSimbolosPopup tree;
    QVERIFY(!tree.cargaNormaSelecionada().isEmpty());
    QVERIFY(palette.loads.isEmpty());
    palette.selected = CENorma("NEMA", "NEMA");
    QCOMPARE(tree.cargaNormaSelecionada(), KVString());
    QCOMPARE(palette.loads.size(), 1);
    QCOMPARE(palette.loads.first().first.GetKey(), KVString("NEMA"));
    QCOMPARE(tree.topLevelItemCount(), 2);
}

QTEST_MAIN(TestWidgets)
#include "tst_settingsui_widgets.moc"
