#pragma once

#include "Console.h"
#include "LispEnvironment.h"
#include "ModuleFunctions.h"

#include "host/DrawingLanguage.h"

namespace KvHost {

// The drawing language the module sees in the desktop host: the functions of the current
// reference host's environment (which is rebuilt when the settings change or another drawing
// is opened), with the functions modules registered kept here, so that they outlive those
// rebuilds. A module's functions live in its code: they are removed before it is unloaded.
class DrawingLanguageProxy final : public IDrawingLanguage
{
public:
    explicit DrawingLanguageProxy(RefHost::Console& console) : m_console(console) {}

    // The environment calls go to; null while no standard database is set up.
    void setTarget(RefHost::LispEnvironment* target) { m_target = target; }

    void invokeVoid(const KVStringList& nameAndArgs) override;
    void invokeTyped(const LispChain& nameAndArgs) override;
    std::optional<LispChain> variable(const KVString& name) override;
    void print(const KVString& text) override;
    bool registerFunction(const KVString& name, DrawingLanguageFunction function) override;

    const RefHost::ModuleFunctions& moduleFunctions() const { return m_functions; }
    // Calls a module's function; false when there is none or it failed (the error is written).
    bool callModuleFunction(const QString& name, qsizetype argumentCount);
    void removeModuleFunctions() { m_functions.clear(); }

private:
    // True when `name` is a module's function and it was called (whatever it answered).
    bool callIfModuleFunction(const QString& name, qsizetype argumentCount);
    void reportNoEnvironment(const QString& name);

    RefHost::Console& m_console;
    RefHost::LispEnvironment* m_target = nullptr;
    RefHost::ModuleFunctions m_functions;
};

} // namespace KvHost
