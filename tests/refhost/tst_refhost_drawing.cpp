#include "Drawing.h"

#include <QTest>

using RefHost::Drawing;

class TestRefHostDrawing : public QObject
{
    Q_OBJECT

private slots:
    void singlePageDrawing()
    {
        const Drawing drawing = Drawing::withSinglePage();
        QCOMPARE(drawing.groups().size(), 1);
        QCOMPARE(drawing.groups().first().name, QStringLiteral("PAGE"));
        QCOMPARE(drawing.pageLayers(), QStringList{QStringLiteral("PAGE$1")});
        QCOMPARE(drawing.currentLayer(), QStringLiteral("PAGE$1"));
        QVERIFY(!drawing.findPage(QStringLiteral("PAGE$1"))->frozen);

        const Drawing named = Drawing::withSinglePage(QStringLiteral("SHEET"));
        QCOMPARE(named.currentLayer(), QStringLiteral("SHEET$1"));
    }

    void appendPageNumbersAfterTheHighest()
    {
        Drawing drawing = Drawing::withSinglePage(QStringLiteral("A"));
        QCOMPARE(drawing.appendPage(QStringLiteral("A")), QStringLiteral("A$2"));
        QVERIFY(drawing.addPageLayer(QStringLiteral("A$7")));
        QCOMPARE(drawing.appendPage(QStringLiteral("a")), QStringLiteral("A$8"));
        QCOMPARE(drawing.appendPage(QStringLiteral("B")), QStringLiteral("B$1"));
        QCOMPARE(drawing.pageLayers(),
                 (QStringList{QStringLiteral("A$1"), QStringLiteral("A$2"), QStringLiteral("A$7"),
                              QStringLiteral("A$8"), QStringLiteral("B$1")}));
        // Appending does not change the current page; new pages start frozen.
        QCOMPARE(drawing.currentLayer(), QStringLiteral("A$1"));
        QVERIFY(drawing.findPage(QStringLiteral("B$1"))->frozen);
    }

    void currentLayerThawsItsPageAndFreezesTheOthers()
    {
        Drawing drawing = Drawing::withSinglePage(QStringLiteral("A"));
        drawing.appendPage(QStringLiteral("A"));
        drawing.appendPage(QStringLiteral("B"));
        QVERIFY(drawing.setCurrentLayer(QStringLiteral("a$2")));
        QCOMPARE(drawing.currentLayer(), QStringLiteral("A$2"));
        QVERIFY(drawing.findPage(QStringLiteral("A$1"))->frozen);
        QVERIFY(!drawing.findPage(QStringLiteral("A$2"))->frozen);
        QVERIFY(drawing.findPage(QStringLiteral("B$1"))->frozen);

        // A layer that is no page can be current; the pages stay as they were.
        QVERIFY(drawing.setCurrentLayer(QStringLiteral("0")));
        QCOMPARE(drawing.currentLayer(), QStringLiteral("0"));
        QVERIFY(!drawing.findPage(QStringLiteral("A$2"))->frozen);
        QVERIFY(!drawing.setCurrentLayer(QString()));
        QCOMPARE(drawing.currentLayer(), QStringLiteral("0"));
    }

    void findIgnoresCase()
    {
        Drawing drawing = Drawing::withSinglePage(QStringLiteral("Main"));
        QVERIFY(drawing.findPage(QStringLiteral("MAIN$1")));
        QVERIFY(drawing.findGroup(QStringLiteral("main")));
        QVERIFY(!drawing.findPage(QStringLiteral("MAIN$2")));
        QVERIFY(!drawing.findGroup(QStringLiteral("Other")));
    }

    void addPageLayerKeepsOrderAndTitle()
    {
        Drawing drawing;
        QVERIFY(drawing.addPageLayer(QStringLiteral("X$3"), QStringLiteral("Third")));
        QVERIFY(drawing.addPageLayer(QStringLiteral("X$1")));
        QVERIFY(drawing.addPageLayer(QStringLiteral("Y$1")));
        QVERIFY(!drawing.addPageLayer(QStringLiteral("x$1")));
        QVERIFY(!drawing.addPageLayer(QString()));
        QCOMPARE(drawing.groups().size(), 2);
        QCOMPARE(drawing.findPage(QStringLiteral("X$3"))->title, QStringLiteral("Third"));
        QCOMPARE(drawing.findPage(QStringLiteral("X$1"))->title, QStringLiteral("X$1"));
        QCOMPARE(drawing.pagePosition(QStringLiteral("X$3")), std::make_pair(1, 2));
        QCOMPARE(drawing.pagePosition(QStringLiteral("x$1")), std::make_pair(2, 2));
        QCOMPARE(drawing.pagePosition(QStringLiteral("Y$1")), std::make_pair(1, 1));
        QCOMPARE(drawing.pagePosition(QStringLiteral("Z$1")), std::make_pair(0, 0));
    }

    void groupNameOf_data()
    {
        QTest::addColumn<QString>("layer");
        QTest::addColumn<QString>("group");
        QTest::newRow("page") << "PAGE$1"
                              << "PAGE";
        QTest::newRow("first dollar") << "A$B$2"
                                      << "A";
        QTest::newRow("no dollar") << "LAYER"
                                   << "LAYER";
        QTest::newRow("empty") << ""
                               << "";
    }

    void groupNameOf()
    {
        QFETCH(QString, layer);
        QFETCH(QString, group);
        QCOMPARE(Drawing::groupNameOf(layer), group);
    }

    void drawingIsAValue()
    {
        Drawing drawing = Drawing::withSinglePage();
        drawing.lispVariables().insert(QStringLiteral("*X*"), {LispItem::fromInteger(1)});
        const Drawing copy = drawing;
        drawing.appendPage(QStringLiteral("PAGE"));
        drawing.lispVariables().clear();
        QCOMPARE(copy.pageLayers().size(), 1);
        QCOMPARE(copy.lispVariables().value(QStringLiteral("*X*")).first().integer, 1);
    }
};

QTEST_GUILESS_MAIN(TestRefHostDrawing)
#include "tst_refhost_drawing.moc"
