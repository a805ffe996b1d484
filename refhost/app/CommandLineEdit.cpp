#include "CommandLineEdit.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QStringListModel>

namespace KvHost {

CommandLineEdit::CommandLineEdit(QWidget* parent) : QLineEdit(parent)
{
    m_names = new QStringListModel(this);
    m_completer = new QCompleter(m_names, this);
    m_completer->setCaseSensitivity(Qt::CaseInsensitive);
    m_completer->setCompletionMode(QCompleter::PopupCompletion);
    m_completer->setModelSorting(QCompleter::CaseInsensitivelySortedModel);
    setCompleter(m_completer);
    setPlaceholderText(tr("Type a command (VRINSAUTO, OPEN, SAVE, UNDO, ...) and press Enter"));
    setClearButtonEnabled(true);
    connect(this, &QLineEdit::returnPressed, this, &CommandLineEdit::enter);
}

void CommandLineEdit::setCommandNames(const QStringList& names)
{
    QStringList sorted = names;
    sorted.sort(Qt::CaseInsensitive);
    m_names->setStringList(sorted);
}

QStringList CommandLineEdit::commandNames() const
{
    return m_names->stringList();
}

void CommandLineEdit::enter()
{
    // A choice in the completion popup comes here too, after it filled the line.
    const QString command = text().trimmed().toUpper();
    clear();
    m_draft.clear();
    if (command.isEmpty())
        return;
    if (m_history.isEmpty() || m_history.last() != command)
        m_history.append(command);
    m_historyPos = m_history.size();
    emit commandEntered(command);
}

void CommandLineEdit::keyPressEvent(QKeyEvent* event)
{
    const bool popupOpen = m_completer->popup() && m_completer->popup()->isVisible();
    if (!popupOpen && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)) {
        if (m_history.isEmpty())
            return;
        if (m_historyPos == m_history.size())
            m_draft = text();
        if (event->key() == Qt::Key_Up)
            m_historyPos = qMax<qsizetype>(0, m_historyPos - 1);
        else
            m_historyPos = qMin(m_history.size(), m_historyPos + 1);
        setText(m_historyPos == m_history.size() ? m_draft : m_history.at(m_historyPos));
        return;
    }
    QLineEdit::keyPressEvent(event);
}

} // namespace KvHost
