#include "ItemTreeTestSupport.h"

#include <QSignalSpy>
#include <QTest>

#include <random>
#include <vector>

using namespace ItemTreeTestSupport;

// The store underneath the tree operations: positions, navigation, the item-model interface,
// expanded state and the current node.
class TestItemTreeModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void emptyTree();
    void itemsAndChildrenAsRows();
    void indexAndHandleRoundTrip();
    void rolesOfEachNode();
    void flagsAllowDraggingItemsOnly();
    void nextVisibleFollowsExpandedState();
    void nextVisibleEndsAfterLastRow();
    void removedNodeHandleIsDead();
    void removingCurrentSelectsNextSibling();
    void removingLastCurrentSelectsParent();
    void removingLastRootCurrentSelectsPrevious();
    void removingOnlyNodeClearsCurrent();
    void removingItemOfCurrentChildMovesCurrent();
    void removingLastChildCollapsesItem();
    void setExpandedFromViewIndex();
    void selectNodeExpandsParent();
    void setCurrentToMissingNodeClears();
    void clearDeletesEverything();
    void nodeCount();
    void rowsFollowInsertsAndRemovals_data();
    void rowsFollowInsertsAndRemovals();

private:
    std::unique_ptr<CTVNodesUtil> m_tree;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void TestItemTreeModel::init()
{
    m_tree = std::make_unique<CTVNodesUtil>();
    m_tester = checkModel(m_tree.get());
}

void TestItemTreeModel::cleanup()
{
    m_tester.reset();
    m_tree.reset();
}

void TestItemTreeModel::emptyTree()
{
    QVERIFY(m_tree->isEmpty());
    QCOMPARE(m_tree->rowCount(), 0);
    QCOMPARE(m_tree->columnCount(), 1);
    QVERIFY(m_tree->firstChild().isNull());
    QVERIFY(m_tree->current().isNull());
    QVERIFY(!m_tree->index(0, 0).isValid());
}

void TestItemTreeModel::itemsAndChildrenAsRows()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode b = m_tree->AddItem("B", nullptr, false);
    const TVNode s = m_tree->AddSymbol(b, {}, "Relay", component("K1", "Relay"), false);
    m_tree->AddMarker(b, s, "Page", TVNodeKind::Page, false);

    QCOMPARE(m_tree->rowCount(), 2);
    const QModelIndex bIndex = m_tree->index(1, 0);
    QCOMPARE(bIndex.data().toString(), QStringLiteral("B"));
    QCOMPARE(m_tree->rowCount(bIndex), 2);
    QCOMPARE(m_tree->rowCount(m_tree->index(0, 0)), 0);
    const QModelIndex pageIndex = m_tree->index(1, 0, bIndex);
    QCOMPARE(pageIndex.data().toString(), QStringLiteral("Page"));
    QCOMPARE(pageIndex.parent(), bIndex);
    QCOMPARE(m_tree->parentNode(s), b);
    QVERIFY(m_tree->parentNode(a).isNull());
    QCOMPARE(m_tree->children(), (QList<TVNode>{a, b}));
    QCOMPARE(m_tree->childCount(b), 2);
    QCOMPARE(m_tree->nextSibling(a), b);
    QCOMPARE(m_tree->previousSibling(b), a);
    QVERIFY(m_tree->previousSibling(a).isNull());
    QCOMPARE(m_tree->lastChild(b), m_tree->nodeAt(pageIndex));
}

void TestItemTreeModel::indexAndHandleRoundTrip()
{
    m_tree->AddItem("A", nullptr, false);
    const TVNode b = m_tree->AddItem("B", nullptr, false);
    const TVNode s = m_tree->AddSymbol(b, {}, "Relay", component("K1", "Relay"), false);
    QCOMPARE(m_tree->nodeAt(m_tree->indexOf(s)), s);
    QCOMPARE(m_tree->indexOf(s).row(), 0);
    QCOMPARE(m_tree->indexOf(b).row(), 1);
    const QModelIndex byId = m_tree->indexOf(
        TVNode::fromId(m_tree->indexOf(s).data(ItemTreeModel::NodeIdRole).toULongLong()));
    QCOMPARE(byId, m_tree->indexOf(s));
    QVERIFY(!m_tree->indexOf(TVNode()).isValid());
    QVERIFY(!m_tree->indexOf(TVNode::first()).isValid());
}

void TestItemTreeModel::rolesOfEachNode()
{
    auto attributes = makeAttributeList({"ITEM=1", "TAG=K1"});
    const TVNode item = m_tree->AddItem("Motor", std::move(attributes), false);
    const TVNode symbol = m_tree->AddSymbol(item, {}, "Relay", component("K1", "Relay"), false);
    const TVNode space =
        m_tree->AddMarker(item, symbol, "Horizontal space", TVNodeKind::HorizontalSpace, false);

    const QModelIndex itemIndex = m_tree->indexOf(item);
    QCOMPARE(itemIndex.data(Qt::DisplayRole).toString(), QStringLiteral("Motor"));
    QCOMPARE(itemIndex.data(ItemTreeModel::ImageIndexRole).toInt(), 1);
    QCOMPARE(itemIndex.data(ItemTreeModel::KindRole).toInt(), 1);
    QCOMPARE(itemIndex.data(ItemTreeModel::AttributesRole).toStringList(),
             (QStringList{"ITEM=1", "TAG=K1"}));
    QCOMPARE(itemIndex.data(ItemTreeModel::ExpandedRole).toBool(), false);

    const QModelIndex symbolIndex = m_tree->indexOf(symbol);
    QCOMPARE(symbolIndex.data(ItemTreeModel::ImageIndexRole).toInt(), 2);
    QCOMPARE(symbolIndex.data(ItemTreeModel::SymbolKeyRole).toString(), QStringLiteral("K1"));
    QCOMPARE(symbolIndex.data(ItemTreeModel::NameRole).toString(), QStringLiteral("Relay"));

    const QModelIndex spaceIndex = m_tree->indexOf(space);
    QCOMPARE(spaceIndex.data(ItemTreeModel::ImageIndexRole).toInt(), 4);
    QCOMPARE(spaceIndex.data(ItemTreeModel::KindRole).toInt(), 5);
    QCOMPARE(spaceIndex.data(ItemTreeModel::MarkerTextRole).toString(),
             QStringLiteral("Horizontal space"));
    QVERIFY(!spaceIndex.data(Qt::DecorationRole).isValid());
    QVERIFY(m_tree->roleNames().contains(ItemTreeModel::ImageIndexRole));
}

void TestItemTreeModel::flagsAllowDraggingItemsOnly()
{
    const TVNode item = m_tree->AddItem("A", nullptr, false);
    const TVNode page = m_tree->AddMarker(item, item, "Page", TVNodeKind::Page, false);
    QVERIFY(m_tree->flags(m_tree->indexOf(item)) & Qt::ItemIsDragEnabled);
    QVERIFY(!(m_tree->flags(m_tree->indexOf(page)) & Qt::ItemIsDragEnabled));
    QVERIFY(m_tree->flags(m_tree->indexOf(page)) & Qt::ItemNeverHasChildren);
    QVERIFY(m_tree->flags(m_tree->indexOf(page)) & Qt::ItemIsSelectable);
}

void TestItemTreeModel::nextVisibleFollowsExpandedState()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode a1 = m_tree->AddSymbol(a, {}, "x", component("1", "x"), false);
    const TVNode a2 = m_tree->AddSymbol(a, {}, "y", component("2", "y"), false);
    const TVNode b = m_tree->AddItem("B", nullptr, false);
    const TVNode b1 = m_tree->AddSymbol(b, {}, "z", component("3", "z"), false);
    const TVNode c = m_tree->AddItem("C", nullptr, false);

    // Everything collapsed: the rows shown are the items.
    QCOMPARE(m_tree->nextVisible(a), b);
    QCOMPARE(m_tree->nextVisible(b), c);
    // A child's next row is its sibling, then the following item.
    QCOMPARE(m_tree->nextVisible(a1), a2);
    QCOMPARE(m_tree->nextVisible(a2), b);

    m_tree->setExpanded(a, true);
    m_tree->setExpanded(b, true);
    QCOMPARE(m_tree->nextVisible(a), a1);
    QCOMPARE(m_tree->nextVisible(b), b1);
    QCOMPARE(m_tree->nextVisible(b1), c);
}

void TestItemTreeModel::nextVisibleEndsAfterLastRow()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode a1 = m_tree->AddSymbol(a, {}, "x", component("1", "x"), false);
    QVERIFY(m_tree->nextVisible(a1).isNull());
    QVERIFY(m_tree->nextVisible(a).isNull());
    QVERIFY(m_tree->nextVisible(TVNode()).isNull());
}

void TestItemTreeModel::removedNodeHandleIsDead()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode s = m_tree->AddSymbol(a, {}, "x", component("1", "x"), false);
    QVERIFY(m_tree->RemoveNode(a));
    QVERIFY(!m_tree->contains(a));
    QVERIFY(!m_tree->contains(s));
    QCOMPARE(m_tree->GetKind(s), TVNodeKind::None);
    QVERIFY(!m_tree->SetName(s, "again"));
    QVERIFY(!m_tree->RemoveNode(a));
    QCOMPARE(m_tree->image(a), -1);
    // A new node never takes the handle of a removed one.
    const TVNode b = m_tree->AddItem("B", nullptr, false);
    QVERIFY(b != a && b != s);
}

void TestItemTreeModel::removingCurrentSelectsNextSibling()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode b = m_tree->AddItem("B", nullptr, false);
    m_tree->setCurrent(a);
    QSignalSpy spy(m_tree.get(), &ItemTreeModel::currentChanged);
    m_tree->RemoveNode(a);
    QCOMPARE(m_tree->current(), b);
    QCOMPARE(spy.size(), 1);
}

void TestItemTreeModel::removingLastCurrentSelectsParent()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    m_tree->AddSymbol(a, {}, "x", component("1", "x"), false);
    const TVNode s2 = m_tree->AddSymbol(a, {}, "y", component("2", "y"), true);
    QCOMPARE(m_tree->current(), s2);
    m_tree->RemoveNode(s2);
    QCOMPARE(m_tree->current(), a);
}

void TestItemTreeModel::removingLastRootCurrentSelectsPrevious()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode b = m_tree->AddItem("B", nullptr, true);
    m_tree->RemoveNode(b);
    QCOMPARE(m_tree->current(), a);
}

void TestItemTreeModel::removingOnlyNodeClearsCurrent()
{
    const TVNode a = m_tree->AddItem("A", nullptr, true);
    QCOMPARE(m_tree->current(), a);
    m_tree->RemoveNode(a);
    QVERIFY(m_tree->current().isNull());
}

void TestItemTreeModel::removingItemOfCurrentChildMovesCurrent()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode b = m_tree->AddItem("B", nullptr, false);
    m_tree->AddSymbol(a, {}, "x", component("1", "x"), true);
    m_tree->RemoveNode(a);
    QCOMPARE(m_tree->current(), b);
}

void TestItemTreeModel::removingLastChildCollapsesItem()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode s = m_tree->AddSymbol(a, {}, "x", component("1", "x"), false);
    m_tree->setExpanded(a, true);
    QSignalSpy spy(m_tree.get(), &ItemTreeModel::expandedChanged);
    m_tree->RemoveNode(s);
    QVERIFY(!m_tree->isExpanded(a));
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(1).toBool(), false);
}

void TestItemTreeModel::setExpandedFromViewIndex()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    m_tree->AddSymbol(a, {}, "x", component("1", "x"), false);
    QSignalSpy spy(m_tree.get(), &ItemTreeModel::expandedChanged);
    QVERIFY(m_tree->setExpanded(m_tree->indexOf(a), true));
    QVERIFY(m_tree->isExpanded(a));
    // Setting the same state again is not news: a view and the model can sync both ways.
    QVERIFY(m_tree->setExpanded(m_tree->indexOf(a), true));
    QCOMPARE(spy.size(), 1);
    QVERIFY(!m_tree->setExpanded(QModelIndex(), true));
}

void TestItemTreeModel::selectNodeExpandsParent()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode s = m_tree->AddSymbol(a, {}, "x", component("1", "x"), false);
    QVERIFY(!m_tree->isExpanded(a));
    QVERIFY(m_tree->selectNode(s));
    QVERIFY(m_tree->isExpanded(a));
    QCOMPARE(m_tree->current(), s);
}

void TestItemTreeModel::setCurrentToMissingNodeClears()
{
    const TVNode a = m_tree->AddItem("A", nullptr, true);
    m_tree->setCurrent(TVNode::fromId(a.id() + 100));
    QVERIFY(m_tree->current().isNull());
    QVERIFY(!m_tree->selectNode(TVNode::fromId(a.id() + 100)));
}

void TestItemTreeModel::clearDeletesEverything()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    m_tree->AddSymbol(a, {}, "x", component("1", "x"), true);
    QSignalSpy spy(m_tree.get(), &ItemTreeModel::currentChanged);
    m_tree->clear();
    QVERIFY(m_tree->isEmpty());
    QCOMPARE(m_tree->nodeCount(), 0);
    QVERIFY(!m_tree->contains(a));
    QVERIFY(m_tree->current().isNull());
    QCOMPARE(spy.size(), 1);
}

void TestItemTreeModel::nodeCount()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    m_tree->AddSymbol(a, {}, "x", component("1", "x"), false);
    m_tree->AddMarker(a, a, "Page", TVNodeKind::Page, false);
    m_tree->AddItem("B", nullptr, false);
    QCOMPARE(m_tree->nodeCount(), 4);
    m_tree->RemoveNode(a);
    QCOMPARE(m_tree->nodeCount(), 1);
}

void TestItemTreeModel::rowsFollowInsertsAndRemovals_data()
{
    QTest::addColumn<bool>("underItem");
    QTest::newRow("root level") << false;
    QTest::newRow("children of an item") << true;
}

// Rows are kept per node and renumbered lazily; after every insertion (first, after a node,
// last) and removal each node's row, index and siblings must match a plain list of the same
// operations.
void TestItemTreeModel::rowsFollowInsertsAndRemovals()
{
    QFETCH(bool, underItem);
    const TVNode item = underItem ? m_tree->AddItem("Item", nullptr, false) : TVNode();
    const QModelIndex parentIndex = m_tree->indexOf(item);
    std::vector<TVNode> expected;
    std::mt19937 random(20240611);
    int name = 0;
    for (int step = 0; step < 600; ++step) {
        const int choice = int(random() % 10);
        if (choice < 3 && !expected.empty()) {
            const size_t at = random() % expected.size();
            QVERIFY(m_tree->RemoveNode(expected[at]));
            expected.erase(expected.begin() + at);
        } else {
            // After a random node, before all, or last.
            size_t at = expected.size();
            TVNode after;
            if (choice < 5) {
                after = TVNode::first();
                at = 0;
            } else if (choice < 9 && !expected.empty()) {
                at = random() % expected.size();
                after = expected[at];
                ++at;
            }
            const KVString text = QString::number(++name);
            TVNode node;
            if (!underItem)
                node = m_tree->AddItemAfter(text, nullptr, false, after);
            else if (after.isNull())
                node = m_tree->AddSymbol(item, {}, text, component(text, text), false);
            else
                node = m_tree->AddMarker(item, after.isFirst() ? item : after, text,
                                         TVNodeKind::Page, false);
            QVERIFY(!node.isNull());
            expected.insert(expected.begin() + at, node);
        }
        // Ask in an order that finds stale rows: from the end backwards every few steps.
        const bool backwards = step % 3 == 0;
        for (size_t i = 0; i < expected.size(); ++i) {
            const size_t row = backwards ? expected.size() - 1 - i : i;
            const TVNode node = expected[row];
            const QModelIndex index = m_tree->indexOf(node);
            QCOMPARE(index.row(), int(row));
            QCOMPARE(m_tree->index(int(row), 0, parentIndex), index);
            QCOMPARE(m_tree->nextSibling(node),
                     row + 1 < expected.size() ? expected[row + 1] : TVNode());
            QCOMPARE(m_tree->previousSibling(node), row > 0 ? expected[row - 1] : TVNode());
        }
        QCOMPARE(m_tree->childCount(item), int(expected.size()));
    }
}

QTEST_GUILESS_MAIN(TestItemTreeModel)
#include "tst_itemtree_model.moc"
