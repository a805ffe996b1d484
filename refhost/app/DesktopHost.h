#pragma once

#include "ConsoleDevice.h"
#include "DrawingLanguageProxy.h"
#include "ElectricalServicesProxy.h"
#include "GuiSystemServices.h"
#include "HostSettings.h"
#include "ProgressRunner.h"

#include "CommandManager.h"
#include "Console.h"
#include "Drawing.h"
#include "HeadlessDocument.h"
#include "ReferenceHost.h"

#include "host/HostBinding.h"

#include <QObject>

#include <functional>
#include <memory>

namespace KvHost {

// The desktop host without its window: the project drawing and its file, the reference host
// built over the standard's database from the settings (rebuilt when they change or another
// drawing is opened), the command manager the module's commands live in, the GUI system
// services, the progress runner and the command-line output.
class DesktopHost final : public QObject
{
    Q_OBJECT

public:
    // `settingsFile`: the INI file of the host settings; empty for the person's own.
    explicit DesktopHost(QString settingsFile = {}, QObject* parent = nullptr);
    ~DesktopHost() override;

    const HostSettings& settings() const { return m_settings; }
    const QString& settingsFile() const { return m_settingsFile; }
    // Stores the settings and rebuilds the host over them, keeping the drawing; the problem
    // (naming the file or URL) or empty. The settings are stored also when the database cannot
    // be opened, so that the person can correct them.
    QString applySettings(const HostSettings& settings);
    // True once a standard's database is open (the module's commands need it).
    bool isConnected() const { return m_host != nullptr; }
    // Why there is no connection (empty when connected).
    const QString& connectionProblem() const { return m_connectionProblem; }

    RefHost::Drawing& drawing();
    const RefHost::Drawing& drawing() const;
    const QString& filePath() const { return m_filePath; }
    bool isModified() const { return m_modified; }

    // A new drawing: page group PAGE holding page PAGE$1.
    void newDrawing();
    // Reads a DXF drawing; the problem (naming the file) or empty, the drawing unchanged then.
    QString openDrawing(const QString& path);
    // Writes the drawing as DXF; the problem or empty.
    QString saveDrawing(const QString& path);

    bool canUndo() const;
    bool canRedo() const;
    QString undoLabel() const;
    QString redoLabel() const;
    bool undo();
    bool redo();

    // Makes a page (layer) current; false when the drawing has no such page.
    bool setCurrentPage(const QString& layer);
    // Moves by `step` pages through all pages in group order; false at either end.
    bool stepPage(int step);

    RefHost::CommandManager& commands() { return m_commands; }
    // The functions the module registered in the drawing language.
    const RefHost::ModuleFunctions& moduleFunctions() const { return m_language.moduleFunctions(); }
    // Calls one of them from the command line and writes its result; false when there is no
    // such function or it failed (the error has been written).
    bool callModuleFunction(const QString& name, qsizetype argumentCount);
    // Forgets them: their code goes with the module, so the loader calls this before it
    // unloads the module's library.
    void removeModuleFunctions() { m_language.removeModuleFunctions(); }
    // Runs a command by name (ignoring case); false when there is none. The binding is
    // installed around it and drawingChanged is sent afterwards.
    bool runCommand(const QString& name);
    bool isRunningCommand() const { return m_running > 0; }

    GuiSystemServices& system() { return m_system; }
    ProgressRunner& runner() { return m_runner; }
    RefHost::Console& console() { return *m_console; }
    // What the module is given.
    HostBinding binding() const;
    void setMainWindow(QWidget* window);
    // Installs the binding; the module reaches the same one (the host boundary is a shared
    // library).
    void installBinding();

signals:
    // Text for the command-line pane: `isError` for messages, errors and the log.
    void output(const QString& text, bool isError);
    void drawingChanged();
    void connectionChanged(bool connected);

private:
    QString rebuild(std::optional<RefHost::Drawing> drawing);
    void setReferenceHost(std::unique_ptr<RefHost::ReferenceHost> host);
    RefHost::HeadlessDocument& activeDocument();
    void changed();

    QString m_settingsFile;
    HostSettings m_settings;
    ConsoleDevice m_out;
    ConsoleDevice m_err;
    std::unique_ptr<RefHost::Console> m_console;
    DrawingLanguageProxy m_language;
    RefHost::HeadlessDocument m_detachedDocument; // the active document while no database is open
    GuiSystemServices m_system;
    ProgressRunner m_runner;
    RefHost::CommandManager m_commands;
    ElectricalServicesProxy m_electrical;
    std::unique_ptr<RefHost::ReferenceHost> m_host;
    RefHost::Drawing m_detachedDrawing; // the drawing while no database is open
    QString m_connectionProblem;
    QString m_filePath;
    bool m_modified = false;
    int m_running = 0;
    KVWindowId m_mainWindow = 0;
};

} // namespace KvHost
