#pragma once

#include "settings/SettingsEncoding.h"

#include <QByteArray>
#include <QFile>
#include <QString>

// Small file helpers shared by the settings tests.
namespace SettingsTestSupport {

inline QByteArray readBytes(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray("<cannot read ") + path.toUtf8() + '>';
    return file.readAll();
}

inline bool writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(bytes) == bytes.size();
}

// Sets (or, with an empty value, removes) the settings-encoding variable for one scope.
class ScopedSettingsEncoding
{
public:
    explicit ScopedSettingsEncoding(const QByteArray& name)
        : m_wasSet(qEnvironmentVariableIsSet(SettingsEncoding::kEnvironmentVariable)),
          m_previous(qgetenv(SettingsEncoding::kEnvironmentVariable))
    {
        if (name.isEmpty())
            qunsetenv(SettingsEncoding::kEnvironmentVariable);
        else
            qputenv(SettingsEncoding::kEnvironmentVariable, name);
    }
    ~ScopedSettingsEncoding()
    {
        if (m_wasSet)
            qputenv(SettingsEncoding::kEnvironmentVariable, m_previous);
        else
            qunsetenv(SettingsEncoding::kEnvironmentVariable);
    }
    ScopedSettingsEncoding(const ScopedSettingsEncoding&) = delete;
    ScopedSettingsEncoding& operator=(const ScopedSettingsEncoding&) = delete;

private:
    bool m_wasSet;
    QByteArray m_previous;
};

} // namespace SettingsTestSupport
