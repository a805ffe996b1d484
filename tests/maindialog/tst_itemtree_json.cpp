#include "ItemTreeTestSupport.h"

#include "maindialog/ItemListController.h"
#include "maindialog/ItemTreeJson.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace ItemTreeTestSupport;

namespace {

const QString dataDir = QStringLiteral(KV_SOURCE_DIR "/tests/maindialog/data");

QByteArray fileBytes(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

} // namespace

// The tree's JSON form: reading, writing, the import's form, and the errors for bad files.
class TestItemTreeJson : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void readPlainArray();
    void writePlainArrayIsByteIdentical();
    void readAndWriteImportForm();
    void roundTripOfEditedTree();
    void readTranslatesMarkerTexts();
    void readReplacesTreeContent();
    void minimalItem();
    void emptyArray();
    void badDocument_data();
    void badDocument();
    void missingFile();
    void writeAndReadFile();
    void writeToMissingFolderFails();

private:
    std::unique_ptr<CTVNodesUtil> m_tree;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void TestItemTreeJson::init()
{
    m_tree = std::make_unique<CTVNodesUtil>();
    m_tester = checkModel(m_tree.get());
}

void TestItemTreeJson::cleanup()
{
    m_tester.reset();
    m_tree.reset();
}

void TestItemTreeJson::readPlainArray()
{
    const ItemTreeJson::ReadResult result = ItemTreeJson::read(dataDir + "/tree.json", *m_tree);
    QVERIFY2(result.ok(), qPrintable(result.error));
    QVERIFY(!result.counts);
    QCOMPARE(describe(*m_tree), QStringLiteral("1 - M1[P,S:1021,H,S:2040,V] 2[]"));

    const TVNode first = m_tree->firstChild();
    QCOMPARE(attributeTexts(m_tree->GetAttributes(first)),
             (QStringList{"ITEM=1", "TAG=M1", QStringLiteral("DESC=Bomba \"d'água\" \u00C2")}));
    QVERIFY(m_tree->isExpanded(first));
    QCOMPARE(m_tree->image(first), TVNodeImage::ItemWithSymbol);
    const QList<TVNode> children = m_tree->children(first);
    QCOMPARE(m_tree->GetText(children.at(0)), KVString("Page"));
    QCOMPARE(m_tree->record(children.at(0))->markerText, KVString("Page"));
    QCOMPARE(m_tree->GetText(children.at(1)), KVString(QStringLiteral("Motor trifásico")));
    QCOMPARE(*m_tree->GetSymbol(children.at(1)),
             CEComponente("1021", QStringLiteral("Motor trifásico")));
    QCOMPARE(m_tree->GetText(children.at(2)), KVString("Horizontal space"));
    QCOMPARE(m_tree->GetText(children.at(4)), KVString("Vertical space"));

    const TVNode second = m_tree->nextSibling(first);
    QVERIFY(!m_tree->isExpanded(second));
    QCOMPARE(m_tree->image(second), TVNodeImage::ItemWithoutSymbol);
    QVERIFY(attributeTexts(m_tree->GetAttributes(second)).isEmpty());
    QVERIFY(m_tree->current().isNull());
}

void TestItemTreeJson::writePlainArrayIsByteIdentical()
{
    const QString path = dataDir + "/tree.json";
    QVERIFY(ItemTreeJson::read(path, *m_tree).ok());
    QCOMPARE(ItemTreeJson::toJson(*m_tree), fileBytes(path));
}

void TestItemTreeJson::readAndWriteImportForm()
{
    const QString path = dataDir + "/import-form.json";
    const ItemTreeJson::ReadResult result = ItemTreeJson::read(path, *m_tree);
    QVERIFY2(result.ok(), qPrintable(result.error));
    QVERIFY(result.counts);
    QCOMPARE(*result.counts, (ItemTreeJson::Counts{2, 12}));
    QCOMPARE(describe(*m_tree), QStringLiteral("12 - K1[S:3001,P] 7[]"));
    QCOMPARE(ItemTreeJson::toJson(*m_tree, result.counts), fileBytes(path));
}

void TestItemTreeJson::roundTripOfEditedTree()
{
    ItemListController controller;
    CTVNodesUtil& source = controller.tree();
    const auto sourceTester = checkModel(&source);
    const TVNode a = controller.addItem(QStringLiteral("Ä \"quoted\" \u00C2"),
                                        {"ITEM=1", "X=a=b", "", "no equals"});
    CEPasta relay(CEPasta::kComponent, "K1");
    relay.setDescricao(0, QStringLiteral("Relé"));
    controller.addSymbol(relay);
    controller.addPage();
    controller.setSeparatorMode("2");
    controller.addSpace();
    source.setCurrent(a);
    controller.addSpace();
    source.setCurrent(a);
    controller.copyItem();
    controller.addItem("", {});
    source.setExpanded(a, false);
    const QString before = describe(source);
    QCOMPARE(before,
             QStringLiteral("Ä \"quoted\" \u00C2[H,H,S:K1,P,H] Ä \"quoted\" \u00C2[S:K1,H,P] []"));

    const QByteArray json = ItemTreeJson::toJson(source);
    const ItemTreeJson::ReadResult result = ItemTreeJson::parse(json, "memory.json", *m_tree);
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(describe(*m_tree), before);
    QCOMPARE(m_tree->JobItems(), source.JobItems());
    QCOMPARE(ItemTreeJson::toJson(*m_tree), json);
    const QList<TVNode> items = m_tree->children();
    QVERIFY(!m_tree->isExpanded(items.at(0)));
    QVERIFY(m_tree->isExpanded(items.at(1)) == source.isExpanded(source.children().at(1)));
}

void TestItemTreeJson::readTranslatesMarkerTexts()
{
    MarkerTranslator translator;
    QCoreApplication::installTranslator(&translator);
    const ItemTreeJson::ReadResult result = ItemTreeJson::read(dataDir + "/tree.json", *m_tree);
    QCoreApplication::removeTranslator(&translator);
    QVERIFY2(result.ok(), qPrintable(result.error));
    const QList<TVNode> children = m_tree->children(m_tree->firstChild());
    QCOMPARE(m_tree->GetText(children.at(0)), KVString("<Page>"));
    QCOMPARE(m_tree->GetText(children.at(2)), KVString("<Horizontal space>"));
    QCOMPARE(m_tree->GetText(children.at(4)), KVString("<Vertical space>"));
    // Symbol descriptions are data, not translated.
    QCOMPARE(m_tree->GetText(children.at(3)), KVString("Lamp"));
}

void TestItemTreeJson::readReplacesTreeContent()
{
    const TVNode old = m_tree->AddItem("Old", nullptr, true);
    QVERIFY(ItemTreeJson::parse(R"([{"name": "New"}])", "x.json", *m_tree).ok());
    QCOMPARE(describe(*m_tree), QStringLiteral("New[]"));
    QVERIFY(!m_tree->contains(old));
    QVERIFY(m_tree->current().isNull());
}

void TestItemTreeJson::minimalItem()
{
    QVERIFY(
        ItemTreeJson::parse(R"([{"name": "A", "children": [{"kind": "page"}]}])", "x.json", *m_tree)
            .ok());
    const TVNode a = m_tree->firstChild();
    QCOMPARE(describe(*m_tree), QStringLiteral("A[P]"));
    QVERIFY(!m_tree->isExpanded(a));
    QVERIFY(attributeTexts(m_tree->GetAttributes(a)).isEmpty());
    QVERIFY(m_tree->GetAttributes(a));
}

void TestItemTreeJson::emptyArray()
{
    m_tree->AddItem("Old", nullptr, false);
    const ItemTreeJson::ReadResult result = ItemTreeJson::parse("[]", "x.json", *m_tree);
    QVERIFY(result.ok());
    QVERIFY(m_tree->isEmpty());
    QCOMPARE(ItemTreeJson::toJson(*m_tree), QByteArray("[\n]\n"));
}

void TestItemTreeJson::badDocument_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("error");
    QTest::newRow("not JSON") << QByteArray("[\n  {\"name\": }\n]")
                              << "bad.json: not valid JSON at line 2, column 13: ";
    QTest::newRow("empty file") << QByteArray("") << "bad.json: not valid JSON at line 1";
    QTest::newRow("root is a string")
        << QByteArray(R"("items")") << "bad.json: not valid JSON at line 1";
    QTest::newRow("item is not an object")
        << QByteArray(R"([{"name": "A"}, 3])") << "bad.json: [1]: expected an object";
    QTest::newRow("missing name") << QByteArray(R"([{"attributes": []}])")
                                  << "bad.json: [0]: missing member \"name\"";
    QTest::newRow("name is a number")
        << QByteArray(R"([{"name": 1}])") << "bad.json: [0].name: expected a string";
    QTest::newRow("attributes not an array")
        << QByteArray(R"([{"name": "A", "attributes": "F=1"}])")
        << "bad.json: [0].attributes: expected an array of strings";
    QTest::newRow("attribute not a string")
        << QByteArray(R"([{"name": "A", "attributes": ["F=1", null]}])")
        << "bad.json: [0].attributes[1]: expected a string";
    QTest::newRow("expanded not a boolean") << QByteArray(R"([{"name": "A", "expanded": "yes"}])")
                                            << "bad.json: [0].expanded: expected true or false";
    QTest::newRow("children not an array") << QByteArray(R"([{"name": "A", "children": {}}])")
                                           << "bad.json: [0].children: expected an array";
    QTest::newRow("child not an object")
        << QByteArray(R"([{"name": "A", "children": [{"kind": "page"}, "page"]}])")
        << "bad.json: [0].children[1]: expected an object";
    QTest::newRow("child without kind")
        << QByteArray(R"([{"name": "A", "children": [{"key": "1"}]}])")
        << "bad.json: [0].children[0]: missing member \"kind\"";
    QTest::newRow("unknown kind")
        << QByteArray(R"([{"name": "A"}, {"name": "B", "children": [{"kind": "item"}]}])")
        << "bad.json: [1].children[0].kind: unknown kind \"item\"";
    QTest::newRow("symbol without key")
        << QByteArray(R"([{"name": "A", "children": [{"kind": "symbol", "description": "x"}]}])")
        << "bad.json: [0].children[0]: missing member \"key\"";
    QTest::newRow("symbol without description")
        << QByteArray(R"([{"name": "A", "children": [{"kind": "symbol", "key": "1"}]}])")
        << "bad.json: [0].children[0]: missing member \"description\"";
    QTest::newRow("symbol key is a number")
        << QByteArray(R"([{"name": "A", "children": [{"kind": "symbol", "key": 1,
                      "description": "x"}]}])")
        << "bad.json: [0].children[0].key: expected a string";
    QTest::newRow("page with a key")
        << QByteArray(R"([{"name": "A", "children": [{"kind": "page", "key": "1"}]}])")
        << "bad.json: [0].children[0]: unknown member \"key\"";
    QTest::newRow("misspelt item member") << QByteArray(R"([{"name": "A", "atributes": []}])")
                                          << "bad.json: [0]: unknown member \"atributes\"";
    QTest::newRow("import form without items")
        << QByteArray(R"({"itemCount": 1, "lastItemNumber": 1})")
        << "bad.json: missing member \"items\"";
    QTest::newRow("import form without itemCount")
        << QByteArray(R"({"lastItemNumber": 1, "items": []})")
        << "bad.json: missing member \"itemCount\"";
    QTest::newRow("itemCount with a fraction")
        << QByteArray(R"({"itemCount": 1.5, "lastItemNumber": 1, "items": []})")
        << "bad.json: itemCount: expected a whole number";
    QTest::newRow("lastItemNumber as text")
        << QByteArray(R"({"itemCount": 1, "lastItemNumber": "1", "items": []})")
        << "bad.json: lastItemNumber: expected a whole number";
    QTest::newRow("lastItemNumber out of range")
        << QByteArray(R"({"itemCount": 1, "lastItemNumber": 1e12, "items": []})")
        << "bad.json: lastItemNumber: expected a whole number";
    QTest::newRow("items not an array")
        << QByteArray(R"({"itemCount": 1, "lastItemNumber": 1, "items": {}})")
        << "bad.json: items: expected an array of items";
    QTest::newRow("bad child in import form")
        << QByteArray(R"({"itemCount": 0, "lastItemNumber": 0, "items": [{"name": "A"},
                      {"name": "B"}, {"name": "C"}, {"name": "D", "children":
                      [{"kind": "page"}, {"kind": "hspace", "x": 1}]}]})")
        << "bad.json: items[3].children[1]: unknown member \"x\"";
    QTest::newRow("unknown top-level member")
        << QByteArray(R"({"itemCount": 0, "lastItemNumber": 0, "items": [], "extra": 1})")
        << "bad.json: unknown member \"extra\"";
}

void TestItemTreeJson::badDocument()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, error);
    const TVNode keep = m_tree->AddItem("Keep", makeAttributeList({"F=1"}), true);
    m_tree->AddSymbol(keep, {}, "x", component("K1", "x"), false);
    const ItemTreeJson::ReadResult result = ItemTreeJson::parse(json, "bad.json", *m_tree);
    QVERIFY(!result.ok());
    QVERIFY2(result.error.startsWith(error), qPrintable(result.error));
    QVERIFY(!result.counts);
    // Nothing of the tree is lost.
    QCOMPARE(describe(*m_tree), QStringLiteral("Keep[S:K1]"));
    QCOMPARE(m_tree->current(), keep);
}

void TestItemTreeJson::missingFile()
{
    const QString path = dataDir + "/no-such-file.json";
    const ItemTreeJson::ReadResult result = ItemTreeJson::read(path, *m_tree);
    QVERIFY(!result.ok());
    QVERIFY2(result.error.startsWith(path + ": cannot be read"), qPrintable(result.error));
}

void TestItemTreeJson::writeAndReadFile()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(ItemTreeJson::read(dataDir + "/import-form.json", *m_tree).ok());
    const QString path = dir.filePath("out.json");
    QVERIFY(ItemTreeJson::write(path, *m_tree, ItemTreeJson::Counts{5, 40}).isEmpty());
    CTVNodesUtil other;
    const ItemTreeJson::ReadResult result = ItemTreeJson::read(path, other);
    QVERIFY2(result.ok(), qPrintable(result.error));
    QCOMPARE(*result.counts, (ItemTreeJson::Counts{5, 40}));
    QCOMPARE(describe(other), describe(*m_tree));

    QVERIFY(ItemTreeJson::write(path, *m_tree).isEmpty());
    QVERIFY(fileBytes(path).startsWith("[\n"));
}

void TestItemTreeJson::writeToMissingFolderFails()
{
    QTemporaryDir dir;
    const QString path = dir.filePath("missing/out.json");
    m_tree->AddItem("A", nullptr, false);
    const QString error = ItemTreeJson::write(path, *m_tree);
    QVERIFY2(error.startsWith(path + ": cannot be written"), qPrintable(error));
    QVERIFY(!QFile::exists(path));
}

QTEST_GUILESS_MAIN(TestItemTreeJson)
#include "tst_itemtree_json.moc"
