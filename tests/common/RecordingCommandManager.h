#pragma once

#include "host/CVRCommand.h"

#include <QList>

#include <memory>

// The host's command manager: keeps the commands registered and the names removed.
class RecordingCommandManager final : public CVRCommandManager
{
public:
    void AddCommand(std::shared_ptr<CVRCommand> command) override;
    void RemoveCommand(const KVString& name) override;

    // The registered command of that name, or null.
    std::shared_ptr<CVRCommand> command(const KVString& name) const;
    const QList<std::shared_ptr<CVRCommand>>& commands() const { return m_commands; }
    const KVStringList& removed() const { return m_removed; }

private:
    QList<std::shared_ptr<CVRCommand>> m_commands;
    KVStringList m_removed;
};
