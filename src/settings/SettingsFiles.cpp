#include "SettingsFiles.h"

namespace {

std::unique_ptr<CEArquivoCfg> readListFile(const KVString& path, QStringList& errors)
{
    auto file = std::make_unique<CEArquivoCfg>();
    if (const SettingsFileStatus status = file->OpenListFile(path); !status)
        errors.append(status.error);
    file->ReadListFile();
    file->CloseListFile();
    return file;
}

} // namespace

SettingsFiles readSettingsFiles(const KVString& cfaPath)
{
    SettingsFiles files;
    files.cfaPath = cfaPath;
    files.cfbPath = companionPath(cfaPath, QStringLiteral(".cfb"));
    files.cfcPath = companionPath(cfaPath, QStringLiteral(".cfc"));

    files.main = std::make_unique<CEArquivoCfg>();
    if (const SettingsFileStatus status = files.main->OpenMainFile(cfaPath); !status)
        files.errors.append(status.error);
    files.main->ReadMainFile();
    files.main->CloseMainFile();

    files.blocks = readListFile(files.cfbPath, files.errors);
    files.symbols = readListFile(files.cfcPath, files.errors);
    return files;
}

SettingsFileStatus ensureCompanionFiles(const KVString& cfaPath)
{
    const SettingsFileStatus blocks =
        SettingsTextFile::ensureExists(companionPath(cfaPath, QStringLiteral(".cfb")));
    const SettingsFileStatus symbols =
        SettingsTextFile::ensureExists(companionPath(cfaPath, QStringLiteral(".cfc")));
    return blocks ? symbols : blocks;
}
