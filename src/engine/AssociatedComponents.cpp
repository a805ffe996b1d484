#include "AssociatedComponents.h"

#include "InsAutoNames.h"

#include "host/CICad.h"
#include "host/CVRServices.h"
#include "host/DrawingLanguage.h"
#include "host/Translate.h"

void AssociatedComponents::collect(const KVString& key, KVNamedValues& out)
{
    const KVString standard = CICad::GetVarStr(InsAutoNames::kStandardVar);
    const QList<KVStringList> rows = ComponentResolver::selectRows(
        QStringLiteral("BDVINCL"), QStringLiteral("VL_KEY_B, VL_QTDE"),
        {{QStringLiteral("VL_KEY_A"), key}});
    if (rows.size() < 2)
        return;

    // One working pair per quantity part: "2,0" asks for two of B and for B's block.
    KVNamedValues working;
    for (qsizetype r = 1; r < rows.size(); ++r) {
        const KVStringList& row = rows.at(r);
        if (row.size() < 2)
            continue;
        const QStringList parts = row.at(1).split(u',');
        for (const QString& part : parts)
            working.append({row.at(0), part});
    }

    // Associations of associations are followed without a record of visited keys: the
    // standard's data is expected to hold no cycle.
    for (const auto& [associatedKey, quantity] : working) {
        const int count = KVString(quantity).toIntLenient();
        if (count != 0) {
            out.append({QString::number(count), associatedKey});
        } else {
            CVRServices* services = GetElectricalServices();
            const KVString blockName =
                services ? services->GetComponentBlockName(associatedKey, standard) : KVString();
            if (blockName.isEmpty()) {
                kvPrintf(
                    kvTr("\nError: Associated component not found: key = %1").arg(associatedKey));
            } else if (ComponentResolver::checkBlockFile(blockName)) {
                out.append({blockName, associatedKey});
            }
        }
        collect(associatedKey, out);
    }
}
