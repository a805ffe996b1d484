// kvhost: the reference host as a desktop application. It opens and saves project drawings,
// shows their pages, and runs the insertion module's commands from its command line.
#include "AppStartup.h"
#include "DesktopHost.h"
#include "MainWindow.h"
#include "ModuleLoader.h"
#include "PageView.h"

#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <QTranslator>

#include <cstdio>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kvhost"));
    QApplication::setOrganizationName(QStringLiteral("KVInsertAuto"));

    QString error;
    const std::optional<KvHost::AppOptions> options =
        KvHost::AppOptions::parse(QApplication::arguments(), &error);
    if (!options) {
        std::fprintf(stderr, "kvhost: %s\n%s", qPrintable(error),
                     qPrintable(KvHost::AppOptions::usage()));
        return 2;
    }

    KvHost::DesktopHost host(options->configFile);
    std::vector<std::unique_ptr<QTranslator>> translators;
    KvHost::installTranslations(*options, host.settings().interfaceLanguage, translators);

    KvHost::ModuleLoader loader;
    int status = 0;
    {
        KvHost::MainWindow window(host);
        window.show();
        if (!options->noModule) {
            if (const QString problem = KvHost::loadModule(*options, host, loader);
                !problem.isEmpty()) {
                std::fprintf(stderr, "kvhost: %s\n", qPrintable(problem));
                window.appendOutput(problem + QLatin1Char('\n'), true);
                host.system().ShowMessageBox(MessageKind::Critical, 0, {}, problem);
            } else {
                window.appendOutput(
                    QCoreApplication::translate("kvhost", "Loaded %1 (runtime interface %2)\n")
                        .arg(loader.fileName(), loader.version().text()));
            }
            window.refreshCommands();
        }
        if (!options->openFile.isEmpty()) {
            if (const QString problem = host.openDrawing(options->openFile); !problem.isEmpty())
                host.system().ShowMessageBox(MessageKind::Warning, 0, {}, problem);
        }
        QTimer::singleShot(0, &window, [&]() {
            for (const QString& command : options->commands)
                window.execute(command);
            if (!options->screenshot.isEmpty()) {
                window.pageView()->repaint();
                if (!window.grab().save(options->screenshot)) {
                    std::fprintf(stderr, "kvhost: %s: the picture cannot be written\n",
                                 qPrintable(options->screenshot));
                    status = 1;
                }
                QApplication::quit();
            }
        });
        const int result = QApplication::exec();
        if (status == 0)
            status = result;
        // The module's commands go before the window they may use.
        loader.unload();
    }
    return status;
}
