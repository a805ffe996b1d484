#pragma once

#include "host/LongOperation.h"

#include <QList>

// Runs a long operation at once on the calling thread, with a progressor that counts, and
// keeps what it was given.
class SyncLongOperationRunner final : public ILongOperationRunner
{
public:
    struct Run
    {
        KVString title;
        bool flag1 = false;
        bool flag2 = false;
        longOperationResult result = longOperationResult::Failure;
        int total = -1; // the count given to BeginNestedObject, -1 when it was not called
        int meters = 0;
    };

    // Without a progressor the task sees none (the host may run a task that way).
    void setProvidesProgressor(bool provides) { m_providesProgressor = provides; }
    const QList<Run>& runs() const { return m_runs; }

    longOperationResult run(const Task& task, const KVString& title, bool flag1,
                            bool flag2) override;

private:
    bool m_providesProgressor = true;
    QList<Run> m_runs;
};
