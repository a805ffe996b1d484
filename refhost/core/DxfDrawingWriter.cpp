#include "DxfDrawingWriter.h"

#include "Drawing.h"
#include "DxfConventions.h"
#include "DxfGeometry.h"
#include "DxfMemoryWriter.h"
#include "DxfTextCodec.h"

#include <dl_dxf.h>

#include <QSaveFile>
#include <QSet>
#include <QtMath>

#include <cmath>

namespace RefHost {

namespace {

namespace Names = DxfConventions;

// The longest value dxflib reads back on one line (see DxfContentReader).
constexpr int MaxValueBytes = 1000;
// Symbol table names and dictionary keys are limited to 255 characters.
constexpr int MaxNameBytes = 250;
const std::string TextStyle = "Standard";

std::string encoded(const QString& text)
{
    return DxfTextCodec::encode(text).toStdString();
}

DL_Attributes entityAttributes(const QString& layer)
{
    return DL_Attributes(encoded(layer), 256, -1, "BYLAYER", 1.0);
}

// Two names are equal ignoring case (QString::compare with Qt::CaseInsensitive) exactly when
// their case-folded forms are equal, so the folded form keys the hashes of names.
QString caseKey(const QString& name)
{
    return name.toCaseFolded();
}

bool isFinite(std::initializer_list<double> values)
{
    for (double value : values) {
        if (!std::isfinite(value))
            return false;
    }
    return true;
}

// A layer of the file: a page, or another layer that references or the current layer use.
struct LayerEntry
{
    QString name;
    bool frozen = false;
    bool page = false;
    int groupIndex = 0;
    int pageIndex = 0;
    QString groupName;
    QString title;
};

class Writer
{
public:
    explicit Writer(const Drawing& drawing) : m_drawing(drawing) {}

    QString check();
    QByteArray write();

private:
    QString checkText(const QString& text, int limit, const QString& what) const;
    QString checkGeometry(const BlockDefinition& block, const QString& name) const;
    void collectLayers();
    void writeHeader();
    void writeTables();
    void writeBlocks();
    void writeBlock(const QString& name, const BlockDefinition* block);
    void writeGeometry(const GeometryItem& item);
    void writeAttributeDefinition(const AttributeDefinition& definition);
    void writeEntities();
    void writeReference(const BlockReference& reference);
    void writeObjects();
    void writeVariables(unsigned long handle, unsigned long owner);
    void writeLispVariables(unsigned long handle, unsigned long owner);
    QList<unsigned long> writeDictionary(unsigned long handle, unsigned long owner,
                                         const QStringList& keys);
    void startRecord(unsigned long handle, unsigned long owner);
    void writeXDataString(const QString& text);
    void writeRecordString(const QString& text);
    const BlockDefinition* findBlock(const QString& name) const;

    const Drawing& m_drawing;
    DL_Dxf m_dxf;
    DxfMemoryWriter m_out;
    QList<LayerEntry> m_layers;
    // Names that references use without a definition in the drawing.
    QStringList m_placeholders;
};

QString Writer::checkText(const QString& text, int limit, const QString& what) const
{
    if (DxfTextCodec::encode(text).size() > limit)
        return QStringLiteral("%1 is longer than %2 bytes once encoded").arg(what).arg(limit);
    return QString();
}

QString Writer::checkGeometry(const BlockDefinition& block, const QString& name) const
{
    for (const GeometryItem& item : block.geometry) {
        for (const QPointF& point : item.points) {
            if (!isFinite({point.x(), point.y()}))
                return QStringLiteral("block \"%1\" has a point that is not a finite number")
                    .arg(name);
        }
        if (!isFinite({item.radius, item.startAngle, item.endAngle, item.height, item.rotation}))
            return QStringLiteral("block \"%1\" has a size or angle that is not a finite number")
                .arg(name);
        if (item.kind == GeometryItem::Kind::Text) {
            const QString error = checkText(item.text, MaxValueBytes,
                                            QStringLiteral("a text of block \"%1\"").arg(name));
            if (!error.isEmpty())
                return error;
        }
    }
    for (const AttributeDefinition& definition : block.attributes) {
        if (!isFinite({definition.position.x(), definition.position.y(), definition.height,
                       definition.rotation}))
            return QStringLiteral(
                       "attribute \"%1\" of block \"%2\" has a number that is not finite")
                .arg(definition.tag, name);
        for (const QString& text : {definition.tag, definition.prompt, definition.defaultValue}) {
            const QString error = checkText(
                text, MaxValueBytes,
                QStringLiteral("attribute \"%1\" of block \"%2\"").arg(definition.tag, name));
            if (!error.isEmpty())
                return error;
        }
    }
    if (!isFinite({block.basePoint.x(), block.basePoint.y()}))
        return QStringLiteral("block \"%1\" has a base point that is not finite").arg(name);
    return QString();
}

QString Writer::check()
{
    QStringList seenBlocks;
    for (auto it = m_drawing.blocks().cbegin(); it != m_drawing.blocks().cend(); ++it) {
        const QString& name = it.key();
        if (name.isEmpty() || name.startsWith(QLatin1Char('*')))
            return QStringLiteral("the block name \"%1\" cannot be written").arg(name);
        if (seenBlocks.contains(name, Qt::CaseInsensitive))
            return QStringLiteral(
                       "the block names \"%1\" differ only in case, which DXF does not allow")
                .arg(name);
        seenBlocks.append(name);
        QString error =
            checkText(name, MaxNameBytes, QStringLiteral("the block name \"%1\"").arg(name));
        if (error.isEmpty())
            error = checkGeometry(it.value(), name);
        if (!error.isEmpty())
            return error;
    }

    QSet<QString> seenPages;
    for (const PageGroup& group : m_drawing.groups()) {
        const QString groupError =
            checkText(group.name, 4 * MaxValueBytes, QStringLiteral("the page group name"));
        if (!groupError.isEmpty())
            return groupError;
        for (const Page& page : group.pages) {
            if (page.layer.isEmpty())
                return QStringLiteral("a page of group \"%1\" has no layer name").arg(group.name);
            const QString key = caseKey(page.layer);
            if (seenPages.contains(key))
                return QStringLiteral("the page layer \"%1\" appears twice").arg(page.layer);
            seenPages.insert(key);
            QString error = checkText(page.layer, MaxNameBytes,
                                      QStringLiteral("the layer name \"%1\"").arg(page.layer));
            if (error.isEmpty())
                error = checkText(page.title, 4 * MaxValueBytes,
                                  QStringLiteral("the title of page \"%1\"").arg(page.layer));
            if (!error.isEmpty())
                return error;
        }
    }
    QString error =
        checkText(m_drawing.currentLayer(), MaxNameBytes, QStringLiteral("the current layer name"));
    if (!error.isEmpty())
        return error;

    int number = 0;
    for (const BlockReference& reference : m_drawing.references()) {
        ++number;
        const QString what =
            QStringLiteral("reference %1 (block \"%2\")").arg(number).arg(reference.blockName);
        if (reference.blockName.isEmpty() || reference.blockName.startsWith(QLatin1Char('*')))
            return QStringLiteral("%1 has no usable block name").arg(what);
        if (reference.layer.isEmpty())
            return QStringLiteral("%1 has no layer").arg(what);
        if (!isFinite({reference.x, reference.y, reference.z, reference.rotationDegrees}))
            return QStringLiteral("%1 has a position or rotation that is not a finite number")
                .arg(what);
        error = checkText(reference.blockName, MaxNameBytes, what);
        if (error.isEmpty())
            error = checkText(reference.layer, MaxNameBytes,
                              QStringLiteral("the layer of %1").arg(what));
        for (const AttributeValue& attribute : reference.attributes) {
            if (error.isEmpty())
                error = checkText(attribute.tag, MaxValueBytes,
                                  QStringLiteral("an attribute tag of %1").arg(what));
            if (error.isEmpty())
                error =
                    checkText(attribute.value, MaxValueBytes,
                              QStringLiteral("attribute \"%1\" of %2").arg(attribute.tag, what));
        }
        if (!error.isEmpty())
            return error;
        if (!findBlock(reference.blockName) &&
            !m_placeholders.contains(reference.blockName, Qt::CaseInsensitive))
            m_placeholders.append(reference.blockName);
    }

    for (auto it = m_drawing.variables().cbegin(); it != m_drawing.variables().cend(); ++it) {
        if (it.key().isEmpty())
            return QStringLiteral("a drawing variable has no name");
        error = checkText(it.key(), MaxNameBytes,
                          QStringLiteral("the variable name \"%1\"").arg(it.key()));
        if (!error.isEmpty())
            return error;
    }
    for (auto it = m_drawing.lispVariables().cbegin(); it != m_drawing.lispVariables().cend();
         ++it) {
        if (it.key().isEmpty())
            return QStringLiteral("a drawing-language variable has no name");
        error = checkText(it.key(), MaxNameBytes,
                          QStringLiteral("the variable name \"%1\"").arg(it.key()));
        if (!error.isEmpty())
            return error;
        for (const LispItem& item : it.value()) {
            if (!isFinite({item.real, item.point.x, item.point.y, item.point.z}))
                return QStringLiteral("the variable \"%1\" holds a number that is not finite")
                    .arg(it.key());
        }
    }
    collectLayers();
    return QString();
}

const BlockDefinition* Writer::findBlock(const QString& name) const
{
    const auto exact = m_drawing.blocks().constFind(name);
    if (exact != m_drawing.blocks().cend())
        return &exact.value();
    for (auto it = m_drawing.blocks().cbegin(); it != m_drawing.blocks().cend(); ++it) {
        if (it.key().compare(name, Qt::CaseInsensitive) == 0)
            return &it.value();
    }
    return nullptr;
}

void Writer::collectLayers()
{
    QSet<QString> known;
    for (int g = 0; g < m_drawing.groups().size(); ++g) {
        const PageGroup& group = m_drawing.groups().at(g);
        for (int p = 0; p < group.pages.size(); ++p) {
            const Page& page = group.pages.at(p);
            m_layers.append(
                LayerEntry{page.layer, page.frozen, true, g, p, group.name, page.title});
            known.insert(caseKey(page.layer));
        }
    }
    // Layer "0" exists in every DXF drawing; it goes first, as CAD programs expect.
    const QString zero = QStringLiteral("0");
    if (!known.contains(zero)) {
        m_layers.prepend(LayerEntry{zero, false, false, 0, 0, {}, {}});
        known.insert(zero);
    }
    const auto addLayer = [this, &known](const QString& name) {
        QString key = caseKey(name);
        if (known.contains(key))
            return;
        m_layers.append(LayerEntry{name, false, false, 0, 0, {}, {}});
        known.insert(std::move(key));
    };
    if (!m_drawing.currentLayer().isEmpty())
        addLayer(m_drawing.currentLayer());
    for (const BlockReference& reference : m_drawing.references())
        addLayer(reference.layer);
}

QByteArray Writer::write()
{
    writeHeader();
    writeTables();
    writeBlocks();
    writeEntities();
    writeObjects();
    m_out.dxfEOF();

    // dxflib writes a fixed handle seed; the real one is known only now.
    QByteArray& text = m_out.text();
    const QByteArray seed = QByteArrayLiteral("$HANDSEED\n  5\nFFFF\n");
    const qsizetype at = text.indexOf(seed);
    if (at >= 0) {
        text.replace(at, seed.size(),
                     QByteArrayLiteral("$HANDSEED\n  5\n") +
                         QByteArray::number(qulonglong(m_out.getNextHandle()), 16).toUpper() +
                         '\n');
    }
    return text;
}

void Writer::writeHeader()
{
    m_dxf.writeHeader(m_out);
    m_out.dxfString(9, "$DWGCODEPAGE");
    m_out.dxfString(3, "ANSI_1252");
    m_out.dxfString(9, "$INSBASE");
    m_out.coord(10, 0.0, 0.0, 0.0);
    if (!m_drawing.currentLayer().isEmpty()) {
        m_out.dxfString(9, "$CLAYER");
        m_out.dxfString(8, encoded(m_drawing.currentLayer()));
    }
    m_out.sectionEnd();
}

void Writer::writeXDataString(const QString& text)
{
    const QByteArrayList pieces = DxfTextCodec::encodeChunks(text, Names::PieceBytes);
    m_out.dxfInt(1071, int(pieces.size()));
    for (const QByteArray& piece : pieces)
        m_out.dxfString(1000, piece.toStdString());
}

void Writer::writeRecordString(const QString& text)
{
    const QByteArrayList pieces = DxfTextCodec::encodeChunks(text, Names::PieceBytes);
    m_out.dxfInt(91, int(pieces.size()));
    for (const QByteArray& piece : pieces)
        m_out.dxfString(1, piece.toStdString());
}

void Writer::writeTables()
{
    m_out.sectionTables();
    m_dxf.writeVPort(m_out);

    m_out.tableLinetypes(3);
    m_dxf.writeLinetype(m_out, DL_LinetypeData("BYBLOCK", "", 0, 0, 0.0));
    m_dxf.writeLinetype(m_out, DL_LinetypeData("BYLAYER", "", 0, 0, 0.0));
    m_dxf.writeLinetype(m_out, DL_LinetypeData("CONTINUOUS", "Solid line", 0, 0, 0.0));
    m_out.tableEnd();

    m_out.tableLayers(int(m_layers.size()));
    for (const LayerEntry& layer : std::as_const(m_layers)) {
        m_dxf.writeLayer(m_out, DL_LayerData(encoded(layer.name), layer.frozen ? 1 : 0),
                         DL_Attributes(std::string(), 7, 100, "CONTINUOUS", 1.0));
        if (!layer.page)
            continue;
        m_out.dxfString(1001, Names::PageApp);
        m_out.dxfInt(1070, Names::Format);
        m_out.dxfInt(1071, layer.groupIndex);
        m_out.dxfInt(1071, layer.pageIndex);
        writeXDataString(layer.groupName);
        writeXDataString(layer.title);
    }
    m_out.tableEnd();

    m_out.tableStyle(1);
    m_dxf.writeStyle(m_out, DL_StyleData(TextStyle, 0, 0.0, 1.0, 0.0, 0, 2.5, "txt", ""));
    m_out.tableEnd();

    m_dxf.writeView(m_out);
    m_dxf.writeUcs(m_out);

    m_out.tableAppid(4);
    m_dxf.writeAppid(m_out, "ACAD");
    m_dxf.writeAppid(m_out, Names::PageApp);
    m_dxf.writeAppid(m_out, Names::ReferenceApp);
    m_dxf.writeAppid(m_out, Names::PlaceholderApp);
    m_out.tableEnd();

    m_dxf.writeDimStyle(m_out, 2.5, 0.625, 0.625, 0.625, 2.5);

    m_dxf.writeBlockRecord(m_out);
    for (auto it = m_drawing.blocks().cbegin(); it != m_drawing.blocks().cend(); ++it)
        m_dxf.writeBlockRecord(m_out, encoded(it.key()));
    for (const QString& name : std::as_const(m_placeholders))
        m_dxf.writeBlockRecord(m_out, encoded(name));
    m_out.tableEnd();
    m_out.sectionEnd();
}

void Writer::writeBlocks()
{
    m_out.sectionBlocks();
    for (const char* space : {"*Model_Space", "*Paper_Space", "*Paper_Space0"}) {
        m_dxf.writeBlock(m_out, DL_BlockData(space, 0, 0.0, 0.0, 0.0));
        m_dxf.writeEndBlock(m_out, space);
    }
    for (auto it = m_drawing.blocks().cbegin(); it != m_drawing.blocks().cend(); ++it)
        writeBlock(it.key(), &it.value());
    for (const QString& name : std::as_const(m_placeholders))
        writeBlock(name, nullptr);
    m_out.sectionEnd();
}

void Writer::writeBlock(const QString& name, const BlockDefinition* block)
{
    const std::string blockName = encoded(name);
    // Flag 2: the block has attribute definitions.
    const int flags = block && !block->attributes.isEmpty() ? 2 : 0;
    const QPointF base = block ? block->basePoint : QPointF();
    m_dxf.writeBlock(m_out, DL_BlockData(blockName, flags, base.x(), base.y(), 0.0));
    if (!block) {
        m_out.dxfString(1001, Names::PlaceholderApp);
        m_out.dxfInt(1070, Names::Format);
    } else {
        for (const GeometryItem& item : block->geometry)
            writeGeometry(item);
        for (const AttributeDefinition& definition : block->attributes)
            writeAttributeDefinition(definition);
    }
    m_dxf.writeEndBlock(m_out, blockName);
}

void Writer::writeGeometry(const GeometryItem& item)
{
    const DL_Attributes attributes = entityAttributes(QStringLiteral("0"));
    const QList<QPointF>& p = item.points;
    switch (item.kind) {
    case GeometryItem::Kind::Line:
        if (p.size() >= 2)
            m_dxf.writeLine(m_out, DL_LineData(p[0].x(), p[0].y(), 0.0, p[1].x(), p[1].y(), 0.0),
                            attributes);
        break;
    case GeometryItem::Kind::Circle:
        if (!p.isEmpty())
            m_dxf.writeCircle(m_out, DL_CircleData(p[0].x(), p[0].y(), 0.0, item.radius),
                              attributes);
        break;
    case GeometryItem::Kind::Arc:
        if (!p.isEmpty()) {
            m_dxf.writeArc(
                m_out,
                DL_ArcData(p[0].x(), p[0].y(), 0.0, item.radius, item.startAngle, item.endAngle),
                attributes);
        }
        break;
    case GeometryItem::Kind::Polyline:
        if (p.isEmpty())
            break;
        m_dxf.writePolyline(m_out, DL_PolylineData(int(p.size()), 0, 0, item.closed ? 1 : 0),
                            attributes);
        for (const QPointF& point : p)
            m_dxf.writeVertex(m_out, DL_VertexData(point.x(), point.y(), 0.0, 0.0));
        m_dxf.writePolylineEnd(m_out);
        break;
    case GeometryItem::Kind::Text:
        if (!p.isEmpty()) {
            m_dxf.writeText(m_out,
                            DL_TextData(p[0].x(), p[0].y(), 0.0, p[0].x(), p[0].y(), 0.0,
                                        item.height, 1.0, 0, 0, 0, encoded(item.text), TextStyle,
                                        qDegreesToRadians(item.rotation)),
                            attributes);
        }
        break;
    }
}

void Writer::writeAttributeDefinition(const AttributeDefinition& definition)
{
    // dxflib has no ATTDEF writer; the groups follow the DXF reference for AutoCAD 2000.
    m_out.entity("ATTDEF");
    m_out.subClass("AcDbEntity");
    m_out.dxfString(8, "0");
    m_out.subClass("AcDbText");
    m_out.coord(10, definition.position.x(), definition.position.y(), 0.0);
    m_out.dxfReal(40, definition.height);
    m_out.dxfString(1, encoded(definition.defaultValue));
    m_out.dxfReal(50, definition.rotation);
    m_out.dxfString(7, TextStyle);
    m_out.subClass("AcDbAttributeDefinition");
    m_out.dxfString(3, encoded(definition.prompt));
    m_out.dxfString(2, encoded(definition.tag));
    m_out.dxfInt(70, definition.invisible ? 1 : 0);
}

void Writer::writeEntities()
{
    m_out.sectionEntities();
    for (const BlockReference& reference : m_drawing.references())
        writeReference(reference);
    m_out.sectionEnd();
}

void Writer::writeReference(const BlockReference& reference)
{
    const DL_Attributes attributes = entityAttributes(reference.layer);
    m_dxf.writeInsert(m_out,
                      DL_InsertData(encoded(reference.blockName), reference.x, reference.y,
                                    reference.z, 1.0, 1.0, 1.0, reference.rotationDegrees, 1, 1,
                                    0.0, 0.0),
                      attributes);
    if (!reference.attributes.isEmpty())
        m_out.dxfInt(66, 1); // attributes follow
    if (!reference.componentKey.isEmpty() || !reference.associated.isEmpty()) {
        m_out.dxfString(1001, Names::ReferenceApp);
        m_out.dxfInt(1070, Names::Format);
        writeXDataString(reference.componentKey);
        m_out.dxfInt(1071, int(reference.associated.size()));
        for (const QString& text : reference.associated)
            writeXDataString(text);
    }
    if (reference.attributes.isEmpty())
        return;

    // Each ATTRIB sits where its ATTDEF puts it, so that CAD programs show the value in place.
    const BlockDefinition* block = findBlock(reference.blockName);
    const QTransform placement = DxfGeometry::placement(block ? block->basePoint : QPointF(),
                                                        QPointF(reference.x, reference.y), 1.0, 1.0,
                                                        reference.rotationDegrees);
    for (const AttributeValue& attribute : reference.attributes) {
        const AttributeDefinition* definition = nullptr;
        if (block) {
            for (const AttributeDefinition& candidate : block->attributes) {
                if (candidate.tag.compare(attribute.tag, Qt::CaseInsensitive) == 0) {
                    definition = &candidate;
                    break;
                }
            }
        }
        const QPointF at =
            definition ? placement.map(definition->position) : QPointF(reference.x, reference.y);
        const double height = definition ? definition->height : 2.5;
        const double rotation =
            reference.rotationDegrees + (definition ? definition->rotation : 0.0);
        m_dxf.writeAttribute(m_out,
                             DL_AttributeData(at.x(), at.y(), reference.z, at.x(), at.y(),
                                              reference.z, height, 1.0, 0, 0, 0,
                                              encoded(attribute.tag), encoded(attribute.value),
                                              TextStyle, qDegreesToRadians(rotation)),
                             attributes);
        m_out.dxfInt(70, definition && definition->invisible ? 1 : 0);
    }
    m_out.entity("SEQEND");
    m_out.subClass("AcDbEntity");
    m_out.dxfString(8, encoded(reference.layer));
}

void Writer::writeObjects()
{
    m_dxf.writeObjects(m_out, Names::AppDictionary);
    m_dxf.writeAppDictionary(m_out);
    const unsigned long appDictionary = static_cast<unsigned long>(m_out.lastHandle());
    const unsigned long variables = m_dxf.writeDictionaryEntry(m_out, Names::VariablesDictionary);
    const unsigned long lispVariables =
        m_dxf.writeDictionaryEntry(m_out, Names::LispVariablesDictionary);
    writeVariables(variables, appDictionary);
    writeLispVariables(lispVariables, appDictionary);
    m_dxf.writeObjectsEnd(m_out);
}

QList<unsigned long> Writer::writeDictionary(unsigned long handle, unsigned long owner,
                                             const QStringList& keys)
{
    m_out.dxfString(0, "DICTIONARY");
    m_out.dxfHex(5, int(handle));
    m_out.dxfHex(330, int(owner));
    m_out.subClass("AcDbDictionary");
    m_out.dxfInt(281, 1);
    QList<unsigned long> handles;
    for (const QString& key : keys) {
        m_out.dxfString(3, encoded(key));
        handles.append(m_out.handle(350));
    }
    return handles;
}

void Writer::startRecord(unsigned long handle, unsigned long owner)
{
    m_out.dxfString(0, "XRECORD");
    m_out.dxfHex(5, int(handle));
    m_out.dxfHex(330, int(owner));
    m_out.subClass("AcDbXrecord");
    m_out.dxfInt(280, 1);
}

void Writer::writeVariables(unsigned long handle, unsigned long owner)
{
    const QMap<QString, DrawingVariable>& variables = m_drawing.variables();
    const QList<unsigned long> handles = writeDictionary(handle, owner, variables.keys());
    int index = 0;
    for (auto it = variables.cbegin(); it != variables.cend(); ++it, ++index) {
        const DrawingVariable& variable = it.value();
        startRecord(handles.at(index), handle);
        int kind = 0;
        QStringList texts{variable.text};
        if (variable.kind == DrawingVariable::Kind::Boolean) {
            kind = 1;
            texts.clear();
        } else if (variable.kind == DrawingVariable::Kind::TextList) {
            kind = 2;
            texts = variable.list;
        }
        m_out.dxfInt(70, kind);
        m_out.dxfInt(290, variable.boolean ? 1 : 0);
        m_out.dxfInt(90, int(texts.size()));
        for (const QString& text : std::as_const(texts))
            writeRecordString(text);
    }
}

void Writer::writeLispVariables(unsigned long handle, unsigned long owner)
{
    const QMap<QString, LispChain>& variables = m_drawing.lispVariables();
    const QList<unsigned long> handles = writeDictionary(handle, owner, variables.keys());
    int index = 0;
    for (auto it = variables.cbegin(); it != variables.cend(); ++it, ++index) {
        startRecord(handles.at(index), handle);
        m_out.dxfInt(90, int(it.value().size()));
        for (const LispItem& item : it.value()) {
            m_out.dxfInt(70, Names::lispKindCode(item.kind));
            switch (item.kind) {
            case LispItem::Kind::Text:
                writeRecordString(item.text);
                break;
            case LispItem::Kind::Integer:
                m_out.dxfString(160, std::to_string(item.integer));
                break;
            case LispItem::Kind::Real:
                m_out.dxfReal(40, item.real);
                break;
            case LispItem::Kind::Point:
                m_out.coord(10, item.point.x, item.point.y, item.point.z);
                break;
            case LispItem::Kind::ListBegin:
            case LispItem::Kind::ListEnd:
            case LispItem::Kind::DottedPair:
                break;
            }
        }
    }
}

} // namespace

QByteArray DxfDrawingWriter::toDxf(const Drawing& drawing, QString* error)
{
    Writer writer(drawing);
    const QString problem = writer.check();
    if (!problem.isEmpty()) {
        if (error)
            *error = problem;
        return QByteArray();
    }
    return writer.write();
}

QString DxfDrawingWriter::write(const Drawing& drawing, const QString& path)
{
    QString problem;
    const QByteArray text = toDxf(drawing, &problem);
    if (!problem.isEmpty())
        return QStringLiteral("%1: cannot write the drawing: %2").arg(path, problem);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return QStringLiteral("%1: cannot write the drawing: %2").arg(path, file.errorString());
    if (file.write(text) != text.size() || !file.commit())
        return QStringLiteral("%1: cannot write the drawing: %2").arg(path, file.errorString());
    return QString();
}

} // namespace RefHost
