#pragma once

#include <QStringList>
#include <QTextStream>

#include <functional>

// One verb of the command-line program ("settings", "job", "run", "import"...). Each verb
// lives in its own source file and registers itself with a static CliCommandRegistration.
struct CliCommand
{
    QString name;
    QString usage; // one line, shown by "kvinsertauto --help"
    // Runs the verb on the arguments after its name; returns the exit status.
    std::function<int(const QStringList& args, QTextStream& out, QTextStream& err)> run;
};

class CliCommandRegistration
{
public:
    explicit CliCommandRegistration(CliCommand command);
};

const QList<CliCommand>& registeredCliCommands();

// Exit statuses of the program.
inline constexpr int kExitOk = 0;
inline constexpr int kExitFailure = 1;  // the verb ran but reported a failure
inline constexpr int kExitBadInput = 2; // bad arguments or input: nothing was written
