#pragma once

#include "host/KVString.h"

#include <QList>

// An item's field values as texts of the form FIELD=VALUE, in order. The list owns its texts.
class CELstAtributos final
{
public:
    int count() const { return static_cast<int>(m_texts.size()); }
    bool isEmpty() const { return m_texts.isEmpty(); }
    // The text at `index`; throws std::invalid_argument outside 0..count()-1.
    KVString at(int index) const;
    void append(const KVString& text) { m_texts.append(text); }
    const QList<KVString>& texts() const { return m_texts; }

private:
    QList<KVString> m_texts;
};
