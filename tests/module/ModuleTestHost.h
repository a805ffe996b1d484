#pragma once

#include "common/TestHost.h"

#include "host/DrawingLanguage.h"

#include <QBuffer>

#include <memory>

class CVRCommand;

// The recording host of tests/common with what the module's entry object talks to besides:
// a command manager and a drawing language that write what the module registers into one event
// list (so the order of commands and function is visible), a system-services layer that keeps
// every argument of the file dialog, and switches for the pieces a host may lack. install()
// puts it in place behind a HostTrace of its own.
class ModuleTestHost final
{
public:
    // Every argument the module passed to the host's file dialog.
    struct FileDialogCall
    {
        int flag = -1;
        KVString path;
        KVWindowId parent = 0;
        int mode = -1;
        KVString title;
        KVString defaultName;
        KVString filter;
        KVString initialFolder;
        void* reserved1 = nullptr;
        void* reserved2 = nullptr;
        void* reserved3 = nullptr;
        int reserved4 = -1;
    };

    ModuleTestHost();
    ~ModuleTestHost();
    ModuleTestHost(const ModuleTestHost&) = delete;
    ModuleTestHost& operator=(const ModuleTestHost&) = delete;

    TestHost& host() { return m_host; }

    // --- pieces a host may lack (all present by default); set before install()
    void setHasElectricalServices(bool has) { m_hasElectrical = has; }
    void setHasCommandManager(bool has) { m_hasCommandManager = has; }
    void setHasDocument(bool has) { m_hasDocument = has; }

    // Installs the host, traced, until the returned object is destroyed.
    [[nodiscard]] std::unique_ptr<ScopedHostBinding> install();

    // --- reading back
    // "add NAME undoable|notUndoable MODE", "remove NAME" and "function NAME", in call order.
    const QStringList& events() const;
    // The command the module added under that name and has not removed, or null.
    std::shared_ptr<CVRCommand> command(const KVString& name) const;
    // The function the module registered under that name, or an empty function.
    DrawingLanguageFunction function(const KVString& name) const;
    const QList<FileDialogCall>& fileDialogCalls() const;
    QStringList traceLines() const;

private:
    class Events;
    class CommandManager;
    class Services;
    class Language;
    class System;

    TestHost m_host;
    std::unique_ptr<Events> m_events;
    std::unique_ptr<CommandManager> m_commands;
    std::unique_ptr<Services> m_services;
    std::unique_ptr<Language> m_language;
    std::unique_ptr<System> m_system;
    bool m_hasElectrical = true;
    bool m_hasCommandManager = true;
    bool m_hasDocument = true;
    QByteArray m_traceBytes;
    QBuffer m_traceBuffer;
    std::unique_ptr<HostTrace> m_trace;
};
