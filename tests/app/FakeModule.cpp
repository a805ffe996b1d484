// A library with the two module exports whose runtime interface version is set at build time
// (KV_FAKE_MAJOR, KV_FAKE_MINOR), for the host's loading checks. It counts the creations so a
// test can see that a refused library was never asked for its module object.
#include "host/OdRxModule.h"

#include <QtGlobal>

#include <cstdint>

namespace {
int g_creations = 0;
} // namespace

extern "C" Q_DECL_EXPORT OdRxModule* odrxCreateModuleObject(KVModuleHandle&)
{
    ++g_creations;
    return nullptr;
}

extern "C" Q_DECL_EXPORT void odrxGetAPIVersion(std::uint32_t& majorVersion,
                                                std::uint32_t& minorVersion,
                                                std::uint32_t& patchVersion,
                                                std::uint32_t& buildVersion)
{
    majorVersion = KV_FAKE_MAJOR;
    minorVersion = KV_FAKE_MINOR;
    patchVersion = 0;
    buildVersion = 1234;
}

extern "C" Q_DECL_EXPORT int kvFakeModuleCreations()
{
    return g_creations;
}
