#include "RecordingCommandManager.h"

void RecordingCommandManager::AddCommand(std::shared_ptr<CVRCommand> command)
{
    m_commands.append(std::move(command));
}

void RecordingCommandManager::RemoveCommand(const KVString& name)
{
    m_removed.append(name);
    m_commands.removeIf([&name](const auto& command) { return command->name() == name; });
}

std::shared_ptr<CVRCommand> RecordingCommandManager::command(const KVString& name) const
{
    for (const auto& command : m_commands) {
        if (command->name() == name)
            return command;
    }
    return nullptr;
}
