#include "DrawingLanguageProxy.h"

#include <QCoreApplication>

namespace KvHost {

void DrawingLanguageProxy::invokeVoid(const KVStringList& nameAndArgs)
{
    if (!nameAndArgs.isEmpty() && callIfModuleFunction(nameAndArgs.first(), nameAndArgs.size() - 1))
        return;
    if (!m_target)
        return reportNoEnvironment(nameAndArgs.value(0));
    m_target->invokeVoid(nameAndArgs);
}

void DrawingLanguageProxy::invokeTyped(const LispChain& nameAndArgs)
{
    if (!nameAndArgs.isEmpty() && nameAndArgs.first().kind == LispItem::Kind::Text &&
        callIfModuleFunction(nameAndArgs.first().text, nameAndArgs.size() - 1))
        return;
    if (!m_target)
        return reportNoEnvironment(nameAndArgs.isEmpty() ? QString()
                                                         : QString(nameAndArgs.first().text));
    m_target->invokeTyped(nameAndArgs);
}

std::optional<LispChain> DrawingLanguageProxy::variable(const KVString& name)
{
    return m_target ? m_target->variable(name) : std::nullopt;
}

void DrawingLanguageProxy::print(const KVString& text)
{
    if (m_target)
        m_target->print(text);
    else
        m_console.print(text);
}

bool DrawingLanguageProxy::registerFunction(const KVString& name, DrawingLanguageFunction function)
{
    return m_functions.add(name, std::move(function));
}

bool DrawingLanguageProxy::callModuleFunction(const QString& name, qsizetype argumentCount)
{
    return m_functions.call(name, argumentCount, m_console);
}

bool DrawingLanguageProxy::callIfModuleFunction(const QString& name, qsizetype argumentCount)
{
    if (!m_functions.contains(name))
        return false;
    m_functions.call(name, argumentCount, m_console);
    return true;
}

void DrawingLanguageProxy::reportNoEnvironment(const QString& name)
{
    m_console.error(
        QCoreApplication::translate("kvhost", "%1: no standard database is set up").arg(name));
}

} // namespace KvHost
