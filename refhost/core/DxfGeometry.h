#pragma once

#include "BlockDefinition.h"

#include <QList>
#include <QPainterPath>
#include <QPointF>
#include <QTransform>

namespace RefHost {

// Geometry helpers shared by the DXF reader (bulges, nested blocks) and the page pictures.
class DxfGeometry
{
public:
    // Points along the arc from startDegrees counter-clockwise to endDegrees, both ends
    // included, at most maxStepDegrees apart.
    static QList<QPointF> arcPoints(const QPointF& center, double radius, double startDegrees,
                                    double endDegrees, double maxStepDegrees = 5.0);

    // Appends the points of one polyline segment from `from` to `to` whose bulge (tangent of
    // a quarter of the included angle, positive counter-clockwise) is `bulge`; `from` itself
    // is not appended.
    static void appendBulgeSegment(QList<QPointF>& points, const QPointF& from, const QPointF& to,
                                   double bulge);

    // The placement of a block reference: block coordinates -> containing coordinates.
    static QTransform placement(const QPointF& basePoint, const QPointF& insertionPoint,
                                double scaleX, double scaleY, double rotationDegrees);

    // The item moved by `transform`. Circles and arcs stay circles and arcs under rotation,
    // uniform scale and mirroring; under other transforms they become polylines.
    static GeometryItem transformed(const GeometryItem& item, const QTransform& transform);

    // The outline of a non-text item as a path in its own coordinates (empty for texts).
    static QPainterPath outline(const GeometryItem& item);

    // The rotation (degrees) and scale that `transform` gives to a direction along +x.
    static double rotationOf(const QTransform& transform);
    static double scaleOf(const QTransform& transform);
};

} // namespace RefHost
