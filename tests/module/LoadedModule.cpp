#include "LoadedModule.h"

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <QFile>

#include <dlfcn.h>
#endif

LoadedModule::LoadedModule(const QString& path) : m_library(path)
{
    // Like the runtime: every symbol bound at load, so a missing one fails here.
    m_library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
}

bool LoadedModule::load()
{
    if (!m_library.load()) {
        m_error = m_library.errorString();
        return false;
    }
    m_create = reinterpret_cast<OdrxCreateModuleObjectFunction>(
        m_library.resolve(kOdrxCreateModuleObjectSymbol));
    m_version =
        reinterpret_cast<OdrxGetApiVersionFunction>(m_library.resolve(kOdrxGetApiVersionSymbol));
    if (!m_create || !m_version) {
        m_error = QStringLiteral("%1: an entry point is missing").arg(m_library.fileName());
        return false;
    }
#ifdef Q_OS_WIN
    m_handle = GetModuleHandleW(reinterpret_cast<LPCWSTR>(m_library.fileName().utf16()));
#else
    // The library is loaded already: this only looks its handle up (and is balanced at once;
    // QLibrary keeps the library loaded).
    m_handle = dlopen(QFile::encodeName(m_library.fileName()).constData(), RTLD_LAZY | RTLD_NOLOAD);
    if (m_handle)
        dlclose(m_handle);
#endif
    if (!m_handle) {
        m_error = QStringLiteral("%1: no loader handle").arg(m_library.fileName());
        return false;
    }
    return true;
}

QFunctionPointer LoadedModule::resolve(const char* symbol)
{
    return m_library.resolve(symbol);
}
