#pragma once

#include "CEArquivoCfg.h"
#include "host/KVString.h"

#include <QStringList>

#include <memory>

// The three settings files read the way the dialogs read them: the .cfa into a first object,
// then the .cfb and the .cfc (each created empty when missing) into a second and a third. Every
// file is closed again before this returns.
struct SettingsFiles
{
    KVString cfaPath;
    KVString cfbPath;
    KVString cfcPath;
    std::unique_ptr<CEArquivoCfg> main;    // header texts and field rows
    std::unique_ptr<CEArquivoCfg> blocks;  // rows of the .cfb
    std::unique_ptr<CEArquivoCfg> symbols; // rows of the .cfc
    // Files that could not be opened (each read as empty), one message per file.
    QStringList errors;
};

SettingsFiles readSettingsFiles(const KVString& cfaPath);

// Creates the .cfb and .cfc of `cfaPath` empty where they are missing. The status names the
// first companion that could not be created.
SettingsFileStatus ensureCompanionFiles(const KVString& cfaPath);
