#pragma once

#include "KVString.h"

// The host's reference to one component of the standard's database: its key and its
// description (in the language in which it was looked up). A plain value.
class CEComponente
{
public:
    CEComponente() = default;
    CEComponente(const KVString& key, const KVString& description);

    KVString GetKey() const { return m_key; }
    KVString GetDescricao() const { return m_description; }
    void SetKey(const KVString& key) { m_key = key; }
    void SetDescricao(const KVString& description) { m_description = description; }

    friend bool operator==(const CEComponente&, const CEComponente&) = default;

private:
    KVString m_key;
    KVString m_description;
};
