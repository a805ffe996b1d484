#include "OdRxModule.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>
#endif

#ifdef _WIN32

KVString odrxModuleFileName(KVModuleHandle module, const void*)
{
    wchar_t buffer[MAX_PATH] = {};
    const DWORD length = GetModuleFileNameW(static_cast<HMODULE>(module), buffer, MAX_PATH);
    return QString::fromWCharArray(buffer, static_cast<qsizetype>(length));
}

#else

KVString odrxModuleFileName(KVModuleHandle, const void* addressInModule)
{
    // A dlopen handle does not tell its file; the loaded object that holds one of the module's
    // own addresses does.
    Dl_info info{};
    if (!dladdr(addressInModule, &info) || !info.dli_fname)
        return {};
    return QFileInfo(QFile::decodeName(info.dli_fname)).absoluteFilePath();
}

#endif
