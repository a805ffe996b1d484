#include "ItemTreeTestSupport.h"

#include <QTest>

using namespace ItemTreeTestSupport;

// The conversion of the item tree into the insertion job's items.
class TestItemTreeJob : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void emptyTree();
    void itemWithoutChildrenNeverReachesJob();
    void itemWithOnlyMarkersIsConverted();
    void wholeItem();
    void nameQuotesAndC2Replaced();
    void attributeSplit_data();
    void attributeSplit();
    void itemWithoutAttributeList();
    void childCodes_data();
    void childCodes();
    void itemsInTreeOrder();
    void jobItemsLeavesTreeAlone();
    void takeJobItemsConsumesConvertedRecords();

private:
    std::unique_ptr<TreeWithRawNodes> m_tree;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void TestItemTreeJob::init()
{
    m_tree = std::make_unique<TreeWithRawNodes>();
    m_tester = checkModel(m_tree.get());
}

void TestItemTreeJob::cleanup()
{
    m_tester.reset();
    m_tree.reset();
}

void TestItemTreeJob::emptyTree()
{
    QVERIFY(m_tree->JobItems().isEmpty());
}

void TestItemTreeJob::itemWithoutChildrenNeverReachesJob()
{
    m_tree->AddItem("Empty", makeAttributeList({"F=1"}), false);
    const TVNode b = m_tree->AddItem("Full", nullptr, false);
    m_tree->AddSymbol(b, {}, "x", component("K1", "x"), false);
    m_tree->AddItem("Empty too", nullptr, false);
    const QList<CEInsAutoItem> items = m_tree->JobItems();
    QCOMPARE(items.size(), 1);
    QCOMPARE(items.at(0).name, KVString("Full"));
}

void TestItemTreeJob::itemWithOnlyMarkersIsConverted()
{
    const TVNode a = m_tree->AddItem("Markers", nullptr, false);
    const TVNode page = m_tree->AddMarker(a, a, "Page", TVNodeKind::Page, false);
    const TVNode h =
        m_tree->AddMarker(a, page, "Horizontal space", TVNodeKind::HorizontalSpace, false);
    m_tree->AddMarker(a, h, "Vertical space", TVNodeKind::VerticalSpace, false);
    const QList<CEInsAutoItem> items = m_tree->JobItems();
    QCOMPARE(items.size(), 1);
    const QList<CEInsAutoEntry> expected{{"1", ""}, {"2", ""}, {"4", ""}};
    QCOMPARE(items.at(0).entries, expected);
}

void TestItemTreeJob::wholeItem()
{
    const TVNode a =
        m_tree->AddItem("Motor 1", makeAttributeList({"ITEM=1", "TAG=M1", "DESC=Pump"}), false);
    const TVNode s = m_tree->AddSymbol(a, {}, "Motor", component("1021", "Motor"), false);
    m_tree->AddMarker(a, s, "Page", TVNodeKind::Page, false);
    m_tree->AddSymbol(a, {}, "Lamp", component("2040", "Lamp"), false);

    CEInsAutoItem expected;
    expected.name = "Motor 1";
    expected.values = {{"ITEM", "1"}, {"TAG", "M1"}, {"DESC", "Pump"}};
    expected.entries = {{"0", "1021"}, {"1", ""}, {"0", "2040"}};
    QCOMPARE(m_tree->JobItems(), QList<CEInsAutoItem>{expected});
}

void TestItemTreeJob::nameQuotesAndC2Replaced()
{
    const TVNode a =
        m_tree->AddItem(QStringLiteral("Motor \"A\"\u00C2B \u00C2\u00C2"),
                        makeAttributeList({QStringLiteral("\"F\"=say \"hi\"")}), false);
    m_tree->AddSymbol(a, {}, "x", component("K1", "x"), false);
    const CEInsAutoItem item = m_tree->JobItems().at(0);
    QCOMPARE(QString(item.name), QStringLiteral("Motor 'A'-B --"));
    // Double quotes in the field part stay; those in the value become apostrophes.
    QCOMPARE(QString(item.values.at(0).name), QStringLiteral("\"F\""));
    QCOMPARE(QString(item.values.at(0).value), QStringLiteral("say 'hi'"));
}

void TestItemTreeJob::attributeSplit_data()
{
    QTest::addColumn<QString>("attribute");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::newRow("plain") << "TAG=K1"
                           << "TAG"
                           << "K1";
    QTest::newRow("two equals signs: split at the first") << "EXPR=A=B"
                                                          << "EXPR"
                                                          << "A=B";
    QTest::newRow("empty value") << "TAG="
                                 << "TAG"
                                 << "";
    QTest::newRow("empty field") << "=V"
                                 << ""
                                 << "V";
    QTest::newRow("no equals sign") << "lonely \"x\""
                                    << ""
                                    << "lonely 'x'";
    QTest::newRow("U+00C2 stays in values")
        << QStringLiteral("F=\u00C2") << "F" << QStringLiteral("\u00C2");
}

void TestItemTreeJob::attributeSplit()
{
    QFETCH(QString, attribute);
    QFETCH(QString, name);
    QFETCH(QString, value);
    const TVNode a = m_tree->AddItem("A", makeAttributeList({attribute}), false);
    m_tree->AddSymbol(a, {}, "x", component("K1", "x"), false);
    const CEInsAutoItem item = m_tree->JobItems().at(0);
    QCOMPARE(item.values.size(), 1);
    QCOMPARE(QString(item.values.at(0).name), name);
    QCOMPARE(QString(item.values.at(0).value), value);
}

void TestItemTreeJob::itemWithoutAttributeList()
{
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    m_tree->AddSymbol(a, {}, "x", component("K1", "x"), false);
    QVERIFY(m_tree->JobItems().at(0).values.isEmpty());
}

void TestItemTreeJob::childCodes_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("code");
    QTest::newRow("symbol without component") << 2 << "0";
    QTest::newRow("kind 3") << 3 << "";
    QTest::newRow("page") << 4 << "1";
    QTest::newRow("horizontal space") << 5 << "2";
    QTest::newRow("vertical space") << 6 << "4";
    QTest::newRow("fresh record") << 0 << "";
    QTest::newRow("unknown") << 7 << "";
}

void TestItemTreeJob::childCodes()
{
    QFETCH(int, kind);
    QFETCH(QString, code);
    const TVNode a = m_tree->AddItem("A", nullptr, false);
    m_tree->addRawChild(a, static_cast<TVNodeKind>(kind), "raw");
    const QList<CEInsAutoItem> items = m_tree->JobItems();
    QCOMPARE(items.size(), 1);
    QCOMPARE(items.at(0).entries, (QList<CEInsAutoEntry>{{code, ""}}));
}

void TestItemTreeJob::itemsInTreeOrder()
{
    const TVNode b = m_tree->AddItem("B", nullptr, false);
    const TVNode a = m_tree->AddItemAfter("A", nullptr, false, TVNode::first());
    const TVNode c = m_tree->AddItem("C", nullptr, false);
    for (const TVNode item : {a, b, c})
        m_tree->AddMarker(item, item, "Page", TVNodeKind::Page, false);
    QStringList names;
    for (const CEInsAutoItem& item : m_tree->JobItems())
        names.append(item.name);
    QCOMPARE(names, (QStringList{"A", "B", "C"}));
}

void TestItemTreeJob::jobItemsLeavesTreeAlone()
{
    const TVNode a = m_tree->AddItem("A", makeAttributeList({"F=1"}), false);
    const TVNode s = m_tree->AddSymbol(a, {}, "x", component("K1", "x"), false);
    const QList<CEInsAutoItem> first = m_tree->JobItems();
    QVERIFY(m_tree->GetSymbol(s));
    QVERIFY(m_tree->GetAttributes(a));
    QCOMPARE(m_tree->JobItems(), first);
}

void TestItemTreeJob::takeJobItemsConsumesConvertedRecords()
{
    const TVNode a = m_tree->AddItem("A", makeAttributeList({"F=1"}), false);
    const TVNode s = m_tree->AddSymbol(a, {}, "x", component("K1", "x"), false);
    const TVNode empty = m_tree->AddItem("Empty", makeAttributeList({"G=2"}), false);
    const QList<CEInsAutoItem> expected = m_tree->JobItems();
    QCOMPARE(m_tree->TakeJobItems(), expected);
    QVERIFY(!m_tree->GetSymbol(s));
    QVERIFY(!m_tree->GetAttributes(a));
    // Items left out of the job keep their list.
    QVERIFY(m_tree->GetAttributes(empty));
    // The nodes stay; a second conversion finds the records consumed.
    const QList<CEInsAutoItem> again = m_tree->JobItems();
    QCOMPARE(again.size(), 1);
    QVERIFY(again.at(0).values.isEmpty());
    QCOMPARE(again.at(0).entries, (QList<CEInsAutoEntry>{{"0", ""}}));
}

QTEST_GUILESS_MAIN(TestItemTreeJob)
#include "tst_itemtree_job.moc"
