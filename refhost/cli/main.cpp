#include "CliCommand.h"

#include <QCoreApplication>

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
    QCoreApplication app(argc, argv);
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
