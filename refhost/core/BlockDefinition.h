#pragma once

#include <QList>
#include <QPointF>
#include <QString>

namespace RefHost {

// One piece of a block's geometry, in block coordinates (drawing units, y up).
struct GeometryItem
{
    enum class Kind { Line, Circle, Arc, Polyline, Text };

    Kind kind = Kind::Line;
    QList<QPointF> points;   // Line: 2 points; Polyline: its vertices; Circle/Arc/Text: 1 point
    bool closed = false;     // Polyline only
    double radius = 0.0;     // Circle, Arc
    double startAngle = 0.0; // Arc, degrees counter-clockwise from +x
    double endAngle = 0.0;   // Arc, degrees
    QString text;            // Text
    double height = 2.5;     // Text
    double rotation = 0.0;   // Text, degrees
};

// An attribute definition of a block: a tag whose value each block reference carries.
struct AttributeDefinition
{
    QString tag;
    QString prompt;
    QString defaultValue;
    QPointF position;
    double height = 2.5;
    double rotation = 0.0;
    bool invisible = false;
};

// A block definition: geometry plus attribute definitions, read from a block file.
struct BlockDefinition
{
    QString name;
    QPointF basePoint;
    QList<GeometryItem> geometry;
    QList<AttributeDefinition> attributes;
};

} // namespace RefHost
