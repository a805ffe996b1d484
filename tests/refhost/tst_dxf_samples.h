#pragma once

#include "Drawing.h"

#include <QString>

// Drawings shared by the DXF and page-picture tests.
namespace DxfSamples {

inline RefHost::GeometryItem line(double x1, double y1, double x2, double y2)
{
    RefHost::GeometryItem item;
    item.kind = RefHost::GeometryItem::Kind::Line;
    item.points = {QPointF(x1, y1), QPointF(x2, y2)};
    return item;
}

inline RefHost::GeometryItem circle(double x, double y, double radius)
{
    RefHost::GeometryItem item;
    item.kind = RefHost::GeometryItem::Kind::Circle;
    item.points = {QPointF(x, y)};
    item.radius = radius;
    return item;
}

inline RefHost::GeometryItem arc(double x, double y, double radius, double start, double end)
{
    RefHost::GeometryItem item = circle(x, y, radius);
    item.kind = RefHost::GeometryItem::Kind::Arc;
    item.startAngle = start;
    item.endAngle = end;
    return item;
}

inline RefHost::GeometryItem polyline(QList<QPointF> points, bool closed)
{
    RefHost::GeometryItem item;
    item.kind = RefHost::GeometryItem::Kind::Polyline;
    item.points = points;
    item.closed = closed;
    return item;
}

inline RefHost::GeometryItem text(double x, double y, const QString& value, double height,
                                  double rotation)
{
    RefHost::GeometryItem item;
    item.kind = RefHost::GeometryItem::Kind::Text;
    item.points = {QPointF(x, y)};
    item.text = value;
    item.height = height;
    item.rotation = rotation;
    return item;
}

inline RefHost::AttributeDefinition attribute(const QString& tag, double x, double y, double height,
                                              bool invisible = false)
{
    RefHost::AttributeDefinition definition;
    definition.tag = tag;
    definition.prompt = tag.toLower();
    definition.position = QPointF(x, y);
    definition.height = height;
    definition.invisible = invisible;
    return definition;
}

// A contactor symbol 20 x 10 units with its base point at the middle of its left side.
inline RefHost::BlockDefinition contactor()
{
    RefHost::BlockDefinition block;
    block.name = QStringLiteral("CONTACTOR");
    block.basePoint = QPointF(0, 5);
    block.geometry = {
        line(0, 5, 6, 5),
        line(14, 5, 20, 5),
        polyline({QPointF(6, 0), QPointF(14, 0), QPointF(14, 10), QPointF(6, 10)}, true),
        circle(10, 5, 2),
        arc(10, 5, 3.5, 30, 150),
        text(6.5, 11, QStringLiteral("K"), 2.0, 0)};
    block.attributes = {attribute(QStringLiteral("TAG"), 6, 13, 2.5),
                        attribute(QStringLiteral("DESCRICAO"), 6, -4, 1.8),
                        attribute(QStringLiteral("CODIGO"), 6, -7, 1.0, true)};
    block.attributes[1].rotation = 0;
    block.attributes[0].defaultValue = QStringLiteral("K?");
    return block;
}

inline RefHost::BlockReference reference(const QString& block, const QString& layer, double x,
                                         double y, QList<RefHost::AttributeValue> attributes = {})
{
    RefHost::BlockReference ref;
    ref.blockName = block;
    ref.layer = layer;
    ref.x = x;
    ref.y = y;
    ref.attributes = attributes;
    return ref;
}

// Two page groups, a current page in the middle, frozen states that are not what making a page
// current would give, blocks, references with awkward attribute texts, a reference to a block
// the drawing does not define, a reference on a layer that is no page, and variables.
inline RefHost::Drawing richDrawing()
{
    using namespace RefHost;
    Drawing drawing;
    drawing.groups() = {
        PageGroup{QStringLiteral("FORCA"),
                  {Page{QStringLiteral("Circuito de for\u00e7a"), QStringLiteral("FORCA$1"), true},
                   Page{QStringLiteral("  Comando  "), QStringLiteral("FORCA$2"), false},
                   Page{QString(), QStringLiteral("FORCA$3"), false}}},
        PageGroup{QStringLiteral("BORNES"),
                  {Page{QStringLiteral("Bornes"), QStringLiteral("BORNES$1"), true}}}};
    drawing.setCurrentLayer(QStringLiteral("FORCA$2"));
    drawing.groups()[0].pages[2].frozen = false; // kept as written, not as setCurrentLayer left it

    BlockDefinition lamp;
    lamp.name = QStringLiteral("LAMP");
    lamp.geometry = {circle(0, 0, 4), line(-2.8, -2.8, 2.8, 2.8), line(-2.8, 2.8, 2.8, -2.8)};
    lamp.attributes = {attribute(QStringLiteral("TAG"), 5, 0, 2.5)};
    drawing.blocks().insert(QStringLiteral("CONTACTOR"), contactor());
    drawing.blocks().insert(QStringLiteral("LAMP"), lamp);

    BlockReference k1 = reference(
        QStringLiteral("CONTACTOR"), QStringLiteral("FORCA$1"), 40, 100,
        {{QStringLiteral("TAG"), QStringLiteral("-K1")},
         {QStringLiteral("DESCRICAO"), QStringLiteral("Contator a\u00e7\u00e3o \u2126 \u00e9")},
         {QStringLiteral("CODIGO"), QString()}});
    k1.componentKey = QStringLiteral("1042");
    k1.associated = {QStringLiteral("2001"), QStringLiteral("1"), QString(), QStringLiteral("3")};
    BlockReference k2 = reference(
        QStringLiteral("CONTACTOR"), QStringLiteral("FORCA$2"), 80.25, 100,
        {{QStringLiteral("TAG"), QStringLiteral("  -K2 ")},
         {QStringLiteral("DESCRICAO"),
          QStringLiteral("literal \\U+0041, caret ^J, percent %%d, back\\slash")},
         {QStringLiteral("CODIGO"), QString(600, QLatin1Char('x')) + QStringLiteral(" end")}});
    k2.rotationDegrees = 90;
    k2.z = 1.5;
    k2.componentKey = QStringLiteral("1043");
    BlockReference h1 = reference(QStringLiteral("LAMP"), QStringLiteral("FORCA$2"), 120, 100,
                                  {{QStringLiteral("TAG"), QStringLiteral("-H1")}});
    h1.rotationDegrees = -30.5;
    BlockReference ghost = reference(QStringLiteral("GHOST"), QStringLiteral("BORNES$1"), 10, 10,
                                     {{QStringLiteral("X"), QStringLiteral("y")}});
    BlockReference note = reference(QStringLiteral("LAMP"), QStringLiteral("NOTES"), 0, 0);
    drawing.references() = {k1, k2, h1, ghost, note};

    DrawingVariable text;
    text.text = QStringLiteral("IEC");
    DrawingVariable flag;
    flag.kind = DrawingVariable::Kind::Boolean;
    flag.boolean = true;
    DrawingVariable list;
    list.kind = DrawingVariable::Kind::TextList;
    list.list = {QStringLiteral("TAG"), QStringLiteral("-K1"), QString(),
                 QString(700, QLatin1Char('z'))};
    DrawingVariable emptyList;
    emptyList.kind = DrawingVariable::Kind::TextList;
    drawing.variables().insert(QStringLiteral("*NORMA_UTILIZADA*"), text);
    drawing.variables().insert(QStringLiteral("*INSERCAO_AUTOMATICA*"), flag);
    drawing.variables().insert(QStringLiteral("PBLLSTREGCAUTO"), list);
    drawing.variables().insert(QStringLiteral("PBLLSTVINCAUTO"), emptyList);

    drawing.lispVariables().insert(
        QStringLiteral("*L_PAGINAS*"),
        {LispItem::listBegin(), LispItem::listBegin(), LispItem::fromText(QStringLiteral("FORCA")),
         LispItem::listBegin(), LispItem::fromText(QStringLiteral("Circuito")),
         LispItem::dottedPair(), LispItem::fromText(QStringLiteral("FORCA$1")), LispItem::listEnd(),
         LispItem::listEnd(), LispItem::fromInteger(Q_INT64_C(9007199254740993)),
         LispItem::fromReal(0.1), LispItem::fromPoint(KVPoint3d{1.5, -2.25, 1e-7}),
         LispItem::listEnd()});
    return drawing;
}

} // namespace DxfSamples
