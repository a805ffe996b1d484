#pragma once

#include "host/CFxSystemServices.h"

#include <QList>
#include <QQueue>

// The host framework's system services as a test scripts them: file-dialog answers queued in
// advance, message boxes answered OK at once, a resource context that records switches.
class FakeSystemServices final : public CFxSystemServices
{
public:
    static constexpr int kMessageBoxOk = 1;

    struct Message
    {
        MessageKind kind = MessageKind::Warning;
        KVWindowId parent = 0;
        KVString title;
        KVString text;
    };

    struct FileDialogCall
    {
        int flag = 0;
        int mode = 0;
        KVString title;
        KVString defaultName;
        KVString filter;
        KVString initialFolder;
    };

    class ResourceContext final : public CFxResourceContext
    {
    public:
        KVModuleHandle setCurrent(KVModuleHandle module) override;
        KVModuleHandle current() const { return m_current; }
        const QList<KVModuleHandle>& switches() const { return m_switches; }

    private:
        KVModuleHandle m_current = nullptr;
        QList<KVModuleHandle> m_switches;
    };

    // --- scripting
    // The next FileDialog call answers `result` and, with KV_RESULT_OK, sets the path. Without
    // a queued answer the dialog is cancelled (result 0, path untouched).
    void queueFileDialogAnswer(int result, const KVString& path);
    void setMessageBoxTitle(const KVString& title) { m_title = title; }
    void setTempFolder(const KVString& folder) { m_tempFolder = folder; }

    // --- reading back
    const QList<Message>& messages() const { return m_messages; }
    const QList<FileDialogCall>& fileDialogCalls() const { return m_fileDialogs; }
    ResourceContext& resourceContext() { return m_resources; }

    // CFxSystemServices
    int FileDialog(int flag, KVString& path, KVWindowId parent, int mode, const KVString& title,
                   const KVString& defaultName, const KVString& filter,
                   const KVString& initialFolder, void* reserved1, void* reserved2, void* reserved3,
                   int reserved4) override;
    CFxResourceContext* GetResourceContext() override { return &m_resources; }
    KVString GetMessageBoxTitle() override { return m_title; }
    int ShowMessageBox(MessageKind kind, KVWindowId parent, const KVString& title,
                       const KVString& text) override;
    KVString GetTempFolder() override { return m_tempFolder; }

private:
    QQueue<QPair<int, KVString>> m_fileDialogAnswers;
    QList<FileDialogCall> m_fileDialogs;
    QList<Message> m_messages;
    ResourceContext m_resources;
    KVString m_title = QStringLiteral("Test host");
    KVString m_tempFolder;
};
