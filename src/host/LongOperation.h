#pragma once

#include "KVString.h"

#include <functional>

enum class longOperationResult { Success, Failure, Cancelled };

namespace FxProgressorUtils {

// Progress of a long operation: a number of steps, then one Meter() per step.
class Progressor
{
public:
    virtual ~Progressor() = default;
    virtual void BeginNestedObject(int count, int flags) = 0;
    virtual void Meter() = 0;
};

} // namespace FxProgressorUtils

// What a long-operation task is given: its progressor, which may be absent.
class CVRLongOperationTask
{
public:
    virtual ~CVRLongOperationTask() = default;
    virtual FxProgressorUtils::Progressor* progressor() = 0;
};

// The host's runner of long operations on one document. It shows progress, may run the task
// on a thread of its own, and returns when the task has finished.
class ILongOperationRunner
{
public:
    using Task = std::function<longOperationResult(CVRLongOperationTask&)>;

    virtual ~ILongOperationRunner() = default;
    virtual longOperationResult run(const Task& task, const KVString& title, bool flag1,
                                    bool flag2) = 0;
};
