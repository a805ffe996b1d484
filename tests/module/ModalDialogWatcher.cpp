#include "ModalDialogWatcher.h"

#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QWidget>

ModalDialogWatcher::ModalDialogWatcher(CurrentResources currentResources, Close close)
    : m_currentResources(std::move(currentResources)), m_close(std::move(close))
{
    connect(&m_timer, &QTimer::timeout, this, &ModalDialogWatcher::poll);
    m_timer.start(5);
}

void ModalDialogWatcher::poll()
{
    QWidget* modal = QApplication::activeModalWidget();
    if (!modal) {
        // A later dialog may be built where the last one was.
        m_last = nullptr;
        return;
    }
    if (modal == m_last)
        return;
    m_last = modal;
    QStringList labels;
    for (const QLabel* label : modal->findChildren<QLabel*>())
        labels.append(label->text());
    m_seen.append({QString::fromLatin1(modal->metaObject()->className()),
                   modal->parentWidget() != nullptr, m_currentResources(), labels});
    const QPointer<QWidget> guard(modal);
    m_close(modal);
    QTimer::singleShot(3000, modal, [guard] {
        if (guard && guard->isVisible())
            guard->close();
    });
}
