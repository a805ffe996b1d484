#include "HeadlessSystemServices.h"

#include <QDir>

namespace RefHost {

HeadlessSystemServices::HeadlessSystemServices(Console& console, QString tempFolder)
    : m_console(console), m_tempFolder(std::move(tempFolder))
{}

int HeadlessSystemServices::FileDialog(int, KVString& path, KVWindowId, int, const KVString&,
                                       const KVString&, const KVString&, const KVString&, void*,
                                       void*, void*, int)
{
    if (m_answers.isEmpty())
        return kDialogCancelled;
    path = m_answers.takeFirst();
    return KV_RESULT_OK;
}

KVString HeadlessSystemServices::GetMessageBoxTitle()
{
    return QStringLiteral("KVInsertAuto");
}

int HeadlessSystemServices::ShowMessageBox(MessageKind kind, KVWindowId, const KVString&,
                                           const KVString& text)
{
    ++m_messages;
    m_console.line(kind == MessageKind::Warning ? QStringLiteral("warning")
                                                : QStringLiteral("critical"),
                   text);
    return kMessageOk;
}

KVString HeadlessSystemServices::GetTempFolder()
{
    QString folder = m_tempFolder.isEmpty() ? QDir::tempPath() : m_tempFolder;
    if (!folder.endsWith(QLatin1Char('/')))
        folder += QLatin1Char('/');
    return folder;
}

} // namespace RefHost
