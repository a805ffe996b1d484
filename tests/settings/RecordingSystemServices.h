#pragma once

#include "host/CFxSystemServices.h"

#include <QList>

// A host's system services that answer nothing and record every message box shown.
class RecordingSystemServices final : public CFxSystemServices
{
public:
    struct Message
    {
        MessageKind kind;
        KVWindowId parent;
        QString title;
        QString text;
    };

    int FileDialog(int, KVString&, KVWindowId, int, const KVString&, const KVString&,
                   const KVString&, const KVString&, void*, void*, void*, int) override
    {
        return 0;
    }
    CFxResourceContext* GetResourceContext() override { return nullptr; }
    KVString GetMessageBoxTitle() override { return QStringLiteral("Test host"); }
    int ShowMessageBox(MessageKind kind, KVWindowId parent, const KVString& title,
                       const KVString& text) override
    {
        messages.append({kind, parent, title, text});
        return 1;
    }
    KVString GetTempFolder() override { return {}; }

    QList<Message> messages;
};
