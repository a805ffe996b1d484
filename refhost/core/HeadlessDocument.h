#pragma once

#include "Console.h"

#include "host/CFxDocument.h"

namespace RefHost {

// The active document of the headless host: keeps the last drawing-language result and writes
// the electrical log to the error stream as "log: TEXT".
class HeadlessDocument final : public CFxDocument
{
public:
    explicit HeadlessDocument(Console& console);

    void SetLispResultString(const KVString& value) override;
    void WriteElectricalLog(const KVString& text) override;

    const QString& lispResult() const { return m_lispResult; }

private:
    Console& m_console;
    QString m_lispResult;
};

} // namespace RefHost
