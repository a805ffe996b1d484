#include "TerminalLongOperationRunner.h"

#include <exception>

namespace RefHost {

namespace {

class TerminalProgressor final : public FxProgressorUtils::Progressor
{
public:
    TerminalProgressor(Console& console, QString title)
        : m_console(console), m_title(std::move(title))
    {}

    void BeginNestedObject(int count, int) override
    {
        m_total = qMax(0, count);
        m_done = 0;
        m_lastTenth = -1;
        draw();
    }

    void Meter() override
    {
        ++m_done;
        draw();
    }

    // Ends the bar's line on a terminal.
    void finish()
    {
        if (m_drawn && m_console.errIsTerminal())
            m_console.errorRaw(QStringLiteral("\n"));
    }

private:
    void draw()
    {
        const int shown = m_total > 0 ? qMin(m_done, m_total) : m_done;
        const QString label = m_title.isEmpty() ? QStringLiteral("progress") : m_title;
        if (m_console.errIsTerminal()) {
            constexpr int width = 30;
            const int filled = m_total > 0 ? shown * width / m_total : 0;
            m_console.errorRaw(QStringLiteral("\r%1 [%2%3] %4/%5")
                                   .arg(label, QString(filled, QLatin1Char('#')),
                                        QString(width - filled, QLatin1Char('.')))
                                   .arg(shown)
                                   .arg(m_total));
            m_drawn = true;
            return;
        }
        const int tenth = m_total > 0 ? shown * 10 / m_total : 0;
        if (tenth == m_lastTenth)
            return;
        m_lastTenth = tenth;
        m_console.line(label, QStringLiteral("%1/%2").arg(shown).arg(m_total));
    }

    Console& m_console;
    QString m_title;
    int m_total = 0;
    int m_done = 0;
    int m_lastTenth = -1;
    bool m_drawn = false;
};

class TerminalTask final : public CVRLongOperationTask
{
public:
    explicit TerminalTask(TerminalProgressor& progressor) : m_progressor(progressor) {}
    FxProgressorUtils::Progressor* progressor() override { return &m_progressor; }

private:
    TerminalProgressor& m_progressor;
};

} // namespace

TerminalLongOperationRunner::TerminalLongOperationRunner(Console& console) : m_console(console) {}

// The two flags are the caller's wishes about cancelling and threading; the headless host
// neither cancels nor starts threads, so they change nothing here.
longOperationResult TerminalLongOperationRunner::run(const Task& task, const KVString& title, bool,
                                                     bool)
{
    ++m_runs;
    if (!task)
        return longOperationResult::Failure;
    TerminalProgressor progressor(m_console, title);
    TerminalTask context(progressor);
    longOperationResult result = longOperationResult::Failure;
    try {
        result = task(context);
    } catch (const std::exception& error) {
        progressor.finish();
        m_console.error(
            QStringLiteral("long operation failed: %1").arg(QString::fromLocal8Bit(error.what())));
        return longOperationResult::Failure;
    }
    progressor.finish();
    return result;
}

} // namespace RefHost
