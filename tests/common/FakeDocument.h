#pragma once

#include "host/CFxDocument.h"

// The active document: keeps the drawing-language results and electrical-log lines written.
class FakeDocument final : public CFxDocument
{
public:
    void SetLispResultString(const KVString& value) override { m_results.append(value); }
    void WriteElectricalLog(const KVString& text) override { m_log.append(text); }

    const KVStringList& lispResults() const { return m_results; }
    const KVStringList& log() const { return m_log; }

private:
    KVStringList m_results;
    KVStringList m_log;
};
