#pragma once

#include "host/HostTypes.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>

class QWidget;

// Watches for modal windows while a command runs (a modal dialog blocks the test in its own event
// loop): each one that opens is described, then handed to `close` for the test to end it the way
// it chooses. A window that `close` leaves open is closed after a few seconds, so a failing test
// cannot hang.
class ModalDialogWatcher final : public QObject
{
public:
    struct Seen
    {
        QString className;
        bool hasParent = true;
        // The host's current resources while the window was open.
        KVModuleHandle resources = nullptr;
        // The texts of its labels when it opened.
        QStringList labels;
    };

    using Close = std::function<void(QWidget* dialog)>;
    using CurrentResources = std::function<KVModuleHandle()>;

    ModalDialogWatcher(CurrentResources currentResources, Close close);

    const QList<Seen>& seen() const { return m_seen; }

private:
    void poll();

    CurrentResources m_currentResources;
    Close m_close;
    QTimer m_timer;
    QWidget* m_last = nullptr;
    QList<Seen> m_seen;
};
