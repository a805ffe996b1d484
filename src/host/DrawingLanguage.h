#pragma once

#include "KVString.h"
#include "LispValue.h"

#include <optional>

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
};

// Free functions through which the module calls the drawing language.
void kvInvokeVoid(const KVString& name);
void kvInvokeVoid(const KVString& name, const KVString& a);
void kvInvokeVoid(const KVString& name, const KVString& a, const KVString& b);
void kvInvokeVoid(const KVStringList& nameAndArgs);
void kvInvokeTyped(const LispChain& nameAndArgs);
std::optional<LispChain> kvGetLispVariable(const KVString& name);
void kvPrintf(const KVString& text);
