#pragma once

#include "BlockDefinition.h"
#include "Console.h"
#include "Drawing.h"

#include "host/CICad.h"

#include <functional>
#include <optional>

namespace RefHost {

// What reading one block file gives: the block, or an error text naming the file.
struct BlockFileResult
{
    std::optional<BlockDefinition> block;
    QString error;
};

// Reads the block definition of a block file (a DXF file: see PathResolver::blockSource).
using BlockFileReader = std::function<BlockFileResult(const QString& path)>;

// The outcome of placing a block: the index of the new reference in Drawing::references(), or
// an error text naming the file and the problem.
struct BlockPlacement
{
    qsizetype referenceIndex = -1;
    QString error;
    bool succeeded() const { return referenceIndex >= 0; }
};

// The drawing operations the module calls, over the reference host's drawing model.
// Drawing variables are kept under their names in upper case, so names compare ignoring case.
class CadServices final : public ICadServices
{
public:
    CadServices(Drawing& drawing, BlockFileReader reader, Console& console);

    // Text variables answer their text, booleans "1" or "0", text lists their items joined
    // with ","; an unknown name answers `defaultValue`.
    KVString getVarStr(const KVString& name, const KVString& defaultValue) override;
    void setVarStr(const KVString& name, const KVString& value) override;
    void setVarBool(const KVString& name, bool value) override;
    void setVarLstStr(const KVString& name, const KVStringList& values) override;
    KVString currentLayer() override;
    // Places the block; a failure is written to the error stream and answers false.
    bool insertBlock(const KVString& path, const KVString& name, const KVString& layer, double x,
                     double y, double z, double angleDegrees) override;
    bool fileExists(const KVString& path) override;
    void regen() override;
    bool writeBlockAttribute(const KVString& layer, const KVString& blockPattern,
                             const KVString& tag, const KVString& value) override;

    // Places a block reference of block `name` on `layer` (the current layer when empty). The
    // definition is read from `path` (see PathResolver) the first time the drawing needs it;
    // later insertions of the same name, ignoring case, reuse it. The reference's attributes
    // start with the definitions' default values.
    BlockPlacement placeBlock(const QString& path, const QString& name, const QString& layer,
                              double x, double y, double z, double angleDegrees);

    // The drawing variable named `name` (ignoring case), or nothing.
    const DrawingVariable* variable(const QString& name) const;
    static QString variableKey(const QString& name) { return name.toUpper(); }

    int regenCount() const { return m_regenCount; }

private:
    std::optional<QString> definitionName(const QString& name) const;
    void storeVariable(const QString& name, const DrawingVariable& value);

    Drawing& m_drawing;
    BlockFileReader m_reader;
    Console& m_console;
    int m_regenCount = 0;
};

} // namespace RefHost
