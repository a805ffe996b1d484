// The import's two queries: their statement texts, cache keys, the condition texts and the
// bound language, and what they answer on SQLite and PostgreSQL.
#include "tst_import_support.h"

#include "import/CQueryGetAllFieldDic.h"
#include "import/CQuerySearchComponentList.h"

using namespace ImportTestSupport;

class tst_import_queries : public QObject
{
    Q_OBJECT

private slots:
    void cacheKeys();
    void conditionTexts_data();
    void conditionTexts();
    void statementTexts_data();
    void statementTexts();
    void languageBoundWhenPrepared();
    void dictionaryAnswer_data() { addDatabaseRows(); }
    void dictionaryAnswer();
    void searchAnswer_data();
    void searchAnswer();

private:
    static void addDatabaseRows();
};

void tst_import_queries::addDatabaseRows()
{
    addDatabaseColumn();
    for (const TestDatabase::Kind kind : databaseKinds())
        QTest::newRow(databaseName(kind).constData()) << kind;
}

void tst_import_queries::cacheKeys()
{
    const CQueryGetAllFieldDic dictionary;
    QCOMPARE(dictionary.cacheKey(), QStringLiteral("{CQueryGetAllFieldDic}"));
    QVERIFY(dictionary.IsCacheable());
    QVERIFY(dictionary.IsSelect());
    const CQuerySearchComponentList search({equalsText("TYPE", "LAMP")});
    QCOMPARE(search.cacheKey(), QString());
    QVERIFY(!search.IsCacheable());
    QVERIFY(search.IsSelect());
}

void tst_import_queries::conditionTexts_data()
{
    QTest::addColumn<bool>("contains");
    QTest::addColumn<QString>("property");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("contains") << true << "TYPE"
                              << "RELAY"
                              << "( LTRIM(RTRIM(TAG))='TYPE' and LTRIM(RTRIM(VALUE)) like "
                                 "'%RELAY%' )";
    QTest::newRow("contains nothing") << true << "MAKER"
                                      << ""
                                      << "( LTRIM(RTRIM(TAG))='MAKER' and LTRIM(RTRIM(VALUE)) "
                                         "like '%%' )";
    QTest::newRow("equals") << false << "TYPE"
                            << "LAMP"
                            << "( LTRIM(RTRIM(TAG))='TYPE' and LTRIM(RTRIM(VALUE)) = 'LAMP' )";
    // Values are put in as they stand: no escaping, and place markers in them stay text.
    QTest::newRow("apostrophe") << false << "MAKER"
                                << "O'NEIL"
                                << "( LTRIM(RTRIM(TAG))='MAKER' and LTRIM(RTRIM(VALUE)) = "
                                   "'O'NEIL' )";
    QTest::newRow("place markers") << true << "NOTE"
                                   << "%1 %2 50%"
                                   << "( LTRIM(RTRIM(TAG))='NOTE' and LTRIM(RTRIM(VALUE)) like "
                                      "'%%1 %2 50%%' )";
    QTest::newRow("property kept as given") << false << "Maker"
                                            << "x"
                                            << "( LTRIM(RTRIM(TAG))='Maker' and "
                                               "LTRIM(RTRIM(VALUE)) = 'x' )";
}

void tst_import_queries::conditionTexts()
{
    QFETCH(bool, contains);
    QFETCH(QString, property);
    QFETCH(QString, value);
    QFETCH(QString, expected);
    const QString text = contains ? CQuerySearchComponentList::containsCondition(property, value)
                                  : CQuerySearchComponentList::equalsCondition(property, value);
    QCOMPARE(text, expected);
}

void tst_import_queries::statementTexts_data()
{
    QTest::addColumn<QStringList>("conditions");
    QTest::addColumn<QString>("expected");
    const QString head = QStringLiteral(
        "SELECT MENU_KEY, MENU_DESCR FROM BDMENUS WHERE MENU_KEY_LANG = :lang and MENU_KEY in ( "
        "select LTRIM(RTRIM(ITEM_KEY)) from CUSTOM_PROPERTIES where ");
    QTest::newRow("none") << QStringList{}
                          << head + " GROUP BY ITEM_KEY HAVING COUNT(DISTINCT tag) = 0 ) ORDER "
                                    "BY MENU_KEY";
    QTest::newRow("one") << QStringList{"A"}
                         << head + "A GROUP BY ITEM_KEY HAVING COUNT(DISTINCT tag) = 1 ) ORDER "
                                   "BY MENU_KEY";
    QTest::newRow("three") << QStringList{"A", "B", "C"}
                           << head + "A or B or C GROUP BY ITEM_KEY HAVING COUNT(DISTINCT tag) "
                                     "= 3 ) ORDER BY MENU_KEY";
    QStringList twelve;
    for (int i = 0; i < 12; ++i)
        twelve.append(QStringLiteral("X"));
    QTest::newRow("twelve") << twelve
                            << head + twelve.join(" or ") +
                                   " GROUP BY ITEM_KEY HAVING COUNT(DISTINCT tag) = 12 ) ORDER "
                                   "BY MENU_KEY";
}

void tst_import_queries::statementTexts()
{
    QFETCH(QStringList, conditions);
    QFETCH(QString, expected);
    QCOMPARE(CQuerySearchComponentList::sqlText(conditions), expected);
    QCOMPARE(CQuerySearchComponentList(conditions).conditions(), KVStringList(conditions));

    TestHost host;
    KV_OPEN_STANDARD(host, TestDatabase::Kind::SQLite);
    const auto installed = host.install();
    const QSqlQuery prepared =
        CQuerySearchComponentList(conditions).statement(host.database().database());
    QCOMPARE(prepared.lastQuery(), expected);
    const QSqlQuery dictionary = CQueryGetAllFieldDic().statement(host.database().database());
    QCOMPARE(dictionary.lastQuery(), QStringLiteral("SELECT DIC_FIELD FROM BDDIC"));
}

// The language is asked for when the statement is prepared, not when the query is made.
void tst_import_queries::languageBoundWhenPrepared()
{
    TestHost host;
    KV_OPEN_STANDARD(host, TestDatabase::Kind::SQLite);
    const CQuerySearchComponentList query({equalsText("TYPE", "LAMP")});
    host.electrical().setCurrentLanguage("2");
    {
        const auto installed = host.install();
        const QSqlQuery prepared = query.statement(host.database().database());
        QCOMPARE(prepared.boundValue(":lang").toString(), QStringLiteral("2"));
    }
    KV_COMPARE_TRACE(host.traceLines(), {TraceLine::service("GetCurrentLanguage", "2")});
    // Without a host there is no language: the statement finds nothing.
    const QSqlQuery unbound = query.statement(host.database().database());
    QCOMPARE(unbound.boundValue(":lang").toString(), QString());
}

void tst_import_queries::dictionaryAnswer()
{
    QFETCH(TestDatabase::Kind, database);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    const CVRQueryResponse response =
        host.electrical().RunQuery(std::make_shared<CQueryGetAllFieldDic>());
    QVERIFY2(response.succeeded(), qPrintable(response.errorText()));
    QStringList names;
    for (const QVariantList& row : response.getResult())
        names.append(row.value(0).toString());
    names.sort();
    QCOMPARE(names, QStringList({" MAKER ", "COLOR", "GAP_AFTER", "GAP_BEFORE", "MODEL", "TYPE",
                                 "VOLTAGE"}));
}

void tst_import_queries::searchAnswer_data()
{
    addDatabaseColumn();
    QTest::addColumn<QString>("language");
    QTest::addColumn<QStringList>("conditions");
    QTest::addColumn<QStringList>("expected");
    for (const TestDatabase::Kind kind : databaseKinds()) {
        newDatabaseRow(kind, "one condition")
            << kind << "1" << QStringList{equalsText("TYPE", "RELAY")}
            << QStringList{"100|Relay 24 V DC", "101|Relay 230 V AC   "};
        newDatabaseRow(kind, "padded tag and value")
            << kind << "1" << QStringList{equalsText("VOLTAGE", "24 V DC")}
            << QStringList{"100|Relay 24 V DC"};
        newDatabaseRow(kind, "every condition must hold")
            << kind << "1" << QStringList{containsText("TYPE", "LAMP"), equalsText("COLOR", "RED")}
            << QStringList{"201|Lamp red"};
        newDatabaseRow(kind, "other language")
            << kind << "2" << QStringList{equalsText("TYPE", "PUMP")}
            << QStringList{"400|PT Pump P1", "401|PT Pump P2"};
        newDatabaseRow(kind, "unknown language")
            << kind << "7" << QStringList{equalsText("TYPE", "PUMP")} << QStringList{};
    }
}

void tst_import_queries::searchAnswer()
{
    QFETCH(TestDatabase::Kind, database);
    QFETCH(QString, language);
    QFETCH(QStringList, conditions);
    QFETCH(QStringList, expected);
    TestHost host;
    KV_OPEN_STANDARD(host, database);
    host.electrical().setCurrentLanguage(language);
    const auto installed = host.install();
    const CVRQueryResponse response =
        host.electrical().RunQuery(std::make_shared<CQuerySearchComponentList>(conditions));
    QVERIFY2(response.succeeded(), qPrintable(response.errorText()));
    QStringList rows;
    for (const QVariantList& row : response.getResult())
        rows.append(row.value(0).toString() + u'|' + row.value(1).toString());
    QCOMPARE(rows, expected);
}

QTEST_GUILESS_MAIN(tst_import_queries)
#include "tst_import_queries.moc"
