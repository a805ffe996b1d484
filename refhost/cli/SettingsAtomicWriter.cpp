#include "SettingsAtomicWriter.h"

#include "settings/SettingsTextFile.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QTemporaryDir>

#include <array>
#include <memory>

namespace SettingsAtomicWriter {

namespace {

struct StagedFile
{
    QString scratchPath; // written by writeSettingsFiles
    QString targetPath;  // where it goes
};

QString readAll(const QString& path, QByteArray* bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return path + QStringLiteral(": cannot read the file just written: ") + file.errorString();
    *bytes = file.readAll();
    return {};
}

} // namespace

QString write(const SettingsDialogContents& contents, const QString& cfaPath)
{
    // A name without ".cfa" in its folders: the companions of the scratch .cfa lie beside it.
    QTemporaryDir scratch(QDir::temp().filePath(QStringLiteral("kvinsertauto-settings-XXXXXX")));
    if (!scratch.isValid())
        return QStringLiteral("cannot create a temporary folder: ") + scratch.errorString();
    const QString scratchCfa = scratch.filePath(QStringLiteral("settings.cfa"));
    const std::array<StagedFile, 3> files = {{
        {companionPath(scratchCfa, QStringLiteral(".cfb")),
         companionPath(cfaPath, QStringLiteral(".cfb"))},
        {scratchCfa, cfaPath},
        {companionPath(scratchCfa, QStringLiteral(".cfc")),
         companionPath(cfaPath, QStringLiteral(".cfc"))},
    }};
    if (files[0].scratchPath != scratch.filePath(QStringLiteral("settings.cfb")))
        return scratch.path() + QStringLiteral(": the temporary folder's path holds \".cfa\"");

    const SettingsWriteResult written = writeSettingsFiles(contents, scratchCfa);
    if (!written.error.isEmpty())
        return written.error;
    if (!written.mainWritten || !written.symbolsWritten)
        return scratch.path() + QStringLiteral(": the settings could not be written");

    // Every file is written next to its target before any is renamed into place, so that a
    // failed write (a full disk, a folder that cannot take new files) changes none of them.
    std::array<std::unique_ptr<QSaveFile>, 3> targets;
    for (size_t i = 0; i < files.size(); ++i) {
        QByteArray bytes;
        if (QString problem = readAll(files[i].scratchPath, &bytes); !problem.isEmpty())
            return problem;
        targets[i] = std::make_unique<QSaveFile>(files[i].targetPath);
        if (!targets[i]->open(QIODevice::WriteOnly))
            return files[i].targetPath + QStringLiteral(": cannot write: ") +
                   targets[i]->errorString();
        if (targets[i]->write(bytes) != bytes.size())
            return files[i].targetPath + QStringLiteral(": cannot write: ") +
                   targets[i]->errorString();
    }
    // In the order in which the dialog writes them: .cfb, .cfa, .cfc.
    for (size_t i = 0; i < files.size(); ++i) {
        if (!targets[i]->commit())
            return files[i].targetPath + QStringLiteral(": cannot put the file in place: ") +
                   targets[i]->errorString();
    }
    return {};
}

} // namespace SettingsAtomicWriter
