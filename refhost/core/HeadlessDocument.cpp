#include "HeadlessDocument.h"

namespace RefHost {

HeadlessDocument::HeadlessDocument(Console& console) : m_console(console) {}

void HeadlessDocument::SetLispResultString(const KVString& value)
{
    m_lispResult = value;
}

void HeadlessDocument::WriteElectricalLog(const KVString& text)
{
    m_console.line(QStringLiteral("log"), text);
}

} // namespace RefHost
