#include "PagePicture.h"

#include "Drawing.h"
#include "DxfGeometry.h"

#include <QBuffer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QPainterPath>
#include <QSaveFile>
#include <QSvgGenerator>

#include <cmath>

namespace RefHost {

namespace {

const QColor GeometryColor(Qt::black);
const QColor AttributeColor(0, 0, 160);
const QColor MissingColor(200, 0, 0);
constexpr double LineSpacing = 1.25;  // baseline distance, in text heights
constexpr double MissingMarker = 5.0; // half the side of the square for a missing block

struct Stroke
{
    QPainterPath path; // drawing coordinates
    QColor color;
};

struct Label
{
    QPointF position; // left end of the first baseline, drawing coordinates
    double height = 2.5;
    double rotation = 0.0;
    QString text;
    QColor color;
};

// What the page shows, in drawing coordinates.
struct Scene
{
    QList<Stroke> strokes;
    QList<Label> labels;

    // The box a label covers, estimated from its height (fonts differ between machines).
    static QRectF labelBox(const Label& label)
    {
        const QStringList lines = label.text.split(QLatin1Char('\n'));
        qsizetype longest = 0;
        for (const QString& line : lines)
            longest = qMax(longest, line.size());
        const double h = label.height;
        const QRectF local(0.0, -h * (0.25 + LineSpacing * double(lines.size() - 1)),
                           0.6 * h * double(longest),
                           h * (1.25 + LineSpacing * double(lines.size() - 1)));
        QTransform placement;
        placement.translate(label.position.x(), label.position.y());
        placement.rotate(label.rotation);
        return placement.mapRect(local);
    }

    QRectF extents() const
    {
        QRectF box;
        for (const Stroke& stroke : strokes)
            box =
                box.isNull() ? stroke.path.boundingRect() : box.united(stroke.path.boundingRect());
        for (const Label& label : labels) {
            if (!label.text.trimmed().isEmpty())
                box = box.isNull() ? labelBox(label) : box.united(labelBox(label));
        }
        return box;
    }
};

const AttributeDefinition* definitionFor(const BlockDefinition* block, const QString& tag)
{
    if (!block)
        return nullptr;
    for (const AttributeDefinition& definition : block->attributes) {
        if (definition.tag.compare(tag, Qt::CaseInsensitive) == 0)
            return &definition;
    }
    return nullptr;
}

// Block names compare ignoring case, as in CAD programs.
const BlockDefinition* blockFor(const Drawing& drawing, const QString& name)
{
    const auto exact = drawing.blocks().constFind(name);
    if (exact != drawing.blocks().cend())
        return &exact.value();
    for (auto it = drawing.blocks().cbegin(); it != drawing.blocks().cend(); ++it) {
        if (it.key().compare(name, Qt::CaseInsensitive) == 0)
            return &it.value();
    }
    return nullptr;
}

void addReference(Scene& scene, const Drawing& drawing, const BlockReference& reference)
{
    const BlockDefinition* block = blockFor(drawing, reference.blockName);
    const QPointF at(reference.x, reference.y);
    const QTransform placement = DxfGeometry::placement(block ? block->basePoint : QPointF(), at,
                                                        1.0, 1.0, reference.rotationDegrees);

    if (block) {
        for (const GeometryItem& item : block->geometry) {
            if (item.kind == GeometryItem::Kind::Text) {
                const GeometryItem placed = DxfGeometry::transformed(item, placement);
                if (!placed.points.isEmpty())
                    scene.labels.append(Label{placed.points.first(), placed.height, placed.rotation,
                                              placed.text, GeometryColor});
            } else {
                const QPainterPath path = DxfGeometry::outline(item);
                if (!path.isEmpty())
                    scene.strokes.append(Stroke{placement.map(path), GeometryColor});
            }
        }
    } else {
        QPainterPath square;
        square.addRect(QRectF(at - QPointF(MissingMarker, MissingMarker),
                              QSizeF(2 * MissingMarker, 2 * MissingMarker)));
        scene.strokes.append(Stroke{square, MissingColor});
        scene.labels.append(Label{at + QPointF(-MissingMarker, MissingMarker + 1.0), 2.5, 0.0,
                                  reference.blockName, MissingColor});
    }

    // Attributes sit where their definitions put them; values without one are listed under the
    // insertion point. Invisible attributes stay invisible, as in a CAD program.
    int unplaced = 0;
    for (const AttributeValue& attribute : reference.attributes) {
        const AttributeDefinition* definition = definitionFor(block, attribute.tag);
        if (definition && definition->invisible)
            continue;
        Label label;
        label.text = attribute.value;
        label.color = AttributeColor;
        if (definition) {
            label.position = placement.map(definition->position);
            label.height = definition->height;
            label.rotation = reference.rotationDegrees + definition->rotation;
        } else {
            ++unplaced;
            label.position = at - QPointF(0.0, (block ? 0.0 : MissingMarker) + 3.0 * unplaced);
        }
        scene.labels.append(label);
    }
}

// Paints in picture coordinates on top of whatever transform the painter already has (the
// identity for files; a zoom and pan in the desktop host's page view).
void paintScene(QPainter& painter, const Scene& scene, const PagePicture::Layout& layout)
{
    const QTransform base = painter.transform();
    painter.fillRect(QRect(QPoint(0, 0), layout.size), Qt::white);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setBrush(Qt::NoBrush);
    for (const Stroke& stroke : scene.strokes) {
        QPen pen(stroke.color);
        pen.setCosmetic(true);
        pen.setWidthF(1.5);
        painter.setPen(pen);
        painter.setTransform(layout.worldToImage * base);
        painter.drawPath(stroke.path);
    }
    const double scale = std::sqrt(std::abs(layout.worldToImage.determinant()));
    const double baseScale = std::sqrt(std::abs(base.determinant()));
    for (const Label& label : scene.labels) {
        if (label.text.isEmpty())
            continue;
        // Font sizes are whole pixels: the text is laid out at the size it shows on the device
        // and the base transform is taken out of the text's own transform.
        const int pixels = qMax(1, int(std::lround(label.height * scale * baseScale)));
        QFont font;
        font.setStyleHint(QFont::SansSerif);
        font.setPixelSize(pixels);
        painter.setFont(font);
        painter.setPen(label.color);
        painter.setTransform(
            QTransform::fromTranslate(base.map(layout.worldToImage.map(label.position)).x(),
                                      base.map(layout.worldToImage.map(label.position)).y()));
        painter.rotate(-label.rotation); // counter-clockwise in the drawing, y pointing down here
        const QStringList lines = label.text.split(QLatin1Char('\n'));
        for (qsizetype i = 0; i < lines.size(); ++i)
            painter.drawText(QPointF(0.0, LineSpacing * pixels * double(i)), lines.at(i));
    }
    painter.setTransform(base);
}

Scene sceneOf(const Drawing& drawing, const QString& layer)
{
    Scene scene;
    for (const BlockReference& reference : drawing.references()) {
        if (reference.layer.compare(layer, Qt::CaseInsensitive) == 0)
            addReference(scene, drawing, reference);
    }
    return scene;
}

std::optional<PagePicture::Layout> layoutOf(const Scene& scene, int longestSide)
{
    QRectF extents = scene.extents();
    if (extents.isNull() || !extents.isValid()) {
        // An empty page: a blank sheet in the proportions of A3 landscape.
        extents = QRectF(0.0, 0.0, 420.0, 297.0);
    } else {
        const double margin = 0.05 * qMax(qMax(extents.width(), extents.height()), 1e-6);
        extents.adjust(-margin, -margin, margin, margin);
    }
    const double side = qMax(extents.width(), extents.height());
    if (!std::isfinite(side) || side <= 0.0)
        return std::nullopt;
    const double scale = double(qBound(16, longestSide, 16384)) / side;
    PagePicture::Layout layout;
    layout.extents = extents;
    layout.size = QSize(qMax(1, int(std::ceil(extents.width() * scale - 1e-9))),
                        qMax(1, int(std::ceil(extents.height() * scale - 1e-9))));
    // Drawing y points up, picture y points down.
    layout.worldToImage.translate(0.0, extents.height() * scale);
    layout.worldToImage.scale(scale, -scale);
    layout.worldToImage.translate(-extents.left(), -extents.top());
    return layout;
}

bool knownLayer(const Drawing& drawing, const QString& layer)
{
    if (drawing.findPage(layer))
        return true;
    for (const BlockReference& reference : drawing.references()) {
        if (reference.layer.compare(layer, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

} // namespace

std::optional<PagePicture::Layout> PagePicture::layout(const Drawing& drawing, const QString& layer,
                                                       QString* error, int longestSide)
{
    if (!knownLayer(drawing, layer)) {
        if (error)
            *error = QStringLiteral("the drawing has no page \"%1\"").arg(layer);
        return std::nullopt;
    }
    const std::optional<Layout> result = layoutOf(sceneOf(drawing, layer), longestSide);
    if (!result && error)
        *error = QStringLiteral("the page \"%1\" has no drawable extents").arg(layer);
    return result;
}

void PagePicture::paint(QPainter& painter, const Drawing& drawing, const QString& layer,
                        const Layout& layout)
{
    paintScene(painter, sceneOf(drawing, layer), layout);
}

QString PagePicture::render(const Drawing& drawing, const QString& layer, const QString& path,
                            int longestSide)
{
    const auto fail = [&path](const QString& what) {
        return QStringLiteral("%1: cannot draw the page: %2").arg(path, what);
    };
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix != QLatin1String("png") && suffix != QLatin1String("svg"))
        return fail(QStringLiteral("unknown picture type \".%1\"; use .png or .svg").arg(suffix));
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        return fail(
            QStringLiteral("pictures need a QGuiApplication (on a machine without a display, run "
                           "with QT_QPA_PLATFORM=offscreen)"));
    QString error;
    const std::optional<Layout> pageLayout = layout(drawing, layer, &error, longestSide);
    if (!pageLayout)
        return fail(error);
    const Scene scene = sceneOf(drawing, layer);

    QByteArray bytes;
    if (suffix == QLatin1String("png")) {
        QImage image(pageLayout->size, QImage::Format_RGB32);
        if (image.isNull())
            return fail(QStringLiteral("no memory for a %1 x %2 picture")
                            .arg(pageLayout->size.width())
                            .arg(pageLayout->size.height()));
        QPainter painter(&image);
        paintScene(painter, scene, *pageLayout);
        painter.end();
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QImageWriter writer(&buffer, "png");
        if (!writer.write(image))
            return fail(writer.errorString());
    } else {
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        QSvgGenerator generator;
        generator.setOutputDevice(&buffer);
        generator.setSize(pageLayout->size);
        generator.setViewBox(QRect(QPoint(0, 0), pageLayout->size));
        generator.setTitle(layer);
        QPainter painter(&generator);
        paintScene(painter, scene, *pageLayout);
        painter.end();
    }

    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return fail(file.errorString());
    return QString();
}

} // namespace RefHost
