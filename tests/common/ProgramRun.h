#pragma once

// Runs one of the project's programs the way a user's shell does, for tests that check a
// program from outside: arguments, environment and standard input go in; the exit status and
// the bytes of both output streams come back. Header-only, so that a test that only runs the
// program needs no library of the test host.

#include <QByteArray>
#include <QMap>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <optional>

namespace ProgramRun {

struct Options
{
    // Variables set for the program, on top of the test's own environment.
    QMap<QString, QString> environment;
    // Variables of the test's own environment that the program must not see.
    QStringList removedEnvironment;
    // Bytes written to standard input, which is then closed.
    std::optional<QByteArray> input;
    // A file read as standard input. With neither this nor `input`, standard input is empty,
    // so that a program that reads it never waits for a test that writes nothing.
    QString inputFile;
    // How long the program may take; then it is killed.
    int timeoutMs = 120000;
};

struct Result
{
    // The program's exit status; -1 when it did not start, crashed or did not finish.
    int exitCode = -1;
    QByteArray out;
    // What the program wrote to its error stream, followed by a line of this runner's own when
    // the program did not start, crashed or was killed.
    QByteArray err;

    QString outText() const { return QString::fromUtf8(out); }
    QString errText() const { return QString::fromUtf8(err); }
};

inline Result run(const QString& program, const QStringList& arguments, const Options& options = {})
{
    QProcess process;
    if (!options.environment.isEmpty() || !options.removedEnvironment.isEmpty()) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString& name : options.removedEnvironment)
            environment.remove(name);
        for (auto it = options.environment.cbegin(); it != options.environment.cend(); ++it)
            environment.insert(it.key(), it.value());
        process.setProcessEnvironment(environment);
    }
    if (!options.input) {
        process.setStandardInputFile(options.inputFile.isEmpty() ? QProcess::nullDevice()
                                                                 : options.inputFile);
    }

    Result result;
    const QByteArray name = program.toUtf8();
    process.start(program, arguments);
    if (!process.waitForStarted(options.timeoutMs)) {
        result.err = "cannot start " + name + ": " + process.errorString().toUtf8() + '\n';
        return result;
    }
    if (options.input) {
        process.write(*options.input);
        process.closeWriteChannel();
    }
    const bool finished = process.waitForFinished(options.timeoutMs);
    if (!finished) {
        process.kill();
        process.waitForFinished();
    }
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    if (!finished) {
        result.err += "\n" + name + " did not finish within " +
                      QByteArray::number(options.timeoutMs / 1000.0) + " s and was killed\n";
    } else if (process.exitStatus() != QProcess::NormalExit) {
        result.err += "\n" + name + " crashed\n";
    } else {
        result.exitCode = process.exitCode();
    }
    return result;
}

} // namespace ProgramRun
