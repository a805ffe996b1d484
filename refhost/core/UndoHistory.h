#pragma once

#include "Drawing.h"

#include <QList>
#include <QString>

#include <optional>

namespace RefHost {

// Undoable steps over a drawing. A step is opened before a change (the drawing as it was is
// kept) and closed after it; undo puts the kept drawing back, redo the one it replaced.
class UndoHistory
{
public:
    explicit UndoHistory(Drawing& drawing);

    // Opens a step; false (and nothing changes) when one is already open.
    bool beginStep(const QString& label);
    // Closes the open step and makes it the one to undo; false when no step is open.
    bool endStep();
    bool isStepOpen() const { return m_open.has_value(); }

    bool canUndo() const { return !m_open && !m_undo.isEmpty(); }
    bool canRedo() const { return !m_open && !m_redo.isEmpty(); }
    QString undoLabel() const { return m_undo.isEmpty() ? QString() : m_undo.last().label; }
    QString redoLabel() const { return m_redo.isEmpty() ? QString() : m_redo.last().label; }
    qsizetype undoCount() const { return m_undo.size(); }

    // Each answers false, changing nothing, while a step is open or there is nothing to do.
    bool undo();
    bool redo();

private:
    struct Step
    {
        QString label;
        Drawing drawing;
    };

    Drawing& m_drawing;
    std::optional<Step> m_open;
    QList<Step> m_undo;
    QList<Step> m_redo;
};

} // namespace RefHost
