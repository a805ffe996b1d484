#include "DxfGeometry.h"

#include <QLineF>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace RefHost {

namespace {

// A similarity (rotation, uniform scale, possibly a mirror) keeps circles round.
bool isSimilarity(const QTransform& t)
{
    const double lengthX = std::hypot(t.m11(), t.m12());
    const double lengthY = std::hypot(t.m21(), t.m22());
    const double dot = t.m11() * t.m21() + t.m12() * t.m22();
    const double tolerance = 1e-9 * qMax(1.0, qMax(lengthX, lengthY));
    return std::abs(lengthX - lengthY) <= tolerance && std::abs(dot) <= tolerance * lengthX;
}

} // namespace

QList<QPointF> DxfGeometry::arcPoints(const QPointF& center, double radius, double startDegrees,
                                      double endDegrees, double maxStepDegrees)
{
    double sweep = std::fmod(endDegrees - startDegrees, 360.0);
    if (sweep <= 1e-12)
        sweep += 360.0;
    const double step = qMax(0.1, maxStepDegrees);
    const int count = qMax(1, int(std::ceil(sweep / step)));
    QList<QPointF> points;
    points.reserve(count + 1);
    for (int i = 0; i <= count; ++i) {
        const double angle = qDegreesToRadians(startDegrees + sweep * i / count);
        points.append(center + QPointF(radius * std::cos(angle), radius * std::sin(angle)));
    }
    return points;
}

void DxfGeometry::appendBulgeSegment(QList<QPointF>& points, const QPointF& from, const QPointF& to,
                                     double bulge)
{
    const double chord = QLineF(from, to).length();
    if (std::abs(bulge) < 1e-9 || chord <= 0.0) {
        points.append(to);
        return;
    }
    const double angle = 4.0 * std::atan(bulge); // included angle, signed
    const double radius = std::abs(chord / (2.0 * std::sin(angle / 2.0)));
    const QPointF middle = (from + to) / 2.0;
    const QPointF direction = (to - from) / chord;
    const QPointF leftNormal(-direction.y(), direction.x());
    const double offset = chord * (1.0 - bulge * bulge) / (4.0 * bulge);
    const QPointF center = middle + leftNormal * offset;
    const double startAngle =
        qRadiansToDegrees(std::atan2(from.y() - center.y(), from.x() - center.x()));
    const double endAngle = qRadiansToDegrees(std::atan2(to.y() - center.y(), to.x() - center.x()));
    QList<QPointF> arc = bulge > 0 ? arcPoints(center, radius, startAngle, endAngle)
                                   : arcPoints(center, radius, endAngle, startAngle);
    if (bulge < 0)
        std::reverse(arc.begin(), arc.end());
    for (qsizetype i = 1; i + 1 < arc.size(); ++i)
        points.append(arc.at(i));
    points.append(to);
}

QTransform DxfGeometry::placement(const QPointF& basePoint, const QPointF& insertionPoint,
                                  double scaleX, double scaleY, double rotationDegrees)
{
    QTransform transform;
    transform.translate(insertionPoint.x(), insertionPoint.y());
    transform.rotate(rotationDegrees);
    transform.scale(scaleX, scaleY);
    transform.translate(-basePoint.x(), -basePoint.y());
    return transform;
}

double DxfGeometry::rotationOf(const QTransform& transform)
{
    return qRadiansToDegrees(std::atan2(transform.m12(), transform.m11()));
}

double DxfGeometry::scaleOf(const QTransform& transform)
{
    return std::sqrt(std::abs(transform.determinant()));
}

GeometryItem DxfGeometry::transformed(const GeometryItem& item, const QTransform& transform)
{
    GeometryItem out = item;
    for (QPointF& point : out.points)
        point = transform.map(point);
    switch (item.kind) {
    case GeometryItem::Kind::Line:
    case GeometryItem::Kind::Polyline:
        break;
    case GeometryItem::Kind::Text:
        out.height = item.height * std::hypot(transform.m21(), transform.m22());
        out.rotation = item.rotation + rotationOf(transform);
        break;
    case GeometryItem::Kind::Circle:
    case GeometryItem::Kind::Arc:
        if (item.points.isEmpty())
            break;
        if (isSimilarity(transform)) {
            const double rotation = rotationOf(transform);
            out.radius = item.radius * scaleOf(transform);
            if (transform.determinant() < 0) {
                out.startAngle = rotation - item.endAngle;
                out.endAngle = rotation - item.startAngle;
            } else {
                out.startAngle = item.startAngle + rotation;
                out.endAngle = item.endAngle + rotation;
            }
        } else {
            const bool circle = item.kind == GeometryItem::Kind::Circle;
            QList<QPointF> points = circle ? arcPoints(item.points.first(), item.radius, 0.0, 360.0)
                                           : arcPoints(item.points.first(), item.radius,
                                                       item.startAngle, item.endAngle);
            if (circle)
                points.removeLast();
            for (QPointF& point : points)
                point = transform.map(point);
            out = GeometryItem();
            out.kind = GeometryItem::Kind::Polyline;
            out.points = points;
            out.closed = circle;
        }
        break;
    }
    return out;
}

QPainterPath DxfGeometry::outline(const GeometryItem& item)
{
    QPainterPath path;
    switch (item.kind) {
    case GeometryItem::Kind::Line:
    case GeometryItem::Kind::Polyline:
        if (item.points.isEmpty())
            break;
        path.moveTo(item.points.first());
        for (qsizetype i = 1; i < item.points.size(); ++i)
            path.lineTo(item.points.at(i));
        if (item.closed && item.kind == GeometryItem::Kind::Polyline)
            path.closeSubpath();
        break;
    case GeometryItem::Kind::Circle:
        if (!item.points.isEmpty())
            path.addEllipse(item.points.first(), item.radius, item.radius);
        break;
    case GeometryItem::Kind::Arc: {
        if (item.points.isEmpty())
            break;
        const QList<QPointF> points =
            arcPoints(item.points.first(), item.radius, item.startAngle, item.endAngle);
        path.moveTo(points.first());
        for (qsizetype i = 1; i < points.size(); ++i)
            path.lineTo(points.at(i));
        break;
    }
    case GeometryItem::Kind::Text:
        break;
    }
    return path;
}

} // namespace RefHost
