#pragma once

#include "CadServices.h"
#include "Console.h"
#include "Drawing.h"
#include "ElectricalServices.h"
#include "HeadlessDocument.h"
#include "HeadlessSystemServices.h"
#include "LispEnvironment.h"
#include "StandardPalette.h"
#include "UndoHistory.h"

#include "host/HostBinding.h"

#include <QFile>
#include <QStringList>

#include <memory>
#include <optional>

class HostTrace;

namespace RefHost {

// What the reference host is made from.
struct HostOptions
{
    QString database;      // an SQLite file or a postgresql:// URL
    QString standard;      // the standard in use ("*NORMA_UTILIZADA*")
    QString networkDir;    // the network folder ("*DIRETORIO_REDE*"), holding DADOS/<standard>/
    QString language;      // the current description language; empty: the database's lowest
    QString workingFolder; // the user's working folder; empty: the current folder
    QString tempFolder;    // empty: the system's temporary folder
    // The drawing to work on; without one, page group "PAGE" holding page "PAGE$1", current.
    std::optional<Drawing> drawing;
    // What the file dialog answers, one path per call in order.
    QStringList fileDialogAnswers;
    // Writes the call trace (JSON Lines) to this file, or to `traceDevice` when that is given.
    QString traceFile;
    QIODevice* traceDevice = nullptr;
    // Where messages go (not owned); stdout and stderr when null.
    Console* console = nullptr;
    // Reads block files; empty: the DXF block reader.
    BlockFileReader blockReader;
};

// The reference host assembled: a drawing, its drawing language, the query service over the
// standard's database and the headless system services, bound together for the module.
class ReferenceHost
{
public:
    struct Created
    {
        std::unique_ptr<ReferenceHost> host;
        QString error; // names the file or URL and the problem
    };

    static Created create(HostOptions options);
    ~ReferenceHost();
    ReferenceHost(const ReferenceHost&) = delete;
    ReferenceHost& operator=(const ReferenceHost&) = delete;

    // What to install for the module: traced when a trace was asked for.
    HostBinding binding() const;
    // The same host without the trace.
    HostBinding untracedBinding() const;
    bool isTracing() const { return m_trace != nullptr; }

    Drawing& drawing() { return m_drawing; }
    UndoHistory& undoHistory() { return *m_undo; }
    Console& console() { return *m_console; }
    CadServices& cad() { return *m_cad; }
    LispEnvironment& language() { return *m_language; }
    ElectricalServices& electrical() { return *m_electrical; }
    HeadlessSystemServices& system() { return *m_system; }
    HeadlessDocument& document() { return *m_document; }
    StandardPalette& palette() { return *m_palette; }

    // Block files read with DxfBlockReader.
    static BlockFileReader dxfBlockReader();
    // The network folder as the drawing variable holds it: ending with a separator.
    static QString networkDirVariableValue(const QString& networkDir);

private:
    ReferenceHost() = default;

    std::unique_ptr<Console> m_ownConsole;
    Console* m_console = nullptr;
    Drawing m_drawing;
    std::unique_ptr<UndoHistory> m_undo;
    std::unique_ptr<CadServices> m_cad;
    std::unique_ptr<LispEnvironment> m_language;
    std::unique_ptr<ElectricalServices> m_electrical;
    std::unique_ptr<HeadlessSystemServices> m_system;
    std::unique_ptr<HeadlessDocument> m_document;
    std::unique_ptr<StandardPalette> m_palette;
    std::unique_ptr<QFile> m_traceFile;
    std::unique_ptr<HostTrace> m_trace;
};

} // namespace RefHost
