#include "HostSettingsDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

namespace KvHost {

namespace {

// A line edit with a "..." button that opens a file or folder dialog.
QWidget* withBrowse(QLineEdit* edit, QWidget* parent, bool folder)
{
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(edit, 1);
    auto* browse = new QToolButton(row);
    browse->setText(QStringLiteral("..."));
    layout->addWidget(browse);
    QObject::connect(browse, &QToolButton::clicked, parent, [edit, parent, folder]() {
        const QString chosen =
            folder ? QFileDialog::getExistingDirectory(parent, QString(), edit->text())
                   : QFileDialog::getOpenFileName(
                         parent, QString(), edit->text(),
                         HostSettingsDialog::tr("SQLite databases (*.db *.sqlite);;All files (*)"));
        if (!chosen.isEmpty())
            edit->setText(chosen);
    });
    return row;
}

} // namespace

HostSettingsDialog::HostSettingsDialog(const HostSettings& settings, QWidget* parent)
    : QDialog(parent), m_base(settings)
{
    setWindowTitle(tr("Host settings"));
    setObjectName(QStringLiteral("HostSettingsDialog"));
    m_database = new QLineEdit(settings.database, this);
    m_database->setObjectName(QStringLiteral("database"));
    m_database->setPlaceholderText(tr("standard.db or postgresql://user@host:5432/db"));
    m_networkFolder = new QLineEdit(settings.networkFolder, this);
    m_networkFolder->setObjectName(QStringLiteral("networkFolder"));
    m_networkFolder->setPlaceholderText(tr("folder holding DADOS/<standard>/BLOCOS"));
    m_standard = new QLineEdit(settings.standard, this);
    m_standard->setObjectName(QStringLiteral("standard"));
    m_descriptionLanguage = new QLineEdit(settings.descriptionLanguage, this);
    m_descriptionLanguage->setObjectName(QStringLiteral("descriptionLanguage"));
    m_descriptionLanguage->setValidator(new QIntValidator(0, 9999, this));
    m_descriptionLanguage->setPlaceholderText(tr("lowest of the database"));
    m_interfaceLanguage = new QComboBox(this);
    m_interfaceLanguage->setObjectName(QStringLiteral("interfaceLanguage"));
    m_interfaceLanguage->addItem(tr("System default"), QString());
    m_interfaceLanguage->addItem(QStringLiteral("English"), QStringLiteral("en"));
    m_interfaceLanguage->addItem(QStringLiteral("Português (Brasil)"), QStringLiteral("pt_BR"));
    m_interfaceLanguage->addItem(QStringLiteral("Español"), QStringLiteral("es"));
    const int index = m_interfaceLanguage->findData(settings.interfaceLanguage);
    m_interfaceLanguage->setCurrentIndex(index < 0 ? 0 : index);

    auto* form = new QFormLayout;
    form->addRow(tr("Standard database:"), withBrowse(m_database, this, false));
    form->addRow(tr("Network folder:"), withBrowse(m_networkFolder, this, true));
    form->addRow(tr("Standard in use:"), m_standard);
    form->addRow(tr("Description language:"), m_descriptionLanguage);
    form->addRow(tr("Interface language:"), m_interfaceLanguage);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
    resize(560, sizeHint().height());
}

HostSettings HostSettingsDialog::settings() const
{
    HostSettings result = m_base;
    result.database = m_database->text().trimmed();
    result.networkFolder = m_networkFolder->text().trimmed();
    result.standard = m_standard->text().trimmed();
    result.descriptionLanguage = m_descriptionLanguage->text().trimmed();
    result.interfaceLanguage = m_interfaceLanguage->currentData().toString();
    return result;
}

} // namespace KvHost
