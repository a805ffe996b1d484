#include "DrawingLanguage.h"

#include "HostBinding.h"

void kvInvokeVoid(const KVStringList& nameAndArgs)
{
    if (InstalledHost().language)
        InstalledHost().language->invokeVoid(nameAndArgs);
}

void kvInvokeVoid(const KVString& name)
{
    kvInvokeVoid(KVStringList{name});
}

void kvInvokeVoid(const KVString& name, const KVString& a)
{
    kvInvokeVoid(KVStringList{name, a});
}

void kvInvokeVoid(const KVString& name, const KVString& a, const KVString& b)
{
    kvInvokeVoid(KVStringList{name, a, b});
}

void kvInvokeTyped(const LispChain& nameAndArgs)
{
    if (InstalledHost().language)
        InstalledHost().language->invokeTyped(nameAndArgs);
}

std::optional<LispChain> kvGetLispVariable(const KVString& name)
{
    if (!InstalledHost().language)
        return std::nullopt;
    return InstalledHost().language->variable(name);
}

void kvPrintf(const KVString& text)
{
    if (InstalledHost().language)
        InstalledHost().language->print(text);
}

bool kvRegisterFunction(const KVString& name, DrawingLanguageFunction function)
{
    if (!InstalledHost().language)
        return false;
    return InstalledHost().language->registerFunction(name, std::move(function));
}
