#pragma once

#include <QString>

namespace KvHost {

// The desktop host's settings, kept between sessions with QSettings: the standard's database
// (an SQLite file or a postgresql:// URL), the network folder holding DADOS/<standard>/BLOCOS,
// the standard in use, the description language, the language of the interface and the
// folder of recent files. Without a file the person's own settings (organisation "KVInsertAuto",
// application "kvhost") are used; tests and scripts give a file of their own.
struct HostSettings
{
    QString database;
    QString networkFolder;
    QString standard;
    QString descriptionLanguage; // empty: the database's lowest
    QString interfaceLanguage;   // "en", "pt_BR", "es"; empty: the system's
    QString lastFolder;

    // A database and a standard are what a reference host needs at the least.
    bool isComplete() const { return !database.isEmpty() && !standard.trimmed().isEmpty(); }

    // Reads from the INI file `file`, or from the person's settings when `file` is empty.
    static HostSettings load(const QString& file = {});
    // Writes them back; false (with the reason in `error`) when they could not be stored.
    bool save(const QString& file = {}, QString* error = nullptr) const;
};

} // namespace KvHost
