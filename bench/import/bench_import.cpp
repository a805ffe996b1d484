// Measures the spreadsheet import and what follows it on a generated standard, in the reference
// host on SQLite: the workbook reading, the statements' own time inside the database, the rest
// of the import, building the job, the run, and writing the drawing as DXF; with rows and
// symbols per second and the peak memory. Not a test: it prints figures.
//
//   kv_bench_import                          the table: C = 2,000 with R = 1,000 and 10,000,
//                                            C = 20,000 with R = 1,000; then the search
//                                            statement on C = 20,000 with and without indexes
//   kv_bench_import --one C R                one size, in this process (one line key=value)
//   kv_bench_import --statements C N         the search statement of N rows, indexed and bare
//   kv_bench_import --standard C FOLDER      only writes FOLDER/data.sql and loads
//                                            FOLDER/standard.db, for looking at the plans
//
// Every size runs in a child process of its own, so that each has its own peak memory. The
// workbook is written by bench/import/tsv-to-workbook.py with /usr/bin/python3 (xlsxwriter).
// With KV_BENCH_PROFILE set to import, run or dxf, and --one run under
// valgrind --tool=callgrind --instr-atstart=no, only that phase is recorded.
//
// The statements' own time is what SQLite's profile trace reports per statement. Its clock
// ticks in milliseconds; summed over hundreds of statements the error averages out.

#include "StatementClock.h"
#include "SyntheticStandard.h"
#include "TimedServices.h"

#include "DxfDrawingWriter.h"
#include "ElectricalServices.h"
#include "ReferenceHost.h"
#include "StandardLoader.h"

#include "engine/CEInsAutoJobBuilder.h"
#include "engine/CInsAutoLogic.h"
#include "host/HostBinding.h"
#include "import/CQuerySearchComponentList.h"
#include "import/ItemImport.h"
#include "maindialog/CTVNodesUtil.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTextStream>

#include <sys/resource.h>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#define KV_PROFILE_START(phase)                                                                    \
    if (qEnvironmentVariable("KV_BENCH_PROFILE") == QLatin1String(phase))                          \
    CALLGRIND_START_INSTRUMENTATION
#define KV_PROFILE_STOP(phase)                                                                     \
    if (qEnvironmentVariable("KV_BENCH_PROFILE") == QLatin1String(phase))                          \
    CALLGRIND_STOP_INSTRUMENTATION
#else
#define KV_PROFILE_START(phase)
#define KV_PROFILE_STOP(phase)
#endif

#include <cstdio>
#include <map>

namespace {

const QString kSchema = QStringLiteral(KV_SOURCE_DIR "/examples/standard/schema.sql");
const QString kNetwork = QStringLiteral(KV_SOURCE_DIR "/examples/network");
const QString kWorkbookScript = QStringLiteral(KV_SOURCE_DIR "/bench/import/tsv-to-workbook.py");
const QString kPython = QStringLiteral("/usr/bin/python3");

long peakMemoryKiB()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

double processorSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

[[noreturn]] void fail(const QString& text)
{
    std::fprintf(stderr, "kv_bench_import: %s\n", qPrintable(text));
    std::exit(1);
}

// The settings of the benchmark: mode "1" (page fill with a space after every symbol), the
// gaps from the components' GAP_BEFORE and GAP_AFTER, one exact and two containment searches.
QString writeSettings(const QString& folder)
{
    const QString path = QDir(folder).filePath(QStringLiteral("bench.cfa"));
    const QStringList lines = {"GAP_BEFORE",
                               "GAP_AFTER",
                               "40,200",
                               "10",
                               "1",
                               "380",
                               "0",
                               "ITEM;ITEM; ;N;",
                               "TAG;TAG; ;S;",
                               "TYPE;FUNCTION;=TYPE;S;",
                               "MAKER; ;MAKER;N;",
                               "PART; ;PART_NUMBER;N;"};
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(lines.join(QStringLiteral("\r\n")).toLatin1()) < 0)
        fail(path + QStringLiteral(": cannot be written"));
    return path;
}

QString writeWorkbook(const QString& folder, const SyntheticStandard& standard, int rows)
{
    QByteArray tsv = "ITEM\tTAG\tTYPE\tMAKER\tPART\n";
    for (int row = 0; row < rows; ++row) {
        const QStringList cells = standard.searchCells(row);
        tsv += QByteArray::number(row + 1) + "\t-K" + QByteArray::number(row + 1) + '\t' +
               cells.join(u'\t').toUtf8() + '\n';
    }
    const QString path = QDir(folder).filePath(QStringLiteral("bench.xlsx"));
    QProcess python;
    python.start(kPython, {kWorkbookScript, path});
    python.write(tsv);
    python.closeWriteChannel();
    if (!python.waitForFinished(-1) || python.exitCode() != 0)
        fail(QStringLiteral("the workbook could not be written: ") +
             QString::fromLocal8Bit(python.readAllStandardError()));
    return path;
}

QString loadStandard(const QString& folder, const SyntheticStandard& standard, const QString& name,
                     double* seconds, QStringList* indexes = nullptr)
{
    const QString data = standard.writeData(folder);
    if (data.isEmpty())
        fail(folder + QStringLiteral(": the standard's rows cannot be written"));
    const QString database = QDir(folder).filePath(name);
    QElapsedTimer timer;
    timer.start();
    const RefHost::StandardLoadResult loaded =
        RefHost::StandardLoader::loadDatabase(database, {kSchema, data}, false);
    if (seconds)
        *seconds = double(timer.nsecsElapsed()) / 1e9;
    if (!loaded.ok)
        fail(loaded.error);
    if (indexes)
        *indexes = loaded.createdIndexes;
    return database;
}

std::unique_ptr<RefHost::ReferenceHost> makeHost(const QString& database, RefHost::Console& console,
                                                 const QStringList& answers)
{
    RefHost::HostOptions options;
    options.database = database;
    options.standard = QStringLiteral("IEC");
    options.networkDir = kNetwork;
    options.language = QStringLiteral("1");
    options.fileDialogAnswers = answers;
    options.console = &console;
    RefHost::ReferenceHost::Created created = RefHost::ReferenceHost::create(std::move(options));
    if (!created.host)
        fail(created.error);
    return std::move(created.host);
}

double seconds(qint64 ns)
{
    return double(ns) / 1e9;
}

// One size: everything in this process, one line of key=value figures.
int measureOne(int components, int rows)
{
    QTemporaryDir folder;
    const SyntheticStandard standard(components);
    double loadSeconds = 0;
    const QString database = loadStandard(folder.path(), standard, "standard.db", &loadSeconds);
    const QString settings = writeSettings(folder.path());
    const QString workbook = writeWorkbook(folder.path(), standard, rows);

    QBuffer out;
    QBuffer err;
    out.open(QIODevice::WriteOnly);
    err.open(QIODevice::WriteOnly);
    RefHost::Console console(&out, &err);
    const std::unique_ptr<RefHost::ReferenceHost> host = makeHost(database, console, {workbook});
    TimedServices timed(host->electrical());
    HostBinding binding = host->binding();
    binding.electrical = &timed;
    StatementClock clock;
    if (!clock.attach(host->electrical().connection().database()))
        fail(QStringLiteral("not an SQLite connection"));

    CTVNodesUtil tree;
    ImportDialogState state;
    std::map<QString, double> figures;
    {
        ScopedHostBinding bound(binding);
        QElapsedTimer timer;
        qint64 readEnd = 0;
        qint64 importEnd = 0;
        ItemImport itemImport(tree, state);
        itemImport.setBusyIndicator(
            [&](bool busy) { (busy ? readEnd : importEnd) = timer.nsecsElapsed(); });
        timer.start();
        const double cpuStart = processorSeconds();
        KV_PROFILE_START("import");
        const ItemImportResult result = itemImport.run(settings);
        KV_PROFILE_STOP("import");
        const qint64 total = timer.nsecsElapsed();
        if (result.outcome != ItemImportOutcome::Imported || result.itemsImported != rows)
            fail(QStringLiteral("the import did not complete: ") + result.error +
                 QString::fromUtf8(err.data()));
        int expectedSymbols = 0;
        for (int row = 0; row < rows; ++row)
            expectedSymbols += standard.matchesOfRow(row);
        if (result.symbolsPlaced != expectedSymbols)
            fail(QStringLiteral("%1 symbols placed, %2 expected")
                     .arg(result.symbolsPlaced)
                     .arg(expectedSymbols));
        figures["import_s"] = seconds(total);
        figures["import_cpu_s"] = processorSeconds() - cpuStart;
        figures["read_s"] = seconds(readEnd);
        figures["rows_s"] = seconds(importEnd - readEnd);
        figures["statements_s"] = seconds(clock.totalNs());
        figures["search_statements_s"] = seconds(clock.ns(StatementClock::Search));
        figures["property_statements_s"] = seconds(clock.ns(StatementClock::PropertyValue));
        figures["host_query_calls_s"] = seconds(timed.queryNs() + timed.propertyNs());
        figures["prepare_s"] = seconds(timed.prepareNs());
        figures["searches"] = clock.count(StatementClock::Search);
        figures["property_queries"] = timed.propertyQueries();
        figures["symbols"] = result.symbolsPlaced;
        figures["items"] = result.itemsImported;
        figures["load_s"] = loadSeconds;
    }

    clock.reset();
    QElapsedTimer timer;
    timer.start();
    double cpu = processorSeconds();
    const CEInsAutoJobBuildResult built = CEInsAutoJobBuilder::build(settings, tree);
    figures["job_s"] = seconds(timer.nsecsElapsed());
    if (!built.ok())
        fail(built.errors.join(u' '));
    int entries = 0;
    for (const CEInsAutoItem& item : built.job.items) {
        for (const CEInsAutoEntry& entry : item.entries)
            entries += entry.kind == u"0" ? 1 : 0;
    }
    figures["job_symbols"] = entries;

    {
        ScopedHostBinding bound(binding);
        timer.restart();
        cpu = processorSeconds();
        CInsAutoLogic engine;
        KV_PROFILE_START("run");
        engine.Executar(built.job);
        KV_PROFILE_STOP("run");
        figures["run_s"] = seconds(timer.nsecsElapsed());
        figures["run_cpu_s"] = processorSeconds() - cpu;
    }
    figures["run_statements_s"] = seconds(clock.totalNs());
    figures["blocks_inserted"] = double(host->drawing().references().size());
    figures["pages"] = double(host->drawing().pageLayers().size());
    clock.detach();

    timer.restart();
    cpu = processorSeconds();
    const QString dxf = QDir(folder.path()).filePath(QStringLiteral("bench.dxf"));
    KV_PROFILE_START("dxf");
    const QString dxfProblem = RefHost::DxfDrawingWriter::write(host->drawing(), dxf);
    KV_PROFILE_STOP("dxf");
    if (const QString problem = dxfProblem; !problem.isEmpty())
        fail(problem);
    figures["dxf_s"] = seconds(timer.nsecsElapsed());
    figures["dxf_cpu_s"] = processorSeconds() - cpu;
    figures["dxf_kib"] = double(QFileInfo(dxf).size() / 1024);
    figures["peak_kib"] = double(peakMemoryKiB());

    QStringList line;
    for (const auto& [key, value] : figures)
        line.append(key + u'=' + QString::number(value, 'g', 12));
    std::printf("%s\n", qPrintable(line.join(u' ')));
    return 0;
} // namespace

struct StatementFigures
{
    double meanUs = 0;
    double hostMeanUs = 0;
    QString plan;
};

StatementFigures timeStatements(const QString& database, const SyntheticStandard& standard,
                                int samples)
{
    QBuffer out;
    QBuffer err;
    out.open(QIODevice::WriteOnly);
    err.open(QIODevice::WriteOnly);
    RefHost::Console console(&out, &err);
    const std::unique_ptr<RefHost::ReferenceHost> host = makeHost(database, console, {});
    StatementClock clock;
    if (!clock.attach(host->electrical().connection().database()))
        fail(QStringLiteral("not an SQLite connection"));
    ScopedHostBinding bound(host->binding());
    StatementFigures figures;
    qint64 hostNs = 0;
    for (int row = 0; row < samples; ++row) {
        const QStringList cells = standard.searchCells(row);
        const KVStringList conditions = {
            CQuerySearchComponentList::equalsCondition("TYPE", cells.at(0)),
            CQuerySearchComponentList::containsCondition("MAKER", cells.at(1)),
            CQuerySearchComponentList::containsCondition("PART_NUMBER", cells.at(2))};
        QElapsedTimer timer;
        timer.start();
        const CVRQueryResponse response =
            host->electrical().RunQuery(std::make_shared<CQuerySearchComponentList>(conditions));
        hostNs += timer.nsecsElapsed();
        if (response.failed() || response.getResult().size() != standard.matchesOfRow(row))
            fail(QStringLiteral("row %1: %2 components found, %3 expected %4")
                     .arg(row)
                     .arg(response.getResult().size())
                     .arg(standard.matchesOfRow(row))
                     .arg(response.errorText()));
        if (row == 0) {
            QSqlQuery plan(host->electrical().connection().database());
            if (plan.exec(QStringLiteral("EXPLAIN QUERY PLAN ") +
                          CQuerySearchComponentList::sqlText(conditions)
                              .replace(QStringLiteral(":lang"), QStringLiteral("'1'")))) {
                QStringList steps;
                while (plan.next())
                    steps.append(plan.value(3).toString());
                figures.plan = steps.join(QStringLiteral(" / "));
            }
        }
    }
    clock.detach();
    figures.meanUs = double(clock.ns(StatementClock::Search)) / 1e3 / samples;
    figures.hostMeanUs = double(hostNs) / 1e3 / samples;
    return figures;
}

// The search statement on the same standard loaded with the loader's indexes and without them.
int measureStatements(int components, int samples)
{
    QTemporaryDir folder;
    const SyntheticStandard standard(components);
    QStringList indexes;
    const QString indexed = loadStandard(folder.path(), standard, "indexed.db", nullptr, &indexes);
    const QString bare = QDir(folder.path()).filePath(QStringLiteral("bare.db"));
    if (!QFile::copy(indexed, bare))
        fail(bare + QStringLiteral(": cannot be written"));
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), "bare");
        db.setDatabaseName(bare);
        if (!db.open())
            fail(db.lastError().text());
        QSqlQuery query(db);
        for (const QString& index : std::as_const(indexes)) {
            if (!query.exec(QStringLiteral("DROP INDEX %1").arg(index)))
                fail(query.lastError().text());
        }
        query.exec(QStringLiteral("ANALYZE"));
        query.exec(QStringLiteral("VACUUM"));
        query = QSqlQuery();
        db.close();
    }
    QSqlDatabase::removeDatabase("bare");

    const StatementFigures withIndexes = timeStatements(indexed, standard, samples);
    const StatementFigures without = timeStatements(bare, standard, samples);
    std::printf("indexed_us=%.1f indexed_host_us=%.1f bare_us=%.1f bare_host_us=%.1f\n",
                withIndexes.meanUs, withIndexes.hostMeanUs, without.meanUs, without.hostMeanUs);
    std::printf("indexed_plan=%s\nbare_plan=%s\n", qPrintable(withIndexes.plan),
                qPrintable(without.plan));
    return 0;
}

QStringList runChild(const QStringList& arguments)
{
    QProcess child;
    child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    child.start(QCoreApplication::applicationFilePath(), arguments);
    if (!child.waitForFinished(-1) || child.exitStatus() != QProcess::NormalExit ||
        child.exitCode() != 0)
        fail(QStringLiteral("%1 failed").arg(arguments.join(u' ')));
    return QString::fromUtf8(child.readAllStandardOutput()).trimmed().split(u'\n');
}

std::map<QString, double> parseFigures(const QString& line)
{
    std::map<QString, double> figures;
    for (const QString& pair : line.split(u' ', Qt::SkipEmptyParts))
        figures[pair.section(u'=', 0, 0)] = pair.section(u'=', 1).toDouble();
    return figures;
}

QString fixed(double value, int decimals = 3)
{
    return QString::number(value, 'f', decimals);
}

int measureAll()
{
    QTextStream out(stdout);
    out << "Import (seconds; \"execution\": the statements' own time inside SQLite; \"compile\": "
           "preparing and binding them; \"rest\": everything else of the import after the "
           "reading)\n\n"
           "| C | R | symbols | read | execution | compile | rest | import | outside execution "
           "% | outside execution and compile % | rows/s | peak MiB |\n"
           "|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|---:|\n";
    QString after = QStringLiteral(
        "\nAfter the import (seconds)\n\n"
        "| C | R | symbols | job | run | symbols/s (run) | DXF | symbols/s (run + DXF) |\n"
        "|---:|---:|---:|---:|---:|---:|---:|---:|\n");
    out.flush();
    const QList<QPair<int, int>> sizes = {{2000, 1000}, {2000, 10000}, {20000, 1000}};
    for (const auto& [components, rows] : sizes) {
        std::map<QString, double> f = parseFigures(
            runChild({"--one", QString::number(components), QString::number(rows)}).value(0));
        const double import = f["import_s"];
        const double execution = f["statements_s"];
        const double compile = f["prepare_s"];
        const double rest = f["rows_s"] - execution - compile;
        out << "| " << components << " | " << rows << " | " << f["symbols"] << " | "
            << fixed(f["read_s"]) << " | " << fixed(execution) << " | " << fixed(compile) << " | "
            << fixed(rest) << " | " << fixed(import) << " | "
            << fixed(100.0 * (import - execution) / import, 1) << " | "
            << fixed(100.0 * (import - execution - compile) / import, 1) << " | "
            << qint64(rows / import) << " | " << fixed(f["peak_kib"] / 1024.0, 1) << " |\n";
        out.flush();
        const double symbols = f["job_symbols"];
        after += QStringLiteral("| %1 | %2 | %3 | %4 | %5 | %6 | %7 | %8 |\n")
                     .arg(components)
                     .arg(rows)
                     .arg(symbols)
                     .arg(fixed(f["job_s"]), fixed(f["run_s"]))
                     .arg(qint64(symbols / f["run_s"]))
                     .arg(fixed(f["dxf_s"]))
                     .arg(qint64(symbols / (f["run_s"] + f["dxf_s"])));
    }
    out << after;
    const QStringList statements = runChild({"--statements", "20000", "100"});
    out << "\nSearch statement, C = 20000, 100 rows:\n";
    for (const QString& line : statements)
        out << "  " << line << "\n";
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments().mid(1);
    if (arguments.size() == 3 && arguments[0] == u"--one")
        return measureOne(arguments[1].toInt(), arguments[2].toInt());
    if (arguments.size() == 3 && arguments[0] == u"--statements")
        return measureStatements(arguments[1].toInt(), arguments[2].toInt());
    if (arguments.size() == 3 && arguments[0] == u"--standard") {
        double loadSeconds = 0;
        const QString database = loadStandard(arguments[2], SyntheticStandard(arguments[1].toInt()),
                                              "standard.db", &loadSeconds);
        std::printf("%s loaded in %.3f s\n", qPrintable(database), loadSeconds);
        return 0;
    }
    if (!arguments.isEmpty()) {
        std::fprintf(stderr, "usage: kv_bench_import [--one C R | --statements C N | --standard C "
                             "FOLDER]\n");
        return 2;
    }
    return measureAll();
}
