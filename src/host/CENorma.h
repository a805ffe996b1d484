#pragma once

#include "KVString.h"

// An electrical standard as the host's palette knows it: the key under which its data is kept
// (the folder name under "Dados\" and the value of "*NORMA_UTILIZADA*") and the name shown to
// the user. A plain value.
class CENorma
{
public:
    CENorma() = default;
    CENorma(const KVString& key, const KVString& name) : m_key(key), m_name(name) {}

    KVString GetKey() const { return m_key; }
    KVString GetNome() const { return m_name; }
    bool isNull() const { return m_key.isEmpty(); }

    friend bool operator==(const CENorma&, const CENorma&) = default;

private:
    KVString m_key;
    KVString m_name;
};
