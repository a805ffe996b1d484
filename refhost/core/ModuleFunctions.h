#pragma once

#include "Console.h"

#include "host/DrawingLanguage.h"

#include <QMap>

namespace RefHost {

// The drawing-language functions that modules registered. Names compare ignoring case. A
// function lives in its module's code, so whoever unloads a module clears these first.
class ModuleFunctions final
{
public:
    // What a module's function answers when it has handed its result to the active document.
    static constexpr int kResultSet = 1;

    // False for an empty name, an empty function or a name already taken.
    bool add(const QString& name, DrawingLanguageFunction function);
    bool contains(const QString& name) const { return m_functions.contains(name.toUpper()); }
    // The names as they were registered.
    QStringList names() const;
    void clear() { m_functions.clear(); }

    // Calls the function `name`. The functions take no arguments; an unknown name or a failure
    // is written to `console` ("error: unknown drawing-language function ..." or
    // "error: NAME: PROBLEM") and answers false.
    bool call(const QString& name, qsizetype argumentCount, Console& console) const;

private:
    struct Entry
    {
        QString name;
        DrawingLanguageFunction function;
    };
    QMap<QString, Entry> m_functions; // by upper-case name
};

} // namespace RefHost
