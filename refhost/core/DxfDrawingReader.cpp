#include "DxfDrawingReader.h"

#include "DxfBlockExpander.h"
#include "DxfContentReader.h"
#include "DxfConventions.h"
#include "DxfGroupFile.h"

#include <QHash>

#include <algorithm>

namespace RefHost {

namespace {

namespace Names = DxfConventions;

// Reads the extended data of one application group by group.
class XDataCursor
{
public:
    XDataCursor(const QList<DxfXDataItem>& items, const DxfTextCodec& codec)
        : m_items(items), m_codec(codec)
    {}

    std::optional<qint64> integer(int code)
    {
        if (m_next >= m_items.size() || m_items.at(m_next).code != code)
            return std::nullopt;
        return m_items.at(m_next++).integer;
    }

    // 1071 piece count, then the pieces as 1000 groups.
    std::optional<QString> string()
    {
        const std::optional<qint64> count = integer(1071);
        if (!count || *count < 0 || *count > m_items.size() - m_next)
            return std::nullopt;
        QByteArray bytes;
        for (qint64 i = 0; i < *count; ++i) {
            if (m_items.at(m_next).code != 1000)
                return std::nullopt;
            bytes += m_items.at(m_next++).text;
        }
        return m_codec.decode(bytes);
    }

private:
    const QList<DxfXDataItem>& m_items;
    const DxfTextCodec& m_codec;
    qsizetype m_next = 0;
};

// Reads the values of an XRECORD group by group, from the one after its 280 group.
class RecordCursor
{
public:
    RecordCursor(const DxfGroupFile& file, const DxfGroupFile::Object& object,
                 const DxfTextCodec& codec)
        : m_file(file), m_end(object.end), m_codec(codec)
    {
        m_next = object.end;
        for (int i = object.begin + 1; i < object.end; ++i) {
            if (file.code(i) == 280) {
                m_next = i + 1;
                break;
            }
        }
    }

    std::optional<qint64> integer(int code)
    {
        if (m_next >= m_end || m_file.code(m_next) != code)
            return std::nullopt;
        return m_file.integer(m_next++);
    }

    std::optional<double> real(int code)
    {
        if (m_next >= m_end || m_file.code(m_next) != code)
            return std::nullopt;
        return m_file.real(m_next++);
    }

    // 91 piece count, then the pieces as 1 groups.
    std::optional<QString> string()
    {
        const std::optional<qint64> count = integer(91);
        if (!count || *count < 0 || *count > m_end - m_next)
            return std::nullopt;
        QByteArray bytes;
        for (qint64 i = 0; i < *count; ++i) {
            if (m_file.code(m_next) != 1)
                return std::nullopt;
            bytes += m_file.value(m_next++);
        }
        return m_codec.decode(bytes);
    }

    int remaining() const { return m_end - m_next; }

private:
    const DxfGroupFile& m_file;
    int m_end = 0;
    int m_next = 0;
    const DxfTextCodec& m_codec;
};

struct PageRecord
{
    qint64 groupIndex = 0;
    qint64 pageIndex = 0;
    QString groupName;
    Page page;
};

// The page number N of a layer named GROUP$N, or 0.
int pageNumberOf(const QString& layer)
{
    const qsizetype dollar = layer.indexOf(QLatin1Char('$'));
    bool ok = false;
    const int number = dollar < 0 ? 0 : layer.mid(dollar + 1).toInt(&ok);
    return ok && number > 0 ? number : 0;
}

class Reader
{
public:
    Reader(const DxfGroupFile& file, const DxfContent& content)
        : m_file(file), m_content(content), m_codec(DxfContentReader::codecOf(file))
    {}

    std::optional<Drawing> read(QString* error);

private:
    bool readPages(Drawing& drawing);
    bool readBlocks(Drawing& drawing);
    bool readReferences(Drawing& drawing);
    bool readObjects(Drawing& drawing);
    bool readVariable(const QString& name, const DxfGroupFile::Object& record, Drawing& drawing);
    bool readLispVariable(const QString& name, const DxfGroupFile::Object& record,
                          Drawing& drawing);
    QList<std::pair<QString, QByteArray>> entries(const DxfGroupFile::Object& dictionary) const;
    const DxfGroupFile::Object* object(const QByteArray& handle) const;
    const DxfGroupFile::Object* entry(const DxfGroupFile::Object* dictionary,
                                      const QString& name) const;

    const DxfGroupFile& m_file;
    const DxfContent& m_content;
    DxfTextCodec m_codec;
    QHash<QByteArray, int> m_handles; // OBJECTS handle -> index into m_file.objects()
    QString m_error;
};

std::optional<Drawing> Reader::read(QString* error)
{
    Drawing drawing;
    if (!readPages(drawing) || !readBlocks(drawing) || !readReferences(drawing) ||
        !readObjects(drawing)) {
        *error = m_error;
        return std::nullopt;
    }
    return drawing;
}

bool Reader::readPages(Drawing& drawing)
{
    QList<PageRecord> records;
    bool recorded = false;
    for (const DxfLayer& layer : m_content.layers) {
        const auto xdata = layer.xdata.constFind(Names::PageApp);
        if (xdata == layer.xdata.cend())
            continue;
        recorded = true;
        XDataCursor cursor(xdata.value(), m_codec);
        PageRecord record;
        const std::optional<qint64> format = cursor.integer(1070);
        const std::optional<qint64> groupIndex = cursor.integer(1071);
        const std::optional<qint64> pageIndex = cursor.integer(1071);
        const std::optional<QString> groupName = cursor.string();
        const std::optional<QString> title = cursor.string();
        if (!format || *format != Names::Format || !groupIndex || !pageIndex || !groupName ||
            !title) {
            m_error = m_file.error(
                QStringLiteral("the page record of layer \"%1\" is damaged").arg(layer.name));
            return false;
        }
        record.groupIndex = *groupIndex;
        record.pageIndex = *pageIndex;
        record.groupName = *groupName;
        record.page = Page{*title, layer.name, layer.frozen};
        records.append(record);
    }
    if (!recorded) {
        // A drawing from elsewhere: layers named GROUP$N are the pages, grouped by name in
        // the order the groups first appear, numbered by N.
        QStringList groupOrder;
        for (const DxfLayer& layer : m_content.layers) {
            const int number = pageNumberOf(layer.name);
            if (number == 0)
                continue;
            const QString group = Drawing::groupNameOf(layer.name);
            if (!groupOrder.contains(group, Qt::CaseInsensitive))
                groupOrder.append(group);
            qsizetype groupIndex = 0;
            while (groupOrder.at(groupIndex).compare(group, Qt::CaseInsensitive) != 0)
                ++groupIndex;
            records.append(PageRecord{groupIndex, number, groupOrder.at(groupIndex),
                                      Page{QString(), layer.name, layer.frozen}});
        }
    }
    std::stable_sort(records.begin(), records.end(), [](const PageRecord& a, const PageRecord& b) {
        return a.groupIndex != b.groupIndex ? a.groupIndex < b.groupIndex
                                            : a.pageIndex < b.pageIndex;
    });
    qint64 currentGroup = -1;
    for (const PageRecord& record : std::as_const(records)) {
        if (drawing.groups().isEmpty() || record.groupIndex != currentGroup) {
            drawing.groups().append(PageGroup{record.groupName, {}});
            currentGroup = record.groupIndex;
        }
        drawing.groups().last().pages.append(record.page);
    }
    return true;
}

bool Reader::readBlocks(Drawing& drawing)
{
    DxfBlockExpander expander(m_content, m_file);
    for (const DxfBlockContent& content : m_content.blocks) {
        if (content.xdata.contains(Names::PlaceholderApp))
            continue;
        BlockDefinition block;
        block.name = content.name;
        block.basePoint = content.basePoint;
        block.geometry = content.geometry;
        block.attributes = content.attributeDefinitions;
        if (!expander.expand(content.inserts, QTransform(), block.geometry)) {
            m_error = expander.error();
            return false;
        }
        drawing.blocks().insert(block.name, block);
    }
    return true;
}

bool Reader::readReferences(Drawing& drawing)
{
    for (const DxfInsert& insert : m_content.modelSpace.inserts) {
        BlockReference reference;
        reference.blockName = insert.blockName;
        reference.layer = insert.layer;
        reference.x = insert.x;
        reference.y = insert.y;
        reference.z = insert.z;
        reference.rotationDegrees = insert.rotation;
        for (const DxfAttribute& attribute : insert.attributes)
            reference.attributes.append(AttributeValue{attribute.tag, attribute.value});
        const auto xdata = insert.xdata.constFind(Names::ReferenceApp);
        if (xdata != insert.xdata.cend()) {
            XDataCursor cursor(xdata.value(), m_codec);
            const std::optional<qint64> format = cursor.integer(1070);
            const std::optional<QString> key = cursor.string();
            const std::optional<qint64> count = cursor.integer(1071);
            bool ok = format && *format == Names::Format && key && count && *count >= 0;
            for (qint64 i = 0; ok && i < *count; ++i) {
                const std::optional<QString> text = cursor.string();
                ok = text.has_value();
                if (ok)
                    reference.associated.append(*text);
            }
            if (!ok) {
                m_error = m_file.error(QStringLiteral("the component record of reference %1 (block "
                                                      "\"%2\") is damaged")
                                           .arg(drawing.references().size() + 1)
                                           .arg(insert.blockName));
                return false;
            }
            reference.componentKey = *key;
        }
        drawing.references().append(reference);
    }
    if (!m_content.currentLayer.isEmpty()) {
        // Making a layer current thaws it and freezes the other pages; the file's own states win.
        QList<bool> frozen;
        for (const PageGroup& group : drawing.groups()) {
            for (const Page& page : group.pages)
                frozen.append(page.frozen);
        }
        drawing.setCurrentLayer(m_content.currentLayer);
        qsizetype index = 0;
        for (PageGroup& group : drawing.groups()) {
            for (Page& page : group.pages)
                page.frozen = frozen.at(index++);
        }
    }
    return true;
}

const DxfGroupFile::Object* Reader::object(const QByteArray& handle) const
{
    const int index = m_handles.value(handle.toUpper(), -1);
    return index < 0 ? nullptr : &m_file.objects().at(index);
}

QList<std::pair<QString, QByteArray>> Reader::entries(const DxfGroupFile::Object& dictionary) const
{
    QList<std::pair<QString, QByteArray>> result;
    QString name;
    for (int i = dictionary.begin + 1; i < dictionary.end; ++i) {
        if (m_file.code(i) == 3)
            name = m_codec.decode(m_file.value(i));
        else if ((m_file.code(i) == 350 || m_file.code(i) == 360) && !name.isNull())
            result.append({name, m_file.value(i)});
    }
    return result;
}

const DxfGroupFile::Object* Reader::entry(const DxfGroupFile::Object* dictionary,
                                          const QString& name) const
{
    if (!dictionary)
        return nullptr;
    for (const auto& [key, handle] : entries(*dictionary)) {
        if (key == name)
            return object(handle);
    }
    return nullptr;
}

bool Reader::readObjects(Drawing& drawing)
{
    const DxfGroupFile::Object* root = nullptr;
    const QList<DxfGroupFile::Object>& objects = m_file.objects();
    for (int index = 0; index < objects.size(); ++index) {
        const DxfGroupFile::Object& candidate = objects.at(index);
        if (candidate.section != "OBJECTS")
            continue;
        if (!root && candidate.type == "DICTIONARY")
            root = &candidate;
        for (int i = candidate.begin + 1; i < candidate.end; ++i) {
            if (m_file.code(i) == 5) {
                m_handles.insert(m_file.value(i).toUpper(), index);
                break;
            }
        }
    }
    const DxfGroupFile::Object* app = entry(root, QString::fromLatin1(Names::AppDictionary));
    const DxfGroupFile::Object* variables =
        entry(app, QString::fromLatin1(Names::VariablesDictionary));
    const DxfGroupFile::Object* lispVariables =
        entry(app, QString::fromLatin1(Names::LispVariablesDictionary));
    if (variables) {
        for (const auto& [name, handle] : entries(*variables)) {
            const DxfGroupFile::Object* record = object(handle);
            if (!record || record->type != "XRECORD" || !readVariable(name, *record, drawing)) {
                m_error = m_file.error(
                    QStringLiteral("the record of drawing variable \"%1\" is missing or damaged")
                        .arg(name));
                return false;
            }
        }
    }
    if (lispVariables) {
        for (const auto& [name, handle] : entries(*lispVariables)) {
            const DxfGroupFile::Object* record = object(handle);
            if (!record || record->type != "XRECORD" || !readLispVariable(name, *record, drawing)) {
                m_error = m_file.error(
                    QStringLiteral(
                        "the record of drawing-language variable \"%1\" is missing or damaged")
                        .arg(name));
                return false;
            }
        }
    }
    return true;
}

bool Reader::readVariable(const QString& name, const DxfGroupFile::Object& record, Drawing& drawing)
{
    RecordCursor cursor(m_file, record, m_codec);
    const std::optional<qint64> kind = cursor.integer(70);
    const std::optional<qint64> boolean = cursor.integer(290);
    const std::optional<qint64> count = cursor.integer(90);
    if (!kind || *kind < 0 || *kind > 2 || !boolean || !count || *count < 0 ||
        *count > cursor.remaining())
        return false;
    QStringList texts;
    for (qint64 i = 0; i < *count; ++i) {
        const std::optional<QString> text = cursor.string();
        if (!text)
            return false;
        texts.append(*text);
    }
    DrawingVariable variable;
    variable.boolean = *boolean != 0;
    if (*kind == 0) {
        if (texts.size() != 1)
            return false;
        variable.kind = DrawingVariable::Kind::Text;
        variable.text = texts.first();
    } else if (*kind == 1) {
        variable.kind = DrawingVariable::Kind::Boolean;
    } else {
        variable.kind = DrawingVariable::Kind::TextList;
        variable.list = texts;
    }
    drawing.variables().insert(name, variable);
    return true;
}

bool Reader::readLispVariable(const QString& name, const DxfGroupFile::Object& record,
                              Drawing& drawing)
{
    RecordCursor cursor(m_file, record, m_codec);
    const std::optional<qint64> count = cursor.integer(90);
    if (!count || *count < 0 || *count > cursor.remaining())
        return false;
    LispChain chain;
    for (qint64 i = 0; i < *count; ++i) {
        const std::optional<qint64> code = cursor.integer(70);
        const std::optional<LispItem::Kind> kind =
            code ? Names::lispKindFromCode(*code) : std::nullopt;
        if (!kind)
            return false;
        LispItem item;
        item.kind = *kind;
        if (*kind == LispItem::Kind::Text) {
            const std::optional<QString> text = cursor.string();
            if (!text)
                return false;
            item.text = *text;
        } else if (*kind == LispItem::Kind::Integer) {
            const std::optional<qint64> value = cursor.integer(160);
            if (!value)
                return false;
            item.integer = *value;
        } else if (*kind == LispItem::Kind::Real) {
            const std::optional<double> value = cursor.real(40);
            if (!value)
                return false;
            item.real = *value;
        } else if (*kind == LispItem::Kind::Point) {
            const std::optional<double> x = cursor.real(10);
            const std::optional<double> y = cursor.real(20);
            const std::optional<double> z = cursor.real(30);
            if (!x || !y || !z)
                return false;
            item.point = KVPoint3d{*x, *y, *z};
        }
        chain.append(item);
    }
    drawing.lispVariables().insert(name, chain);
    return true;
}

} // namespace

DxfDrawingReader::Result DxfDrawingReader::read(const QString& path)
{
    Result result;
    const std::optional<DxfGroupFile> file = DxfGroupFile::load(path, &result.error);
    if (!file)
        return result;
    const std::optional<DxfContent> content = DxfContentReader::read(*file, &result.error);
    if (!content)
        return result;
    Reader reader(*file, *content);
    result.drawing = reader.read(&result.error);
    return result;
}

} // namespace RefHost
