// The library's two exports, the only symbols it makes visible, and the debug setting it declares
// when it is loaded.

#include "CKVInsertAutoApp.h"

#include "host/CFxSystemServices.h"
#include "host/OdRxModule.h"

#include <QtGlobal>

#include <cstdint>

namespace {

using CKVInsertAutoModule = OdRxWin32Module<CKVInsertAutoApp, CKVInsertAutoApp>;

// Declared at load time so that the host's debug-settings list describes it; the module itself
// never reads the setting. The registry belongs to the host and outlives the library, so its
// texts are built on the heap rather than over the library's read-only data (QStringLiteral).
const KVString kThreadsDisableSetting = [] {
    const KVString name("FxThreadsDisable");
    CFxDebugSettings::Get()->SetDescription(
        name, KVString("Disable multi threading for the Foreach template"));
    return name;
}();

} // namespace

extern "C" Q_DECL_EXPORT OdRxModule* odrxCreateModuleObject(KVModuleHandle& module)
{
    return CKVInsertAutoModule::createModuleObject(module);
}

extern "C" Q_DECL_EXPORT void odrxGetAPIVersion(std::uint32_t& majorVersion,
                                                std::uint32_t& minorVersion,
                                                std::uint32_t& patchVersion,
                                                std::uint32_t& buildVersion)
{
    majorVersion = kOdRxApiVersion.majorVersion;
    minorVersion = kOdRxApiVersion.minorVersion;
    patchVersion = kOdRxApiVersion.patchVersion;
    buildVersion = kOdRxApiVersion.buildVersion;
}
