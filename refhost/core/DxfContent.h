#pragma once

#include "BlockDefinition.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QPointF>
#include <QString>

namespace RefHost {

// One group of extended data (XDATA) as dxflib reports it.
struct DxfXDataItem
{
    int code = 0;
    QByteArray text;    // string groups (1000-1009)
    qint64 integer = 0; // 1060-1071
    double real = 0.0;  // 1010-1059
};

// An ATTRIB entity that follows an INSERT.
struct DxfAttribute
{
    QString tag;
    QString value;
    QPointF position;
    double height = 2.5;
    double rotation = 0.0; // degrees
};

// An INSERT entity with its attributes, in the coordinates of the block or model space that
// holds it.
struct DxfInsert
{
    QString blockName;
    QString layer;
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double scaleX = 1.0;
    double scaleY = 1.0;
    double rotation = 0.0; // degrees
    QList<DxfAttribute> attributes;
    QMap<QByteArray, QList<DxfXDataItem>> xdata; // by application name
};

// The entities of one block definition, or of model space.
struct DxfBlockContent
{
    QString name;
    QPointF basePoint;
    QList<GeometryItem> geometry;
    QList<AttributeDefinition> attributeDefinitions;
    QList<DxfInsert> inserts;
    QMap<QByteArray, QList<DxfXDataItem>> xdata;
};

struct DxfLayer
{
    QString name;
    bool frozen = false;
    QMap<QByteArray, QList<DxfXDataItem>> xdata;
};

// What the reader takes from a DXF file, before it becomes a block definition or a drawing.
struct DxfContent
{
    QString currentLayer;          // $CLAYER
    QPointF insertionBase;         // $INSBASE
    QList<DxfLayer> layers;        // in table order
    QList<DxfBlockContent> blocks; // in file order, without model and paper space
    DxfBlockContent modelSpace;
};

} // namespace RefHost
