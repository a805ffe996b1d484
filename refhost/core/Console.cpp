#include "Console.h"

#include <QFile>

#include <cstdio>
#include <unistd.h>

namespace RefHost {

namespace {

std::unique_ptr<QIODevice> openStream(FILE* stream)
{
    auto file = std::make_unique<QFile>();
    if (!file->open(stream, QIODevice::WriteOnly | QIODevice::Unbuffered))
        return nullptr;
    return file;
}

} // namespace

Console::Console()
    : m_ownOut(openStream(stdout)), m_ownErr(openStream(stderr)), m_out(m_ownOut.get()),
      m_err(m_ownErr.get()), m_errIsTerminal(::isatty(::fileno(stderr)) == 1)
{}

Console::Console(QIODevice* out, QIODevice* err, bool errIsTerminal)
    : m_out(out), m_err(err), m_errIsTerminal(errIsTerminal)
{}

Console::~Console() = default;

void Console::print(const QString& text)
{
    write(m_out, text);
}

void Console::line(const QString& prefix, const QString& text)
{
    write(m_err, prefix + QStringLiteral(": ") + text + QLatin1Char('\n'));
}

void Console::errorRaw(const QString& text)
{
    write(m_err, text);
}

void Console::write(QIODevice* device, const QString& text)
{
    if (!device)
        return;
    device->write(text.toUtf8());
}

} // namespace RefHost
