#include "CliCommand.h"

#include "StandardLoader.h"

namespace {

const QString kUsage = QStringLiteral(
    "load-standard --database DB [--drop] [--reader-role NAME] FILE.sql...   "
    "(DB: an SQLite file or a postgresql:// URL; NAME: the PostgreSQL role that may only read "
    "the standard, kvinsertauto_reader by default)");

int loadStandard(const QStringList& args, QTextStream& out, QTextStream& err)
{
    QString database;
    bool drop = false;
    QString readerRole = RefHost::ReaderRole::defaultName();
    QStringList files;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args.at(i);
        if (arg == u"--database") {
            if (i + 1 >= args.size()) {
                err << "kvinsertauto load-standard: --database needs a value\n";
                return kExitBadInput;
            }
            database = args.at(++i);
        } else if (arg == u"--reader-role") {
            if (i + 1 >= args.size()) {
                err << "kvinsertauto load-standard: --reader-role needs a value\n";
                return kExitBadInput;
            }
            readerRole = args.at(++i);
            if (!RefHost::ReaderRole::isValidName(readerRole)) {
                err << "kvinsertauto load-standard: --reader-role " << readerRole
                    << ": not a plain lower-case name (letters, digits and \"_\", at most 63 "
                       "characters)\n";
                return kExitBadInput;
            }
        } else if (arg == u"--drop") {
            drop = true;
        } else if (arg == u"--help" || arg == u"-h") {
            out << "usage: kvinsertauto " << kUsage << "\n";
            return kExitOk;
        } else if (arg.startsWith(u"--")) {
            err << "kvinsertauto load-standard: unknown option " << arg << "\n"
                << "usage: kvinsertauto " << kUsage << "\n";
            return kExitBadInput;
        } else {
            files.append(arg);
        }
    }
    if (database.isEmpty() || files.isEmpty()) {
        err << "usage: kvinsertauto " << kUsage << "\n";
        return kExitBadInput;
    }

    const RefHost::StandardLoadResult result =
        RefHost::StandardLoader::loadDatabase(database, files, drop, readerRole);
    for (const QString& warning : result.warnings)
        err << "warning: " << warning << "\n";
    if (!result.ok) {
        err << result.error << "\n";
        return kExitBadInput;
    }
    out << "Loaded " << result.statementCount << " statements from " << files.size()
        << (files.size() == 1 ? " file" : " files") << "\n";
    for (const auto& [table, rows] : result.tableRows)
        out << "  " << table << ": " << rows << (rows == 1 ? " row" : " rows") << "\n";
    out << "  indexes: " << result.createdIndexes.join(QLatin1String(", ")) << "\n";
    if (!result.readerRole.isEmpty()) {
        out << "  reader role: " << result.readerRole
            << (result.readerRoleCreated ? " (created)" : " (already there)") << ", may read "
            << result.readerTables.join(QLatin1String(", ")) << " and nothing else\n";
        for (const QString& change : result.readerChanges)
            out << "    " << change << "\n";
        out << "  run the module as that role: --database " << result.readerUrl << "\n";
    }
    return kExitOk;
}

const CliCommandRegistration registration(CliCommand{QStringLiteral("load-standard"), kUsage,
                                                     loadStandard});

} // namespace
