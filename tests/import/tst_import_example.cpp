// The whole example imported: examples/settings/example.cfa, examples/sheets/example.xlsx and
// the example standard (examples/standard), on SQLite and PostgreSQL. The expected tree is
// tests/import/tst_import_example.json, in the import's JSON form; the command-line tests
// compare the import verb's output with the same file.
#include "tst_import_support.h"

#include "maindialog/ItemTreeJson.h"

#include <QRegularExpression>

using namespace ImportTestSupport;

class tst_import_example : public QObject
{
    Q_OBJECT

private slots:
    void wholeExample_data();
    void wholeExample();
};

namespace {

QString exampleFile(const QString& relative)
{
    return QStringLiteral(KV_SOURCE_DIR "/examples/") + relative;
}

QString readText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

} // namespace

void tst_import_example::wholeExample_data()
{
    addDatabaseColumn();
    for (const TestDatabase::Kind kind : databaseKinds())
        QTest::newRow(databaseName(kind).constData()) << kind;
}

void tst_import_example::wholeExample()
{
    QFETCH(TestDatabase::Kind, database);
    if (database == TestDatabase::Kind::PostgreSQL && TestDatabase::postgresUrl().isEmpty())
        QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server for this row (scripts/test.sh "
              "starts one)");
    TestHost host;
    const QString standard =
        QStringLiteral("BEGIN;\n") + readText(exampleFile("standard/schema.sql")) +
        readText(exampleFile("standard/data.sql")) + QStringLiteral("COMMIT;\n");
    QVERIFY(standard.contains(QStringLiteral("CREATE TABLE BDMENUS")));
    QVERIFY2(host.createDatabase(standard, database), qPrintable(host.errorText()));
    host.electrical().setCurrentLanguage("1");

    CTVNodesUtil tree;
    ImportDialogState state;
    const ItemImportResult result = runImport(
        host, tree, state, exampleFile("settings/example.cfa"), exampleFile("sheets/example.xlsx"));
    QCOMPARE(result.outcome, ItemImportOutcome::Imported);
    QCOMPARE(result.insertionEnabled, std::optional<bool>(true));
    QVERIFY(host.system().messages().isEmpty());

    const QByteArray actual =
        ItemTreeJson::toJson(tree, ItemTreeJson::Counts{state.itemCount, state.lastItemNumber});
    QFile expectedFile(QStringLiteral(KV_SOURCE_DIR "/tests/import/tst_import_example.json"));
    QVERIFY(expectedFile.open(QIODevice::ReadOnly));
    const QByteArray expected = expectedFile.readAll();
    if (actual != expected)
        qWarning().noquote() << "imported tree:\n" << actual;
    QCOMPARE(actual, expected);

    // One statement per imported row, and the gaps of every symbol (mode "1").
    const QStringList trace = importTrace(host.traceLines());
    const QRegularExpression searches(
        QStringLiteral("^\\{\"op\":\"query\",\"sql\":\"SELECT MENU_KEY"));
    const QRegularExpression gaps(QStringLiteral("^\\{\"op\":\"propertyValue\""));
    QCOMPARE(trace.filter(searches).size(), state.itemCount);
    QCOMPARE(trace.filter(gaps).size(), 2 * result.symbolsPlaced);
}

QTEST_GUILESS_MAIN(tst_import_example)
#include "tst_import_example.moc"
