#include "AppStartup.h"

#include "DesktopHost.h"
#include "ModuleLoader.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace KvHost {

std::optional<AppOptions> AppOptions::parse(const QStringList& arguments, QString* error)
{
    AppOptions options;
    const struct
    {
        const char* name;
        QString AppOptions::*member;
    } values[] = {
        {"--plugins", &AppOptions::pluginFolder},
        {"--config", &AppOptions::configFile},
        {"--translations", &AppOptions::translationsFolder},
        {"--screenshot", &AppOptions::screenshot},
    };
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& argument = arguments.at(i);
        bool known = false;
        for (const auto& value : values) {
            if (argument != QLatin1String(value.name))
                continue;
            if (i + 1 >= arguments.size()) {
                *error = argument + QStringLiteral(" needs a value");
                return std::nullopt;
            }
            options.*(value.member) = arguments.at(++i);
            known = true;
        }
        if (known)
            continue;
        if (argument == QLatin1String("--run")) {
            if (i + 1 >= arguments.size()) {
                *error = QStringLiteral("--run needs a command");
                return std::nullopt;
            }
            options.commands.append(arguments.at(++i));
        } else if (argument == QLatin1String("--no-module")) {
            options.noModule = true;
        } else if (argument.startsWith(QLatin1String("--"))) {
            *error = QStringLiteral("unknown option %1").arg(argument);
            return std::nullopt;
        } else if (options.openFile.isEmpty()) {
            options.openFile = argument;
        } else {
            *error = QStringLiteral("only one drawing can be opened, not also %1").arg(argument);
            return std::nullopt;
        }
    }
    return options;
}

QString AppOptions::usage()
{
    return QStringLiteral(
        "usage: kvhost [DRAWING.dxf] [--plugins DIR] [--config FILE.ini] [--translations DIR]\n"
        "              [--run COMMAND]... [--screenshot FILE.png] [--no-module]\n");
}

QStringList pluginFolders(const AppOptions& options)
{
    if (!options.pluginFolder.isEmpty())
        return {options.pluginFolder};
    const QString here = QCoreApplication::applicationDirPath();
    return {QDir(here).filePath(QStringLiteral("plugins")), here};
}

QString loadModule(const AppOptions& options, DesktopHost& host, ModuleLoader& loader)
{
    const QStringList folders = pluginFolders(options);
    QString path;
    for (const QString& folder : folders) {
        if (QFileInfo::exists(ModuleLoader::libraryPath(folder))) {
            path = ModuleLoader::libraryPath(folder);
            break;
        }
    }
    if (path.isEmpty())
        return QCoreApplication::translate("kvhost", "%1: the module library was not found")
            .arg(ModuleLoader::libraryPath(folders.constFirst()));
    host.installBinding();
    loader.setBeforeLibraryUnload([&host]() { host.removeModuleFunctions(); });
    return loader.load(path);
}

QStringList installTranslations(const AppOptions& options, const QString& language,
                                std::vector<std::unique_ptr<QTranslator>>& translators)
{
    const QString locale = language.isEmpty() ? QLocale::system().name() : language;
    const QString here = QCoreApplication::applicationDirPath();
    QStringList folders;
    if (!options.translationsFolder.isEmpty())
        folders.append(options.translationsFolder);
    folders << QDir(here).filePath(QStringLiteral("translations")) << here;
#ifdef KVHOST_BUILD_TRANSLATIONS_DIR
    // In the build tree the module's catalogues and kvhost's are compiled into one folder.
    folders << QStringLiteral(KVHOST_BUILD_TRANSLATIONS_DIR);
#endif
    // kvhost's own catalogues are also built into the program.
    folders << QStringLiteral(":/kvhost/translations");
    folders << QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    QStringList loaded;
    for (const QString& name : {QStringLiteral("kvinsertauto"), QStringLiteral("kvofficesystem"),
                                QStringLiteral("kvhost"), QStringLiteral("qtbase")}) {
        for (const QString& folder : std::as_const(folders)) {
            auto translator = std::make_unique<QTranslator>();
            if (translator->load(QLocale(locale), name, QStringLiteral("_"), folder)) {
                loaded.append(translator->filePath());
                QCoreApplication::installTranslator(translator.get());
                translators.push_back(std::move(translator));
                break;
            }
        }
    }
    return loaded;
}

} // namespace KvHost
