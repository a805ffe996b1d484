#include "FakeSystemServices.h"

KVModuleHandle FakeSystemServices::ResourceContext::setCurrent(KVModuleHandle module)
{
    const KVModuleHandle previous = m_current;
    m_current = module;
    m_switches.append(module);
    return previous;
}

void FakeSystemServices::queueFileDialogAnswer(int result, const KVString& path)
{
    m_fileDialogAnswers.enqueue({result, path});
}

int FakeSystemServices::FileDialog(int flag, KVString& path, KVWindowId, int mode,
                                   const KVString& title, const KVString& defaultName,
                                   const KVString& filter, const KVString& initialFolder, void*,
                                   void*, void*, int)
{
    m_fileDialogs.append({flag, mode, title, defaultName, filter, initialFolder});
    if (m_fileDialogAnswers.isEmpty())
        return 0;
    const auto [result, answer] = m_fileDialogAnswers.dequeue();
    if (result == KV_RESULT_OK)
        path = answer;
    return result;
}

int FakeSystemServices::ShowMessageBox(MessageKind kind, KVWindowId parent, const KVString& title,
                                       const KVString& text)
{
    m_messages.append({kind, parent, title, text});
    return kMessageBoxOk;
}
