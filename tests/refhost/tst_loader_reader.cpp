// The reader role of load-standard on PostgreSQL: it exists after a load with exactly CONNECT on
// the database, USAGE on the schema and SELECT on the standard's tables; loading again (also
// with --drop) leaves it so; loads that run at the same time, into two schemas of one database
// or into two databases, all succeed; a role that may do more is refused and the load rolled
// back; the printed URL connects the module. On SQLite there is no role.
#include "LoaderTestSupport.h"

#include "PostgresRolePrivileges.h"
#include "ReaderRole.h"
#include "StandardLoader.h"

#include <QProcess>
#include <QTest>
#include <QUuid>

using namespace RefHost;
using LoaderTest::ScratchDatabase;

namespace {

struct Run
{
    int exitCode = -1;
    QString out;
    QString err;
};

QProcess* startProgram(const QStringList& args)
{
    auto* process = new QProcess;
    process->start(QStringLiteral(KV_CLI_PROGRAM), args);
    return process;
}

Run finish(QProcess* process)
{
    Run run;
    if (!process->waitForFinished(120000)) {
        process->kill();
        process->waitForFinished();
        run.err = QStringLiteral("the program did not finish");
    } else {
        run.exitCode = process->exitStatus() == QProcess::NormalExit ? process->exitCode() : -1;
        run.out = QString::fromUtf8(process->readAllStandardOutput());
        run.err = QString::fromUtf8(process->readAllStandardError());
    }
    delete process;
    return run;
}

Run runProgram(const QStringList& args)
{
    return finish(startProgram(args));
}

QString uniqueName(const char* prefix)
{
    return QString::fromLatin1(prefix) + QUuid::createUuid().toString(QUuid::Id128).left(12);
}

// The URL of the scratch schema for the load, as the server's user.
QString schemaUrl(ScratchDatabase& scratch)
{
    QSqlQuery query(scratch.db());
    if (!query.exec(QStringLiteral("SELECT current_schema()")) || !query.next())
        return {};
    QUrl url(LoaderTest::postgresUrl());
    url.setQuery(QStringLiteral("options=-csearch_path%3D") + query.value(0).toString());
    return url.toString(QUrl::FullyEncoded);
}

QStringList loadArgs(const QString& url, const QString& role)
{
    return {QStringLiteral("load-standard"),
            QStringLiteral("--database"),
            url,
            QStringLiteral("--reader-role"),
            role,
            LoaderTest::schemaSql(),
            LoaderTest::dataSql()};
}

// Each right of `role` as "object: privileges", from the server's own access checks.
QStringList rights(QSqlDatabase& db, const QString& role)
{
    QSqlQuery query(db);
    query.prepare(QStringLiteral(
        "WITH r AS (SELECT CAST(:role AS name) AS role) "
        "SELECT 'role: ' || rolsuper || rolinherit || rolcreaterole || rolcreatedb || "
        "rolcanlogin || rolreplication || rolbypassrls FROM r, pg_roles WHERE rolname = r.role "
        "UNION ALL SELECT 'member of ' || b.rolname FROM r, pg_auth_members m JOIN pg_roles b ON "
        "b.oid = m.roleid JOIN pg_roles u ON u.oid = m.member WHERE u.rolname = r.role "
        "UNION ALL SELECT 'database: ' || has_database_privilege(r.role, current_database(), "
        "'CONNECT') || has_database_privilege(r.role, current_database(), 'CREATE') || "
        "has_database_privilege(r.role, current_database(), 'TEMPORARY') FROM r "
        "UNION ALL SELECT 'schema: ' || has_schema_privilege(r.role, current_schema(), 'USAGE') "
        "|| has_schema_privilege(r.role, current_schema(), 'CREATE') FROM r "
        "UNION ALL SELECT 'table ' || c.relname || ': ' || has_table_privilege(r.role, c.oid, "
        "'SELECT') || has_table_privilege(r.role, c.oid, 'INSERT') || has_table_privilege(r.role, "
        "c.oid, 'UPDATE') || has_table_privilege(r.role, c.oid, 'DELETE') || "
        "has_table_privilege(r.role, c.oid, 'TRUNCATE') || has_table_privilege(r.role, c.oid, "
        "'REFERENCES') || has_table_privilege(r.role, c.oid, 'TRIGGER') || (c.relowner = (SELECT "
        "oid FROM pg_roles WHERE rolname = r.role)) FROM r, pg_class c WHERE c.relnamespace = "
        "CAST(current_schema() AS regnamespace) AND c.relkind = 'r' "
        "ORDER BY 1"));
    query.bindValue(QStringLiteral(":role"), role);
    QStringList lines;
    if (!query.exec())
        return {query.lastError().text()};
    while (query.next())
        lines.append(query.value(0).toString());
    return lines;
}

// What the reader role of a loaded example schema may do: log in, connect, use the schema and
// read the five tables; the other table of the schema stays closed to it.
const QStringList kReaderRights = {
    QStringLiteral("database: truefalsefalse"),
    QStringLiteral("role: falsefalsefalsefalsetruefalsefalse"),
    QStringLiteral("schema: truefalse"),
    QStringLiteral("table bddic: truefalsefalsefalsefalsefalsefalsefalse"),
    QStringLiteral("table bdkv: truefalsefalsefalsefalsefalsefalsefalse"),
    QStringLiteral("table bdmenus: truefalsefalsefalsefalsefalsefalsefalse"),
    QStringLiteral("table bdvincl: truefalsefalsefalsefalsefalsefalsefalse"),
    QStringLiteral("table custom_properties: truefalsefalsefalsefalsefalsefalsefalse"),
    QStringLiteral("table kv_other: falsefalsefalsefalsefalsefalsefalsefalse"),
};

} // namespace

class tst_LoaderReader : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        if (LoaderTest::postgresUrl().isEmpty() &&
            QByteArray(QTest::currentTestFunction()) != "noRoleOnSqlite")
            QSKIP("KV_TEST_PGURL is not set: no PostgreSQL server to run this test against "
                  "(scripts/test.sh starts a throw-away one)");
    }

    void cleanup()
    {
        if (LoaderTest::postgresUrl().isEmpty() || m_roles.isEmpty())
            return;
        ScratchDatabase admin(ScratchDatabase::Kind::Postgres);
        for (const QString& role : std::as_const(m_roles)) {
            QSqlQuery query(admin.db());
            query.exec(QStringLiteral("DROP OWNED BY %1").arg(role));
            query.exec(QStringLiteral("DROP ROLE IF EXISTS %1").arg(role));
        }
        m_roles.clear();
    }

    void roleHasExactlyTheReadRights()
    {
        ScratchDatabase scratch(ScratchDatabase::Kind::Postgres);
        QVERIFY2(scratch.isReady(), qPrintable(scratch.error()));
        QSqlQuery other(scratch.db());
        QVERIFY(other.exec(QStringLiteral("CREATE TABLE KV_OTHER (A INTEGER)")));
        const QString role = uniqueName("kv_loader_reader_");
        m_roles.append(role);

        const Run run = runProgram(loadArgs(schemaUrl(scratch), role));
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        QCOMPARE(run.err, QString());
        QVERIFY2(run.out.contains(QStringLiteral("  reader role: %1 (created), may read bddic, "
                                                 "bdkv, bdmenus, bdvincl, custom_properties and "
                                                 "nothing else\n")
                                      .arg(role)),
                 qPrintable(run.out));
        QVERIFY2(run.out.contains(QStringLiteral("    created the login role %1\n").arg(role)),
                 qPrintable(run.out));
        QCOMPARE(rights(scratch.db(), role), kReaderRights);
        const PostgresRolePrivileges::Report report =
            PostgresRolePrivileges::check(scratch.db(), role, StandardLoader::standardTables());
        QCOMPARE(report.error, QString());
        QCOMPARE(report.excess, QStringList());
        QCOMPARE(report.missing, QStringList());

        // The printed URL is the one the module connects with.
        const QString printed = QStringLiteral("  run the module as that role: --database ");
        const qsizetype at = run.out.indexOf(printed);
        QVERIFY(at >= 0);
        const QString url = run.out.mid(at + printed.size()).section(u'\n', 0, 0);
        QCOMPARE(url, ReaderRole::connectionUrl(schemaUrl(scratch), role));
        const Run import =
            runProgram({QStringLiteral("import"), QStringLiteral("--settings"),
                        QStringLiteral(KV_SOURCE_DIR "/examples/settings/example.cfa"),
                        QStringLiteral("--sheet"),
                        QStringLiteral(KV_SOURCE_DIR "/examples/sheets/example.xlsx"),
                        QStringLiteral("--database"), url});
        QVERIFY2(import.exitCode == 0, qPrintable(import.err));
        QVERIFY(import.out.contains(QStringLiteral("\"key\": \"1014\"")));
    }

    void loadingAgainKeepsTheRights()
    {
        ScratchDatabase scratch(ScratchDatabase::Kind::Postgres);
        QVERIFY2(scratch.isReady(), qPrintable(scratch.error()));
        QSqlQuery other(scratch.db());
        QVERIFY(other.exec(QStringLiteral("CREATE TABLE KV_OTHER (A INTEGER)")));
        const QString role = uniqueName("kv_loader_reader_");
        m_roles.append(role);
        const QString url = schemaUrl(scratch);

        Run run = runProgram(loadArgs(url, role));
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        QCOMPARE(rights(scratch.db(), role), kReaderRights);
        QStringList again = loadArgs(url, role);
        again.insert(1, QStringLiteral("--drop"));
        run = runProgram(again);
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        QVERIFY2(run.out.contains(QStringLiteral("reader role: %1 (already there)").arg(role)),
                 qPrintable(run.out));
        QVERIFY2(run.out.contains(QStringLiteral("    granted SELECT on bdkv\n")),
                 qPrintable(run.out));
        QCOMPARE(rights(scratch.db(), role), kReaderRights);

        // Through the library, without --drop: the tables are already readable, nothing changes.
        StandardLoader loader(scratch.db(), QStringLiteral("again"));
        loader.setReaderRole(role);
        const StandardLoadResult result =
            loader.load({LoaderTest::exampleFile(QStringLiteral("standard/schema.sql"))});
        // The schema script creates the tables, so a third load without --drop fails and
        // rolls back: the role keeps what it had.
        QVERIFY(!result.ok);
        QCOMPARE(rights(scratch.db(), role), kReaderRights);
        StandardLoader dropping(scratch.db(), QStringLiteral("again"));
        dropping.setReaderRole(role);
        dropping.setDropExisting(true);
        const StandardLoadResult reloaded =
            dropping.load({LoaderTest::schemaSql(), LoaderTest::dataSql()});
        QVERIFY2(reloaded.ok, qPrintable(reloaded.error));
        QVERIFY(!reloaded.readerRoleCreated);
        QCOMPARE(reloaded.readerRole, role);
        QCOMPARE(rights(scratch.db(), role), kReaderRights);
    }

    void loadsAtTheSameTime_data()
    {
        QTest::addColumn<bool>("separateDatabases");
        QTest::newRow("two schemas of one database") << false;
        QTest::newRow("two databases") << true;
    }

    void loadsAtTheSameTime()
    {
        QFETCH(bool, separateDatabases);
        // Each round a new role, so that both loads try to create it.
        for (int round = 0; round < 3; ++round) {
            const QString role = uniqueName("kv_loader_reader_");
            m_roles.append(role);
            ScratchDatabase first(ScratchDatabase::Kind::Postgres);
            ScratchDatabase second(ScratchDatabase::Kind::Postgres);
            QVERIFY2(first.isReady() && second.isReady(), qPrintable(first.error()));
            QStringList urls = {schemaUrl(first), schemaUrl(second)};
            QString database;
            if (separateDatabases) {
                database = uniqueName("kv_loader_db_");
                QSqlQuery create(first.db());
                QVERIFY2(create.exec(QStringLiteral("CREATE DATABASE %1").arg(database)),
                         qPrintable(create.lastError().text()));
                QUrl other(LoaderTest::postgresUrl());
                other.setPath(u'/' + database);
                urls[1] = other.toString(QUrl::FullyEncoded);
            }
            QProcess* a = startProgram(loadArgs(urls.at(0), role));
            QProcess* b = startProgram(loadArgs(urls.at(1), role));
            const Run ra = finish(a);
            const Run rb = finish(b);
            QVERIFY2(ra.exitCode == 0, qPrintable(ra.err));
            QVERIFY2(rb.exitCode == 0, qPrintable(rb.err));
            // One of the two made the role, the other found it.
            QCOMPARE(int(ra.out.contains(QStringLiteral("(created)"))) +
                         int(rb.out.contains(QStringLiteral("(created)"))),
                     1);
            QStringList expected = kReaderRights;
            expected.removeLast(); // no KV_OTHER here
            QCOMPARE(rights(first.db(), role), expected);
            if (separateDatabases) {
                QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), database);
                const QUrl url(urls.at(1));
                other.setHostName(url.host());
                other.setPort(url.port(5432));
                other.setDatabaseName(database);
                other.setUserName(url.userName());
                QVERIFY(other.open());
                QStringList rightsThere = rights(other, role);
                QCOMPARE(rightsThere.size(), expected.size());
                QCOMPARE(rightsThere.first(), expected.first());
                {
                    QSqlQuery drop(other);
                    drop.exec(QStringLiteral("DROP OWNED BY %1").arg(role));
                }
                other.close();
                other = QSqlDatabase();
                QSqlDatabase::removeDatabase(database);
                QSqlQuery drop(first.db());
                QVERIFY2(drop.exec(QStringLiteral("DROP DATABASE %1").arg(database)),
                         qPrintable(drop.lastError().text()));
            } else {
                QCOMPARE(rights(second.db(), role), expected);
            }
        }
    }

    // A load into a database whose trigram extension another load is creating, uncommitted:
    // the extension belongs to the database, so the load waits for the other one's turn and
    // then finds the extension, instead of failing on it. The other load is played by the test,
    // which holds the loaders' lock while it creates the extension.
    void trigramExtensionMadeOnceByTwoLoads()
    {
        ScratchDatabase admin(ScratchDatabase::Kind::Postgres);
        QVERIFY2(admin.isReady(), qPrintable(admin.error()));
        const QString role = uniqueName("kv_loader_reader_");
        m_roles.append(role);
        const QString database = uniqueName("kv_loader_db_");
        QSqlQuery create(admin.db());
        QVERIFY2(create.exec(QStringLiteral("CREATE DATABASE %1").arg(database)),
                 qPrintable(create.lastError().text()));
        QUrl url(LoaderTest::postgresUrl());
        url.setPath(u'/' + database);
        Run run;
        {
            QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), database);
            other.setHostName(url.host());
            other.setPort(url.port(5432));
            other.setDatabaseName(database);
            other.setUserName(url.userName());
            QVERIFY2(other.open(), qPrintable(other.lastError().text()));
            QSqlQuery step(other);
            QVERIFY(step.exec(QStringLiteral("CREATE SCHEMA a")));
            QVERIFY(other.transaction());
            QVERIFY(step.exec(QStringLiteral("SELECT pg_advisory_xact_lock(%1)")
                                  .arg(StandardLoader::TrigramLockKey)));
            QVERIFY2(step.exec(QStringLiteral("CREATE EXTENSION pg_trgm")),
                     qPrintable(step.lastError().text()));

            url.setQuery(QStringLiteral("options=-csearch_path%3Da"));
            QProcess* load = startProgram(loadArgs(url.toString(QUrl::FullyEncoded), role));
            // The load is waiting once its session waits for a lock.
            QSqlQuery waiting(admin.db());
            const bool waits = QTest::qWaitFor(
                [&]() {
                    return waiting.exec(QStringLiteral("SELECT count(*) FROM pg_stat_activity "
                                                       "WHERE datname = '%1' AND "
                                                       "wait_event_type = 'Lock'")
                                            .arg(database)) &&
                           waiting.next() && waiting.value(0).toInt() > 0;
                },
                60000);
            QVERIFY(other.commit());
            run = finish(load);
            QVERIFY(waits);
            other.close();
        }
        QSqlDatabase::removeDatabase(database);
        QSqlQuery drop(admin.db());
        QVERIFY2(drop.exec(QStringLiteral("DROP DATABASE %1").arg(database)),
                 qPrintable(drop.lastError().text()));

        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        QVERIFY2(!run.err.contains(QStringLiteral("pg_trgm")), qPrintable(run.err));
        QVERIFY2(run.out.contains(QStringLiteral("kv_custom_properties_value_trgm")),
                 qPrintable(run.out));
    }

    void roleThatMayDoMoreIsRefused_data()
    {
        QTest::addColumn<QString>("setUp");
        QTest::addColumn<QString>("problem");
        QTest::newRow("superuser")
            << QStringLiteral("CREATE ROLE @ROLE@ LOGIN SUPERUSER") << QStringLiteral("superuser");
        QTest::newRow("server files")
            << QStringLiteral("CREATE ROLE @ROLE@ LOGIN IN ROLE pg_read_server_files")
            << QStringLiteral("member of pg_read_server_files");
        QTest::newRow("createdb") << QStringLiteral("CREATE ROLE @ROLE@ LOGIN CREATEDB")
                                  << QStringLiteral("CREATEDB");
    }

    void roleThatMayDoMoreIsRefused()
    {
        QFETCH(QString, setUp);
        QFETCH(QString, problem);
        ScratchDatabase scratch(ScratchDatabase::Kind::Postgres);
        QVERIFY2(scratch.isReady(), qPrintable(scratch.error()));
        const QString role = uniqueName("kv_loader_reader_");
        m_roles.append(role);
        QSqlQuery query(scratch.db());
        QVERIFY2(query.exec(setUp.replace(QStringLiteral("@ROLE@"), role)),
                 qPrintable(query.lastError().text()));
        const Run run = runProgram(loadArgs(schemaUrl(scratch), role));
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.err.contains(QStringLiteral(": reader role %1: exists and may do more than "
                                                 "read the standard (%2); name another role with "
                                                 "--reader-role")
                                      .arg(role, problem)),
                 qPrintable(run.err));
        QCOMPARE(run.out, QString());
        // Rolled back: no table, no right.
        QCOMPARE(scratch.rowCount(QStringLiteral("BDKV")), -1);
        QVERIFY(!rights(scratch.db(), role).contains(QStringLiteral("schema: truefalse")));
    }

    void theLoadingRoleIsRefused()
    {
        ScratchDatabase scratch(ScratchDatabase::Kind::Postgres);
        QVERIFY2(scratch.isReady(), qPrintable(scratch.error()));
        const QString self = QUrl(LoaderTest::postgresUrl()).userName();
        const Run run = runProgram(loadArgs(schemaUrl(scratch), self));
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.err.contains(QStringLiteral(": reader role %1: it is the role that loads the "
                                                 "standard, which may write")
                                      .arg(self)),
                 qPrintable(run.err));
        QCOMPARE(scratch.rowCount(QStringLiteral("BDKV")), -1);
    }

    void badRoleNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("upper case") << QStringLiteral("Reader");
        QTest::newRow("quote") << QStringLiteral("reader\"; DROP ROLE kvtest; --");
        QTest::newRow("blank") << QStringLiteral("the reader");
        QTest::newRow("too long") << QString(64, u'r');
        QTest::newRow("empty") << QString();
    }

    void badRoleNames()
    {
        QFETCH(QString, name);
        const Run run = runProgram({QStringLiteral("load-standard"), QStringLiteral("--database"),
                                    LoaderTest::postgresUrl(), QStringLiteral("--reader-role"),
                                    name, LoaderTest::schemaSql()});
        QCOMPARE(run.exitCode, 2);
        QVERIFY2(run.err.contains(QStringLiteral("not a plain lower-case name")),
                 qPrintable(run.err));
        QVERIFY(!ReaderRole::isValidName(name));
    }

    void noRoleOnSqlite()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("standard.db"));
        const Run run = runProgram(loadArgs(path, QStringLiteral("kv_unused_reader")));
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        QVERIFY2(!run.out.contains(QStringLiteral("reader role")), qPrintable(run.out));
    }

private:
    QStringList m_roles;
};

QTEST_GUILESS_MAIN(tst_LoaderReader)
#include "tst_loader_reader.moc"
