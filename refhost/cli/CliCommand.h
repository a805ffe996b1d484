#pragma once

#include <QStringList>
#include <QTextStream>

#include <functional>
#include <optional>

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

// One "--name VALUE" option of a verb, stored into a QString member of the verb's arguments.
template <typename Arguments> struct CliOption
{
    const char* name;
    QString Arguments::*member;
    bool required;
};

// Reads "--name VALUE" pairs into `Arguments`; on an unknown option, a missing value or a
// missing required option, sets `problem` and answers nothing.
template <typename Arguments, size_t N>
std::optional<Arguments> parseCliOptions(const QStringList& args,
                                         const CliOption<Arguments> (&options)[N], QString* problem)
{
    Arguments parsed;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args.at(i);
        const CliOption<Arguments>* option = nullptr;
        for (const CliOption<Arguments>& candidate : options) {
            if (arg == QLatin1String(candidate.name))
                option = &candidate;
        }
        if (!option) {
            *problem = QStringLiteral("unknown argument %1").arg(arg);
            return std::nullopt;
        }
        if (i + 1 >= args.size()) {
            *problem = arg + QStringLiteral(" needs a value");
            return std::nullopt;
        }
        parsed.*(option->member) = args.at(++i);
    }
    for (const CliOption<Arguments>& option : options) {
        if (option.required && (parsed.*(option.member)).isEmpty()) {
            *problem = QStringLiteral("%1 is required").arg(QLatin1String(option.name));
            return std::nullopt;
        }
    }
    return parsed;
}
