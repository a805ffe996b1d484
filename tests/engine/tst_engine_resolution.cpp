// Component resolution and associated components, on a real database: the select texts, the
// lookup and what it publishes, custom properties, the block-file check, and the depth-first
// collection of associated components.

#include "EngineTestSupport.h"

#include "engine/AssociatedComponents.h"
#include "engine/CQueryInsAutoSelect.h"
#include "engine/ComponentResolver.h"

#include <QtTest>

using namespace EngineTest;

namespace {

// Rows for the databases the tests can reach: SQLite always, PostgreSQL when a server is
// named by KV_TEST_PGURL.
void addDatabaseRows()
{
    QTest::addColumn<TestDatabase::Kind>("kind");
    QTest::newRow("sqlite") << TestDatabase::Kind::SQLite;
    QTest::newRow("postgresql") << TestDatabase::Kind::PostgreSQL;
}

bool prepareOn(TestHost& host, TestDatabase::Kind kind)
{
    if (!host.createDatabase(standardSql(), kind))
        return false;
    host.cad().setVar(QStringLiteral("*NORMA_UTILIZADA*"), kStandard);
    host.cad().setVar(QStringLiteral("*DIRETORIO_REDE*"), kNetworkDir);
    host.cad().setCurrentLayer(kLayer);
    host.cad().addFile(blockPath(QStringLiteral("RELAY")));
    return true;
}

#define PREPARE_DATABASE(host)                                                                     \
    QFETCH(TestDatabase::Kind, kind);                                                              \
    if (kind == TestDatabase::Kind::PostgreSQL && TestDatabase::postgresUrl().isEmpty())           \
        QSKIP("KV_TEST_PGURL is not set");                                                         \
    QVERIFY2(prepareOn(host, kind), qPrintable(host.errorText()))

QString bdvincl(const QString& key)
{
    return QStringLiteral("SELECT VL_KEY_B, VL_QTDE FROM BDVINCL WHERE VL_KEY_A='%1'").arg(key);
}

} // namespace

Q_DECLARE_METATYPE(TestDatabase::Kind)

class TestEngineResolution final : public QObject
{
    Q_OBJECT

private slots:
    void selectSql_data();
    void selectSql();
    void selectQueryIsSelect_data();
    void selectQueryIsSelect();
    void selectRowsHeaderThenRecords_data() { addDatabaseRows(); }
    void selectRowsHeaderThenRecords();
    void selectRowsFailedQueryIsEmpty_data() { addDatabaseRows(); }
    void selectRowsFailedQueryIsEmpty();
    void apostrophesDoubledAndStillMatching_data() { addDatabaseRows(); }
    void apostrophesDoubledAndStillMatching();
    void twoRowsFirstOneUsed_data() { addDatabaseRows(); }
    void twoRowsFirstOneUsed();
    void componentNotFound_data() { addDatabaseRows(); }
    void componentNotFound();
    void queryFailureTreatedAsNotFound_data() { addDatabaseRows(); }
    void queryFailureTreatedAsNotFound();
    void customPropertiesPublishedAfterRow_data() { addDatabaseRows(); }
    void customPropertiesPublishedAfterRow();
    void customPropertiesDescription_data();
    void customPropertiesDescription();
    void customPropertiesQueryFailure_data() { addDatabaseRows(); }
    void customPropertiesQueryFailure();
    void blockFileCheck_data();
    void blockFileCheck();
    void quantityGivesOnePair_data() { addDatabaseRows(); }
    void quantityGivesOnePair();
    void twoQuantityPartsFollowTwice_data() { addDatabaseRows(); }
    void twoQuantityPartsFollowTwice();
    void zeroOrNonNumericQuantitySelectsBlockName_data() { addDatabaseRows(); }
    void zeroOrNonNumericQuantitySelectsBlockName();
    void unknownAssociatedComponentReportedAndFollowed_data() { addDatabaseRows(); }
    void unknownAssociatedComponentReportedAndFollowed();
    void missingAssociatedBlockFileSkippedAndFollowed_data() { addDatabaseRows(); }
    void missingAssociatedBlockFileSkippedAndFollowed();
    void threeLevelsDepthFirst_data() { addDatabaseRows(); }
    void threeLevelsDepthFirst();
    void deepChainFollowedToTheEnd_data() { addDatabaseRows(); }
    void deepChainFollowedToTheEnd();
    void associationQueryFailureGivesNothing_data() { addDatabaseRows(); }
    void associationQueryFailureGivesNothing();
};

void TestEngineResolution::selectSql_data()
{
    QTest::addColumn<KVNamedValues>("conditions");
    QTest::addColumn<QString>("sql");
    QTest::newRow("no condition") << KVNamedValues{} << "SELECT * FROM BDKV";
    QTest::newRow("one") << KVNamedValues{{"KV_KEY", "10"}}
                         << "SELECT * FROM BDKV WHERE KV_KEY='10'";
    QTest::newRow("two") << KVNamedValues{{"KV_KEY", "10"}, {"KV_KEY_NOR", "IEC"}}
                         << "SELECT * FROM BDKV WHERE KV_KEY='10' AND KV_KEY_NOR='IEC'";
    QTest::newRow("apostrophes") << KVNamedValues{{"A", "it's"}, {"B", "''"}}
                                 << "SELECT * FROM BDKV WHERE A='it''s' AND B=''''''";
    QTest::newRow("empty value") << KVNamedValues{{"A", ""}} << "SELECT * FROM BDKV WHERE A=''";
}

void TestEngineResolution::selectSql()
{
    QFETCH(KVNamedValues, conditions);
    QFETCH(QString, sql);
    QCOMPARE(ComponentResolver::selectSql("BDKV", "*", conditions), sql);
}

void TestEngineResolution::selectQueryIsSelect_data()
{
    QTest::addColumn<QString>("sql");
    QTest::addColumn<bool>("isSelect");
    QTest::newRow("upper") << "SELECT * FROM BDKV" << true;
    QTest::newRow("lower") << "select 1" << true;
    QTest::newRow("mixed, blanks") << " \n\tSeLeCt 1" << true;
    QTest::newRow("update") << "UPDATE BDKV SET KV_KEY='1'" << false;
    QTest::newRow("with") << "WITH x AS (SELECT 1) SELECT * FROM x" << false;
    QTest::newRow("empty") << "" << false;
}

void TestEngineResolution::selectQueryIsSelect()
{
    QFETCH(QString, sql);
    QFETCH(bool, isSelect);
    QCOMPARE(CQueryInsAutoSelect(sql).IsSelect(), isSelect);
}

void TestEngineResolution::selectRowsHeaderThenRecords()
{
    TestHost host;
    PREPARE_DATABASE(host);
    QVERIFY2(host.execSql("INSERT INTO BDVINCL VALUES ('10', '20', '2,0');"
                          "INSERT INTO BDVINCL VALUES ('10', '21', NULL)"),
             qPrintable(host.errorText()));
    const auto installed = host.install();

    const QList<KVStringList> rows =
        ComponentResolver::selectRows("BDVINCL", "VL_KEY_B, VL_QTDE", {{"VL_KEY_A", "10"}});

    QCOMPARE(rows, QList<KVStringList>({{"VL_KEY_B", "VL_QTDE"}, {"20", "2,0"}, {"21", ""}}));
    KV_COMPARE_TRACE(host.traceLines(), {TraceLine::query(bdvincl("10"))});
}

void TestEngineResolution::selectRowsFailedQueryIsEmpty()
{
    TestHost host;
    PREPARE_DATABASE(host);
    const auto installed = host.install();

    QVERIFY(ComponentResolver::selectRows("NO_SUCH_TABLE", "*", {}).isEmpty());

    const QStringList lines = host.traceLines();
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.at(0), TraceLine::query("SELECT * FROM NO_SUCH_TABLE"));
    QVERIFY2(lines.at(1).startsWith(R"({"op":"queryFailed")"), qPrintable(lines.at(1)));
}

void TestEngineResolution::apostrophesDoubledAndStillMatching()
{
    TestHost host;
    PREPARE_DATABASE(host);
    QVERIFY2(host.execSql("INSERT INTO BDKV VALUES ('7''A', 'O''NEIL', 'Quote', 'Q''BLK', 'N')"),
             qPrintable(host.errorText()));
    host.cad().setVar("*NORMA_UTILIZADA*", "O'NEIL");
    const auto installed = host.install();

    const std::optional<KVNamedValues> record = ComponentResolver::lookupComponent("7'A");

    QVERIFY(record.has_value());
    QCOMPARE(ComponentResolver::valueOf(*record, "KV_DWG"), KVString("Q'BLK"));
    const Pairs row = {{"KV_KEY", "7'A"},
                       {"KV_KEY_NOR", "O'NEIL"},
                       {"MENU_DESCR", "Quote"},
                       {"KV_DWG", "Q'BLK"},
                       {"KV_EXPLODE", "N"}};
    const QStringList expected = lookupLines("7'A", row, {}, "O'NEIL");
    QCOMPARE(expected.at(5),
             TraceLine::query("SELECT * FROM BDKV WHERE KV_KEY='7''A' AND KV_KEY_NOR='O''NEIL'"));
    KV_COMPARE_TRACE(host.traceLines(), expected);
}

void TestEngineResolution::twoRowsFirstOneUsed()
{
    TestHost host;
    PREPARE_DATABASE(host);
    QVERIFY2(host.execSql("INSERT INTO BDKV VALUES ('10', 'IEC', 'Second relay', 'RELAY2', 'S')"),
             qPrintable(host.errorText()));
    const auto installed = host.install();

    const std::optional<KVNamedValues> record = ComponentResolver::lookupComponent("10");

    QVERIFY(record.has_value());
    QCOMPARE(*record, KVNamedValues({{"KV_KEY", "10"},
                                     {"KV_KEY_NOR", "IEC"},
                                     {"MENU_DESCR", "Relay"},
                                     {"KV_DWG", "RELAY"},
                                     {"KV_EXPLODE", "N"},
                                     {"DESCRICAO", "Relay"},
                                     {"TP_DESCRI", "Relay"}}));
    KV_COMPARE_TRACE(host.traceLines(), lookupLines("10", relayRow()));
}

void TestEngineResolution::componentNotFound()
{
    TestHost host;
    PREPARE_DATABASE(host);
    const auto installed = host.install();

    QVERIFY(!ComponentResolver::lookupComponent("11").has_value());

    const QStringList expected =
        lookupLines("11", {}).mid(0, 6) +
        QStringList{TraceLine::critical("The component was not found on this standard")};
    KV_COMPARE_TRACE(host.traceLines(), expected);
    QCOMPARE(host.system().messages().at(0).parent, TestHost::kMainWindow);
    QCOMPARE(host.system().messages().at(0).title, KVString("Test host"));
    QVERIFY(!host.cad().hasVar("MENU_DESCR"));
}

void TestEngineResolution::queryFailureTreatedAsNotFound()
{
    TestHost host;
    PREPARE_DATABASE(host);
    QVERIFY2(host.execSql("DROP TABLE BDKV"), qPrintable(host.errorText()));
    const auto installed = host.install();

    QVERIFY(!ComponentResolver::lookupComponent("10").has_value());

    const QStringList lines = host.traceLines();
    QCOMPARE(lines.mid(0, 6), lookupLines("10", {}).mid(0, 6));
    QVERIFY2(lines.value(6).startsWith(R"({"op":"queryFailed")"), qPrintable(lines.value(6)));
    QCOMPARE(lines.mid(7),
             QStringList{TraceLine::critical("The component was not found on this standard")});
}

void TestEngineResolution::customPropertiesPublishedAfterRow()
{
    TestHost host;
    PREPARE_DATABASE(host);
    // Keys are compared trimmed; item types 0, 1 and 2 count, others do not.
    QVERIFY2(host.execSql("INSERT INTO CUSTOM_PROPERTIES VALUES (' 10 ', 0, 'COLOR', 'red');"
                          "INSERT INTO CUSTOM_PROPERTIES VALUES ('10', 3, 'HIDDEN', 'x');"
                          "INSERT INTO CUSTOM_PROPERTIES VALUES ('100', 1, 'OTHER', 'y');"
                          "INSERT INTO CUSTOM_PROPERTIES VALUES ('10', 2, 'SIZE', '4 mm')"),
             qPrintable(host.errorText()));
    const auto installed = host.install();

    const std::optional<KVNamedValues> record = ComponentResolver::lookupComponent("10");

    QVERIFY(record.has_value());
    const Pairs custom = {{"COLOR", "red"}, {"SIZE", "4 mm"}};
    KV_COMPARE_TRACE(host.traceLines(), lookupLines("10", relayRow(), custom));
    QCOMPARE(
        record->mid(5),
        KVNamedValues(
            {{"COLOR", "red"}, {"SIZE", "4 mm"}, {"DESCRICAO", "Relay"}, {"TP_DESCRI", "Relay"}}));
    QCOMPARE(host.cad().var("SIZE"), KVString("4 mm"));
}

void TestEngineResolution::customPropertiesDescription_data()
{
    QTest::addColumn<TestDatabase::Kind>("kind");
    QTest::addColumn<QString>("valueType");
    QTest::addColumn<QString>("description");
    // SQLite does not report declared lengths; PostgreSQL does.
    QTest::newRow("sqlite, text") << TestDatabase::Kind::SQLite << "VARCHAR(80)"
                                  << "CHAR(-1)";
    QTest::newRow("sqlite, integer") << TestDatabase::Kind::SQLite << "INTEGER"
                                     << "(-1)";
    QTest::newRow("postgresql, text") << TestDatabase::Kind::PostgreSQL << "VARCHAR(80)"
                                      << "CHAR(80)";
    QTest::newRow("postgresql, integer") << TestDatabase::Kind::PostgreSQL << "INTEGER"
                                         << "(4)";
}

void TestEngineResolution::customPropertiesDescription()
{
    QFETCH(TestDatabase::Kind, kind);
    QFETCH(QString, valueType);
    QFETCH(QString, description);
    if (kind == TestDatabase::Kind::PostgreSQL && TestDatabase::postgresUrl().isEmpty())
        QSKIP("KV_TEST_PGURL is not set");
    TestHost host;
    QVERIFY2(host.createDatabase(QStringLiteral("CREATE TABLE CUSTOM_PROPERTIES (ITEM_KEY "
                                                "VARCHAR(20), ITEM_TYPE INTEGER, TAG VARCHAR(40), "
                                                "VALUE %1);"
                                                "INSERT INTO CUSTOM_PROPERTIES VALUES ('5', 0, "
                                                "'A', 12);"
                                                "INSERT INTO CUSTOM_PROPERTIES VALUES ('5', 1, "
                                                "'B', 3)")
                                     .arg(valueType),
                                 kind),
             qPrintable(host.errorText()));
    const auto installed = host.install();

    const CustomProperties custom = ComponentResolver::readCustomProperties("5");

    QCOMPARE(custom.properties, KVNamedValues({{"A", description}, {"B", description}}));
    QCOMPARE(custom.values, KVStringList({"12", "3"}));
}

void TestEngineResolution::customPropertiesQueryFailure()
{
    TestHost host;
    PREPARE_DATABASE(host);
    QVERIFY2(host.execSql("DROP TABLE CUSTOM_PROPERTIES"), qPrintable(host.errorText()));
    const auto installed = host.install();

    const std::optional<KVNamedValues> record = ComponentResolver::lookupComponent("10");

    QVERIFY(record.has_value());
    QCOMPARE(record->size(), 7);
    QVERIFY(host.traceLines().value(5).startsWith(R"({"op":"queryFailed")"));
}

void TestEngineResolution::blockFileCheck_data()
{
    using namespace TraceLine;
    QTest::addColumn<QString>("blockName");
    QTest::addColumn<bool>("passes");
    QTest::addColumn<QStringList>("trace");
    QTest::newRow("present") << "RELAY" << true << blockCheckLines("RELAY", true);
    QTest::newRow("trailing blanks trimmed") << "RELAY  " << true << blockCheckLines("RELAY", true);
    QTest::newRow("leading blank refused")
        << " RELAY" << false << QStringList{critical("Component has empty block name")};
    QTest::newRow("empty") << "" << false
                           << QStringList{critical("Component has empty block name")};
    // The path already ends in ".dwg" and the message adds it once more.
    QTest::newRow("missing") << "LAMP" << false
                             << QStringList{getvar("*NORMA_UTILIZADA*", kStandard),
                                            getvar("*DIRETORIO_REDE*", kNetworkDir),
                                            fileExists(blockPath("LAMP"), false),
                                            critical("The file N:\\PROJ\\DADOS\\IEC\\BLOCOS\\"
                                                     "LAMP.dwg.dwg was not found.")};
}

void TestEngineResolution::blockFileCheck()
{
    QFETCH(QString, blockName);
    QFETCH(bool, passes);
    QFETCH(QStringList, trace);
    TestHost host;
    QVERIFY2(prepareHost(host), qPrintable(host.errorText()));
    const auto installed = host.install();

    QCOMPARE(ComponentResolver::checkBlockFile(blockName), passes);

    KV_COMPARE_TRACE(host.traceLines(), trace);
}

void TestEngineResolution::quantityGivesOnePair()
{
    TestHost host;
    PREPARE_DATABASE(host);
    QVERIFY2(host.execSql("INSERT INTO BDVINCL VALUES ('10', '30', '2')"),
             qPrintable(host.errorText()));
    const auto installed = host.install();

    KVNamedValues out;
    AssociatedComponents::collect("10", out);

    QCOMPARE(out, KVNamedValues({{"2", "30"}}));
    using namespace TraceLine;
    KV_COMPARE_TRACE(host.traceLines(),
                     {getvar("*NORMA_UTILIZADA*", kStandard), query(bdvincl("10")),
                      getvar("*NORMA_UTILIZADA*", kStandard), query(bdvincl("30"))});
}

void TestEngineResolution::twoQuantityPartsFollowTwice()
{
    TestHost host;
    PREPARE_DATABASE(host);
    QVERIFY2(host.execSql("INSERT INTO BDVINCL VALUES ('10', '30', '2,0');"
                          "INSERT INTO BDVINCL VALUES ('30', '31', '1');"
                          "INSERT INTO BDKV VALUES ('30', 'IEC', 'Contact', ' CONTACT ', 'N')"),
             qPrintable(host.errorText()));
    host.cad().addFile(blockPath("CONTACT"));
    const auto installed = host.install();

    KVNamedValues out;
    AssociatedComponents::collect("10", out);

    // "2" of 30, then 30's own association, then 30's block, then 30's association again.
    QCOMPARE(out, KVNamedValues({{"2", "30"}, {"1", "31"}, {"CONTACT", "30"}, {"1", "31"}}));
    using namespace TraceLine;
    const QStringList follow30 = {getvar("*NORMA_UTILIZADA*", kStandard), query(bdvincl("30")),
                                  getvar("*NORMA_UTILIZADA*", kStandard), query(bdvincl("31"))};
    KV_COMPARE_TRACE(host.traceLines(),
                     QStringList{getvar("*NORMA_UTILIZADA*", kStandard), query(bdvincl("10"))} +
                         follow30 + QStringList{blockName("30", kStandard, "CONTACT")} +
                         blockCheckLines("CONTACT", true) + follow30);
}

void TestEngineResolution::zeroOrNonNumericQuantitySelectsBlockName()
{
    TestHost host;
    PREPARE_DATABASE(host);
    QVERIFY2(host.execSql("INSERT INTO BDVINCL VALUES ('10', '30', '0');"
                          "INSERT INTO BDVINCL VALUES ('10', '30', 'x');"
                          "INSERT INTO BDVINCL VALUES ('10', '30', '3 units');"
                          "INSERT INTO BDKV VALUES ('30', 'IEC', 'Contact', 'CONTACT', 'N')"),
             qPrintable(host.errorText()));
    host.cad().addFile(blockPath("CONTACT"));
    const auto installed = host.install();

    KVNamedValues out;
    AssociatedComponents::collect("10", out);

    QCOMPARE(out, KVNamedValues({{"CONTACT", "30"}, {"CONTACT", "30"}, {"3", "30"}}));
}

void TestEngineResolution::unknownAssociatedComponentReportedAndFollowed()
{
    TestHost host;
    PREPARE_DATABASE(host);
    QVERIFY2(host.execSql("INSERT INTO BDVINCL VALUES ('10', '40', '2,0');"
                          "INSERT INTO BDVINCL VALUES ('40', '41', '5')"),
             qPrintable(host.errorText()));
    const auto installed = host.install();

    KVNamedValues out;
    AssociatedComponents::collect("10", out);

    QCOMPARE(out, KVNamedValues({{"2", "40"}, {"5", "41"}, {"5", "41"}}));
    using namespace TraceLine;
    const QStringList follow40 = {getvar("*NORMA_UTILIZADA*", kStandard), query(bdvincl("40")),
                                  getvar("*NORMA_UTILIZADA*", kStandard), query(bdvincl("41"))};
    KV_COMPARE_TRACE(host.traceLines(),
                     QStringList{getvar("*NORMA_UTILIZADA*", kStandard), query(bdvincl("10"))} +
                         follow40 +
                         QStringList{blockName("40", kStandard, ""),
                                     print("\nError: Associated component not found: key = 40")} +
                         follow40);
}

void TestEngineResolution::missingAssociatedBlockFileSkippedAndFollowed()
{
    TestHost host;
    PREPARE_DATABASE(host);
    QVERIFY2(host.execSql("INSERT INTO BDVINCL VALUES ('10', '30', '0');"
                          "INSERT INTO BDVINCL VALUES ('30', '31', '1');"
                          "INSERT INTO BDKV VALUES ('30', 'IEC', 'Contact', 'NOFILE', 'N')"),
             qPrintable(host.errorText()));
    const auto installed = host.install();

    KVNamedValues out;
    AssociatedComponents::collect("10", out);

    QCOMPARE(out, KVNamedValues({{"1", "31"}}));
    QCOMPARE(host.system().messages().size(), 1);
    QCOMPARE(host.system().messages().at(0).text,
             KVString("The file " + blockPath("NOFILE") + ".dwg was not found."));
}

void TestEngineResolution::threeLevelsDepthFirst()
{
    TestHost host;
    PREPARE_DATABASE(host);
    QVERIFY2(host.execSql("INSERT INTO BDVINCL VALUES ('10', 'B', '1');"
                          "INSERT INTO BDVINCL VALUES ('10', 'C', '2');"
                          "INSERT INTO BDVINCL VALUES ('B', 'D', '3');"
                          "INSERT INTO BDVINCL VALUES ('D', 'E', '4');"
                          "INSERT INTO BDVINCL VALUES ('D', 'F', '5');"
                          "INSERT INTO BDVINCL VALUES ('C', 'G', '6')"),
             qPrintable(host.errorText()));
    const auto installed = host.install();

    KVNamedValues out;
    AssociatedComponents::collect("10", out);

    QCOMPARE(out, KVNamedValues(
                      {{"1", "B"}, {"3", "D"}, {"4", "E"}, {"5", "F"}, {"2", "C"}, {"6", "G"}}));
    QStringList queried;
    for (const QString& line : host.traceLines()) {
        if (line.contains(R"("op":"query")"))
            queried << line.section("VL_KEY_A='", 1).section('\'', 0, 0);
    }
    QCOMPARE(queried, QStringList({"10", "B", "D", "E", "F", "C", "G"}));
}

// The module has no depth limit of its own (the reference host's loader refuses chains deeper
// than it states); a chain far deeper than that limit is still followed to its end.
void TestEngineResolution::deepChainFollowedToTheEnd()
{
    TestHost host;
    PREPARE_DATABASE(host);
    const int levels = 200;
    QStringList rows;
    KVNamedValues expected;
    for (int level = 1; level <= levels; ++level) {
        const QString owner = level == 1 ? QStringLiteral("10") : QString::number(1000 + level - 1);
        const QString associated = QString::number(1000 + level);
        rows.append(
            QStringLiteral("INSERT INTO BDVINCL VALUES ('%1', '%2', '1')").arg(owner, associated));
        expected.append({QStringLiteral("1"), associated});
    }
    QVERIFY2(host.execSql(rows.join(u';')), qPrintable(host.errorText()));
    const auto installed = host.install();

    KVNamedValues out;
    AssociatedComponents::collect("10", out);
    QCOMPARE(out, expected);
}

void TestEngineResolution::associationQueryFailureGivesNothing()
{
    TestHost host;
    PREPARE_DATABASE(host);
    QVERIFY2(host.execSql("DROP TABLE BDVINCL"), qPrintable(host.errorText()));
    const auto installed = host.install();

    KVNamedValues out;
    AssociatedComponents::collect("10", out);

    QVERIFY(out.isEmpty());
    QCOMPARE(host.traceLines().size(), 3); // standard, query, failure
}

QTEST_GUILESS_MAIN(TestEngineResolution)
#include "tst_engine_resolution.moc"
