// The item import on a real database: rows become items, matched components become symbols,
// separators are placed by the separator mode and the page-fill simulation, and the dialog's
// state changes as the import goes. Every database test runs on SQLite and, when a server is
// given by KV_TEST_PGURL, on PostgreSQL.
#include "tst_import_support.h"

#include "maindialog/ItemListController.h"

#include <QSignalSpy>

using namespace ImportTestSupport;

class tst_import_items : public QObject
{
    Q_OBJECT

private slots:
    void sameTagTwiceMatchesNothing_data() { addDatabaseRows(); }
    void sameTagTwiceMatchesNothing();
    void emptyCellWithEqualsAddsNoCondition_data() { addDatabaseRows(); }
    void emptyCellWithEqualsAddsNoCondition();
    void emptyCellWithoutEqualsRequiresTheProperty_data() { addDatabaseRows(); }
    void emptyCellWithoutEqualsRequiresTheProperty();
    void propertyNamesUpperCasedOnlyInTheStatement_data();
    void propertyNamesUpperCasedOnlyInTheStatement();
    void pageSizeReachedExactlyDoesNotBreak_data();
    void pageSizeReachedExactlyDoesNotBreak();
    void modeOnePageBreakGoesBeforeTheSpace_data();
    void modeOnePageBreakGoesBeforeTheSpace();
    void itemNumberWithDecimalPart_data();
    void itemNumberWithDecimalPart();
    void noAcceptedRowsLeavesAnEmptyTree_data() { addDatabaseRows(); }
    void noAcceptedRowsLeavesAnEmptyTree();

    void rowsBecomeItems_data() { addDatabaseRows(); }
    void rowsBecomeItems();
    void separatorModesWithoutPageFill_data();
    void separatorModesWithoutPageFill();
    void currentLanguageIsBound_data() { addDatabaseRows(); }
    void currentLanguageIsBound();
    void apostropheBreaksOnlyItsRow_data() { addDatabaseRows(); }
    void apostropheBreaksOnlyItsRow();
    void missingPropertiesStopTheImport_data() { addDatabaseRows(); }
    void missingPropertiesStopTheImport();
    void failingDictionaryMissesEveryProperty_data() { addDatabaseRows(); }
    void failingDictionaryMissesEveryProperty();
    void cancelledFileDialogKeepsTheTree_data();
    void cancelledFileDialogKeepsTheTree();
    void misalignedListsStopTheImport_data();
    void misalignedListsStopTheImport();
    void busyIndicator();
    void mainDialogList_data() { addDatabaseRows(); }
    void mainDialogList();

    void wholeNumber_data();
    void wholeNumber();
    void missingPropertiesMessage_data();
    void missingPropertiesMessage();

private:
    static void addDatabaseRows();
};

namespace {

const Field kItemField{QStringLiteral("ITEM"), QStringLiteral("ITEM"), {}, QStringLiteral("N")};
const Field kTagField{QStringLiteral("TAG"), QStringLiteral("TAG"), {}, QStringLiteral("S")};

Headers gapHeaders(const QString& mode, const QString& start, const QString& pageSize)
{
    Headers headers;
    headers.gapBeforeVar = QStringLiteral("GAP_BEFORE");
    headers.gapAfterVar = QStringLiteral("GAP_AFTER");
    headers.separatorMode = mode;
    headers.startPoint = start;
    headers.pageSize = pageSize;
    return headers;
}

QStringList gapLines(const QString& key)
{
    return {propertyValue(key, QStringLiteral("GAP_BEFORE"), QStringLiteral("10")),
            propertyValue(key, QStringLiteral("GAP_AFTER"), QStringLiteral("5"))};
}

} // namespace

void tst_import_items::addDatabaseRows()
{
    addDatabaseColumn();
    for (const TestDatabase::Kind kind : databaseKinds())
        QTest::newRow(databaseName(kind).constData()) << kind;
}

// Both conditions are on TYPE: COUNT(DISTINCT tag) can reach 1, never 2.
void tst_import_items::sameTagTwiceMatchesNothing()
{
    QFETCH(TestDatabase::Kind, database);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    const QString twice =
        writeSettings(host.path("twice.cfa"), Headers(),
                      {kItemField, {"TYPE", {}, "TYPE", "S"}, {"KIND", {}, "=TYPE", "N"}});
    const QString once =
        writeSettings(host.path("once.cfa"), Headers(),
                      {kItemField, {"TYPE", {}, "TYPE", "S"}, {"KIND", {}, {}, "N"}});

    CTVNodesUtil tree;
    ImportDialogState state;
    runImport(host, tree, state, twice, workbook("items-same-tag.xlsx"));
    QCOMPARE(describe(tree), QStringLiteral("RELAY[]"));
    KV_COMPARE_TRACE(importTrace(host.traceLines()),
                     {dictionaryLine(),
                      searchLine({containsText("TYPE", "RELAY"), equalsText("TYPE", "RELAY")})});

    host.clearTrace();
    runImport(host, tree, state, once, workbook("items-same-tag.xlsx"));
    QCOMPARE(describe(tree), QStringLiteral("RELAY[S:100,H,S:101,H]"));
    KV_COMPARE_TRACE(importTrace(host.traceLines()),
                     {dictionaryLine(), searchLine({containsText("TYPE", "RELAY")})});
}

void tst_import_items::emptyCellWithEqualsAddsNoCondition()
{
    QFETCH(TestDatabase::Kind, database);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    const QString cfa =
        writeSettings(host.path("s.cfa"), Headers(),
                      {kItemField, {"TYPE", {}, "TYPE", "S"}, {"MAKER", {}, "=MAKER", "N"}});
    CTVNodesUtil tree;
    ImportDialogState state;
    const ItemImportResult result =
        runImport(host, tree, state, cfa, workbook("items-empty-cell.xlsx"));
    QCOMPARE(result.outcome, ItemImportOutcome::Imported);
    // The lamp without any MAKER property is found too.
    QCOMPARE(describe(tree), QStringLiteral("LAMP[S:200,H,S:201,H,S:202,H]"));
    QCOMPARE(attributeTexts(tree.GetAttributes(tree.firstChild())),
             QStringList({"ITEM=1", "TYPE=LAMP", "MAKER="}));
    KV_COMPARE_TRACE(importTrace(host.traceLines()),
                     {dictionaryLine(), searchLine({containsText("TYPE", "LAMP")})});
}

void tst_import_items::emptyCellWithoutEqualsRequiresTheProperty()
{
    QFETCH(TestDatabase::Kind, database);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    const QString cfa =
        writeSettings(host.path("s.cfa"), Headers(),
                      {kItemField, {"TYPE", {}, "TYPE", "S"}, {"MAKER", {}, "MAKER", "N"}});
    CTVNodesUtil tree;
    ImportDialogState state;
    runImport(host, tree, state, cfa, workbook("items-empty-cell.xlsx"));
    // "like '%%'" holds for every MAKER there is, and only the white lamp has none.
    QCOMPARE(describe(tree), QStringLiteral("LAMP[S:200,H,S:201,H]"));
    KV_COMPARE_TRACE(
        importTrace(host.traceLines()),
        {dictionaryLine(), searchLine({containsText("TYPE", "LAMP"), containsText("MAKER", "")})});
}

void tst_import_items::propertyNamesUpperCasedOnlyInTheStatement_data()
{
    addDatabaseColumn();
    QTest::addColumn<bool>("dictionaryHasMaker");
    QTest::addColumn<QString>("search");
    QTest::addColumn<QString>("expectedTree");
    QTest::addColumn<QStringList>("expectedTrace");

    for (const TestDatabase::Kind kind : databaseKinds()) {
        newDatabaseRow(kind, "dictionary spells it Maker")
            << kind << true << "Maker"
            << "LAMP[S:200,H]"
            << QStringList{dictionaryLine(), searchLine({containsText("TYPE", "LAMP"),
                                                         containsText("MAKER", "ACME")})};
        newDatabaseRow(kind, "search written maker")
            << kind << false << "maker"
            << ""
            << QStringList{dictionaryLine(),
                           TraceLine::warning("Invalid configuration file. The following "
                                              "properties do not exist: maker")};
        newDatabaseRow(kind, "search written =Maker")
            << kind << false << "=Maker"
            << ""
            << QStringList{dictionaryLine(),
                           TraceLine::warning("Invalid configuration file. The following "
                                              "properties do not exist: Maker")};
    }
}

void tst_import_items::propertyNamesUpperCasedOnlyInTheStatement()
{
    QFETCH(TestDatabase::Kind, database);
    QFETCH(bool, dictionaryHasMaker);
    QFETCH(QString, search);
    QFETCH(QString, expectedTree);
    QFETCH(QStringList, expectedTrace);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    if (dictionaryHasMaker)
        QVERIFY2(host.execSql("INSERT INTO BDDIC VALUES ('Maker', 'x')"),
                 qPrintable(host.errorText()));
    const QString cfa =
        writeSettings(host.path("s.cfa"), Headers(),
                      {kItemField, {"TYPE", {}, "TYPE", "S"}, {"MAKER", {}, search, "N"}});
    CTVNodesUtil tree;
    ImportDialogState state;
    runImport(host, tree, state, cfa, workbook("items-maker.xlsx"));
    QCOMPARE(describe(tree), expectedTree);
    KV_COMPARE_TRACE(importTrace(host.traceLines()), expectedTrace);
}

void tst_import_items::pageSizeReachedExactlyDoesNotBreak_data()
{
    addDatabaseColumn();
    QTest::addColumn<QString>("startPoint");
    QTest::addColumn<QString>("pageSize");
    QTest::addColumn<QString>("expectedTree");

    // Each symbol takes 10 before and 5 after it; the position goes on from item to item.
    const QString lastBreaks = QStringLiteral("-M1[S:300] | -M2[S:301] | -M3[P,S:302]");
    const QString secondBreaks = QStringLiteral("-M1[S:300] | -M2[P,S:301] | -M3[S:302]");
    for (const TestDatabase::Kind kind : databaseKinds()) {
        newDatabaseRow(kind, "reaches 30 of 30") << kind << "0,0"
                                                 << "30" << lastBreaks;
        newDatabaseRow(kind, "reaches 30 of 29") << kind << "0,0"
                                                 << "29" << secondBreaks;
        newDatabaseRow(kind, "from 5 reaches 35 of 35") << kind << "5,0"
                                                        << "35" << lastBreaks;
        // The start point's decimal part is dropped; with it the second symbol would break.
        newDatabaseRow(kind, "from 5.9") << kind << "5.9,100"
                                         << "35" << lastBreaks;
        newDatabaseRow(kind, "page size 30.9") << kind << "0,0"
                                               << "30.9" << lastBreaks;
        // A symbol wider than the page: both gaps break, and before the first symbol of an
        // item the page goes first under that item.
        newDatabaseRow(kind, "page smaller than a symbol")
            << kind << "0,0"
            << "5"
            << "-M1[P,P,S:300] | -M2[P,P,S:301] | -M3[P,P,S:302]";
    }
}

void tst_import_items::pageSizeReachedExactlyDoesNotBreak()
{
    QFETCH(TestDatabase::Kind, database);
    QFETCH(QString, startPoint);
    QFETCH(QString, pageSize);
    QFETCH(QString, expectedTree);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    const QString cfa = writeSettings(host.path("s.cfa"), gapHeaders("0", startPoint, pageSize),
                                      {kItemField, kTagField, {"MODEL", {}, "=MODEL", "N"}});
    CTVNodesUtil tree;
    ImportDialogState state;
    runImport(host, tree, state, cfa, workbook("items-models.xlsx"));
    QCOMPARE(describe(tree), expectedTree);

    QStringList expected = {dictionaryLine()};
    for (const QString model : {"1", "2", "3"}) {
        expected += searchLine({equalsText("MODEL", "M" + model)});
        expected += gapLines("30" + QString::number(model.toInt() - 1));
    }
    KV_COMPARE_TRACE(importTrace(host.traceLines()), expected);
}

void tst_import_items::modeOnePageBreakGoesBeforeTheSpace_data()
{
    addDatabaseColumn();
    QTest::addColumn<QString>("pageSize");
    QTest::addColumn<QString>("expectedTree");
    for (const TestDatabase::Kind kind : databaseKinds()) {
        // The second pump reaches 10 + 10 + 5 + 10 + 10 = 45 before its own gap.
        newDatabaseRow(kind, "breaks") << kind << "40"
                                       << "-P1[S:400,P,H,S:401,H]";
        newDatabaseRow(kind, "fits exactly") << kind << "50"
                                             << "-P1[S:400,H,S:401,H]";
    }
}

void tst_import_items::modeOnePageBreakGoesBeforeTheSpace()
{
    QFETCH(TestDatabase::Kind, database);
    QFETCH(QString, pageSize);
    QFETCH(QString, expectedTree);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    const QString cfa = writeSettings(host.path("s.cfa"), gapHeaders("1", "0,0", pageSize),
                                      {kItemField, kTagField, {"TYPE", {}, "=TYPE", "N"}});
    CTVNodesUtil tree;
    ImportDialogState state;
    runImport(host, tree, state, cfa, workbook("items-pumps.xlsx"));
    QCOMPARE(describe(tree), expectedTree);
    KV_COMPARE_TRACE(importTrace(host.traceLines()),
                     QStringList{dictionaryLine(), searchLine({equalsText("TYPE", "PUMP")})} +
                         gapLines("400") + gapLines("401"));
}

void tst_import_items::itemNumberWithDecimalPart_data()
{
    addDatabaseColumn();
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    for (const TestDatabase::Kind kind : databaseKinds()) {
        newDatabaseRow(kind, "from 0") << kind << 0 << 12;
        newDatabaseRow(kind, "from -5") << kind << -5 << 12;
        newDatabaseRow(kind, "from 12") << kind << 12 << 12;
        newDatabaseRow(kind, "from 13") << kind << 13 << 13;
    }
}

// The rows hold 3, 12.7 and 7 in the ITEM column.
void tst_import_items::itemNumberWithDecimalPart()
{
    QFETCH(TestDatabase::Kind, database);
    QFETCH(int, before);
    QFETCH(int, after);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    const QString cfa = writeSettings(host.path("s.cfa"), Headers(), {kItemField, kTagField});
    CTVNodesUtil tree;
    ImportDialogState state;
    state.lastItemNumber = before;
    const ItemImportResult result =
        runImport(host, tree, state, cfa, workbook("items-item-numbers.xlsx"));
    QCOMPARE(result.outcome, ItemImportOutcome::Imported);
    QCOMPARE(state.lastItemNumber, after);
    QCOMPARE(describe(tree), QStringLiteral("-A[] | -B[] | -C[]"));
    QCOMPARE(attributeTexts(tree.GetAttributes(tree.children().at(1))),
             QStringList({"ITEM=12.7", "TAG=-B"}));
    // Without search properties the statement is not valid: every row runs it and fails.
    const QStringList failing = {searchLine({}), TraceLine::queryFailed("*")};
    KV_COMPARE_TRACE(importTrace(host.traceLines()),
                     QStringList{dictionaryLine()} + failing + failing + failing);
}

void tst_import_items::noAcceptedRowsLeavesAnEmptyTree()
{
    QFETCH(TestDatabase::Kind, database);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    const QString cfa = writeSettings(host.path("s.cfa"), Headers(), {kItemField, kTagField});
    CTVNodesUtil tree;
    tree.AddItem("old", makeAttributeList({"ITEM=9"}), true);
    ImportDialogState state;
    state.itemCount = 3;
    state.lastItemNumber = 9;
    const ItemImportResult result =
        runImport(host, tree, state, cfa, workbook("items-no-rows.xlsx"));
    QCOMPARE(result.outcome, ItemImportOutcome::Imported);
    QVERIFY(tree.isEmpty());
    QCOMPARE(result.insertionEnabled, std::optional<bool>(false));
    QVERIFY(result.countShown);
    QCOMPARE(state.itemCount, 0);
    QCOMPARE(state.lastItemNumber, 9);
    QCOMPARE(result.itemsImported, 0);
    KV_COMPARE_TRACE(importTrace(host.traceLines()), {dictionaryLine()});
}

void tst_import_items::rowsBecomeItems()
{
    QFETCH(TestDatabase::Kind, database);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    const QString cfa = writeSettings(host.path("s.cfa"), Headers(),
                                      {kItemField,
                                       kTagField,
                                       {"DESCRIPTION", "FUNCTION", {}, "S"},
                                       {"TYPE", {}, "=TYPE", "N"},
                                       {"MAKER", {}, "=MAKER", "N"},
                                       {"VOLTAGE", {}, "VOLTAGE", "N"},
                                       {"NOTE", "REMARK\"", {}, "s"}});
    CTVNodesUtil tree;
    ImportDialogState state;
    state.itemCount = 17;
    const ItemImportResult result = runImport(host, tree, state, cfa, workbook("items-mixed.xlsx"));

    QCOMPARE(result.outcome, ItemImportOutcome::Imported);
    QCOMPARE(describe(tree), QStringLiteral("-K1 - Relay 24[S:100,H] | "
                                            "-K2 - Relays[S:100,H,S:101,H] | "
                                            "-H1 - Lamps[] | "
                                            "-M1 - Motors[S:300,H,S:301,H,S:302,H]"));
    QCOMPARE(result.itemsImported, 4);
    QCOMPARE(result.symbolsPlaced, 6);
    QCOMPARE(state.itemCount, 4);
    QCOMPARE(state.lastItemNumber, 4);
    QCOMPARE(result.insertionEnabled, std::optional<bool>(true));
    QVERIFY(result.countShown);
    QCOMPARE(result.workbookPath, workbook("items-mixed.xlsx"));

    const QList<TVNode> items = tree.children();
    QCOMPARE(attributeTexts(tree.GetAttributes(items.at(0))),
             QStringList({"ITEM=1", "TAG=-K1", "DESCRIPTION=Relay 24", "TYPE=RELAY", "MAKER=ACME",
                          "VOLTAGE=24", "NOTE=first"}));
    QCOMPARE(attributeTexts(tree.GetAttributes(items.at(2))),
             QStringList({"ITEM=3", "TAG=-H1", "DESCRIPTION=Lamps", "TYPE=LAMP",
                          "MAKER=", "VOLTAGE=", "NOTE=nothing has a voltage"}));
    QCOMPARE(tree.image(items.at(0)), TVNodeImage::ItemWithSymbol);
    QCOMPARE(tree.image(items.at(2)), TVNodeImage::ItemWithoutSymbol);
    QVERIFY(!tree.isExpanded(items.at(0)));
    QVERIFY(tree.current().isNull());

    // Descriptions come trimmed; the symbol node shows its component's description.
    const TVNode padded = tree.children(items.at(1)).at(2);
    QCOMPARE(tree.GetSymbol(padded)->GetKey(), QStringLiteral("101"));
    QCOMPARE(tree.GetSymbol(padded)->GetDescricao(), QStringLiteral("Relay 230 V AC"));
    QCOMPARE(tree.GetText(padded), QStringLiteral("Relay 230 V AC"));
    QCOMPARE(tree.GetText(tree.children(items.at(1)).at(1)), QStringLiteral("Horizontal space"));

    ImportHeaderTexts headers;
    headers.startPoint = "0,0";
    headers.spaceWidth = "10";
    headers.separatorMode = "2";
    headers.pageSize = "1000";
    headers.pageMode = "0";
    headers.lispFieldList = R"((cons "ITEM" "ITEM") (cons "TAG" "TAG") )"
                            R"((cons "DESCRIPTION" "FUNCTION") (cons "TYPE" " ") )"
                            R"((cons "MAKER" " ") (cons "VOLTAGE" " ") (cons "NOTE" "REMARK'") )";
    QCOMPARE(state.headers, headers);

    KV_COMPARE_TRACE(importTrace(host.traceLines()),
                     {dictionaryLine(),
                      searchLine({equalsText("TYPE", "RELAY"), equalsText("MAKER", "ACME"),
                                  containsText("VOLTAGE", "24")}),
                      searchLine({equalsText("TYPE", "RELAY"), containsText("VOLTAGE", "")}),
                      searchLine({equalsText("TYPE", "LAMP"), containsText("VOLTAGE", "")}),
                      searchLine({equalsText("TYPE", "MOTOR"), containsText("VOLTAGE", "")})});
}

void tst_import_items::separatorModesWithoutPageFill_data()
{
    addDatabaseColumn();
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("expectedTree");
    for (const TestDatabase::Kind kind : databaseKinds()) {
        newDatabaseRow(kind, "2") << kind << "2"
                                  << "LAMP[S:200,H,S:201,H,S:202,H]";
        newDatabaseRow(kind, "3") << kind << "3"
                                  << "LAMP[S:200,P,S:201,P,S:202,P]";
        newDatabaseRow(kind, "4") << kind << "4"
                                  << "LAMP[S:200,V,S:201,V,S:202,V]";
        newDatabaseRow(kind, "5") << kind << "5"
                                  << "LAMP[S:200,S:201,S:202]";
        newDatabaseRow(kind, "empty") << kind << ""
                                      << "LAMP[S:200,S:201,S:202]";
        newDatabaseRow(kind, "blank and 3") << kind << " 3"
                                            << "LAMP[S:200,S:201,S:202]";
    }
}

// Only modes "0" and "1" simulate the page fill: the others never ask for a gap.
void tst_import_items::separatorModesWithoutPageFill()
{
    QFETCH(TestDatabase::Kind, database);
    QFETCH(QString, mode);
    QFETCH(QString, expectedTree);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    const QString cfa =
        writeSettings(host.path("s.cfa"), gapHeaders(mode, "0,0", "1"),
                      {kItemField, {"TYPE", {}, "TYPE", "S"}, {"MAKER", {}, "=MAKER", "N"}});
    CTVNodesUtil tree;
    ImportDialogState state;
    runImport(host, tree, state, cfa, workbook("items-empty-cell.xlsx"));
    QCOMPARE(describe(tree), expectedTree);
    KV_COMPARE_TRACE(importTrace(host.traceLines()),
                     {dictionaryLine(), searchLine({containsText("TYPE", "LAMP")})});
}

void tst_import_items::currentLanguageIsBound()
{
    QFETCH(TestDatabase::Kind, database);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    host.electrical().setCurrentLanguage("2");
    const QString cfa = writeSettings(host.path("s.cfa"), Headers(),
                                      {kItemField, kTagField, {"TYPE", {}, "=TYPE", "N"}});
    CTVNodesUtil tree;
    ImportDialogState state;
    runImport(host, tree, state, cfa, workbook("items-pumps.xlsx"));
    const QList<TVNode> symbols = tree.children(tree.firstChild());
    QCOMPARE(symbols.size(), 4);
    QCOMPARE(tree.GetText(symbols.at(0)), QStringLiteral("PT Pump P1"));
    QCOMPARE(tree.GetSymbol(symbols.at(2))->GetDescricao(), QStringLiteral("PT Pump P2"));
    KV_COMPARE_TRACE(importTrace(host.traceLines()),
                     {dictionaryLine(), searchLine({equalsText("TYPE", "PUMP")}, "2")});
    QVERIFY(host.traceLines().contains(TraceLine::service("GetCurrentLanguage", "2")));
}

// The cell goes into the statement as it stands; the quote ends the text early, the statement
// fails and that item has no symbols. The next row is matched as usual.
void tst_import_items::apostropheBreaksOnlyItsRow()
{
    QFETCH(TestDatabase::Kind, database);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    const QString cfa = writeSettings(
        host.path("s.cfa"), Headers(),
        {kItemField, kTagField, {"TYPE", {}, "TYPE", "N"}, {"MAKER", {}, "MAKER", "N"}});
    CTVNodesUtil tree;
    ImportDialogState state;
    const ItemImportResult result =
        runImport(host, tree, state, cfa, workbook("items-apostrophe.xlsx"));
    QCOMPARE(result.outcome, ItemImportOutcome::Imported);
    QCOMPARE(describe(tree), QStringLiteral("-H1[] | -K1[S:100,H,S:101,H]"));
    QCOMPARE(state.itemCount, 2);
    KV_COMPARE_TRACE(importTrace(host.traceLines()),
                     {dictionaryLine(),
                      searchLine({containsText("TYPE", "LAMP"), containsText("MAKER", "O'NEIL")}),
                      TraceLine::queryFailed("*"),
                      searchLine({containsText("TYPE", "RELAY"), containsText("MAKER", "ACME")})});
}

void tst_import_items::missingPropertiesStopTheImport()
{
    QFETCH(TestDatabase::Kind, database);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    Headers fileHeaders;
    fileHeaders.gapBeforeVar = "GB";
    fileHeaders.separatorMode = "1";
    const QString cfa = writeSettings(host.path("s.cfa"), fileHeaders,
                                      {kItemField,
                                       {"TAG", {}, "NOPE", "S"},
                                       {"DESCRIPTION", {}, "=NOPE ", "N"},
                                       {"TYPE", {}, "=", "N"},
                                       {"MAKER", {}, "type", "N"},
                                       {"NOTE", {}, "VOLTAGE", "N"},
                                       {"VOLTAGE", {}, "COLOUR,", "N"}});
    CTVNodesUtil tree;
    tree.AddItem("old", makeAttributeList({}), true);
    ImportDialogState state;
    state.itemCount = 5;
    state.lastItemNumber = 7;
    const ItemImportResult result = runImport(host, tree, state, cfa, workbook("items-mixed.xlsx"));

    QCOMPARE(result.outcome, ItemImportOutcome::MissingProperties);
    QCOMPARE(result.missingProperties, KVStringList({"NOPE", "NOPE", "type", "COLOUR,"}));
    const QString message = QStringLiteral(
        "Invalid configuration file. The following properties do not exist: NOPE, NOPE, type, "
        "COLOUR");
    KV_COMPARE_TRACE(importTrace(host.traceLines()),
                     {dictionaryLine(), TraceLine::warning(message)});
    QCOMPARE(host.system().messages().size(), 1);
    QCOMPARE(host.system().messages().first().text, message);
    // The old list is gone; the count field and the insertion button are left alone.
    QVERIFY(tree.isEmpty());
    QVERIFY(!result.insertionEnabled.has_value());
    QVERIFY(!result.countShown);
    QCOMPARE(state.itemCount, 0);
    QCOMPARE(state.lastItemNumber, 7);
    // The header texts read stay in the dialog.
    QCOMPARE(state.headers.gapBeforeVar, QStringLiteral("GB"));
    QCOMPARE(state.headers.separatorMode, QStringLiteral("1"));
}

void tst_import_items::failingDictionaryMissesEveryProperty()
{
    QFETCH(TestDatabase::Kind, database);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    QVERIFY2(host.execSql("DROP TABLE BDDIC"), qPrintable(host.errorText()));
    const QString cfa =
        writeSettings(host.path("s.cfa"), Headers(),
                      {kItemField, {"TYPE", {}, "TYPE", "S"}, {"MAKER", {}, "=MAKER", "N"}});
    CTVNodesUtil tree;
    ImportDialogState state;
    const ItemImportResult result =
        runImport(host, tree, state, cfa, workbook("items-empty-cell.xlsx"));
    QCOMPARE(result.outcome, ItemImportOutcome::MissingProperties);
    KV_COMPARE_TRACE(importTrace(host.traceLines()),
                     {dictionaryLine(), TraceLine::queryFailed("*"),
                      TraceLine::warning("Invalid configuration file. The following properties "
                                         "do not exist: TYPE, MAKER")});
}

void tst_import_items::cancelledFileDialogKeepsTheTree_data()
{
    QTest::addColumn<bool>("treeHasItem");
    QTest::newRow("tree with an item") << true;
    QTest::newRow("empty tree") << false;
}

void tst_import_items::cancelledFileDialogKeepsTheTree()
{
    QFETCH(bool, treeHasItem);
    TestHost host;
    const QString cfa = writeSettings(host.path("s.cfa"), Headers(), {kItemField, kTagField});
    CTVNodesUtil tree;
    if (treeHasItem)
        tree.AddItem("old", makeAttributeList({}), true);
    ImportDialogState state;
    state.itemCount = 5;
    state.headers.separatorMode = "3";
    ItemImportResult result;
    {
        const auto installed = host.install();
        ItemImport itemImport(tree, state);
        result = itemImport.run(cfa);
    }
    QCOMPARE(result.outcome, ItemImportOutcome::NotRead);
    QCOMPARE(result.insertionEnabled, std::optional<bool>(treeHasItem));
    QVERIFY(!result.countShown);
    QCOMPARE(result.workbookPath, KVString());
    QCOMPARE(describe(tree), treeHasItem ? QStringLiteral("old[]") : QString());
    QCOMPARE(state.itemCount, 5);
    QCOMPARE(state.headers.separatorMode, QStringLiteral("3"));
    QCOMPARE(importTrace(host.traceLines()), QStringList());
}

void tst_import_items::misalignedListsStopTheImport_data()
{
    addDatabaseColumn();
    QTest::addColumn<QStringList>("columns");
    QTest::addColumn<QStringList>("searchProps");
    QTest::addColumn<QStringList>("showFlags");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("expectedTree");
    QTest::addColumn<int>("expectedCount");
    QTest::addColumn<QString>("expectedError");
    for (const TestDatabase::Kind kind : databaseKinds()) {
        // The third show flag reads the next row's first value, and past the end on the last.
        newDatabaseRow(kind, "show flags past the row")
            << kind << QStringList{"ITEM", "TAG"} << QStringList{" ", " "}
            << QStringList{"N", "S", "S"} << QStringList{"1", "-A", "2", "-B"} << "-A - 2[]" << 1
            << "Invalid argument: index 4 is outside the row values (4 entries)";
        newDatabaseRow(kind, "search properties past the columns")
            << kind << QStringList{"ITEM"} << QStringList{" ", "TYPE"} << QStringList{}
            << QStringList{"1"} << "" << 0
            << "Invalid argument: index 1 is outside the column titles (1 entries)";
    }
}

// Lists that do not line up cannot come from the reader, only from settings and rows put
// together otherwise: the import stops with the error logged and keeps what it made.
void tst_import_items::misalignedListsStopTheImport()
{
    QFETCH(TestDatabase::Kind, database);
    QFETCH(QStringList, columns);
    QFETCH(QStringList, searchProps);
    QFETCH(QStringList, showFlags);
    QFETCH(QStringList, values);
    QFETCH(QString, expectedTree);
    QFETCH(int, expectedCount);
    QFETCH(QString, expectedError);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    ImportedSheet sheet;
    sheet.headers.separatorMode = "2";
    sheet.columns = columns;
    sheet.searchProps = searchProps;
    sheet.showFlags = showFlags;
    sheet.values = values;
    CTVNodesUtil tree;
    ImportDialogState state;
    ItemImportResult result;
    {
        const auto installed = host.install();
        ItemImport itemImport(tree, state);
        result = itemImport.build(sheet);
    }
    QCOMPARE(result.outcome, ItemImportOutcome::Failed);
    QCOMPARE(result.error, expectedError);
    QCOMPARE(describe(tree), expectedTree);
    QCOMPARE(state.itemCount, expectedCount);
    QVERIFY(!result.insertionEnabled.has_value());
    QVERIFY(!result.countShown);
    const QString logged = "CIInsereAuto::OnBnClickedBtImportar : " + expectedError;
    QCOMPARE(host.document().log(), KVStringList({logged}));
    QCOMPARE(importTrace(host.traceLines()).last(), logLine(logged));
}

void tst_import_items::busyIndicator()
{
    TestHost host;
    KV_OPEN_STANDARD(host, TestDatabase::Kind::SQLite);
    const QString good = writeSettings(host.path("good.cfa"), Headers(), {kItemField, kTagField});
    const QString bad =
        writeSettings(host.path("bad.cfa"), Headers(), {kItemField, {"TAG", {}, "NOPE", "S"}});
    struct Case
    {
        QString settings;
        bool answerDialog;
        QList<bool> expected;
    };
    const QList<Case> cases = {
        {good, true, {true, false}}, {bad, true, {true, false}}, {good, false, {}}};
    for (const Case& c : cases) {
        if (c.answerDialog)
            host.system().queueFileDialogAnswer(KV_RESULT_OK, workbook("items-models.xlsx"));
        CTVNodesUtil tree;
        ImportDialogState state;
        QList<bool> seen;
        const auto installed = host.install();
        ItemImport itemImport(tree, state);
        itemImport.setBusyIndicator([&](bool busy) { seen.append(busy); });
        itemImport.run(c.settings);
        QCOMPARE(seen, c.expected);
    }
}

void tst_import_items::mainDialogList()
{
    QFETCH(TestDatabase::Kind, database);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    const QString cfa = writeSettings(host.path("s.cfa"), gapHeaders("4", "0,0", "100"),
                                      {kItemField, kTagField, {"MODEL", {}, "=MODEL", "N"}});
    ItemListController list;
    list.setLastItemNumber(2);
    list.setItemCount(9);
    QSignalSpy counts(&list, &ItemListController::itemCountChanged);
    ImportDialogState state;
    host.system().queueFileDialogAnswer(KV_RESULT_OK, workbook("items-models.xlsx"));
    ItemImportResult result;
    {
        const auto installed = host.install();
        result = ItemImport::run(cfa, list, state);
    }
    QCOMPARE(result.outcome, ItemImportOutcome::Imported);
    QCOMPARE(describe(list.tree()), QStringLiteral("-M1[S:300,V] | -M2[S:301,V] | -M3[S:302,V]"));
    QCOMPARE(list.itemCount(), 3);
    QCOMPARE(list.lastItemNumber(), 3);
    QCOMPARE(list.separatorMode(), QStringLiteral("4"));
    QCOMPARE(counts.size(), 1);
    QCOMPARE(counts.first().first().toInt(), 3);
    // Add space now adds what the imported separator mode asks for.
    list.tree().setCurrent(list.tree().firstChild());
    QVERIFY(!list.addSpace().isNull());
    QCOMPARE(describe(list.tree()).left(18), QStringLiteral("-M1[V,S:300,V] | -"));
}

void tst_import_items::wholeNumber_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");
    QTest::newRow("point") << "40,200" << 40;
    QTest::newRow("leading commas") << ",,40,200" << 40;
    QTest::newRow("decimal part dropped") << "12.7" << 12;
    QTest::newRow("negative") << " -5.5,3" << -5;
    QTest::newRow("leading number") << "380mm" << 380;
    QTest::newRow("not a number") << "abc" << 0;
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("only commas") << ",,," << 0;
}

void tst_import_items::wholeNumber()
{
    QFETCH(QString, text);
    QFETCH(int, expected);
    QCOMPARE(ItemImport::wholeNumber(text), expected);
}

void tst_import_items::missingPropertiesMessage_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("expected");
    const QString prefix =
        QStringLiteral("Invalid configuration file. The following properties do not exist: ");
    QTest::newRow("one") << QStringList{"A"} << prefix + "A";
    QTest::newRow("several, duplicates kept") << QStringList{"A", "B", "A"} << prefix + "A, B, A";
    QTest::newRow("trailing commas of the last name") << QStringList{"A", "B,,"} << prefix + "A, B";
    QTest::newRow("commas only") << QStringList{",", ","} << prefix.trimmed();
}

void tst_import_items::missingPropertiesMessage()
{
    QFETCH(QStringList, names);
    QFETCH(QString, expected);
    QCOMPARE(ItemImport::missingPropertiesMessage(names), expected);
}

QTEST_GUILESS_MAIN(tst_import_items)
#include "tst_import_items.moc"
