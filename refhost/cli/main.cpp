#include "CliCommand.h"

#include <QGuiApplication>

#include <cstring>
#include <memory>

namespace {

QList<CliCommand>& registry()
{
    static QList<CliCommand> commands;
    return commands;
}

void printUsage(QTextStream& out)
{
    out << "usage: kvinsertauto VERB [ARGS...]\n";
    for (const CliCommand& command : registry())
        out << "  " << command.usage << "\n";
}

bool drawsPictures(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--pages") == 0)
            return true;
    }
    return false;
}

} // namespace

CliCommandRegistration::CliCommandRegistration(CliCommand command)
{
    registry().append(std::move(command));
}

const QList<CliCommand>& registeredCliCommands()
{
    return registry();
}

int main(int argc, char** argv)
{
    // Page pictures ("run --pages") draw text, which needs the GUI application's fonts; the
    // other verbs keep the plain core application. No window is ever opened, so without a
    // platform named the offscreen one is used and no display is needed.
    std::unique_ptr<QCoreApplication> app;
    if (drawsPictures(argc, argv)) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        app = std::make_unique<QGuiApplication>(argc, argv);
    } else {
        app = std::make_unique<QCoreApplication>(argc, argv);
    }
    QCoreApplication::setApplicationName(QStringLiteral("kvinsertauto"));
    QTextStream out(stdout);
    QTextStream err(stderr);

    QStringList args = QCoreApplication::arguments().mid(1);
    if (args.isEmpty() || args.first() == u"--help" || args.first() == u"-h") {
        printUsage(args.isEmpty() ? err : out);
        return args.isEmpty() ? kExitBadInput : kExitOk;
    }
    const QString verb = args.takeFirst();
    for (const CliCommand& command : registry()) {
        if (command.name == verb)
            return command.run(args, out, err);
    }
    err << "kvinsertauto: unknown verb '" << verb << "'\n";
    printUsage(err);
    return kExitBadInput;
}
