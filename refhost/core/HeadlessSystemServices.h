#pragma once

#include "Console.h"
#include "ResourceContext.h"

#include "host/CFxSystemServices.h"

#include <QStringList>

namespace RefHost {

// The system services of a host without windows. Message boxes are written to the error stream
// as "warning: TEXT" or "critical: TEXT" and answer OK at once. The file dialog answers from
// the paths the program gave in advance, one per call in order, and cancels when none is left.
class HeadlessSystemServices final : public CFxSystemServices
{
public:
    // What the file dialog answers when it is cancelled (anything but KV_RESULT_OK).
    static constexpr int kDialogCancelled = 2;
    // What a message box answers: its only button, OK.
    static constexpr int kMessageOk = 1;

    HeadlessSystemServices(Console& console, QString tempFolder = {});

    void setFileDialogAnswers(const QStringList& paths) { m_answers = paths; }
    const QStringList& fileDialogAnswers() const { return m_answers; }

    int FileDialog(int flag, KVString& path, KVWindowId parent, int mode, const KVString& title,
                   const KVString& defaultName, const KVString& filter,
                   const KVString& initialFolder, void* reserved1, void* reserved2, void* reserved3,
                   int reserved4) override;
    CFxResourceContext* GetResourceContext() override { return &m_resources; }
    KVString GetMessageBoxTitle() override;
    int ShowMessageBox(MessageKind kind, KVWindowId parent, const KVString& title,
                       const KVString& text) override;
    // The given folder, else the system's temporary folder; it ends with "/".
    KVString GetTempFolder() override;

    ResourceContext& resources() { return m_resources; }
    int messageCount() const { return m_messages; }

private:
    Console& m_console;
    QString m_tempFolder;
    QStringList m_answers;
    ResourceContext m_resources;
    int m_messages = 0;
};

} // namespace RefHost
