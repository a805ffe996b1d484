#pragma once

#include "SettingsEncoding.h"
#include "host/KVString.h"

#include <QFile>
#include <QString>

#include <memory>

// The outcome of opening a settings file. An empty error means success; otherwise the error
// names the file and what went wrong.
struct SettingsFileStatus
{
    QString error;

    bool ok() const { return error.isEmpty(); }
    explicit operator bool() const { return ok(); }
};

// A settings text file in the manner of the C library's text mode: one handle reads or writes
// one file, converting between text and the settings encoding (see SettingsEncoding). A line
// end is written as CR LF and CR LF is read back as "\n". The handle also counts the lines
// written so far, because lines are separated, not terminated.
class SettingsTextFile final
{
public:
    // Lines are read into a buffer of this many wide characters, the last one being the
    // terminator, so one read returns at most kLineBufferSize - 1 characters.
    static constexpr int kLineBufferSize = 512;

    SettingsTextFile();
    ~SettingsTextFile();
    SettingsTextFile(const SettingsTextFile&) = delete;
    SettingsTextFile& operator=(const SettingsTextFile&) = delete;

    // Opens an existing file for reading; the file is not created. The whole file is decoded
    // at once (settings files are small).
    SettingsFileStatus openForReading(const QString& path);
    // Creates the file, or empties an existing one, for writing.
    SettingsFileStatus openForWriting(const QString& path);
    // Closes the file, writing out what is pending. Returns true when a file was open.
    bool close();
    bool isOpen() const;
    QString path() const { return m_path; }

    // Reads like fgetws into a buffer of kLineBufferSize characters: at most
    // kLineBufferSize - 1 characters, up to and including the next "\n" (which stays in the
    // result). Returns an empty text when nothing could be read because the file is at its end.
    // A handle with no file open reads like an empty file.
    QString readLine();
    // The end-of-file indicator: set only once a read has hit the end of the file, so a fresh
    // handle on an empty file is not at its end until the first read.
    bool atEnd() const { return m_eof; }

    // Writes `text`, preceded by a line end unless it is the first line written through this
    // handle. Returns false when the file is not open or the write failed.
    bool writeLine(const QString& text);
    int linesWritten() const { return m_linesWritten; }

    // Makes sure that `path` exists: an existing file keeps its contents, a missing one is
    // created empty (the open-for-append-and-close step).
    static SettingsFileStatus ensureExists(const QString& path);

private:
    enum class Mode { Closed, Read, Write };

    Mode m_mode = Mode::Closed;
    QString m_path;
    // Reading: the decoded text with CR LF already folded into "\n", and the read position.
    QString m_text;
    qsizetype m_position = 0;
    bool m_eof = false;
    // Writing.
    std::unique_ptr<QFile> m_file;
    std::optional<SettingsEncoding> m_encoding;
    int m_linesWritten = 0;
};

// The path of a companion file: `cfaPath` with every occurrence of the exact lowercase text
// ".cfa" replaced by `extension` (".cfb" or ".cfc"; a leading dot is added when missing). The
// rule applies to the whole path, folders included, and is case-sensitive, so a path without a
// lowercase ".cfa" gives itself back.
KVString companionPath(const KVString& cfaPath, const QString& extension);
