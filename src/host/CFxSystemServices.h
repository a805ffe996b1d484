#pragma once

#include "HostTypes.h"
#include "KVString.h"

// The module resources that dialogs and bitmaps are looked up in.
class CFxResourceContext
{
public:
    virtual ~CFxResourceContext() = default;
    // Makes `module` current and returns the handle that was current before.
    virtual KVModuleHandle setCurrent(KVModuleHandle module) = 0;
};

enum class MessageKind { Warning, Critical };

// The host framework's system services: file dialog, resources, message boxes, folders.
class CFxSystemServices
{
public:
    // Modes of FileDialog.
    static constexpr int kOpenExisting = 2;
    static constexpr int kSaveAs = 4;

    virtual ~CFxSystemServices() = default;

    // The host's file dialog. `filter` is in the host's notation: label parts with "|"
    // separators and "&"-delimited patterns ("Settings file (*.cfa)|*.cfa||&*.cfa&..."); a
    // doubled "&" ends the list. Returns KV_RESULT_OK and sets `path` when a file was chosen.
    virtual int FileDialog(int flag, KVString& path, KVWindowId parent, int mode,
                           const KVString& title, const KVString& defaultName,
                           const KVString& filter, const KVString& initialFolder, void* reserved1,
                           void* reserved2, void* reserved3, int reserved4) = 0;
    virtual CFxResourceContext* GetResourceContext() = 0;
    // The caption of the host's message boxes.
    virtual KVString GetMessageBoxTitle() = 0;
    // Shows a message box with a single OK button and returns when it is closed.
    virtual int ShowMessageBox(MessageKind kind, KVWindowId parent, const KVString& title,
                               const KVString& text) = 0;
    // The host's temporary folder.
    virtual KVString GetTempFolder() = 0;
};

CFxSystemServices* GetFxSystemServices();

class CFxUtils
{
public:
    static KVWindowId GetMainWindowId();
};

// Message boxes with one OK button, the host's caption and the given parent.
class CFxMessageBox
{
public:
    static int warning(KVWindowId parent, const KVString& text);
    static int critical(KVWindowId parent, const KVString& text);
};

// The host's registry folder helper; the module reads only the temporary folder from it.
class CIRegistro
{
public:
    KVString GetCaminhoTemp() const;
};

// The host's debug-settings registry: named settings with descriptions shown in a list.
class CFxDebugSettings
{
public:
    static CFxDebugSettings* Get();
    void SetDescription(const KVString& name, const KVString& description);
    KVString description(const KVString& name) const;
    KVStringList names() const;

private:
    CFxDebugSettings() = default;
    QList<QPair<KVString, KVString>> m_entries;
};
