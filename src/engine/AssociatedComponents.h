#pragma once

#include "ComponentResolver.h"

// The components that come along with a component whose "KV_EXPLODE" is "S", read from the
// association table "BDVINCL" of the standard's database.
class AssociatedComponents
{
public:
    // Appends to `out`, depth first, one pair per association of `key` and of the keys it
    // brings: (quantity, associated key) or (block name, associated key).
    static void collect(const KVString& key, KVNamedValues& out);
};
