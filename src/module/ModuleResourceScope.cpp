#include "ModuleResourceScope.h"

#include "host/CFxSystemServices.h"

ModuleResourceScope::ModuleResourceScope(KVModuleHandle module)
{
    CFxSystemServices* system = GetFxSystemServices();
    m_context = system ? system->GetResourceContext() : nullptr;
    if (m_context)
        m_previous = m_context->setCurrent(module);
}

ModuleResourceScope::~ModuleResourceScope()
{
    if (m_context)
        m_context->setCurrent(m_previous);
}
