#include "SyncLongOperationRunner.h"

namespace {

class CountingProgressor final : public FxProgressorUtils::Progressor
{
public:
    explicit CountingProgressor(SyncLongOperationRunner::Run& run) : m_run(run) {}
    void BeginNestedObject(int count, int) override { m_run.total = count; }
    void Meter() override { ++m_run.meters; }

private:
    SyncLongOperationRunner::Run& m_run;
};

class SyncTask final : public CVRLongOperationTask
{
public:
    SyncTask(FxProgressorUtils::Progressor* progressor) : m_progressor(progressor) {}
    FxProgressorUtils::Progressor* progressor() override { return m_progressor; }

private:
    FxProgressorUtils::Progressor* m_progressor;
};

} // namespace

longOperationResult SyncLongOperationRunner::run(const Task& task, const KVString& title,
                                                 bool flag1, bool flag2)
{
    Run record;
    record.title = title;
    record.flag1 = flag1;
    record.flag2 = flag2;
    CountingProgressor progressor(record);
    SyncTask syncTask(m_providesProgressor ? &progressor : nullptr);
    record.result = task ? task(syncTask) : longOperationResult::Failure;
    m_runs.append(record);
    return record.result;
}
