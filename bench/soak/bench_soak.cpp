// Runs the example job again and again in one process, as a person does in one session of the
// host: the example spreadsheet imported with the example settings, the job built and run on a
// new drawing, the drawing written as DXF and its pages drawn. Memory is measured before the
// first run and after chosen runs; growth that keeps going after the first runs is a leak.
// Not a test: it prints figures.
//
//   kv_bench_soak [--runs N] [--pictures]     N runs (100 by default); pictures only when asked
//
// Memory is read twice: the resident set (VmRSS, what the system gives the process) and the
// heap in use (glibc's mallinfo2: bytes the allocator has handed out and not got back), which is
// not blurred by the allocator keeping freed pages. Linux and glibc only, like the reference
// host it runs in.
#include "DxfDrawingWriter.h"
#include "PagePicture.h"
#include "ReferenceHost.h"
#include "StandardLoader.h"

#include "engine/CEInsAutoJobBuilder.h"
#include "engine/CInsAutoLogic.h"
#include "host/HostBinding.h"
#include "import/ItemImport.h"
#include "maindialog/CTVNodesUtil.h"

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <malloc.h>

#include <cstdio>
#include <cstdlib>

namespace {

const QString kExamples = QStringLiteral(KV_SOURCE_DIR "/examples");

[[noreturn]] void fail(const QString& text)
{
    std::fprintf(stderr, "kv_bench_soak: %s\n", qPrintable(text));
    std::exit(1);
}

struct Memory
{
    long residentKiB = 0;
    long heapKiB = 0;
};

Memory memoryNow()
{
    Memory memory;
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly)) {
        for (const QByteArray& line : status.readAll().split('\n')) {
            if (line.startsWith("VmRSS:"))
                memory.residentKiB = line.mid(6).trimmed().split(' ').value(0).toLong();
        }
    }
    const struct mallinfo2 heap = mallinfo2();
    // Small blocks from the arenas, large ones mapped one by one.
    memory.heapKiB = long((heap.uordblks + heap.hblkhd) / 1024);
    return memory;
}

struct RunOutcome
{
    qsizetype pages = 0;
    qsizetype references = 0;
    qsizetype dxfBytes = 0;
};

// One run as "kvinsertauto run --sheet" does it, with a host of its own.
RunOutcome runOnce(const QString& database, const QString& picturesFolder)
{
    const QString settings = kExamples + QStringLiteral("/settings/example.cfa");
    QBuffer out;
    QBuffer err;
    out.open(QIODevice::WriteOnly);
    err.open(QIODevice::WriteOnly);
    RefHost::Console console(&out, &err);
    RefHost::HostOptions options;
    options.database = database;
    options.standard = QStringLiteral("IEC");
    options.networkDir = kExamples + QStringLiteral("/network");
    options.language = QStringLiteral("1");
    options.fileDialogAnswers = {kExamples + QStringLiteral("/sheets/example.xlsx")};
    options.console = &console;
    RefHost::ReferenceHost::Created created = RefHost::ReferenceHost::create(std::move(options));
    if (!created.host)
        fail(created.error);
    RefHost::ReferenceHost& host = *created.host;

    CTVNodesUtil tree;
    ImportDialogState state;
    {
        ScopedHostBinding bound(host.binding());
        ItemImport itemImport(tree, state);
        const ItemImportResult imported = itemImport.run(settings);
        if (imported.outcome != ItemImportOutcome::Imported)
            fail(QStringLiteral("the import did not complete: ") + imported.error +
                 QString::fromUtf8(err.data()));
    }
    const CEInsAutoJobBuildResult built = CEInsAutoJobBuilder::build(settings, tree);
    if (!built.ok())
        fail(built.errors.join(u' '));
    {
        ScopedHostBinding bound(host.binding());
        CInsAutoLogic engine;
        engine.Executar(built.job);
    }

    RunOutcome outcome;
    const RefHost::Drawing& drawing = host.drawing();
    QString problem;
    outcome.dxfBytes = RefHost::DxfDrawingWriter::toDxf(drawing, &problem).size();
    if (!problem.isEmpty())
        fail(problem);
    outcome.pages = drawing.pageLayers().size();
    outcome.references = drawing.references().size();
    if (!picturesFolder.isEmpty()) {
        for (const QString& layer : drawing.pageLayers()) {
            const QString path =
                QDir(picturesFolder).filePath(QString(layer).replace(u'$', u'_') + ".png");
            if (QString failed = RefHost::PagePicture::render(drawing, layer, path);
                !failed.isEmpty())
                fail(failed);
        }
    }
    return outcome;
}

void printMemory(const char* label, const Memory& memory, const Memory& start)
{
    std::printf("%-16s resident %8ld KiB (%+7ld)   heap in use %8ld KiB (%+7ld)\n", label,
                memory.residentKiB, memory.residentKiB - start.residentKiB, memory.heapKiB,
                memory.heapKiB - start.heapKiB);
}

} // namespace

int main(int argc, char* argv[])
{
    QGuiApplication app(argc, argv);
    int runs = 100;
    bool pictures = false;
    const QStringList args = QCoreApplication::arguments().mid(1);
    for (qsizetype i = 0; i < args.size(); ++i) {
        if (args.at(i) == u"--runs" && i + 1 < args.size())
            runs = args.at(++i).toInt();
        else if (args.at(i) == u"--pictures")
            pictures = true;
        else
            fail(QStringLiteral("usage: kv_bench_soak [--runs N] [--pictures]"));
    }
    if (runs < 2)
        fail(QStringLiteral("--runs needs at least 2"));

    QTemporaryDir folder;
    const QString database = folder.filePath(QStringLiteral("example.db"));
    const RefHost::StandardLoadResult loaded =
        RefHost::StandardLoader::loadDatabase(database,
                                              {kExamples + QStringLiteral("/standard/schema.sql"),
                                               kExamples + QStringLiteral("/standard/data.sql")},
                                              false);
    if (!loaded.ok)
        fail(loaded.error);
    const QString picturesFolder = pictures ? folder.path() : QString();

    std::printf("kv_bench_soak: %d runs of import + job + run + DXF%s on the example (SQLite)\n",
                runs, pictures ? " + pictures" : "");
    const Memory start = memoryNow();
    printMemory("before run 1", start, start);
    RunOutcome first;
    QElapsedTimer timer;
    timer.start();
    Memory afterFirst;
    Memory afterTenth;
    for (int run = 1; run <= runs; ++run) {
        const RunOutcome outcome = runOnce(database, picturesFolder);
        if (run == 1)
            first = outcome;
        else if (outcome.pages != first.pages || outcome.references != first.references ||
                 outcome.dxfBytes != first.dxfBytes)
            fail(QStringLiteral("run %1 gave a different drawing than run 1").arg(run));
        if (run == 1 || run == 10 || run % 25 == 0 || run == runs) {
            const Memory now = memoryNow();
            if (run == 1)
                afterFirst = now;
            if (run == 10)
                afterTenth = now;
            printMemory(qPrintable(QStringLiteral("after run %1").arg(run)), now, start);
        }
    }
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    const Memory end = memoryNow();
    std::printf("each run: %lld pages, %lld block references, %lld bytes of DXF; %.1f ms a run\n",
                static_cast<long long>(first.pages), static_cast<long long>(first.references),
                static_cast<long long>(first.dxfBytes), seconds * 1000.0 / runs);
    // Caches and pools fill during the first runs; growth is counted from run 10 when there are
    // more runs than that.
    const bool fromTenth = runs > 10;
    const Memory& base = fromTenth ? afterTenth : afterFirst;
    const int laterRuns = fromTenth ? runs - 10 : runs - 1;
    std::printf("growth after run %d: resident %+ld KiB, heap in use %+ld KiB "
                "(%+.2f KiB a run over %d runs)\n",
                fromTenth ? 10 : 1, end.residentKiB - base.residentKiB, end.heapKiB - base.heapKiB,
                double(end.heapKiB - base.heapKiB) / laterRuns, laterRuns);
    return 0;
}
