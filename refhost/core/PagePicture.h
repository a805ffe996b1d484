#pragma once

#include <QRectF>
#include <QSize>
#include <QString>
#include <QTransform>

#include <optional>

class QPainter;

namespace RefHost {

class Drawing;

// A picture of one page of a drawing: the geometry of every block reference on the page's layer,
// placed by its insertion point and rotation, with the attribute values as text, black on white,
// fitted to the extents of what is drawn (with a small margin). References to blocks the drawing
// does not define appear as a red square with the block name.
//
// PNG (through QImage and QPainter) or SVG (through QSvgGenerator), chosen by the extension of
// the path. Texts need fonts, so a QGuiApplication must exist; on a machine without a display
// run with QT_QPA_PLATFORM=offscreen.
class PagePicture
{
public:
    // Pixels of the picture's longer side (kept between 16 and 16384).
    static constexpr int DefaultLongestSide = 1600;

    // Where the drawing's coordinates land in the picture.
    struct Layout
    {
        QSize size;
        QRectF extents; // drawing units, margin included
        QTransform worldToImage;
    };

    // The layout render() uses; `error` names the problem when there is none.
    static std::optional<Layout> layout(const Drawing& drawing, const QString& layer,
                                        QString* error, int longestSide = DefaultLongestSide);

    // Paints the page as render() does, in picture coordinates (0,0 to layout.size) mapped
    // through the painter's current transform, which is kept; for on-screen views.
    static void paint(QPainter& painter, const Drawing& drawing, const QString& layer,
                      const Layout& layout);

    // Writes the picture; returns an empty string on success, otherwise a message naming the file
    // and the problem. The file is replaced only once the picture is complete.
    static QString render(const Drawing& drawing, const QString& layer, const QString& path,
                          int longestSide = DefaultLongestSide);
};

} // namespace RefHost
