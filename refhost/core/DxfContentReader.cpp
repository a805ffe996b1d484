#include "DxfContentReader.h"

#include "DxfGeometry.h"
#include "DxfGroupFile.h"

#include <dl_creationadapter.h>
#include <dl_dxf.h>

#include <QtMath>

#include <cmath>
#include <exception>
#include <sstream>
#include <string>

namespace RefHost {

namespace {

bool isPaperSpaceBlock(const QByteArray& name)
{
    return name.toUpper().startsWith("*PAPER_SPACE");
}

bool isModelSpaceBlock(const QString& name)
{
    return name.compare(QLatin1String("*Model_Space"), Qt::CaseInsensitive) == 0;
}

bool isCoordinateCode(int code)
{
    return code >= 10 && code <= 59;
}

// MTEXT keeps formatting codes in its text; the symbol only needs the words and line breaks.
QString plainMText(const QString& text)
{
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c == QLatin1Char('{') || c == QLatin1Char('}'))
            continue;
        if (c != QLatin1Char('\\') || i + 1 >= text.size()) {
            out.append(c);
            continue;
        }
        const QChar code = text.at(++i);
        switch (code.toLatin1()) {
        case 'P':
        case 'X':
            out.append(QLatin1Char('\n'));
            break;
        case '~':
            out.append(QLatin1Char(' '));
            break;
        case '\\':
        case '{':
        case '}':
            out.append(code);
            break;
        case 'L':
        case 'l':
        case 'O':
        case 'o':
        case 'K':
        case 'k':
            break;
        case 'S': { // stacked text "\Sup^down;" or "\Sup/down;": shown as "up/down"
            const qsizetype end = text.indexOf(QLatin1Char(';'), i + 1);
            const QString stacked = text.mid(i + 1, end < 0 ? -1 : end - i - 1);
            out.append(QString(stacked)
                           .replace(QLatin1Char('^'), QLatin1Char('/'))
                           .replace(QLatin1Char('#'), QLatin1Char('/')));
            i = end < 0 ? text.size() : end;
            break;
        }
        default: { // \f...; \H...; \C...; and the other codes with an argument up to ';'
            const qsizetype end = text.indexOf(QLatin1Char(';'), i + 1);
            i = end < 0 ? text.size() : end;
            break;
        }
        }
    }
    return out;
}

// Builds the input given to dxflib: only the records the reference host uses, each reduced to
// the groups dxflib reads, with values already checked.
class DxfLibFeed
{
public:
    explicit DxfLibFeed(const DxfGroupFile& file) : m_file(file) {}

    bool build();
    const std::string& text() const { return m_text; }
    const QString& error() const { return m_error; }

private:
    void put(int code, const QByteArray& value);
    bool copy(int index);
    bool forwardHeader();
    bool forwardLayer(const DxfGroupFile::Object& object);
    bool forwardBlockStart(const DxfGroupFile::Object& object);
    bool forwardEntity(const DxfGroupFile::Object& object);
    bool forwardLwPolyline(const DxfGroupFile::Object& object);
    bool forwardMText(const DxfGroupFile::Object& object);
    bool forwardGeneric(const DxfGroupFile::Object& object);
    int findGroup(const DxfGroupFile::Object& object, int code) const;

    const DxfGroupFile& m_file;
    std::string m_text;
    QString m_error;
    // Set when an entity is left out, so that its VERTEX, ATTRIB and SEQEND records go too.
    bool m_droppingFollowers = false;
};

void DxfLibFeed::put(int code, const QByteArray& value)
{
    m_text += std::to_string(code);
    m_text += '\n';
    m_text.append(value.constData(), size_t(value.size()));
    m_text += '\n';
}

bool DxfLibFeed::copy(int index)
{
    const int code = m_file.code(index);
    const QByteArray value = m_file.value(index);
    if (value.size() > DxfContentReader::MaxValueBytes) {
        m_error = m_file.errorAt(index, QStringLiteral("a value longer than %1 characters is not "
                                                       "supported")
                                            .arg(DxfContentReader::MaxValueBytes));
        return false;
    }
    if (isCoordinateCode(code) && std::abs(m_file.real(index)) > DxfContentReader::MaxCoordinate) {
        m_error = m_file.errorAt(
            index, QStringLiteral("the number %1 is out of range").arg(QString::fromLatin1(value)));
        return false;
    }
    put(code, value);
    return true;
}

int DxfLibFeed::findGroup(const DxfGroupFile::Object& object, int code) const
{
    for (int i = object.begin + 1; i < object.end; ++i) {
        if (m_file.code(i) == code)
            return i;
    }
    return -1;
}

bool DxfLibFeed::build()
{
    // dxflib reads MTEXT angles by the writer version found in this comment.
    put(999, QByteArrayLiteral("dxflib " DL_VERSION));
    if (!forwardHeader())
        return false;
    put(0, "SECTION");
    put(2, "ENTITIES");
    for (const DxfGroupFile::Object& object : m_file.objects()) {
        bool ok = true;
        if (object.section == "TABLES") {
            if (object.type == "LAYER" && object.table == "LAYER")
                ok = forwardLayer(object);
        } else if (object.section == "BLOCKS") {
            // dxflib skips a nameless BLOCK but not its entities, which would land elsewhere.
            if (isPaperSpaceBlock(object.block) || object.block.isEmpty())
                continue;
            if (object.type == "BLOCK")
                ok = forwardBlockStart(object);
            else if (object.type == "ENDBLK")
                put(0, "ENDBLK");
            else
                ok = forwardEntity(object);
        } else if (object.section == "ENTITIES") {
            ok = forwardEntity(object);
        }
        if (!ok)
            return false;
    }
    put(0, "ENDSEC");
    put(0, "EOF");
    return true;
}

bool DxfLibFeed::forwardHeader()
{
    put(0, "SECTION");
    put(2, "HEADER");
    const int layer = m_file.headerGroup("$CLAYER", 8);
    if (layer >= 0) {
        put(9, "$CLAYER");
        if (!copy(layer))
            return false;
    }
    const int baseX = m_file.headerGroup("$INSBASE", 10);
    if (baseX >= 0) {
        put(9, "$INSBASE");
        for (int code : {10, 20, 30}) {
            const int index = m_file.headerGroup("$INSBASE", code);
            if (index >= 0 && !copy(index))
                return false;
        }
    }
    put(0, "ENDSEC");
    return true;
}

bool DxfLibFeed::forwardLayer(const DxfGroupFile::Object& object)
{
    put(0, "LAYER");
    for (int i = object.begin + 1; i < object.end; ++i) {
        const int code = m_file.code(i);
        if ((code == 2 || code == 70 || code >= 1000) && !copy(i))
            return false;
    }
    return true;
}

bool DxfLibFeed::forwardBlockStart(const DxfGroupFile::Object& object)
{
    put(0, "BLOCK");
    for (int i = object.begin + 1; i < object.end; ++i) {
        const int code = m_file.code(i);
        if ((code == 2 || code == 70 || code == 10 || code == 20 || code == 30 || code >= 1000) &&
            !copy(i))
            return false;
    }
    return true;
}

bool DxfLibFeed::forwardEntity(const DxfGroupFile::Object& object)
{
    const QByteArray& type = object.type;
    const bool follower = type == "VERTEX" || type == "ATTRIB" || type == "SEQEND";
    if (follower && m_droppingFollowers)
        return true;
    m_droppingFollowers = false;

    static const QByteArrayList supported = {"LINE",     "CIRCLE", "ARC",    "LWPOLYLINE",
                                             "POLYLINE", "VERTEX", "SEQEND", "TEXT",
                                             "MTEXT",    "INSERT", "ATTRIB"};
    const int space = findGroup(object, 67);
    const bool paperSpace = space >= 0 && m_file.integer(space) == 1;
    bool meshPolyline = false;
    if (type == "POLYLINE") {
        const int flags = findGroup(object, 70);
        meshPolyline = flags >= 0 && (m_file.integer(flags) & (16 | 64)) != 0;
    }
    // dxflib skips a nameless INSERT, whose ATTRIBs would then go to the one before.
    bool namelessInsert = false;
    if (type == "INSERT") {
        const int name = findGroup(object, 2);
        namelessInsert = name < 0 || m_file.value(name).isEmpty();
    }
    if (!supported.contains(type) || paperSpace || meshPolyline || namelessInsert) {
        m_droppingFollowers = !follower;
        return true;
    }
    if (type == "LWPOLYLINE")
        return forwardLwPolyline(object);
    if (type == "MTEXT")
        return forwardMText(object);
    return forwardGeneric(object);
}

bool DxfLibFeed::forwardGeneric(const DxfGroupFile::Object& object)
{
    put(0, object.type);
    bool inBraces = false;
    for (int i = object.begin + 1; i < object.end; ++i) {
        const int code = m_file.code(i);
        if (code == 102) { // "{ACAD_REACTORS ... }" and similar owner lists
            inBraces = m_file.value(i).startsWith('{');
            continue;
        }
        if (inBraces || code == 5 || code == 100 || code == 330 || code == 360 || code == 999)
            continue;
        if (!copy(i))
            return false;
    }
    return true;
}

bool DxfLibFeed::forwardLwPolyline(const DxfGroupFile::Object& object)
{
    // dxflib sizes its vertex array from group 90; the count is taken from the vertices
    // actually present, never from the file.
    QList<int> xs;
    QList<int> ys;
    QList<int> bulges;
    for (int i = object.begin + 1; i < object.end; ++i) {
        switch (m_file.code(i)) {
        case 10:
            xs.append(i);
            ys.append(-1);
            bulges.append(-1);
            break;
        case 20:
            if (!ys.isEmpty())
                ys.last() = i;
            break;
        case 42:
            if (!bulges.isEmpty())
                bulges.last() = i;
            break;
        default:
            break;
        }
    }
    if (xs.isEmpty())
        return true;
    put(0, "LWPOLYLINE");
    for (int i = object.begin + 1; i < object.end; ++i) {
        const int code = m_file.code(i);
        if ((code == 8 || code == 70 || code == 38 || code == 210 || code == 220 || code == 230) &&
            !copy(i))
            return false;
    }
    put(90, QByteArray::number(xs.size()));
    for (qsizetype v = 0; v < xs.size(); ++v) {
        if (!copy(xs.at(v)))
            return false;
        if (ys.at(v) < 0)
            put(20, "0");
        else if (!copy(ys.at(v)))
            return false;
        if (bulges.at(v) >= 0 && !copy(bulges.at(v)))
            return false;
    }
    return true;
}

bool DxfLibFeed::forwardMText(const DxfGroupFile::Object& object)
{
    if (!forwardGeneric(object))
        return false;
    // Without an angle dxflib takes the direction vector through atan(y/x), which loses the
    // quadrant; the angle is given instead.
    const int direction = findGroup(object, 11);
    if (findGroup(object, 50) < 0 && direction >= 0) {
        const int y = findGroup(object, 21);
        const double angle =
            qRadiansToDegrees(std::atan2(y >= 0 ? m_file.real(y) : 0.0, m_file.real(direction)));
        put(50, QByteArray::number(angle, 'g', 17));
    }
    return true;
}

// Receives dxflib's callbacks and collects DxfContent.
class Collector final : public DL_CreationAdapter
{
public:
    explicit Collector(const DxfTextCodec& codec) : m_codec(codec) {}

    DxfContent takeContent()
    {
        finishPolyline();
        return std::move(m_content);
    }

    void setVariableString(const std::string& key, const std::string& value, int) override
    {
        if (key == "$CLAYER")
            m_content.currentLayer = text(value);
    }
    void setVariableVector(const std::string& key, double x, double y, double, int) override
    {
        if (key == "$INSBASE")
            m_content.insertionBase = QPointF(x, y);
    }

    void addLayer(const DL_LayerData& data) override
    {
        startRecord();
        DxfLayer layer;
        layer.name = text(data.name);
        layer.frozen = (data.flags & 1) != 0;
        layer.xdata = m_xdata;
        m_content.layers.append(layer);
    }

    void addBlock(const DL_BlockData& data) override
    {
        startRecord();
        const QString name = text(data.name);
        if (isModelSpaceBlock(name)) {
            m_target = -1;
            return;
        }
        DxfBlockContent block;
        block.name = name;
        block.basePoint = QPointF(data.bpx, data.bpy);
        block.xdata = m_xdata;
        m_content.blocks.append(block);
        m_target = int(m_content.blocks.size()) - 1;
    }

    void endBlock() override
    {
        startRecord();
        m_target = -1;
    }

    void addLine(const DL_LineData& data) override
    {
        startRecord();
        GeometryItem item;
        item.kind = GeometryItem::Kind::Line;
        item.points = {QPointF(data.x1, data.y1), QPointF(data.x2, data.y2)};
        target().geometry.append(item);
    }

    void addCircle(const DL_CircleData& data) override
    {
        startRecord();
        GeometryItem item;
        item.kind = GeometryItem::Kind::Circle;
        item.points = {ocsPoint(data.cx, data.cy)};
        item.radius = data.radius;
        target().geometry.append(item);
    }

    void addArc(const DL_ArcData& data) override
    {
        startRecord();
        GeometryItem item;
        item.kind = GeometryItem::Kind::Arc;
        item.points = {ocsPoint(data.cx, data.cy)};
        item.radius = data.radius;
        item.startAngle = mirrored() ? 180.0 - data.angle2 : data.angle1;
        item.endAngle = mirrored() ? 180.0 - data.angle1 : data.angle2;
        target().geometry.append(item);
    }

    void addPolyline(const DL_PolylineData& data) override
    {
        startRecord();
        m_polylineOpen = true;
        m_polylineClosed = (data.flags & 1) != 0;
        m_polylineMirrored = mirrored();
        m_vertices.clear();
        m_bulges.clear();
    }

    void addVertex(const DL_VertexData& data) override
    {
        if (!m_polylineOpen)
            return;
        m_vertices.append(QPointF(m_polylineMirrored ? -data.x : data.x, data.y));
        m_bulges.append(m_polylineMirrored ? -data.bulge : data.bulge);
    }

    void endEntity() override { finishPolyline(); }
    void endSequence() override
    {
        finishPolyline();
        m_lastInsert = -1;
    }

    void addText(const DL_TextData& data) override
    {
        startRecord();
        const double rotation = qRadiansToDegrees(data.angle);
        addTextItem(ocsPoint(data.ipx, data.ipy), text(data.text), data.height,
                    mirrored() ? 180.0 - rotation : rotation);
    }

    void addMTextChunk(const std::string& chunk) override { m_mtextChunks += chunk; }

    void addMText(const DL_MTextData& data) override
    {
        const std::string whole = m_mtextChunks + data.text;
        startRecord();
        const QString plain = plainMText(text(whole));
        const double rotation = qRadiansToDegrees(data.angle);
        // The insertion point (in world coordinates, unlike TEXT) is the attachment point;
        // texts here are placed by the left end of their first baseline.
        double drop = 0.0;
        if (data.attachmentPoint >= 1 && data.attachmentPoint <= 3)
            drop = data.height;
        else if (data.attachmentPoint >= 4 && data.attachmentPoint <= 6)
            drop = data.height / 2.0;
        const double angle = qDegreesToRadians(rotation);
        const QPointF at(data.ipx + drop * std::sin(angle), data.ipy - drop * std::cos(angle));
        addTextItem(at, plain, data.height, rotation);
    }

    void addInsert(const DL_InsertData& data) override
    {
        startRecord();
        DxfInsert insert;
        insert.blockName = text(data.name);
        insert.layer = text(attributes.getLayer());
        insert.x = mirrored() ? -data.ipx : data.ipx;
        insert.y = data.ipy;
        insert.z = data.ipz;
        insert.scaleX = mirrored() ? -data.sx : data.sx;
        insert.scaleY = data.sy;
        insert.rotation = mirrored() ? -data.angle : data.angle;
        insert.xdata = m_xdata;
        target().inserts.append(insert);
        m_lastInsert = int(target().inserts.size()) - 1;
        m_lastInsertTarget = m_target;
    }

    void addAttribute(const DL_AttributeData& data) override
    {
        finishPolyline();
        if (m_lastInsert < 0 || m_lastInsertTarget != m_target)
            return;
        DxfAttribute attribute;
        attribute.tag = text(data.tag);
        attribute.value = text(data.text);
        attribute.position = QPointF(data.ipx, data.ipy);
        attribute.height = data.height;
        attribute.rotation = qRadiansToDegrees(data.angle);
        target().inserts[m_lastInsert].attributes.append(attribute);
    }

    void addXDataApp(const std::string& appId) override
    {
        m_xdataApp = QByteArray::fromStdString(appId);
        m_xdata[m_xdataApp];
    }
    void addXDataString(int code, const std::string& value) override
    {
        DxfXDataItem item;
        item.code = code;
        item.text = QByteArray::fromStdString(value);
        m_xdata[m_xdataApp].append(item);
    }
    void addXDataInt(int code, int value) override
    {
        DxfXDataItem item;
        item.code = code;
        item.integer = value;
        m_xdata[m_xdataApp].append(item);
    }
    void addXDataReal(int code, double value) override
    {
        DxfXDataItem item;
        item.code = code;
        item.real = value;
        m_xdata[m_xdataApp].append(item);
    }

    // Called by dxflib after each record has been handed over.
    void endSection() override
    {
        m_xdata.clear();
        m_xdataApp.clear();
        m_mtextChunks.clear();
    }

private:
    QString text(const std::string& bytes) const
    {
        return m_codec.decode(QByteArray::fromStdString(bytes));
    }

    DxfBlockContent& target()
    {
        return m_target < 0 ? m_content.modelSpace : m_content.blocks[m_target];
    }

    // Entities drawn with their extrusion along -z (mirrored copies) have their object
    // coordinates' x axis reversed.
    bool mirrored() { return getExtrusion()->getDirection()[2] < 0.0; }
    QPointF ocsPoint(double x, double y) { return QPointF(mirrored() ? -x : x, y); }

    // Every record other than a vertex or attribute ends a polyline and an attribute run.
    void startRecord()
    {
        finishPolyline();
        m_lastInsert = -1;
    }

    void addTextItem(const QPointF& at, const QString& value, double height, double rotation)
    {
        GeometryItem item;
        item.kind = GeometryItem::Kind::Text;
        item.points = {at};
        item.text = value;
        item.height = height;
        item.rotation = rotation;
        target().geometry.append(item);
    }

    void finishPolyline()
    {
        if (!m_polylineOpen)
            return;
        m_polylineOpen = false;
        if (m_vertices.isEmpty())
            return;
        GeometryItem item;
        item.kind = GeometryItem::Kind::Polyline;
        item.closed = m_polylineClosed;
        item.points.append(m_vertices.first());
        for (qsizetype i = 0; i + 1 < m_vertices.size(); ++i)
            DxfGeometry::appendBulgeSegment(item.points, m_vertices.at(i), m_vertices.at(i + 1),
                                            m_bulges.at(i));
        if (m_polylineClosed && m_vertices.size() > 1 && std::abs(m_bulges.last()) > 1e-9) {
            DxfGeometry::appendBulgeSegment(item.points, m_vertices.last(), m_vertices.first(),
                                            m_bulges.last());
            item.points.removeLast(); // the start point again; `closed` joins it
        }
        target().geometry.append(item);
    }

    const DxfTextCodec& m_codec;
    DxfContent m_content;
    int m_target = -1; // index into m_content.blocks, -1 for model space
    int m_lastInsert = -1;
    int m_lastInsertTarget = -1;
    QMap<QByteArray, QList<DxfXDataItem>> m_xdata;
    QByteArray m_xdataApp;
    std::string m_mtextChunks;
    bool m_polylineOpen = false;
    bool m_polylineClosed = false;
    bool m_polylineMirrored = false;
    QList<QPointF> m_vertices;
    QList<double> m_bulges;
};

// ATTDEF records, which dxflib does not read.
bool addAttributeDefinitions(const DxfGroupFile& file, const DxfTextCodec& codec,
                             DxfContent& content, QString* error)
{
    for (const DxfGroupFile::Object& object : file.objects()) {
        if (object.type != "ATTDEF")
            continue;
        DxfBlockContent* target = nullptr;
        if (object.section == "ENTITIES" ||
            (object.section == "BLOCKS" && isModelSpaceBlock(QString::fromLatin1(object.block)))) {
            target = &content.modelSpace;
        } else if (object.section == "BLOCKS") {
            const QString name = codec.decode(object.block);
            for (DxfBlockContent& block : content.blocks) {
                if (block.name == name)
                    target = &block;
            }
        }
        if (!target)
            continue;
        AttributeDefinition definition;
        bool paperSpace = false;
        bool mirrored = false;
        for (int i = object.begin + 1; i < object.end; ++i) {
            const int code = file.code(i);
            if (isCoordinateCode(code) &&
                std::abs(file.real(i)) > DxfContentReader::MaxCoordinate) {
                *error = file.errorAt(i, QStringLiteral("the number %1 is out of range")
                                             .arg(QString::fromLatin1(file.value(i))));
                return false;
            }
            switch (code) {
            case 1:
                definition.defaultValue = codec.decode(file.value(i));
                break;
            case 2:
                definition.tag = codec.decode(file.value(i));
                break;
            case 3:
                definition.prompt = codec.decode(file.value(i));
                break;
            case 10:
                definition.position.setX(file.real(i));
                break;
            case 20:
                definition.position.setY(file.real(i));
                break;
            case 40:
                definition.height = file.real(i);
                break;
            case 50:
                definition.rotation = file.real(i);
                break;
            case 67:
                paperSpace = file.integer(i) == 1;
                break;
            case 70:
                definition.invisible = (file.integer(i) & 1) != 0;
                break;
            case 230:
                mirrored = file.real(i) < 0.0;
                break;
            default:
                break;
            }
        }
        if (mirrored) {
            definition.position.setX(-definition.position.x());
            definition.rotation = 180.0 - definition.rotation;
        }
        if (!paperSpace && !definition.tag.isEmpty())
            target->attributeDefinitions.append(definition);
    }
    return true;
}

} // namespace

DxfTextCodec DxfContentReader::codecOf(const DxfGroupFile& file)
{
    const int version = file.headerGroup("$ACADVER", 1);
    const int codePage = file.headerGroup("$DWGCODEPAGE", 3);
    return DxfTextCodec::forFile(version >= 0 ? file.value(version) : QByteArray(),
                                 codePage >= 0 ? file.value(codePage) : QByteArray());
}

std::optional<DxfContent> DxfContentReader::read(const DxfGroupFile& file, QString* error)
{
    DxfLibFeed feed(file);
    if (!feed.build()) {
        *error = feed.error();
        return std::nullopt;
    }
    const DxfTextCodec codec = codecOf(file);
    Collector collector(codec);
    try {
        std::istringstream stream(feed.text());
        DL_Dxf dxf;
        if (!dxf.in(stream, &collector)) {
            *error = file.error(QStringLiteral("dxflib could not read the file"));
            return std::nullopt;
        }
    } catch (const std::exception& e) {
        *error =
            file.error(QStringLiteral("dxflib failed: %1").arg(QString::fromLocal8Bit(e.what())));
        return std::nullopt;
    }
    DxfContent content = collector.takeContent();
    if (!addAttributeDefinitions(file, codec, content, error))
        return std::nullopt;
    return content;
}

} // namespace RefHost
