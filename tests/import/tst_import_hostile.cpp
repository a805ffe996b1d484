// Spreadsheet cells go into the component search's SQL text as they stand. This test imports a
// real workbook of hostile cells with the "kvinsertauto import" program, on SQLite and on
// PostgreSQL (as the reader role that load-standard sets up), with the search property written
// for containment (like '%cell%') and for equality (= 'cell'), and shows for every cell:
//   - the standard is unchanged: every row of every table and the schema, compared before and
//     after the import (on PostgreSQL also the reader role's attributes and memberships);
//   - the cell matches nothing it should not: the item's symbols are exactly the components the
//     search's condition selects when the cell is bound as a value instead of written into the
//     text; a cell with an apostrophe breaks the statement, so its item has no symbols;
//   - the import goes on as it does for a failed search or no match: one item per row, no
//     message, exit status 0.
// The LIKE wildcards are the search's own: "%" matches every component that has the property
// at all and "_" every one whose value has a character, as the condition says; a cell that
// closes its quote and balances the statement ("' or '1' like '") changes which of the
// standard's own components match, and reads nothing but BDMENUS and CUSTOM_PROPERTIES.
#include "../common/DatabaseDump.h"
#include "ImportCliSupport.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QUuid>

using namespace ImportCli;

namespace {

enum class Expect {
    AsValue,       // what the condition selects with the cell bound as a value
    Nothing,       // the apostrophe breaks the statement: no symbols
    WithinStandard // a balanced condition: only components of the standard's description list
};

struct Cell
{
    const char* name;
    QString text;
    Expect expect;
};

const QList<Cell>& cells()
{
    static const QList<Cell> list = {
        {"plain text", QStringLiteral("NORDWERK"), Expect::AsValue},
        {"or 1=1", QStringLiteral("x' ) or 1=1 --"), Expect::Nothing},
        {"drop table", QStringLiteral("'; drop table BDKV; --"), Expect::Nothing},
        {"union with another table",
         QStringLiteral("x' ) GROUP BY ITEM_KEY ) UNION SELECT SECRET, SECRET FROM KV_SECRET --"),
         Expect::Nothing},
        {"union with the SQLite schema",
         QStringLiteral("x' ) GROUP BY ITEM_KEY ) UNION SELECT name, sql FROM sqlite_master --"),
         Expect::Nothing},
        {"union with a server file",
         QStringLiteral("x' ) GROUP BY ITEM_KEY ) UNION SELECT pg_read_file('/etc/hostname'), "
                        "'' --"),
         Expect::Nothing},
        {"union with password hashes",
         QStringLiteral("x' ) GROUP BY ITEM_KEY ) UNION SELECT rolname, rolpassword FROM "
                        "pg_catalog.pg_authid --"),
         Expect::Nothing},
        {"stacked unlock and drop",
         QStringLiteral("x' ) GROUP BY ITEM_KEY ); COMMIT; SET default_transaction_read_only = "
                        "off; COMMIT; DROP TABLE BDKV; --"),
         Expect::Nothing},
        {"stacked role switch and delete",
         QStringLiteral("x' ) GROUP BY ITEM_KEY ); COMMIT; RESET ROLE; SET SESSION "
                        "CHARACTERISTICS AS TRANSACTION READ WRITE; DELETE FROM CUSTOM_PROPERTIES; "
                        "--"),
         Expect::Nothing},
        {"stacked temporary copy of the descriptions",
         QStringLiteral("x' ) GROUP BY ITEM_KEY ); COMMIT; SET default_transaction_read_only = "
                        "off; CREATE TEMP TABLE BDMENUS AS SELECT MENU_KEY, MENU_KEY_LANG, "
                        "'forged' AS MENU_DESCR FROM BDMENUS; --"),
         Expect::Nothing},
        {"stacked attach",
         QStringLiteral("x' ) GROUP BY ITEM_KEY ); ATTACH DATABASE 'x.db' AS x; --"),
         Expect::Nothing},
        {"percent wildcard", QStringLiteral("%"), Expect::AsValue},
        {"underscore wildcard", QStringLiteral("_"), Expect::AsValue},
        {"wildcards inside", QStringLiteral("N%W_RK"), Expect::AsValue},
        {"balanced condition", QStringLiteral("' or '1' like '"), Expect::WithinStandard},
        // Last: the session of the import is still what it was (no temporary table in front of
        // the standard's, the same role).
        {"plain text again", QStringLiteral("NORDWERK"), Expect::AsValue},
    };
    return list;
}

// A settings file as the settings dialog writes it: ITEM shown, MAKER searched on the
// manufacturer property (with "=": equality).
bool writeSettings(const QString& path, const QString& searchProperty)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QStringList lines = {"GAP_BEFORE",
                               "GAP_AFTER",
                               "40,200",
                               "10",
                               "1",
                               "380",
                               "0",
                               "ITEM;ITEM; ;S;",
                               "MAKER;MAKER;" + searchProperty + ";N;"};
    return file.write(lines.join(QStringLiteral("\r\n")).toLatin1()) > 0;
}

QString openConnection(QSqlDatabase& db, const QString& name, const QString& spec)
{
    if (!spec.startsWith(QLatin1String("postgresql:"))) {
        db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(spec);
        return db.open() ? QString() : db.lastError().text();
    }
    const QUrl url(spec);
    db = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), name);
    db.setHostName(url.host());
    db.setPort(url.port(5432));
    db.setDatabaseName(url.path().mid(1));
    db.setUserName(url.userName());
    db.setPassword(url.password());
    return db.open() ? QString() : db.lastError().text();
}

QString execAll(const QSqlDatabase& db, const QStringList& statements)
{
    for (const QString& sql : statements) {
        QSqlQuery query(db);
        if (!query.exec(sql))
            return sql + QLatin1String(": ") + query.lastError().text();
    }
    return {};
}

} // namespace

class tst_import_hostile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void hostileCells_data();
    void hostileCells();

private:
    // The components the search's condition selects with `cell` bound as a value.
    QStringList selectedAsValue(const QSqlDatabase& db, const QString& cell, bool equality);
    QStringList describedComponents(const QSqlDatabase& db);

    QTemporaryDir m_dir;
    QString m_workbook;
    QString m_sqlite;
    QString m_postgresOwner;  // the URL the schema was made and loaded with
    QString m_postgresReader; // the URL of the reader role
    QString m_schema;
    QString m_role;
};

void tst_import_hostile::initTestCase()
{
    QVERIFY(m_dir.isValid());
    QJsonArray texts;
    for (const Cell& cell : cells())
        texts.append(cell.text);
    const QString cellsJson = m_dir.filePath(QStringLiteral("cells.json"));
    {
        QFile file(cellsJson);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QJsonDocument(texts).toJson());
    }
    m_workbook = m_dir.filePath(QStringLiteral("hostile-cells.xlsx"));
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"),
                 {QStringLiteral(KV_SOURCE_DIR "/tests/import/make_cell_workbook.py"), m_workbook,
                  cellsJson});
    QVERIFY(python.waitForFinished(60000));
    QVERIFY2(python.exitCode() == 0, python.readAllStandardError().constData());
    QVERIFY(writeSettings(m_dir.filePath(QStringLiteral("contains.cfa")),
                          QStringLiteral("MANUFACTURER")));
    QVERIFY(writeSettings(m_dir.filePath(QStringLiteral("equals.cfa")),
                          QStringLiteral("=MANUFACTURER")));

    // A table beside the standard's that no cell may read.
    const QStringList secret = {QStringLiteral("CREATE TABLE KV_SECRET (SECRET VARCHAR(20))"),
                                QStringLiteral("INSERT INTO KV_SECRET VALUES ('TOPSECRET')")};
    const QStringList scripts = {example("standard/schema.sql"), example("standard/data.sql")};

    m_sqlite = m_dir.filePath(QStringLiteral("standard.db"));
    ProgramRun::Result loaded =
        runProgram(QStringList{"load-standard", "--database", m_sqlite} + scripts);
    QVERIFY2(loaded.exitCode == 0, qPrintable(loaded.errText()));
    {
        QSqlDatabase db;
        QCOMPARE(openConnection(db, QStringLiteral("sqlite-setup"), m_sqlite), QString());
        QCOMPARE(execAll(db, secret), QString());
        db.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("sqlite-setup"));

    const QString server = qEnvironmentVariable("KV_TEST_PGURL");
    if (server.isEmpty())
        return;
    // A schema and a reader role of this test's own.
    const QString id = QUuid::createUuid().toString(QUuid::Id128).left(12);
    m_schema = QStringLiteral("kv_import_hostile_") + id;
    m_role = QStringLiteral("kv_import_hostile_reader_") + id;
    QSqlDatabase admin;
    QCOMPARE(openConnection(admin, QStringLiteral("admin"), server), QString());
    QCOMPARE(execAll(admin, {QStringLiteral("SET client_min_messages = warning"),
                             QStringLiteral("CREATE SCHEMA %1").arg(m_schema),
                             QStringLiteral("SET search_path TO %1").arg(m_schema)}),
             QString());
    QUrl owner(server);
    owner.setQuery(QStringLiteral("options=-csearch_path%3D") + m_schema);
    m_postgresOwner = owner.toString(QUrl::FullyEncoded);
    loaded = runProgram(
        QStringList{"load-standard", "--database", m_postgresOwner, "--reader-role", m_role} +
        scripts);
    QVERIFY2(loaded.exitCode == 0, qPrintable(loaded.errText()));
    QCOMPARE(execAll(admin, secret), QString());
    // The URL that load-standard prints for the module.
    const QString printed = QStringLiteral("run the module as that role: --database ");
    const qsizetype at = loaded.out.indexOf(printed.toUtf8());
    QVERIFY2(at >= 0, loaded.out.constData());
    m_postgresReader =
        QString::fromUtf8(loaded.out.mid(at + printed.size())).section(u'\n', 0, 0).trimmed();
    QCOMPARE(QUrl(m_postgresReader).userName(), m_role);
}

void tst_import_hostile::cleanupTestCase()
{
    if (!QSqlDatabase::contains(QStringLiteral("admin")))
        return;
    {
        QSqlDatabase admin = QSqlDatabase::database(QStringLiteral("admin"));
        execAll(admin, {QStringLiteral("DROP SCHEMA IF EXISTS %1 CASCADE").arg(m_schema),
                        QStringLiteral("DROP OWNED BY %1").arg(m_role),
                        QStringLiteral("DROP ROLE IF EXISTS %1").arg(m_role)});
        admin.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("admin"));
}

QStringList tst_import_hostile::selectedAsValue(const QSqlDatabase& db, const QString& cell,
                                                bool equality)
{
    QSqlQuery query(db);
    query.prepare(QStringLiteral("SELECT MENU_KEY FROM BDMENUS WHERE MENU_KEY_LANG = '1' AND "
                                 "MENU_KEY IN (SELECT LTRIM(RTRIM(ITEM_KEY)) FROM "
                                 "CUSTOM_PROPERTIES WHERE LTRIM(RTRIM(TAG)) = 'MANUFACTURER' AND "
                                 "LTRIM(RTRIM(VALUE)) %1 :value) ORDER BY MENU_KEY")
                      .arg(equality ? QStringLiteral("=") : QStringLiteral("LIKE")));
    query.bindValue(QStringLiteral(":value"),
                    equality ? cell : QLatin1Char('%') + cell + QLatin1Char('%'));
    QStringList keys;
    if (!query.exec())
        return {QStringLiteral("error: ") + query.lastError().text()};
    while (query.next())
        keys.append(query.value(0).toString().trimmed());
    return keys;
}

QStringList tst_import_hostile::describedComponents(const QSqlDatabase& db)
{
    QSqlQuery query(db);
    QStringList keys;
    if (query.exec(QStringLiteral("SELECT MENU_KEY FROM BDMENUS WHERE MENU_KEY_LANG = '1'"))) {
        while (query.next())
            keys.append(query.value(0).toString().trimmed());
    }
    return keys;
}

void tst_import_hostile::hostileCells_data()
{
    QTest::addColumn<QString>("backend");
    QTest::addColumn<bool>("equality");
    for (const char* backend : {"sqlite", "postgresql"}) {
        QTest::addRow("%s, contains", backend) << QString::fromLatin1(backend) << false;
        QTest::addRow("%s, equals", backend) << QString::fromLatin1(backend) << true;
    }
}

void tst_import_hostile::hostileCells()
{
    QFETCH(QString, backend);
    QFETCH(bool, equality);
    const bool postgres = backend == u"postgresql";
    if (postgres && m_postgresReader.isEmpty())
        QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server for this row (scripts/test.sh "
              "starts one)");

    const QString connection = QStringLiteral("check-") + backend;
    QSqlDatabase db;
    QCOMPARE(openConnection(db, connection, postgres ? m_postgresOwner : m_sqlite), QString());
    auto removeConnection = qScopeGuard([&db, &connection] {
        db.close();
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(connection);
    });
    if (postgres)
        QCOMPARE(execAll(db, {QStringLiteral("SET search_path TO %1").arg(m_schema)}), QString());
    QString error;
    const QStringList before = TestDump::dumpDatabase(db, error, m_role);
    QVERIFY2(!before.isEmpty(), qPrintable(error));

    const ProgramRun::Result run = runProgram(
        {QStringLiteral("import"), QStringLiteral("--settings"),
         m_dir.filePath(equality ? QStringLiteral("equals.cfa") : QStringLiteral("contains.cfa")),
         QStringLiteral("--sheet"), m_workbook, QStringLiteral("--database"),
         postgres ? m_postgresReader : m_sqlite});

    // The standard first: whatever the import answered, nothing of it may have changed.
    const QStringList after = TestDump::dumpDatabase(db, error, m_role);
    QVERIFY2(!after.isEmpty(), qPrintable(error));
    QCOMPARE(after, before);

    QVERIFY2(run.exitCode == 0, qPrintable(run.errText()));
    QCOMPARE(run.errText(), QString());
    const QJsonObject tree = QJsonDocument::fromJson(run.out).object();
    const QJsonArray items = tree.value(QStringLiteral("items")).toArray();
    QCOMPARE(tree.value(QStringLiteral("itemCount")).toInt(), int(cells().size()));
    QCOMPARE(items.size(), cells().size());

    const QStringList described = describedComponents(db);
    QVERIFY(described.size() > 10);
    for (qsizetype i = 0; i < cells().size(); ++i) {
        const Cell& cell = cells().at(i);
        const QJsonObject item = items.at(i).toObject();
        // The cell reached the import as written in the workbook.
        QCOMPARE(item.value(QStringLiteral("attributes")).toArray().at(1).toString(),
                 QStringLiteral("MAKER=") + cell.text);
        QStringList symbols;
        for (const QJsonValue child : item.value(QStringLiteral("children")).toArray()) {
            const QJsonObject node = child.toObject();
            if (node.value(QStringLiteral("kind")).toString() == u"symbol")
                symbols.append(node.value(QStringLiteral("key")).toString());
        }
        const QString label = QString::fromLatin1(cell.name) + QLatin1String(": ") +
                              symbols.join(QLatin1String(", "));
        switch (cell.expect) {
        case Expect::AsValue:
            QVERIFY2(symbols == selectedAsValue(db, cell.text, equality), qPrintable(label));
            break;
        case Expect::Nothing:
            QVERIFY2(symbols.isEmpty(), qPrintable(label));
            break;
        case Expect::WithinStandard:
            for (const QString& key : std::as_const(symbols))
                QVERIFY2(described.contains(key), qPrintable(label));
            break;
        }
    }

    // What the wildcards match, said in numbers: with "like", "%" selects every component that
    // has a manufacturer (the search's own behaviour), the plain name only its own components.
    const auto symbolCount = [&items](qsizetype row) {
        qsizetype count = 0;
        for (const QJsonValue child :
             items.at(row).toObject().value(QStringLiteral("children")).toArray())
            count += child.toObject().value(QStringLiteral("kind")).toString() == u"symbol";
        return count;
    };
    QVERIFY(symbolCount(0) > 0);
    QCOMPARE(symbolCount(cells().size() - 1), symbolCount(0));
    if (!equality) {
        QSqlQuery all(db);
        QVERIFY(all.exec(QStringLiteral(
            "SELECT COUNT(DISTINCT MENU_KEY) FROM BDMENUS WHERE MENU_KEY_LANG = '1' AND MENU_KEY "
            "IN (SELECT LTRIM(RTRIM(ITEM_KEY)) FROM CUSTOM_PROPERTIES WHERE LTRIM(RTRIM(TAG)) = "
            "'MANUFACTURER')")));
        QVERIFY(all.next());
        QCOMPARE(symbolCount(11), all.value(0).toLongLong());
        QVERIFY(symbolCount(11) > symbolCount(0));
    } else {
        QCOMPARE(symbolCount(11), 0);
    }
}

QTEST_GUILESS_MAIN(tst_import_hostile)
#include "tst_import_hostile.moc"
