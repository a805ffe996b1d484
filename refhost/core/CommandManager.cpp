#include "CommandManager.h"

namespace RefHost {

void CommandManager::AddCommand(std::shared_ptr<CVRCommand> command)
{
    if (!command)
        return;
    RemoveCommand(command->name());
    m_commands.append(std::move(command));
}

void CommandManager::RemoveCommand(const KVString& name)
{
    m_commands.removeIf([&name](const std::shared_ptr<CVRCommand>& command) {
        return command->name().compare(name, Qt::CaseInsensitive) == 0;
    });
}

std::shared_ptr<CVRCommand> CommandManager::find(const QString& name) const
{
    for (const std::shared_ptr<CVRCommand>& command : m_commands) {
        if (command->name().compare(name, Qt::CaseInsensitive) == 0)
            return command;
    }
    return nullptr;
}

QStringList CommandManager::names() const
{
    QStringList result;
    for (const std::shared_ptr<CVRCommand>& command : m_commands)
        result.append(command->name());
    return result;
}

bool CommandManager::run(const QString& name) const
{
    const std::shared_ptr<CVRCommand> command = find(name);
    if (!command)
        return false;
    command->run(nullptr);
    return true;
}

} // namespace RefHost
