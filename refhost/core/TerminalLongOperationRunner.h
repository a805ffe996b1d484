#pragma once

#include "Console.h"

#include "host/LongOperation.h"

namespace RefHost {

// Runs a long operation on the calling thread and shows its progress on the error stream: a
// bar redrawn in place on a terminal, otherwise a plain line at every tenth of the way.
// An exception that escapes the task is reported and answers Failure.
class TerminalLongOperationRunner final : public ILongOperationRunner
{
public:
    explicit TerminalLongOperationRunner(Console& console);

    longOperationResult run(const Task& task, const KVString& title, bool flag1,
                            bool flag2) override;

    int runCount() const { return m_runs; }

private:
    Console& m_console;
    int m_runs = 0;
};

} // namespace RefHost
