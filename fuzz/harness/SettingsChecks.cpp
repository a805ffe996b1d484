// Checks of the settings-file readers: the line reader, the main-file reader and the list-file
// reader, each against the rules the files are read by.
#include "ReaderChecks.h"
#include "ScratchFile.h"

#include "settings/CEArquivoCfg.h"
#include "settings/SettingsEncoding.h"
#include "settings/SettingsLine.h"
#include "settings/SettingsTextFile.h"

#include <QStringList>

#include <array>
#include <optional>

namespace ReaderChecks {

namespace {

// The encodings a settings file is read in here: the locale's, a Windows code page (the
// host's usual one) and a two-byte encoding whose odd byte counts end in a broken character.
const std::array<const char*, 3> kEncodings = {"", "windows-1252", "UTF-16LE"};

// Sets the settings encoding for the life of a scope and puts the previous value back.
class ScopedEncoding final
{
public:
    explicit ScopedEncoding(const char* name)
        : m_previous(qEnvironmentVariable(SettingsEncoding::kEnvironmentVariable)),
          m_wasSet(qEnvironmentVariableIsSet(SettingsEncoding::kEnvironmentVariable))
    {
        qputenv(SettingsEncoding::kEnvironmentVariable, name);
    }
    ~ScopedEncoding()
    {
        if (m_wasSet)
            qputenv(SettingsEncoding::kEnvironmentVariable, m_previous.toLocal8Bit());
        else
            qunsetenv(SettingsEncoding::kEnvironmentVariable);
    }
    ScopedEncoding(const ScopedEncoding&) = delete;
    ScopedEncoding& operator=(const ScopedEncoding&) = delete;

private:
    QString m_previous;
    bool m_wasSet;
};

QString describe(const char* encoding, const QString& problem)
{
    const QString name = *encoding ? QString::fromLatin1(encoding) : QStringLiteral("locale");
    return QStringLiteral("[%1 encoding] %2").arg(name, problem);
}

bool isCWhiteSpace(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\v' || c == u'\f';
}

// The file's lines as the line reader gives them, checked against what the file holds: the
// lines put together give the decoded text back with CR LF folded into "\n", no line is longer
// than the buffer allows, a line end only ever closes a line, and a line cut short of its end
// is cut at the buffer's length.
std::optional<QStringList> readLines(const QString& path, const QString& text, QString* problem)
{
    SettingsTextFile file;
    if (const SettingsFileStatus status = file.openForReading(path); !status) {
        *problem = QStringLiteral("an existing file did not open: ") + status.error;
        return std::nullopt;
    }
    if (file.atEnd()) {
        *problem = QStringLiteral("the end-of-file indicator is set before the first read");
        return std::nullopt;
    }
    QStringList lines;
    // Every read but the last takes at least one character, so this bound is never reached by
    // a reader that keeps its promise.
    const qsizetype maxReads = text.size() + 2;
    do {
        if (lines.size() > maxReads) {
            *problem = QStringLiteral("the line reader does not reach the end of the file");
            return std::nullopt;
        }
        lines.append(file.readLine());
    } while (!file.atEnd());
    if (!file.readLine().isEmpty() || !file.atEnd()) {
        *problem = QStringLiteral("a read after the end of the file gave text");
        return std::nullopt;
    }
    if (!file.close() || file.close()) {
        *problem = QStringLiteral("close does not report the open file exactly once");
        return std::nullopt;
    }

    constexpr qsizetype maxLine = SettingsTextFile::kLineBufferSize - 1;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString& line = lines.at(i);
        const bool last = i + 1 == lines.size();
        if (line.size() > maxLine) {
            *problem = QStringLiteral("line %1 has %2 characters, more than %3")
                           .arg(i)
                           .arg(line.size())
                           .arg(maxLine);
            return std::nullopt;
        }
        const qsizetype lineEnd = line.indexOf(u'\n');
        if (lineEnd >= 0 && lineEnd != line.size() - 1) {
            *problem = QStringLiteral("line %1 holds a line end before its last character").arg(i);
            return std::nullopt;
        }
        if (!last && lineEnd < 0 && line.size() != maxLine) {
            *problem = QStringLiteral("line %1 stops after %2 characters, neither at a line end "
                                      "nor at the buffer's length")
                           .arg(i)
                           .arg(line.size());
            return std::nullopt;
        }
        if (!last && line.isEmpty()) {
            *problem = QStringLiteral("line %1 is empty but is not the last read").arg(i);
            return std::nullopt;
        }
    }
    if (lines.join(QString()) != text) {
        *problem = QStringLiteral("the lines put together differ from the file's text");
        return std::nullopt;
    }
    return lines;
}

// The cells of a line, split by hand: a run of ";" is one separator, empty cells vanish.
QStringList cellsOf(const QString& line)
{
    QStringList cells;
    QString cell;
    for (const QChar c : line) {
        if (c == u';') {
            if (!cell.isEmpty())
                cells.append(cell);
            cell.clear();
        } else {
            cell.append(c);
        }
    }
    if (!cell.isEmpty())
        cells.append(cell);
    return cells;
}

QString checkTrimmed(const QStringList& lines)
{
    for (const QString& line : lines) {
        const QString trimmed = SettingsLine::trimmed(line);
        if (!trimmed.isEmpty() && (isCWhiteSpace(trimmed.front()) ||
                                   isCWhiteSpace(trimmed.back()) || !line.contains(trimmed))) {
            return QStringLiteral("trimming a line leaves white space at an end");
        }
    }
    return {};
}

template <std::size_t N> void takeCells(const QString& line, std::array<QString, N>& holders)
{
    const QStringList cells = cellsOf(line);
    for (std::size_t i = 0; i < N && i < std::size_t(cells.size()); ++i)
        holders[i] = cells.at(qsizetype(i));
}

QString checkMainFile(const QString& path, const QStringList& lines)
{
    CEArquivoCfg settings;
    if (const SettingsFileStatus status = settings.OpenMainFile(path); !status)
        return QStringLiteral("an existing main file did not open: ") + status.error;
    settings.ReadMainFile();
    if (settings.CloseMainFile() != 1 || settings.CloseMainFile() != 0)
        return QStringLiteral("closing the main file does not answer 1 and then 0");
    if (settings.rowCount() != 0)
        return QStringLiteral("reading a main file filled block rows");

    const std::array<QString, 7> header = {settings.gapBeforeVar(),  settings.gapAfterVar(),
                                           settings.startPoint(),    settings.spaceWidth(),
                                           settings.separatorMode(), settings.pageSize(),
                                           settings.pageMode()};
    for (std::size_t i = 0; i < header.size(); ++i) {
        const QString expected =
            qsizetype(i) < lines.size() ? SettingsLine::trimmed(lines.at(qsizetype(i))) : QString();
        if (header[i] != expected)
            return QStringLiteral("header line %1 is not the trimmed line of the file").arg(i + 1);
    }

    const qsizetype expectedFields = std::max<qsizetype>(0, lines.size() - 7);
    if (settings.fieldCount() != expectedFields) {
        return QStringLiteral("%1 field rows for %2 lines after the header")
            .arg(settings.fieldCount())
            .arg(expectedFields);
    }
    std::array<QString, 4> holders;
    for (qsizetype i = 0; i < expectedFields; ++i) {
        const QString line = SettingsLine::trimmed(lines.at(i + 7));
        if (!line.isEmpty())
            takeCells(line, holders);
        const CECampoCfg* field = settings.field(int(i));
        if (field->fieldName() != holders[0] || field->attribute() != holders[1] ||
            field->search() != holders[2] || field->show() != (holders[3] == u"S")) {
            return QStringLiteral("field row %1 does not hold the cells of its line (or the "
                                  "cells carried over from the row before)")
                .arg(i);
        }
    }
    return {};
}

QString checkListFile(const QString& path, const QStringList& lines)
{
    CEArquivoCfg settings;
    if (const SettingsFileStatus status = settings.OpenListFile(path); !status)
        return QStringLiteral("an existing list file did not open: ") + status.error;
    settings.ReadListFile();
    if (settings.CloseListFile() != 1 || settings.CloseListFile() != 0)
        return QStringLiteral("closing the list file does not answer 1 and then 0");
    if (settings.fieldCount() != 0)
        return QStringLiteral("reading a list file filled field rows");
    if (settings.rowCount() != lines.size()) {
        return QStringLiteral("%1 rows for %2 lines").arg(settings.rowCount()).arg(lines.size());
    }
    std::array<QString, 3> holders;
    bool sawText = false;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString line = SettingsLine::trimmed(lines.at(i));
        if (!line.isEmpty()) {
            sawText = true;
            takeCells(line, holders);
        } else if (!sawText) {
            holders = {QStringLiteral("..."), QStringLiteral("0,0"), QStringLiteral("0")};
        }
        const CECampoCfg* row = settings.row(int(i));
        if (row->blockName() != holders[0] || row->storedPosition() != holders[1] ||
            row->storedAngle() != holders[2]) {
            return QStringLiteral("row %1 does not hold the cells of its line (or the cells "
                                  "carried over from the row before)")
                .arg(i);
        }
    }
    return {};
}

using FileCheck = QString (*)(const QString& path, const QStringList& lines);

QString checkSettingsFile(const QByteArray& input, const QString& fileName, FileCheck check)
{
    recordOutcome(QString());
    const QString path = ScratchFolder::instance().write(fileName, input);
    if (path.isEmpty())
        return QStringLiteral("the input could not be written to a scratch file");
    for (const char* encodingName : kEncodings) {
        const ScopedEncoding scoped(encodingName);
        QString problem;
        const auto encoding = SettingsEncoding::fromEnvironment(&problem);
        if (!encoding)
            return describe(encodingName, problem);
        QString text = encoding->decode(input);
        text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        const std::optional<QStringList> lines = readLines(path, text, &problem);
        if (!lines)
            return describe(encodingName, problem);
        if (problem = checkTrimmed(*lines); !problem.isEmpty())
            return describe(encodingName, problem);
        if (problem = check(path, *lines); !problem.isEmpty())
            return describe(encodingName, problem);
        if (!*encodingName)
            recordOutcome(QStringLiteral("%1 lines").arg(lines->size()));
    }
    return {};
}

} // namespace

QString settingsMainFile(const QByteArray& input)
{
    return checkSettingsFile(input, QStringLiteral("input.cfa"), &checkMainFile);
}

QString settingsListFile(const QByteArray& input)
{
    return checkSettingsFile(input, QStringLiteral("input.cfb"), &checkListFile);
}

} // namespace ReaderChecks
