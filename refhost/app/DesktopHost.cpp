#include "DesktopHost.h"

#include "DxfDrawingReader.h"
#include "DxfDrawingWriter.h"

#include <QFileInfo>
#include <QWidget>

namespace KvHost {

DesktopHost::DesktopHost(QString settingsFile, QObject* parent)
    : QObject(parent), m_settingsFile(std::move(settingsFile)),
      m_console(std::make_unique<RefHost::Console>(&m_out, &m_err)), m_language(*m_console),
      m_detachedDocument(*m_console), m_runner(nullptr), m_electrical(m_commands, m_runner)
{
    connect(&m_out, &ConsoleDevice::textWritten, this,
            [this](const QString& text) { emit output(text, false); });
    connect(&m_err, &ConsoleDevice::textWritten, this,
            [this](const QString& text) { emit output(text, true); });
    connect(&m_system, &GuiSystemServices::messageShown, this,
            [this](const QString& line) { emit output(line + QLatin1Char('\n'), true); });
    m_runner.setErrorSink([this](const QString& text) { m_console->error(text); });
    m_system.scriptFromEnvironment();
    m_detachedDrawing = RefHost::Drawing::withSinglePage();
    m_settings = HostSettings::load(m_settingsFile);
    if (m_settings.isComplete())
        rebuild(std::nullopt);
    else
        m_connectionProblem = tr("no standard database is set up (Settings)");
}

DesktopHost::~DesktopHost()
{
    // The module may still hold the binding; leave it pointing at nothing.
    setReferenceHost(nullptr);
}

void DesktopHost::setReferenceHost(std::unique_ptr<RefHost::ReferenceHost> host)
{
    m_electrical.setTarget(host ? &host->electrical() : nullptr);
    m_language.setTarget(host ? &host->language() : nullptr);
    m_host = std::move(host);
}

RefHost::HeadlessDocument& DesktopHost::activeDocument()
{
    return m_host ? m_host->document() : m_detachedDocument;
}

bool DesktopHost::callModuleFunction(const QString& name, qsizetype argumentCount)
{
    if (!m_language.moduleFunctions().contains(name))
        return false;
    installBinding();
    RefHost::HeadlessDocument& document = activeDocument();
    document.SetLispResultString({});
    if (!m_language.callModuleFunction(name, argumentCount))
        return false;
    // The result as the drawing language shows a text.
    QString result = document.lispResult();
    result.replace(QLatin1Char('\\'), QStringLiteral("\\\\"))
        .replace(QLatin1Char('"'), QStringLiteral("\\\""));
    m_console->print(QLatin1Char('"') + result + QStringLiteral("\"\n"));
    return true;
}

QString DesktopHost::rebuild(std::optional<RefHost::Drawing> drawing)
{
    if (!drawing)
        drawing = this->drawing();
    RefHost::HostOptions options;
    options.database = m_settings.database;
    options.standard = m_settings.standard;
    options.networkDir = m_settings.networkFolder;
    options.language = m_settings.descriptionLanguage;
    options.console = m_console.get();
    options.drawing = *drawing;
    RefHost::ReferenceHost::Created created = RefHost::ReferenceHost::create(std::move(options));
    if (!created.host) {
        // Keep working on the drawing without a database.
        m_detachedDrawing = std::move(*drawing);
        setReferenceHost(nullptr);
        m_connectionProblem = created.error;
    } else {
        setReferenceHost(std::move(created.host));
        m_connectionProblem.clear();
    }
    installBinding();
    emit connectionChanged(m_host != nullptr);
    return m_connectionProblem;
}

QString DesktopHost::applySettings(const HostSettings& settings)
{
    m_settings = settings;
    QString stored;
    m_settings.save(m_settingsFile, &stored);
    if (!m_settings.isComplete()) {
        m_detachedDrawing = drawing();
        setReferenceHost(nullptr);
        m_connectionProblem = tr("no standard database is set up (Settings)");
        installBinding();
        emit connectionChanged(false);
        changed();
        return stored.isEmpty() ? m_connectionProblem : stored;
    }
    const QString problem = rebuild(std::nullopt);
    changed();
    return !stored.isEmpty() ? stored : problem;
}

RefHost::Drawing& DesktopHost::drawing()
{
    return m_host ? m_host->drawing() : m_detachedDrawing;
}

const RefHost::Drawing& DesktopHost::drawing() const
{
    return m_host ? m_host->drawing() : m_detachedDrawing;
}

void DesktopHost::newDrawing()
{
    if (m_host)
        rebuild(RefHost::Drawing::withSinglePage());
    else
        m_detachedDrawing = RefHost::Drawing::withSinglePage();
    m_filePath.clear();
    m_modified = false;
    changed();
}

QString DesktopHost::openDrawing(const QString& path)
{
    RefHost::DxfDrawingReader::Result read = RefHost::DxfDrawingReader::read(path);
    if (!read.drawing)
        return read.error;
    if (m_host)
        rebuild(std::move(read.drawing));
    else
        m_detachedDrawing = std::move(*read.drawing);
    m_filePath = QFileInfo(path).absoluteFilePath();
    m_modified = false;
    changed();
    return {};
}

QString DesktopHost::saveDrawing(const QString& path)
{
    if (QString problem = RefHost::DxfDrawingWriter::write(drawing(), path); !problem.isEmpty())
        return problem;
    m_filePath = QFileInfo(path).absoluteFilePath();
    m_modified = false;
    changed();
    return {};
}

bool DesktopHost::canUndo() const
{
    return m_host && m_host->undoHistory().canUndo();
}

bool DesktopHost::canRedo() const
{
    return m_host && m_host->undoHistory().canRedo();
}

QString DesktopHost::undoLabel() const
{
    return m_host ? m_host->undoHistory().undoLabel() : QString();
}

QString DesktopHost::redoLabel() const
{
    return m_host ? m_host->undoHistory().redoLabel() : QString();
}

bool DesktopHost::undo()
{
    if (!canUndo() || !m_host->undoHistory().undo())
        return false;
    m_modified = true;
    changed();
    return true;
}

bool DesktopHost::redo()
{
    if (!canRedo() || !m_host->undoHistory().redo())
        return false;
    m_modified = true;
    changed();
    return true;
}

bool DesktopHost::setCurrentPage(const QString& layer)
{
    if (!drawing().findPage(layer))
        return false;
    drawing().setCurrentLayer(drawing().findPage(layer)->layer);
    changed();
    return true;
}

bool DesktopHost::stepPage(int step)
{
    const QStringList layers = drawing().pageLayers();
    qsizetype at = -1;
    for (qsizetype i = 0; i < layers.size(); ++i) {
        if (layers.at(i).compare(drawing().currentLayer(), Qt::CaseInsensitive) == 0)
            at = i;
    }
    const qsizetype next = at < 0 ? 0 : at + step;
    if (layers.isEmpty() || next < 0 || next >= layers.size())
        return false;
    return setCurrentPage(layers.at(next));
}

bool DesktopHost::runCommand(const QString& name)
{
    const std::shared_ptr<CVRCommand> command = m_commands.find(name);
    if (!command)
        return false;
    const qsizetype undoBefore = m_host ? m_host->undoHistory().undoCount() : 0;
    ++m_running;
    installBinding();
    command->run(nullptr);
    --m_running;
    // A command that left an undoable step behind changed the drawing.
    if (m_host && m_host->undoHistory().undoCount() != undoBefore)
        m_modified = true;
    changed();
    return true;
}

HostBinding DesktopHost::binding() const
{
    HostBinding binding;
    if (m_host)
        binding = m_host->untracedBinding();
    binding.electrical = const_cast<ElectricalServicesProxy*>(&m_electrical);
    binding.language = const_cast<DrawingLanguageProxy*>(&m_language);
    if (!m_host)
        binding.document = const_cast<RefHost::HeadlessDocument*>(&m_detachedDocument);
    binding.system = const_cast<GuiSystemServices*>(&m_system);
    binding.mainWindow = m_mainWindow;
    return binding;
}

void DesktopHost::setMainWindow(QWidget* window)
{
    m_system.setMainWindow(window);
    m_runner.setParent(window);
    m_mainWindow = window ? KVWindowId(window->winId()) : 0;
    installBinding();
}

void DesktopHost::installBinding()
{
    InstallHost(binding());
}

void DesktopHost::changed()
{
    emit drawingChanged();
}

} // namespace KvHost
