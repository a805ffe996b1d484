#pragma once

#include <QLineEdit>
#include <QStringList>

class QCompleter;
class QStringListModel;

namespace KvHost {

// The command line: a line edit that completes command names, keeps the commands entered (Up
// and Down walk through them) and hands each entered command on, trimmed and upper-cased.
class CommandLineEdit final : public QLineEdit
{
    Q_OBJECT

public:
    explicit CommandLineEdit(QWidget* parent = nullptr);

    void setCommandNames(const QStringList& names);
    QStringList commandNames() const;
    const QStringList& history() const { return m_history; }
    QCompleter* commandCompleter() const { return m_completer; }

signals:
    void commandEntered(const QString& command);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void enter();

    QStringList m_history;
    qsizetype m_historyPos = 0; // == size(): past the newest entry
    QString m_draft;            // what was typed before walking the history
    QCompleter* m_completer = nullptr;
    QStringListModel* m_names = nullptr;
};

} // namespace KvHost
