#include "SettingsTextFile.h"

#include <QFileInfo>

namespace {

QString describeFailure(const QString& verb, const QString& path, const QString& problem)
{
    return QStringLiteral("%1 \"%2\": %3").arg(verb, path, problem);
}

// QFile says "Unknown error" for a folder; a clearer reason helps whoever reads the message.
QString openProblem(const QFile& file)
{
    if (QFileInfo(file.fileName()).isDir())
        return QStringLiteral("it is a folder");
    if (file.error() == QFileDevice::NoError || file.errorString().isEmpty())
        return QStringLiteral("the file could not be opened");
    return file.errorString();
}

} // namespace

SettingsTextFile::SettingsTextFile() = default;

SettingsTextFile::~SettingsTextFile()
{
    close();
}

SettingsFileStatus SettingsTextFile::openForReading(const QString& path)
{
    close();
    m_path = path;
    m_eof = false;
    QString encodingError;
    const auto encoding = SettingsEncoding::fromEnvironment(&encodingError);
    if (!encoding)
        return {describeFailure(QStringLiteral("cannot read"), path, encodingError)};

    QFile file(path);
    if (QFileInfo(path).isDir() || !file.open(QIODevice::ReadOnly))
        return {describeFailure(QStringLiteral("cannot read"), path, openProblem(file))};
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return {describeFailure(QStringLiteral("cannot read"), path, file.errorString())};

    // Text mode folds CR LF into one line end; a lone CR stays as it is.
    m_text = encoding->decode(bytes);
    m_text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    m_position = 0;
    m_mode = Mode::Read;
    return {};
}

SettingsFileStatus SettingsTextFile::openForWriting(const QString& path)
{
    close();
    m_path = path;
    QString encodingError;
    m_encoding = SettingsEncoding::fromEnvironment(&encodingError);
    if (!m_encoding)
        return {describeFailure(QStringLiteral("cannot write"), path, encodingError)};

    auto file = std::make_unique<QFile>(path);
    if (QFileInfo(path).isDir() ||
        !file->open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        return {describeFailure(QStringLiteral("cannot write"), path, openProblem(*file))};
    }
    m_file = std::move(file);
    m_linesWritten = 0;
    m_mode = Mode::Write;
    return {};
}

bool SettingsTextFile::close()
{
    const bool wasOpen = m_mode != Mode::Closed;
    if (m_file) {
        m_file->close();
        m_file.reset();
    }
    m_text.clear();
    m_position = 0;
    m_mode = Mode::Closed;
    return wasOpen;
}

bool SettingsTextFile::isOpen() const
{
    return m_mode != Mode::Closed;
}

QString SettingsTextFile::readLine()
{
    if (m_mode != Mode::Read) {
        m_eof = true;
        return {};
    }
    const qsizetype limit = kLineBufferSize - 1;
    const qsizetype remaining = m_text.size() - m_position;
    const qsizetype newline = m_text.indexOf(u'\n', m_position);
    qsizetype length = 0;
    if (newline >= 0 && newline - m_position < limit) {
        length = newline - m_position + 1; // stopped at a line end
    } else if (remaining >= limit) {
        length = limit; // stopped with a full buffer, without looking further
    } else {
        // Stopped because the file ended: that is what sets the indicator, whether or not
        // anything was read before.
        length = remaining;
        m_eof = true;
    }
    const QString line = m_text.mid(m_position, length);
    m_position += length;
    return line;
}

bool SettingsTextFile::writeLine(const QString& text)
{
    if (m_mode != Mode::Write || !m_file)
        return false;
    QString line = m_linesWritten == 0 ? text : QStringLiteral("\n") + text;
    // Text mode writes every line end as CR LF.
    line.replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    const QByteArray bytes = m_encoding->encode(line);
    ++m_linesWritten;
    return m_file->write(bytes) == bytes.size();
}

SettingsFileStatus SettingsTextFile::ensureExists(const QString& path)
{
    QFile file(path);
    if (QFileInfo(path).isDir() || !file.open(QIODevice::WriteOnly | QIODevice::Append))
        return {describeFailure(QStringLiteral("cannot create"), path, openProblem(file))};
    file.close();
    return {};
}

KVString companionPath(const KVString& cfaPath, const QString& extension)
{
    const QString replacement = extension.startsWith(u'.') ? extension : u'.' + extension;
    QString path = cfaPath;
    path.replace(QStringLiteral(".cfa"), replacement, Qt::CaseSensitive);
    return path;
}
