#pragma once

#include "ReaderRole.h"

#include <QList>
#include <QPair>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

namespace RefHost {

// One statement of an SQL script, starting at its first character that is not blank or comment.
struct SqlStatement
{
    QString text;
    int line = 0; // 1-based line of the statement's first character
};

// An SQL script cut into statements, or the reason it could not be.
struct SqlScript
{
    QList<SqlStatement> statements;
    QString error; // empty when the script was split
    int errorLine = 0;
};

// What a load did, or the one-line reason it did nothing.
struct StandardLoadResult
{
    bool ok = false;
    QString error; // "FILE:LINE: problem", "FILE: problem" or "DATABASE: problem"
    QStringList warnings;
    int statementCount = 0;
    QStringList createdIndexes;
    QList<QPair<QString, int>> tableRows; // each standard table present, with its row count
    // PostgreSQL: the login role that may only read the standard, set up by the load.
    QString readerRole;
    bool readerRoleCreated = false;
    QStringList readerChanges; // what was created, granted or revoked for it
    QStringList readerTables;  // the tables it may read
    QString readerUrl;         // the database's URL with that role as its user (loadDatabase)
};

// Loads a standard's database from SQL scripts: runs every statement of the scripts in one
// transaction, refuses associations that form a cycle, creates the indexes that the module's
// statements use, and updates the planner statistics. On any failure the transaction is rolled
// back, so the database is left as it was.
class StandardLoader final
{
public:
    // Loads into `db`, which must be open (SQLite or PostgreSQL); `description` names the
    // database in messages.
    StandardLoader(QSqlDatabase db, QString description);

    // Drop the standard's five tables before the scripts run (inside the same transaction).
    void setDropExisting(bool drop) { m_dropExisting = drop; }
    // PostgreSQL: the login role that the load sets up to read the standard and nothing else
    // (RefHost::ReaderRole), ReaderRole::defaultName() unless set; empty for none. SQLite has no
    // roles: the module opens the file read-only.
    void setReaderRole(const QString& role) { m_readerRole = role; }

    StandardLoadResult load(const QStringList& scriptPaths);

    // Opens `spec` for writing (an SQLite file, created when missing, or a postgresql:// URL),
    // loads the scripts (setting up `readerRole` on PostgreSQL) and closes the connection. A new
    // SQLite file is removed again when the load fails.
    static StandardLoadResult loadDatabase(const QString& spec, const QStringList& scriptPaths,
                                           bool dropExisting,
                                           const QString& readerRole = ReaderRole::defaultName());

    // Cuts a script at every ";" outside quoted texts and names, comments and dollar-quoted
    // bodies. Pieces holding only blanks and comments are dropped; a last statement without a
    // closing ";" is kept.
    static SqlScript splitScript(const QString& script);

    // The first cycle among the associations (owner, associated), as the keys along it with the
    // first key repeated at the end; empty when there is none. Owners are tried in ascending
    // order and each owner's associations in the order given.
    static QStringList findCycle(const QList<QPair<QString, QString>>& associations);

    // The deepest association levels a standard may hold: a component, the components it
    // brings, theirs, and so on. The module follows the chain by recursion with no limit of
    // its own; real standards go two or three levels deep.
    static constexpr int MaxAssociationLevels = 32;

    // The key of the PostgreSQL advisory lock under which a load creates the trigram extension,
    // held to the end of the load's transaction, so that loads into one database take turns
    // ("KVTRGM" in ASCII).
    static constexpr qint64 TrigramLockKey = 0x4b565452474d;

    // The longest chain of associations (owner, associated) as its keys from the first owner to
    // the last associated component (levels = keys - 1); empty when there are none. The
    // associations must not form a cycle (findCycle first). Of equally long chains, the one
    // from the smallest first key, then the one following the smallest keys, is answered.
    static QStringList deepestChain(const QList<QPair<QString, QString>>& associations);

    // The standard's tables, in the order they are created.
    static const QStringList& standardTables();

private:
    struct Index
    {
        QString name;
        QString table;
        QString definition; // what follows "ON table"
        QStringList requiredColumns;
    };

    QString runStatement(const QString& sql) const;
    bool tableExists(const QString& table) const;
    bool hasColumns(const QString& table, const QStringList& columns) const;
    QString checkAssociations(const QString& scriptPath) const;
    QString createIndexes(StandardLoadResult& result) const;
    QList<Index> indexes() const;
    bool isPostgres() const;

    QSqlDatabase m_db;
    QString m_description;
    bool m_dropExisting = false;
    QString m_readerRole;
};

} // namespace RefHost
