#include "DialogTestSupport.h"
#include "common/TestHost.h"

#include "maindialog/CTVNodesUtil.h"
#include "settingsui/IAdicionaItem.h"
#include "settingsui/ItemEditorForm.h"
#include "settingsui/widgets/CIListViewPropriedade.h"

#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>

using namespace DialogTest;
using ListView::CIListViewPropriedade;

namespace {

const QByteArray kHeader = "PREV\r\nNEXT\r\n0,0\r\n10\r\n0\r\n380\r\n";
// A settings file with field rows, as the settings dialog writes it.
const QByteArray kCfa = kHeader + "1\r\nITEM;ITEM; ;N;\r\nTAG;TAG; ;S;\r\n"
                                  "DESCRIPTION;FUNCTION; ;S;\r\nTYPE; ;=DEVICE_TYPE;N;";

QStringList names(const QList<ItemEditorLine>& lines)
{
    QStringList result;
    for (const ItemEditorLine& line : lines)
        result << line.name;
    return result;
}

QStringList codes(const QList<ItemEditorLine>& lines)
{
    QStringList result;
    for (const ItemEditorLine& line : lines)
        result << line.code;
    return result;
}

QStringList values(const QList<ItemEditorLine>& lines)
{
    QStringList result;
    for (const ItemEditorLine& line : lines)
        result << line.value;
    return result;
}

bool showDialog(IAdicionaItem& dialog)
{
    dialog.show();
    dialog.activateWindow();
    return QTest::qWaitForWindowActive(&dialog);
}

CIListViewPropriedade* fieldList(const IAdicionaItem& dialog)
{
    return dialog.findChild<CIListViewPropriedade*>("14017");
}

void click(const QWidget& dialog, const char* id)
{
    QTest::mouseClick(dialog.findChild<QPushButton*>(QString::fromLatin1(id)), Qt::LeftButton);
}

} // namespace

class TestItemEditor : public QObject
{
    Q_OBJECT

private slots:
    void init();

    // The form without its window.
    void headerLinesOnlyOfferThePaginationIndex_data();
    void headerLinesOnlyOfferThePaginationIndex();
    void fieldRowsStartOnTheSeventhLine();
    void missingTokensKeepThePreviousValues();
    void lineEndAtTheEndAddsNothing();
    void itemFieldIsReadOnly();
    void editModeTakesTheItemsValues();
    void noSettingsFileGivesNoLines();
    void confirmBuildsAttributesAndLabel_data();
    void confirmBuildsAttributesAndLabel();
    void applyAddsOrReplaces();

    // The dialog.
    void addItemThroughTheDialog();
    void editItemThroughTheDialog();
    void editWithoutTreeUsesTheGivenValues();
    void cancelLeavesTheTree();
    void itemLineCannotBeEdited();
    void enterCommitsWithoutClosing();
    void textsGoThroughTranslation();
    void dialogGrowsWithItsList();
    void dialogOnHeaderLinesOnly();
    void dialogLabelRules();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_cfa;
};

void TestItemEditor::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_cfa = m_dir->filePath("items.cfa");
    QVERIFY(writeFile(m_cfa, kCfa));
}

void TestItemEditor::headerLinesOnlyOfferThePaginationIndex_data()
{
    QTest::addColumn<QByteArray>("pagination");
    QTest::newRow("create page") << QByteArray("0");
    QTest::newRow("using page") << QByteArray("1");
}

void TestItemEditor::headerLinesOnlyOfferThePaginationIndex()
{
    QFETCH(QByteArray, pagination);
    QVERIFY(writeFile(m_cfa, kHeader + pagination));
    const auto read = ItemEditorForm::readLines(m_cfa, "3", std::nullopt);
    QCOMPARE(read.error, QString());
    QCOMPARE(read.lines.size(), 1);
    QCOMPARE(read.lines.first(), (ItemEditorLine{"", QString(pagination), "", true}));
}

void TestItemEditor::fieldRowsStartOnTheSeventhLine()
{
    const auto read = ItemEditorForm::readLines(m_cfa, "3", std::nullopt);
    // The seventh line has no ";": its line end stays in the field name.
    QCOMPARE(names(read.lines), QStringList({"1\n", "ITEM", "TAG", "DESCRIPTION", "TYPE"}));
    QCOMPARE(codes(read.lines), QStringList({"", "N", "S", "S", "N"}));
    QCOMPARE(values(read.lines), QStringList({"", "3", "", "", ""}));
}

void TestItemEditor::missingTokensKeepThePreviousValues()
{
    QVERIFY(writeFile(m_cfa, kHeader + "0\r\nA;X; ;S;\r\nB;\r\n;;C;Y;Z;N;EXTRA;\r\nD;E;F;\r\nG"));
    const auto read = ItemEditorForm::readLines(m_cfa, {}, std::nullopt);
    QCOMPARE(names(read.lines), QStringList({"0\n", "A", "B", "C", "D", "G"}));
    // "B;" keeps A's letter; "D;E;F;" ends with its line end as the fourth token.
    QCOMPARE(codes(read.lines), QStringList({"", "S", "S", "N", "\n", "\n"}));
}

void TestItemEditor::lineEndAtTheEndAddsNothing()
{
    QVERIFY(writeFile(m_cfa, kCfa + "\r\n"));
    const auto read = ItemEditorForm::readLines(m_cfa, {}, std::nullopt);
    QCOMPARE(read.lines.size(), 5);
    // The last row's line end now belongs to its fifth token, ignored.
    QCOMPARE(read.lines.last().name, KVString("TYPE"));
    QCOMPARE(read.lines.last().code, KVString("N"));
}

void TestItemEditor::itemFieldIsReadOnly()
{
    const auto read = ItemEditorForm::readLines(m_cfa, "42", std::nullopt);
    QCOMPARE(read.lines.at(1), (ItemEditorLine{"N", "ITEM", "42", false}));
    for (int i : {0, 2, 3, 4})
        QVERIFY(read.lines.at(i).editable);
}

void TestItemEditor::editModeTakesTheItemsValues()
{
    const QStringList attributes = {"TAG=-K1", "DESCRIPTION=Main = contactor", "TAG=second",
                                    "ITEM=7", "OTHER=x"};
    const auto read = ItemEditorForm::readLines(m_cfa, {}, attributes);
    QCOMPARE(values(read.lines), QStringList({"", "7", "-K1", "Main = contactor", ""}));
    QVERIFY(!read.lines.at(1).editable);
}

void TestItemEditor::noSettingsFileGivesNoLines()
{
    QVERIFY(ItemEditorForm::readLines("  ", "1", std::nullopt).lines.isEmpty());
    QVERIFY(ItemEditorForm::readLines({}, "1", std::nullopt).error.isEmpty());
    const QString missing = m_dir->filePath("missing.cfa");
    const auto read = ItemEditorForm::readLines(missing, "1", std::nullopt);
    QVERIFY(read.lines.isEmpty());
    QVERIFY2(read.error.contains(missing), qPrintable(read.error));
}

void TestItemEditor::confirmBuildsAttributesAndLabel_data()
{
    QTest::addColumn<QList<ItemEditorLine>>("lines");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QStringList>("attributes");
    QTest::newRow("nothing shown")
        << QList<ItemEditorLine>{{"N", "A", "1", true}, {"", "B", "2", true}} << ""
        << QStringList({"A=1", "B=2"});
    QTest::newRow("second shown value empty")
        << QList<ItemEditorLine>{{"S", "TAG", "-K1", true},
                                 {"N", "X", "x", true},
                                 {"S", "DESCRIPTION", "", true}}
        << "-K1 - " << QStringList({"TAG=-K1", "X=x", "DESCRIPTION="});
    QTest::newRow("first shown value empty")
        << QList<ItemEditorLine>{{"S", "A", "", true}, {"s", "B", "b", true}} << " - b"
        << QStringList({"A=", "B=b"});
    QTest::newRow("three shown") << QList<ItemEditorLine>{{"S", "A", "a", true},
                                                          {"S", "B", "b", false},
                                                          {"S", "C", "c", true}}
                                 << "a - b - c" << QStringList({"A=a", "B=b", "C=c"});
    QTest::newRow("no lines") << QList<ItemEditorLine>{} << "" << QStringList();
}

void TestItemEditor::confirmBuildsAttributesAndLabel()
{
    QFETCH(QList<ItemEditorLine>, lines);
    QFETCH(QString, label);
    QFETCH(QStringList, attributes);
    const ItemEditorResult result = ItemEditorForm::confirm(lines);
    QCOMPARE(result.name, KVString(label));
    QCOMPARE(result.attributes, attributes);
}

void TestItemEditor::applyAddsOrReplaces()
{
    CTVNodesUtil tree;
    const TVNode first = tree.AddItem("old", makeAttributeList({"A=1"}), false);
    const TVNode added = ItemEditorForm::apply(tree, false, {"new", {"A=2"}});
    QCOMPARE(tree.children().size(), 2);
    QCOMPARE(tree.children().last(), added);
    QCOMPARE(tree.current(), added);
    QCOMPARE(tree.GetText(added), KVString("new"));
    QCOMPARE(attributeTexts(tree.GetAttributes(added)), QStringList({"A=2"}));

    tree.setCurrent(first);
    QCOMPARE(ItemEditorForm::apply(tree, true, {"renamed", {"A=3", "B=4"}}), first);
    QCOMPARE(tree.children().size(), 2);
    QCOMPARE(tree.GetText(first), KVString("renamed"));
    QCOMPARE(attributeTexts(tree.GetAttributes(first)), QStringList({"A=3", "B=4"}));

    tree.setCurrent({});
    QVERIFY(ItemEditorForm::apply(tree, true, {"lost", {}}).isNull());
    QCOMPARE(tree.children().size(), 2);
}

void TestItemEditor::addItemThroughTheDialog()
{
    CTVNodesUtil tree;
    tree.AddItem("1", makeAttributeList({"ITEM=1"}), false);
    IAdicionaItem dialog;
    dialog.SetSettingsPath(m_cfa);
    dialog.SetItemName("2");
    dialog.SetTree(&tree);
    QVERIFY(showDialog(dialog));
    QCOMPARE(dialog.windowTitle(), QString("Add item"));
    CIListViewPropriedade* list = fieldList(dialog);
    QCOMPARE(list->GetPropertyCount(), 5);
    QCOMPARE(list->GetPropertyName(2), KVString("TAG"));
    QCOMPARE(list->GetPropertyValue(1), KVString("2"));

    QVERIFY(typeIntoCell(*list, 2, 1, "-K2"));
    QVERIFY(typeIntoCell(*list, 3, 1, "Pump motor"));
    QVERIFY(typeIntoCell(*list, 4, 1, "MOTOR"));
    click(dialog, "1");

    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(tree.children().size(), 2);
    const TVNode item = tree.children().last();
    QCOMPARE(tree.current(), item);
    QCOMPARE(tree.GetText(item), KVString("-K2 - Pump motor"));
    QCOMPARE(attributeTexts(tree.GetAttributes(item)),
             QStringList({"1\n=", "ITEM=2", "TAG=-K2", "DESCRIPTION=Pump motor", "TYPE=MOTOR"}));
}

void TestItemEditor::editItemThroughTheDialog()
{
    CTVNodesUtil tree;
    tree.AddItem("-K1 - Old", makeAttributeList({"ITEM=1", "TAG=-K1", "DESCRIPTION=Old"}), false);
    const TVNode edited =
        tree.AddItem("-K5", makeAttributeList({"ITEM=5", "TAG=-K5", "TYPE=RELAY"}), true);
    IAdicionaItem dialog;
    dialog.SetSettingsPath(m_cfa);
    dialog.SetTree(&tree);
    dialog.SetEditMode(true);
    QVERIFY(showDialog(dialog));
    QCOMPARE(dialog.windowTitle(), QString("Edit item"));
    CIListViewPropriedade* list = fieldList(dialog);
    QCOMPARE(list->GetPropertyValue(1), KVString("5"));
    QCOMPARE(list->GetPropertyValue(2), KVString("-K5"));
    QCOMPARE(list->GetPropertyValue(3), KVString());
    QCOMPARE(list->GetPropertyValue(4), KVString("RELAY"));
    QVERIFY(!list->IsPropertyEditable(1));

    QVERIFY(typeIntoCell(*list, 3, 1, "Heater"));
    click(dialog, "1");
    QCOMPARE(tree.children().size(), 2);
    QCOMPARE(tree.GetText(edited), KVString("-K5 - Heater"));
    QCOMPARE(attributeTexts(tree.GetAttributes(edited)),
             QStringList({"1\n=", "ITEM=5", "TAG=-K5", "DESCRIPTION=Heater", "TYPE=RELAY"}));
    QCOMPARE(dialog.editorResult().name, KVString("-K5 - Heater"));
}

void TestItemEditor::editWithoutTreeUsesTheGivenValues()
{
    IAdicionaItem dialog;
    dialog.SetSettingsPath(m_cfa);
    dialog.SetEditMode(true);
    dialog.SetEditedAttributes({"TAG=-Q1", "DESCRIPTION=Breaker"});
    QVERIFY(showDialog(dialog));
    QCOMPARE(fieldList(dialog)->GetPropertyValue(2), KVString("-Q1"));
    click(dialog, "1");
    QCOMPARE(dialog.editorResult().name, KVString("-Q1 - Breaker"));
}

void TestItemEditor::cancelLeavesTheTree()
{
    CTVNodesUtil tree;
    const TVNode item = tree.AddItem("A", makeAttributeList({"TAG=A"}), true);
    for (bool editMode : {false, true}) {
        IAdicionaItem dialog;
        dialog.SetSettingsPath(m_cfa);
        dialog.SetItemName("9");
        dialog.SetTree(&tree);
        dialog.SetEditMode(editMode);
        QVERIFY(showDialog(dialog));
        QVERIFY(typeIntoCell(*fieldList(dialog), 2, 1, "CHANGED"));
        click(dialog, "2");
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QCOMPARE(tree.children().size(), 1);
        QCOMPARE(tree.GetText(item), KVString("A"));
        QCOMPARE(attributeTexts(tree.GetAttributes(item)), QStringList({"TAG=A"}));
    }
}

void TestItemEditor::itemLineCannotBeEdited()
{
    IAdicionaItem dialog;
    dialog.SetSettingsPath(m_cfa);
    dialog.SetItemName("12");
    QVERIFY(showDialog(dialog));
    CIListViewPropriedade* list = fieldList(dialog);
    QVERIFY(!typeIntoCell(*list, 1, 1, "13"));
    QTest::keyClick(list, Qt::Key_Return);
    QVERIFY(!list->isEditing());
    QCOMPARE(list->GetPropertyValue(1), KVString("12"));
    click(dialog, "1");
    QVERIFY(dialog.editorResult().attributes.contains("ITEM=12"));
}

void TestItemEditor::enterCommitsWithoutClosing()
{
    IAdicionaItem dialog;
    dialog.SetSettingsPath(m_cfa);
    QVERIFY(showDialog(dialog));
    CIListViewPropriedade* list = fieldList(dialog);
    QVERIFY(typeIntoCell(*list, 2, 1, "-S1"));
    QVERIFY(dialog.isVisible());
    QCOMPARE(list->GetPropertyValue(2), KVString("-S1"));
    // An edit still open when "Ok" is clicked is kept too.
    clickCell(*list, 3, 1);
    QTest::keyClick(list, Qt::Key_F2);
    QTest::keyClicks(QApplication::focusWidget(), "Stop");
    click(dialog, "1");
    QCOMPARE(dialog.editorResult().name, KVString("-S1 - Stop"));
}

void TestItemEditor::textsGoThroughTranslation()
{
    BracketTranslator translator;
    QCoreApplication::installTranslator(&translator);
    IAdicionaItem dialog;
    dialog.SetSettingsPath(m_cfa);
    QVERIFY(showDialog(dialog));
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(dialog.windowTitle(), QString("[Add item]"));
    QCOMPARE(dialog.findChild<QLabel*>("221")->text(), QString("[Field list:]"));
    QCOMPARE(dialog.findChild<QPushButton*>("1")->text(), QString("[Ok]"));
    QCOMPARE(dialog.findChild<QPushButton*>("2")->text(), QString("[Cancel]"));
    QCOMPARE(fieldList(dialog)->model()->headerData(0, Qt::Horizontal).toString(),
             QString("[Field]"));
    QCOMPARE(fieldList(dialog)->model()->headerData(1, Qt::Horizontal).toString(),
             QString("[Value]"));
    QCOMPARE(fieldList(dialog)->columnWidth(0), 150);
    QCOMPARE(fieldList(dialog)->columnWidth(1), 200);
}

void TestItemEditor::dialogGrowsWithItsList()
{
    IAdicionaItem dialog;
    dialog.SetSettingsPath(m_cfa);
    QVERIFY(showDialog(dialog));
    const QSize first = dialog.size();
    const QRect list = fieldList(dialog)->geometry();
    const QRect ok = dialog.findChild<QPushButton*>("1")->geometry();
    dialog.resize(first + QSize(60, 40));
    QCOMPARE(fieldList(dialog)->geometry(), list.adjusted(0, 0, 60, 40));
    QCOMPARE(dialog.findChild<QPushButton*>("1")->geometry(), ok.translated(60, 40));
    QCOMPARE(dialog.minimumSize(), first);
}

void TestItemEditor::dialogOnHeaderLinesOnly()
{
    QVERIFY(writeFile(m_cfa, kHeader + "1"));
    CTVNodesUtil tree;
    IAdicionaItem dialog;
    dialog.SetSettingsPath(m_cfa);
    dialog.SetItemName("1");
    dialog.SetTree(&tree);
    QVERIFY(showDialog(dialog));
    CIListViewPropriedade* list = fieldList(dialog);
    QCOMPARE(list->GetPropertyCount(), 1);
    QCOMPARE(list->GetPropertyName(0), KVString("1"));
    QVERIFY(typeIntoCell(*list, 0, 1, "x"));
    click(dialog, "1");
    QCOMPARE(tree.children().size(), 1);
    QCOMPARE(tree.GetText(tree.children().first()), KVString());
    QCOMPARE(attributeTexts(tree.GetAttributes(tree.children().first())), QStringList({"1=x"}));
}

void TestItemEditor::dialogLabelRules()
{
    // TAG and DESCRIPTION are shown: a value for the first and none for the second.
    CTVNodesUtil tree;
    IAdicionaItem dialog;
    dialog.SetSettingsPath(m_cfa);
    dialog.SetTree(&tree);
    QVERIFY(showDialog(dialog));
    QVERIFY(typeIntoCell(*fieldList(dialog), 2, 1, "-F3"));
    QVERIFY(typeIntoCell(*fieldList(dialog), 4, 1, "FUSE"));
    click(dialog, "1");
    QCOMPARE(tree.GetText(tree.children().first()), KVString("-F3 - "));

    // No field shown at all: the label is empty.
    QVERIFY(writeFile(m_cfa, kHeader + "0\r\nTAG;TAG; ;N;\r\nDESCRIPTION;FUNCTION; ;N;"));
    IAdicionaItem hidden;
    hidden.SetSettingsPath(m_cfa);
    hidden.SetTree(&tree);
    QVERIFY(showDialog(hidden));
    QVERIFY(typeIntoCell(*fieldList(hidden), 1, 1, "-F4"));
    click(hidden, "1");
    QCOMPARE(tree.children().size(), 2);
    QCOMPARE(tree.GetText(tree.children().last()), KVString());
    QCOMPARE(attributeTexts(tree.GetAttributes(tree.children().last())),
             QStringList({"0\n=", "TAG=-F4", "DESCRIPTION="}));
}

QTEST_MAIN(TestItemEditor)
#include "tst_settingsui_itemeditor.moc"
