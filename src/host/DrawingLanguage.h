#pragma once

#include "KVString.h"
#include "LispValue.h"

#include <functional>
#include <optional>

// A function that a module makes callable from the drawing language. It takes no arguments,
// hands its result to the active document (CFxDocument::SetLispResultString) and returns the
// host's integer status.
using DrawingLanguageFunction = std::function<int()>;

// The host's drawing language (its LISP environment) and command line, as the module sees them.
class IDrawingLanguage
{
public:
    virtual ~IDrawingLanguage() = default;

    // Calls a function with text arguments (the first element is the function name) and waits.
    virtual void invokeVoid(const KVStringList& nameAndArgs) = 0;
    // Calls a function with typed arguments; the first element is the function name as text.
    // The returned chain is not used by the module and is freed by the host.
    virtual void invokeTyped(const LispChain& nameAndArgs) = 0;
    // The value of a drawing-language variable, or nothing when it is not set.
    virtual std::optional<LispChain> variable(const KVString& name) = 0;
    // Writes a text on the host's command line.
    virtual void print(const KVString& text) = 0;
    // Makes `function` callable from the drawing language under `name` (a module does it once,
    // in initApp). Returns false when the host does not take functions from modules.
    virtual bool registerFunction(const KVString& /*name*/, DrawingLanguageFunction /*function*/)
    {
        return false;
    }
};

// Free functions through which the module calls the drawing language.
void kvInvokeVoid(const KVString& name);
void kvInvokeVoid(const KVString& name, const KVString& a);
void kvInvokeVoid(const KVString& name, const KVString& a, const KVString& b);
void kvInvokeVoid(const KVStringList& nameAndArgs);
void kvInvokeTyped(const LispChain& nameAndArgs);
std::optional<LispChain> kvGetLispVariable(const KVString& name);
void kvPrintf(const KVString& text);
// False when no drawing language is installed or it does not take the function.
bool kvRegisterFunction(const KVString& name, DrawingLanguageFunction function);
