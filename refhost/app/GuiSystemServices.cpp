#include "GuiSystemServices.h"

#include "FileDialogFilter.h"

#include <QDir>
#include <QFileDialog>
#include <QMessageBox>

namespace KvHost {

GuiSystemServices::GuiSystemServices(QObject* parent) : QObject(parent) {}

void GuiSystemServices::setScriptedAnswers(const QStringList& paths)
{
    m_scripted = paths;
}

void GuiSystemServices::scriptFromEnvironment()
{
    if (!qEnvironmentVariableIsSet("KVHOST_FILE_DIALOG_ANSWERS"))
        return;
    setScriptedAnswers(qEnvironmentVariable("KVHOST_FILE_DIALOG_ANSWERS")
                           .split(QDir::listSeparator(), Qt::SkipEmptyParts));
}

int GuiSystemServices::FileDialog(int, KVString& path, KVWindowId, int mode, const KVString& title,
                                  const KVString& defaultName, const KVString& filter,
                                  const KVString& initialFolder, void*, void*, void*, int)
{
    FileDialogRequest request;
    request.mode = mode;
    request.filter = filter;
    request.nameFilters = FileDialogFilter::toNameFilters(filter);
    request.initialFolder = initialFolder;
    m_requests.append(request);

    if (m_scripted) {
        if (m_scripted->isEmpty())
            return kDialogCancelled;
        path = m_scripted->takeFirst();
        return KV_RESULT_OK;
    }

    QString folder = initialFolder;
    if (!folder.isEmpty() && !QFileInfo(folder).isDir())
        folder.clear(); // a folder that does not exist yet: start where the dialog likes
    if (!defaultName.isEmpty())
        folder = folder.isEmpty() ? QString(defaultName) : QDir(folder).filePath(defaultName);
    const std::unique_ptr<QFileDialog> dialog =
        makeFileDialog(m_window, mode, title, folder, request.nameFilters);
    if (dialog->exec() != QDialog::Accepted || dialog->selectedFiles().isEmpty())
        return kDialogCancelled;
    path = dialog->selectedFiles().constFirst();
    return KV_RESULT_OK;
}

std::unique_ptr<QFileDialog> GuiSystemServices::makeFileDialog(QWidget* parent, int mode,
                                                               const QString& title,
                                                               const QString& start,
                                                               const QStringList& nameFilters)
{
    auto dialog = std::make_unique<QFileDialog>(parent, title, start);
    if (mode == kSaveAs) {
        dialog->setAcceptMode(QFileDialog::AcceptSave);
        dialog->setFileMode(QFileDialog::AnyFile);
    } else {
        dialog->setAcceptMode(QFileDialog::AcceptOpen);
        dialog->setFileMode(QFileDialog::ExistingFile);
    }
    if (!nameFilters.isEmpty())
        dialog->setNameFilters(nameFilters);
    return dialog;
}

KVString GuiSystemServices::GetMessageBoxTitle()
{
    return messageBoxTitle();
}

int GuiSystemServices::ShowMessageBox(MessageKind kind, KVWindowId, const KVString& title,
                                      const KVString& text)
{
    const QString line = (kind == MessageKind::Warning ? QStringLiteral("warning: ")
                                                       : QStringLiteral("critical: ")) +
                         QString(text);
    m_messages.append(line);
    emit messageShown(line);
    if (m_scripted)
        return kMessageOk;
    QMessageBox box(kind == MessageKind::Warning ? QMessageBox::Warning : QMessageBox::Critical,
                    title.isEmpty() ? messageBoxTitle() : QString(title), text, QMessageBox::Ok,
                    m_window);
    box.exec();
    return kMessageOk;
}

KVString GuiSystemServices::GetTempFolder()
{
    QString folder = QDir::tempPath();
    if (!folder.endsWith(QLatin1Char('/')))
        folder += QLatin1Char('/');
    return folder;
}

} // namespace KvHost
