#pragma once

#include <QLibrary>
#include <QString>

#include <functional>
#include <memory>

class OdRxModule;

namespace KvHost {

// Loads the insertion module (a shared library) the way the CAD host does: resolves
// odrxGetAPIVersion and odrxCreateModuleObject, refuses a library built for a runtime interface
// this host does not support, creates the module object and calls initApp; unload() calls
// uninitApp and deletes the module object. The host boundary (kv_host) is a shared library, so
// the binding the host installs is the one the module reaches.
class ModuleLoader final
{
public:
    // The runtime interface this host implements: libraries must match major and minor.
    static constexpr quint32 SupportedMajor = 26;
    static constexpr quint32 SupportedMinor = 8;

    struct Version
    {
        quint32 major = 0;
        quint32 minor = 0;
        quint32 patch = 0;
        quint32 build = 0;
        QString text() const;
    };

    ModuleLoader();
    ~ModuleLoader();
    ModuleLoader(const ModuleLoader&) = delete;
    ModuleLoader& operator=(const ModuleLoader&) = delete;

    // The library file of the module in `folder` (libKVInsertAuto.so on Linux).
    static QString libraryPath(const QString& folder);

    // Loads, checks, creates and initialises; the problem (naming the file) or empty. The host
    // installs its binding before, since initApp registers the commands through it.
    QString load(const QString& path);
    // uninitApp, module deletion, unload; nothing when nothing is loaded.
    void unload();
    // Called by unload() once the module object is gone and before the library is closed, so
    // that the host drops what still points into the module's code (its drawing-language
    // functions). Whoever sets it outlives the loader.
    void setBeforeLibraryUnload(std::function<void()> handler)
    {
        m_beforeLibraryUnload = std::move(handler);
    }

    bool isLoaded() const { return m_module != nullptr; }
    const Version& version() const { return m_version; }
    QString fileName() const { return m_library.fileName(); }

private:
    void closeHandle();

    QLibrary m_library;
    Version m_version;
    OdRxModule* m_module = nullptr;
    void* m_handle = nullptr; // dlopen's handle of the library, handed to the module object
    std::function<void()> m_beforeLibraryUnload;
};

} // namespace KvHost
