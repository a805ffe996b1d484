#include "ItemTreeTestSupport.h"

#include "maindialog/ItemListController.h"

#include <QSignalSpy>
#include <QTest>

using namespace ItemTreeTestSupport;

namespace {

std::unique_ptr<CEPasta> paletteComponent(const QString& key, const QString& description)
{
    auto entry = std::make_unique<CEPasta>(CEPasta::kComponent, key);
    entry->setDescricao(0, description);
    return entry;
}

QStringList symbolLines(const SelectedSymbolList& list)
{
    QStringList lines;
    for (const SelectedSymbolList::Line& line : list.lines())
        lines.append(line.description);
    return lines;
}

} // namespace

// The main dialog's operations on the item list: the count beside "Items not imported:", the
// proposed item number, the "Symbols selected:" list, and the tree edits behind each button.
class TestItemTreeController : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void startsEmpty();
    void addItemProposesNextNumber();
    void addItemCancelledStillUsesNumber();
    void addItemContinuesFromImportedNumber();
    void editItemReplacesNameAndAttributes();
    void editItemCancelled();
    void editItemOnOtherKindDoesNothing();
    void editItemWithoutSelectionChangesNothing();
    void addSymbolToItemWithoutChildren();
    void addSymbolAfterSelectedChild();
    void addSymbolNeedsComponentAndSelection();
    void addSymbolDescriptionFallback_data();
    void addSymbolDescriptionFallback();
    void addSymbolMarkedEntryTriesFallbacksFirst();
    void canAddSymbol();
    void addPageOnItemGoesFirst();
    void addPageOnSymbolGoesRightAfterIt();
    void addPageWithoutSelection();
    void addSpaceBeforeAnyImportIsVertical();
    void addSpaceBySeparatorMode_data();
    void addSpaceBySeparatorMode();
    void addSpaceUsesTranslatedText();
    void removeWithoutSelection();
    void removeOnlySymbolOfItem();
    void removeSymbolWithAnotherSymbolInItem();
    void removeOnlySymbolOfExpandedItemWhoseNextItemHasSymbol();
    void removeOnlySymbolWhenNextItemIsCollapsed();
    void removeSymbolDeletesFirstMatchingLine();
    void removeItemWithoutChildren();
    void removeItemWithChildrenDeletesItsLines();
    void removeMarker();
    void copyItemWithoutChildren();
    void copyItemReversesMarkers();
    void copyItemOnOtherKindDoesNothing();
    void copyItemCopiesAttributes();
    void moveItemKeepsChildOrder();
    void moveItemOntoItselfKeepsOrder();
    void moveItemToFirstPosition();
    void moveItemToEnd();
    void moveItemRefusesChildNodes();
    void moveItemRepointsSymbolLines();
    void selectSymbolLine();
    void selectSymbolLineOfRemovedNode();
    void hasNodes();
    void symbolListModel();
    void takeJobItemsConsumesTree();

private:
    std::unique_ptr<ItemListController> m_controller;
    std::unique_ptr<QAbstractItemModelTester> m_treeTester;
    std::unique_ptr<QAbstractItemModelTester> m_listTester;
    CTVNodesUtil* m_tree = nullptr;
};

void TestItemTreeController::init()
{
    m_controller = std::make_unique<ItemListController>();
    m_tree = &m_controller->tree();
    m_treeTester = checkModel(m_tree);
    m_listTester = checkModel(&m_controller->selectedSymbols());
}

void TestItemTreeController::cleanup()
{
    m_treeTester.reset();
    m_listTester.reset();
    m_controller.reset();
    m_tree = nullptr;
}

void TestItemTreeController::startsEmpty()
{
    QCOMPARE(m_controller->itemCount(), 0);
    QCOMPARE(m_controller->lastItemNumber(), 0);
    QVERIFY(m_controller->separatorMode().isEmpty());
    QVERIFY(m_tree->isEmpty());
    QCOMPARE(m_controller->selectedSymbols().count(), 0);
}

void TestItemTreeController::addItemProposesNextNumber()
{
    QSignalSpy countSpy(m_controller.get(), &ItemListController::itemCountChanged);
    QStringList proposed;
    auto editor = [&](const KVString& name) {
        proposed.append(name);
        return std::optional<ItemEditorResult>(
            ItemEditorResult{"Item " + name, {"ITEM=" + name, "TAG=K" + name}});
    };
    const TVNode first = m_controller->addItem(editor);
    const TVNode second = m_controller->addItem(editor);
    QCOMPARE(proposed, (QStringList{"1", "2"}));
    QCOMPARE(m_controller->lastItemNumber(), 2);
    QCOMPARE(m_controller->itemCount(), 2);
    QCOMPARE(countSpy.size(), 2);
    QCOMPARE(countSpy.last().at(0).toInt(), 2);
    QCOMPARE(describe(*m_tree), QStringLiteral("Item 1[] Item 2[]"));
    QCOMPARE(attributeTexts(m_tree->GetAttributes(first)), (QStringList{"ITEM=1", "TAG=K1"}));
    QCOMPARE(m_tree->current(), second);
}

void TestItemTreeController::addItemCancelledStillUsesNumber()
{
    QString proposed;
    const TVNode node = m_controller->addItem([&](const KVString& name) {
        proposed = name;
        return std::optional<ItemEditorResult>();
    });
    QVERIFY(node.isNull());
    QCOMPARE(proposed, QStringLiteral("1"));
    QCOMPARE(m_controller->lastItemNumber(), 1);
    QCOMPARE(m_controller->itemCount(), 0);
    QVERIFY(m_tree->isEmpty());
    m_controller->addItem("X", {});
    QCOMPARE(m_controller->lastItemNumber(), 2);
}

void TestItemTreeController::addItemContinuesFromImportedNumber()
{
    m_controller->setLastItemNumber(12);
    m_controller->setItemCount(5);
    QString proposed;
    m_controller->addItem([&](const KVString& name) {
        proposed = name;
        return std::optional<ItemEditorResult>(ItemEditorResult{"N", {}});
    });
    QCOMPARE(proposed, QStringLiteral("13"));
    QCOMPARE(m_controller->itemCount(), 6);
}

void TestItemTreeController::editItemReplacesNameAndAttributes()
{
    const TVNode item = m_controller->addItem("Old", {"ITEM=1", "TAG=A"});
    QStringList seen;
    QVERIFY(m_controller->editItem([&](const QStringList& current) {
        seen = current;
        return std::optional<ItemEditorResult>(ItemEditorResult{"New", {"ITEM=1", "TAG=B"}});
    }));
    QCOMPARE(seen, (QStringList{"ITEM=1", "TAG=A"}));
    QCOMPARE(m_tree->GetText(item), KVString("New"));
    QCOMPARE(m_tree->GetName(item), KVString("New"));
    QCOMPARE(attributeTexts(m_tree->GetAttributes(item)), (QStringList{"ITEM=1", "TAG=B"}));
    QCOMPARE(m_controller->itemCount(), 1);
}

void TestItemTreeController::editItemCancelled()
{
    const TVNode item = m_controller->addItem("Old", {"TAG=A"});
    QVERIFY(!m_controller->editItem(
        [](const QStringList&) { return std::optional<ItemEditorResult>(); }));
    QCOMPARE(m_tree->GetText(item), KVString("Old"));
    QCOMPARE(attributeTexts(m_tree->GetAttributes(item)), QStringList{"TAG=A"});
}

void TestItemTreeController::editItemOnOtherKindDoesNothing()
{
    const TVNode item = m_controller->addItem("A", {});
    m_tree->AddMarker(item, item, "Page", TVNodeKind::Page, true);
    bool called = false;
    QVERIFY(!m_controller->editItem([&](const QStringList&) {
        called = true;
        return std::optional<ItemEditorResult>(ItemEditorResult{"B", {}});
    }));
    QVERIFY(!called);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[P]"));
}

void TestItemTreeController::editItemWithoutSelectionChangesNothing()
{
    m_controller->addItem("A", {"F=1"});
    m_tree->setCurrent({});
    bool called = false;
    QStringList seen{"not called"};
    QVERIFY(!m_controller->editItem([&](const QStringList& current) {
        called = true;
        seen = current;
        return std::optional<ItemEditorResult>(ItemEditorResult{"B", {"F=2"}});
    }));
    // The editor opens, but there is no item to change.
    QVERIFY(called);
    QVERIFY(seen.isEmpty());
    QCOMPARE(describe(*m_tree), QStringLiteral("A[]"));
}

void TestItemTreeController::addSymbolToItemWithoutChildren()
{
    const TVNode item = m_controller->addItem("A", {});
    QCOMPARE(m_controller->itemCount(), 1);
    const auto relay = paletteComponent("K1", "Relay");
    const TVNode symbol = m_controller->addSymbol(*relay);
    QVERIFY(!symbol.isNull());
    QCOMPARE(m_controller->itemCount(), 0);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1]"));
    QCOMPARE(*m_tree->GetSymbol(symbol), CEComponente("K1", "Relay"));
    QCOMPARE(m_tree->GetText(symbol), KVString("Relay"));
    QCOMPARE(m_tree->image(item), TVNodeImage::ItemWithSymbol);
    QCOMPARE(m_tree->current(), symbol);
    QVERIFY(m_tree->isExpanded(item));
    QCOMPARE(m_controller->selectedSymbols().lines(),
             (QList<SelectedSymbolList::Line>{{"Relay", symbol}}));

    // The item now has a child: a second symbol on the item leaves the count.
    m_tree->setCurrent(item);
    m_controller->addSymbol(*paletteComponent("K2", "Lamp"));
    QCOMPARE(m_controller->itemCount(), 0);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1,S:K2]"));
}

void TestItemTreeController::addSymbolAfterSelectedChild()
{
    const TVNode item = m_controller->addItem("A", {});
    m_controller->addSymbol(*paletteComponent("K1", "x"));
    m_controller->addSymbol(*paletteComponent("K2", "y"));
    const TVNode first = m_tree->firstChild(item);
    m_tree->setCurrent(first);
    m_controller->addSymbol(*paletteComponent("K3", "z"));
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1,S:K3,S:K2]"));
    // An item whose only child is a page still has children: the count stays.
    const TVNode b = m_controller->addItem("B", {});
    const TVNode page = m_tree->AddMarker(b, b, "Page", TVNodeKind::Page, true);
    const int count = m_controller->itemCount();
    m_tree->setCurrent(page);
    m_controller->addSymbol(*paletteComponent("K4", "w"));
    QCOMPARE(m_controller->itemCount(), count);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1,S:K3,S:K2] B[P,S:K4]"));
}

void TestItemTreeController::addSymbolNeedsComponentAndSelection()
{
    CEPasta folder(CEPasta::kFolder, "F1");
    folder.setDescricao(0, "Relays");
    const auto relay = paletteComponent("K1", "Relay");
    QVERIFY(m_controller->addSymbol(*relay).isNull()); // nothing selected
    m_controller->addItem("A", {});
    QVERIFY(m_controller->addSymbol(folder).isNull());
    QCOMPARE(describe(*m_tree), QStringLiteral("A[]"));
    QCOMPARE(m_controller->itemCount(), 1);
    QCOMPARE(m_controller->selectedSymbols().count(), 0);
}

void TestItemTreeController::addSymbolDescriptionFallback_data()
{
    QTest::addColumn<QString>("currentLanguage");
    QTest::addColumn<QString>("expected");
    // Descriptions: language 1 "Relé", language 3 "Relay", languages 0, 2 and 4 empty.
    QTest::newRow("current has one") << "1"
                                     << "Relé";
    QTest::newRow("fallback in ascending order") << "2"
                                                 << "Relé";
    QTest::newRow("current 0 falls back to 1") << "0"
                                               << "Relé";
    QTest::newRow("current 3") << "3"
                               << "Relay";
    QTest::newRow("text that is not a number reads as 0") << "x"
                                                          << "Relé";
}

void TestItemTreeController::addSymbolDescriptionFallback()
{
    QFETCH(QString, currentLanguage);
    QFETCH(QString, expected);
    bool ok = false;
    int current = currentLanguage.toInt(&ok, 10);
    if (!ok)
        current = 0;
    m_controller->setDescriptionLanguages(DescriptionLanguages::make(current, {4, 3, 2, 1, 0}));
    CEPasta entry(CEPasta::kComponent, "K1");
    entry.setDescricao(0, "");
    entry.setDescricao(1, "Relé");
    entry.setDescricao(3, "Relay");
    m_controller->addItem("A", {});
    const TVNode symbol = m_controller->addSymbol(entry);
    QCOMPARE(QString(m_tree->GetText(symbol)), expected);
    QCOMPARE(QString(m_tree->GetSymbol(symbol)->GetDescricao()), expected);
    QCOMPARE(QString(m_controller->selectedSymbols().line(0).description), expected);
}

void TestItemTreeController::addSymbolMarkedEntryTriesFallbacksFirst()
{
    m_controller->setDescriptionLanguages(DescriptionLanguages::make(2, {1, 2, 3}));
    CEPasta entry(CEPasta::kComponent, "K1");
    entry.setDescricao(2, "Placeholder");
    entry.setDescricao(3, "Relay");
    entry.setPrefersFallbackLanguages(true);
    m_controller->addItem("A", {});
    const TVNode symbol = m_controller->addSymbol(entry);
    QCOMPARE(m_tree->GetText(symbol), KVString("Relay"));

    CEPasta empty(CEPasta::kComponent, "K2");
    const TVNode second = m_controller->addSymbol(empty);
    QVERIFY(!second.isNull());
    QVERIFY(m_tree->GetText(second).isEmpty());
}

void TestItemTreeController::canAddSymbol()
{
    CEPasta folder(CEPasta::kFolder, "F1");
    const auto relay = paletteComponent("K1", "Relay");
    QVERIFY(!m_controller->canAddSymbol(*relay));
    m_controller->addItem("A", {});
    QVERIFY(m_controller->canAddSymbol(*relay));
    QVERIFY(!m_controller->canAddSymbol(folder));
    m_tree->setCurrent({});
    QVERIFY(!m_controller->canAddSymbol(*relay));
}

void TestItemTreeController::addPageOnItemGoesFirst()
{
    const TVNode item = m_controller->addItem("A", {});
    m_controller->addSymbol(*paletteComponent("K1", "x"));
    m_tree->setCurrent(item);
    const TVNode page = m_controller->addPage();
    QCOMPARE(describe(*m_tree), QStringLiteral("A[P,S:K1]"));
    QCOMPARE(m_tree->GetText(page), KVString("Page"));
    QCOMPARE(m_tree->record(page)->markerText, KVString("Page"));
    QCOMPARE(m_tree->current(), page);
}

void TestItemTreeController::addPageOnSymbolGoesRightAfterIt()
{
    const TVNode item = m_controller->addItem("A", {});
    const TVNode first = m_controller->addSymbol(*paletteComponent("K1", "x"));
    m_tree->setCurrent(item);
    m_controller->addSymbol(*paletteComponent("K2", "y"));
    m_tree->setCurrent(first);
    m_controller->addPage();
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1,P,S:K2]"));
}

void TestItemTreeController::addPageWithoutSelection()
{
    m_controller->addItem("A", {});
    m_tree->setCurrent({});
    QVERIFY(m_controller->addPage().isNull());
    QVERIFY(m_controller->addSpace().isNull());
    QCOMPARE(describe(*m_tree), QStringLiteral("A[]"));
}

void TestItemTreeController::addSpaceBeforeAnyImportIsVertical()
{
    const TVNode item = m_controller->addItem("A", {});
    const TVNode space = m_controller->addSpace();
    QCOMPARE(m_tree->GetKind(space), TVNodeKind::VerticalSpace);
    QCOMPARE(m_tree->GetText(space), KVString("Vertical space"));
    QCOMPARE(m_tree->image(space), TVNodeImage::Space);
    QCOMPARE(m_tree->parentNode(space), item);
}

void TestItemTreeController::addSpaceBySeparatorMode_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("children");
    QTest::newRow("0 automatic") << "0"
                                 << "V";
    QTest::newRow("1 automatic+space") << "1"
                                       << "V";
    QTest::newRow("2 horizontal space") << "2"
                                        << "H";
    QTest::newRow("3 page") << "3"
                            << "V";
    QTest::newRow("4 vertical space") << "4"
                                      << "V";
    QTest::newRow("\" 2\" is not \"2\"") << " 2"
                                         << "V";
}

void TestItemTreeController::addSpaceBySeparatorMode()
{
    QFETCH(QString, mode);
    QFETCH(QString, children);
    m_controller->setSeparatorMode(mode);
    const TVNode item = m_controller->addItem("A", {});
    m_controller->addSpace();
    QCOMPARE(describeChildren(*m_tree, item), children);
}

void TestItemTreeController::addSpaceUsesTranslatedText()
{
    MarkerTranslator translator;
    QCoreApplication::installTranslator(&translator);
    const TVNode item = m_controller->addItem("A", {});
    const TVNode vertical = m_controller->addSpace();
    m_controller->setSeparatorMode("2");
    m_tree->setCurrent(item);
    const TVNode horizontal = m_controller->addSpace();
    m_tree->setCurrent(item);
    const TVNode page = m_controller->addPage();
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(m_tree->GetText(vertical), KVString("<Vertical space>"));
    QCOMPARE(m_tree->GetText(horizontal), KVString("<Horizontal space>"));
    QCOMPARE(m_tree->GetText(page), KVString("<Page>"));
}

void TestItemTreeController::removeWithoutSelection()
{
    m_controller->addItem("A", {});
    m_tree->setCurrent({});
    QVERIFY(!m_controller->remove());
    QCOMPARE(describe(*m_tree), QStringLiteral("A[]"));
    QCOMPARE(m_controller->itemCount(), 1);
}

void TestItemTreeController::removeOnlySymbolOfItem()
{
    const TVNode item = m_controller->addItem("A", {});
    m_controller->addSymbol(*paletteComponent("K1", "Relay"));
    m_tree->AddMarker(item, item, "Page", TVNodeKind::Page, false);
    m_tree->setCurrent(m_tree->lastChild(item));
    QCOMPARE(m_controller->itemCount(), 0);
    QSignalSpy countSpy(m_controller.get(), &ItemListController::itemCountChanged);
    QVERIFY(m_controller->remove());
    QCOMPARE(describe(*m_tree), QStringLiteral("A[P]"));
    QCOMPARE(m_controller->itemCount(), 1);
    QCOMPARE(countSpy.size(), 1);
    QCOMPARE(m_tree->image(item), TVNodeImage::ItemWithoutSymbol);
    QCOMPARE(m_controller->selectedSymbols().count(), 0);
}

void TestItemTreeController::removeSymbolWithAnotherSymbolInItem()
{
    const TVNode item = m_controller->addItem("A", {});
    m_controller->addSymbol(*paletteComponent("K1", "x"));
    m_tree->setCurrent(item);
    const TVNode second = m_controller->addSymbol(*paletteComponent("K2", "y"));
    QCOMPARE(m_tree->current(), second);
    QVERIFY(m_controller->remove());
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1]"));
    QCOMPARE(m_controller->itemCount(), 0);
    QCOMPARE(m_tree->image(item), TVNodeImage::ItemWithSymbol);
    QCOMPARE(symbolLines(m_controller->selectedSymbols()), QStringList{"x"});
}

void TestItemTreeController::removeOnlySymbolOfExpandedItemWhoseNextItemHasSymbol()
{
    const TVNode a = m_controller->addItem("A", {});
    const TVNode onlySymbol = m_controller->addSymbol(*paletteComponent("K1", "x"));
    const TVNode b = m_controller->addItem("B", {});
    m_controller->addSymbol(*paletteComponent("K2", "y"));
    QVERIFY(m_tree->isExpanded(a));
    QVERIFY(m_tree->isExpanded(b));
    const int count = m_controller->itemCount();
    m_tree->setCurrent(onlySymbol);
    QVERIFY(m_controller->remove());
    // The scan ran on into B, found its symbol, and so left the count and A's image alone.
    QCOMPARE(describe(*m_tree), QStringLiteral("A[] B[S:K2]"));
    QCOMPARE(m_controller->itemCount(), count);
    QCOMPARE(m_tree->image(a), TVNodeImage::ItemWithSymbol);
}

void TestItemTreeController::removeOnlySymbolWhenNextItemIsCollapsed()
{
    const TVNode a = m_controller->addItem("A", {});
    const TVNode onlySymbol = m_controller->addSymbol(*paletteComponent("K1", "x"));
    const TVNode b = m_controller->addItem("B", {});
    m_controller->addSymbol(*paletteComponent("K2", "y"));
    m_tree->setExpanded(b, false);
    const int count = m_controller->itemCount();
    m_tree->setCurrent(onlySymbol);
    QVERIFY(m_controller->remove());
    QCOMPARE(m_controller->itemCount(), count + 1);
    QCOMPARE(m_tree->image(a), TVNodeImage::ItemWithoutSymbol);
}

void TestItemTreeController::removeSymbolDeletesFirstMatchingLine()
{
    const TVNode a = m_controller->addItem("A", {});
    const TVNode first = m_controller->addSymbol(*paletteComponent("K1", "Relay"));
    m_controller->addItem("B", {});
    m_controller->addSymbol(*paletteComponent("K2", "Lamp"));
    m_controller->addItem("C", {});
    const TVNode third = m_controller->addSymbol(*paletteComponent("K3", "Relay"));
    Q_UNUSED(a);
    // Removing the second "Relay" deletes the first line with that text, which was the other
    // symbol's line.
    m_tree->setCurrent(third);
    QVERIFY(m_controller->remove());
    QCOMPARE(symbolLines(m_controller->selectedSymbols()), (QStringList{"Lamp", "Relay"}));
    QCOMPARE(m_controller->selectedSymbols().line(1).node, third);
    QVERIFY(m_controller->selectedSymbols().line(0).node != first);
}

void TestItemTreeController::removeItemWithoutChildren()
{
    m_controller->addItem("A", {});
    m_controller->addItem("B", {});
    QCOMPARE(m_controller->itemCount(), 2);
    QVERIFY(m_controller->remove());
    QCOMPARE(describe(*m_tree), QStringLiteral("A[]"));
    QCOMPARE(m_controller->itemCount(), 1);
}

void TestItemTreeController::removeItemWithChildrenDeletesItsLines()
{
    m_controller->addItem("Z", {});
    m_controller->addSymbol(*paletteComponent("K0", "Lamp"));
    const TVNode item = m_controller->addItem("A", {});
    m_controller->addSymbol(*paletteComponent("K1", "Relay"));
    m_controller->addPage();
    m_tree->setCurrent(item);
    m_controller->addSymbol(*paletteComponent("K2", "Lamp"));
    QCOMPARE(symbolLines(m_controller->selectedSymbols()), (QStringList{"Lamp", "Relay", "Lamp"}));
    const int count = m_controller->itemCount();
    m_tree->setCurrent(item);
    QVERIFY(m_controller->remove());
    QCOMPARE(describe(*m_tree), QStringLiteral("Z[S:K0]"));
    QCOMPARE(m_controller->itemCount(), count);
    // One line per symbol child, each the first line with its text.
    QCOMPARE(symbolLines(m_controller->selectedSymbols()), QStringList{"Lamp"});
}

void TestItemTreeController::removeMarker()
{
    const TVNode item = m_controller->addItem("A", {});
    m_controller->addSymbol(*paletteComponent("K1", "x"));
    const TVNode page = m_controller->addPage();
    QCOMPARE(m_tree->current(), page);
    const int count = m_controller->itemCount();
    QVERIFY(m_controller->remove());
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1]"));
    QCOMPARE(m_controller->itemCount(), count);
    QCOMPARE(m_tree->image(item), TVNodeImage::ItemWithSymbol);
    QCOMPARE(m_controller->selectedSymbols().count(), 1);
}

void TestItemTreeController::copyItemWithoutChildren()
{
    const TVNode source = m_controller->addItem("A", {"F=1"});
    m_controller->addItem("B", {});
    m_tree->setCurrent(source);
    QCOMPARE(m_controller->itemCount(), 2);
    const TVNode copy = m_controller->copyItem();
    QCOMPARE(describe(*m_tree), QStringLiteral("A[] B[] A[]"));
    QCOMPARE(m_controller->itemCount(), 3);
    QCOMPARE(m_tree->current(), source);
    QCOMPARE(m_tree->image(copy), TVNodeImage::ItemWithoutSymbol);
}

void TestItemTreeController::copyItemReversesMarkers()
{
    const TVNode source = m_controller->addItem("A", {});
    m_controller->addSymbol(*paletteComponent("K1", "Relay"));
    m_tree->AddMarker(source, m_tree->lastChild(source), "Horizontal space",
                      TVNodeKind::HorizontalSpace, false);
    m_tree->AddMarker(source, m_tree->lastChild(source), "Vertical space",
                      TVNodeKind::VerticalSpace, false);
    m_tree->AddMarker(source, source, "Page", TVNodeKind::Page, false);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[P,S:K1,H,V]"));
    const int count = m_controller->itemCount();
    m_tree->setCurrent(source);

    const TVNode copy = m_controller->copyItem();
    QCOMPARE(describeChildren(*m_tree, copy), QStringLiteral("S:K1,V,H"));
    QCOMPARE(describeChildren(*m_tree, source), QStringLiteral("P,P,S:K1,H,V"));
    QCOMPARE(m_controller->itemCount(), count);
    QCOMPARE(m_tree->image(copy), TVNodeImage::ItemWithSymbol);
    const TVNode copiedSymbol = m_tree->firstChild(copy);
    QCOMPARE(*m_tree->GetSymbol(copiedSymbol), CEComponente("K1", "Relay"));
    QCOMPARE(m_tree->GetText(copiedSymbol), KVString("Relay"));
    // The copy's symbols are not listed under "Symbols selected:".
    QCOMPARE(m_controller->selectedSymbols().count(), 1);
}

void TestItemTreeController::copyItemOnOtherKindDoesNothing()
{
    m_controller->addItem("A", {});
    m_controller->addSymbol(*paletteComponent("K1", "x"));
    QVERIFY(m_controller->copyItem().isNull());
    m_tree->setCurrent({});
    QVERIFY(m_controller->copyItem().isNull());
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1]"));
}

void TestItemTreeController::copyItemCopiesAttributes()
{
    const TVNode source = m_controller->addItem("A", {"ITEM=1", "TAG=K1"});
    const TVNode copy = m_controller->copyItem();
    QCOMPARE(attributeTexts(m_tree->GetAttributes(copy)), (QStringList{"ITEM=1", "TAG=K1"}));
    QVERIFY(m_tree->GetAttributes(copy) != m_tree->GetAttributes(source));
    m_tree->SetAttributes(source, makeAttributeList({"ITEM=9"}));
    QCOMPARE(attributeTexts(m_tree->GetAttributes(copy)), (QStringList{"ITEM=1", "TAG=K1"}));
}

void TestItemTreeController::moveItemKeepsChildOrder()
{
    const TVNode a = m_controller->addItem("A", {"ITEM=1"});
    m_controller->addSymbol(*paletteComponent("K1", "x"));
    m_tree->AddMarker(a, a, "Page", TVNodeKind::Page, false);
    m_tree->AddMarker(a, m_tree->lastChild(a), "Vertical space", TVNodeKind::VerticalSpace, false);
    m_tree->setCurrent(a);
    m_controller->addSymbol(*paletteComponent("K2", "y"));
    m_tree->AddMarker(a, m_tree->lastChild(a), "Horizontal space", TVNodeKind::HorizontalSpace,
                      false);
    const TVNode b = m_controller->addItem("B", {});
    m_controller->addItem("C", {});
    QCOMPARE(describe(*m_tree), QStringLiteral("A[P,S:K1,V,S:K2,H] B[] C[]"));
    const int count = m_controller->itemCount();

    const TVNode moved = m_controller->moveItem(a, b);
    QCOMPARE(describe(*m_tree), QStringLiteral("B[] A[P,S:K1,V,S:K2,H] C[]"));
    QVERIFY(!m_tree->contains(a));
    QCOMPARE(attributeTexts(m_tree->GetAttributes(moved)), QStringList{"ITEM=1"});
    QCOMPARE(m_tree->image(moved), TVNodeImage::ItemWithSymbol);
    QCOMPARE(m_controller->itemCount(), count);
}

void TestItemTreeController::moveItemOntoItselfKeepsOrder()
{
    m_controller->addItem("A", {});
    const TVNode b = m_controller->addItem("B", {});
    m_controller->addSymbol(*paletteComponent("K1", "x"));
    m_controller->addItem("C", {});
    const TVNode moved = m_controller->moveItem(b, b);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[] B[S:K1] C[]"));
    QVERIFY(moved != b);
    QVERIFY(!m_tree->contains(b));
}

void TestItemTreeController::moveItemToFirstPosition()
{
    m_controller->addItem("A", {});
    m_controller->addItem("B", {});
    const TVNode c = m_controller->addItem("C", {});
    m_controller->moveItem(c, TVNode::first());
    QCOMPARE(describe(*m_tree), QStringLiteral("C[] A[] B[]"));
}

void TestItemTreeController::moveItemToEnd()
{
    const TVNode a = m_controller->addItem("A", {});
    m_controller->addItem("B", {});
    m_controller->addItem("C", {});
    m_controller->moveItem(a, TVNode());
    QCOMPARE(describe(*m_tree), QStringLiteral("B[] C[] A[]"));
}

void TestItemTreeController::moveItemRefusesChildNodes()
{
    const TVNode a = m_controller->addItem("A", {});
    const TVNode symbol = m_controller->addSymbol(*paletteComponent("K1", "x"));
    const TVNode page = m_controller->addPage();
    m_controller->addItem("B", {});
    QVERIFY(m_controller->moveItem(symbol, TVNode()).isNull());
    QVERIFY(m_controller->moveItem(page, TVNode::first()).isNull());
    QVERIFY(m_controller->moveItem(TVNode(), TVNode()).isNull());
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1,P] B[]"));
    QVERIFY(m_tree->contains(a));
}

void TestItemTreeController::moveItemRepointsSymbolLines()
{
    const TVNode a = m_controller->addItem("A", {});
    m_controller->addSymbol(*paletteComponent("K1", "x"));
    m_controller->addItem("B", {});
    const TVNode moved = m_controller->moveItem(a, TVNode());
    QCOMPARE(m_controller->selectedSymbols().line(0).node, m_tree->firstChild(moved));
    QVERIFY(m_controller->selectSymbolLine(0));
    QCOMPARE(m_tree->current(), m_tree->firstChild(moved));
}

void TestItemTreeController::selectSymbolLine()
{
    const TVNode a = m_controller->addItem("A", {});
    const TVNode symbol = m_controller->addSymbol(*paletteComponent("K1", "x"));
    m_tree->setExpanded(a, false);
    m_tree->setCurrent(a);
    QVERIFY(m_controller->selectSymbolLine(0));
    QCOMPARE(m_tree->current(), symbol);
    QVERIFY(m_tree->isExpanded(a));
    QVERIFY(!m_controller->selectSymbolLine(1));
    QVERIFY(!m_controller->selectSymbolLine(-1));
}

void TestItemTreeController::selectSymbolLineOfRemovedNode()
{
    // Two symbols with one description: removing the second deletes the first one's line, so
    // the remaining line points at the removed node.
    m_controller->addItem("A", {});
    m_controller->addSymbol(*paletteComponent("K1", "Relay"));
    const TVNode b = m_controller->addItem("B", {});
    m_controller->addSymbol(*paletteComponent("K2", "Relay"));
    m_controller->remove();
    m_tree->setCurrent(b);
    QCOMPARE(m_controller->selectedSymbols().count(), 1);
    QVERIFY(!m_controller->selectSymbolLine(0));
    QCOMPARE(m_tree->current(), b);
}

void TestItemTreeController::hasNodes()
{
    QVERIFY(!m_controller->hasNodes());
    m_controller->addItem("A", {});
    QVERIFY(m_controller->hasNodes());
    m_controller->remove();
    QVERIFY(!m_controller->hasNodes());
}

void TestItemTreeController::takeJobItemsConsumesTree()
{
    const TVNode a = m_controller->addItem("A", {"ITEM=1"});
    const TVNode symbol = m_controller->addSymbol(*paletteComponent("K1", "x"));
    const QList<CEInsAutoItem> items = m_controller->takeJobItems();
    QCOMPARE(items.size(), 1);
    QCOMPARE(items.at(0).entries.at(0).key, KVString("K1"));
    QVERIFY(!m_tree->GetSymbol(symbol));
    QVERIFY(!m_tree->GetAttributes(a));
}

void TestItemTreeController::symbolListModel()
{
    SelectedSymbolList& list = m_controller->selectedSymbols();
    const TVNode n1 = TVNode::fromId(101);
    const TVNode n2 = TVNode::fromId(102);
    const TVNode n3 = TVNode::fromId(103);
    list.append("Relay", n1);
    list.append("Lamp", n2);
    list.append("Relay", n3);
    QCOMPARE(list.rowCount(), 3);
    QCOMPARE(list.index(1).data().toString(), QStringLiteral("Lamp"));
    QCOMPARE(list.index(2).data(SelectedSymbolList::NodeIdRole).toULongLong(), quint64(103));
    QVERIFY(!list.index(3).data().isValid());
    QVERIFY(!list.removeFirst("Motor"));
    QVERIFY(list.removeFirst("Relay"));
    QCOMPARE(list.lines(), (QList<SelectedSymbolList::Line>{{"Lamp", n2}, {"Relay", n3}}));
    list.replaceNode(n3, n1);
    QCOMPARE(list.line(1).node, n1);
    QVERIFY(list.line(7).node.isNull());
    list.clear();
    QCOMPARE(list.rowCount(), 0);
}

QTEST_GUILESS_MAIN(TestItemTreeController)
#include "tst_itemtree_controller.moc"
