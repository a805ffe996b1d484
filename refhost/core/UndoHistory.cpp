#include "UndoHistory.h"

namespace RefHost {

UndoHistory::UndoHistory(Drawing& drawing) : m_drawing(drawing) {}

bool UndoHistory::beginStep(const QString& label)
{
    if (m_open)
        return false;
    m_open = Step{label, m_drawing};
    return true;
}

bool UndoHistory::endStep()
{
    if (!m_open)
        return false;
    m_undo.append(std::move(*m_open));
    m_open.reset();
    m_redo.clear();
    return true;
}

bool UndoHistory::undo()
{
    if (!canUndo())
        return false;
    Step step = m_undo.takeLast();
    m_redo.append(Step{step.label, m_drawing});
    m_drawing = std::move(step.drawing);
    return true;
}

bool UndoHistory::redo()
{
    if (!canRedo())
        return false;
    Step step = m_redo.takeLast();
    m_undo.append(Step{step.label, m_drawing});
    m_drawing = std::move(step.drawing);
    return true;
}

} // namespace RefHost
