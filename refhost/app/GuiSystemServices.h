#pragma once

#include "ResourceContext.h"

#include "host/CFxSystemServices.h"

#include <QList>
#include <QObject>
#include <QStringList>

#include <memory>
#include <optional>

class QFileDialog;
class QWidget;

namespace KvHost {

// The system services of the desktop host: QFileDialog for the host's file dialog (its filter
// notation turned into Qt name filters), QMessageBox with one OK button and the host's title.
//
// Scripted mode, for tests and for the screenshot script: the file dialog answers the queued
// paths one per call (and cancels when the queue is empty) and message boxes are written to the
// command-line pane instead of being shown. It is switched on by setScriptedAnswers() or by the
// environment variable KVHOST_FILE_DIALOG_ANSWERS (paths separated by the platform's list
// separator, ":" on Linux).
class GuiSystemServices final : public QObject, public CFxSystemServices
{
    Q_OBJECT

public:
    static constexpr int kDialogCancelled = 2;
    static constexpr int kMessageOk = 1;

    // One call of the file dialog, as it was asked.
    struct FileDialogRequest
    {
        int mode = 0;
        QString filter;
        QStringList nameFilters;
        QString initialFolder;
    };

    explicit GuiSystemServices(QObject* parent = nullptr);

    // The window dialogs and message boxes are parented to.
    void setMainWindow(QWidget* window) { m_window = window; }

    void setScriptedAnswers(const QStringList& paths);
    bool isScripted() const { return m_scripted.has_value(); }
    QStringList pendingAnswers() const { return m_scripted.value_or(QStringList()); }
    // Reads KVHOST_FILE_DIALOG_ANSWERS; nothing changes when it is not set.
    void scriptFromEnvironment();

    int FileDialog(int flag, KVString& path, KVWindowId parent, int mode, const KVString& title,
                   const KVString& defaultName, const KVString& filter,
                   const KVString& initialFolder, void* reserved1, void* reserved2, void* reserved3,
                   int reserved4) override;
    CFxResourceContext* GetResourceContext() override { return &m_resources; }
    KVString GetMessageBoxTitle() override;
    int ShowMessageBox(MessageKind kind, KVWindowId parent, const KVString& title,
                       const KVString& text) override;
    KVString GetTempFolder() override;

    const QList<FileDialogRequest>& fileDialogRequests() const { return m_requests; }
    // Every message shown, as "warning: TEXT" or "critical: TEXT".
    const QStringList& messages() const { return m_messages; }

    static QString messageBoxTitle() { return QStringLiteral("KVInsertAuto"); }

    // The dialog FileDialog shows: Qt's file dialog for opening an existing file or for saving
    // (kSaveAs), with the Qt name filters, starting in `start` (a folder, or a folder and the
    // name to propose).
    static std::unique_ptr<QFileDialog> makeFileDialog(QWidget* parent, int mode,
                                                       const QString& title, const QString& start,
                                                       const QStringList& nameFilters);

signals:
    // A message of a message box, for the command-line pane.
    void messageShown(const QString& line);

private:
    QWidget* m_window = nullptr;
    std::optional<QStringList> m_scripted;
    RefHost::ResourceContext m_resources;
    QList<FileDialogRequest> m_requests;
    QStringList m_messages;
};

} // namespace KvHost
