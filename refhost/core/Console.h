#pragma once

#include <QIODevice>
#include <QString>

#include <memory>

namespace RefHost {

// Where the headless host writes: the command line (drawing-language print) goes to the output
// stream, messages, the log, errors and progress to the error stream. Tests give their own
// buffers; the program uses stdout and stderr.
class Console
{
public:
    // stdout and stderr; the error stream counts as a terminal when stderr is one.
    Console();
    // Writes to the given devices (not owned; open for writing, outliving the console).
    Console(QIODevice* out, QIODevice* err, bool errIsTerminal = false);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    // Writes a text to the output stream as it is.
    void print(const QString& text);
    // Writes one line ("PREFIX: TEXT\n") to the error stream.
    void line(const QString& prefix, const QString& text);
    void error(const QString& text) { line(QStringLiteral("error"), text); }
    // Writes a text to the error stream as it is (progress bars).
    void errorRaw(const QString& text);

    bool errIsTerminal() const { return m_errIsTerminal; }

private:
    void write(QIODevice* device, const QString& text);

    std::unique_ptr<QIODevice> m_ownOut;
    std::unique_ptr<QIODevice> m_ownErr;
    QIODevice* m_out = nullptr;
    QIODevice* m_err = nullptr;
    bool m_errIsTerminal = false;
};

} // namespace RefHost
