// The "import" verb: the main dialog's "Import" without the dialog. The workbook that the
// host's file dialog would ask for is the --sheet argument; the tree is printed as the item
// tree JSON in the import's form (docs/tree-json.md, docs/import.md).
#include "ImportCommand.h"

#include "CliCommand.h"
#include "DatabaseConnection.h"
#include "FileChecks.h"
#include "SettingsInputCheck.h"
#include "StandardNames.h"

#include "host/HostBinding.h"
#include "host/Translate.h"
#include "import/CCImportarDados.h"
#include "import/CIExcel.h"
#include "maindialog/ItemTreeJson.h"
#include "settings/SettingsEncoding.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>
#include <optional>
#include <unistd.h>
#include <utility>

namespace CliImport {

namespace {

// The texts of the message boxes among what the host wrote to its error stream.
QStringList messageTexts(const QByteArray& written)
{
    QStringList texts;
    for (const QString& line : QString::fromUtf8(written).split(u'\n')) {
        for (const QString& prefix : {QStringLiteral("warning: "), QStringLiteral("critical: ")}) {
            if (line.startsWith(prefix))
                texts.append(line.mid(prefix.size()));
        }
    }
    return texts;
}

// Why the reader gave nothing although it showed no warning: the worksheet is missing, or
// there is no row below the column titles.
QString silentReadProblem(const QString& sheetPath)
{
    CIExcel workbook(sheetPath);
    if (workbook.error().isError())
        return workbook.error().message();
    const KVString sheet = QString::fromLatin1(CCImportarDados::kSheetName);
    if (!workbook.WorkSheetExists(sheet))
        return sheetPath + QStringLiteral(": no worksheet \"%1\"").arg(sheet);
    return sheetPath + QStringLiteral(": no rows below the column titles of row %1 of \"%2\"")
                           .arg(CCImportarDados().headerRow())
                           .arg(sheet);
}

// One line for an import that did not complete. `messages` are the texts of the message boxes
// the import showed, when the caller held them back; `messagesShown` says whether it showed
// any.
QString failureLine(const ItemImportResult& result, const QStringList& messages, bool messagesShown,
                    const QString& settingsPath, const QString& sheetPath)
{
    switch (result.outcome) {
    case ItemImportOutcome::Imported:
        return {};
    case ItemImportOutcome::MissingProperties:
        return settingsPath + QStringLiteral(": ") +
               ItemImport::missingPropertiesMessage(result.missingProperties);
    case ItemImportOutcome::Failed:
        return settingsPath + QStringLiteral(": the field lines do not match the columns read: ") +
               result.error;
    case ItemImportOutcome::NotRead:
        break;
    }
    if (!messagesShown)
        return silentReadProblem(sheetPath);
    const QString message = messages.value(0);
    if (message.isEmpty())
        return sheetPath + QStringLiteral(": no rows were imported (see the messages above)");
    // Without field lines there is no column to look for.
    if (message == kvTr("Error loading data from spreadsheet."))
        return settingsPath + QStringLiteral(": no field lines: ") + message;
    if (message.contains(sheetPath) || message.contains(QFileInfo(sheetPath).fileName()))
        return message;
    return sheetPath + QStringLiteral(": ") + message;
}

} // namespace

HeldErrorStream::HeldErrorStream()
{
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

QByteArray HeldErrorStream::release()
{
    m_holding = false;
    return std::exchange(m_held, QByteArray());
}

qint64 HeldErrorStream::writeData(const char* data, qint64 size)
{
    if (m_holding) {
        m_held.append(data, size);
        return size;
    }
    const size_t written = std::fwrite(data, 1, static_cast<size_t>(size), stderr);
    std::fflush(stderr);
    return static_cast<qint64>(written);
}

ImportSession::ImportSession() = default;
ImportSession::~ImportSession() = default;

QString checkImportFiles(const QString& settingsPath, const QString& sheetPath)
{
    for (const QString& path : {settingsPath, sheetPath}) {
        if (QString problem = FileChecks::readable(path); !problem.isEmpty())
            return problem;
    }
    return {};
}

QString importInto(RefHost::ReferenceHost& host, const QString& settingsPath,
                   const QString& sheetPath, CTVNodesUtil& tree, ImportDialogState& state,
                   HeldErrorStream* held)
{
    host.system().setFileDialogAnswers({sheetPath});
    const int messagesBefore = host.system().messageCount();
    if (held)
        held->hold();
    ItemImportResult result;
    {
        ScopedHostBinding bound(host.binding());
        ItemImport itemImport(tree, state);
        result = itemImport.run(settingsPath);
    }
    const QByteArray heldText = held ? held->release() : QByteArray();
    const QString problem =
        failureLine(result, messageTexts(heldText), host.system().messageCount() > messagesBefore,
                    settingsPath, sheetPath);
    // After a complete import, what was held back is not the failure's: it goes out as usual.
    if (problem.isEmpty() && held)
        held->write(heldText);
    return problem;
}

QString importSheet(RefHost::HostOptions options, const QString& settingsPath,
                    const QString& sheetPath, ImportSession& session)
{
    session.errorStream = std::make_unique<HeldErrorStream>();
    auto output = std::make_unique<QFile>();
    output->open(stdout, QIODevice::WriteOnly | QIODevice::Unbuffered);
    session.outputStream = std::move(output);
    session.console = std::make_unique<RefHost::Console>(
        session.outputStream.get(), session.errorStream.get(), ::isatty(::fileno(stderr)) == 1);
    options.console = session.console.get();

    RefHost::ReferenceHost::Created created = RefHost::ReferenceHost::create(std::move(options));
    if (!created.host)
        return created.error;
    session.host = std::move(created.host);
    session.tree = std::make_unique<CTVNodesUtil>();
    return importInto(*session.host, settingsPath, sheetPath, *session.tree, session.state,
                      session.errorStream.get());
}

} // namespace CliImport

namespace {

const QString kUsage = QStringLiteral(
    "import --settings S.cfa --sheet X.xlsx --database DB [--standard NAME] [--language N] "
    "[--trace FILE]");

struct ImportArguments
{
    QString settings;
    QString sheet;
    QString database;
    QString standard;
    QString language;
    QString trace;
};

const CliOption<ImportArguments> kOptions[] = {
    {"--settings", &ImportArguments::settings, true},
    {"--sheet", &ImportArguments::sheet, true},
    {"--database", &ImportArguments::database, true},
    {"--standard", &ImportArguments::standard, false},
    {"--language", &ImportArguments::language, false},
    {"--trace", &ImportArguments::trace, false},
};

std::optional<ImportArguments> parseArguments(const QStringList& args, QString* problem)
{
    return parseCliOptions(args, kOptions, problem);
}

// Without --standard: the only standard that BDKV names. The standard matters to the import
// only where the host looks a gap property up among a component's BDKV columns; a database
// without BDKV rows gets a name that matches none. A standard that is given must be one of the
// database's.
QString chooseStandard(const QString& database, const QString& given, QString* problem)
{
    const RefHost::DatabaseConnection::Opened opened = RefHost::DatabaseConnection::open(database);
    if (!opened.connection) {
        *problem = opened.error;
        return {};
    }
    if (!given.isEmpty()) {
        *problem = StandardNames::checkKnown(*opened.connection, given);
        return given;
    }
    QStringList standards = StandardNames::list(*opened.connection);
    if (standards.size() > 1) {
        *problem = opened.connection->description() +
                   QStringLiteral(": holds the standards %1; name one with --standard")
                       .arg(standards.join(QStringLiteral(", ")));
        return {};
    }
    return standards.isEmpty() ? QStringLiteral("(none)") : standards.first();
}

int importItems(const QStringList& args, QTextStream& out, QTextStream& err)
{
    if (args.contains(QStringLiteral("--help")) || args.contains(QStringLiteral("-h"))) {
        out << "usage: kvinsertauto " << kUsage << "\n";
        return kExitOk;
    }
    QString problem;
    const std::optional<ImportArguments> parsed = parseArguments(args, &problem);
    if (!parsed) {
        err << "kvinsertauto import: " << problem << " (see kvinsertauto --help)\n";
        return kExitBadInput;
    }
    const auto badInput = [&err](const QString& text) {
        err << "kvinsertauto import: " << text << "\n";
        return kExitBadInput;
    };
    if (!SettingsEncoding::fromEnvironment(&problem))
        return badInput(QStringLiteral("environment: ") + problem);
    if (problem = CliImport::checkImportFiles(parsed->settings, parsed->sheet); !problem.isEmpty())
        return badInput(problem);
    if (problem = SettingsInputCheck::check(parsed->settings); !problem.isEmpty())
        return badInput(problem);
    if (!parsed->trace.isEmpty() && QFileInfo(parsed->trace).isDir())
        return badInput(parsed->trace + QStringLiteral(": is a folder, not a file"));

    RefHost::HostOptions options;
    options.database = parsed->database;
    options.standard = chooseStandard(parsed->database, parsed->standard.trimmed(), &problem);
    if (!problem.isEmpty())
        return badInput(problem);
    options.language = parsed->language;
    // The trace goes to a temporary file beside it, put in place only after a complete import:
    // a refused import leaves an earlier trace of the same name as it was. It outlives the
    // session, whose host writes to it.
    std::unique_ptr<QSaveFile> trace;
    if (!parsed->trace.isEmpty()) {
        trace = std::make_unique<QSaveFile>(parsed->trace);
        if (!trace->open(QIODevice::WriteOnly))
            return badInput(parsed->trace + QStringLiteral(": cannot write the trace: ") +
                            trace->errorString());
        options.traceDevice = trace.get();
    }

    out.flush();
    err.flush();
    CliImport::ImportSession session;
    if (problem =
            CliImport::importSheet(std::move(options), parsed->settings, parsed->sheet, session);
        !problem.isEmpty())
        return badInput(problem);
    if (trace && !trace->commit()) {
        err << "kvinsertauto import: " << parsed->trace
            << ": cannot write the trace: " << trace->errorString() << "\n";
        return kExitFailure;
    }
    out << QString::fromUtf8(
        ItemTreeJson::toJson(*session.tree, ItemTreeJson::Counts{session.state.itemCount,
                                                                 session.state.lastItemNumber}));
    return kExitOk;
}

const CliCommandRegistration registration(CliCommand{QStringLiteral("import"), kUsage,
                                                     importItems});

} // namespace
