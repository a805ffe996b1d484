#include "DxfBlockExpander.h"

#include "DxfGeometry.h"
#include "DxfGroupFile.h"

namespace RefHost {

DxfBlockExpander::DxfBlockExpander(const DxfContent& content, const DxfGroupFile& file)
    : m_content(content), m_file(file)
{}

bool DxfBlockExpander::expand(const QList<DxfInsert>& inserts, const QTransform& parent,
                              QList<GeometryItem>& out)
{
    m_chain.clear();
    return expandLevel(inserts, parent, out);
}

bool DxfBlockExpander::expandLevel(const QList<DxfInsert>& inserts, const QTransform& parent,
                                   QList<GeometryItem>& out)
{
    for (const DxfInsert& insert : inserts) {
        const DxfBlockContent* block = find(insert.blockName);
        if (!block) {
            m_error = m_file.error(QStringLiteral("an INSERT names the block \"%1\", which the "
                                                  "file does not define")
                                       .arg(insert.blockName));
            return false;
        }
        if (m_chain.contains(block->name, Qt::CaseInsensitive) || m_chain.size() >= MaxNesting) {
            m_error = m_file.error(QStringLiteral("the block \"%1\" contains itself or is nested "
                                                  "more than %2 deep")
                                       .arg(block->name)
                                       .arg(MaxNesting));
            return false;
        }
        m_expansions += 1 + int(block->geometry.size());
        if (m_expansions > MaxExpansions) {
            m_error = m_file.error(QStringLiteral("the nested blocks expand to more than %1 items")
                                       .arg(MaxExpansions));
            return false;
        }
        const QTransform placement =
            DxfGeometry::placement(block->basePoint, QPointF(insert.x, insert.y), insert.scaleX,
                                   insert.scaleY, insert.rotation) *
            parent;
        for (const GeometryItem& item : block->geometry)
            out.append(DxfGeometry::transformed(item, placement));
        m_chain.append(block->name);
        const bool ok = expandLevel(block->inserts, placement, out);
        m_chain.removeLast();
        if (!ok)
            return false;
    }
    return true;
}

const DxfBlockContent* DxfBlockExpander::find(const QString& name) const
{
    for (const DxfBlockContent& block : m_content.blocks) {
        if (block.name.compare(name, Qt::CaseInsensitive) == 0)
            return &block;
    }
    return nullptr;
}

} // namespace RefHost
