#include "ModuleFunctions.h"

namespace RefHost {

bool ModuleFunctions::add(const QString& name, DrawingLanguageFunction function)
{
    const QString key = name.toUpper();
    if (key.isEmpty() || !function || m_functions.contains(key))
        return false;
    m_functions.insert(key, {name, std::move(function)});
    return true;
}

QStringList ModuleFunctions::names() const
{
    QStringList names;
    for (const Entry& entry : m_functions)
        names.append(entry.name);
    return names;
}

bool ModuleFunctions::call(const QString& name, qsizetype argumentCount, Console& console) const
{
    const auto found = m_functions.constFind(name.toUpper());
    if (found == m_functions.constEnd()) {
        console.error(QStringLiteral("unknown drawing-language function \"%1\"").arg(name));
        return false;
    }
    // Copies: the function may register or remove functions while it runs.
    const QString functionName = found->name;
    const DrawingLanguageFunction function = found->function;
    if (argumentCount > 0) {
        console.error(functionName + QStringLiteral(": takes no arguments"));
        return false;
    }
    const int status = function();
    if (status != kResultSet) {
        console.error(functionName +
                      QStringLiteral(": the function answered status %1").arg(status));
        return false;
    }
    return true;
}

} // namespace RefHost
