#include "HostSettings.h"

#include <QCoreApplication>
#include <QSettings>

#include <memory>

namespace KvHost {

namespace {

std::unique_ptr<QSettings> open(const QString& file)
{
    if (!file.isEmpty())
        return std::make_unique<QSettings>(file, QSettings::IniFormat);
    return std::make_unique<QSettings>(QStringLiteral("KVInsertAuto"), QStringLiteral("kvhost"));
}

struct Key
{
    const char* name;
    QString HostSettings::*member;
};

const Key kKeys[] = {
    {"standard/database", &HostSettings::database},
    {"standard/networkFolder", &HostSettings::networkFolder},
    {"standard/name", &HostSettings::standard},
    {"standard/descriptionLanguage", &HostSettings::descriptionLanguage},
    {"interface/language", &HostSettings::interfaceLanguage},
    {"interface/lastFolder", &HostSettings::lastFolder},
};

} // namespace

HostSettings HostSettings::load(const QString& file)
{
    const std::unique_ptr<QSettings> settings = open(file);
    HostSettings loaded;
    for (const Key& key : kKeys)
        loaded.*(key.member) = settings->value(QLatin1String(key.name)).toString();
    return loaded;
}

bool HostSettings::save(const QString& file, QString* error) const
{
    const std::unique_ptr<QSettings> settings = open(file);
    for (const Key& key : kKeys)
        settings->setValue(QLatin1String(key.name), this->*(key.member));
    settings->sync();
    if (settings->status() != QSettings::NoError) {
        if (error)
            *error = QCoreApplication::translate("kvhost", "%1: the settings cannot be written")
                         .arg(settings->fileName());
        return false;
    }
    return true;
}

} // namespace KvHost
