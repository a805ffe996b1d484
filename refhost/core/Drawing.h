#pragma once

#include "BlockDefinition.h"

#include "host/LispValue.h"

#include <QList>
#include <QMap>
#include <QPointF>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>

namespace RefHost {

// An attribute of a block reference, in the order of the block's attribute definitions.
struct AttributeValue
{
    QString tag;
    QString value;
};

// A block reference placed on a page (layer).
struct BlockReference
{
    QString blockName;
    QString layer;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double rotationDegrees = 0.0;
    QList<AttributeValue> attributes;
    // The associated components recorded for the bill of materials at insertion time
    // (flat list: first1, second1, first2, second2, ...).
    QStringList associated;
    // The component key when the reference was placed as a component, else empty.
    QString componentKey;
};

// One page of the project: a layer named GROUP$N and a title.
struct Page
{
    QString title;
    QString layer;
    bool frozen = false;
};

// An ordered list of pages sharing one group name (the text before "$" of their layers).
struct PageGroup
{
    QString name;
    QList<Page> pages;
};

// The value of a drawing variable: a text, a boolean, a text list, or a typed chain.
struct DrawingVariable
{
    enum class Kind { Text, Boolean, TextList };
    Kind kind = Kind::Text;
    QString text;
    bool boolean = false;
    QStringList list;
};

// The project drawing of the reference host: page groups of pages (each a layer), one current
// layer, block definitions, block references, drawing variables.
class Drawing
{
public:
    // A new drawing with one page group `group` holding the page `group$1`, current.
    static Drawing withSinglePage(const QString& group = QStringLiteral("PAGE"));

    QList<PageGroup>& groups() { return m_groups; }
    const QList<PageGroup>& groups() const { return m_groups; }

    const QString& currentLayer() const { return m_currentLayer; }
    // Makes `layer` current and thaws it; the other pages' layers are frozen.
    bool setCurrentLayer(const QString& layer);

    // The page with this layer name, or null.
    Page* findPage(const QString& layer);
    const Page* findPage(const QString& layer) const;
    PageGroup* findGroup(const QString& name);
    // Appends a new page to `group` (created when missing), names its layer GROUP$N with the
    // next free N, and returns its layer name.
    QString appendPage(const QString& group);
    // Every page layer in group order.
    QStringList pageLayers() const;
    // Adds an existing page layer (e.g. read from a file) at the end of its group, the group being
    // the text before the first "$". Returns false when the layer is empty or already a page.
    bool addPageLayer(const QString& layer, const QString& title = {});
    // The 1-based position of the page in its group and the number of pages of that group, or
    // {0, 0} when `layer` is not a page.
    std::pair<int, int> pagePosition(const QString& layer) const;
    // The group name of a page layer: the text before the first "$" (the whole name without one).
    static QString groupNameOf(const QString& layer);

    QMap<QString, BlockDefinition>& blocks() { return m_blocks; }
    const QMap<QString, BlockDefinition>& blocks() const { return m_blocks; }

    QList<BlockReference>& references() { return m_references; }
    const QList<BlockReference>& references() const { return m_references; }

    QMap<QString, DrawingVariable>& variables() { return m_variables; }
    const QMap<QString, DrawingVariable>& variables() const { return m_variables; }

    // Drawing-language variables (e.g. "*L_PAGINAS*"), each a typed chain.
    QMap<QString, LispChain>& lispVariables() { return m_lispVariables; }
    const QMap<QString, LispChain>& lispVariables() const { return m_lispVariables; }

private:
    QList<PageGroup> m_groups;
    QString m_currentLayer;
    QMap<QString, BlockDefinition> m_blocks;
    QList<BlockReference> m_references;
    QMap<QString, DrawingVariable> m_variables;
    QMap<QString, LispChain> m_lispVariables;
};

} // namespace RefHost
