#include "SettingsDialogData.h"

#include "host/CICad.h"
#include "host/CVRServices.h"
#include "host/Translate.h"
#include "settings/SettingsModes.h"

namespace {

QList<SettingsDialogContents::PlacementLine> placementLines(const CEArquivoCfg* file)
{
    QList<SettingsDialogContents::PlacementLine> lines;
    for (int i = 0; file && i < file->rowCount(); ++i) {
        const CECampoCfg* row = file->row(i);
        lines.append({row->blockName(), row->position(), row->angle()});
    }
    return lines;
}

} // namespace

SettingsDialogContents SettingsDialogData::fromFiles(const SettingsFiles& files)
{
    SettingsDialogContents contents;
    if (const CEArquivoCfg* main = files.main.get()) {
        contents.gapBeforeVar = main->gapBeforeVar();
        contents.gapAfterVar = main->gapAfterVar();
        contents.startPoint = main->startPoint();
        contents.spaceWidth = main->spaceWidth();
        contents.pageSize = main->pageSize();
        if (const auto mode = separatorModeFromText(main->separatorMode()))
            contents.separatorIndex = static_cast<int>(*mode);
        if (const auto mode = paginationModeFromText(main->pageMode()))
            contents.paginationIndex = static_cast<int>(*mode);
        for (int i = 0; i < main->fieldCount(); ++i) {
            const CECampoCfg* field = main->field(i);
            contents.fields.append({field->fieldName(), field->attribute(), field->search(),
                                    field->show() ? kvTr("Yes") : kvTr("No")});
        }
    }
    contents.blocks = placementLines(files.blocks.get());
    contents.symbols = placementLines(files.symbols.get());
    return contents;
}

KVString SettingsDialogData::blockFolder()
{
    CVRServices* services = GetElectricalServices();
    const KVString base = services ? services->GetBaseFolder() : KVString();
    return base + QStringLiteral("Dados\\") + CICad::GetVarStr("*NORMA_UTILIZADA*", {}) +
           QStringLiteral("\\BLOCOS\\");
}
