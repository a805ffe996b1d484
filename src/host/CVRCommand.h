#pragma once

#include "KVString.h"

#include <functional>
#include <memory>

class CFxCommandContext;

// A command of the host's command manager.
class CVRCommand
{
public:
    // How the host schedules a command; the module registers its commands with mode 2.
    enum class runTime : int { Transparent = 0, Modal = 1, Session = 2 };

    using Function = std::function<void(CFxCommandContext*)>;

    CVRCommand(KVString name, Function function, runTime mode, bool undoable);
    virtual ~CVRCommand() = default;

    const KVString& name() const { return m_name; }
    runTime mode() const { return m_mode; }
    bool isUndoable() const { return m_undoable; }
    void run(CFxCommandContext* context) const;

private:
    KVString m_name;
    Function m_function;
    runTime m_mode;
    bool m_undoable;
};

class CVRCommandManager
{
public:
    virtual ~CVRCommandManager() = default;
    virtual void AddCommand(std::shared_ptr<CVRCommand> command) = 0;
    virtual void RemoveCommand(const KVString& name) = 0;
};

std::shared_ptr<CVRCommand> makeUndoableFunctionCommand(const KVString& name,
                                                        CVRCommand::Function function,
                                                        CVRCommand::runTime mode);
std::shared_ptr<CVRCommand> makeNotUndoableFunctionCommand(const KVString& name,
                                                           CVRCommand::Function function,
                                                           CVRCommand::runTime mode);
