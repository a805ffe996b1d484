#include "SettingsInputCheck.h"

#include "settings/SettingsTextFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace SettingsInputCheck {

namespace {

// The 1-based line of `text` that holds the character at `position`.
qsizetype lineOf(const QString& text, qsizetype position)
{
    return QStringView(text).left(position).count(u'\n') + 1;
}

// Control characters other than tab, line feed and carriage return never occur in a settings
// file written by the dialog; they mark a file of another kind.
bool isBinaryCharacter(QChar c)
{
    const char16_t u = c.unicode();
    return (u < 0x20 && u != u'\t' && u != u'\n' && u != u'\r') || u == 0x7f;
}

QString checkReadableFile(const QString& path)
{
    const QFileInfo info(path);
    if (info.isDir())
        return path + QStringLiteral(": is a folder, not a settings file");
    if (!info.exists())
        return path + QStringLiteral(": no such file");
    return {};
}

QString checkFile(const QString& path, const SettingsEncoding& encoding, bool isMain)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return path + QStringLiteral(": cannot be read: ") + file.errorString();
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return path + QStringLiteral(": cannot be read: ") + file.errorString();
    return checkContents(path, bytes, encoding, isMain);
}

// A missing companion is created empty by the readers; that needs its folder, which is not
// the .cfa's folder when a folder name holds ".cfa" too.
QString checkCompanion(const QString& path, const SettingsEncoding& encoding)
{
    const QFileInfo info(path);
    if (info.isDir())
        return path + QStringLiteral(": is a folder, not a settings file");
    if (!info.exists()) {
        if (!QFileInfo(info.absolutePath()).isDir())
            return path + QStringLiteral(": the companion file is missing and cannot be created: "
                                         "the folder %1 does not exist")
                              .arg(QDir::toNativeSeparators(info.absolutePath()));
        return {};
    }
    return checkFile(path, encoding, false);
}

} // namespace

QString checkContents(const QString& path, const QByteArray& bytes,
                      const SettingsEncoding& encoding, bool isMain)
{
    // An empty .cfa is a new settings file, as the settings-file picker leaves it: it reads
    // as empty texts without field rows.
    if (bytes.isEmpty())
        return {};
    QString text = encoding.decode(bytes);
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (isBinaryCharacter(text.at(i)))
            return path + QStringLiteral(": line %1 holds binary data (character U+%2); this is "
                                         "not a settings file")
                              .arg(lineOf(text, i))
                              .arg(text.at(i).unicode(), 4, 16, QLatin1Char('0'));
    }
    // Bytes that are not text in the encoding decode to U+FFFD and do not come back when the
    // text is encoded again.
    if (encoding.encode(text) != bytes) {
        const qsizetype replaced = text.indexOf(QChar(QChar::ReplacementCharacter));
        const QString where = replaced >= 0
                                  ? QStringLiteral("line %1 holds").arg(lineOf(text, replaced))
                                  : QStringLiteral("holds");
        return path + QStringLiteral(": %1 bytes that are not %2 text (the settings encoding; "
                                     "%3 names the encoding the file was written in)")
                          .arg(where, encoding.name(),
                               QLatin1String(SettingsEncoding::kEnvironmentVariable));
    }
    // The reader folds CR LF into one line end, as the C library's text mode does.
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    qsizetype start = 0;
    int lines = 0;
    while (start <= text.size()) {
        qsizetype end = text.indexOf(u'\n', start);
        if (end < 0)
            end = text.size();
        ++lines;
        if (end - start > kLongestLine)
            return path + QStringLiteral(": line %1 has %2 characters, more than the %3 the "
                                         "settings reader takes as one line")
                              .arg(lines)
                              .arg(end - start)
                              .arg(kLongestLine);
        start = end + 1;
    }
    // Save always writes the seven header lines, so a shorter .cfa was cut short.
    if (isMain && lines < kHeaderLines)
        return path + QStringLiteral(": holds %1 of the %2 header lines a settings file starts "
                                     "with; it is cut short or not a settings file")
                          .arg(lines)
                          .arg(kHeaderLines);
    return {};
}

QString check(const QString& cfaPath)
{
    if (QString problem = checkReadableFile(cfaPath); !problem.isEmpty())
        return problem;
    QString encodingProblem;
    const std::optional<SettingsEncoding> encoding =
        SettingsEncoding::fromEnvironment(&encodingProblem);
    if (!encoding)
        return QStringLiteral("environment: ") + encodingProblem;
    if (QString problem = checkFile(cfaPath, *encoding, true); !problem.isEmpty())
        return problem;
    for (const QString& extension : {QStringLiteral(".cfb"), QStringLiteral(".cfc")}) {
        const QString companion = companionPath(cfaPath, extension);
        // Without a lowercase ".cfa" the companions are the .cfa itself, checked above.
        if (companion == cfaPath)
            continue;
        if (QString problem = checkCompanion(companion, *encoding); !problem.isEmpty())
            return problem;
    }
    return {};
}

} // namespace SettingsInputCheck
