// Page pictures: size, white background, dark pixels where the symbols are and nowhere else.
#include "PagePicture.h"
#include "tst_dxf_samples.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

using namespace RefHost;

namespace {

bool isWhite(QRgb pixel)
{
    return qRed(pixel) > 245 && qGreen(pixel) > 245 && qBlue(pixel) > 245;
}

// Whether any pixel within `radius` of `at` is not white.
bool inkNear(const QImage& image, const QPointF& at, int radius = 2)
{
    const QPoint centre = at.toPoint();
    for (int y = centre.y() - radius; y <= centre.y() + radius; ++y) {
        for (int x = centre.x() - radius; x <= centre.x() + radius; ++x) {
            if (image.valid(x, y) && !isWhite(image.pixel(x, y)))
                return true;
        }
    }
    return false;
}

int countPixels(const QImage& image, const QRect& area, const std::function<bool(QRgb)>& test)
{
    int count = 0;
    for (int y = qMax(0, area.top()); y <= qMin(image.height() - 1, area.bottom()); ++y) {
        for (int x = qMax(0, area.left()); x <= qMin(image.width() - 1, area.right()); ++x) {
            if (test(image.pixel(x, y)))
                ++count;
        }
    }
    return count;
}

// A ring of radius 10 around its base point with its tag 12 units to the right, placed at
// (100, 50) on P$1; a second one far away on P$2.
Drawing ringDrawing()
{
    Drawing drawing;
    drawing.groups() = {PageGroup{QStringLiteral("P"),
                                  {Page{QStringLiteral("One"), QStringLiteral("P$1"), false},
                                   Page{QStringLiteral("Two"), QStringLiteral("P$2"), true},
                                   Page{QStringLiteral("Empty"), QStringLiteral("P$3"), true}}}};
    BlockDefinition ring;
    ring.name = QStringLiteral("RING");
    ring.geometry = {DxfSamples::circle(0, 0, 10)};
    ring.attributes = {DxfSamples::attribute(QStringLiteral("TAG"), 12, -2, 4),
                       DxfSamples::attribute(QStringLiteral("HIDDEN"), -30, 0, 4, true)};
    drawing.blocks().insert(ring.name, ring);
    drawing.references() = {
        DxfSamples::reference(QStringLiteral("RING"), QStringLiteral("P$1"), 100, 50,
                              {{QStringLiteral("TAG"), QStringLiteral("-H1")},
                               {QStringLiteral("HIDDEN"), QStringLiteral("WWWWWWWW")}}),
        DxfSamples::reference(QStringLiteral("RING"), QStringLiteral("P$2"), 500, 500)};
    return drawing;
}

} // namespace

class TestPagePicture : public QObject
{
    Q_OBJECT

private slots:
    void pngShowsTheSymbolWhereItIs()
    {
        const Drawing drawing = ringDrawing();
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("page.png"));
        QCOMPARE(PagePicture::render(drawing, QStringLiteral("P$1"), path, 800), QString());
        QString error;
        const std::optional<PagePicture::Layout> layout =
            PagePicture::layout(drawing, QStringLiteral("P$1"), &error, 800);
        QVERIFY2(layout, qPrintable(error));
        // The other page's reference (at 500, 500) does not widen the picture.
        QVERIFY(layout->extents.right() < 200);
        QVERIFY(layout->extents.left() > 80);

        const QImage image(path);
        QVERIFY(!image.isNull());
        QCOMPARE(image.size(), layout->size);
        QCOMPARE(qMax(image.width(), image.height()), 800);
        for (const QPoint& corner :
             {QPoint(0, 0), QPoint(image.width() - 1, 0), QPoint(0, image.height() - 1),
              QPoint(image.width() - 1, image.height() - 1)})
            QVERIFY(isWhite(image.pixel(corner)));

        const QTransform& t = layout->worldToImage;
        // On the ring, left, right, top and bottom; nothing at its centre.
        for (const QPointF& onRing :
             {QPointF(90, 50), QPointF(110, 50), QPointF(100, 60), QPointF(100, 40)})
            QVERIFY2(inkNear(image, t.map(onRing)),
                     qPrintable(QStringLiteral("no ink at %1,%2").arg(onRing.x()).arg(onRing.y())));
        QVERIFY(!inkNear(image, t.map(QPointF(100, 50)), 10));
        // The tag's text, in the attribute colour, right of the ring, above its baseline.
        const QRect tagArea =
            QRectF(t.map(QPointF(112, 48 + 4)), t.map(QPointF(112 + 3 * 0.6 * 4, 48))).toRect();
        const int bluish = countPixels(
            image, tagArea, [](QRgb p) { return qBlue(p) > qRed(p) + 60 && qBlue(p) > 100; });
        QVERIFY2(bluish > 20, qPrintable(QString::number(bluish)));
        // Invisible attributes are not drawn: nothing left of the ring.
        const QRect hiddenArea = QRectF(t.map(QPointF(70, 56)), t.map(QPointF(88, 46))).toRect();
        QCOMPARE(countPixels(image, hiddenArea, [](QRgb p) { return !isWhite(p); }), 0);
    }

    void rotationTurnsTheSymbol()
    {
        Drawing drawing = Drawing::withSinglePage(QStringLiteral("R"));
        BlockDefinition bar;
        bar.name = QStringLiteral("BAR");
        bar.geometry = {DxfSamples::line(0, 0, 20, 0), DxfSamples::line(20, 0, 20, 2)};
        drawing.blocks().insert(bar.name, bar);
        BlockReference reference =
            DxfSamples::reference(QStringLiteral("BAR"), QStringLiteral("R$1"), 0, 0);
        reference.rotationDegrees = 90;
        drawing.references() = {reference};
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("bar.png"));
        QCOMPARE(PagePicture::render(drawing, QStringLiteral("R$1"), path, 400), QString());
        QString error;
        const std::optional<PagePicture::Layout> layout =
            PagePicture::layout(drawing, QStringLiteral("R$1"), &error, 400);
        QVERIFY(layout);
        const QImage image(path);
        QCOMPARE(image.size(), layout->size);
        // Turned a quarter counter-clockwise: the bar stands upright, its hook points left.
        QVERIFY(image.height() > 3 * image.width());
        QVERIFY(inkNear(image, layout->worldToImage.map(QPointF(0, 10))));
        QVERIFY(inkNear(image, layout->worldToImage.map(QPointF(-1.9, 20)), 1));
        QVERIFY(!inkNear(image, layout->worldToImage.map(QPointF(1.9, 20)), 1));
    }

    void svgHoldsTheGeometryAndTheTexts()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("page.svg"));
        QCOMPARE(PagePicture::render(ringDrawing(), QStringLiteral("P$1"), path), QString());
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray svg = file.readAll();
        QVERIFY(svg.contains("<svg"));
        QVERIFY(svg.contains("-H1"));
        QVERIFY(!svg.contains("WWWWWWWW"));
        QVERIFY(svg.contains("<path"));
        const QImage rendered(path); // Qt's SVG image plug-in
        if (!rendered.isNull())
            QVERIFY(countPixels(rendered, rendered.rect(), [](QRgb p) { return !isWhite(p); }) >
                    50);
    }

    void emptyPageIsABlankSheet()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("empty.png"));
        QCOMPARE(PagePicture::render(ringDrawing(), QStringLiteral("P$3"), path), QString());
        const QImage image(path);
        QCOMPARE(image.size(), QSize(1600, 1132));
        QCOMPARE(countPixels(image, image.rect(), [](QRgb p) { return !isWhite(p); }), 0);
    }

    void missingBlockIsMarked()
    {
        Drawing drawing = Drawing::withSinglePage(QStringLiteral("M"));
        drawing.references() = {
            DxfSamples::reference(QStringLiteral("NOWHERE"), QStringLiteral("M$1"), 0, 0)};
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("missing.png"));
        QCOMPARE(PagePicture::render(drawing, QStringLiteral("M$1"), path, 300), QString());
        const QImage image(path);
        QVERIFY(countPixels(image, image.rect(),
                            [](QRgb p) { return qRed(p) > 150 && qGreen(p) < 80; }) > 50);
    }

    void errorsNameTheFile_data()
    {
        QTest::addColumn<QString>("layer");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected");
        QTest::newRow("unknown page") << QStringLiteral("NO$1") << QStringLiteral("a.png")
                                      << QStringLiteral("no page \"NO$1\"");
        QTest::newRow("unknown type") << QStringLiteral("P$1") << QStringLiteral("a.jpg")
                                      << QStringLiteral("use .png or .svg");
        QTest::newRow("missing folder") << QStringLiteral("P$1") << QStringLiteral("no/such/a.png")
                                        << QStringLiteral("cannot draw the page");
    }

    void errorsNameTheFile()
    {
        QFETCH(QString, layer);
        QFETCH(QString, name);
        QFETCH(QString, expected);
        QTemporaryDir dir;
        const QString path = dir.filePath(name);
        const QString error = PagePicture::render(ringDrawing(), layer, path);
        QVERIFY2(error.startsWith(path + QStringLiteral(": ")), qPrintable(error));
        QVERIFY2(error.contains(expected), qPrintable(error));
        QVERIFY(!QFile::exists(path));
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList());
    }
};

QTEST_MAIN(TestPagePicture)
#include "tst_pagepicture_render.moc"
