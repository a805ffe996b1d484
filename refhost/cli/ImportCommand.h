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
};

// Empty when the settings file and the workbook are files that can be read; otherwise the
// problem, naming the file.
QString checkImportFiles(const QString& settingsPath, const QString& sheetPath);

// Imports the workbook `sheetPath` into `tree` with the settings file `settingsPath`, in `host`
// (its file dialog is made to answer `sheetPath`), as the main dialog's "Import" does; `state`
// is the dialog's state that the import changes. Empty when every row became an item;
// otherwise one line naming the file and the problem. When `held` is given it is the host's
// error stream: the import's messages are held back and the line carries the message instead;
// otherwise the messages are on the error stream already and the line points to them.
QString importInto(RefHost::ReferenceHost& host, const QString& settingsPath,
                   const QString& sheetPath, CTVNodesUtil& tree, ImportDialogState& state,
                   HeldErrorStream* held = nullptr);

// Makes the host from `options` (its console writes to stdout and to a held-back error stream)
// and imports into a new tree with importInto(). Empty on success; otherwise the one line.
QString importSheet(RefHost::HostOptions options, const QString& settingsPath,
                    const QString& sheetPath, ImportSession& session);

} // namespace CliImport
