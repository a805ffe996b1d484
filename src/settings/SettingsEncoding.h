#pragma once

#include <QByteArray>
#include <QString>
#include <QStringConverter>

#include <optional>

// The byte encoding of the settings files. The host writes them in the code page of its
// process locale; on a machine whose locale differs (a UTF-8 Linux reading files written by a
// Windows host) the code page is named explicitly in KVINSERTAUTO_SETTINGS_ENCODING.
class SettingsEncoding final
{
public:
    static constexpr const char* kEnvironmentVariable = "KVINSERTAUTO_SETTINGS_ENCODING";

    // The process locale's encoding.
    SettingsEncoding();

    // The encoding called `name` ("windows-1252", "ISO-8859-1", "UTF-8", ...), or nothing
    // when the name is not known.
    static std::optional<SettingsEncoding> fromName(const QString& name);

    // The encoding in force: the one named in the environment variable, else (unset or empty)
    // the locale's.
    // An unknown name gives an error text naming the variable and its value.
    static std::optional<SettingsEncoding> fromEnvironment(QString* error);

    QString name() const { return m_name; }

    // Bytes to text. Bytes that do not decode become U+FFFD.
    QString decode(const QByteArray& bytes) const;
    // Text to bytes. A character the code page cannot hold is written as "?".
    QByteArray encode(const QString& text) const;

private:
    enum class Kind {
        Builtin,    // one of Qt's own converters (the locale's, UTF-8, Latin-1, UTF-16...)
        Named,      // a code page that Qt knows only by name (through ICU)
        Windows1252 // implemented here, so that it does not depend on how Qt was built
    };

    Kind m_kind = Kind::Builtin;
    QString m_name;
    QStringConverter::Encoding m_builtin = QStringConverter::System;
};
