#pragma once

#include "host/CVRCommand.h"

#include <QList>
#include <QStringList>

#include <memory>

namespace RefHost {

// The host's command manager: commands by name (ignoring case, as the command line does),
// the latest registration of a name replacing an earlier one.
class CommandManager final : public CVRCommandManager
{
public:
    void AddCommand(std::shared_ptr<CVRCommand> command) override;
    void RemoveCommand(const KVString& name) override;

    std::shared_ptr<CVRCommand> find(const QString& name) const;
    QStringList names() const;
    // Runs the command; false when there is none of that name.
    bool run(const QString& name) const;

private:
    QList<std::shared_ptr<CVRCommand>> m_commands;
};

} // namespace RefHost
