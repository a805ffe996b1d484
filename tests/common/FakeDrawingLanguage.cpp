#include "FakeDrawingLanguage.h"

void FakeDrawingLanguage::onInvoke(const KVString& function, TextHandler handler)
{
    m_textHandlers.insert(function, std::move(handler));
}

void FakeDrawingLanguage::onInvokeTyped(const KVString& function, TypedHandler handler)
{
    m_typedHandlers.insert(function, std::move(handler));
}

void FakeDrawingLanguage::invokeVoid(const KVStringList& nameAndArgs)
{
    m_textCalls.append(nameAndArgs);
    const KVString name = nameAndArgs.value(0);
    m_called.append(name);
    if (const auto handler = m_textHandlers.value(name))
        handler(nameAndArgs.mid(1));
}

void FakeDrawingLanguage::invokeTyped(const LispChain& nameAndArgs)
{
    m_typedCalls.append(nameAndArgs);
    const KVString name = nameAndArgs.isEmpty() ? KVString() : nameAndArgs.first().text;
    m_called.append(name);
    if (const auto handler = m_typedHandlers.value(name))
        handler(nameAndArgs.mid(1));
}

std::optional<LispChain> FakeDrawingLanguage::variable(const KVString& name)
{
    if (!m_variables.contains(name))
        return std::nullopt;
    return m_variables.value(name);
}
