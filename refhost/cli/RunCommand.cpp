// The "run" verb: builds the insertion job from a settings file and an item tree (or the items
// imported from a spreadsheet), runs it in the reference host on a drawing (a DXF file, or a new
// drawing with page PAGE$1), and writes the drawing as DXF and, when asked, one picture per page.
#include "CliCommand.h"
#include "FileChecks.h"
#include "ImportCommand.h"
#include "SettingsInputCheck.h"
#include "StandardNames.h"

#include "DxfBlockReader.h"
#include "DxfDrawingReader.h"
#include "DxfDrawingWriter.h"
#include "PagePicture.h"
#include "ReferenceHost.h"

#include "engine/CEInsAutoJobBuilder.h"
#include "engine/CInsAutoLogic.h"
#include "host/HostBinding.h"
#include "maindialog/CTVNodesUtil.h"
#include "maindialog/ItemTreeJson.h"
#include "settings/SettingsEncoding.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <optional>

namespace {

const QString kUsage = QStringLiteral(
    "run --settings S.cfa (--tree T.json | --sheet X.xlsx) --database DB --standard NAME "
    "--network-dir DIR [--drawing IN.dxf] --out OUT.dxf [--pages DIR] [--trace FILE] "
    "[--language N]");

struct RunArguments
{
    QString settings;
    QString tree;
    QString sheet;
    QString database;
    QString standard;
    QString networkDir;
    QString drawing;
    QString out;
    QString pages;
    QString trace;
    QString language;
};

// The value options of the verb and where each goes. The items come from a tree or from a
// spreadsheet, exactly one of the two.
const CliOption<RunArguments> kOptions[] = {
    {"--settings", &RunArguments::settings, true},
    {"--tree", &RunArguments::tree, false},
    {"--sheet", &RunArguments::sheet, false},
    {"--database", &RunArguments::database, true},
    {"--standard", &RunArguments::standard, true},
    {"--network-dir", &RunArguments::networkDir, true},
    {"--drawing", &RunArguments::drawing, false},
    {"--out", &RunArguments::out, true},
    {"--pages", &RunArguments::pages, false},
    {"--trace", &RunArguments::trace, false},
    {"--language", &RunArguments::language, false},
};

// The arguments, or the problem with them.
std::optional<RunArguments> parseArguments(const QStringList& args, QString* problem)
{
    std::optional<RunArguments> parsed = parseCliOptions(args, kOptions, problem);
    if (!parsed)
        return std::nullopt;
    if (parsed->tree.isEmpty() == parsed->sheet.isEmpty()) {
        *problem = parsed->tree.isEmpty() ? QStringLiteral("--tree or --sheet is required")
                                          : QStringLiteral("give --tree or --sheet, not both");
        return std::nullopt;
    }
    return parsed;
}

// Everything about the files that can be checked before anything is read or written; the
// problem, or empty.
QString checkFiles(const RunArguments& run)
{
    QString problem;
    if (!SettingsEncoding::fromEnvironment(&problem))
        return QStringLiteral("environment: ") + problem;
    QStringList readable = {run.settings, run.tree.isEmpty() ? run.sheet : run.tree};
    if (!run.drawing.isEmpty())
        readable.append(run.drawing);
    for (const QString& path : std::as_const(readable)) {
        if (QString unreadable = FileChecks::readable(path); !unreadable.isEmpty())
            return unreadable;
    }
    if (!QFileInfo(run.networkDir).isDir())
        return run.networkDir + QStringLiteral(": network folder not found");
    QStringList written = {run.out};
    if (!run.trace.isEmpty())
        written.append(run.trace);
    for (const QString& path : std::as_const(written)) {
        if (QString unwritable = FileChecks::writable(path); !unwritable.isEmpty())
            return unwritable;
    }
    if (!run.pages.isEmpty() && QFileInfo::exists(run.pages) && !QFileInfo(run.pages).isDir())
        return run.pages + QStringLiteral(": is a file, not a folder");
    for (const QString& path : {run.trace, run.pages}) {
        if (!path.isEmpty() &&
            QFileInfo(path).absoluteFilePath() == QFileInfo(run.out).absoluteFilePath())
            return path + QStringLiteral(": the same path as --out");
    }
    return SettingsInputCheck::check(run.settings);
}

// The picture file of a page: the layer name with "$" written as "-" and characters that do not
// belong in file names as "_" ("PAGE$2" gives "PAGE-2.png").
QString pictureFileName(const QString& layer)
{
    QString name = layer;
    name.replace(QLatin1Char('$'), QLatin1Char('-'));
    for (QChar& c : name) {
        if (c == u'/' || c == u'\\' || c == u':' || c == u'*' || c == u'?' || c == u'"' ||
            c == u'<' || c == u'>' || c == u'|' || c.unicode() < 32)
            c = QLatin1Char('_');
    }
    return name + QStringLiteral(".png");
}

// Writes one picture per page into `folder` (created when missing); the problem, or empty.
QString writePictures(const RefHost::Drawing& drawing, const QString& folder)
{
    if (!QDir().mkpath(folder))
        return folder + QStringLiteral(": the folder cannot be created");
    for (const QString& layer : drawing.pageLayers()) {
        const QString path = QDir(folder).filePath(pictureFileName(layer));
        if (QString problem = RefHost::PagePicture::render(drawing, layer, path);
            !problem.isEmpty())
            return problem;
    }
    return {};
}

// What a run needs: the job, the host holding the drawing, and the trace file, which is put in
// place only when the run has started (bad input leaves no trace file behind).
struct PreparedRun
{
    CEInsAutoJob job;
    std::unique_ptr<QSaveFile> trace;
    std::unique_ptr<RefHost::ReferenceHost> host;
    // Block files that were found but could not be read, one problem each naming the file.
    // They are known only once the run needs them.
    QStringList damagedBlocks;
};

// Reads the inputs in the order a person would fix them; the problem, or empty.
QString prepare(const RunArguments& run, PreparedRun& prepared)
{
    if (QString problem = checkFiles(run); !problem.isEmpty())
        return problem;

    CTVNodesUtil tree;
    if (!run.tree.isEmpty()) {
        if (const ItemTreeJson::ReadResult read = ItemTreeJson::read(run.tree, tree); !read.ok())
            return read.error;
    }

    RefHost::HostOptions options;
    if (!run.drawing.isEmpty()) {
        RefHost::DxfDrawingReader::Result read = RefHost::DxfDrawingReader::read(run.drawing);
        if (!read.drawing)
            return read.error;
        options.drawing = std::move(read.drawing);
    }
    options.database = run.database;
    options.standard = run.standard;
    options.networkDir = run.networkDir;
    options.language = run.language;
    // A missing block file is the module's to report; a block file that is there but damaged
    // is bad input, noted here and refused after the run, before anything is written.
    options.blockReader = [damaged = &prepared.damagedBlocks](const QString& path) {
        RefHost::DxfBlockReader::Result read = RefHost::DxfBlockReader::read(path);
        if (!read.block)
            damaged->append(read.error);
        return RefHost::BlockFileResult{std::move(read.block), std::move(read.error)};
    };
    if (!run.trace.isEmpty()) {
        prepared.trace = std::make_unique<QSaveFile>(run.trace);
        if (!prepared.trace->open(QIODevice::WriteOnly))
            return run.trace + QStringLiteral(": cannot write the trace: ") +
                   prepared.trace->errorString();
        options.traceDevice = prepared.trace.get();
    }
    RefHost::ReferenceHost::Created created = RefHost::ReferenceHost::create(std::move(options));
    if (!created.host)
        return created.error;
    prepared.host = std::move(created.host);
    // Each component would be "not found on this standard": the name is wrong, not the items.
    if (QString unknown = StandardNames::checkKnown(prepared.host->electrical().connection(),
                                                    run.standard.trimmed());
        !unknown.isEmpty())
        return unknown;

    if (!run.sheet.isEmpty()) {
        // The import verb's own import, in the host of the run.
        ImportDialogState state;
        if (QString problem =
                CliImport::importInto(*prepared.host, run.settings, run.sheet, tree, state);
            !problem.isEmpty())
            return problem;
    }
    CEInsAutoJobBuildResult built = CEInsAutoJobBuilder::build(run.settings, tree);
    if (!built.ok())
        return built.errors.join(QStringLiteral("; "));
    prepared.job = std::move(built.job);
    return {};
}

int runJob(const QStringList& args, QTextStream& out, QTextStream& err)
{
    if (args.contains(QStringLiteral("--help")) || args.contains(QStringLiteral("-h"))) {
        out << "usage: kvinsertauto " << kUsage << "\n";
        return kExitOk;
    }
    QString problem;
    const std::optional<RunArguments> run = parseArguments(args, &problem);
    if (!run) {
        err << "kvinsertauto run: " << problem << " (see kvinsertauto --help)\n";
        return kExitBadInput;
    }
    PreparedRun prepared;
    if (problem = prepare(*run, prepared); !problem.isEmpty()) {
        err << "kvinsertauto run: " << problem << "\n";
        return kExitBadInput;
    }

    // The module and the host write to the same descriptors from here on.
    out.flush();
    err.flush();
    {
        ScopedHostBinding bound(prepared.host->binding());
        CInsAutoLogic engine;
        engine.Executar(prepared.job);
    }
    // The module's last text on the command line has no line end of its own.
    prepared.host->console().print(QStringLiteral("\n"));
    if (!prepared.damagedBlocks.isEmpty()) {
        err << "kvinsertauto run: " << prepared.damagedBlocks.first()
            << " (a damaged block file: nothing was written)\n";
        return kExitBadInput;
    }
    if (prepared.trace && !prepared.trace->commit()) {
        err << "kvinsertauto run: " << run->trace
            << ": cannot write the trace: " << prepared.trace->errorString() << "\n";
        return kExitFailure;
    }

    const RefHost::Drawing& drawing = prepared.host->drawing();
    if (problem = RefHost::DxfDrawingWriter::write(drawing, run->out); !problem.isEmpty()) {
        err << "kvinsertauto run: " << problem << "\n";
        return kExitFailure;
    }
    out << "Wrote " << run->out << ": " << drawing.pageLayers().size() << " pages, "
        << drawing.references().size() << " block references\n";
    if (!run->pages.isEmpty()) {
        if (problem = writePictures(drawing, run->pages); !problem.isEmpty()) {
            err << "kvinsertauto run: " << problem << "\n";
            return kExitFailure;
        }
        out << "Wrote " << drawing.pageLayers().size() << " page pictures to " << run->pages
            << "\n";
    }
    return kExitOk;
}

const CliCommandRegistration registration(CliCommand{QStringLiteral("run"), kUsage, runJob});

} // namespace
