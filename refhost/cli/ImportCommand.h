#pragma once

#include "Console.h"
#include "ReferenceHost.h"

#include "import/ItemImport.h"
#include "maindialog/CTVNodesUtil.h"

#include <QIODevice>
#include <QString>

#include <memory>

// The spreadsheet import of the command-line program, shared by the "import" verb and by
// "run --sheet": a reference host is made, its file dialog answers with the workbook, and the
// main dialog's "Import" runs in it.
namespace CliImport {

// Passes what the host writes to its error stream on to stderr, except while it is held back;
// the import's warnings are held back so that a failed import ends in one line of its own.
class HeldErrorStream final : public QIODevice
{
public:
    HeldErrorStream();
    void hold() { m_holding = true; }
    // Stops holding back and answers what was held.
    QByteArray release();

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override;

private:
    bool m_holding = false;
    QByteArray m_held;
};

// The host and the item tree after an import. Members are destroyed in reverse order: the
// host goes before the streams it writes to.
struct ImportSession
{
    ImportSession();
    ~ImportSession();
    ImportSession(const ImportSession&) = delete;
    ImportSession& operator=(const ImportSession&) = delete;

    std::unique_ptr<HeldErrorStream> errorStream;
    std::unique_ptr<QIODevice> outputStream;
    std::unique_ptr<RefHost::Console> console;
    std::unique_ptr<RefHost::ReferenceHost> host;
    std::unique_ptr<CTVNodesUtil> tree;
    ImportDialogState state;
    ItemImportResult result;
};

// Empty when the settings file and the workbook are files that can be read; otherwise the
// problem, naming the file.
QString checkImportFiles(const QString& settingsPath, const QString& sheetPath);

// Makes the host from `options` (the console and the file-dialog answer are set here) and
// imports the workbook `sheetPath` with the settings file `settingsPath`. Empty on success;
// otherwise one line naming the file and the problem, in which the warning that the import
// showed is included instead of being written on its own.
QString importSheet(RefHost::HostOptions options, const QString& settingsPath,
                    const QString& sheetPath, ImportSession& session);

} // namespace CliImport
