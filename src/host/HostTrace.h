#pragma once

#include "HostBinding.h"

#include <QIODevice>
#include <QMutex>

#include <memory>

namespace KVHostTrace::Internal {
class Decorators;
}

// Writes every call the module makes through the host boundary as one JSON object per line
// (JSON Lines), in call order, and passes the call on to the wrapped binding. A host installs
// binding() in place of its own to audit a run; tests read the lines back to check the
// module's conversation with the host. The schema is documented in docs/trace.md.
class HostTrace
{
public:
    // `inner` is the host that really answers; `out` receives the lines (not owned; it must
    // outlive this object and be open for writing).
    HostTrace(const HostBinding& inner, QIODevice* out);
    ~HostTrace();
    HostTrace(const HostTrace&) = delete;
    HostTrace& operator=(const HostTrace&) = delete;

    // The binding to install: the same host, traced.
    HostBinding binding() const;

    // Writes one line; `fields` are (key, value) pairs already in JSON text, in order.
    void write(const QList<QPair<QString, QByteArray>>& fields);

private:
    QIODevice* m_out;
    QMutex m_mutex;
    std::unique_ptr<KVHostTrace::Internal::Decorators> m_decorators;
};
