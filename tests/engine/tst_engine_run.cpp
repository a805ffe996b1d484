// The insertion run: the exact conversation with the host for jobs of every shape.

#include "EngineTestSupport.h"

#include "engine/CInsAutoLogic.h"

#include <QtTest>

using namespace EngineTest;

namespace {

void runJob(TestHost& host, const CEInsAutoJob& job)
{
    const auto installed = host.install();
    CInsAutoLogic logic;
    logic.Executar(job);
}

// "*L_PAGINAS*": page groups, each its name followed by (page . layer) pairs.
LispChain pageGroups(const QList<QPair<QString, Pairs>>& groups)
{
    LispChain chain;
    for (const auto& [name, pages] : groups) {
        chain << LispItem::listBegin() << LispItem::fromText(name);
        for (const auto& [page, layer] : pages) {
            chain << LispItem::listBegin() << LispItem::fromText(page) << LispItem::dottedPair()
                  << LispItem::fromText(layer) << LispItem::listEnd();
        }
        chain << LispItem::listEnd();
    }
    return chain;
}

QJsonArray chainJson(const QList<QPair<QString, Pairs>>& groups)
{
    QJsonArray json;
    for (const auto& [name, pages] : groups) {
        json << "(" << name;
        for (const auto& [page, layer] : pages)
            json << "(" << page << "." << layer << ")";
        json << ")";
    }
    return json;
}

// Thawing a page makes its layer current, as the drawing environment does.
void thawMakesCurrent(TestHost& host)
{
    host.language().onInvoke("Descongela_as_layers_da_pagina", [&host](const KVStringList& args) {
        host.cad().setCurrentLayer(args.value(0));
    });
}

} // namespace

class TestEngineRun final : public QObject
{
    Q_OBJECT

private slots:
    void singleSymbolCompleteConversation();
    void noRunnerDoesNothing();
    void emptyJob();
    void runnerGetsEmptyTitleAndFlags();
    void oneMeterPerItemBeforeItsWork();
    void noProgressorStillRuns();
    void horizontalSpacesAndVerticalSpace();
    void unknownEntryKindDoesNothing();
    void pageBreakCreatesPageAndResetsPoint();
    void pageModeOneCurrentPageInGroup();
    void pageModeOneCurrentPageAbsentFromGroup();
    void pageModeOneGroupWalk();
    void pageModeOneWithoutPageList();
    void pageComponentsAndBlocksOncePerPageBeforeFirstSymbol();
    void pageComponentsIgnoredWhenFirstNameEmpty();
    void gapsReadBeforeTestedAfter();
    void gapBeforeOnlyWhenVariableSet();
    void attributeListMergedOverComponent();
    void blankTargetIgnored();
    void pageVariableTargetEndingWithAt();
    void pageVariablesAppliedWhenComponentMissing();
    void missingComponentLeavesPointAndRunGoesOn();
    void missingBlockFileLeavesPoint();
    void explodedComponentPublishesAssociated();
    void touchedPagesSortedOnce();
};

void TestEngineRun::singleSymbolCompleteConversation()
{
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    CEInsAutoJob job = basicJob();
    job.gapBeforeVar = "GAP_A";
    job.gapAfterVar = "GAP_D";
    job.fieldMap = {{"TAG1", "TAG1"}, {"PAGE", "FOLHA@CARIMBO"}};
    job.items = {item("Item 1", {symbol("10")}, {{"TAG1", "K1"}, {"PAGE", "3"}})};

    runJob(host, job);

    const QStringList expected = {
        R"({"op":"invoke","fn":"inicioInsAuto","args":[]})",
        R"({"op":"longOperation","title":""})",
        R"({"op":"progress","total":1})",
        R"({"op":"meter"})",
        R"({"op":"getLayer","value":"P1$1"})",
        R"({"op":"setvar","name":"*INSERCAO_AUTOMATICA*","value":true})",
        R"({"op":"getvar","name":"*NORMA_UTILIZADA*","value":"IEC"})",
        R"({"op":"setvar","name":"KV_KEY_NOR","value":"IEC"})",
        R"({"op":"setvar","name":"MENU_KEY","value":"10"})",
        R"({"op":"setvar","name":"KV_KEY","value":"10"})",
        R"x({"op":"query","sql":"SELECT TAG, VALUE FROM CUSTOM_PROPERTIES WHERE RTRIM(LTRIM( ITEM_KEY )) = :key AND ITEM_TYPE IN (0,1,2)","bind":{"key":"10"}})x",
        R"({"op":"query","sql":"SELECT * FROM BDKV WHERE KV_KEY='10' AND KV_KEY_NOR='IEC'","bind":{}})",
        R"({"op":"setvar","name":"MENU_DESCR","value":"Relay"})",
        R"({"op":"setvar","name":"KV_KEY","value":"10"})",
        R"({"op":"setvar","name":"KV_KEY_NOR","value":"IEC"})",
        R"({"op":"setvar","name":"MENU_DESCR","value":"Relay"})",
        R"({"op":"setvar","name":"KV_DWG","value":"RELAY"})",
        R"({"op":"setvar","name":"KV_EXPLODE","value":"N"})",
        R"({"op":"setvar","name":"DESCRICAO","value":"Relay"})",
        R"({"op":"setvar","name":"TP_DESCRI","value":"Relay"})",
        R"({"op":"getvar","name":"*NORMA_UTILIZADA*","value":"IEC"})",
        R"({"op":"getvar","name":"*DIRETORIO_REDE*","value":"N:\\PROJ\\"})",
        R"({"op":"fileExists","path":"N:\\PROJ\\DADOS\\IEC\\BLOCOS\\RELAY.dwg","value":true})",
        R"({"op":"getvar","name":"GAP_A","value":""})",
        R"({"op":"getvar","name":"GAP_D","value":""})",
        R"({"op":"setvar","name":"PBLLSTVINCAUTO","value":[]})",
        R"({"op":"setvar","name":"PBLLSTREGCAUTO","value":["KV_KEY","10","KV_KEY_NOR","IEC","MENU_DESCR","Relay","KV_DWG","RELAY","KV_EXPLODE","N","DESCRICAO","Relay","TP_DESCRI","Relay","TAG1","K1"]})",
        R"({"op":"invoke","fn":"inserirAuto","args":[10,[10,20,0]]})",
        R"({"op":"getvar","name":"GAP_D","value":""})",
        R"({"op":"setvar","name":"*INSERCAO_AUTOMATICA*","value":false})",
        R"({"op":"getLayer","value":"P1$1"})",
        R"({"op":"writeAttribute","layer":"P1$1","block":"CARIMBO*","tag":"FOLHA","value":"3"})",
        R"({"op":"regen"})",
        R"({"op":"invoke","fn":"fimInsAuto","args":[]})",
        R"({"op":"getLayer","value":"P1$1"})",
        R"({"op":"invoke","fn":"monta_listas_de_paginas_globais","args":[]})",
        R"({"op":"invoke","fn":"atualizarMacros","args":["P1$1"]})",
        R"({"op":"print","text":"\n\n"})",
        R"({"op":"print","text":"Automatic insertion completed"})",
    };
    KV_COMPARE_TRACE(host.traceLines(), expected);
    QCOMPARE(host.cad().boolVar("*INSERCAO_AUTOMATICA*"), std::optional<bool>(false));
    QCOMPARE(host.language().commandLine(), QString("\n\nAutomatic insertion completed"));
}

void TestEngineRun::noRunnerDoesNothing()
{
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    host.electrical().setHasRunner(false);
    CEInsAutoJob job = basicJob();
    job.pageMode = "1";
    job.items = {item("Item 1", {symbol("10")})};

    runJob(host, job);

    KV_COMPARE_TRACE(host.traceLines(),
                     QStringList{TraceLine::service("GetLongOperationRunner", std::nullopt)});
    QVERIFY(host.language().calledFunctions().isEmpty());
    QVERIFY(host.language().printed().isEmpty());
}

void TestEngineRun::emptyJob()
{
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));

    runJob(host, basicJob());

    KV_COMPARE_TRACE(host.traceLines(), runStartLines(0) + runEndLines(kLayer, {kLayer}));
}

void TestEngineRun::runnerGetsEmptyTitleAndFlags()
{
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    CEInsAutoJob job = basicJob();
    job.items = {item("A", {horizontalSpace()}), item("B", {verticalSpace()})};

    runJob(host, job);

    QCOMPARE(host.runner().runs().size(), 1);
    const SyncLongOperationRunner::Run& run = host.runner().runs().first();
    QCOMPARE(run.title, KVString());
    QCOMPARE(run.flag1, false);
    QCOMPARE(run.flag2, true);
    QCOMPARE(run.total, 2);
    QCOMPARE(run.meters, 2);
    QCOMPARE(run.result, longOperationResult::Success);
}

void TestEngineRun::oneMeterPerItemBeforeItsWork()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    CEInsAutoJob job = basicJob();
    job.items = {item("A", {horizontalSpace(), horizontalSpace()}), item("B", {}),
                 item("C", {verticalSpace()})};

    runJob(host, job);

    const QStringList expected = runStartLines(3) +
                                 QStringList{meter(), getLayer(kLayer), getLayer(kLayer),
                                             meter(), meter(),          getLayer(kLayer)} +
                                 runEndLines(kLayer, {kLayer});
    KV_COMPARE_TRACE(host.traceLines(), expected);
}

void TestEngineRun::noProgressorStillRuns()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    host.runner().setProvidesProgressor(false);
    CEInsAutoJob job = basicJob();
    job.items = {item("A", {symbol("10")})};

    runJob(host, job);

    Placement placement;
    placement.x = 10;
    placement.y = 20;
    const QStringList expected =
        QStringList{invoke("inicioInsAuto"), longOperation(QString()), getLayer(kLayer)} +
        symbolLines(placement) + runEndLines(kLayer, {kLayer});
    KV_COMPARE_TRACE(host.traceLines(), expected);
    QCOMPARE(host.runner().runs().value(0).total, -1);
}

void TestEngineRun::horizontalSpacesAndVerticalSpace()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    CEInsAutoJob job = basicJob();
    job.startPoint = "10,20,3";
    job.spaceWidth = "2.5";
    job.items = {item(
        "A", {symbol("10"), horizontalSpace(), horizontalSpace(), verticalSpace(), symbol("10")})};

    runJob(host, job);

    Placement first;
    first.x = 10;
    first.y = 20;
    first.z = 3;
    Placement second = first;
    second.x = 15; // two spaces of 2.5; the vertical space moves nothing
    const QStringList expected =
        runStartLines(1) + QStringList{meter(), getLayer(kLayer)} + symbolLines(first) +
        QStringList{getLayer(kLayer), getLayer(kLayer), getLayer(kLayer), getLayer(kLayer)} +
        symbolLines(second) + runEndLines(kLayer, {kLayer});
    KV_COMPARE_TRACE(host.traceLines(), expected);
}

void TestEngineRun::unknownEntryKindDoesNothing()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    CEInsAutoJob job = basicJob();
    job.items = {item("A", {{"", ""}, {"3", "10"}, {"9", ""}})};

    runJob(host, job);

    const QStringList expected =
        runStartLines(1) +
        QStringList{meter(), getLayer(kLayer), getLayer(kLayer), getLayer(kLayer)} +
        runEndLines(kLayer, {kLayer});
    KV_COMPARE_TRACE(host.traceLines(), expected);
}

void TestEngineRun::pageBreakCreatesPageAndResetsPoint()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    host.language().onInvoke("criarpagina",
                             [&host](const KVStringList&) { host.cad().setCurrentLayer("P2$1"); });
    CEInsAutoJob job = basicJob();
    job.startPoint = "10,20,3";
    job.items = {item("A", {symbol("10"), horizontalSpace(), pageBreak(), symbol("10")})};

    runJob(host, job);

    Placement first;
    first.x = 10;
    first.y = 20;
    first.z = 3;
    const QStringList expected = runStartLines(1) + QStringList{meter(), getLayer(kLayer)} +
                                 symbolLines(first) +
                                 QStringList{getLayer(kLayer), getLayer(kLayer), getLayer(kLayer),
                                             invoke("criarpagina", {"P1", "0"}), getLayer("P2$1")} +
                                 symbolLines(first) + runEndLines("P2$1", {"P1$1", "P2$1"});
    KV_COMPARE_TRACE(host.traceLines(), expected);
}

void TestEngineRun::pageModeOneCurrentPageInGroup()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    host.cad().setCurrentLayer("A$1");
    const QList<QPair<QString, Pairs>> groups = {
        {"B", {{"B1", "B$0"}}},
        {"A", {{"A1", "A$0"}, {"A2", "A$1"}, {"A3", "A$2"}, {"A4", "A$3"}}}};
    host.language().setVariable("*L_PAGINAS*", pageGroups(groups));
    thawMakesCurrent(host);
    host.language().onInvoke("criarpagina",
                             [&host](const KVStringList&) { host.cad().setCurrentLayer("A$9"); });
    CEInsAutoJob job = basicJob();
    job.pageMode = "1";
    job.items = {item("A", {pageBreak(), pageBreak()}), item("B", {pageBreak()})};

    runJob(host, job);

    // The current page is the group's second: it is thawed, and the breaks go on with the
    // third and the fourth, then create a page.
    const QStringList expected = {
        invoke("monta_listas_de_paginas_globais"),
        getLayer("A$1"),
        lispvar("*L_PAGINAS*", chainJson(groups)),
        invoke("Descongela_as_layers_da_pagina", {"A$1"}),
        invoke("inicioInsAuto"),
        longOperation(QString()),
        progress(2),
        meter(),
        getLayer("A$1"),
        getLayer("A$1"),
        invoke("Descongela_as_layers_da_pagina", {"A$2"}),
        getLayer("A$2"),
        getLayer("A$2"),
        invoke("Descongela_as_layers_da_pagina", {"A$3"}),
        meter(),
        getLayer("A$3"),
        getLayer("A$3"),
        invoke("criarpagina", {"A", "0"}),
    };
    KV_COMPARE_TRACE(host.traceLines(), expected + runEndLines("A$9", {"A$9"}));
}

void TestEngineRun::pageModeOneCurrentPageAbsentFromGroup()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    host.cad().setCurrentLayer("A$7");
    const QList<QPair<QString, Pairs>> groups = {{"A", {{"A1", "A$0"}, {"A2", "A$1"}}}};
    host.language().setVariable("*L_PAGINAS*", pageGroups(groups));
    thawMakesCurrent(host);
    CEInsAutoJob job = basicJob();
    job.pageMode = "1";
    job.items = {item("A", {pageBreak()})};

    runJob(host, job);

    // The group's first page is thawed and dropped: the break takes the second.
    const QStringList expected = {
        invoke("monta_listas_de_paginas_globais"),
        getLayer("A$7"),
        lispvar("*L_PAGINAS*", chainJson(groups)),
        invoke("Descongela_as_layers_da_pagina", {"A$0"}),
        invoke("inicioInsAuto"),
        longOperation(QString()),
        progress(1),
        meter(),
        getLayer("A$0"),
        getLayer("A$0"),
        invoke("Descongela_as_layers_da_pagina", {"A$1"}),
    };
    KV_COMPARE_TRACE(host.traceLines(), expected + runEndLines("A$1", {"A$1"}));
}

void TestEngineRun::pageModeOneGroupWalk()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    host.cad().setCurrentLayer("Pg$2");
    // The group name is compared ignoring case; an element that is not (text . text) is
    // passed over; the walk stops at the end of the selected group, so a later group of the
    // same name is not read.
    const LispChain chain = {
        LispItem::listBegin(),      LispItem::fromText("OTHER"), LispItem::listBegin(),
        LispItem::fromText("O1"),   LispItem::dottedPair(),      LispItem::fromText("O$1"),
        LispItem::listEnd(),        LispItem::listEnd(),         LispItem::listBegin(),
        LispItem::fromText("PG"),   LispItem::listBegin(),       LispItem::fromText("X"),
        LispItem::fromText("Y"),    LispItem::listEnd(),         LispItem::listBegin(),
        LispItem::fromText("P1"),   LispItem::dottedPair(),      LispItem::fromText("Pg$1"),
        LispItem::listEnd(),        LispItem::listBegin(),       LispItem::fromInteger(4),
        LispItem::dottedPair(),     LispItem::fromText("Pg$4"),  LispItem::listEnd(),
        LispItem::listBegin(),      LispItem::fromText("P2"),    LispItem::dottedPair(),
        LispItem::fromText("Pg$2"), LispItem::listEnd(),         LispItem::listBegin(),
        LispItem::fromText("P3"),   LispItem::dottedPair(),      LispItem::fromText("Pg$3"),
        LispItem::listEnd(),        LispItem::listEnd(),         LispItem::listBegin(),
        LispItem::fromText("Pg"),   LispItem::listBegin(),       LispItem::fromText("P9"),
        LispItem::dottedPair(),     LispItem::fromText("Pg$9"),  LispItem::listEnd(),
        LispItem::listEnd()};
    host.language().setVariable("*L_PAGINAS*", chain);
    thawMakesCurrent(host);
    host.language().onInvoke(
        "criarpagina", [&host](const KVStringList&) { host.cad().setCurrentLayer("Pg$new"); });
    CEInsAutoJob job = basicJob();
    job.pageMode = "1";
    job.items = {item("A", {pageBreak(), pageBreak()})};

    runJob(host, job);

    const QStringList lines = host.traceLines();
    const QStringList calls = host.language().calledFunctions();
    // Pairs read: (P1 . Pg$1), (P2 . Pg$2), (P3 . Pg$3); the current layer is the second.
    QCOMPARE(calls,
             KVStringList({"monta_listas_de_paginas_globais", "Descongela_as_layers_da_pagina",
                           "inicioInsAuto", "Descongela_as_layers_da_pagina", "criarpagina",
                           "fimInsAuto", "monta_listas_de_paginas_globais", "atualizarMacros"}));
    QCOMPARE(host.language().textCalls().at(1),
             KVStringList({"Descongela_as_layers_da_pagina", "Pg$2"}));
    QCOMPARE(host.language().textCalls().at(3),
             KVStringList({"Descongela_as_layers_da_pagina", "Pg$3"}));
    QCOMPARE(host.language().textCalls().at(4), KVStringList({"criarpagina", "Pg", "0"}));
    QVERIFY(lines.contains(invoke("atualizarMacros", {"Pg$new"})));
}

void TestEngineRun::pageModeOneWithoutPageList()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    CEInsAutoJob job = basicJob();
    job.pageMode = "1";
    job.items = {item("A", {pageBreak()})};

    runJob(host, job);

    const QStringList expected = {
        invoke("monta_listas_de_paginas_globais"),
        getLayer(kLayer),
        lispvar("*L_PAGINAS*", std::nullopt),
        invoke("inicioInsAuto"),
        longOperation(QString()),
        progress(1),
        meter(),
        getLayer(kLayer),
        getLayer(kLayer),
        invoke("criarpagina", {"P1", "0"}),
    };
    KV_COMPARE_TRACE(host.traceLines(), expected + runEndLines(kLayer, {kLayer}));
}

void TestEngineRun::pageComponentsAndBlocksOncePerPageBeforeFirstSymbol()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    host.cad().addFile("N:/PROJ/DADOS/IEC/BLOCOS/FRAME.dwg");
    host.cad().addFile("N:/PROJ/DADOS/IEC/BLOCOS/BAD.dwg");
    QStringList pages = {"P2$1", "P3$1", "P4$1"};
    host.language().onInvoke("criarpagina", [&host, &pages](const KVStringList&) {
        host.cad().setCurrentLayer(pages.takeFirst());
    });
    CEInsAutoJob job = basicJob();
    job.pageComponents = {{"20", "100,50", "90"}, {"...", "1,1", "0"}, {"21", "7", "bad"}};
    job.pageBlocks = {{"FRAME", "10.1,20.2", "90"}, {"MISSING", "0,0", "0"}, {"BAD", "1,2,3", "0"}};
    job.items = {item("A", {horizontalSpace(), symbol("10"), symbol("10")}),
                 item("B", {pageBreak(), pageBreak(), symbol("10")}), item("C", {pageBreak()})};

    runJob(host, job);

    const auto fixedLines = [](const QString& layer) {
        return QStringList{
            insertLine(20, 100, 50, 0, QString("1.57079600")),
            insertLine(21, 7, 0, 0, QString("0.00000000")),
            getvar("*DIRETORIO_REDE*", kNetworkDir),
            getvar("*NORMA_UTILIZADA*", kStandard),
            fileExists("N:/PROJ/DADOS/IEC/BLOCOS/FRAME.dwg", true),
            getLayer(layer),
            insertBlock("N:/PROJ/DADOS/IEC/BLOCOS/FRAME.dwg", "FRAME", layer,
                        static_cast<double>(10.1f), static_cast<double>(20.2f), 90),
            fileExists("N:/PROJ/DADOS/IEC/BLOCOS/MISSING.dwg", false),
            fileExists("N:/PROJ/DADOS/IEC/BLOCOS/BAD.dwg", true),
        };
    };
    Placement p;
    p.y = 20;
    Placement first = p, second = p, third = p;
    first.x = 15;
    second.x = 15; // the default component has no gap variables: it does not advance x
    third.x = 10;
    const QStringList expected =
        runStartLines(3) + QStringList{meter(), getLayer(kLayer), getLayer(kLayer)} +
        fixedLines(kLayer) + symbolLines(first) + QStringList{getLayer(kLayer)} +
        symbolLines(second) +
        QStringList{meter(),
                    getLayer(kLayer),
                    getLayer(kLayer),
                    invoke("criarpagina", {"P1", "0"}),
                    getLayer("P2$1"),
                    getLayer("P2$1"),
                    invoke("criarpagina", {"P2", "0"}),
                    getLayer("P3$1")} +
        fixedLines("P3$1") + symbolLines(third) +
        QStringList{meter(), getLayer("P3$1"), getLayer("P3$1"),
                    invoke("criarpagina", {"P3", "0"})} +
        // P2 received no symbol; P4, current at the end, received none either.
        runEndLines("P4$1", {"P1$1", "P3$1", "P4$1"});
    KV_COMPARE_TRACE(host.traceLines(), expected);
    QCOMPARE(host.cad().insertedBlocks().size(), 2);
    QCOMPARE(host.cad().insertedBlocks().at(1).layer, KVString("P3$1"));
    QCOMPARE(host.cad().insertedBlocks().at(1).z, 0.0);
}

void TestEngineRun::pageComponentsIgnoredWhenFirstNameEmpty()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    host.cad().addFile("N:/PROJ/DADOS/IEC/BLOCOS/FRAME.dwg");
    CEInsAutoJob job = basicJob();
    job.pageComponents = {{"", "0,0", "0"}, {"20", "1,1", "0"}};
    job.pageBlocks = {{"", "0,0", "0"}, {"FRAME", "1,1", "0"}};
    job.items = {item("A", {symbol("10")})};

    runJob(host, job);

    Placement placement;
    placement.x = 10;
    placement.y = 20;
    KV_COMPARE_TRACE(host.traceLines(), runStartLines(1) + QStringList{meter(), getLayer(kLayer)} +
                                            symbolLines(placement) + runEndLines(kLayer, {kLayer}));
}

void TestEngineRun::gapsReadBeforeTestedAfter()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    host.cad().setVar("GAP_A", "3");
    host.cad().setVar("GAP_D", "4");
    // Each insertion leaves the gap-after variable as the drawing side decides.
    QStringList afterInsert = {"7", "", "9"};
    host.language().onInvokeTyped("inserirAuto", [&host, &afterInsert](const LispChain&) {
        if (!afterInsert.isEmpty())
            host.cad().setVar("GAP_D", afterInsert.takeFirst());
    });
    CEInsAutoJob job = basicJob();
    job.gapBeforeVar = "GAP_A";
    job.gapAfterVar = "GAP_D";
    job.items = {item("A", {symbol("10"), symbol("10"), symbol("10"), symbol("10")})};

    runJob(host, job);

    Placement p;
    p.gapBeforeVar = "GAP_A";
    p.gapBefore = "3";
    p.gapAfterVar = "GAP_D";
    p.y = 20;
    // 1: x 10+3, insert at 13, "7" is set after, 4 read before is added: 17.
    Placement first = p;
    first.gapAfter = "4";
    first.gapAfterLater = "7";
    first.x = 13;
    // 2: 17+3 = 20, the variable is empty after the insertion: no gap after.
    Placement second = p;
    second.gapAfter = "7";
    second.gapAfterLater = "";
    second.x = 20;
    // 3: 20+3 = 23; the variable read before was empty ("0"), it is "9" after: adds 0.
    Placement third = p;
    third.gapAfter = "";
    third.gapAfterLater = "9";
    third.x = 23;
    // 4: 23+3 = 26.
    Placement fourth = p;
    fourth.gapAfter = "9";
    fourth.gapAfterLater = "9";
    fourth.x = 26;
    const QStringList expected = runStartLines(1) + QStringList{meter(), getLayer(kLayer)} +
                                 symbolLines(first) + QStringList{getLayer(kLayer)} +
                                 symbolLines(second) + QStringList{getLayer(kLayer)} +
                                 symbolLines(third) + QStringList{getLayer(kLayer)} +
                                 symbolLines(fourth) + runEndLines(kLayer, {kLayer});
    KV_COMPARE_TRACE(host.traceLines(), expected);
}

void TestEngineRun::gapBeforeOnlyWhenVariableSet()
{
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    host.cad().setVar("GAP_D", "2.5");
    CEInsAutoJob job = basicJob();
    job.gapBeforeVar = "GAP_A"; // not set
    job.gapAfterVar = "GAP_D";
    job.items = {item("A", {symbol("10"), symbol("10"), horizontalSpace(), symbol("10")})};

    runJob(host, job);

    QList<double> xs;
    for (const LispChain& call : host.language().typedCalls())
        xs << call.at(2).point.x;
    QCOMPARE(xs, QList<double>({10, 12.5, 20}));
}

void TestEngineRun::attributeListMergedOverComponent()
{
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    CEInsAutoJob job = basicJob();
    // The item's MENU_DESCR field replaces the row's value (names compared ignoring case);
    // the first pair of a name wins; field names compare exactly; targets stay untrimmed.
    job.fieldMap = {
        {"DESC", "menu_descr"}, {"TAG1", "TAG1"}, {"tag2", " TAG2 "}, {"MISSING", "TAG3"}};
    job.items = {item("A", {symbol("10")},
                      {{"DESC", "My relay"},
                       {"TAG1", "first"},
                       {"TAG1", "second"},
                       {"TAG2", "upper"},
                       {"tag2", "lower"}})};

    runJob(host, job);

    QCOMPARE(host.cad().listVar("PBLLSTREGCAUTO"),
             KVStringList({"KV_KEY",    "10",     "KV_KEY_NOR", "IEC",        "MENU_DESCR",
                           "My relay",  "KV_DWG", "RELAY",      "KV_EXPLODE", "N",
                           "DESCRICAO", "Relay",  "TP_DESCRI",  "Relay",      "TAG1",
                           "first",     " TAG2 ", "lower",      "TAG3",       ""}));
    // The description published before the merge is the component's own.
    QCOMPARE(host.cad().var("MENU_DESCR"), KVString("Relay"));
}

void TestEngineRun::blankTargetIgnored()
{
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    CEInsAutoJob job = basicJob();
    job.fieldMap = {{"A", "  "}, {"B", ""}, {"C", "TAG"}};
    job.items = {item("A", {symbol("10")}, {{"A", "1"}, {"B", "2"}, {"C", "3"}})};

    runJob(host, job);

    const KVStringList published = host.cad().listVar("PBLLSTREGCAUTO");
    QCOMPARE(published.mid(published.size() - 2), KVStringList({"TAG", "3"}));
    QCOMPARE(published.size(), 16);
    QVERIFY(!host.traceLines().join('\n').contains("writeAttribute"));
}

void TestEngineRun::pageVariableTargetEndingWithAt()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    host.cad().addBlockReference({kLayer, "STAMP_A3", {{"folha", "?"}, {"OTHER", "x"}}});
    CEInsAutoJob job = basicJob();
    job.fieldMap = {{"PAGE", "FOLHA@"}, {"REV", "REV@STAMP@X"}};
    job.items = {item("A", {symbol("10")}, {{"PAGE", "12"}, {"REV", "B"}})};

    runJob(host, job);

    const QStringList lines = host.traceLines();
    const qsizetype at = lines.indexOf(setvar("*INSERCAO_AUTOMATICA*", false));
    QVERIFY(at > 0);
    QCOMPARE(lines.mid(at + 1, 3),
             QStringList({getLayer(kLayer), writeAttribute(kLayer, "*", "FOLHA", "12"),
                          writeAttribute(kLayer, "STAMP*", "REV", "B")}));
    QCOMPARE(host.cad().blockReferences().at(0).attributes.at(0).second, KVString("12"));
}

void TestEngineRun::pageVariablesAppliedWhenComponentMissing()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    CEInsAutoJob job = basicJob();
    job.fieldMap = {{"PAGE", "FOLHA@CARIMBO"}};
    job.items = {item("A", {symbol("99")}, {{"PAGE", "5"}})};

    runJob(host, job);

    const QStringList lookup = lookupLines("99", {});
    const QStringList expected =
        runStartLines(1) + QStringList{meter(), getLayer(kLayer)} +
        QStringList{setvar("*INSERCAO_AUTOMATICA*", true)} + lookup.mid(0, 6) +
        QStringList{critical("The component was not found on this standard"),
                    setvar("*INSERCAO_AUTOMATICA*", false), getLayer(kLayer),
                    writeAttribute(kLayer, "CARIMBO*", "FOLHA", "5")} +
        runEndLines(kLayer, {kLayer});
    KV_COMPARE_TRACE(host.traceLines(), expected);
}

void TestEngineRun::missingComponentLeavesPointAndRunGoesOn()
{
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    host.cad().setVar("GAP", "3");
    CEInsAutoJob job = basicJob();
    job.gapAfterVar = "GAP";
    job.items = {item("A", {symbol("10"), symbol("99"), symbol("10")}),
                 item("B", {symbol("99"), symbol("10")})};

    runJob(host, job);

    QList<double> xs;
    for (const LispChain& call : host.language().typedCalls())
        xs << call.at(2).point.x;
    QCOMPARE(xs, QList<double>({10, 13, 16}));
    QCOMPARE(host.system().messages().size(), 2);
    QCOMPARE(host.system().messages().at(1).text,
             KVString("The component was not found on this standard"));
    QCOMPARE(host.system().messages().at(1).kind, MessageKind::Critical);
    QCOMPARE(host.system().messages().at(1).parent, TestHost::kMainWindow);
    QCOMPARE(host.language().printed().last(), KVString("Automatic insertion completed"));
}

void TestEngineRun::missingBlockFileLeavesPoint()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    QVERIFY2(host.execSql("INSERT INTO BDKV VALUES ('11', 'IEC', 'Lamp', 'LAMP', 'N')"),
             qPrintable(host.errorText()));
    CEInsAutoJob job = basicJob();
    job.items = {item("A", {symbol("11"), horizontalSpace(), symbol("11")})};

    runJob(host, job);

    const Pairs lamp = {{"KV_KEY", "11"},
                        {"KV_KEY_NOR", "IEC"},
                        {"MENU_DESCR", "Lamp"},
                        {"KV_DWG", "LAMP"},
                        {"KV_EXPLODE", "N"}};
    const QStringList failed = QStringList{setvar("*INSERCAO_AUTOMATICA*", true)} +
                               lookupLines("11", lamp) + blockCheckLines("LAMP", false) +
                               QStringList{setvar("*INSERCAO_AUTOMATICA*", false)};
    KV_COMPARE_TRACE(host.traceLines(), runStartLines(1) + QStringList{meter(), getLayer(kLayer)} +
                                            failed +
                                            QStringList{getLayer(kLayer), getLayer(kLayer)} +
                                            failed + runEndLines(kLayer, {kLayer}));
    QVERIFY(host.language().typedCalls().isEmpty());
}

void TestEngineRun::explodedComponentPublishesAssociated()
{
    using namespace TraceLine;
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    QVERIFY2(host.execSql("UPDATE BDKV SET KV_EXPLODE = 's';"
                          "INSERT INTO BDVINCL VALUES ('10', '30', '2')"),
             qPrintable(host.errorText()));
    CEInsAutoJob job = basicJob();
    job.items = {item("A", {symbol("10")})};

    runJob(host, job);

    Placement placement;
    placement.row = relayRow();
    placement.row[4].second = "s";
    placement.x = 10;
    placement.y = 20;
    placement.associatedLines = {
        getvar("*NORMA_UTILIZADA*", kStandard),
        query("SELECT VL_KEY_B, VL_QTDE FROM BDVINCL WHERE VL_KEY_A='10'"),
        getvar("*NORMA_UTILIZADA*", kStandard),
        query("SELECT VL_KEY_B, VL_QTDE FROM BDVINCL WHERE VL_KEY_A='30'"),
    };
    placement.associated = {"2", "30"};
    KV_COMPARE_TRACE(host.traceLines(), runStartLines(1) + QStringList{meter(), getLayer(kLayer)} +
                                            symbolLines(placement) + runEndLines(kLayer, {kLayer}));
}

void TestEngineRun::touchedPagesSortedOnce()
{
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    host.cad().setCurrentLayer("Z$1");
    QStringList pages = {"B$1", "Z$1", "A$1"};
    host.language().onInvoke("criarpagina", [&host, &pages](const KVStringList&) {
        host.cad().setCurrentLayer(pages.takeFirst());
    });
    CEInsAutoJob job = basicJob();
    job.items = {item(
        "A", {symbol("10"), pageBreak(), symbol("10"), pageBreak(), symbol("10"), pageBreak()})};

    runJob(host, job);

    // Z$1 received symbols twice; A$1 is only the page current at the end.
    QCOMPARE(host.language().textCalls().last(),
             KVStringList({"atualizarMacros", "A$1", "B$1", "Z$1"}));
}

QTEST_GUILESS_MAIN(TestEngineRun)
#include "tst_engine_run.moc"
