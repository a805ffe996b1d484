#include "ResourceContext.h"

#include <utility>

namespace RefHost {

KVModuleHandle ResourceContext::setCurrent(KVModuleHandle module)
{
    return std::exchange(m_current, module);
}

} // namespace RefHost
