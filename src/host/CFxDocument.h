#pragma once

#include "KVString.h"

// The active document of the host: where drawing-language functions return their results
// and where the electrical log is kept.
class CFxDocument
{
public:
    virtual ~CFxDocument() = default;
    virtual void SetLispResultString(const KVString& value) = 0;
    virtual void WriteElectricalLog(const KVString& text) = 0;
};

CFxDocument* ACTIVE_DOCUMENT();

// Writes `text` to the electrical log of `document` (nothing when there is no document).
void electricalLog(CFxDocument* document, const KVString& text);
