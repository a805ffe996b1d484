#include "CoreTestSupport.h"
#include "DatabaseConnection.h"
#include "ElectricalServices.h"
#include "QueryTestSupport.h"
#include "StandardPalette.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace RefHost;
using QueryTest::columnNames;
using QueryTest::fileDigest;
using QueryTest::postgresUrl;
using QueryTest::rowTexts;
using QueryTest::TextQuery;

// Every database test runs once on SQLite and once on PostgreSQL; the PostgreSQL row is skipped
// when no server is given.
#define SKIP_WITHOUT_SERVER()                                                                      \
    do {                                                                                           \
        QFETCH(QString, backend);                                                                  \
        if (backend == u"postgresql" && postgresUrl().isEmpty())                                   \
            QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server to test against "                \
                  "(scripts/test.sh starts a throw-away one)");                                    \
        QVERIFY2(setUpBackend(backend), qPrintable(m_setupError));                                 \
    } while (false)

class TestRefHostQueries : public QObject
{
    Q_OBJECT

private:
    void addBackends()
    {
        QTest::addColumn<QString>("backend");
        QTest::newRow("sqlite") << QStringLiteral("sqlite");
        QTest::newRow("postgresql") << QStringLiteral("postgresql");
    }

    bool setUpBackend(const QString& backend)
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_writableName = QStringLiteral("writable-%1").arg(++m_connectionCount);
        QSqlDatabase writable;
        if (backend == u"sqlite") {
            m_spec = m_dir->path() + QStringLiteral("/standard.db");
            m_setupError = CoreTest::createSqliteStandard(m_spec);
            if (!m_setupError.isEmpty())
                return false;
            writable = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_writableName);
            writable.setDatabaseName(m_spec);
        } else {
            // A schema of this test's own, so that tests running at the same time on the same
            // server do not meet; the host reaches it through the URL's connection options.
            m_schema = QStringLiteral("kvref_queries_%1_%2")
                           .arg(QCoreApplication::applicationPid())
                           .arg(m_connectionCount);
            QUrl url(postgresUrl());
            url.setQuery(QStringLiteral("options=-csearch_path%3D") + m_schema);
            m_spec = url.toString();
            writable = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), m_writableName);
            writable.setHostName(url.host());
            writable.setPort(url.port(5432));
            writable.setDatabaseName(url.path().mid(1));
            writable.setUserName(url.userName());
            writable.setPassword(url.password());
        }
        if (!writable.open()) {
            m_setupError = writable.lastError().text();
            return false;
        }
        if (backend == u"postgresql") {
            m_setupError = CoreTest::execAll(
                writable, {QStringLiteral("SET client_min_messages = warning"),
                           QStringLiteral("CREATE SCHEMA %1").arg(m_schema),
                           QStringLiteral("SET search_path TO %1").arg(m_schema)});
            if (!m_setupError.isEmpty())
                return false;
            m_setupError = CoreTest::execAll(writable, CoreTest::standardDatabaseStatements());
            if (!m_setupError.isEmpty())
                return false;
            // The host connects as a role that may only read, as load-standard sets it up.
            m_role = CoreTest::uniqueRoleName("kv_test_reader_");
            m_setupError = CoreTest::setUpReaderRole(writable, m_role);
            if (!m_setupError.isEmpty())
                return false;
            m_spec = ReaderRole::connectionUrl(m_spec, m_role);
        }
        DatabaseConnection::Opened opened = DatabaseConnection::open(m_spec);
        if (!opened.connection) {
            m_setupError = opened.error;
            return false;
        }
        ElectricalServices::Settings settings;
        settings.standard = QStringLiteral("IEC");
        settings.workingFolder = QStringLiteral("/work/folder");
        settings.baseFolder = QStringLiteral("/net/");
        m_services = std::make_unique<ElectricalServices>(std::move(opened.connection), settings,
                                                          *m_console);
        return true;
    }

    QString writeThroughSideDoor(const QStringList& statements)
    {
        return CoreTest::execAll(QSqlDatabase::database(m_writableName), statements);
    }

private slots:
    void init()
    {
        m_err.setData({});
        QVERIFY(m_err.open(QIODevice::WriteOnly));
        m_console = std::make_unique<Console>(&m_err, &m_err);
    }

    void cleanup()
    {
        m_services.reset();
        if (!m_writableName.isEmpty()) {
            if (!m_schema.isEmpty()) {
                CoreTest::execAll(QSqlDatabase::database(m_writableName),
                                  {QStringLiteral("DROP SCHEMA %1 CASCADE").arg(m_schema)});
                m_schema.clear();
            }
            if (!m_role.isEmpty()) {
                CoreTest::dropRole(QSqlDatabase::database(m_writableName), m_role);
                m_role.clear();
            }
            QSqlDatabase::database(m_writableName).close();
            QSqlDatabase::removeDatabase(m_writableName);
            m_writableName.clear();
        }
        m_console.reset();
        m_err.close();
        m_dir.reset();
    }

    void columnsAreReportedInUpperCase_data() { addBackends(); }
    void columnsAreReportedInUpperCase()
    {
        SKIP_WITHOUT_SERVER();
        const CVRQueryResponse response = m_services->RunQuery(std::make_shared<TextQuery>(
            QStringLiteral(
                "select kv_key, kv_dwg from bdkv where kv_key_nor = :nor order by kv_key"),
            QList<QPair<QString, QVariant>>{{QStringLiteral(":nor"), QStringLiteral("IEC")}}));
        QVERIFY2(response.succeeded(), qPrintable(response.errorText()));
        QCOMPARE(columnNames(response), (QStringList{"KV_KEY", "KV_DWG"}));
        QCOMPARE(rowTexts(response), (QStringList{"100|M1", "200|  L1  ", "300|"}));

        const CVRQueryResponse all = m_services->RunQuery(
            std::make_shared<TextQuery>(QStringLiteral("SELECT * FROM BDKV WHERE KV_KEY='100'")));
        QCOMPARE(columnNames(all), (QStringList{"KV_KEY", "KV_KEY_NOR", "KV_DWG", "MENU_DESCR",
                                                "KV_EXPLODE", "LARGURA"}));
        QCOMPARE(all.getResult().size(), 2);
    }

    void connectionOptionsOfTheUrl()
    {
        if (postgresUrl().isEmpty())
            QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server to test against "
                  "(scripts/test.sh starts a throw-away one)");
        QVERIFY2(setUpBackend(QStringLiteral("postgresql")), qPrintable(m_setupError));
        const CVRQueryResponse response =
            m_services->RunQuery(std::make_shared<TextQuery>(QStringLiteral(
                "SELECT current_schema(), current_setting('default_transaction_read_only'), "
                "current_setting('application_name')")));
        QVERIFY2(response.succeeded(), qPrintable(response.errorText()));
        QCOMPARE(rowTexts(response), QStringList{m_schema + QStringLiteral("|on|")});

        // Further parameters, with blanks in their value, reach the server as well.
        QUrl url(m_spec);
        url.setQuery(QStringLiteral("options=-csearch_path%3D") + m_schema +
                     QStringLiteral("&application_name=kv%20reference%20host"));
        DatabaseConnection::Opened opened =
            DatabaseConnection::open(url.toString(QUrl::FullyEncoded));
        QVERIFY2(opened.connection, qPrintable(opened.error));
        QSqlQuery query(opened.connection->database());
        QVERIFY(query.exec(QStringLiteral("SELECT current_setting('application_name'), "
                                          "current_schema()")));
        QVERIFY(query.next());
        QCOMPARE(query.value(0).toString(), QStringLiteral("kv reference host"));
        QCOMPARE(query.value(1).toString(), m_schema);
    }

    void customPropertiesQueryOfTheModule_data() { addBackends(); }
    void customPropertiesQueryOfTheModule()
    {
        SKIP_WITHOUT_SERVER();
        const CVRQueryResponse response = m_services->RunQuery(std::make_shared<TextQuery>(
            QStringLiteral("SELECT TAG, VALUE FROM CUSTOM_PROPERTIES WHERE RTRIM(LTRIM( ITEM_KEY "
                           ")) = :key AND ITEM_TYPE IN (0,1,2)"),
            QList<QPair<QString, QVariant>>{{QStringLiteral(":key"), QStringLiteral("100")}}));
        QVERIFY2(response.succeeded(), qPrintable(response.errorText()));
        QCOMPARE(columnNames(response), (QStringList{"TAG", "VALUE"}));
        QCOMPARE(response.getColumns().at(1).typeCode, int(QMetaType::QString));
        QStringList rows = rowTexts(response);
        rows.sort();
        QCOMPARE(rows, (QStringList{" Voltage |400", "LARGURA|42", "POWER|5.5"}));
    }

    void theConnectionCannotWrite_data() { addBackends(); }
    void theConnectionCannotWrite()
    {
        SKIP_WITHOUT_SERVER();
        QFETCH(QString, backend);
        const QByteArray before = backend == u"sqlite" ? fileDigest(m_spec) : QByteArray();
        const QStringList statements = {
            QStringLiteral("INSERT INTO BDKV VALUES ('400', 'IEC', 'X', 'X', 'N', '1')"),
            QStringLiteral("UPDATE BDKV SET KV_DWG = 'X'"),
            QStringLiteral("DELETE FROM BDKV"),
            QStringLiteral("CREATE TABLE INTRUDER (A INTEGER)"),
            QStringLiteral("DROP TABLE BDKV"),
        };
        for (const QString& sql : statements) {
            for (bool claimsSelect : {false, true}) {
                const CVRQueryResponse response = m_services->RunQuery(std::make_shared<TextQuery>(
                    sql, QList<QPair<QString, QVariant>>{}, QString(), claimsSelect));
                QVERIFY2(response.failed(), qPrintable(sql));
                QVERIFY2(!response.errorText().isEmpty(), qPrintable(sql));
            }
        }
        // Turning the protection off first does not help either.
        const QStringList unlocks =
            backend == u"sqlite"
                ? QStringList{QStringLiteral("PRAGMA query_only = 0")}
                : QStringList{
                      QStringLiteral("SET default_transaction_read_only = off"),
                      QStringLiteral(
                          "SELECT set_config('default_transaction_read_only', 'off', false)"),
                      QStringLiteral("SET SESSION CHARACTERISTICS AS TRANSACTION READ WRITE")};
        for (const QString& unlock : unlocks) {
            m_services->RunQuery(std::make_shared<TextQuery>(unlock));
            const CVRQueryResponse response =
                m_services->RunQuery(std::make_shared<TextQuery>(statements.first()));
            QVERIFY2(response.failed(), qPrintable(unlock));
        }

        // Nothing changed: the file is byte for byte the same, the rows are all there.
        if (backend == u"sqlite")
            QCOMPARE(fileDigest(m_spec), before);
        QSqlQuery count(QSqlDatabase::database(m_writableName));
        QVERIFY(count.exec(QStringLiteral("SELECT COUNT(*), MAX(KV_DWG) FROM BDKV")));
        QVERIFY(count.next());
        QCOMPARE(count.value(0).toInt(), 4);
        QCOMPARE(count.value(1).toString(), QStringLiteral("NM1"));
        QSqlQuery intruder(QSqlDatabase::database(m_writableName));
        QVERIFY(!intruder.exec(QStringLiteral("SELECT * FROM INTRUDER")));
    }

    void cacheableQueriesAreAnsweredOnce_data() { addBackends(); }
    void cacheableQueriesAreAnsweredOnce()
    {
        SKIP_WITHOUT_SERVER();
        const QString sql = QStringLiteral("SELECT DIC_FIELD FROM BDDIC");
        const auto cached = std::make_shared<TextQuery>(sql, QList<QPair<QString, QVariant>>{},
                                                        QStringLiteral("{dictionary}"));
        const auto fresh = std::make_shared<TextQuery>(sql);
        QCOMPARE(m_services->RunQuery(cached).getResult().size(), 1);
        QCOMPARE(writeThroughSideDoor({QStringLiteral("INSERT INTO BDDIC VALUES ('VOLTAGE')")}),
                 QString());
        QCOMPARE(m_services->RunQuery(cached).getResult().size(), 1);
        QCOMPARE(m_services->RunQuery(fresh).getResult().size(), 2);

        // A failure is not kept: a standard's table that a later load adds (and lets the reader
        // role read) is answered then.
        const auto missing = std::make_shared<TextQuery>(
            QStringLiteral("SELECT VL_QTDE FROM BDVINCL"), QList<QPair<QString, QVariant>>{},
            QStringLiteral("{later}"));
        QVERIFY(m_services->RunQuery(missing).failed());
        QStringList addTable = {
            QStringLiteral("CREATE TABLE BDVINCL (VL_KEY_A VARCHAR(20), VL_KEY_B "
                           "VARCHAR(20), VL_QTDE VARCHAR(20))"),
            QStringLiteral("INSERT INTO BDVINCL VALUES ('100', '200', '7')")};
        if (!m_role.isEmpty())
            addTable.append(QStringLiteral("GRANT SELECT ON BDVINCL TO %1").arg(m_role));
        QCOMPARE(writeThroughSideDoor(addTable), QString());
        const CVRQueryResponse later = m_services->RunQuery(missing);
        QVERIFY2(later.succeeded(), qPrintable(later.errorText()));
        QCOMPARE(later.getSingleResult().toInt(), 7);
    }

    void propertyValue_data() { addBackends(); }
    void propertyValue()
    {
        SKIP_WITHOUT_SERVER();
        struct Case
        {
            QString key;
            QString property;
            QString expected; // "<none>": no row
        };
        const QList<Case> cases = {
            {"100", "POWER", "5.5"},
            {" 100 ", "power", "5.5"},   // key trimmed, tag ignoring case
            {"100", "VOLTAGE", "400"},   // stored tag has blanks around it
            {"100", "LARGURA", "42"},    // a custom property wins over the column
            {"200", "largura", "20"},    // the column of the IEC row
            {"200", "KV_DWG", "  L1  "}, // as stored
            {"100", "HIDDEN", "<none>"}, // item type 7 is not read
            {"999", "POWER", "<none>"},
            {"100", "KV_DWG; DROP TABLE BDKV", "<none>"},
            {"100", "", "<none>"},
        };
        for (const Case& c : cases) {
            const CVRQueryResponse response =
                m_services->GetComponentPropertyValue(c.key, c.property);
            const QString label = c.key + QLatin1Char('/') + c.property;
            QVERIFY2(response.succeeded(),
                     qPrintable(label + QStringLiteral(": ") + response.errorText()));
            const QVariant value = response.getSingleResult();
            QCOMPARE_NE(value.isValid(), c.expected == u"<none>");
            if (value.isValid()) {
                QCOMPARE(value.toString(), c.expected);
                QCOMPARE(columnNames(response), QStringList{QStringLiteral("VALUE")});
            }
        }
        QSqlQuery count(QSqlDatabase::database(m_writableName));
        QVERIFY(count.exec(QStringLiteral("SELECT COUNT(*) FROM BDKV")));
    }

    void blockName_data() { addBackends(); }
    void blockName()
    {
        SKIP_WITHOUT_SERVER();
        QCOMPARE(m_services->GetComponentBlockName(QStringLiteral("100"), QStringLiteral("IEC")),
                 QStringLiteral("M1"));
        QCOMPARE(m_services->GetComponentBlockName(QStringLiteral("100"), QStringLiteral("NEMA")),
                 QStringLiteral("NM1"));
        QCOMPARE(m_services->GetComponentBlockName(QStringLiteral(" 200"), QStringLiteral("IEC")),
                 QStringLiteral("L1"));
        QCOMPARE(m_services->GetComponentBlockName(QStringLiteral("300"), QStringLiteral("IEC")),
                 QString());
        QCOMPARE(m_services->GetComponentBlockName(QStringLiteral("999"), QStringLiteral("IEC")),
                 QString());
        QCOMPARE(m_services->GetComponentBlockName(QStringLiteral("100"), QStringLiteral("X'")),
                 QString());
        QVERIFY(m_err.data().isEmpty());
    }

    void languagesAndFolders_data() { addBackends(); }
    void languagesAndFolders()
    {
        SKIP_WITHOUT_SERVER();
        QCOMPARE(m_services->GetDescriptionLanguages(), (QList<int>{1, 3}));
        QCOMPARE(m_services->GetCurrentLanguage(), QStringLiteral("1"));
        QCOMPARE(m_services->GetWorkingFolder(), QStringLiteral("/work/folder"));
        QCOMPARE(m_services->GetBaseFolder(), QStringLiteral("/net/"));
        QVERIFY(m_services->GetLongOperationRunner(nullptr));
        QVERIFY(m_services->GetCommandManager());
    }

    void paletteTree_data() { addBackends(); }
    void paletteTree()
    {
        SKIP_WITHOUT_SERVER();
        StandardPalette palette(m_services->connection(), QStringLiteral("IEC"));
        QCOMPARE(palette.GetNormaSelecionada(),
                 CENorma(QStringLiteral("IEC"), QStringLiteral("IEC")));
        const CEPastaTree tree =
            palette.carga(CENorma(QStringLiteral("IEC"), QStringLiteral("IEC")), 0);
        QVERIFY2(tree.ok(), qPrintable(tree.error));
        QStringList lines;
        CoreTest::describeTree(tree.roots, 0, lines);
        QCOMPARE(lines, (QStringList{
                            "F 9100 1=Lamps",
                            "  C 200 3=Lampada",
                            "F 9000 1=Motors,3=Motores",
                            "  C 100 1=Three-phase motor,3=Motor trifasico",
                            "C 300 1=Orphan",
                        }));
        QCOMPARE(tree.roots.at(1)->children().front()->parent(), tree.roots.at(1).get());

        const CEPastaTree other =
            palette.carga(CENorma(QStringLiteral("JIS"), QStringLiteral("JIS")), 0);
        QVERIFY(!other.ok());
        QVERIFY(other.roots.empty());
        QVERIFY2(other.error.endsWith(QStringLiteral(": the standard \"JIS\" has no components")),
                 qPrintable(other.error));
    }

    void languageFromTheSettings()
    {
        QTemporaryDir dir;
        const QString path = dir.path() + QStringLiteral("/s.db");
        QCOMPARE(CoreTest::createSqliteStandard(path), QString());
        DatabaseConnection::Opened opened = DatabaseConnection::open(path);
        QVERIFY(opened.connection);
        ElectricalServices services(std::move(opened.connection),
                                    {QStringLiteral("IEC"), QStringLiteral("3"), {}, {}},
                                    *m_console);
        QCOMPARE(services.GetCurrentLanguage(), QStringLiteral("3"));
    }

    void openErrorsNameTheDatabase()
    {
        QTemporaryDir dir;
        const QString missing = dir.path() + QStringLiteral("/missing.db");
        DatabaseConnection::Opened opened = DatabaseConnection::open(missing);
        QVERIFY(!opened.connection);
        QCOMPARE(opened.error, missing + QStringLiteral(": database file not found"));
        QVERIFY(!QFile::exists(missing));

        const QString text = dir.path() + QStringLiteral("/text.db");
        QFile file(text);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(4096, 'x'));
        file.close();
        opened = DatabaseConnection::open(text);
        QVERIFY(!opened.connection);
        QVERIFY2(opened.error.startsWith(text + QStringLiteral(": cannot open the database: ")),
                 qPrintable(opened.error));

        opened = DatabaseConnection::open(QStringLiteral("postgresql://user:secret@/"));
        QVERIFY(!opened.connection);
        QVERIFY2(opened.error.contains(QStringLiteral("not a PostgreSQL URL")),
                 qPrintable(opened.error));
        QVERIFY2(!opened.error.contains(QStringLiteral("secret")), qPrintable(opened.error));

        // Nothing listens on port 1: the connection fails with the server's reason.
        opened = DatabaseConnection::open(QStringLiteral("postgresql://kv@127.0.0.1:1/none"));
        QVERIFY(!opened.connection);
        QVERIFY2(opened.error.startsWith(
                     QStringLiteral("postgresql://kv@127.0.0.1:1/none: cannot open")),
                 qPrintable(opened.error));
    }

    void connectionsAreRemovedWithTheirObject()
    {
        QTemporaryDir dir;
        const QString path = dir.path() + QStringLiteral("/s.db");
        QCOMPARE(CoreTest::createSqliteStandard(path), QString());
        const QStringList before = QSqlDatabase::connectionNames();
        {
            DatabaseConnection::Opened opened = DatabaseConnection::open(path);
            QVERIFY(opened.connection);
            QCOMPARE(QSqlDatabase::connectionNames().size(), before.size() + 1);
        }
        QCOMPARE(QSqlDatabase::connectionNames(), before);
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QBuffer m_err;
    std::unique_ptr<Console> m_console;
    std::unique_ptr<ElectricalServices> m_services;
    QString m_spec;
    QString m_writableName;
    QString m_schema; // PostgreSQL: the test's own schema
    QString m_role;   // PostgreSQL: the reader role the host connects as
    QString m_setupError;
    int m_connectionCount = 0;
};

QTEST_GUILESS_MAIN(TestRefHostQueries)
#include "tst_refhost_queries.moc"
