#pragma once

#include "host/CFxSystemServices.h"

namespace RefHost {

// The current module whose resources dialogs are built from. The headless host builds no
// dialogs; it only keeps the handle so that a module can set and restore it.
class ResourceContext final : public CFxResourceContext
{
public:
    KVModuleHandle setCurrent(KVModuleHandle module) override;
    KVModuleHandle current() const { return m_current; }

private:
    KVModuleHandle m_current = nullptr;
};

} // namespace RefHost
