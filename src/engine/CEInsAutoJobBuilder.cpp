#include "CEInsAutoJobBuilder.h"

#include "maindialog/CTVNodesUtil.h"
#include "settings/CEArquivoCfg.h"

#include <QFileInfo>

CEInsAutoJobBuildResult CEInsAutoJobBuilder::fromSettings(const KVString& cfaPath)
{
    CEInsAutoJobBuildResult result;
    CEInsAutoJob& job = result.job;

    CEArquivoCfg settings;
    if (const SettingsFileStatus status = settings.OpenMainFile(cfaPath); !status)
        result.errors.append(status.error);
    settings.ReadMainFile();
    settings.CloseMainFile();

    // Header lines 5 and 6 (separator mode, page size) are for the import, not the run.
    job.gapBeforeVar = settings.gapBeforeVar();
    job.gapAfterVar = settings.gapAfterVar();
    job.startPoint = settings.startPoint();
    job.spaceWidth = settings.spaceWidth();
    job.pageMode = settings.pageMode();
    for (int i = 0; i < settings.fieldCount(); ++i) {
        const CECampoCfg* field = settings.field(i);
        job.fieldMap.append({field->fieldName(), field->attribute()});
    }

    job.pageComponents = fixedItems(companionPath(cfaPath, QStringLiteral(".cfc")), result.errors);
    job.pageBlocks = fixedItems(companionPath(cfaPath, QStringLiteral(".cfb")), result.errors);
    return result;
}

CEInsAutoJobBuildResult CEInsAutoJobBuilder::build(const KVString& cfaPath, CTVNodesUtil& tree)
{
    CEInsAutoJobBuildResult result = fromSettings(cfaPath);
    result.job.items = tree.TakeJobItems();
    return result;
}

QList<CEInsAutoFixedItem> CEInsAutoJobBuilder::fixedItems(const KVString& path, QStringList& errors)
{
    QList<CEInsAutoFixedItem> items;
    if (!QFileInfo::exists(path))
        return items;
    CEArquivoCfg list;
    if (const SettingsFileStatus status = list.OpenListFile(path); !status) {
        errors.append(status.error);
        return items;
    }
    list.ReadListFile();
    list.CloseListFile();
    // An empty or new list file reads as one placeholder row "...".
    for (int i = 0; i < list.rowCount(); ++i) {
        const CECampoCfg* row = list.row(i);
        if (row->blockName() == QLatin1String("..."))
            continue;
        items.append({row->blockName(), row->position(), row->angle()});
    }
    return items;
}
