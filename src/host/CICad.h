#pragma once

#include "KVString.h"

// The drawing operations of the host's CAD layer that the module uses.
class ICadServices
{
public:
    virtual ~ICadServices() = default;

    virtual KVString getVarStr(const KVString& name, const KVString& defaultValue) = 0;
    virtual void setVarStr(const KVString& name, const KVString& value) = 0;
    virtual void setVarBool(const KVString& name, bool value) = 0;
    virtual void setVarLstStr(const KVString& name, const KVStringList& values) = 0;
    virtual KVString currentLayer() = 0;
    // Inserts a block file as a block reference; the rotation is in degrees.
    virtual bool insertBlock(const KVString& path, const KVString& name, const KVString& layer,
                             double x, double y, double z, double angleDegrees) = 0;
    virtual bool fileExists(const KVString& path) = 0;
    virtual void regen() = 0;
    // Selects the block references on `layer` whose block name matches `blockPattern` (a
    // wild-card pattern) and writes `value` into the attributes of the first one whose tag
    // equals `tag` ignoring case. Returns false when no such block reference was found.
    virtual bool writeBlockAttribute(const KVString& layer, const KVString& blockPattern,
                                     const KVString& tag, const KVString& value) = 0;
};

// Static helpers of the host's common library, forwarding to the installed ICadServices.
class CICad
{
public:
    static KVString GetVarStr(const KVString& name, const KVString& defaultValue = {});
    static void SetVarStr(const KVString& name, const KVString& value);
    static void SetVarBool(const KVString& name, bool value);
    static void SetVarLstStr(const KVString& name, const KVStringList& values);
    static KVString GetLayerCorrente();
    static bool InserirBloco(const KVString& path, const KVString& name, const KVString& layer,
                             double x, double y, double z, double angleDegrees);
    static bool FileExists(const KVString& path);
    static void Regen();
    static bool WriteBlockAttribute(const KVString& layer, const KVString& blockPattern,
                                    const KVString& tag, const KVString& value);
};
