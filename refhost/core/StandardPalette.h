#pragma once

#include "DatabaseConnection.h"

#include "host/ComponentPalette.h"

namespace RefHost {

// The component palette of the reference host, read from the standard's database: the palette
// entries of BDMENUS (MENU_KEY, MENU_KEY_LANG, MENU_DESCR, MENU_PARENT, MENU_KIND 0 folder or 1
// component, MENU_ORDER), one entry per key with its description in every language, arranged
// under their parents. The selected standard is the host's.
class StandardPalette final : public IComponentPalette
{
public:
    StandardPalette(const DatabaseConnection& connection, QString standard);

    std::optional<CENorma> GetNormaSelecionada() override;
    // Folders keep their place even when empty; components are listed only when the standard
    // has a BDKV row for them. Entries whose parent is "0", empty or unknown are at the top;
    // entries caught in a cycle of parents are left out. Siblings are in MENU_ORDER, then key
    // order. `flags` is not looked at: the whole tree is always loaded.
    CEPastaTree carga(const CENorma& standard, int flags) override;

    static QString entriesSql();
    static QString componentsSql();

private:
    const DatabaseConnection& m_connection;
    QString m_standard;
};

} // namespace RefHost
