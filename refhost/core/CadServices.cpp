#include "CadServices.h"

#include "PathResolver.h"
#include "WildcardPattern.h"

namespace RefHost {

CadServices::CadServices(Drawing& drawing, BlockFileReader reader, Console& console)
    : m_drawing(drawing), m_reader(std::move(reader)), m_console(console)
{}

KVString CadServices::getVarStr(const KVString& name, const KVString& defaultValue)
{
    const DrawingVariable* found = variable(name);
    if (!found)
        return defaultValue;
    switch (found->kind) {
    case DrawingVariable::Kind::Text:
        return found->text;
    case DrawingVariable::Kind::Boolean:
        return found->boolean ? QStringLiteral("1") : QStringLiteral("0");
    case DrawingVariable::Kind::TextList:
        return found->list.join(QLatin1Char(','));
    }
    return defaultValue;
}

void CadServices::setVarStr(const KVString& name, const KVString& value)
{
    DrawingVariable entry;
    entry.kind = DrawingVariable::Kind::Text;
    entry.text = value;
    storeVariable(name, entry);
}

void CadServices::setVarBool(const KVString& name, bool value)
{
    DrawingVariable entry;
    entry.kind = DrawingVariable::Kind::Boolean;
    entry.boolean = value;
    storeVariable(name, entry);
}

void CadServices::setVarLstStr(const KVString& name, const KVStringList& values)
{
    DrawingVariable entry;
    entry.kind = DrawingVariable::Kind::TextList;
    entry.list = values;
    storeVariable(name, entry);
}

KVString CadServices::currentLayer()
{
    return m_drawing.currentLayer();
}

bool CadServices::insertBlock(const KVString& path, const KVString& name, const KVString& layer,
                              double x, double y, double z, double angleDegrees)
{
    const BlockPlacement placement = placeBlock(path, name, layer, x, y, z, angleDegrees);
    if (!placement.succeeded())
        m_console.error(placement.error);
    return placement.succeeded();
}

bool CadServices::fileExists(const KVString& path)
{
    return PathResolver::blockFileExists(path);
}

void CadServices::regen()
{
    // Nothing is displayed: a regeneration only counts, so that a caller can see it happened.
    ++m_regenCount;
}

bool CadServices::writeBlockAttribute(const KVString& layer, const KVString& blockPattern,
                                      const KVString& tag, const KVString& value)
{
    const WildcardPattern pattern(blockPattern);
    for (BlockReference& reference : m_drawing.references()) {
        if (reference.layer.compare(layer, Qt::CaseInsensitive) != 0 ||
            !pattern.matches(reference.blockName))
            continue;
        for (AttributeValue& attribute : reference.attributes) {
            if (attribute.tag.compare(tag, Qt::CaseInsensitive) == 0)
                attribute.value = value;
        }
        return true;
    }
    return false;
}

BlockPlacement CadServices::placeBlock(const QString& path, const QString& name,
                                       const QString& layer, double x, double y, double z,
                                       double angleDegrees)
{
    BlockPlacement placement;
    if (name.trimmed().isEmpty()) {
        placement.error = QStringLiteral("%1: no block name given").arg(path);
        return placement;
    }
    std::optional<QString> blockName = definitionName(name);
    if (!blockName) {
        const std::optional<QString> source = PathResolver::blockSource(path);
        if (!source) {
            placement.error =
                path.endsWith(QStringLiteral(".dwg"), Qt::CaseInsensitive)
                    ? QStringLiteral("%1: block file not found (its geometry is read from the "
                                     ".dxf file beside it)")
                          .arg(path)
                    : QStringLiteral("%1: block file not found").arg(path);
            return placement;
        }
        if (!m_reader) {
            placement.error = QStringLiteral("%1: no block reader available").arg(*source);
            return placement;
        }
        BlockFileResult read = m_reader(*source);
        if (!read.block) {
            placement.error = read.error.isEmpty()
                                  ? QStringLiteral("%1: the block could not be read").arg(*source)
                                  : read.error;
            return placement;
        }
        read.block->name = name;
        m_drawing.blocks().insert(name, *read.block);
        blockName = name;
    }

    const BlockDefinition& definition = m_drawing.blocks()[*blockName];
    BlockReference reference;
    reference.blockName = *blockName;
    reference.layer = layer.isEmpty() ? m_drawing.currentLayer() : layer;
    reference.x = x;
    reference.y = y;
    reference.z = z;
    reference.rotationDegrees = angleDegrees;
    for (const AttributeDefinition& attribute : definition.attributes)
        reference.attributes.append({attribute.tag, attribute.defaultValue});
    m_drawing.references().append(reference);
    placement.referenceIndex = m_drawing.references().size() - 1;
    return placement;
}

const DrawingVariable* CadServices::variable(const QString& name) const
{
    const QMap<QString, DrawingVariable>& variables = m_drawing.variables();
    const auto found = variables.constFind(variableKey(name));
    if (found != variables.constEnd())
        return &found.value();
    // A drawing read from a file may carry names in another case.
    for (auto it = variables.constBegin(); it != variables.constEnd(); ++it) {
        if (it.key().compare(name, Qt::CaseInsensitive) == 0)
            return &it.value();
    }
    return nullptr;
}

void CadServices::storeVariable(const QString& name, const DrawingVariable& value)
{
    QMap<QString, DrawingVariable>& variables = m_drawing.variables();
    for (auto it = variables.begin(); it != variables.end();) {
        // Names of another length never match: the cheap test spares most comparisons, of
        // which a run makes one per variable for every value it sets.
        if (it.key().size() == name.size() && it.key().compare(name, Qt::CaseInsensitive) == 0)
            it = variables.erase(it);
        else
            ++it;
    }
    variables.insert(variableKey(name), value);
}

std::optional<QString> CadServices::definitionName(const QString& name) const
{
    for (auto it = m_drawing.blocks().constBegin(); it != m_drawing.blocks().constEnd(); ++it) {
        if (it.key().compare(name, Qt::CaseInsensitive) == 0)
            return it.key();
    }
    return std::nullopt;
}

} // namespace RefHost
