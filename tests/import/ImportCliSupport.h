#pragma once

// Shared pieces of the tests that run the import through the command-line program: the
// example's files, the program itself, and the example standard loaded by its load-standard
// verb into SQLite or into a PostgreSQL database of the test's own.

#include "../common/ProgramRun.h"

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QUuid>

namespace ImportCli {

// The connection that creates and drops the test's own PostgreSQL database.
inline const QString kAdminConnection = QStringLiteral("admin");

inline QString example(const QString& relative)
{
    return QStringLiteral(KV_SOURCE_DIR "/examples/") + relative;
}

// A run of the command-line program; a drawing under the sanitizers takes a while.
inline ProgramRun::Result runProgram(const QStringList& arguments)
{
    ProgramRun::Options options;
    options.timeoutMs = 180000;
    return ProgramRun::run(QStringLiteral(KV_CLI_PROGRAM), arguments, options);
}

// Loads the example standard into `database`; returns the program's error text, empty when it
// loaded. `readerRole`: on PostgreSQL, the role that may only read the standard (see
// load-standard).
inline QString loadStandard(const QString& database, const QString& readerRole = QString())
{
    QStringList args = {QStringLiteral("load-standard"), QStringLiteral("--database"), database};
    if (!readerRole.isEmpty())
        args += {QStringLiteral("--reader-role"), readerRole};
    const ProgramRun::Result run = runProgram(
        args + QStringList{example("standard/schema.sql"), example("standard/data.sql")});
    return run.exitCode == 0 ? QString() : run.errText();
}

// A PostgreSQL database of the test's own, so that nothing else on the server is seen or
// touched, with the example standard loaded as the server's user and the role that may only
// read it (see load-standard).
struct ReaderDatabase
{
    QString name;
    QString readerRole;
    QString readerUrl; // connects as the reader role, as the module does
    QString error;     // empty when the database is ready
};

// Creates the database, named `prefix` and a unique id, on the server of `serverUrl`; the
// connection that made it stays for dropDatabase().
inline ReaderDatabase createReaderDatabase(const QString& serverUrl, const QString& prefix)
{
    ReaderDatabase made;
    const QUrl server(serverUrl);
    made.name = prefix + QUuid::createUuid().toString(QUuid::Id128).left(12);
    made.readerRole = made.name + QStringLiteral("_reader");
    QSqlDatabase admin = QSqlDatabase::addDatabase(QStringLiteral("QPSQL"), kAdminConnection);
    admin.setHostName(server.host());
    admin.setPort(server.port(5432));
    admin.setUserName(server.userName());
    admin.setPassword(server.password());
    admin.setDatabaseName(server.path().mid(1));
    if (!admin.open()) {
        made.error = admin.lastError().text();
        return made;
    }
    QSqlQuery create(admin);
    if (!create.exec(QStringLiteral("CREATE DATABASE %1").arg(made.name))) {
        made.error = create.lastError().text();
        return made;
    }
    QUrl own(server);
    own.setPath(u'/' + made.name);
    made.error = loadStandard(own.toString(), made.readerRole);
    own.setUserName(made.readerRole);
    own.setPassword({});
    made.readerUrl = own.toString();
    return made;
}

// Drops what createReaderDatabase() made.
inline void dropDatabase(const ReaderDatabase& database)
{
    if (database.name.isEmpty() || !QSqlDatabase::contains(kAdminConnection))
        return;
    {
        QSqlDatabase admin = QSqlDatabase::database(kAdminConnection);
        QSqlQuery(admin).exec(QStringLiteral("DROP DATABASE IF EXISTS %1").arg(database.name));
        QSqlQuery(admin).exec(QStringLiteral("DROP ROLE IF EXISTS %1").arg(database.readerRole));
        admin.close();
    }
    QSqlDatabase::removeDatabase(kAdminConnection);
}

} // namespace ImportCli
