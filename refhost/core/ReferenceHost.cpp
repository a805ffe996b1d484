#include "ReferenceHost.h"

#include "DrawingVariableNames.h"
#include "DxfBlockReader.h"
#include "PathResolver.h"

#include "host/HostTrace.h"

#include <QDir>

namespace RefHost {

QString ReferenceHost::networkDirVariableValue(const QString& networkDir)
{
    if (networkDir.isEmpty() || networkDir.endsWith(QLatin1Char('/')) ||
        networkDir.endsWith(QLatin1Char('\\')))
        return networkDir;
    return networkDir + QLatin1Char('/');
}

BlockFileReader ReferenceHost::dxfBlockReader()
{
    return [](const QString& path) {
        DxfBlockReader::Result read = DxfBlockReader::read(path);
        return BlockFileResult{std::move(read.block), std::move(read.error)};
    };
}

ReferenceHost::Created ReferenceHost::create(HostOptions options)
{
    Created created;
    if (options.database.isEmpty()) {
        created.error = QStringLiteral("no database given");
        return created;
    }
    if (options.standard.trimmed().isEmpty()) {
        created.error = QStringLiteral("no standard given");
        return created;
    }
    if (!options.networkDir.isEmpty()) {
        const std::optional<QString> folder = PathResolver::resolve(options.networkDir);
        if (!folder || !QFileInfo(*folder).isDir()) {
            created.error = QStringLiteral("%1: network folder not found").arg(options.networkDir);
            return created;
        }
    }

    std::unique_ptr<ReferenceHost> host(new ReferenceHost);
    if (options.console) {
        host->m_console = options.console;
    } else {
        host->m_ownConsole = std::make_unique<Console>();
        host->m_console = host->m_ownConsole.get();
    }

    DatabaseConnection::Opened opened = DatabaseConnection::open(options.database);
    if (!opened.connection) {
        created.error = opened.error;
        return created;
    }

    if (!options.traceFile.isEmpty() && !options.traceDevice) {
        host->m_traceFile = std::make_unique<QFile>(options.traceFile);
        if (!host->m_traceFile->open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            created.error = QStringLiteral("%1: cannot write the trace: %2")
                                .arg(options.traceFile, host->m_traceFile->errorString());
            return created;
        }
    }

    host->m_drawing = options.drawing ? std::move(*options.drawing) : Drawing::withSinglePage();
    host->m_undo = std::make_unique<UndoHistory>(host->m_drawing);
    BlockFileReader reader =
        options.blockReader ? std::move(options.blockReader) : dxfBlockReader();
    host->m_cad =
        std::make_unique<CadServices>(host->m_drawing, std::move(reader), *host->m_console);
    host->m_language = std::make_unique<LispEnvironment>(host->m_drawing, *host->m_cad,
                                                         *host->m_undo, *host->m_console);
    const QString networkDir = networkDirVariableValue(options.networkDir);
    ElectricalServices::Settings settings;
    settings.standard = options.standard.trimmed();
    settings.language = options.language.trimmed();
    settings.workingFolder =
        options.workingFolder.isEmpty() ? QDir::currentPath() : options.workingFolder;
    settings.baseFolder = networkDir;
    host->m_electrical = std::make_unique<ElectricalServices>(std::move(opened.connection),
                                                              settings, *host->m_console);
    host->m_system = std::make_unique<HeadlessSystemServices>(*host->m_console, options.tempFolder);
    host->m_system->setFileDialogAnswers(options.fileDialogAnswers);
    host->m_document = std::make_unique<HeadlessDocument>(*host->m_console);
    ElectricalServices* electrical = host->m_electrical.get();
    host->m_language->setBlockNameLookup(
        [electrical](const QString& key, const QString& standard) -> QString {
            return electrical->GetComponentBlockName(key, standard);
        });
    host->m_palette =
        std::make_unique<StandardPalette>(host->m_electrical->connection(), settings.standard);

    host->m_cad->setVarStr(DrawingVariableNames::kStandard, settings.standard);
    host->m_cad->setVarStr(DrawingVariableNames::kNetworkDir, networkDir);

    QIODevice* traceOut = options.traceDevice ? options.traceDevice : host->m_traceFile.get();
    if (traceOut)
        host->m_trace = std::make_unique<HostTrace>(host->untracedBinding(), traceOut);

    created.host = std::move(host);
    return created;
}

ReferenceHost::~ReferenceHost() = default;

HostBinding ReferenceHost::untracedBinding() const
{
    HostBinding binding;
    binding.electrical = m_electrical.get();
    binding.system = m_system.get();
    binding.document = m_document.get();
    binding.cad = m_cad.get();
    binding.language = m_language.get();
    binding.palette = m_palette.get();
    return binding;
}

HostBinding ReferenceHost::binding() const
{
    return m_trace ? m_trace->binding() : untracedBinding();
}

} // namespace RefHost
