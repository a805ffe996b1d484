#include "StandardLoader.h"

#include "DatabaseConnection.h"
#include "ReaderRole.h"

#include <QAtomicInt>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QStringDecoder>
#include <QUrl>
#include <QUrlQuery>

#include <algorithm>

namespace RefHost {

namespace {

const QString kBdvincl = QStringLiteral("BDVINCL");
const QString kCustomProperties = QStringLiteral("CUSTOM_PROPERTIES");

// The first line of a database error, without the server's severity word: PostgreSQL adds the
// statement and a caret on further lines, which do not fit a one-line message.
QString oneLineError(const QSqlError& error)
{
    QString text = error.databaseText().trimmed();
    if (text.isEmpty())
        text = error.driverText().trimmed();
    text = text.section(u'\n', 0, 0).trimmed();
    if (text.startsWith(QLatin1String("ERROR:")))
        text = text.mid(6).trimmed();
    return text.simplified();
}

// True for the statements that would end or nest the loader's own transaction.
bool isTransactionControl(const QString& statement)
{
    static const QSet<QString> words = {QStringLiteral("BEGIN"), QStringLiteral("COMMIT"),
                                        QStringLiteral("END"),   QStringLiteral("ROLLBACK"),
                                        QStringLiteral("START"), QStringLiteral("ABORT")};
    qsizetype end = 0;
    while (end < statement.size() && statement.at(end).isLetter())
        ++end;
    return words.contains(statement.left(end).toUpper());
}

bool isIdentifierChar(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c == u'$';
}

// The dollar-quote tag that starts at `pos` ("$$" or "$name$"), or empty when there is none.
QString dollarTag(const QString& text, qsizetype pos)
{
    if (pos > 0 && isIdentifierChar(text.at(pos - 1)))
        return {};
    qsizetype end = pos + 1;
    while (end < text.size() && (text.at(end).isLetter() || text.at(end) == u'_' ||
                                 (end > pos + 1 && text.at(end).isDigit())))
        ++end;
    if (end < text.size() && text.at(end) == u'$')
        return text.mid(pos, end - pos + 1);
    return {};
}

QString nextConnectionName()
{
    static QAtomicInt counter;
    return QStringLiteral("kv-standard-loader-%1").arg(counter.fetchAndAddRelaxed(1) + 1);
}

// "FILE:LINE: problem", put together without placeholders, which a path may contain.
QString atLine(const QString& path, int line, const QString& problem)
{
    return path + u':' + QString::number(line) + QLatin1String(": ") + problem;
}

struct ScriptFile
{
    QString path;
    QList<SqlStatement> statements;
};

// Reads and splits one script; the error names the file (and the line where it applies).
QString readScript(const QString& path, ScriptFile& script)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("%1: cannot be read: %2").arg(path, file.errorString());
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return QStringLiteral("%1: cannot be read: %2").arg(path, file.errorString());
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return QStringLiteral("%1: is not UTF-8 text").arg(path);
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    const SqlScript split = StandardLoader::splitScript(text);
    if (!split.error.isEmpty())
        return atLine(path, split.errorLine, split.error);
    script.path = path;
    script.statements = split.statements;
    return {};
}

// The associations (owner, associated) as a graph: each owner's associated keys in the order
// given, and the owners in ascending order.
struct AssociationGraph
{
    explicit AssociationGraph(const QList<QPair<QString, QString>>& associations)
    {
        for (const auto& [owner, associated] : associations) {
            if (!next.contains(owner))
                owners.append(owner);
            next[owner].append(associated);
        }
        std::sort(owners.begin(), owners.end());
    }

    QHash<QString, QStringList> next;
    QStringList owners;
};

} // namespace

StandardLoader::StandardLoader(QSqlDatabase db, QString description)
    : m_db(std::move(db)), m_description(std::move(description)),
      m_readerRole(ReaderRole::defaultName())
{
    if (m_description.isEmpty())
        m_description = m_db.databaseName();
}

const QStringList& StandardLoader::standardTables()
{
    static const QStringList tables = {QStringLiteral("BDKV"), QStringLiteral("BDMENUS"),
                                       QStringLiteral("BDDIC"), kCustomProperties, kBdvincl};
    return tables;
}

SqlScript StandardLoader::splitScript(const QString& script)
{
    SqlScript result;
    int line = 1;
    qsizetype start = -1; // first character of the current statement
    int startLine = 0;
    const qsizetype size = script.size();

    auto beginStatement = [&](qsizetype pos) {
        if (start < 0) {
            start = pos;
            startLine = line;
        }
    };
    auto endStatement = [&](qsizetype end) {
        if (start >= 0)
            result.statements.append({script.mid(start, end - start).trimmed(), startLine});
        start = -1;
    };
    // Skips a quoted run that began at `pos` with `quote`; a doubled quote stays inside.
    auto skipQuoted = [&](qsizetype pos, QChar quote, const QString& what) -> qsizetype {
        const int openedOn = line;
        for (qsizetype i = pos + 1; i < size; ++i) {
            const QChar c = script.at(i);
            if (c == u'\n')
                ++line;
            if (c == quote) {
                if (i + 1 < size && script.at(i + 1) == quote) {
                    ++i;
                    continue;
                }
                return i + 1;
            }
        }
        result.error = QStringLiteral("unterminated %1").arg(what);
        result.errorLine = openedOn;
        return -1;
    };

    qsizetype i = 0;
    while (i < size) {
        const QChar c = script.at(i);
        const QChar next = i + 1 < size ? script.at(i + 1) : QChar();
        if (c == u'\n') {
            ++line;
            ++i;
        } else if (c.isSpace()) {
            ++i;
        } else if (c == u'-' && next == u'-') {
            while (i < size && script.at(i) != u'\n')
                ++i;
        } else if (c == u'/' && next == u'*') {
            const int openedOn = line;
            const qsizetype close = script.indexOf(QLatin1String("*/"), i + 2);
            if (close < 0) {
                result.error = QStringLiteral("unterminated comment");
                result.errorLine = openedOn;
                return result;
            }
            line += int(QStringView(script).mid(i, close - i).count(u'\n'));
            i = close + 2;
        } else if (c == u'\'' || c == u'"') {
            beginStatement(i);
            i = skipQuoted(
                i, c, c == u'\'' ? QStringLiteral("quoted text") : QStringLiteral("quoted name"));
            if (i < 0)
                return result;
        } else if (c == u'$' && !dollarTag(script, i).isEmpty()) {
            beginStatement(i);
            const QString tag = dollarTag(script, i);
            const qsizetype close = script.indexOf(tag, i + tag.size());
            if (close < 0) {
                result.error = QStringLiteral("unterminated dollar-quoted text");
                result.errorLine = line;
                return result;
            }
            line += int(QStringView(script).mid(i, close - i).count(u'\n'));
            i = close + tag.size();
        } else if (c == u';') {
            endStatement(i);
            ++i;
        } else {
            beginStatement(i);
            ++i;
        }
    }
    endStatement(size);
    return result;
}

QStringList StandardLoader::findCycle(const QList<QPair<QString, QString>>& associations)
{
    const AssociationGraph graph(associations);
    const QHash<QString, QStringList>& next = graph.next;
    const QStringList& owners = graph.owners;

    // Depth-first walk without recursion (a long chain must not exhaust the stack); a key seen
    // again while it is still on the walk's path closes a cycle.
    enum class Mark { OnPath, Done };
    QHash<QString, Mark> marks;
    for (const QString& root : std::as_const(owners)) {
        if (marks.contains(root))
            continue;
        QStringList path{root};
        QList<qsizetype> nextChild{0};
        marks.insert(root, Mark::OnPath);
        while (!path.isEmpty()) {
            const QStringList& children = next.value(path.last());
            qsizetype& child = nextChild.last();
            if (child >= children.size()) {
                marks.insert(path.takeLast(), Mark::Done);
                nextChild.removeLast();
                continue;
            }
            const QString key = children.at(child++);
            const auto mark = marks.constFind(key);
            if (mark == marks.cend()) {
                marks.insert(key, Mark::OnPath);
                path.append(key);
                nextChild.append(0);
            } else if (*mark == Mark::OnPath) {
                QStringList cycle = path.mid(path.indexOf(key));
                cycle.append(key);
                return cycle;
            }
        }
    }
    return {};
}

QStringList StandardLoader::deepestChain(const QList<QPair<QString, QString>>& associations)
{
    AssociationGraph graph(associations);
    for (QStringList& children : graph.next)
        std::sort(children.begin(), children.end());
    const QHash<QString, QStringList>& next = graph.next;
    const QStringList& owners = graph.owners;

    // Levels below each key, worked out after its children (a walk without recursion, as in
    // findCycle), and the child that leads deepest.
    QHash<QString, int> levels;
    QHash<QString, QString> deepest;
    for (const QString& root : std::as_const(owners)) {
        if (levels.contains(root))
            continue;
        QStringList path{root};
        while (!path.isEmpty()) {
            const QString key = path.last();
            const QStringList& children = next.value(key);
            bool waiting = false;
            for (const QString& child : children) {
                if (!levels.contains(child)) {
                    path.append(child);
                    waiting = true;
                    break;
                }
            }
            if (waiting)
                continue;
            int best = 0;
            for (const QString& child : children) {
                if (levels.value(child) + 1 > best) {
                    best = levels.value(child) + 1;
                    deepest.insert(key, child);
                }
            }
            levels.insert(key, best);
            path.removeLast();
        }
    }

    QString first;
    for (const QString& owner : std::as_const(owners)) {
        if (first.isEmpty() || levels.value(owner) > levels.value(first))
            first = owner;
    }
    if (first.isEmpty())
        return {};
    QStringList chain{first};
    while (deepest.contains(chain.last()))
        chain.append(deepest.value(chain.last()));
    return chain;
}

bool StandardLoader::isPostgres() const
{
    return m_db.driverName() == QLatin1String("QPSQL");
}

QString StandardLoader::runStatement(const QString& sql) const
{
    QSqlQuery query(m_db);
    if (!query.exec(sql))
        return oneLineError(query.lastError());
    return {};
}

bool StandardLoader::tableExists(const QString& table) const
{
    QSqlQuery query(m_db);
    if (isPostgres()) {
        // Unquoted names are folded to lower case, and the search path decides the schema.
        query.prepare(QStringLiteral("SELECT to_regclass(:name) IS NOT NULL"));
        query.bindValue(QStringLiteral(":name"), table.toLower());
    } else {
        query.prepare(QStringLiteral("SELECT count(*) > 0 FROM sqlite_master WHERE type = 'table'"
                                     " AND name = :name COLLATE NOCASE"));
        query.bindValue(QStringLiteral(":name"), table);
    }
    return query.exec() && query.next() && query.value(0).toBool();
}

bool StandardLoader::hasColumns(const QString& table, const QStringList& columns) const
{
    QSqlQuery query(m_db);
    if (!query.exec(QStringLiteral("SELECT * FROM %1 WHERE 1 = 0").arg(table)))
        return false;
    const QSqlRecord record = query.record();
    QStringList present;
    for (int i = 0; i < record.count(); ++i)
        present.append(record.fieldName(i).toUpper());
    return std::all_of(columns.cbegin(), columns.cend(),
                       [&](const QString& column) { return present.contains(column.toUpper()); });
}

// The module follows associations depth first with no record of the keys it has seen, so a
// cycle would make an insertion run forever, and it recurses once for every level: such data,
// and chains deeper than the stated limit, are refused here.
QString StandardLoader::checkAssociations(const QString& scriptPath) const
{
    if (!tableExists(kBdvincl))
        return {};
    QSqlQuery query(m_db);
    if (!query.exec(QStringLiteral("SELECT VL_KEY_A, VL_KEY_B FROM BDVINCL"
                                   " ORDER BY VL_KEY_A, VL_KEY_B"))) {
        return QStringLiteral("%1: BDVINCL cannot be read: %2")
            .arg(scriptPath, oneLineError(query.lastError()));
    }
    QList<QPair<QString, QString>> associations;
    while (query.next())
        associations.append({query.value(0).toString(), query.value(1).toString()});
    const QStringList cycle = findCycle(associations);
    if (!cycle.isEmpty()) {
        return QStringLiteral("%1: the associations in BDVINCL form a cycle: %2 (a component on "
                              "it would bring its associated components without end)")
            .arg(scriptPath, cycle.join(QLatin1String(" -> ")));
    }
    const QStringList chain = deepestChain(associations);
    const qsizetype levels = chain.size() - 1;
    if (levels <= MaxAssociationLevels)
        return {};
    // The chain is named by its ends: a deep chain written out whole would drown the message.
    return QStringLiteral("%1: the associations in BDVINCL go %2 levels deep, from %3 to %4; "
                          "the limit is %5 levels")
        .arg(scriptPath)
        .arg(levels)
        .arg(chain.first(), chain.last())
        .arg(MaxAssociationLevels);
}

// Expression indexes repeat the exact expressions of the module's statements, so that the
// planners of both databases match them without any change to the statements' text:
//   SELECT ... FROM CUSTOM_PROPERTIES WHERE RTRIM(LTRIM( ITEM_KEY )) = :key AND ITEM_TYPE IN
//   (0,1,2)
//   ... where ( LTRIM(RTRIM(TAG))='P' and LTRIM(RTRIM(VALUE)) like '%v%' ) or ...
//   SELECT * FROM BDKV WHERE KV_KEY='k' AND KV_KEY_NOR='s'
//   SELECT ... FROM BDMENUS WHERE MENU_KEY_LANG = :lang and MENU_KEY in (...)
//   SELECT VL_KEY_B, VL_QTDE FROM BDVINCL WHERE VL_KEY_A='k'
QList<StandardLoader::Index> StandardLoader::indexes() const
{
    return {
        {QStringLiteral("kv_bdkv_key_standard"),
         QStringLiteral("BDKV"),
         QStringLiteral("(KV_KEY, KV_KEY_NOR)"),
         {QStringLiteral("KV_KEY"), QStringLiteral("KV_KEY_NOR")}},
        {QStringLiteral("kv_bdmenus_lang_key"),
         QStringLiteral("BDMENUS"),
         QStringLiteral("(MENU_KEY_LANG, MENU_KEY)"),
         {QStringLiteral("MENU_KEY_LANG"), QStringLiteral("MENU_KEY")}},
        {QStringLiteral("kv_custom_properties_item_key"),
         kCustomProperties,
         QStringLiteral("((RTRIM(LTRIM( ITEM_KEY ))), ITEM_TYPE)"),
         {QStringLiteral("ITEM_KEY"), QStringLiteral("ITEM_TYPE")}},
        // The import's conditions look the tag up by the first expression (and an equal
        // value by the second); ITEM_KEY, TAG and VALUE make the index covering, so that the
        // "like" conditions, which read every row of their tag, never visit the table.
        {QStringLiteral("kv_custom_properties_tag_value"),
         kCustomProperties,
         QStringLiteral("((LTRIM(RTRIM(TAG))), (LTRIM(RTRIM(VALUE))), ITEM_KEY, TAG, VALUE)"),
         {QStringLiteral("TAG"), QStringLiteral("VALUE"), QStringLiteral("ITEM_KEY")}},
        {QStringLiteral("kv_bdvincl_key_a"),
         kBdvincl,
         QStringLiteral("(VL_KEY_A)"),
         {QStringLiteral("VL_KEY_A")}},
    };
}

QString StandardLoader::createIndexes(StandardLoadResult& result) const
{
    for (const Index& index : indexes()) {
        if (!tableExists(index.table))
            continue;
        if (!hasColumns(index.table, index.requiredColumns)) {
            result.warnings.append(QStringLiteral("%1: index %2 not created: %3 lacks one of the "
                                                  "columns %4")
                                       .arg(m_description, index.name, index.table,
                                            index.requiredColumns.join(QLatin1String(", "))));
            continue;
        }
        const QString error = runStatement(QStringLiteral("CREATE INDEX IF NOT EXISTS %1 ON %2 %3")
                                               .arg(index.name, index.table, index.definition));
        if (!error.isEmpty())
            return QStringLiteral("%1: creating index %2: %3")
                .arg(m_description, index.name, error);
        result.createdIndexes.append(index.name);
    }

    // The import's "like '%value%'" conditions cannot use a B-tree; on PostgreSQL a trigram
    // index serves them. Without the extension the load still succeeds, only slower.
    if (isPostgres() && tableExists(kCustomProperties) &&
        hasColumns(kCustomProperties, {QStringLiteral("VALUE")})) {
        runStatement(QStringLiteral("SAVEPOINT kv_trigram"));
        // The extension belongs to the database, not to a schema: two loads into one database
        // that both find it missing would both create it, and the second would fail. A lock
        // held to the end of the load's transaction makes them take turns.
        QString extensionError =
            runStatement(QStringLiteral("SELECT pg_advisory_xact_lock(%1)").arg(TrigramLockKey));
        if (extensionError.isEmpty())
            extensionError = runStatement(QStringLiteral("CREATE EXTENSION IF NOT EXISTS pg_trgm"));
        if (!extensionError.isEmpty()) {
            runStatement(QStringLiteral("ROLLBACK TO SAVEPOINT kv_trigram"));
            result.warnings.append(QStringLiteral("%1: the pg_trgm extension is not available "
                                                  "(%2): the like conditions are not indexed")
                                       .arg(m_description, extensionError));
        } else {
            runStatement(QStringLiteral("RELEASE SAVEPOINT kv_trigram"));
            // The extension may live in a schema outside the search path (it is installed once
            // per database), so its operator class is named with its schema.
            QSqlQuery schema(m_db);
            if (!schema.exec(QStringLiteral("SELECT quote_ident(n.nspname) FROM pg_extension e "
                                            "JOIN pg_namespace n ON n.oid = e.extnamespace "
                                            "WHERE e.extname = 'pg_trgm'")) ||
                !schema.next()) {
                return QStringLiteral("%1: the schema of pg_trgm cannot be read: %2")
                    .arg(m_description, oneLineError(schema.lastError()));
            }
            const QString name = QStringLiteral("kv_custom_properties_value_trgm");
            const QString error = runStatement(
                QStringLiteral("CREATE INDEX IF NOT EXISTS %1 ON CUSTOM_PROPERTIES USING GIN "
                               "((LTRIM(RTRIM(VALUE))) %2.gin_trgm_ops)")
                    .arg(name, schema.value(0).toString()));
            if (!error.isEmpty())
                return QStringLiteral("%1: creating index %2: %3").arg(m_description, name, error);
            result.createdIndexes.append(name);
        }
    }
    return {};
}

StandardLoadResult StandardLoader::load(const QStringList& scriptPaths)
{
    StandardLoadResult result;
    if (!m_db.isOpen()) {
        result.error = QStringLiteral("%1: the database is not open").arg(m_description);
        return result;
    }
    const QString driver = m_db.driverName();
    if (driver != QLatin1String("QSQLITE") && driver != QLatin1String("QPSQL")) {
        result.error =
            QStringLiteral("%1: unsupported database driver %2").arg(m_description, driver);
        return result;
    }
    if (scriptPaths.isEmpty()) {
        result.error = QStringLiteral("%1: no SQL file to load").arg(m_description);
        return result;
    }

    // Every script is read and split before the database is touched.
    QList<ScriptFile> scripts;
    for (const QString& path : scriptPaths) {
        ScriptFile script;
        result.error = readScript(path, script);
        if (!result.error.isEmpty())
            return result;
        for (const SqlStatement& statement : std::as_const(script.statements)) {
            if (isTransactionControl(statement.text)) {
                result.error = atLine(path, statement.line,
                                      QStringLiteral("transaction statements are not allowed: "
                                                     "the scripts are loaded in one transaction"));
                return result;
            }
        }
        scripts.append(script);
    }

    if (!m_db.transaction()) {
        result.error = QStringLiteral("%1: cannot start a transaction: %2")
                           .arg(m_description, oneLineError(m_db.lastError()));
        return result;
    }
    // PostgreSQL reports skipped drops and existing indexes as notices; they are not problems.
    if (isPostgres())
        runStatement(QStringLiteral("SET LOCAL client_min_messages = warning"));
    auto fail = [&](const QString& error) {
        m_db.rollback();
        StandardLoadResult failed;
        failed.error = error;
        return failed;
    };

    if (m_dropExisting) {
        QStringList tables = standardTables();
        std::reverse(tables.begin(), tables.end());
        for (const QString& table : std::as_const(tables)) {
            const QString error =
                runStatement(QStringLiteral("DROP TABLE IF EXISTS %1").arg(table));
            if (!error.isEmpty())
                return fail(QStringLiteral("%1: dropping %2: %3").arg(m_description, table, error));
        }
    }

    for (const ScriptFile& script : std::as_const(scripts)) {
        for (const SqlStatement& statement : script.statements) {
            const QString error = runStatement(statement.text);
            if (!error.isEmpty()) {
                return fail(atLine(script.path, statement.line, error));
            }
            ++result.statementCount;
        }
        const QString cycle = checkAssociations(script.path);
        if (!cycle.isEmpty())
            return fail(cycle);
    }

    if (const QString error = createIndexes(result); !error.isEmpty())
        return fail(error);
    // The role is set up in the load's transaction: a load that fails leaves no grant behind,
    // and a load that succeeds never leaves tables the role cannot read.
    if (isPostgres() && !m_readerRole.isEmpty()) {
        const ReaderRole::Result reader = ReaderRole::setUp(m_db, m_readerRole, standardTables());
        if (!reader.error.isEmpty())
            return fail(m_description + QLatin1String(": ") + reader.error);
        result.readerRole = m_readerRole;
        result.readerRoleCreated = reader.created;
        result.readerChanges = reader.changes;
        result.readerTables = reader.tables;
    }

    if (const QString error = runStatement(QStringLiteral("ANALYZE")); !error.isEmpty())
        return fail(QStringLiteral("%1: updating statistics: %2").arg(m_description, error));

    bool anyTable = false;
    for (const QString& table : standardTables()) {
        if (!tableExists(table))
            continue;
        anyTable = true;
        QSqlQuery count(m_db);
        if (count.exec(QStringLiteral("SELECT COUNT(*) FROM %1").arg(table)) && count.next())
            result.tableRows.append({table, count.value(0).toInt()});
    }
    if (!anyTable) {
        result.warnings.append(QStringLiteral("%1: none of the tables %2 exists after the load")
                                   .arg(m_description, standardTables().join(QLatin1String(", "))));
    }

    if (!m_db.commit()) {
        return fail(QStringLiteral("%1: cannot commit: %2")
                        .arg(m_description, oneLineError(m_db.lastError())));
    }
    result.ok = true;
    return result;
}

namespace {

// SQLite opens any file and finds out at the first statement that it is not a database; that
// is asked here, so that the message names the database and not the script whose statement
// met it. Empty when the file is a database.
QString notADatabase(const QSqlDatabase& db)
{
    QSqlQuery probe(db);
    if (probe.exec(QStringLiteral("SELECT COUNT(*) FROM sqlite_master")))
        return {};
    return QStringLiteral("not an SQLite database: ") + oneLineError(probe.lastError());
}

} // namespace

StandardLoadResult StandardLoader::loadDatabase(const QString& spec, const QStringList& scriptPaths,
                                                bool dropExisting, const QString& readerRole)
{
    StandardLoadResult result;
    const QString name = nextConnectionName();
    const bool postgres = DatabaseConnection::isPostgresUrl(spec);
    QString description = spec;
    bool createdFile = false;
    {
        QSqlDatabase db;
        if (postgres) {
            result.error =
                DatabaseConnection::addPostgresDatabase(spec, name, QString(), &description);
            if (!result.error.isEmpty())
                return result;
            db = QSqlDatabase::database(name, false);
        } else {
            const QFileInfo file(spec);
            if (file.exists() && !file.isFile()) {
                result.error = QStringLiteral("%1: not a database file").arg(spec);
                return result;
            }
            if (!file.absoluteDir().exists()) {
                result.error = QStringLiteral("%1: the folder does not exist").arg(spec);
                return result;
            }
            createdFile = !file.exists();
            db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
            db.setDatabaseName(file.absoluteFilePath());
        }

        if (!db.open()) {
            result.error = QStringLiteral("%1: cannot open the database: %2")
                               .arg(description, oneLineError(db.lastError()));
        } else if (QString damaged = postgres || createdFile ? QString() : notADatabase(db);
                   !damaged.isEmpty()) {
            result.error = description + QStringLiteral(": ") + damaged;
        } else {
            StandardLoader loader(db, description);
            loader.setDropExisting(dropExisting);
            loader.setReaderRole(readerRole);
            result = loader.load(scriptPaths);
            if (result.ok && !result.readerRole.isEmpty())
                result.readerUrl = ReaderRole::connectionUrl(spec, result.readerRole);
        }
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    if (!result.ok && createdFile)
        QFile::remove(spec);
    return result;
}

} // namespace RefHost
