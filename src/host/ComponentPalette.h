#pragma once

#include "CENorma.h"
#include "CEPasta.h"

#include <memory>
#include <optional>
#include <vector>

// The folders and components of one standard as the palette shows them, or the reason why
// they could not be loaded (naming the database and the problem).
struct CEPastaTree
{
    std::vector<std::unique_ptr<CEPasta>> roots;
    KVString error;

    bool ok() const { return error.isEmpty(); }
};

// The host's component palette: the standard the user selected in it and the tree of folders
// and components of a standard. The host installs one in its HostBinding (`palette`).
class IComponentPalette
{
public:
    virtual ~IComponentPalette() = default;

    // The standard selected in the host's palette; nothing when none is selected.
    virtual std::optional<CENorma> GetNormaSelecionada() = 0;
    // Loads the palette tree of `standard`. `flags` 0 asks for the whole tree (folders and
    // components), the only form the module uses.
    virtual CEPastaTree carga(const CENorma& standard, int flags) = 0;
};

// The installed palette, or null when the host has none.
IComponentPalette* GetComponentPalette();
