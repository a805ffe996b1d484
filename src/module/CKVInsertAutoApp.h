#pragma once

#include "host/CCEntryPointMFC.h"

// The module's entry object. The runtime holds it through its module template
// (OdRxWin32Module<CKVInsertAutoApp, CKVInsertAutoApp>, see ModuleExports.cpp): initApp adds the
// commands VRINSAUTO and VRINSAUTOCONFIG and the drawing-language function kvGetTempDir, and
// uninitApp removes the two commands. The commands keep nothing from one run to the next.
class CKVInsertAutoApp : public CCEntryPointMFC
{
public:
    static constexpr char kInsertCommand[] = "VRINSAUTO";
    static constexpr char kSettingsCommand[] = "VRINSAUTOCONFIG";
    static constexpr char kTempFolderFunction[] = "kvGetTempDir";

    void initApp() override;
    void uninitApp() override;

protected:
    // Only the runtime's module template creates the object.
    CKVInsertAutoApp() = default;
    ~CKVInsertAutoApp() override = default;

private:
    // VRINSAUTO: the main dialog on a settings file that the user picks.
    void runInsertionCommand() const;
    // VRINSAUTOCONFIG: the settings dialog on a settings file that the user picks.
    void runSettingsCommand() const;
    // kvGetTempDir: the host's temporary folder as the drawing-language result.
    static int returnTempFolder();
};
