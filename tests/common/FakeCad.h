#pragma once

#include "host/CICad.h"

#include <QHash>
#include <QList>
#include <QSet>

#include <optional>

// The drawing as a test scripts it: drawing variables, the current layer, the files that
// exist and the block references on the layers. Every change the module makes is kept for
// the test to read back.
class FakeCad final : public ICadServices
{
public:
    struct InsertedBlock
    {
        KVString path;
        KVString name;
        KVString layer;
        double x = 0.0;
        double y = 0.0;
        double z = 0.0;
        double angleDegrees = 0.0;
    };

    // A block reference already in the drawing, whose attributes page-variable writes reach.
    struct BlockReference
    {
        KVString layer;
        KVString blockName;
        QList<QPair<KVString, KVString>> attributes; // (tag, value)
    };

    // --- scripting
    void setVar(const KVString& name, const KVString& value) { m_vars.insert(name, value); }
    void removeVar(const KVString& name) { m_vars.remove(name); }
    void setCurrentLayer(const KVString& layer) { m_layer = layer; }
    void addFile(const KVString& path) { m_files.insert(path); }
    void addBlockReference(const BlockReference& reference) { m_references.append(reference); }

    // --- reading back
    bool hasVar(const KVString& name) const { return m_vars.contains(name); }
    KVString var(const KVString& name) const { return m_vars.value(name); }
    // The last value a boolean variable was set to; nothing when it was never set.
    std::optional<bool> boolVar(const KVString& name) const;
    KVStringList listVar(const KVString& name) const { return m_listVars.value(name); }
    const KVString& layer() const { return m_layer; }
    const QList<InsertedBlock>& insertedBlocks() const { return m_inserted; }
    const QList<BlockReference>& blockReferences() const { return m_references; }
    int regenCount() const { return m_regens; }

    // ICadServices
    KVString getVarStr(const KVString& name, const KVString& defaultValue) override;
    void setVarStr(const KVString& name, const KVString& value) override;
    void setVarBool(const KVString& name, bool value) override;
    void setVarLstStr(const KVString& name, const KVStringList& values) override;
    KVString currentLayer() override { return m_layer; }
    bool insertBlock(const KVString& path, const KVString& name, const KVString& layer, double x,
                     double y, double z, double angleDegrees) override;
    bool fileExists(const KVString& path) override { return m_files.contains(path); }
    void regen() override { ++m_regens; }
    // The first block reference on `layer` whose block name matches the wild-card pattern
    // (ignoring case) gets `value` in every attribute whose tag equals `tag` ignoring case.
    bool writeBlockAttribute(const KVString& layer, const KVString& blockPattern,
                             const KVString& tag, const KVString& value) override;

private:
    QHash<QString, KVString> m_vars;
    QHash<QString, bool> m_boolVars;
    QHash<QString, KVStringList> m_listVars;
    KVString m_layer;
    QSet<QString> m_files;
    QList<InsertedBlock> m_inserted;
    QList<BlockReference> m_references;
    int m_regens = 0;
};
