#pragma once

#include "host/DrawingLanguage.h"

#include <QHash>

#include <functional>

// The drawing language as a test scripts it: variables, and what each function that the
// module calls does (for instance "criarpagina" making a new layer current). Every call and
// every command-line text is kept for the test to read back.
class FakeDrawingLanguage final : public IDrawingLanguage
{
public:
    // Arguments after the function name: text arguments, or the typed chain's items.
    using TextHandler = std::function<void(const KVStringList& args)>;
    using TypedHandler = std::function<void(const LispChain& args)>;

    // --- scripting
    void setVariable(const KVString& name, const LispChain& value)
    {
        m_variables.insert(name, value);
    }
    void removeVariable(const KVString& name) { m_variables.remove(name); }
    void onInvoke(const KVString& function, TextHandler handler);
    void onInvokeTyped(const KVString& function, TypedHandler handler);

    // --- reading back
    const QList<KVStringList>& textCalls() const { return m_textCalls; }
    const QList<LispChain>& typedCalls() const { return m_typedCalls; }
    // The names of the functions called, text and typed calls together, in call order.
    const KVStringList& calledFunctions() const { return m_called; }
    const KVStringList& printed() const { return m_printed; }
    // Everything written to the command line, joined.
    KVString commandLine() const { return m_printed.join(QString()); }

    // IDrawingLanguage
    void invokeVoid(const KVStringList& nameAndArgs) override;
    void invokeTyped(const LispChain& nameAndArgs) override;
    std::optional<LispChain> variable(const KVString& name) override;
    void print(const KVString& text) override { m_printed.append(text); }

private:
    QHash<QString, LispChain> m_variables;
    QHash<QString, TextHandler> m_textHandlers;
    QHash<QString, TypedHandler> m_typedHandlers;
    QList<KVStringList> m_textCalls;
    QList<LispChain> m_typedCalls;
    KVStringList m_called;
    KVStringList m_printed;
};
