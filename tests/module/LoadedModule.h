#pragma once

#include "host/OdRxModule.h"

#include <QLibrary>

// The module library loaded the way the host's runtime loads a module: by the path of its file,
// with the two entry points resolved by name. The library stays loaded for the rest of the
// process (dialogs' meta-objects and the module's statics live in it).
class LoadedModule final
{
public:
    explicit LoadedModule(const QString& path);

    // False with errorString() when the file does not load or an entry point is missing.
    bool load();
    QString errorString() const { return m_error; }

    OdrxCreateModuleObjectFunction createModuleObject() const { return m_create; }
    OdrxGetApiVersionFunction getApiVersion() const { return m_version; }
    // Any other symbol of the library, or null when the library does not show it.
    QFunctionPointer resolve(const char* symbol);
    // The platform loader's handle of the library file, as the runtime hands it to the module.
    KVModuleHandle nativeHandle() const { return m_handle; }
    QString fileName() const { return m_library.fileName(); }

private:
    QLibrary m_library;
    QString m_error;
    OdrxCreateModuleObjectFunction m_create = nullptr;
    OdrxGetApiVersionFunction m_version = nullptr;
    KVModuleHandle m_handle = nullptr;
};
