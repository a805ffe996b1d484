#pragma once

#include "host/KVString.h"
#include "settings/SettingsFiles.h"
#include "settings/SettingsWriter.h"

// What the settings dialog shows, taken from the three settings files, and where its block
// list browses. The dialog only moves these values in and out of its controls.
class SettingsDialogData final
{
public:
    // The dialog's contents from the files as read: header texts as they stand, the two mode
    // indices (-1 for a text that selects no entry), the field rows with "Show" as the
    // translated "Yes" or "No", the block and symbol rows with their point and angle defaults.
    static SettingsDialogContents fromFiles(const SettingsFiles& files);

    // The folder where the block files of the standard in use lie: the electrical services'
    // base folder, "Dados\", the drawing variable "*NORMA_UTILIZADA*" and "\BLOCOS\".
    static KVString blockFolder();
};
