// Tests of the standard loader: script splitting, cycle detection, loading the example standard
// into SQLite and PostgreSQL, the indexes and the plans of the module's statements, and loads
// that are refused without leaving anything behind.

#include "LoaderTestSupport.h"
#include "StandardLoader.h"

#include <QFile>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QTemporaryDir>
#include <QTest>

using LoaderTest::ScratchDatabase;
using RefHost::SqlScript;
using RefHost::StandardLoader;
using RefHost::StandardLoadResult;

namespace {

// Opens a scratch database of the row's kind, or skips the row when PostgreSQL is not configured.
#define OPEN_SCRATCH(scratch, postgres)                                                            \
    if ((postgres) && LoaderTest::postgresUrl().isEmpty())                                         \
        QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server to run this row against");           \
    ScratchDatabase scratch((postgres) ? ScratchDatabase::Kind::Postgres                           \
                                       : ScratchDatabase::Kind::Sqlite);                           \
    QVERIFY2(scratch.isReady(), qPrintable(scratch.error()))

QString readText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

// INSERT statements per table, counted from the script's text, independently of the splitter.
QMap<QString, int> insertsPerTable(const QString& script)
{
    QMap<QString, int> counts;
    static const QRegularExpression insert(QStringLiteral("^INSERT INTO (\\w+)"),
                                           QRegularExpression::MultilineOption);
    for (auto it = insert.globalMatch(script); it.hasNext();)
        ++counts[it.next().captured(1)];
    return counts;
}

// The 1-based line of the first line of `text` that starts with `start`, 0 when none does.
int lineStarting(const QString& text, const QString& start)
{
    const QStringList lines = text.split(u'\n');
    for (qsizetype i = 0; i < lines.size(); ++i) {
        if (lines.at(i).startsWith(start))
            return int(i) + 1;
    }
    return 0;
}

void addBackendColumn()
{
    QTest::addColumn<bool>("postgres");
}

// The import's statement for one contains and one equals condition, as the import builds it.
QString componentSearchStatement()
{
    return QStringLiteral(
        "SELECT MENU_KEY, MENU_DESCR FROM BDMENUS WHERE MENU_KEY_LANG = :lang and MENU_KEY in ( "
        "select LTRIM(RTRIM(ITEM_KEY)) from CUSTOM_PROPERTIES where ( "
        "LTRIM(RTRIM(TAG))='DEVICE_TYPE' and LTRIM(RTRIM(VALUE)) = 'CONTACTOR' ) or ( "
        "LTRIM(RTRIM(TAG))='PART_NUMBER' and LTRIM(RTRIM(VALUE)) like '%CT09%' ) GROUP BY "
        "ITEM_KEY HAVING COUNT(DISTINCT tag) = 2 ) ORDER BY MENU_KEY");
}

using Bindings = QList<QPair<QString, QString>>;

// The plan the database chooses for `statement`, as text. Bound values are written into the
// text as quoted literals, so that both databases plan the statement as they would run it.
// On PostgreSQL sequential scans are discouraged, as the example's tables are too small for
// the planner to prefer an index otherwise; the check is that an index can serve the statement.
QString planOf(ScratchDatabase& scratch, QString statement, const Bindings& bindings,
               QString* error)
{
    for (const auto& [name, value] : bindings)
        statement.replace(name, u'\'' + value + u'\'');
    QSqlQuery query(scratch.db());
    QStringList lines;
    if (scratch.isPostgres()) {
        scratch.db().transaction();
        query.exec(QStringLiteral("SET LOCAL enable_seqscan = off"));
        if (!query.exec(QStringLiteral("EXPLAIN ") + statement))
            *error = query.lastError().text();
        while (query.next())
            lines.append(query.value(0).toString());
        scratch.db().rollback();
    } else {
        if (!query.exec(QStringLiteral("EXPLAIN QUERY PLAN ") + statement))
            *error = query.lastError().text();
        while (query.next())
            lines.append(query.value(3).toString());
    }
    return lines.join(u'\n');
}

QStringList firstColumn(QSqlQuery& query)
{
    QStringList values;
    while (query.next())
        values.append(query.value(0).toString());
    return values;
}

} // namespace

class tst_Loader final : public QObject
{
    Q_OBJECT

private slots:
    void splitScript_data();
    void splitScript();
    void splitScriptErrors_data();
    void splitScriptErrors();
    void findCycle_data();
    void findCycle();
    void deepestChain_data();
    void deepestChain();

    void loadExample_data();
    void loadExample();
    void indexesServeTheModuleStatements_data();
    void indexesServeTheModuleStatements();
    void planCheckSeesAMissingIndex();
    void cycleRefused_data();
    void cycleRefused();
    void deepAssociationsRefused_data();
    void deepAssociationsRefused();
    void brokenScriptLeavesDatabaseUnchanged_data();
    void brokenScriptLeavesDatabaseUnchanged();
    void dropReplacesTheStandard_data();
    void dropReplacesTheStandard();
    void transactionStatementsRefused_data();
    void transactionStatementsRefused();
    void unreadableScriptsRefused_data();
    void unreadableScriptsRefused();

    void loadDatabaseCreatesAndRemovesFiles();
    void loadDatabaseRefusesMissingFolder();
    void loadDatabaseWithPostgresUrl();
};

void tst_Loader::splitScript_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QStringList>("statements");
    QTest::addColumn<QList<int>>("lines");

    QTest::newRow("two statements")
        << QStringLiteral("CREATE TABLE T (A INTEGER);\nINSERT INTO T VALUES (1);\n")
        << QStringList{QStringLiteral("CREATE TABLE T (A INTEGER)"),
                       QStringLiteral("INSERT INTO T VALUES (1)")}
        << QList<int>{1, 2};
    QTest::newRow("semicolon and doubled quote in text")
        << QStringLiteral("INSERT INTO T VALUES ('a;b', 'it''s; here');\nSELECT 1;")
        << QStringList{QStringLiteral("INSERT INTO T VALUES ('a;b', 'it''s; here')"),
                       QStringLiteral("SELECT 1")}
        << QList<int>{1, 2};
    QTest::newRow("line comment with quote and semicolon")
        << QStringLiteral("-- the key's text; not a statement\nSELECT 1; -- 'x;\nSELECT 2;")
        << QStringList{QStringLiteral("SELECT 1"), QStringLiteral("SELECT 2")} << QList<int>{2, 3};
    QTest::newRow("block comment over lines")
        << QStringLiteral("/* first;\n second 'x */\n\nSELECT /* ; */ 1;\n")
        << QStringList{QStringLiteral("SELECT /* ; */ 1")} << QList<int>{4};
    QTest::newRow("quoted name with semicolon")
        << QStringLiteral("SELECT \"a;\"\"b\" FROM T;")
        << QStringList{QStringLiteral("SELECT \"a;\"\"b\" FROM T")} << QList<int>{1};
    QTest::newRow("dollar-quoted body")
        << QStringLiteral("DO $body$ BEGIN PERFORM 1; END $body$;\nSELECT $$a;b$$;")
        << QStringList{QStringLiteral("DO $body$ BEGIN PERFORM 1; END $body$"),
                       QStringLiteral("SELECT $$a;b$$")}
        << QList<int>{1, 2};
    QTest::newRow("parameter is not a dollar quote")
        << QStringLiteral("SELECT $1;\nSELECT a$b$c FROM T;")
        << QStringList{QStringLiteral("SELECT $1"), QStringLiteral("SELECT a$b$c FROM T")}
        << QList<int>{1, 2};
    QTest::newRow("text over lines keeps counting")
        << QStringLiteral("INSERT INTO T VALUES ('a\nb\nc');\n\n  SELECT 2;")
        << QStringList{QStringLiteral("INSERT INTO T VALUES ('a\nb\nc')"),
                       QStringLiteral("SELECT 2")}
        << QList<int>{1, 5};
    QTest::newRow("last statement without semicolon")
        << QStringLiteral("SELECT 1;\nSELECT 2\n")
        << QStringList{QStringLiteral("SELECT 1"), QStringLiteral("SELECT 2")} << QList<int>{1, 2};
    QTest::newRow("empty pieces") << QStringLiteral(";;\n ; SELECT 1;;")
                                  << QStringList{QStringLiteral("SELECT 1")} << QList<int>{2};
    QTest::newRow("only comments")
        << QStringLiteral("-- nothing\n/* here; */\n") << QStringList{} << QList<int>{};
    QTest::newRow("windows line ends")
        << QStringLiteral("SELECT 1;\r\nSELECT 2;\r\n")
        << QStringList{QStringLiteral("SELECT 1"), QStringLiteral("SELECT 2")} << QList<int>{1, 2};
}

void tst_Loader::splitScript()
{
    QFETCH(QString, script);
    QFETCH(QStringList, statements);
    QFETCH(QList<int>, lines);

    const SqlScript split = StandardLoader::splitScript(script);
    QVERIFY2(split.error.isEmpty(), qPrintable(split.error));
    QStringList texts;
    QList<int> starts;
    for (const auto& statement : split.statements) {
        texts.append(statement.text);
        starts.append(statement.line);
    }
    QCOMPARE(texts, statements);
    QCOMPARE(starts, lines);
}

void tst_Loader::splitScriptErrors_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("error");
    QTest::addColumn<int>("line");

    QTest::newRow("quoted text") << QStringLiteral("SELECT 1;\n\nINSERT INTO T VALUES ('abc);\n")
                                 << QStringLiteral("unterminated quoted text") << 3;
    QTest::newRow("quoted name") << QStringLiteral("SELECT \"a FROM T;")
                                 << QStringLiteral("unterminated quoted name") << 1;
    QTest::newRow("comment") << QStringLiteral("SELECT 1;\n/* open\n\n")
                             << QStringLiteral("unterminated comment") << 2;
    QTest::newRow("dollar quote") << QStringLiteral("\nDO $x$ BEGIN END;")
                                  << QStringLiteral("unterminated dollar-quoted text") << 2;
}

void tst_Loader::splitScriptErrors()
{
    QFETCH(QString, script);
    QFETCH(QString, error);
    QFETCH(int, line);

    const SqlScript split = StandardLoader::splitScript(script);
    QCOMPARE(split.error, error);
    QCOMPARE(split.errorLine, line);
}

void tst_Loader::findCycle_data()
{
    using Edges = QList<QPair<QString, QString>>;
    QTest::addColumn<Edges>("associations");
    QTest::addColumn<QStringList>("cycle");

    QTest::newRow("chain") << Edges{{"1", "2"}, {"2", "3"}, {"3", "4"}} << QStringList{};
    QTest::newRow("diamond") << Edges{{"1", "2"}, {"1", "3"}, {"2", "4"}, {"3", "4"}}
                             << QStringList{};
    QTest::newRow("repeated association") << Edges{{"1", "2"}, {"1", "2"}} << QStringList{};
    QTest::newRow("self") << Edges{{"5", "5"}} << QStringList{"5", "5"};
    QTest::newRow("two") << Edges{{"1", "2"}, {"2", "1"}} << QStringList{"1", "2", "1"};
    QTest::newRow("behind a chain")
        << Edges{{"1", "2"}, {"2", "3"}, {"3", "4"}, {"4", "2"}} << QStringList{"2", "3", "4", "2"};
    QTest::newRow("only from a later owner")
        << Edges{{"1", "2"}, {"7", "8"}, {"8", "9"}, {"9", "7"}} << QStringList{"7", "8", "9", "7"};
    QTest::newRow("keys compared exactly") << Edges{{"1", "2 "}, {"2", "1"}} << QStringList{};
}

void tst_Loader::findCycle()
{
    using Edges = QList<QPair<QString, QString>>;
    QFETCH(Edges, associations);
    QFETCH(QStringList, cycle);

    QCOMPARE(StandardLoader::findCycle(associations), cycle);
}

void tst_Loader::deepestChain_data()
{
    using Edges = QList<QPair<QString, QString>>;
    QTest::addColumn<Edges>("associations");
    QTest::addColumn<QStringList>("chain");

    QTest::newRow("none") << Edges{} << QStringList{};
    QTest::newRow("one") << Edges{{"1", "2"}} << QStringList{"1", "2"};
    QTest::newRow("chain given backwards")
        << Edges{{"3", "4"}, {"2", "3"}, {"1", "2"}} << QStringList{"1", "2", "3", "4"};
    QTest::newRow("diamond with a tail")
        << Edges{{"1", "2"}, {"1", "3"}, {"2", "4"}, {"3", "4"}, {"4", "5"}}
        << QStringList{"1", "2", "4", "5"};
    QTest::newRow("deeper branch second")
        << Edges{{"1", "2"}, {"1", "9"}, {"9", "8"}, {"8", "7"}} << QStringList{"1", "9", "8", "7"};
    QTest::newRow("deeper from a later owner")
        << Edges{{"1", "2"}, {"5", "6"}, {"6", "7"}} << QStringList{"5", "6", "7"};
    QTest::newRow("shared tail counted once per chain")
        << Edges{{"a", "c"}, {"b", "c"}, {"c", "d"}} << QStringList{"a", "c", "d"};
}

void tst_Loader::deepestChain()
{
    using Edges = QList<QPair<QString, QString>>;
    QFETCH(Edges, associations);
    QFETCH(QStringList, chain);

    QCOMPARE(StandardLoader::deepestChain(associations), chain);
}

void tst_Loader::loadExample_data()
{
    addBackendColumn();
    QTest::newRow("sqlite") << false;
    QTest::newRow("postgresql") << true;
}

void tst_Loader::loadExample()
{
    QFETCH(bool, postgres);
    OPEN_SCRATCH(scratch, postgres);

    StandardLoader loader(scratch.db(), QStringLiteral("scratch"));
    const StandardLoadResult result = loader.load({LoaderTest::schemaSql(), LoaderTest::dataSql()});
    QVERIFY2(result.ok, qPrintable(result.error));
    QVERIFY2(result.warnings.isEmpty(), qPrintable(result.warnings.join(u'\n')));

    // Every CREATE TABLE and every INSERT ran, and each table holds exactly its inserts.
    const QString schema = readText(LoaderTest::schemaSql());
    const QMap<QString, int> inserts = insertsPerTable(readText(LoaderTest::dataSql()));
    const int creates = int(schema.count(QStringLiteral("CREATE TABLE ")));
    int insertCount = 0;
    for (int n : inserts)
        insertCount += n;
    QCOMPARE(creates, 5);
    QCOMPARE(result.statementCount, creates + insertCount);
    QCOMPARE(result.tableRows.size(), 5);
    for (const auto& [table, rows] : result.tableRows) {
        QCOMPARE(rows, inserts.value(table));
        QCOMPARE(scratch.rowCount(table), rows);
    }
    QVERIFY(scratch.rowCount(QStringLiteral("BDKV")) >= 30);

    // The indexes are in the database's catalogue, not only in the loader's report.
    QStringList expected = {
        QStringLiteral("kv_bdkv_key_standard"), QStringLiteral("kv_bdmenus_lang_key"),
        QStringLiteral("kv_custom_properties_item_key"),
        QStringLiteral("kv_custom_properties_tag_value"), QStringLiteral("kv_bdvincl_key_a")};
    if (postgres)
        expected.append(QStringLiteral("kv_custom_properties_value_trgm"));
    QCOMPARE(result.createdIndexes, expected);
    QSqlQuery query(scratch.db());
    QVERIFY(query.exec(postgres ? QStringLiteral("SELECT indexname FROM pg_indexes WHERE "
                                                 "schemaname = current_schema() ORDER BY 1")
                                : QStringLiteral("SELECT name FROM sqlite_master WHERE type = "
                                                 "'index' ORDER BY 1")));
    QStringList catalogue = firstColumn(query);
    std::sort(expected.begin(), expected.end());
    QCOMPARE(catalogue, expected);

    // The statistics were gathered.
    if (postgres) {
        QVERIFY(query.exec(QStringLiteral("SELECT reltuples FROM pg_class WHERE oid = "
                                          "to_regclass('custom_properties')")));
        QVERIFY(query.next());
        QCOMPARE(query.value(0).toInt(), inserts.value(QStringLiteral("CUSTOM_PROPERTIES")));
    } else {
        QVERIFY(query.exec(QStringLiteral("SELECT COUNT(*) FROM sqlite_stat1 WHERE idx LIKE "
                                          "'kv_%'")));
        QVERIFY(query.next());
        QCOMPARE(query.value(0).toInt(), 5);
    }
}

void tst_Loader::indexesServeTheModuleStatements_data()
{
    QTest::addColumn<bool>("postgres");
    QTest::addColumn<QString>("statement");
    QTest::addColumn<Bindings>("bindings");
    QTest::addColumn<QStringList>("indexes"); // any one of them serves
    QTest::addColumn<QString>("reference");   // the same answer without the indexed expressions
    QTest::addColumn<int>("minimumRows");

    struct Case
    {
        const char* name;
        QString statement;
        Bindings bindings;
        QStringList indexes;
        QString reference;
        int minimumRows;
    };
    const QList<Case> cases = {
        {"custom properties of a component",
         QStringLiteral("SELECT TAG, VALUE FROM CUSTOM_PROPERTIES WHERE RTRIM(LTRIM( ITEM_KEY )) = "
                        ":key AND ITEM_TYPE IN (0,1,2)"),
         {{QStringLiteral(":key"), QStringLiteral("1201")}},
         {QStringLiteral("kv_custom_properties_item_key")},
         QStringLiteral("SELECT TAG FROM CUSTOM_PROPERTIES WHERE ITEM_KEY = '1201'"),
         5},
        {"components matching a row",
         componentSearchStatement(),
         {{QStringLiteral(":lang"), QStringLiteral("1")}},
         {QStringLiteral("kv_custom_properties_tag_value"),
          QStringLiteral("kv_custom_properties_value_trgm")},
         QStringLiteral("SELECT KV_KEY FROM BDKV WHERE KV_CATALOG_NO LIKE 'NW-CT09-%'"),
         2},
        {"component row",
         QStringLiteral("SELECT * FROM BDKV WHERE KV_KEY='1201' AND KV_KEY_NOR='IEC'"),
         {},
         {QStringLiteral("kv_bdkv_key_standard")},
         QStringLiteral("SELECT KV_KEY FROM BDKV WHERE KV_KEY = '1201'"),
         1},
        {"associated components",
         QStringLiteral("SELECT VL_KEY_B, VL_QTDE FROM BDVINCL WHERE VL_KEY_A='1603'"),
         {},
         {QStringLiteral("kv_bdvincl_key_a")},
         QStringLiteral("SELECT VL_KEY_B FROM BDVINCL WHERE VL_KEY_A = '1603'"),
         2},
        {"property value of a component",
         QStringLiteral("SELECT VALUE FROM CUSTOM_PROPERTIES WHERE RTRIM(LTRIM(ITEM_KEY)) = :key "
                        "AND UPPER(RTRIM(LTRIM(TAG))) = :tag AND ITEM_TYPE IN (0,1,2)"),
         {{QStringLiteral(":key"), QStringLiteral("1603")},
          {QStringLiteral(":tag"), QStringLiteral("GAP_AFTER")}},
         {QStringLiteral("kv_custom_properties_item_key")},
         QStringLiteral("SELECT VALUE FROM CUSTOM_PROPERTIES WHERE ITEM_KEY = '1603' AND "
                        "TAG = 'GAP_AFTER'"),
         1},
        {"block name of a component",
         QStringLiteral("SELECT KV_DWG FROM BDKV WHERE KV_KEY = :key AND KV_KEY_NOR = :standard"),
         {{QStringLiteral(":key"), QStringLiteral("1503")},
          {QStringLiteral(":standard"), QStringLiteral("IEC")}},
         {QStringLiteral("kv_bdkv_key_standard")},
         QStringLiteral("SELECT KV_DWG FROM BDKV WHERE KV_DWG = 'TERMINAL_PE'"),
         1},
    };
    for (bool postgres : {false, true}) {
        for (const Case& c : cases) {
            QTest::addRow("%s: %s", postgres ? "postgresql" : "sqlite", c.name)
                << postgres << c.statement << c.bindings << c.indexes << c.reference
                << c.minimumRows;
        }
    }
}

void tst_Loader::indexesServeTheModuleStatements()
{
    QFETCH(bool, postgres);
    QFETCH(QString, statement);
    QFETCH(Bindings, bindings);
    QFETCH(QStringList, indexes);
    QFETCH(QString, reference);
    QFETCH(int, minimumRows);
    OPEN_SCRATCH(scratch, postgres);

    StandardLoader loader(scratch.db(), QStringLiteral("scratch"));
    const StandardLoadResult result = loader.load({LoaderTest::schemaSql(), LoaderTest::dataSql()});
    QVERIFY2(result.ok, qPrintable(result.error));

    QString error;
    const QString plan = planOf(scratch, statement, bindings, &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    const bool served = std::any_of(indexes.cbegin(), indexes.cend(),
                                    [&](const QString& index) { return plan.contains(index); });
    QVERIFY2(
        served,
        qPrintable(
            QStringLiteral("plan without %1:\n%2").arg(indexes.join(QLatin1String(" or ")), plan)));

    // The statement, run as the module runs it, answers what the plain query answers.
    QSqlQuery query(scratch.db());
    QVERIFY(query.prepare(statement));
    for (const auto& [name, value] : bindings)
        query.bindValue(name, value);
    QVERIFY2(query.exec(), qPrintable(query.lastError().text()));
    const int rows = int(firstColumn(query).size());
    QSqlQuery plain(scratch.db());
    QVERIFY2(plain.exec(reference), qPrintable(plain.lastError().text()));
    QCOMPARE(rows, int(firstColumn(plain).size()));
    QVERIFY(rows >= minimumRows);
}

// The plan check above must be able to fail: without the index the statement is a full scan.
void tst_Loader::planCheckSeesAMissingIndex()
{
    ScratchDatabase scratch(ScratchDatabase::Kind::Sqlite);
    QVERIFY2(scratch.isReady(), qPrintable(scratch.error()));
    StandardLoader loader(scratch.db(), QStringLiteral("scratch"));
    QVERIFY(loader.load({LoaderTest::schemaSql(), LoaderTest::dataSql()}).ok);
    QSqlQuery query(scratch.db());
    QVERIFY(query.exec(QStringLiteral("DROP INDEX kv_custom_properties_item_key")));

    QString error;
    const QString plan = planOf(scratch,
                                QStringLiteral("SELECT TAG, VALUE FROM CUSTOM_PROPERTIES WHERE "
                                               "RTRIM(LTRIM( ITEM_KEY )) = :key AND ITEM_TYPE IN "
                                               "(0,1,2)"),
                                {{QStringLiteral(":key"), QStringLiteral("1201")}}, &error);
    QVERIFY2(error.isEmpty(), qPrintable(error));
    QVERIFY2(plan.contains(QLatin1String("SCAN CUSTOM_PROPERTIES")), qPrintable(plan));
    QVERIFY(!plan.contains(QLatin1String("kv_custom_properties_item_key")));
}

void tst_Loader::cycleRefused_data()
{
    QTest::addColumn<bool>("postgres");
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QString>("cycle");

    const QByteArray closesChain = "-- the auxiliary block would bring the 4 kW motor\n"
                                   "INSERT INTO BDVINCL (VL_KEY_A, VL_KEY_B, VL_QTDE) "
                                   "VALUES ('1303', '1603', '1');\n";
    const QByteArray self = "INSERT INTO BDVINCL (VL_KEY_A, VL_KEY_B, VL_QTDE) "
                            "VALUES ('1001', '1001', '0');\n";
    for (bool postgres : {false, true}) {
        const char* backend = postgres ? "postgresql" : "sqlite";
        QTest::addRow("%s: closes the three-level chain", backend)
            << postgres << closesChain << QStringLiteral("1303 -> 1603 -> 1104 -> 1204 -> 1303");
        QTest::addRow("%s: component brings itself", backend)
            << postgres << self << QStringLiteral("1001 -> 1001");
    }
}

void tst_Loader::cycleRefused()
{
    QFETCH(bool, postgres);
    QFETCH(QByteArray, rows);
    QFETCH(QString, cycle);
    OPEN_SCRATCH(scratch, postgres);
    QTemporaryDir dir;
    const QString cyclePath = dir.filePath(QStringLiteral("cycle.sql"));
    QVERIFY(LoaderTest::writeFile(cyclePath, rows));

    // In the same load as the standard: nothing of the standard is left.
    {
        StandardLoader loader(scratch.db(), QStringLiteral("scratch"));
        const StandardLoadResult result =
            loader.load({LoaderTest::schemaSql(), LoaderTest::dataSql(), cyclePath});
        QVERIFY(!result.ok);
        QVERIFY2(result.error.startsWith(cyclePath + QLatin1String(": ")),
                 qPrintable(result.error));
        QVERIFY2(result.error.contains(cycle), qPrintable(result.error));
        QVERIFY(!result.error.contains(u'\n'));
        QCOMPARE(scratch.rowCount(QStringLiteral("BDKV")), -1);
    }

    // As an update of a loaded standard: the associations stay as they were.
    StandardLoader loader(scratch.db(), QStringLiteral("scratch"));
    QVERIFY(loader.load({LoaderTest::schemaSql(), LoaderTest::dataSql()}).ok);
    const int before = scratch.rowCount(QStringLiteral("BDVINCL"));
    const StandardLoadResult result = loader.load({cyclePath});
    QVERIFY(!result.ok);
    QVERIFY2(result.error.contains(cycle), qPrintable(result.error));
    QCOMPARE(scratch.rowCount(QStringLiteral("BDVINCL")), before);
}

void tst_Loader::deepAssociationsRefused_data()
{
    QTest::addColumn<bool>("postgres");
    QTest::addColumn<int>("levels");
    QTest::addColumn<bool>("accepted");

    const int limit = StandardLoader::MaxAssociationLevels;
    for (bool postgres : {false, true}) {
        const char* backend = postgres ? "postgresql" : "sqlite";
        QTest::addRow("%s: at the limit", backend) << postgres << limit << true;
        QTest::addRow("%s: one level more", backend) << postgres << limit + 1 << false;
        QTest::addRow("%s: far deeper", backend) << postgres << 5000 << false;
    }
}

// A chain of new components 9000 -> 9001 -> ... below the example's component 1001.
void tst_Loader::deepAssociationsRefused()
{
    QFETCH(bool, postgres);
    QFETCH(int, levels);
    QFETCH(bool, accepted);
    OPEN_SCRATCH(scratch, postgres);
    QTemporaryDir dir;
    const QString chainPath = dir.filePath(QStringLiteral("chain.sql"));
    QByteArray rows = "INSERT INTO BDVINCL (VL_KEY_A, VL_KEY_B, VL_QTDE) VALUES ('1001', '9001', "
                      "'1');\n";
    for (int level = 2; level <= levels; ++level) {
        rows += QStringLiteral("INSERT INTO BDVINCL (VL_KEY_A, VL_KEY_B, VL_QTDE) VALUES "
                               "('%1', '%2', '1');\n")
                    .arg(9000 + level - 1)
                    .arg(9000 + level)
                    .toUtf8();
    }
    QVERIFY(LoaderTest::writeFile(chainPath, rows));

    StandardLoader loader(scratch.db(), QStringLiteral("scratch"));
    QVERIFY(loader.load({LoaderTest::schemaSql(), LoaderTest::dataSql()}).ok);
    const int before = scratch.rowCount(QStringLiteral("BDVINCL"));
    const StandardLoadResult result = loader.load({chainPath});
    if (accepted) {
        QVERIFY2(result.ok, qPrintable(result.error));
        QCOMPARE(scratch.rowCount(QStringLiteral("BDVINCL")), before + levels);
        return;
    }
    QVERIFY(!result.ok);
    QCOMPARE(result.error,
             QStringLiteral("%1: the associations in BDVINCL go %2 levels deep, from 1001 to %3; "
                            "the limit is %4 levels")
                 .arg(chainPath)
                 .arg(levels)
                 .arg(9000 + levels)
                 .arg(StandardLoader::MaxAssociationLevels));
    QCOMPARE(scratch.rowCount(QStringLiteral("BDVINCL")), before);
}

void tst_Loader::brokenScriptLeavesDatabaseUnchanged_data()
{
    QTest::addColumn<bool>("postgres");
    QTest::addColumn<QByteArray>("brokenStatement");
    QTest::addColumn<QString>("errorWord"); // a word that the database's message holds

    for (bool postgres : {false, true}) {
        const char* backend = postgres ? "postgresql" : "sqlite";
        QTest::addRow("%s: syntax", backend)
            << postgres << QByteArray("INSERT INTO BDKV VALUES ('3002' 'IEC');")
            << QStringLiteral("syntax");
        QTest::addRow("%s: unknown table", backend)
            << postgres << QByteArray("INSERT INTO BDKVX (KV_KEY) VALUES ('3002');")
            << QStringLiteral("bdkvx");
        QTest::addRow("%s: missing value", backend)
            << postgres
            << QByteArray("INSERT INTO BDKV (KV_KEY, KV_KEY_NOR) VALUES ('3002', 'IEC');")
            << QStringLiteral("null");
    }
}

void tst_Loader::brokenScriptLeavesDatabaseUnchanged()
{
    QFETCH(bool, postgres);
    QFETCH(QByteArray, brokenStatement);
    QFETCH(QString, errorWord);
    OPEN_SCRATCH(scratch, postgres);

    StandardLoader loader(scratch.db(), QStringLiteral("scratch"));
    QVERIFY(loader.load({LoaderTest::schemaSql(), LoaderTest::dataSql()}).ok);
    const int dictionary = scratch.rowCount(QStringLiteral("BDDIC"));
    const int components = scratch.rowCount(QStringLiteral("BDKV"));

    // Two good statements (one over two lines) before the broken one on line 6.
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("update.sql"));
    QVERIFY(LoaderTest::writeFile(
        path,
        "-- an update of the standard\n"
        "INSERT INTO BDDIC (DIC_FIELD, DIC_DESCR) VALUES ('IP_RATING', 'Degree of protection');\n"
        "INSERT INTO BDKV (KV_KEY, KV_KEY_NOR, MENU_DESCR, KV_EXPLODE)\n"
        "    VALUES ('3001', 'IEC', 'Enclosure', 'N');\n"
        "\n" +
            brokenStatement + "\nINSERT INTO BDDIC (DIC_FIELD, DIC_DESCR) VALUES ('X', 'x');\n"));

    const StandardLoadResult result = loader.load({path});
    QVERIFY(!result.ok);
    QVERIFY2(result.error.startsWith(path + QLatin1String(":6: ")), qPrintable(result.error));
    QVERIFY2(result.error.contains(errorWord, Qt::CaseInsensitive), qPrintable(result.error));
    QVERIFY(!result.error.contains(u'\n'));
    QCOMPARE(scratch.rowCount(QStringLiteral("BDDIC")), dictionary);
    QCOMPARE(scratch.rowCount(QStringLiteral("BDKV")), components);
}

void tst_Loader::dropReplacesTheStandard_data()
{
    loadExample_data();
}

void tst_Loader::dropReplacesTheStandard()
{
    QFETCH(bool, postgres);
    OPEN_SCRATCH(scratch, postgres);
    const QStringList scripts = {LoaderTest::schemaSql(), LoaderTest::dataSql()};

    StandardLoader loader(scratch.db(), QStringLiteral("scratch"));
    QVERIFY(loader.load(scripts).ok);
    const int components = scratch.rowCount(QStringLiteral("BDKV"));

    // Without dropping, the tables exist already: refused at the first CREATE TABLE.
    StandardLoadResult result = loader.load(scripts);
    QVERIFY(!result.ok);
    const int createLine =
        lineStarting(readText(LoaderTest::schemaSql()), QStringLiteral("CREATE TABLE BDKV"));
    QVERIFY(createLine > 0);
    QVERIFY2(result.error.startsWith(
                 QStringLiteral("%1:%2: ").arg(LoaderTest::schemaSql()).arg(createLine)),
             qPrintable(result.error));
    QCOMPARE(scratch.rowCount(QStringLiteral("BDKV")), components);

    loader.setDropExisting(true);
    result = loader.load(scripts);
    QVERIFY2(result.ok, qPrintable(result.error));
    QCOMPARE(scratch.rowCount(QStringLiteral("BDKV")), components);
}

void tst_Loader::transactionStatementsRefused_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<int>("line");

    QTest::newRow("begin") << QByteArray("BEGIN;\nCREATE TABLE T (A INTEGER);\nCOMMIT;\n") << 1;
    QTest::newRow("commit") << QByteArray("CREATE TABLE T (A INTEGER);\n\n  commit;\n") << 3;
    QTest::newRow("rollback") << QByteArray("CREATE TABLE T (A INTEGER);\nRollback;") << 2;
    QTest::newRow("start transaction") << QByteArray("START TRANSACTION;") << 1;
    QTest::newRow("end") << QByteArray("-- done\nEND;") << 2;
}

void tst_Loader::transactionStatementsRefused()
{
    QFETCH(QByteArray, script);
    QFETCH(int, line);
    ScratchDatabase scratch(ScratchDatabase::Kind::Sqlite);
    QVERIFY2(scratch.isReady(), qPrintable(scratch.error()));
    QTemporaryDir dir;
    // A "%" in the name must come through as it is.
    const QString path = dir.filePath(QStringLiteral("tx%2.sql"));
    QVERIFY(LoaderTest::writeFile(path, script));

    StandardLoader loader(scratch.db(), QStringLiteral("scratch"));
    const StandardLoadResult result = loader.load({path});
    QVERIFY(!result.ok);
    QCOMPARE(result.error, path + u':' + QString::number(line) +
                               QLatin1String(": transaction statements are not allowed: the "
                                             "scripts are loaded in one transaction"));
    QCOMPARE(scratch.rowCount(QStringLiteral("T")), -1);
}

void tst_Loader::unreadableScriptsRefused_data()
{
    QTest::addColumn<QByteArray>("content"); // empty: the file does not exist
    QTest::addColumn<QString>("problem");

    QTest::newRow("missing") << QByteArray() << QStringLiteral("cannot be read: ");
    QTest::newRow("not utf-8") << QByteArray("INSERT INTO BDDIC VALUES ('\xe7\xe3o', 'x');")
                               << QStringLiteral("is not UTF-8 text");
    QTest::newRow("unterminated text")
        << QByteArray("SELECT 1;\nSELECT 'a;\n") << QStringLiteral("2: unterminated quoted text");
}

void tst_Loader::unreadableScriptsRefused()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, problem);
    ScratchDatabase scratch(ScratchDatabase::Kind::Sqlite);
    QVERIFY2(scratch.isReady(), qPrintable(scratch.error()));
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("input.sql"));
    if (!content.isEmpty())
        QVERIFY(LoaderTest::writeFile(path, content));

    // The schema comes first and is fine; nothing of it may be created.
    StandardLoader loader(scratch.db(), QStringLiteral("scratch"));
    const StandardLoadResult result = loader.load({LoaderTest::schemaSql(), path});
    QVERIFY(!result.ok);
    QVERIFY2(result.error.startsWith(path + u':'), qPrintable(result.error));
    QVERIFY2(result.error.contains(problem), qPrintable(result.error));
    QCOMPARE(scratch.rowCount(QStringLiteral("BDKV")), -1);
}

void tst_Loader::loadDatabaseCreatesAndRemovesFiles()
{
    QTemporaryDir dir;
    const QString broken = dir.filePath(QStringLiteral("broken.sql"));
    QVERIFY(LoaderTest::writeFile(broken, "INSERT INTO NO_SUCH_TABLE VALUES (1);\n"));
    const QString database = dir.filePath(QStringLiteral("standard.db"));

    // A failed load into a new file leaves no file behind.
    StandardLoadResult result =
        StandardLoader::loadDatabase(database, {LoaderTest::schemaSql(), broken}, false);
    QVERIFY(!result.ok);
    QVERIFY2(result.error.startsWith(broken + QLatin1String(":1: ")), qPrintable(result.error));
    QVERIFY(!QFile::exists(database));

    result = StandardLoader::loadDatabase(database,
                                          {LoaderTest::schemaSql(), LoaderTest::dataSql()}, false);
    QVERIFY2(result.ok, qPrintable(result.error));
    QVERIFY(QFile::exists(database));
    QCOMPARE(result.tableRows.size(), 5);

    // A failed load into an existing file keeps the file and its contents.
    result = StandardLoader::loadDatabase(database, {broken}, false);
    QVERIFY(!result.ok);
    QVERIFY(QFile::exists(database));
    result = StandardLoader::loadDatabase(database,
                                          {LoaderTest::schemaSql(), LoaderTest::dataSql()}, true);
    QVERIFY2(result.ok, qPrintable(result.error));
}

void tst_Loader::loadDatabaseRefusesMissingFolder()
{
    QTemporaryDir dir;
    const QString database = dir.filePath(QStringLiteral("no/such/folder/standard.db"));
    const StandardLoadResult result =
        StandardLoader::loadDatabase(database, {LoaderTest::schemaSql()}, false);
    QVERIFY(!result.ok);
    QCOMPARE(result.error, database + QLatin1String(": the folder does not exist"));
}

// The URL form of the command line, with a connection option that puts the tables into a schema
// of the test's own.
void tst_Loader::loadDatabaseWithPostgresUrl()
{
    if (LoaderTest::postgresUrl().isEmpty())
        QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server to run this test against");
    ScratchDatabase scratch(ScratchDatabase::Kind::Postgres);
    QVERIFY2(scratch.isReady(), qPrintable(scratch.error()));
    QSqlQuery query(scratch.db());
    QVERIFY(query.exec(QStringLiteral("SELECT current_schema()")) && query.next());
    const QString schema = query.value(0).toString();

    QUrl url(LoaderTest::postgresUrl());
    url.setQuery(QStringLiteral("options=-csearch_path%3D") + schema + QStringLiteral(",public"));
    const StandardLoadResult result = StandardLoader::loadDatabase(
        url.toString(), {LoaderTest::schemaSql(), LoaderTest::dataSql()}, false);
    QVERIFY2(result.ok, qPrintable(result.error));
    QCOMPARE(scratch.rowCount(schema + QLatin1String(".BDKV")),
             insertsPerTable(readText(LoaderTest::dataSql())).value(QStringLiteral("BDKV")));

    const StandardLoadResult refused = StandardLoader::loadDatabase(
        QStringLiteral("postgresql://nobody@/nodatabase"), {LoaderTest::schemaSql()}, false);
    QVERIFY(!refused.ok);
    QVERIFY2(refused.error.contains(QLatin1String("not a PostgreSQL URL")),
             qPrintable(refused.error));
}

QTEST_GUILESS_MAIN(tst_Loader)
#include "tst_loader.moc"
