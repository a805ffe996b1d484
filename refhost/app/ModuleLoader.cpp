#include "ModuleLoader.h"

#include "host/OdRxModule.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

namespace KvHost {

QString ModuleLoader::Version::text() const
{
    return QStringLiteral("%1.%2.%3.%4").arg(major).arg(minor).arg(patch).arg(build);
}

ModuleLoader::ModuleLoader() = default;

ModuleLoader::~ModuleLoader()
{
    unload();
}

QString ModuleLoader::libraryPath(const QString& folder)
{
    return QDir(folder).filePath(QStringLiteral("libKVInsertAuto.so"));
}

QString ModuleLoader::load(const QString& path)
{
    unload();
    if (!QFileInfo::exists(path))
        return QCoreApplication::translate("kvhost", "%1: the module library was not found")
            .arg(path);
    m_library.setFileName(path);
    // Every symbol is resolved at load time, so a library that does not fit fails here and
    // not in the middle of a command.
    m_library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
    if (!m_library.load())
        return QCoreApplication::translate("kvhost", "%1: the module cannot be loaded: %2")
            .arg(path, m_library.errorString());

    const auto fail = [this, &path](const QString& problem) {
        m_library.unload();
        return QStringLiteral("%1: %2").arg(path, problem);
    };
    auto getVersion =
        reinterpret_cast<OdrxGetApiVersionFunction>(m_library.resolve(kOdrxGetApiVersionSymbol));
    auto create = reinterpret_cast<OdrxCreateModuleObjectFunction>(
        m_library.resolve(kOdrxCreateModuleObjectSymbol));
    if (!getVersion || !create)
        return fail(QCoreApplication::translate(
            "kvhost", "not a module: odrxGetAPIVersion or odrxCreateModuleObject is missing"));
    m_version = Version();
    getVersion(m_version.major, m_version.minor, m_version.patch, m_version.build);
    if (m_version.major != SupportedMajor || m_version.minor != SupportedMinor)
        return fail(QCoreApplication::translate("kvhost",
                                                "the module was built for runtime interface %1; "
                                                "this host supports %2.%3")
                        .arg(m_version.text())
                        .arg(SupportedMajor)
                        .arg(SupportedMinor));
    // The runtime hands the module the loader's handle of its file; the module object keeps it
    // (and sets our variable to null), we close it after the object is gone.
    m_handle = dlopen(QFile::encodeName(m_library.fileName()).constData(), RTLD_LAZY | RTLD_NOLOAD);
    KVModuleHandle handle = m_handle;
    m_module = create(handle);
    if (!m_module) {
        closeHandle();
        return fail(QCoreApplication::translate(
            "kvhost", "odrxCreateModuleObject answered no module object"));
    }
    m_module->addRef();
    m_module->initApp();
    return {};
}

void ModuleLoader::unload()
{
    if (m_module) {
        m_module->uninitApp();
        m_module->release();
        m_module->deleteModule();
        m_module = nullptr;
    }
    if (m_beforeLibraryUnload && m_library.isLoaded())
        m_beforeLibraryUnload();
    closeHandle();
    if (m_library.isLoaded()) {
        // The module's commands are gone from the command manager; the code can go too.
        m_library.unload();
    }
}

void ModuleLoader::closeHandle()
{
    if (m_handle)
        dlclose(m_handle);
    m_handle = nullptr;
}

} // namespace KvHost
