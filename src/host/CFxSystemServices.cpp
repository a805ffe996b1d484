#include "CFxSystemServices.h"

#include "CFxDocument.h"
#include "CVRServices.h"
#include "HostBinding.h"

CVRServices* GetElectricalServices()
{
    return InstalledHost().electrical;
}

KVString kvAutomaticInsertionFolder()
{
    CVRServices* services = GetElectricalServices();
    KVString folder = services ? services->GetWorkingFolder() : KVString();
    if (!folder.isEmpty())
        folder += QStringLiteral("/Automatic Insertion");
    return folder;
}

CFxSystemServices* GetFxSystemServices()
{
    return InstalledHost().system;
}

CFxDocument* ACTIVE_DOCUMENT()
{
    return InstalledHost().document;
}

KVWindowId CFxUtils::GetMainWindowId()
{
    return InstalledHost().mainWindow;
}

void electricalLog(CFxDocument* document, const KVString& text)
{
    if (document)
        document->WriteElectricalLog(text);
}

namespace {
int showMessage(MessageKind kind, KVWindowId parent, const KVString& text)
{
    CFxSystemServices* system = InstalledHost().system;
    if (!system)
        return 0;
    return system->ShowMessageBox(kind, parent, system->GetMessageBoxTitle(), text);
}
} // namespace

int CFxMessageBox::warning(KVWindowId parent, const KVString& text)
{
    return showMessage(MessageKind::Warning, parent, text);
}

int CFxMessageBox::critical(KVWindowId parent, const KVString& text)
{
    return showMessage(MessageKind::Critical, parent, text);
}

KVString CIRegistro::GetCaminhoTemp() const
{
    return InstalledHost().system ? InstalledHost().system->GetTempFolder() : KVString();
}

CFxDebugSettings* CFxDebugSettings::Get()
{
    static CFxDebugSettings settings;
    return &settings;
}

void CFxDebugSettings::SetDescription(const KVString& name, const KVString& description)
{
    for (auto& entry : m_entries) {
        if (entry.first == name) {
            entry.second = description;
            return;
        }
    }
    m_entries.append({name, description});
}

KVString CFxDebugSettings::description(const KVString& name) const
{
    for (const auto& entry : m_entries) {
        if (entry.first == name)
            return entry.second;
    }
    return {};
}

KVStringList CFxDebugSettings::names() const
{
    KVStringList result;
    for (const auto& entry : m_entries)
        result.append(entry.first);
    return result;
}
