#pragma once

#include "HostSettings.h"

#include <QDialog>

class QComboBox;
class QLineEdit;

namespace KvHost {

// Edits the host settings: standard database (SQLite file or postgresql:// URL), network
// folder, standard in use, description language and interface language.
class HostSettingsDialog final : public QDialog
{
    Q_OBJECT

public:
    explicit HostSettingsDialog(const HostSettings& settings, QWidget* parent = nullptr);

    HostSettings settings() const;

    QLineEdit* databaseEdit() const { return m_database; }
    QLineEdit* networkFolderEdit() const { return m_networkFolder; }
    QLineEdit* standardEdit() const { return m_standard; }
    QLineEdit* descriptionLanguageEdit() const { return m_descriptionLanguage; }
    QComboBox* interfaceLanguageBox() const { return m_interfaceLanguage; }

private:
    HostSettings m_base;
    QLineEdit* m_database = nullptr;
    QLineEdit* m_networkFolder = nullptr;
    QLineEdit* m_standard = nullptr;
    QLineEdit* m_descriptionLanguage = nullptr;
    QComboBox* m_interfaceLanguage = nullptr;
};

} // namespace KvHost
