#include "SettingsFilePicker.h"

#include "host/CFxSystemServices.h"
#include "host/CVRServices.h"
#include "host/Translate.h"

KVString SettingsFilePicker::filter()
{
    return kvTr("Settings file (*.cfa)|*.cfa||") + QStringLiteral("&*.cfa&") +
           kvTr("All Files (*.*)|*.*||") + QStringLiteral("&*.*&&");
}

KVString SettingsFilePicker::initialFolder()
{
    return kvAutomaticInsertionFolder();
}

int SettingsFilePicker::pick(int mode, KVString& path)
{
    CFxSystemServices* system = GetFxSystemServices();
    if (!system)
        return 0;
    return system->FileDialog(0, path, CFxUtils::GetMainWindowId(), mode, {}, {}, filter(),
                              initialFolder(), nullptr, nullptr, nullptr, 0);
}
