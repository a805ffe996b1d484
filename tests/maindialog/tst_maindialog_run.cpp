// The main dialog's "Import" and "Add" (the run) on the reference host over the example
// standard, and a whole session: open on the example settings, import the example workbook,
// drag an item, add a symbol from the palette, a page and a space, run, and look at the drawing.
#include "MainDialogTestSupport.h"

#include "settingsui/widgets/CITreeSimbolosPopup.h"

#include <QLabel>

using namespace MainDialogTest;
using ItemTreeTestSupport::describeChildren;

class tst_maindialog_run : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void importFillsTheListUnderTheWaitCursor();
    void importCancelledRecomputesOnlyTheAddButton();
    void importWithUnknownPropertiesWarns();
    void importOfADamagedWorkbookWarns();
    void runClosesTheDialogThenInserts();
    void runNamesASettingsFileItCannotRead();
    void runTakesMarkerOnlyItemsAndCleansValues();
    void wholeSession();

private:
    QString exampleSheet() const { return exampleFile(QStringLiteral("sheets/example.xlsx")); }

    ExampleStandard m_standard;
};

namespace {

QString countText(const QWidget& dialog)
{
    return dialog.findChild<QLabel*>(QStringLiteral("231"))->text();
}

QString attributeOf(const RefHost::BlockReference& reference, const QString& tag)
{
    for (const RefHost::AttributeValue& attribute : reference.attributes) {
        if (attribute.tag == tag)
            return attribute.value;
    }
    return {};
}

QString tagOf(const RefHost::BlockReference& reference)
{
    return attributeOf(reference, QStringLiteral("TAG"));
}

// The references that carry an item's values, in the order they were placed.
QList<RefHost::BlockReference> itemReferences(const RefHost::Drawing& drawing)
{
    QList<RefHost::BlockReference> result;
    for (const RefHost::BlockReference& reference : drawing.references()) {
        if (!tagOf(reference).isEmpty())
            result.append(reference);
    }
    return result;
}

bool clickPaletteEntry(CIInsereAuto& dialog, const QString& key)
{
    auto* palette = dialog.findChild<CITreeSimbolosPopup*>(QStringLiteral("14018"));
    QTreeWidgetItem* line = palette ? palette->findEntry(key) : nullptr;
    if (!line)
        return false;
    palette->scrollToItem(line);
    QTest::mouseClick(palette->viewport(), Qt::LeftButton, {},
                      palette->visualItemRect(line).center());
    return palette->currentItem() == line;
}

} // namespace

void tst_maindialog_run::initTestCase()
{
    QVERIFY2(m_standard.load(), qPrintable(m_standard.error()));
}

void tst_maindialog_run::cleanup()
{
    while (QGuiApplication::overrideCursor())
        QGuiApplication::restoreOverrideCursor();
}

void tst_maindialog_run::importFillsTheListUnderTheWaitCursor()
{
    ExampleHost host(m_standard, {exampleSheet()});
    QVERIFY2(host.ok(), qPrintable(host.error()));
    QueryProbe probe(host.binding().electrical);
    HostBinding binding = host.binding();
    binding.electrical = &probe;
    host.reinstall(binding);

    CIInsereAuto dialog;
    dialog.LoadSettings(m_standard.settings());
    QVERIFY(showDialog(dialog));
    QVERIFY(!button(dialog, "14015")->isEnabled());
    QVERIFY(clickButton(dialog, "14007"));
    const CTVNodesUtil& tree = dialog.itemList().tree();
    QCOMPARE(tree.childCount(), 18);
    QCOMPARE(tree.GetText(tree.firstChild()), QStringLiteral("-F1 - Main circuit breaker"));
    QCOMPARE(describeChildren(tree, tree.firstChild()), QStringLiteral("S:1014,H"));
    QCOMPARE(countText(dialog), QStringLiteral("18"));
    QCOMPARE(dialog.itemList().lastItemNumber(), 18);
    QCOMPARE(dialog.importedHeaders().separatorMode, QStringLiteral("1"));
    QCOMPARE(dialog.importedHeaders().pageSize, QStringLiteral("380"));
    QVERIFY(button(dialog, "14015")->isEnabled());
    // The dictionary and every row's search ran under the wait cursor, which is gone now.
    QVERIFY(probe.cursors.size() >= 19);
    QCOMPARE(probe.cursors.count(int(Qt::WaitCursor)), probe.cursors.size());
    QVERIFY(!QGuiApplication::overrideCursor());
    QCOMPARE(host.err(), QString());
    // Items added by hand go on from the highest item number read.
    {
        int proposed = 0;
        ModalWatch watch([&](QWidget* modal) {
            proposed = dialog.itemList().lastItemNumber();
            modal->close();
        });
        QVERIFY(clickButton(dialog, "14014"));
        QVERIFY(watch.opened());
        QCOMPARE(proposed, 19);
    }
}

void tst_maindialog_run::importCancelledRecomputesOnlyTheAddButton()
{
    ExampleHost host(m_standard);
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    dialog.LoadSettings(m_standard.settings());
    QVERIFY(showDialog(dialog));
    // An empty list: the button stays off.
    QVERIFY(clickButton(dialog, "14007"));
    QVERIFY(!button(dialog, "14015")->isEnabled());
    // A list with an item: the button is recomputed from the tree, whatever it was.
    ItemListController& list = dialog.itemList();
    list.addItem(QStringLiteral("A"), {});
    button(dialog, "14015")->setEnabled(false);
    QVERIFY(clickButton(dialog, "14007"));
    QVERIFY(button(dialog, "14015")->isEnabled());
    QCOMPARE(itemTexts(list.tree()), QStringList{"A"});
    QCOMPARE(countText(dialog), QStringLiteral("1"));
}

void tst_maindialog_run::importWithUnknownPropertiesWarns()
{
    QByteArray settings = readBytes(m_standard.settings());
    settings.replace("MANUFACTURER; ;MANUFACTURER;N;", "MANUFACTURER; ;MAKER_NAME;N;");
    const QString cfa = m_standard.path(QStringLiteral("unknown-property.cfa"));
    QVERIFY(writeBytes(cfa, settings));
    ExampleHost host(m_standard, {exampleSheet()});
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    dialog.LoadSettings(cfa);
    QVERIFY(showDialog(dialog));
    ItemListController& list = dialog.itemList();
    list.addItem(QStringLiteral("old"), {});
    // With nothing selected, clearing the list changes no selection, so only the import
    // could touch the Add button.
    list.tree().setCurrent({});
    QVERIFY(clickButton(dialog, "14007"));
    QVERIFY2(host.err().contains(QStringLiteral("warning: Invalid configuration file. The "
                                                "following properties do not exist: MAKER_NAME")),
             qPrintable(host.err()));
    // The old list is gone; the count field and the Add button are left as they were.
    QVERIFY(list.tree().isEmpty());
    QCOMPARE(countText(dialog), QStringLiteral("1"));
    QVERIFY(button(dialog, "14015")->isEnabled());
    QVERIFY(!QGuiApplication::overrideCursor());
}

void tst_maindialog_run::importOfADamagedWorkbookWarns()
{
    ExampleHost host(m_standard, {QStringLiteral(KV_TEST_DATA_DIR "/xlsx/hostile-not-a-zip.xlsx")});
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    dialog.LoadSettings(m_standard.settings());
    QVERIFY(showDialog(dialog));
    dialog.itemList().addItem(QStringLiteral("kept"), {});
    QVERIFY(clickButton(dialog, "14007"));
    QVERIFY2(host.err().contains(QStringLiteral("hostile-not-a-zip.xlsx")), qPrintable(host.err()));
    QCOMPARE(itemTexts(dialog.itemList().tree()), QStringList{"kept"});
    QVERIFY(dialog.isVisible());
}

void tst_maindialog_run::runClosesTheDialogThenInserts()
{
    ExampleHost host(m_standard);
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    QueryProbe probe(host.binding().electrical);
    QList<bool> visibleAtQuery;
    probe.onQuery = [&] { visibleAtQuery.append(dialog.isVisible()); };
    HostBinding binding = host.binding();
    binding.electrical = &probe;
    host.reinstall(binding);

    dialog.LoadSettings(m_standard.settings());
    QVERIFY(showDialog(dialog));
    ItemListController& list = dialog.itemList();
    list.addItem(QStringLiteral("-F9 - Spare breaker"),
                 {QStringLiteral("ITEM=1"), QStringLiteral("TAG=-F9"),
                  QStringLiteral("DESCRIPTION=Spare breaker"), QStringLiteral("SECTION=Spare")});
    CEPasta breaker(CEPasta::kComponent, QStringLiteral("1002"));
    breaker.setDescricao(1, QStringLiteral("Miniature circuit breaker 1P C10 A"));
    list.addSymbol(breaker);
    // An item without symbols never reaches the drawing.
    list.addItem(QStringLiteral("-F10"), {QStringLiteral("TAG=-F10")});

    QVERIFY(clickButton(dialog, "14015"));
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    for (const char* id :
         {"14011", "14010", "14009", "14008", "14007", "14014", "14013", "14015", "14017"})
        QVERIFY2(!dialog.findChild<QWidget*>(id)->isEnabled(), id);
    // The engine ran after the dialog had gone, with the arrow back.
    QVERIFY(!visibleAtQuery.isEmpty());
    QVERIFY(!visibleAtQuery.contains(true));
    QCOMPARE(probe.cursors.count(-1), probe.cursors.size());
    QVERIFY(!QGuiApplication::overrideCursor());

    const QList<RefHost::BlockReference> placed = itemReferences(host.host().drawing());
    QCOMPARE(placed.size(), 1);
    QCOMPARE(placed.first().componentKey, QStringLiteral("1002"));
    QCOMPARE(tagOf(placed.first()), QStringLiteral("-F9"));
    QVERIFY2(host.out().endsWith(QStringLiteral("\n\nAutomatic insertion completed")),
             qPrintable(host.out()));
    // The list was consumed by the run.
    QCOMPARE(list.tree().GetSymbol(list.tree().firstChild(list.tree().firstChild())), nullptr);
}

void tst_maindialog_run::runNamesASettingsFileItCannotRead()
{
    ExampleHost host(m_standard);
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    const QString missing = m_standard.path(QStringLiteral("missing.cfa"));
    QCOMPARE(dialog.LoadSettings(missing), QString());
    QVERIFY(showDialog(dialog));
    ItemListController& list = dialog.itemList();
    list.addItem(QStringLiteral("-F9"), {QStringLiteral("TAG=-F9")});
    CEPasta breaker(CEPasta::kComponent, QStringLiteral("1002"));
    list.addSymbol(breaker);
    QVERIFY(clickButton(dialog, "14015"));
    QVERIFY(!dialog.isVisible());
    // Read as empty, and named on the command line before the run's own output.
    const QString out = host.out();
    QVERIFY2(out.contains(missing), qPrintable(out));
    QVERIFY2(out.indexOf(missing) < out.indexOf(QStringLiteral("Automatic insertion completed")),
             qPrintable(out));
}

void tst_maindialog_run::runTakesMarkerOnlyItemsAndCleansValues()
{
    ExampleHost host(m_standard);
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    dialog.LoadSettings(m_standard.settings());
    QVERIFY(showDialog(dialog));
    ItemListController& list = dialog.itemList();
    CEPasta relay(CEPasta::kComponent, QStringLiteral("1401"));
    list.addItem(QStringLiteral("-K\"1\" \u00C2 relay"),
                 {QStringLiteral("TAG=-K\"1\""), QStringLiteral("DESCRIPTION=Coil=24 V \"DC\"")});
    list.addSymbol(relay);
    // An item with a page break only, and one without children.
    list.addItem(QStringLiteral("break"), {QStringLiteral("TAG=-BREAK")});
    QVERIFY(clickButton(dialog, "14011"));
    list.addItem(QStringLiteral("-K3"), {QStringLiteral("TAG=-K3")});
    list.addItem(QStringLiteral("-K2"), {QStringLiteral("TAG=-K2")});
    list.addSymbol(relay);
    QVERIFY(clickButton(dialog, "14015"));

    const RefHost::Drawing& drawing = host.host().drawing();
    const QList<RefHost::BlockReference> placed = itemReferences(drawing);
    QStringList tags;
    for (const RefHost::BlockReference& reference : placed)
        tags.append(tagOf(reference));
    // Double quotes in values become apostrophes; a value keeps a second "=".
    QCOMPARE(tags.first(), QStringLiteral("-K'1'"));
    QCOMPARE(attributeOf(placed.first(), QStringLiteral("FUNCTION")),
             QStringLiteral("Coil=24 V 'DC'"));
    QVERIFY(!tags.contains(QStringLiteral("-K3")));
    // The page-only item broke the page: -K2 is on the page after -K1's.
    const qsizetype second = tags.indexOf(QStringLiteral("-K2"));
    QVERIFY(second > 0);
    QCOMPARE(drawing.pageLayers().indexOf(placed.at(second).layer),
             drawing.pageLayers().indexOf(placed.first().layer) + 1);
}

void tst_maindialog_run::wholeSession()
{
    ExampleHost host(m_standard, {exampleSheet()});
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    QCOMPARE(dialog.LoadSettings(m_standard.settings()), QString());

    // What the user saw on the way; checked once the dialog is closed.
    struct Seen
    {
        int importedItems = 0;
        QString firstAfterDrag;
        QString lastAfterDrag;
        QString breakerChildren;
        bool panelOpened = false;
        bool ranAll = false;
    } seen;
    ModalWatch session([&](QWidget* modal) {
        auto& shown = *static_cast<CIInsereAuto*>(modal);
        ItemListController& list = shown.itemList();
        const CTVNodesUtil& tree = list.tree();
        ItemTreeView* view = itemTree(shown);
        if (!clickButton(shown, "14007"))
            return;
        seen.importedItems = tree.childCount();
        const TVNode last = tree.lastChild();
        if (last.isNull())
            return;
        dragAndDrop(*view, last, view->viewport(), rowPoint(*view, tree.firstChild(), 0.25));
        seen.firstAfterDrag = tree.GetText(tree.firstChild());
        seen.lastAfterDrag = tree.GetText(tree.lastChild());

        const TVNode breaker = itemNamed(tree, QStringLiteral("-F2 - Control circuit breaker"));
        clickNode(*view, breaker);
        seen.panelOpened = clickButton(shown, "14012") && shown.isPanelShown();
        if (!clickPaletteEntry(shown, QStringLiteral("1503")) || !clickButton(shown, "14025"))
            return;
        // The new symbol is selected: the page and the space follow it.
        if (!clickButton(shown, "14011"))
            return;
        clickNode(*view, tree.lastChild(breaker));
        if (!clickButton(shown, "14010"))
            return;
        seen.breakerChildren = describeChildren(tree, breaker);
        seen.ranAll = clickButton(shown, "14015");
    });
    QCOMPARE(dialog.DoModal(), int(QDialog::Rejected));
    QVERIFY(session.opened());
    QCOMPARE(seen.importedItems, 18);
    QCOMPARE(seen.firstAfterDrag, QStringLiteral("-X2 - Earth terminals"));
    QCOMPARE(seen.lastAfterDrag, QStringLiteral("-X1 - Control terminals"));
    QVERIFY(seen.panelOpened);
    QCOMPARE(seen.breakerChildren, QStringLiteral("S:1001,H,S:1503,P,V"));
    QVERIFY(seen.ranAll);

    // The drawing: the moved item came first, the added symbol carries -F2's values, and the
    // page break after it sent the next item to a new page.
    const RefHost::Drawing& drawing = host.host().drawing();
    const QList<RefHost::BlockReference> placed = itemReferences(drawing);
    QVERIFY(!placed.isEmpty());
    QCOMPARE(tagOf(placed.first()), QStringLiteral("-X2"));
    QCOMPARE(placed.first().layer, QStringLiteral("PAGE$1"));
    const auto firstPlaced = [&](const QString& tag, const QString& key) -> qsizetype {
        for (qsizetype i = 0; i < placed.size(); ++i) {
            if (tagOf(placed.at(i)) == tag && (key.isEmpty() || placed.at(i).componentKey == key))
                return i;
        }
        return -1;
    };
    const qsizetype added = firstPlaced(QStringLiteral("-F2"), QStringLiteral("1503"));
    const qsizetype next = firstPlaced(QStringLiteral("-T1"), QString());
    QVERIFY(added > 0);
    QVERIFY(next > added);
    QCOMPARE(drawing.pageLayers().indexOf(placed.at(next).layer),
             drawing.pageLayers().indexOf(placed.at(added).layer) + 1);
    // Every imported item reached the drawing.
    QSet<QString> tags;
    for (const RefHost::BlockReference& reference : placed)
        tags.insert(tagOf(reference));
    QCOMPARE(tags.size(), 18);
    QVERIFY2(host.out().endsWith(QStringLiteral("\n\nAutomatic insertion completed")),
             qPrintable(host.out()));
    QVERIFY2(!host.err().contains(QStringLiteral("error:")), qPrintable(host.err()));
}

QTEST_MAIN(tst_maindialog_run)
#include "tst_maindialog_run.moc"
