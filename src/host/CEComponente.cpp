#include "CEComponente.h"

CEComponente::CEComponente(const KVString& key, const KVString& description)
    : m_key(key), m_description(description)
{}
