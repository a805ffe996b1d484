#pragma once

#include "Drawing.h"

#include <QtTest>

// Field-by-field comparison of drawings for the DXF tests; the first difference fails the test
// with its location.
namespace DxfCompare {

inline bool same(double a, double b)
{
    return qAbs(a - b) <= 1e-9 * qMax(1.0, qMax(qAbs(a), qAbs(b)));
}

#define DXF_COMPARE_REAL(actual, expected)                                                         \
    QVERIFY2(DxfCompare::same((actual), (expected)),                                               \
             qPrintable(QStringLiteral("%1 = %2, expected %3")                                     \
                            .arg(QLatin1String(#actual))                                           \
                            .arg(actual)                                                           \
                            .arg(expected)))

inline void compareGeometry(const RefHost::GeometryItem& actual,
                            const RefHost::GeometryItem& expected)
{
    QCOMPARE(int(actual.kind), int(expected.kind));
    QCOMPARE(actual.points.size(), expected.points.size());
    for (qsizetype i = 0; i < actual.points.size(); ++i) {
        DXF_COMPARE_REAL(actual.points[i].x(), expected.points[i].x());
        DXF_COMPARE_REAL(actual.points[i].y(), expected.points[i].y());
    }
    QCOMPARE(actual.closed, expected.closed);
    DXF_COMPARE_REAL(actual.radius, expected.radius);
    DXF_COMPARE_REAL(actual.startAngle, expected.startAngle);
    DXF_COMPARE_REAL(actual.endAngle, expected.endAngle);
    QCOMPARE(actual.text, expected.text);
    if (actual.kind == RefHost::GeometryItem::Kind::Text) {
        DXF_COMPARE_REAL(actual.height, expected.height);
        DXF_COMPARE_REAL(actual.rotation, expected.rotation);
    }
}

inline void compareBlock(const RefHost::BlockDefinition& actual,
                         const RefHost::BlockDefinition& expected)
{
    QCOMPARE(actual.name, expected.name);
    DXF_COMPARE_REAL(actual.basePoint.x(), expected.basePoint.x());
    DXF_COMPARE_REAL(actual.basePoint.y(), expected.basePoint.y());
    QCOMPARE(actual.geometry.size(), expected.geometry.size());
    for (qsizetype i = 0; i < actual.geometry.size(); ++i) {
        compareGeometry(actual.geometry[i], expected.geometry[i]);
        if (QTest::currentTestFailed())
            return;
    }
    QCOMPARE(actual.attributes.size(), expected.attributes.size());
    for (qsizetype i = 0; i < actual.attributes.size(); ++i) {
        const RefHost::AttributeDefinition& a = actual.attributes[i];
        const RefHost::AttributeDefinition& e = expected.attributes[i];
        QCOMPARE(a.tag, e.tag);
        QCOMPARE(a.prompt, e.prompt);
        QCOMPARE(a.defaultValue, e.defaultValue);
        DXF_COMPARE_REAL(a.position.x(), e.position.x());
        DXF_COMPARE_REAL(a.position.y(), e.position.y());
        DXF_COMPARE_REAL(a.height, e.height);
        DXF_COMPARE_REAL(a.rotation, e.rotation);
        QCOMPARE(a.invisible, e.invisible);
    }
}

inline void compareDrawings(const RefHost::Drawing& actual, const RefHost::Drawing& expected)
{
    QCOMPARE(actual.currentLayer(), expected.currentLayer());
    QCOMPARE(actual.groups().size(), expected.groups().size());
    for (qsizetype g = 0; g < actual.groups().size(); ++g) {
        const RefHost::PageGroup& a = actual.groups()[g];
        const RefHost::PageGroup& e = expected.groups()[g];
        QCOMPARE(a.name, e.name);
        QCOMPARE(a.pages.size(), e.pages.size());
        for (qsizetype p = 0; p < a.pages.size(); ++p) {
            QCOMPARE(a.pages[p].layer, e.pages[p].layer);
            QCOMPARE(a.pages[p].title, e.pages[p].title);
            QCOMPARE(a.pages[p].frozen, e.pages[p].frozen);
        }
    }
    QCOMPARE(actual.blocks().keys(), expected.blocks().keys());
    for (const QString& name : expected.blocks().keys()) {
        compareBlock(actual.blocks().value(name), expected.blocks().value(name));
        if (QTest::currentTestFailed())
            return;
    }
    QCOMPARE(actual.references().size(), expected.references().size());
    for (qsizetype i = 0; i < actual.references().size(); ++i) {
        const RefHost::BlockReference& a = actual.references()[i];
        const RefHost::BlockReference& e = expected.references()[i];
        QCOMPARE(a.blockName, e.blockName);
        QCOMPARE(a.layer, e.layer);
        DXF_COMPARE_REAL(a.x, e.x);
        DXF_COMPARE_REAL(a.y, e.y);
        DXF_COMPARE_REAL(a.z, e.z);
        DXF_COMPARE_REAL(a.rotationDegrees, e.rotationDegrees);
        QCOMPARE(a.attributes.size(), e.attributes.size());
        for (qsizetype k = 0; k < a.attributes.size(); ++k) {
            QCOMPARE(a.attributes[k].tag, e.attributes[k].tag);
            QCOMPARE(a.attributes[k].value, e.attributes[k].value);
        }
        QCOMPARE(a.associated, e.associated);
        QCOMPARE(a.componentKey, e.componentKey);
    }
    QCOMPARE(actual.variables().keys(), expected.variables().keys());
    for (const QString& name : expected.variables().keys()) {
        const RefHost::DrawingVariable a = actual.variables().value(name);
        const RefHost::DrawingVariable e = expected.variables().value(name);
        QCOMPARE(int(a.kind), int(e.kind));
        QCOMPARE(a.text, e.text);
        QCOMPARE(a.boolean, e.boolean);
        QCOMPARE(a.list, e.list);
    }
    QCOMPARE(actual.lispVariables().keys(), expected.lispVariables().keys());
    for (const QString& name : expected.lispVariables().keys())
        QVERIFY(actual.lispVariables().value(name) == expected.lispVariables().value(name));
}

} // namespace DxfCompare
