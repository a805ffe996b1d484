// The libFuzzer entry points of one fuzz target. Each target is this file built with
// KV_FUZZ_READER naming the reader it feeds (see harness/ReaderChecks.h).
#include "ReaderChecks.h"

#include <QCoreApplication>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#ifndef KV_FUZZ_READER
#error "KV_FUZZ_READER must name the reader this target feeds"
#endif

namespace {

const ReaderChecks::Reader* g_reader = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    // The readers run inside a Qt program; some of Qt's services expect the application object.
    static QCoreApplication application(*argc, *argv);
    g_reader = ReaderChecks::findReader(QStringLiteral(KV_FUZZ_READER));
    if (!g_reader) {
        std::fprintf(stderr, "no reader called %s\n", KV_FUZZ_READER);
        std::abort();
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // A copy, so that the readers get a buffer they own, terminated like any QByteArray.
    const QByteArray input(reinterpret_cast<const char*>(data), qsizetype(size));
    const QString problem = g_reader->check(input);
    if (!problem.isEmpty()) {
        std::fprintf(stderr, "fuzz_%s: broken rule: %s\n", KV_FUZZ_READER, qPrintable(problem));
        std::abort();
    }
    return 0;
}
