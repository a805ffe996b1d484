#pragma once

#include "CadServices.h"
#include "Console.h"
#include "Drawing.h"
#include "ModuleFunctions.h"
#include "UndoHistory.h"

#include "host/DrawingLanguage.h"

#include <QMap>

#include <functional>

namespace RefHost {

// The drawing language of the reference host: the few drawing-side functions the insertion
// run calls, the drawing-language variables, and the command line. Function and variable
// names compare ignoring case. A failing function writes "error: FUNCTION: PROBLEM" to the
// error stream and leaves the drawing as it was; an unknown function writes only its error.
class LispEnvironment final : public IDrawingLanguage
{
public:
    LispEnvironment(Drawing& drawing, CadServices& cad, UndoHistory& undo, Console& console);

    void invokeVoid(const KVStringList& nameAndArgs) override;
    void invokeTyped(const LispChain& nameAndArgs) override;
    std::optional<LispChain> variable(const KVString& name) override;
    // Writes the text on the output stream as it is.
    void print(const KVString& text) override;
    // Takes a module's function under a name that no built-in function and no other module
    // function has. The function lives in the module's code: the host calls
    // removeRegisteredFunctions() before it unloads a module.
    bool registerFunction(const KVString& name, DrawingLanguageFunction function) override;
    // Forgets every function registered by modules.
    void removeRegisteredFunctions() { m_registered.clear(); }
    const ModuleFunctions& registeredFunctions() const { return m_registered; }

    // Answers the block name of a component key in a standard (empty when unknown).
    using BlockNameLookup = std::function<QString(const QString& key, const QString& standard)>;
    // How "inserirAuto" finds the block of a component other than the published one.
    void setBlockNameLookup(BlockNameLookup lookup) { m_blockNameLookup = std::move(lookup); }

    void setVariable(const QString& name, const LispChain& value);
    // The names of the functions this environment knows, as they are spelled: the built-in
    // ones, then those registered by modules.
    QStringList functionNames() const;
    // Calls a function; false when it is unknown or failed (the error has been written).
    bool call(const QString& name, const LispChain& args);

    // The label of the undoable step that "inicioInsAuto" opens.
    static QString insertionStepLabel() { return QStringLiteral("Automatic insertion"); }

private:
    using Function = bool (LispEnvironment::*)(const QString& name, const LispChain& args);
    struct Entry
    {
        QString name;
        Function function;
    };

    bool buildPageLists(const QString& name, const LispChain& args);
    bool thawPage(const QString& name, const LispChain& args);
    bool createPage(const QString& name, const LispChain& args);
    bool beginInsertion(const QString& name, const LispChain& args);
    bool endInsertion(const QString& name, const LispChain& args);
    bool updateMacros(const QString& name, const LispChain& args);
    bool insertComponent(const QString& name, const LispChain& args);

    bool fail(const QString& function, const QString& problem);
    QStringList listVariable(const QString& name) const;

    Drawing& m_drawing;
    CadServices& m_cad;
    UndoHistory& m_undo;
    Console& m_console;
    QMap<QString, Entry> m_functions; // by upper-case name
    ModuleFunctions m_registered;
    BlockNameLookup m_blockNameLookup;
};

} // namespace RefHost
