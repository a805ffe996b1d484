// Building the insertion job from the three settings files and the item tree.

#include "EngineTestSupport.h"

#include "engine/CEInsAutoJobBuilder.h"
#include "engine/CInsAutoLogic.h"
#include "maindialog/CTVNodesUtil.h"
#include "settings/CELstAtributos.h"

#include <QtTest>

using namespace EngineTest;

namespace {

// Settings files are written with CR LF between lines and none after the last.
bool writeLines(const QString& path, const QStringList& lines)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    return file.write(lines.join(QStringLiteral("\r\n")).toLatin1()) >= 0;
}

const QStringList kHeader = {"GAP_A", "GAP_D", "10,20", "5", "2", "A3", "1"};

std::unique_ptr<CELstAtributos> attributes(const QStringList& texts)
{
    auto list = std::make_unique<CELstAtributos>();
    for (const QString& text : texts)
        list->append(text);
    return list;
}

void addSymbol(CTVNodesUtil& tree, TVNode item, const QString& key)
{
    tree.AddSymbol(item, {}, "Symbol " + key, std::make_unique<CEComponente>(key, "Symbol " + key),
                   false);
}

void addMarker(CTVNodesUtil& tree, TVNode item, TVNodeKind kind)
{
    // The reference is the item's last child, or the item itself when it has none.
    TVNode reference = item;
    if (const int count = tree.childCount(item); count > 0)
        reference = tree.children(item).at(count - 1);
    tree.AddMarker(item, reference, "marker", kind, false);
}

} // namespace

class TestEngineJob final : public QObject
{
    Q_OBJECT

private slots:
    void buildFromFilesAndTree();
    void itemWithoutChildrenLeftOut();
    void blankTargetCarriedAndIgnoredByRun();
    void missingCompanionsGiveEmptyListsAndAreNotCreated();
    void emptyCompanionsGiveEmptyLists();
    void missingSettingsFileReported();
    void treeConsumedByBuild();
};

void TestEngineJob::buildFromFilesAndTree()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString cfa = dir.filePath("job.cfa");
    QVERIFY(writeLines(
        cfa, kHeader + QStringList{"TAG1;TAG1;S;S;", "NAME; ;S;N;", "PAGE;FOLHA@CARIMBO; ;N;"}));
    QVERIFY(writeLines(dir.filePath("job.cfb"),
                       {"FRAME;10,20;90;", "...;0,0;0;", "LOGO; ; ;", "STAMP;1.5,2;45;"}));
    QVERIFY(writeLines(dir.filePath("job.cfc"), {"...;0,0;0;", "20;100,50;90;", "21; ;0;"}));

    CTVNodesUtil tree;
    const TVNode first =
        tree.AddItem(QString::fromUtf8("A \"1\" \xC3\x82 end"),
                     attributes({"TAG1=v=2", "NAME=say \"hi\"", "noequals", "\"F\"=x\"y"}), false);
    addMarker(tree, first, TVNodeKind::Page);
    addSymbol(tree, first, "10");
    addMarker(tree, first, TVNodeKind::HorizontalSpace);
    addMarker(tree, first, TVNodeKind::VerticalSpace);
    addSymbol(tree, first, "11");
    tree.AddItem("Empty", attributes({"TAG1=e"}), false);
    const TVNode spaces = tree.AddItem("Spaces", attributes({}), false);
    addMarker(tree, spaces, TVNodeKind::HorizontalSpace);
    addMarker(tree, spaces, TVNodeKind::Page);

    const CEInsAutoJobBuildResult result = CEInsAutoJobBuilder::build(cfa, tree);

    QVERIFY2(result.ok(), qPrintable(result.errors.join('\n')));
    CEInsAutoJob expected;
    expected.gapBeforeVar = "GAP_A";
    expected.gapAfterVar = "GAP_D";
    expected.startPoint = "10,20";
    expected.spaceWidth = "5";
    expected.pageMode = "1";
    expected.fieldMap = {{"TAG1", "TAG1"}, {"NAME", " "}, {"PAGE", "FOLHA@CARIMBO"}};
    expected.items = {{"A '1' - end",
                       {{"TAG1", "v=2"}, {"NAME", "say 'hi'"}, {"", "noequals"}, {"\"F\"", "x'y"}},
                       {{"1", ""}, {"0", "10"}, {"2", ""}, {"4", ""}, {"0", "11"}}},
                      {"Spaces", {}, {{"2", ""}, {"1", ""}}}};
    expected.pageComponents = {{"20", "100,50", "90"}, {"21", "0,0", "0"}};
    expected.pageBlocks = {
        {"FRAME", "10,20", "90"}, {"LOGO", "0,0", "0"}, {"STAMP", "1.5,2", "45"}};
    QCOMPARE(result.job.gapBeforeVar, expected.gapBeforeVar);
    QCOMPARE(result.job.gapAfterVar, expected.gapAfterVar);
    QCOMPARE(result.job.startPoint, expected.startPoint);
    QCOMPARE(result.job.spaceWidth, expected.spaceWidth);
    QCOMPARE(result.job.pageMode, expected.pageMode);
    QCOMPARE(result.job.fieldMap.size(), 3);
    QVERIFY(result.job.fieldMap == expected.fieldMap);
    QCOMPARE(result.job.items.size(), 2);
    QCOMPARE(result.job.items.at(0).name, expected.items.at(0).name);
    QVERIFY(result.job.items.at(0).values == expected.items.at(0).values);
    QVERIFY(result.job.items.at(0).entries == expected.items.at(0).entries);
    QVERIFY(result.job.pageComponents == expected.pageComponents);
    QVERIFY(result.job.pageBlocks == expected.pageBlocks);
    QVERIFY(result.job == expected);
}

void TestEngineJob::itemWithoutChildrenLeftOut()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString cfa = dir.filePath("s.cfa");
    QVERIFY(writeLines(cfa, kHeader));
    CTVNodesUtil tree;
    tree.AddItem("no children", attributes({"A=1"}), false);
    const TVNode pageOnly = tree.AddItem("page only", attributes({}), false);
    addMarker(tree, pageOnly, TVNodeKind::Page);
    tree.AddItem("none either", attributes({}), false);

    const CEInsAutoJobBuildResult result = CEInsAutoJobBuilder::build(cfa, tree);

    QCOMPARE(result.job.items.size(), 1);
    QCOMPARE(result.job.items.at(0).name, KVString("page only"));
    QVERIFY(result.job.fieldMap.isEmpty());
}

void TestEngineJob::blankTargetCarriedAndIgnoredByRun()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString cfa = dir.filePath("s.cfa");
    QStringList header = kHeader;
    header[0] = "";
    header[1] = "";
    header[6] = "0";
    QVERIFY(writeLines(cfa, header + QStringList{"NAME; ;S;N;", "TAG1;TAG1;S;S;"}));
    CTVNodesUtil tree;
    const TVNode item = tree.AddItem("A", attributes({"NAME=n", "TAG1=t"}), false);
    addSymbol(tree, item, "10");
    addMarker(tree, item, TVNodeKind::VerticalSpace);
    addSymbol(tree, item, "10");

    const CEInsAutoJobBuildResult result = CEInsAutoJobBuilder::build(cfa, tree);
    QVERIFY2(result.ok(), qPrintable(result.errors.join('\n')));
    QCOMPARE(result.job.fieldMap.at(0).target, KVString(" "));

    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    {
        const auto installed = host.install();
        CInsAutoLogic logic;
        logic.Executar(result.job);
    }

    // Both symbols at the start point (the vertical space moves nothing); only TAG1 reaches
    // the attributes; no page component or block (there are no companion files).
    const QList<LispChain>& calls = host.language().typedCalls();
    QCOMPARE(calls.size(), 2);
    QCOMPARE(calls.at(0).at(2).point, (KVPoint3d{10, 20, 0}));
    QCOMPARE(calls.at(1).at(2).point, (KVPoint3d{10, 20, 0}));
    const KVStringList published = host.cad().listVar("PBLLSTREGCAUTO");
    QCOMPARE(published.mid(published.size() - 2), KVStringList({"TAG1", "t"}));
    QVERIFY(!published.contains("NAME"));
    QVERIFY(host.cad().insertedBlocks().isEmpty());
}

void TestEngineJob::missingCompanionsGiveEmptyListsAndAreNotCreated()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString cfa = dir.filePath("s.cfa");
    QVERIFY(writeLines(cfa, kHeader));

    const CEInsAutoJobBuildResult result = CEInsAutoJobBuilder::fromSettings(cfa);

    QVERIFY2(result.ok(), qPrintable(result.errors.join('\n')));
    QVERIFY(result.job.pageComponents.isEmpty());
    QVERIFY(result.job.pageBlocks.isEmpty());
    QVERIFY(!QFileInfo::exists(dir.filePath("s.cfb")));
    QVERIFY(!QFileInfo::exists(dir.filePath("s.cfc")));
}

void TestEngineJob::emptyCompanionsGiveEmptyLists()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString cfa = dir.filePath("s.cfa");
    QVERIFY(writeLines(cfa, kHeader));
    QVERIFY(writeLines(dir.filePath("s.cfb"), {}));
    QVERIFY(writeLines(dir.filePath("s.cfc"), {"", ""}));

    const CEInsAutoJobBuildResult result = CEInsAutoJobBuilder::fromSettings(cfa);

    QVERIFY2(result.ok(), qPrintable(result.errors.join('\n')));
    QVERIFY(result.job.pageComponents.isEmpty());
    QVERIFY(result.job.pageBlocks.isEmpty());
}

void TestEngineJob::missingSettingsFileReported()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString cfa = dir.filePath("absent.cfa");

    const CEInsAutoJobBuildResult result = CEInsAutoJobBuilder::fromSettings(cfa);

    QCOMPARE(result.errors.size(), 1);
    QVERIFY2(result.errors.at(0).contains(cfa), qPrintable(result.errors.at(0)));
    QVERIFY(result.job.fieldMap.isEmpty());
    QVERIFY(result.job.startPoint.isEmpty());
}

void TestEngineJob::treeConsumedByBuild()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString cfa = dir.filePath("s.cfa");
    QVERIFY(writeLines(cfa, kHeader));
    CTVNodesUtil tree;
    const TVNode item = tree.AddItem("A", attributes({"X=1"}), false);
    addSymbol(tree, item, "10");

    const CEInsAutoJobBuildResult result = CEInsAutoJobBuilder::build(cfa, tree);

    QCOMPARE(result.job.items.size(), 1);
    QCOMPARE(result.job.items.at(0).entries.at(0).key, KVString("10"));
    QCOMPARE(tree.GetAttributes(item), nullptr);
    QCOMPARE(tree.GetSymbol(tree.children(item).at(0)), nullptr);
}

QTEST_GUILESS_MAIN(TestEngineJob)
#include "tst_engine_job.moc"
