#include "ItemTreeTestSupport.h"

#include <QTest>

using namespace ItemTreeTestSupport;

// The tree operations one by one: where each puts its node, what it stores, the label rule,
// and what each does with a missing node.
class TestItemTreeNodes : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void addItemAppendsAtRoot();
    void addItemStoresRecord();
    void addItemSelects();
    void addItemAfter_data();
    void addItemAfter();
    void addMarkerWithoutReferenceInsertsNothing();
    void addMarkerOnItemBecomesFirstChild();
    void addMarkerOnChildGoesRightAfterIt();
    void addMarkerRecordAndImage_data();
    void addMarkerRecordAndImage();
    void addMarkerRefusesOtherKinds();
    void addMarkerWithChildOfAnotherItemGoesLast();
    void addMarkerSelectsAndShows();
    void addSymbolPositions();
    void addSymbolRecordAndItemImage();
    void addSymbolNeedsAnItem();
    void addSymbolSelectsAndShows();
    void setNameLabelRule_data();
    void setNameLabelRule();
    void setNameOnMissingNode();
    void setAttributesReplacesList();
    void gettersOnMissingNode();
    void removeNodeByKind_data();
    void removeNodeByKind();
    void removeItemTakesChildren();
    void unnamedKindIsLabelledAndRemovedLikeASymbol();
    void removeNodeLeavesOtherKinds_data();
    void removeNodeLeavesOtherKinds();

private:
    std::unique_ptr<CTVNodesUtil> m_tree;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void TestItemTreeNodes::init()
{
    m_tree = std::make_unique<CTVNodesUtil>();
    m_tester = checkModel(m_tree.get());
}

void TestItemTreeNodes::cleanup()
{
    m_tester.reset();
    m_tree.reset();
}

void TestItemTreeNodes::addItemAppendsAtRoot()
{
    m_tree->AddItem("A", nullptr, false);
    m_tree->AddItem("B", nullptr, false);
    m_tree->AddItem("C", nullptr, false);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[] B[] C[]"));
}

void TestItemTreeNodes::addItemStoresRecord()
{
    const TVNode item = m_tree->AddItem("Motor 1", makeAttributeList({"ITEM=1", "TAG=M1"}), false);
    const TVNodeData* data = m_tree->record(item);
    QVERIFY(data);
    QCOMPARE(data->kind, TVNodeKind::Item);
    QCOMPARE(data->name, KVString("Motor 1"));
    QCOMPARE(data->displayText, KVString("Motor 1"));
    QVERIFY(data->markerText.isEmpty());
    QVERIFY(!data->symbol);
    QCOMPARE(data->index, -1);
    QCOMPARE(attributeTexts(m_tree->GetAttributes(item)), (QStringList{"ITEM=1", "TAG=M1"}));
    QCOMPARE(m_tree->image(item), TVNodeImage::ItemWithoutSymbol);
    QVERIFY(m_tree->current().isNull());
}

void TestItemTreeNodes::addItemSelects()
{
    m_tree->AddItem("A", nullptr, false);
    const TVNode b = m_tree->AddItem("B", nullptr, true);
    QCOMPARE(m_tree->current(), b);
}

void TestItemTreeNodes::addItemAfter_data()
{
    QTest::addColumn<int>("afterRow"); // -1: null, -2: first, -3: a child node, -4: removed
    QTest::addColumn<QString>("expected");
    QTest::newRow("after the first") << 0 << "A[P] N[] B[]";
    QTest::newRow("after the last") << 1 << "A[P] B[] N[]";
    QTest::newRow("null: last") << -1 << "A[P] B[] N[]";
    QTest::newRow("first position") << -2 << "N[] A[P] B[]";
    QTest::newRow("a child: last") << -3 << "A[P] B[] N[]";
    QTest::newRow("a removed node: last") << -4 << "A[P] B[] N[]";
}

void TestItemTreeNodes::addItemAfter()
{
    QFETCH(int, afterRow);
    QFETCH(QString, expected);
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode page = m_tree->AddMarker(a, a, "Page", TVNodeKind::Page, false);
    m_tree->AddItem("B", nullptr, false);
    const TVNode gone = m_tree->AddItem("X", nullptr, false);
    m_tree->RemoveNode(gone);

    TVNode after;
    switch (afterRow) {
    case -1:
        break;
    case -2:
        after = TVNode::first();
        break;
    case -3:
        after = page;
        break;
    case -4:
        after = gone;
        break;
    default:
        after = m_tree->children().at(afterRow);
    }
    const TVNode node = m_tree->AddItemAfter("N", makeAttributeList({"F=V"}), false, after);
    QCOMPARE(describe(*m_tree), expected);
    QCOMPARE(m_tree->GetKind(node), TVNodeKind::Item);
    QCOMPARE(attributeTexts(m_tree->GetAttributes(node)), QStringList{"F=V"});
}

void TestItemTreeNodes::addMarkerWithoutReferenceInsertsNothing()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    QVERIFY(m_tree->AddMarker(a, TVNode(), "Page", TVNodeKind::Page, true).isNull());
    QCOMPARE(m_tree->childCount(a), 0);
    QVERIFY(m_tree->current().isNull());
}

void TestItemTreeNodes::addMarkerOnItemBecomesFirstChild()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    m_tree->AddSymbol(a, {}, "x", component("K1", "x"), false);
    // The item given as `item` does not matter when the reference is an item.
    const TVNode b = m_tree->AddItem("B", nullptr, false);
    m_tree->AddMarker(b, a, "Page", TVNodeKind::Page, false);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[P,S:K1] B[]"));
    m_tree->AddMarker(TVNode(), a, "Vertical space", TVNodeKind::VerticalSpace, false);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[V,P,S:K1] B[]"));
}

void TestItemTreeNodes::addMarkerOnChildGoesRightAfterIt()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode s1 = m_tree->AddSymbol(a, {}, "x", component("K1", "x"), false);
    m_tree->AddSymbol(a, {}, "y", component("K2", "y"), false);
    m_tree->AddMarker(a, s1, "Horizontal space", TVNodeKind::HorizontalSpace, false);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1,H,S:K2]"));
    m_tree->AddMarker(a, s1, "Page", TVNodeKind::Page, false);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1,P,H,S:K2]"));
}

void TestItemTreeNodes::addMarkerRecordAndImage_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("image");
    QTest::newRow("page") << 4 << "Page" << 3;
    QTest::newRow("horizontal space") << 5 << "Horizontal space" << 4;
    QTest::newRow("vertical space") << 6 << "Vertical space" << 4;
}

void TestItemTreeNodes::addMarkerRecordAndImage()
{
    QFETCH(int, kind);
    QFETCH(QString, text);
    QFETCH(int, image);
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode node = m_tree->AddMarker(a, a, text, static_cast<TVNodeKind>(kind), false);
    const TVNodeData* data = m_tree->record(node);
    QVERIFY(data);
    QCOMPARE(static_cast<int>(data->kind), kind);
    QCOMPARE(QString(data->markerText), text);
    QCOMPARE(QString(data->displayText), text);
    QCOMPARE(m_tree->indexOf(node).data().toString(), text);
    QVERIFY(data->name.isEmpty());
    QVERIFY(!data->symbol && !data->attributes);
    QCOMPARE(data->index, -1);
    QCOMPARE(m_tree->image(node), image);
    // A marker does not count as a symbol for the item's image.
    QCOMPARE(m_tree->image(a), TVNodeImage::ItemWithoutSymbol);
}

void TestItemTreeNodes::addMarkerRefusesOtherKinds()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    for (const TVNodeKind kind :
         {TVNodeKind::None, TVNodeKind::Item, TVNodeKind::Symbol, TVNodeKind::Unnamed}) {
        QVERIFY(m_tree->AddMarker(a, a, "x", kind, false).isNull());
    }
    QCOMPARE(m_tree->childCount(a), 0);
}

void TestItemTreeNodes::addMarkerWithChildOfAnotherItemGoesLast()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode other = m_tree->AddSymbol(a, {}, "x", component("K1", "x"), false);
    const TVNode b = m_tree->AddItem("B", nullptr, false);
    m_tree->AddSymbol(b, {}, "y", component("K2", "y"), false);
    m_tree->AddMarker(b, other, "Page", TVNodeKind::Page, false);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1] B[S:K2,P]"));
    // A child reference without an item to insert under inserts nothing.
    QVERIFY(m_tree->AddMarker(TVNode(), other, "Page", TVNodeKind::Page, false).isNull());
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1] B[S:K2,P]"));
}

void TestItemTreeNodes::addMarkerSelectsAndShows()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode page = m_tree->AddMarker(a, a, "Page", TVNodeKind::Page, true);
    QCOMPARE(m_tree->current(), page);
    QVERIFY(m_tree->isExpanded(a));
}

void TestItemTreeNodes::addSymbolPositions()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode s1 = m_tree->AddSymbol(a, {}, "x", component("K1", "x"), false);
    m_tree->AddSymbol(a, {}, "y", component("K2", "y"), false);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1,S:K2]"));
    m_tree->AddSymbol(a, s1, "z", component("K3", "z"), false);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1,S:K3,S:K2]"));
    // `after` that is not a child of the item: last.
    const TVNode b = m_tree->AddItem("B", nullptr, false);
    const TVNode t1 = m_tree->AddSymbol(b, {}, "t", component("K4", "t"), false);
    m_tree->AddSymbol(a, t1, "u", component("K5", "u"), false);
    m_tree->AddSymbol(a, b, "v", component("K6", "v"), false);
    m_tree->AddSymbol(a, TVNode::first(), "w", component("K7", "w"), false);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1,S:K3,S:K2,S:K5,S:K6,S:K7] B[S:K4]"));
}

void TestItemTreeNodes::addSymbolRecordAndItemImage()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    QCOMPARE(m_tree->image(a), TVNodeImage::ItemWithoutSymbol);
    const TVNode s = m_tree->AddSymbol(a, {}, "Contactor", component("K1", "Contactor"), false);
    const TVNodeData* data = m_tree->record(s);
    QCOMPARE(data->kind, TVNodeKind::Symbol);
    QCOMPARE(data->name, KVString("Contactor"));
    QCOMPARE(data->displayText, KVString("Contactor"));
    QVERIFY(data->markerText.isEmpty());
    QVERIFY(!data->attributes);
    QCOMPARE(data->index, -1);
    QCOMPARE(*m_tree->GetSymbol(s), CEComponente("K1", "Contactor"));
    QCOMPARE(m_tree->image(s), TVNodeImage::Symbol);
    QCOMPARE(m_tree->image(a), TVNodeImage::ItemWithSymbol);
}

void TestItemTreeNodes::addSymbolNeedsAnItem()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode s = m_tree->AddSymbol(a, {}, "x", component("K1", "x"), false);
    QVERIFY(m_tree->AddSymbol(s, {}, "y", component("K2", "y"), false).isNull());
    QVERIFY(m_tree->AddSymbol(TVNode(), {}, "y", component("K2", "y"), false).isNull());
    QCOMPARE(describe(*m_tree), QStringLiteral("A[S:K1]"));
}

void TestItemTreeNodes::addSymbolSelectsAndShows()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode s = m_tree->AddSymbol(a, {}, "x", component("K1", "x"), true);
    QCOMPARE(m_tree->current(), s);
    QVERIFY(m_tree->isExpanded(a));
}

void TestItemTreeNodes::setNameLabelRule_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("label");
    QTest::newRow("item") << 1 << "Motor"
                          << "Motor";
    QTest::newRow("item, empty name") << 1 << ""
                                      << "";
    QTest::newRow("symbol") << 2 << "Relay"
                            << "Relay";
    QTest::newRow("page") << 4 << "Anything"
                          << "";
    QTest::newRow("horizontal space") << 5 << "Anything"
                                      << "";
    QTest::newRow("vertical space") << 6 << "Anything"
                                    << "";
}

void TestItemTreeNodes::setNameLabelRule()
{
    QFETCH(int, kind);
    QFETCH(QString, name);
    QFETCH(QString, label);
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    TVNode node = a;
    if (kind == 2)
        node = m_tree->AddSymbol(a, {}, "x", component("K1", "x"), false);
    else if (kind >= 4)
        node = m_tree->AddMarker(a, a, "Marker", static_cast<TVNodeKind>(kind), false);
    QVERIFY(m_tree->SetName(node, name));
    QCOMPARE(QString(m_tree->GetName(node)), name);
    QCOMPARE(QString(m_tree->GetText(node)), label);
    QCOMPARE(QString(m_tree->record(node)->displayText), label);
    QCOMPARE(m_tree->indexOf(node).data().toString(), label);
}

void TestItemTreeNodes::setNameOnMissingNode()
{
    QVERIFY(!m_tree->SetName(TVNode(), "x"));
    QVERIFY(!m_tree->SetName(TVNode::first(), "x"));
}

void TestItemTreeNodes::setAttributesReplacesList()
{
    const TVNode a = m_tree->AddItem("A", makeAttributeList({"F=1"}), false);
    QVERIFY(m_tree->SetAttributes(a, makeAttributeList({"F=2", "G=3"})));
    QCOMPARE(attributeTexts(m_tree->GetAttributes(a)), (QStringList{"F=2", "G=3"}));
    QVERIFY(m_tree->SetAttributes(a, nullptr));
    QVERIFY(!m_tree->GetAttributes(a));
    QVERIFY(!m_tree->SetAttributes(TVNode(), makeAttributeList({"F=9"})));
}

void TestItemTreeNodes::gettersOnMissingNode()
{
    QCOMPARE(m_tree->GetKind(TVNode()), TVNodeKind::None);
    QVERIFY(!m_tree->GetSymbol(TVNode()));
    QVERIFY(!m_tree->GetAttributes(TVNode()));
    QVERIFY(m_tree->GetName(TVNode()).isEmpty());
    QVERIFY(!m_tree->record(TVNode()));
    QVERIFY(!m_tree->RemoveNode(TVNode()));
}

void TestItemTreeNodes::removeNodeByKind_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("after");
    QTest::newRow("item") << 1 << "B[]";
    QTest::newRow("symbol") << 2 << "A[P,H] B[]";
    QTest::newRow("page") << 4 << "A[S:K1,H] B[]";
    QTest::newRow("horizontal space") << 5 << "A[P,S:K1] B[]";
}

void TestItemTreeNodes::removeNodeByKind()
{
    QFETCH(int, kind);
    QFETCH(QString, after);
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode s = m_tree->AddSymbol(a, {}, "x", component("K1", "x"), false);
    const TVNode p = m_tree->AddMarker(a, a, "Page", TVNodeKind::Page, false);
    const TVNode h =
        m_tree->AddMarker(a, s, "Horizontal space", TVNodeKind::HorizontalSpace, false);
    m_tree->AddItem("B", nullptr, false);
    QCOMPARE(describe(*m_tree), QStringLiteral("A[P,S:K1,H] B[]"));
    const TVNode target = kind == 1 ? a : kind == 2 ? s : kind == 4 ? p : h;
    QVERIFY(m_tree->RemoveNode(target));
    QCOMPARE(describe(*m_tree), after);
}

void TestItemTreeNodes::removeItemTakesChildren()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    const TVNode s = m_tree->AddSymbol(a, {}, "x", component("K1", "x"), false);
    QVERIFY(m_tree->RemoveNode(a));
    QVERIFY(!m_tree->contains(s));
    QCOMPARE(m_tree->nodeCount(), 0);
}

void TestItemTreeNodes::unnamedKindIsLabelledAndRemovedLikeASymbol()
{
    TreeWithRawNodes tree;
    const auto tester = checkModel(&tree);
    const TVNode a = tree.AddItem("A", nullptr, false);
    const TVNode node = tree.addRawChild(a, TVNodeKind::Unnamed, "raw");
    QVERIFY(tree.SetName(node, "Three"));
    QCOMPARE(tree.GetText(node), KVString("Three"));
    QVERIFY(tree.RemoveNode(node));
    QVERIFY(!tree.contains(node));
}

void TestItemTreeNodes::removeNodeLeavesOtherKinds_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("fresh record (0)") << 0;
    QTest::newRow("unknown (7)") << 7;
    QTest::newRow("negative (-1)") << -1;
}

void TestItemTreeNodes::removeNodeLeavesOtherKinds()
{
    QFETCH(int, kind);
    TreeWithRawNodes tree;
    const auto tester = checkModel(&tree);
    const TVNode a = tree.AddItem("A", nullptr, false);
    const TVNode node = tree.addRawChild(a, static_cast<TVNodeKind>(kind), "raw");
    QVERIFY(!tree.RemoveNode(node));
    QVERIFY(tree.contains(node));
    // Its label is empty once named: only items and symbols show their name.
    QVERIFY(tree.SetName(node, "named"));
    QVERIFY(tree.GetText(node).isEmpty());
}

QTEST_GUILESS_MAIN(TestItemTreeNodes)
#include "tst_itemtree_nodes.moc"
