#include "HostBinding.h"

namespace {
HostBinding g_host;
} // namespace

void InstallHost(const HostBinding& binding)
{
    g_host = binding;
}

const HostBinding& InstalledHost()
{
    return g_host;
}

ScopedHostBinding::ScopedHostBinding(const HostBinding& binding) : m_previous(g_host)
{
    g_host = binding;
}

ScopedHostBinding::~ScopedHostBinding()
{
    g_host = m_previous;
}
