// The query service cannot be made to change the standard or to read beyond it: statements
// that write, define, unlock, switch roles, attach, make temporary tables or read other tables
// and files are refused through RunQuery, on SQLite (read-only file, query_only and the read
// guard) and on PostgreSQL as the loader's reader role; the standard is then unchanged (a full
// dump of every table and of the schema). A PostgreSQL role that may write is refused when the
// connection opens.
#include "../common/DatabaseDump.h"
#include "CoreTestSupport.h"
#include "DatabaseConnection.h"
#include "ElectricalServices.h"
#include "QueryTestSupport.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

using namespace RefHost;
using QueryTest::fileDigest;
using QueryTest::postgresUrl;
using QueryTest::rowTexts;
using QueryTest::TextQuery;

namespace {

// A table that is not the standard's: nothing of it may be read through the service.
const QStringList kSecret = {QStringLiteral("CREATE TABLE KV_SECRET (SECRET VARCHAR(20))"),
                             QStringLiteral("INSERT INTO KV_SECRET VALUES ('TOPSECRET')")};

} // namespace

class TestRefHostReadOnly : public QObject
{
    Q_OBJECT

private:
    bool setUpBackend(const QString& backend)
    {
        m_dir = std::make_unique<QTemporaryDir>();
        ++m_count;
        m_adminName = QStringLiteral("admin-%1").arg(m_count);
        QSqlDatabase admin;
        if (backend == u"sqlite") {
            m_spec = m_dir->path() + QStringLiteral("/standard.db");
            m_setupError = CoreTest::createSqliteStandard(m_spec);
            if (!m_setupError.isEmpty())
                return false;
            admin = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_adminName);
            admin.setDatabaseName(m_spec);
            if (!admin.open()) {
                m_setupError = admin.lastError().text();
                return false;
            }
            m_setupError = CoreTest::execAll(admin, kSecret);
            if (!m_setupError.isEmpty())
                return false;
            m_digest = fileDigest(m_spec);
        } else {
            m_schema = QStringLiteral("kvref_readonly_%1_%2")
                           .arg(QCoreApplication::applicationPid())
                           .arg(m_count);
            m_role = CoreTest::uniqueRoleName("kv_test_reader_");
            const QUrl server(postgresUrl());
            admin = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), m_adminName);
            admin.setHostName(server.host());
            admin.setPort(server.port(5432));
            admin.setDatabaseName(server.path().mid(1));
            admin.setUserName(server.userName());
            admin.setPassword(server.password());
            if (!admin.open()) {
                m_setupError = admin.lastError().text();
                return false;
            }
            m_setupError = CoreTest::execAll(
                admin, QStringList{QStringLiteral("SET client_min_messages = warning"),
                                   QStringLiteral("CREATE SCHEMA %1").arg(m_schema),
                                   QStringLiteral("SET search_path TO %1").arg(m_schema)} +
                           CoreTest::standardDatabaseStatements() + kSecret);
            if (m_setupError.isEmpty())
                m_setupError = CoreTest::setUpReaderRole(admin, m_role);
            if (!m_setupError.isEmpty())
                return false;
            QUrl url(server);
            url.setQuery(QStringLiteral("options=-csearch_path%3D") + m_schema);
            m_ownerSpec = url.toString(QUrl::FullyEncoded);
            m_spec = ReaderRole::connectionUrl(m_ownerSpec, m_role);
        }
        m_before = TestDump::dumpDatabase(admin, m_setupError, m_role);
        if (m_before.isEmpty())
            return false;
        DatabaseConnection::Opened opened = DatabaseConnection::open(m_spec);
        if (!opened.connection) {
            m_setupError = opened.error;
            return false;
        }
        m_services = std::make_unique<ElectricalServices>(
            std::move(opened.connection),
            ElectricalServices::Settings{QStringLiteral("IEC"), {}, {}, {}}, *m_console);
        return true;
    }

    QSqlDatabase admin() const { return QSqlDatabase::database(m_adminName); }

    // The standard as it was set up: every table and the schema, and on PostgreSQL the reader
    // role's attributes and memberships.
    void verifyUnchanged()
    {
        QString error;
        const QStringList after = TestDump::dumpDatabase(admin(), error, m_role);
        QVERIFY2(!after.isEmpty(), qPrintable(error));
        QCOMPARE(after, m_before);
        if (!m_digest.isEmpty())
            QCOMPARE(fileDigest(m_spec), m_digest);
        // The service still reads the standard, as its own role and read-only.
        const CVRQueryResponse count = m_services->RunQuery(
            std::make_shared<TextQuery>(QStringLiteral("SELECT COUNT(*), MAX(KV_DWG) FROM BDKV")));
        QVERIFY2(count.succeeded(), qPrintable(count.errorText()));
        QCOMPARE(rowTexts(count), QStringList{QStringLiteral("4|NM1")});
        if (!m_role.isEmpty()) {
            const CVRQueryResponse session = m_services->RunQuery(std::make_shared<TextQuery>(
                QStringLiteral("SELECT current_user, session_user, "
                               "current_setting('default_transaction_read_only'), "
                               "(SELECT COUNT(*) FROM pg_class WHERE relpersistence = 't')")));
            QVERIFY2(session.succeeded(), qPrintable(session.errorText()));
            QCOMPARE(rowTexts(session),
                     QStringList{m_role + u'|' + m_role + QStringLiteral("|on|0")});
        }
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
        if (!m_adminName.isEmpty()) {
            {
                QSqlDatabase db = admin();
                if (!m_schema.isEmpty())
                    QSqlQuery(db).exec(QStringLiteral("DROP SCHEMA %1 CASCADE").arg(m_schema));
                if (!m_role.isEmpty())
                    CoreTest::dropRole(db, m_role);
                db.close();
            }
            QSqlDatabase::removeDatabase(m_adminName);
        }
        m_adminName.clear();
        m_spec.clear();
        m_ownerSpec.clear();
        m_schema.clear();
        m_role.clear();
        m_digest.clear();
        m_before.clear();
        m_console.reset();
        m_err.close();
        m_dir.reset();
    }

    void refusedThroughTheQueryService_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::addColumn<QString>("sql");
        const QString write = QStringLiteral("INSERT INTO BDKV VALUES ('400', 'IEC', 'X', 'X', "
                                             "'N', '1')");
        // Both databases.
        const QList<QPair<const char*, QString>> both = {
            {"insert", write},
            {"update", QStringLiteral("UPDATE BDKV SET KV_DWG = 'X'")},
            {"delete", QStringLiteral("DELETE FROM BDKV")},
            {"create table", QStringLiteral("CREATE TABLE INTRUDER (A INTEGER)")},
            {"drop table", QStringLiteral("DROP TABLE BDKV")},
            {"alter table", QStringLiteral("ALTER TABLE BDKV ADD COLUMN X INTEGER")},
            {"create index", QStringLiteral("CREATE INDEX kv_intruder ON BDKV (KV_DWG)")},
            {"create view", QStringLiteral("CREATE VIEW INTRUDER AS SELECT * FROM BDKV")},
            {"stacked drop", QStringLiteral("SELECT 1; DROP TABLE BDKV")},
            {"stacked delete", QStringLiteral("SELECT KV_KEY FROM BDKV; DELETE FROM BDKV; --")},
            {"temporary table", QStringLiteral("CREATE TEMP TABLE BDKV (KV_KEY VARCHAR(20))")},
            {"read another table", QStringLiteral("SELECT SECRET FROM KV_SECRET")},
            {"union with another table",
             QStringLiteral("SELECT KV_KEY, KV_DWG FROM BDKV UNION SELECT SECRET, SECRET FROM "
                            "KV_SECRET")},
        };
        for (const auto& [name, sql] : both) {
            QTest::addRow("sqlite: %s", name) << QStringLiteral("sqlite") << sql;
            QTest::addRow("postgresql: %s", name) << QStringLiteral("postgresql") << sql;
        }
        const QList<QPair<const char*, QString>> sqlite = {
            {"attach", QStringLiteral("ATTACH DATABASE '@DIR@/other.db' AS other")},
            {"query_only off", QStringLiteral("PRAGMA query_only = 0")},
            {"writable_schema", QStringLiteral("PRAGMA writable_schema = 1")},
            {"journal mode", QStringLiteral("PRAGMA journal_mode = DELETE")},
            {"pragma listing of another table", QStringLiteral("PRAGMA table_info(KV_SECRET)")},
            {"read the schema", QStringLiteral("SELECT name, sql FROM sqlite_master")},
            {"read the schema by its new name", QStringLiteral("SELECT name FROM sqlite_schema")},
            {"pragma function", QStringLiteral("SELECT name FROM pragma_table_list")},
            {"union with the schema",
             QStringLiteral("SELECT KV_KEY, KV_DWG FROM BDKV UNION SELECT name, sql FROM "
                            "sqlite_master")},
            {"load extension", QStringLiteral("SELECT load_extension('/nonexistent')")},
            {"begin", QStringLiteral("BEGIN IMMEDIATE")},
            {"savepoint", QStringLiteral("SAVEPOINT a")},
            {"vacuum", QStringLiteral("VACUUM")},
            {"vacuum into", QStringLiteral("VACUUM INTO '@DIR@/copy.db'")},
            {"analyze", QStringLiteral("ANALYZE")},
        };
        for (const auto& [name, sql] : sqlite)
            QTest::addRow("sqlite: %s", name) << QStringLiteral("sqlite") << sql;
        const QList<QPair<const char*, QString>> postgres = {
            {"truncate", QStringLiteral("TRUNCATE BDKV")},
            {"create schema", QStringLiteral("CREATE SCHEMA intruder")},
            {"stacked unlock and drop",
             QStringLiteral("SELECT 1; COMMIT; SET default_transaction_read_only = off; COMMIT; "
                            "DROP TABLE BDKV; --")},
            {"stacked read write and insert",
             QStringLiteral("SELECT 1; COMMIT; SET SESSION CHARACTERISTICS AS TRANSACTION READ "
                            "WRITE; ") +
                 write},
            {"stacked set_config and delete",
             QStringLiteral("SELECT set_config('default_transaction_read_only', 'off', false); "
                            "COMMIT; DELETE FROM BDKV")},
            {"set role", QStringLiteral("SET ROLE kvtest")},
            {"stacked set role and drop",
             QStringLiteral("SELECT 1; COMMIT; SET ROLE kvtest; SET default_transaction_read_only "
                            "= off; DROP TABLE BDKV")},
            {"reset role", QStringLiteral("RESET ROLE")},
            {"stacked reset role and drop",
             QStringLiteral("SELECT 1; RESET ROLE; COMMIT; SET default_transaction_read_only = "
                            "off; DROP TABLE BDKV")},
            {"set_config role", QStringLiteral("SELECT set_config('role', 'kvtest', false)")},
            {"session authorization", QStringLiteral("SET SESSION AUTHORIZATION kvtest")},
            {"stacked session authorization",
             QStringLiteral("SELECT 1; SET SESSION AUTHORIZATION kvtest; DROP TABLE BDKV")},
            {"stacked temporary table over the standard's",
             QStringLiteral("SELECT 1; COMMIT; SET default_transaction_read_only = off; "
                            "CREATE TEMP TABLE BDKV AS SELECT * FROM BDKV WHERE 1 = 0")},
            {"stacked function",
             QStringLiteral("SELECT 1; COMMIT; SET default_transaction_read_only = off; CREATE "
                            "FUNCTION intruder() RETURNS integer LANGUAGE sql AS 'SELECT 1'")},
            {"stacked grant",
             QStringLiteral("SELECT 1; COMMIT; SET default_transaction_read_only = off; GRANT "
                            "INSERT ON BDKV TO PUBLIC")},
            {"stacked do block",
             QStringLiteral("SELECT 1; COMMIT; SET default_transaction_read_only = off; "
                            "DO $$BEGIN EXECUTE 'DROP TABLE BDKV'; END$$")},
            {"copy to a file", QStringLiteral("SELECT 1; COPY BDKV TO '/tmp/kv-intruder.txt'")},
            {"copy from a program", QStringLiteral("SELECT 1; COPY BDKV FROM PROGRAM 'true'")},
            {"read a server file", QStringLiteral("SELECT pg_read_file('/etc/hostname')")},
            {"union with a server file",
             QStringLiteral("SELECT KV_KEY, KV_DWG FROM BDKV UNION SELECT "
                            "pg_read_file('/etc/hostname'), ''")},
            {"read password hashes", QStringLiteral("SELECT rolname, rolpassword FROM pg_authid")},
            {"large object import", QStringLiteral("SELECT lo_import('/etc/hostname')")},
        };
        for (const auto& [name, sql] : postgres)
            QTest::addRow("postgresql: %s", name) << QStringLiteral("postgresql") << sql;
    }

    void refusedThroughTheQueryService()
    {
        QFETCH(QString, backend);
        QFETCH(QString, sql);
        if (backend == u"postgresql" && postgresUrl().isEmpty())
            QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server to test against "
                  "(scripts/test.sh starts a throw-away one)");
        QVERIFY2(setUpBackend(backend), qPrintable(m_setupError));
        sql.replace(QStringLiteral("@DIR@"), m_dir->path());

        const CVRQueryResponse response = m_services->RunQuery(std::make_shared<TextQuery>(sql));
        QVERIFY2(response.failed(), qPrintable(rowTexts(response).join(u'\n')));
        QVERIFY(!response.errorText().isEmpty());
        verifyUnchanged();
        QVERIFY(!QFile::exists(m_dir->filePath(QStringLiteral("other.db"))));
        QVERIFY(!QFile::exists(m_dir->filePath(QStringLiteral("copy.db"))));
    }

    // A statement that only changes the session's own default is not refused: the service puts
    // the default back after it, and the role cannot write whatever the default is.
    void sessionDefaultIsPutBack()
    {
        if (postgresUrl().isEmpty())
            QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server to test against "
                  "(scripts/test.sh starts a throw-away one)");
        QVERIFY2(setUpBackend(QStringLiteral("postgresql")), qPrintable(m_setupError));
        const CVRQueryResponse unlock = m_services->RunQuery(std::make_shared<TextQuery>(
            QStringLiteral("SELECT set_config('default_transaction_read_only', 'off', false)")));
        QVERIFY2(unlock.succeeded(), qPrintable(unlock.errorText()));
        QCOMPARE(rowTexts(unlock), QStringList{QStringLiteral("off")});
        const CVRQueryResponse write = m_services->RunQuery(
            std::make_shared<TextQuery>(QStringLiteral("SELECT 1; DELETE FROM BDKV")));
        QVERIFY(write.failed());
        verifyUnchanged();
    }

    // What the guards leave: the standard's own tables answer.
    void theStandardIsRead_data()
    {
        QTest::addColumn<QString>("backend");
        QTest::newRow("sqlite") << QStringLiteral("sqlite");
        QTest::newRow("postgresql") << QStringLiteral("postgresql");
    }
    void theStandardIsRead()
    {
        QFETCH(QString, backend);
        if (backend == u"postgresql" && postgresUrl().isEmpty())
            QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server to test against "
                  "(scripts/test.sh starts a throw-away one)");
        QVERIFY2(setUpBackend(backend), qPrintable(m_setupError));
        const CVRQueryResponse joined = m_services->RunQuery(std::make_shared<TextQuery>(
            QStringLiteral("SELECT k.KV_KEY, m.MENU_DESCR FROM BDKV k JOIN BDMENUS m ON "
                           "m.MENU_KEY = k.KV_KEY WHERE m.MENU_KEY_LANG = '1' AND k.KV_KEY_NOR = "
                           "'IEC' AND k.KV_KEY IN (SELECT LTRIM(RTRIM(ITEM_KEY)) FROM "
                           "CUSTOM_PROPERTIES) ORDER BY 1")));
        QVERIFY2(joined.succeeded(), qPrintable(joined.errorText()));
        QCOMPARE(rowTexts(joined), QStringList{QStringLiteral("100|Three-phase motor")});
        // The column listing behind the property-value fallback on BDKV.
        QCOMPARE(
            m_services->GetComponentPropertyValue(QStringLiteral("200"), QStringLiteral("largura"))
                .getSingleResult()
                .toString(),
            QStringLiteral("20"));
        verifyUnchanged();
    }

    void rolesThatMayWriteAreRefused_data()
    {
        QTest::addColumn<QStringList>("grants");
        QTest::addColumn<QString>("expected");
        QTest::newRow("superuser") << QStringList{} << QStringLiteral("superuser");
        QTest::newRow("insert") << QStringList{QStringLiteral("GRANT INSERT ON BDKV TO @ROLE@")}
                                << QStringLiteral("INSERT on bdkv");
        QTest::newRow("update and delete")
            << QStringList{QStringLiteral("GRANT UPDATE, DELETE ON BDMENUS TO @ROLE@")}
            << QStringLiteral("UPDATE, DELETE on bdmenus");
        QTest::newRow("truncate") << QStringList{QStringLiteral(
                                         "GRANT TRUNCATE ON CUSTOM_PROPERTIES TO @ROLE@")}
                                  << QStringLiteral("TRUNCATE on custom_properties");
        QTest::newRow("owner") << QStringList{QStringLiteral("ALTER TABLE BDDIC OWNER TO @ROLE@")}
                               << QStringLiteral("owner of bddic; INSERT, UPDATE, DELETE, "
                                                 "TRUNCATE, REFERENCES, TRIGGER on bddic");
        QTest::newRow("create on the schema")
            << QStringList{QStringLiteral("GRANT CREATE ON SCHEMA @SCHEMA@ TO @ROLE@")}
            << QStringLiteral("CREATE on schema @SCHEMA@");
        QTest::newRow("create on the database")
            << QStringList{QStringLiteral("GRANT CREATE ON DATABASE @DB@ TO @ROLE@")}
            << QStringLiteral("CREATE on database @DB@");
        QTest::newRow("temporary tables")
            << QStringList{QStringLiteral("GRANT TEMPORARY ON DATABASE @DB@ TO @ROLE@")}
            << QStringLiteral("TEMPORARY on database @DB@");
        QTest::newRow("server files")
            << QStringList{QStringLiteral("GRANT pg_read_server_files TO @ROLE@")}
            << QStringLiteral("member of pg_read_server_files");
        QTest::newRow("member of a writer")
            << QStringList{QStringLiteral("GRANT @OWNER@ TO @ROLE@")}
            << QStringLiteral("member of @OWNER@");
        QTest::newRow("createrole") << QStringList{QStringLiteral("ALTER ROLE @ROLE@ CREATEROLE")}
                                    << QStringLiteral("CREATEROLE");
    }

    void rolesThatMayWriteAreRefused()
    {
        QFETCH(QStringList, grants);
        QFETCH(QString, expected);
        if (postgresUrl().isEmpty())
            QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server to test against "
                  "(scripts/test.sh starts a throw-away one)");
        QVERIFY2(setUpBackend(QStringLiteral("postgresql")), qPrintable(m_setupError));
        m_services.reset();

        // The loader's role itself is accepted; the same role given one right more is not. The
        // superuser row connects as the server's own superuser.
        QString spec = m_ownerSpec;
        QString role = QUrl(m_ownerSpec).userName();
        const QString database = QUrl(m_ownerSpec).path().mid(1);
        auto fill = [&](QString text) {
            return text.replace(QStringLiteral("@ROLE@"), m_role)
                .replace(QStringLiteral("@SCHEMA@"), m_schema)
                .replace(QStringLiteral("@DB@"), database)
                .replace(QStringLiteral("@OWNER@"), QUrl(m_ownerSpec).userName());
        };
        if (!grants.isEmpty()) {
            role = m_role;
            spec = m_spec;
            for (const QString& grant : std::as_const(grants))
                QCOMPARE(CoreTest::execAll(admin(), {fill(grant)}), QString());
        }
        expected = fill(expected);
        DatabaseConnection::Opened opened = DatabaseConnection::open(spec);
        QVERIFY(!opened.connection);
        const QString description = QUrl(spec).toString(QUrl::RemovePassword);
        QCOMPARE(opened.error,
                 QStringLiteral("%1: cannot open the database: the role \"%2\" may write (%3); "
                                "connect as the read-only role that kvinsertauto load-standard "
                                "sets up, e.g. %4")
                     .arg(description, role, expected,
                          ReaderRole::connectionUrl(spec, ReaderRole::defaultName())));
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QBuffer m_err;
    std::unique_ptr<Console> m_console;
    std::unique_ptr<ElectricalServices> m_services;
    QString m_spec;      // what the service opens: the file, or the reader role's URL
    QString m_ownerSpec; // PostgreSQL: the URL of the role that made the schema
    QString m_adminName;
    QString m_schema;
    QString m_role;
    QString m_setupError;
    QStringList m_before;
    QByteArray m_digest;
    int m_count = 0;
};

QTEST_GUILESS_MAIN(TestRefHostReadOnly)
#include "tst_refhost_readonly.moc"
