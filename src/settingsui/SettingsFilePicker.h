#pragma once

#include "host/KVString.h"

// The host file dialog on the settings files: the filter "Settings file (*.cfa)" then "All
// Files (*.*)", starting in the "Automatic Insertion" folder of the host's working folder.
// The settings commands pick a file to open with it (CFxSystemServices::kOpenExisting); the
// settings dialog's "Save" picks the file to write (CFxSystemServices::kSaveAs).
class SettingsFilePicker final
{
public:
    // The filter in the host's notation, translated now.
    static KVString filter();
    // The working folder followed by "/Automatic Insertion"; empty when the host reports no
    // working folder.
    static KVString initialFolder();
    // Shows the dialog and returns the host's result unchanged (KV_RESULT_OK when a file was
    // chosen, its path then in `path`). Without system services the result is 0.
    static int pick(int mode, KVString& path);
};
