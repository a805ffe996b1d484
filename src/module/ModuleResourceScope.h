#pragma once

#include "host/HostTypes.h"

class CFxResourceContext;

// Makes a module's resources the host's current ones (dialog templates and pictures are looked
// up there) for the life of a scope, and puts the previous ones back through the same resource
// context however the scope ends: whichever button closed the dialog, or an exception.
class ModuleResourceScope final
{
public:
    explicit ModuleResourceScope(KVModuleHandle module);
    ~ModuleResourceScope();
    ModuleResourceScope(const ModuleResourceScope&) = delete;
    ModuleResourceScope& operator=(const ModuleResourceScope&) = delete;

private:
    CFxResourceContext* m_context = nullptr;
    KVModuleHandle m_previous = nullptr;
};
