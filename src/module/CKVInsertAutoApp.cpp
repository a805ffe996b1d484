#include "CKVInsertAutoApp.h"

#include "ModuleResourceScope.h"

#include "host/CFxDocument.h"
#include "host/CFxSystemServices.h"
#include "host/CVRCommand.h"
#include "host/CVRServices.h"
#include "host/DrawingLanguage.h"
#include "maindialog/CIInsereAuto.h"
#include "settingsui/CIConfigAuto.h"
#include "settingsui/SettingsFilePicker.h"

namespace {

// Both commands are scheduled by the host with this mode.
constexpr CVRCommand::runTime kCommandMode = CVRCommand::runTime::Session;
static_assert(static_cast<int>(kCommandMode) == 2);

CVRCommandManager* commandManager()
{
    CVRServices* services = GetElectricalServices();
    return services ? services->GetCommandManager() : nullptr;
}

// The part the two commands share: ask for a settings file with the host's file dialog and, when
// the user chose one, run `showDialog` on its path with this module's resources current. Anything
// but the host's normal result ends the command without a word.
template <typename ShowDialog>
void runOnPickedSettings(KVModuleHandle module, ShowDialog showDialog)
{
    KVString path;
    if (SettingsFilePicker::pick(CFxSystemServices::kOpenExisting, path) != KV_RESULT_OK)
        return;
    const ModuleResourceScope resources(module);
    showDialog(path);
}

} // namespace

void CKVInsertAutoApp::initApp()
{
    // Without a command manager there is nowhere to add the commands; the function does not
    // depend on it.
    if (CVRCommandManager* manager = commandManager()) {
        manager->AddCommand(makeUndoableFunctionCommand(
            QString::fromLatin1(kInsertCommand),
            [this](CFxCommandContext*) { runInsertionCommand(); }, kCommandMode));
        manager->AddCommand(makeNotUndoableFunctionCommand(
            QString::fromLatin1(kSettingsCommand),
            [this](CFxCommandContext*) { runSettingsCommand(); }, kCommandMode));
    }
    registerFunction(QString::fromLatin1(kTempFolderFunction), &CKVInsertAutoApp::returnTempFolder);
}

void CKVInsertAutoApp::uninitApp()
{
    // The host keeps kvGetTempDir; only the commands are removed.
    if (CVRCommandManager* manager = commandManager()) {
        manager->RemoveCommand(QString::fromLatin1(kInsertCommand));
        manager->RemoveCommand(QString::fromLatin1(kSettingsCommand));
    }
}

void CKVInsertAutoApp::runSettingsCommand() const
{
    runOnPickedSettings(moduleHandle(), [](const KVString& path) {
        CIConfigAuto dialog;
        dialog.SetSettingsPath(path);
        dialog.exec();
    });
}

int CKVInsertAutoApp::returnTempFolder()
{
    const KVString folder = CIRegistro().GetCaminhoTemp();
    if (CFxDocument* document = ACTIVE_DOCUMENT())
        document->SetLispResultString(folder);
    return 1;
}

void CKVInsertAutoApp::runInsertionCommand() const
{
    runOnPickedSettings(moduleHandle(), [](const KVString& path) {
        CIInsereAuto dialog;
        // A companion file that cannot be created is not fatal: the dialog reads it as empty.
        // The user learns which file it is on the command line.
        const QString problem = dialog.LoadSettings(path);
        if (!problem.isEmpty())
            kvPrintf(QStringLiteral("\n") + problem);
        dialog.DoModal();
    });
}
