#include "ModuleTestHost.h"

#include "common/RecordingCommandManager.h"

#include "host/CVRCommand.h"

#include <QHash>

class ModuleTestHost::Events
{
public:
    QStringList lines;
    QList<FileDialogCall> fileDialogs;
    QHash<QString, DrawingLanguageFunction> functions;
};

class ModuleTestHost::CommandManager final : public CVRCommandManager
{
public:
    explicit CommandManager(Events& events) : m_events(events) {}

    void AddCommand(std::shared_ptr<CVRCommand> command) override
    {
        m_events.lines.append(QStringLiteral("add %1 %2 %3")
                                  .arg(command->name(), command->isUndoable()
                                                            ? QStringLiteral("undoable")
                                                            : QStringLiteral("notUndoable"))
                                  .arg(static_cast<int>(command->mode())));
        m_recorded.AddCommand(std::move(command));
    }
    void RemoveCommand(const KVString& name) override
    {
        m_events.lines.append(QStringLiteral("remove %1").arg(name));
        m_recorded.RemoveCommand(name);
    }

    RecordingCommandManager& recorded() { return m_recorded; }

private:
    Events& m_events;
    RecordingCommandManager m_recorded;
};

// The test host's electrical services with the command manager above, or none.
class ModuleTestHost::Services final : public CVRServices
{
public:
    Services(CVRServices& inner, CommandManager& commands, const bool& hasManager)
        : m_inner(inner), m_commands(commands), m_hasManager(hasManager)
    {}

    CVRCommandManager* GetCommandManager() override { return m_hasManager ? &m_commands : nullptr; }
    CVRQueryResponse RunQuery(const std::shared_ptr<CVRQuery>& query) override
    {
        return m_inner.RunQuery(query);
    }
    KVString GetCurrentLanguage() override { return m_inner.GetCurrentLanguage(); }
    QList<int> GetDescriptionLanguages() override { return m_inner.GetDescriptionLanguages(); }
    KVString GetWorkingFolder() override { return m_inner.GetWorkingFolder(); }
    KVString GetBaseFolder() override { return m_inner.GetBaseFolder(); }
    ILongOperationRunner* GetLongOperationRunner(CFxDocument* document) override
    {
        return m_inner.GetLongOperationRunner(document);
    }
    CVRQueryResponse GetComponentPropertyValue(const KVString& key,
                                               const KVString& property) override
    {
        return m_inner.GetComponentPropertyValue(key, property);
    }
    KVString GetComponentBlockName(const KVString& key, const KVString& standard) override
    {
        return m_inner.GetComponentBlockName(key, standard);
    }

private:
    CVRServices& m_inner;
    CommandManager& m_commands;
    const bool& m_hasManager;
};

// The test host's drawing language, which also takes the module's functions.
class ModuleTestHost::Language final : public IDrawingLanguage
{
public:
    Language(IDrawingLanguage& inner, Events& events) : m_inner(inner), m_events(events) {}

    void invokeVoid(const KVStringList& nameAndArgs) override { m_inner.invokeVoid(nameAndArgs); }
    void invokeTyped(const LispChain& nameAndArgs) override { m_inner.invokeTyped(nameAndArgs); }
    std::optional<LispChain> variable(const KVString& name) override
    {
        return m_inner.variable(name);
    }
    void print(const KVString& text) override { m_inner.print(text); }
    bool registerFunction(const KVString& name, DrawingLanguageFunction function) override
    {
        m_events.lines.append(QStringLiteral("function %1").arg(name));
        m_events.functions.insert(name, std::move(function));
        return true;
    }

private:
    IDrawingLanguage& m_inner;
    Events& m_events;
};

// The test host's system services, keeping every file-dialog argument.
class ModuleTestHost::System final : public CFxSystemServices
{
public:
    System(CFxSystemServices& inner, Events& events) : m_inner(inner), m_events(events) {}

    int FileDialog(int flag, KVString& path, KVWindowId parent, int mode, const KVString& title,
                   const KVString& defaultName, const KVString& filter,
                   const KVString& initialFolder, void* reserved1, void* reserved2, void* reserved3,
                   int reserved4) override
    {
        m_events.fileDialogs.append({flag, path, parent, mode, title, defaultName, filter,
                                     initialFolder, reserved1, reserved2, reserved3, reserved4});
        return m_inner.FileDialog(flag, path, parent, mode, title, defaultName, filter,
                                  initialFolder, reserved1, reserved2, reserved3, reserved4);
    }
    CFxResourceContext* GetResourceContext() override { return m_inner.GetResourceContext(); }
    KVString GetMessageBoxTitle() override { return m_inner.GetMessageBoxTitle(); }
    int ShowMessageBox(MessageKind kind, KVWindowId parent, const KVString& title,
                       const KVString& text) override
    {
        return m_inner.ShowMessageBox(kind, parent, title, text);
    }
    KVString GetTempFolder() override { return m_inner.GetTempFolder(); }

private:
    CFxSystemServices& m_inner;
    Events& m_events;
};

ModuleTestHost::ModuleTestHost()
    : m_events(std::make_unique<Events>()), m_commands(std::make_unique<CommandManager>(*m_events)),
      m_services(std::make_unique<Services>(m_host.electrical(), *m_commands, m_hasCommandManager)),
      m_language(std::make_unique<Language>(m_host.language(), *m_events)),
      m_system(std::make_unique<System>(m_host.system(), *m_events)), m_traceBuffer(&m_traceBytes)
{
    m_traceBuffer.open(QIODevice::WriteOnly | QIODevice::Append);
}

ModuleTestHost::~ModuleTestHost()
{
    // The trace's decorators refer to the pieces below.
    m_trace.reset();
}

std::unique_ptr<ScopedHostBinding> ModuleTestHost::install()
{
    HostBinding binding = m_host.binding();
    binding.electrical = m_hasElectrical ? m_services.get() : nullptr;
    binding.language = m_language.get();
    binding.system = m_system.get();
    if (!m_hasDocument)
        binding.document = nullptr;
    m_trace = std::make_unique<HostTrace>(binding, &m_traceBuffer);
    return std::make_unique<ScopedHostBinding>(m_trace->binding());
}

const QStringList& ModuleTestHost::events() const
{
    return m_events->lines;
}

std::shared_ptr<CVRCommand> ModuleTestHost::command(const KVString& name) const
{
    return m_commands->recorded().command(name);
}

DrawingLanguageFunction ModuleTestHost::function(const KVString& name) const
{
    return m_events->functions.value(name);
}

const QList<ModuleTestHost::FileDialogCall>& ModuleTestHost::fileDialogCalls() const
{
    return m_events->fileDialogs;
}

QStringList ModuleTestHost::traceLines() const
{
    QStringList lines = QString::fromUtf8(m_traceBytes).split(u'\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}
