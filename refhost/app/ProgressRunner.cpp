#include "ProgressRunner.h"

#include <QCoreApplication>
#include <QProgressDialog>

#include <exception>

namespace KvHost {

namespace {

class DialogProgressor final : public FxProgressorUtils::Progressor
{
public:
    explicit DialogProgressor(QProgressDialog& dialog) : m_dialog(dialog) {}

    void BeginNestedObject(int count, int) override
    {
        m_dialog.setMaximum(qMax(0, count));
        m_dialog.setValue(0);
        QCoreApplication::processEvents();
    }

    void Meter() override
    {
        ++m_steps;
        m_dialog.setLabelText(QCoreApplication::translate("kvhost", "Item %1 of %2")
                                  .arg(m_steps)
                                  .arg(m_dialog.maximum()));
        m_dialog.setValue(qMin(m_steps, m_dialog.maximum()));
        QCoreApplication::processEvents();
    }

    int steps() const { return m_steps; }

private:
    QProgressDialog& m_dialog;
    int m_steps = 0;
};

class DialogTask final : public CVRLongOperationTask
{
public:
    explicit DialogTask(DialogProgressor& progressor) : m_progressor(progressor) {}
    FxProgressorUtils::Progressor* progressor() override { return &m_progressor; }

private:
    DialogProgressor& m_progressor;
};

} // namespace

longOperationResult ProgressRunner::run(const Task& task, const KVString& title, bool, bool)
{
    ++m_runs;
    QProgressDialog dialog(m_parent);
    dialog.setWindowTitle(title.isEmpty() ? QCoreApplication::translate("kvhost", "Working")
                                          : QString(title));
    dialog.setLabelText(QCoreApplication::translate("kvhost", "Working..."));
    // The task cannot be interrupted halfway, so there is nothing to cancel.
    dialog.setCancelButton(nullptr);
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setMinimumDuration(300);
    dialog.setAutoClose(false);
    dialog.setAutoReset(false);
    DialogProgressor progressor(dialog);
    DialogTask context(progressor);
    longOperationResult result = longOperationResult::Failure;
    try {
        result = task(context);
    } catch (const std::exception& error) {
        if (m_errorSink)
            m_errorSink(QCoreApplication::translate("kvhost", "long operation failed: ") +
                        QString::fromLocal8Bit(error.what()));
        result = longOperationResult::Failure;
    }
    m_lastSteps = progressor.steps();
    return result;
}

} // namespace KvHost
