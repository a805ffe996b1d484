#include "CICad.h"

#include "HostBinding.h"

KVString CICad::GetVarStr(const KVString& name, const KVString& defaultValue)
{
    return InstalledHost().cad ? InstalledHost().cad->getVarStr(name, defaultValue) : defaultValue;
}

void CICad::SetVarStr(const KVString& name, const KVString& value)
{
    if (InstalledHost().cad)
        InstalledHost().cad->setVarStr(name, value);
}

void CICad::SetVarBool(const KVString& name, bool value)
{
    if (InstalledHost().cad)
        InstalledHost().cad->setVarBool(name, value);
}

void CICad::SetVarLstStr(const KVString& name, const KVStringList& values)
{
    if (InstalledHost().cad)
        InstalledHost().cad->setVarLstStr(name, values);
}

KVString CICad::GetLayerCorrente()
{
    return InstalledHost().cad ? InstalledHost().cad->currentLayer() : KVString();
}

bool CICad::InserirBloco(const KVString& path, const KVString& name, const KVString& layer,
                         double x, double y, double z, double angleDegrees)
{
    return InstalledHost().cad &&
           InstalledHost().cad->insertBlock(path, name, layer, x, y, z, angleDegrees);
}

bool CICad::FileExists(const KVString& path)
{
    return InstalledHost().cad && InstalledHost().cad->fileExists(path);
}

void CICad::Regen()
{
    if (InstalledHost().cad)
        InstalledHost().cad->regen();
}

bool CICad::WriteBlockAttribute(const KVString& layer, const KVString& blockPattern,
                                const KVString& tag, const KVString& value)
{
    return InstalledHost().cad &&
           InstalledHost().cad->writeBlockAttribute(layer, blockPattern, tag, value);
}
