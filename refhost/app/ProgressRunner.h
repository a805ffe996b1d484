#pragma once

#include "host/LongOperation.h"

#include <QString>

#include <functional>

class QWidget;

namespace KvHost {

// Runs a long operation on the user-interface thread with a QProgressDialog: one step per
// Meter(), events processed at every step so the window keeps repainting. The dialog shows
// itself only when the operation takes a moment (QProgressDialog's minimum duration).
class ProgressRunner final : public ILongOperationRunner
{
public:
    explicit ProgressRunner(QWidget* parent = nullptr) : m_parent(parent) {}

    void setParent(QWidget* parent) { m_parent = parent; }
    // Where a failure of the task is reported (one line).
    void setErrorSink(std::function<void(const QString&)> sink) { m_errorSink = std::move(sink); }

    longOperationResult run(const Task& task, const KVString& title, bool flag1,
                            bool flag2) override;

    int runCount() const { return m_runs; }
    // Steps metered in the last run.
    int lastSteps() const { return m_lastSteps; }

private:
    QWidget* m_parent = nullptr;
    std::function<void(const QString&)> m_errorSink;
    int m_runs = 0;
    int m_lastSteps = 0;
};

} // namespace KvHost
