#include "CVRCommand.h"

#include "HostBinding.h"

CVRCommand::CVRCommand(KVString name, Function function, runTime mode, bool undoable)
    : m_name(std::move(name)), m_function(std::move(function)), m_mode(mode), m_undoable(undoable)
{}

void CVRCommand::run(CFxCommandContext* context) const
{
    if (m_function)
        m_function(context);
}

std::shared_ptr<CVRCommand> makeUndoableFunctionCommand(const KVString& name,
                                                        CVRCommand::Function function,
                                                        CVRCommand::runTime mode)
{
    return std::make_shared<CVRCommand>(name, std::move(function), mode, true);
}

std::shared_ptr<CVRCommand> makeNotUndoableFunctionCommand(const KVString& name,
                                                           CVRCommand::Function function,
                                                           CVRCommand::runTime mode)
{
    return std::make_shared<CVRCommand>(name, std::move(function), mode, false);
}
