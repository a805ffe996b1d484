#pragma once

#include <QStringList>

#include <memory>
#include <optional>

class QTranslator;

namespace KvHost {

class DesktopHost;
class MainWindow;
class ModuleLoader;

// What the program was asked to do on its command line.
struct AppOptions
{
    QString pluginFolder;       // where libKVInsertAuto.so is; empty: next to the program
    QString configFile;         // the host settings as an INI file; empty: the person's own
    QString translationsFolder; // where the .qm files are; empty: next to the program
    QString openFile;           // a drawing to open at start
    QStringList commands;       // command lines to run once the window is up
    QString screenshot;         // grab the window to this PNG after the commands, then quit
    bool noModule = false;

    // The options, or nullopt with the problem in `error`.
    static std::optional<AppOptions> parse(const QStringList& arguments, QString* error);
    static QString usage();
};

// The folders searched for the module library, in order.
QStringList pluginFolders(const AppOptions& options);

// Loads the module found in the plug-in folders into the host; the problem or empty. The host
// outlives the loader: unloading drops the module's drawing-language functions from it.
QString loadModule(const AppOptions& options, DesktopHost& host, ModuleLoader& loader);

// Installs the translators of `language` ("pt_BR", "es"; empty: the system's) found in the
// translations folders; the .qm files loaded.
QStringList installTranslations(const AppOptions& options, const QString& language,
                                std::vector<std::unique_ptr<QTranslator>>& translators);

} // namespace KvHost
