#include "WorkbookIndex.h"

#include "XmlPartReader.h"
#include "ZipPackage.h"

#include "host/Translate.h"

#include <QUrl>

#include <algorithm>

namespace Xlsx::Internal {

namespace {

const QString kContentTypesPart = QStringLiteral("[Content_Types].xml");
const QString kWorksheetType =
    QStringLiteral("application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml");

bool isWorkbookContentType(const QString& type)
{
    static const QStringList types = {
        QStringLiteral(
            "application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml"),
        QStringLiteral("application/vnd.ms-excel.sheet.macroEnabled.main+xml"),
        QStringLiteral(
            "application/vnd.openxmlformats-officedocument.spreadsheetml.template.main+xml"),
        QStringLiteral("application/vnd.ms-excel.template.macroEnabled.main+xml"),
    };
    return types.contains(type, Qt::CaseInsensitive);
}

// Relationship types differ between the transitional and the strict namespaces only before
// their last segment.
bool hasRelationshipType(const QString& type, QStringView name)
{
    return type.endsWith(u'/' + name.toString(), Qt::CaseInsensitive);
}

QString relationshipsPartFor(const QString& sourcePart)
{
    const qsizetype slash = sourcePart.lastIndexOf(u'/');
    const QString folder = slash < 0 ? QString() : sourcePart.left(slash + 1);
    const QString file = slash < 0 ? sourcePart : sourcePart.mid(slash + 1);
    return folder + QStringLiteral("_rels/") + file + QStringLiteral(".rels");
}

bool isTrue(QStringView value)
{
    return value == u"1" || value.compare(u"true", Qt::CaseInsensitive) == 0;
}

} // namespace

QString resolvePartName(const QString& sourcePart, const QString& target)
{
    const QString decoded = QUrl::fromPercentEncoding(target.toUtf8());
    QString path;
    if (decoded.startsWith(u'/')) {
        path = decoded.mid(1);
    } else {
        const qsizetype slash = sourcePart.lastIndexOf(u'/');
        path = (slash < 0 ? QString() : sourcePart.left(slash + 1)) + decoded;
    }
    QStringList segments;
    for (const QString& segment : path.split(u'/')) {
        if (segment.isEmpty() || segment == u".")
            continue;
        if (segment == u"..") {
            if (segments.isEmpty())
                return {};
            segments.removeLast();
            continue;
        }
        segments.append(segment);
    }
    return segments.join(u'/');
}

bool WorkbookIndex::load(ZipPackage& package, const WorkbookLimits& limits, QString* problem)
{
    m_limits = limits;
    if (!readContentTypes(package, problem) || !findWorkbookPart(package, problem))
        return false;

    QList<Relationship> relationships;
    if (!readRelationships(package, m_workbookPart, &relationships, problem))
        return false;
    QList<QPair<QString, QString>> sheetIds;
    if (!readWorkbook(package, &sheetIds, problem))
        return false;

    for (const Relationship& relationship : std::as_const(relationships)) {
        if (relationship.external)
            continue;
        if (hasRelationshipType(relationship.type, u"sharedStrings"))
            m_sharedStringsPart = relationship.target;
        else if (hasRelationshipType(relationship.type, u"styles"))
            m_stylesPart = relationship.target;
    }
    for (const QString* part : {&m_sharedStringsPart, &m_stylesPart}) {
        if (!part->isEmpty() && !package.contains(*part)) {
            *problem = kvTr("part %1 is missing").arg(*part);
            return false;
        }
    }

    for (const auto& [name, id] : std::as_const(sheetIds)) {
        SheetEntry entry;
        entry.name = name;
        const auto found = std::find_if(
            relationships.cbegin(), relationships.cend(),
            [&wanted = id](const Relationship& relationship) { return relationship.id == wanted; });
        if (found == relationships.cend()) {
            entry.problem = kvTr("sheet \"%1\" refers to relationship \"%2\", which %3 does not "
                                 "hold")
                                .arg(name, id, relationshipsPartFor(m_workbookPart));
        } else if (hasRelationshipType(found->type, u"worksheet")) {
            const QString type = contentType(found->target);
            if (found->external || found->target.isEmpty()) {
                entry.problem = kvTr("sheet \"%1\" points outside the workbook package").arg(name);
            } else if (found->target.compare(m_workbookPart, Qt::CaseInsensitive) == 0 ||
                       (!type.isEmpty() && type.compare(kWorksheetType, Qt::CaseInsensitive) != 0 &&
                        !type.endsWith(u"/xml", Qt::CaseInsensitive))) {
                entry.problem = kvTr("sheet \"%1\" points to part %2, which is not a worksheet")
                                    .arg(name, found->target);
            } else {
                entry.partName = found->target;
            }
        } else {
            entry.isWorksheet = false; // a chart sheet, a dialog sheet, ...
        }
        m_sheets.append(entry);
    }
    return true;
}

int WorkbookIndex::findSheet(const QString& name) const
{
    for (qsizetype i = 0; i < m_sheets.size(); ++i) {
        if (m_sheets[i].name.compare(name, Qt::CaseInsensitive) == 0)
            return int(i);
    }
    return -1;
}

QString WorkbookIndex::contentType(const QString& partName) const
{
    const auto found = m_overrideTypes.constFind(partName.toLower());
    if (found != m_overrideTypes.cend())
        return *found;
    const qsizetype dot = partName.lastIndexOf(u'.');
    if (dot < 0 || partName.indexOf(u'/', dot) >= 0)
        return {};
    return m_defaultTypes.value(partName.mid(dot + 1).toLower());
}

bool WorkbookIndex::readContentTypes(ZipPackage& package, QString* problem)
{
    if (!package.contains(kContentTypesPart)) {
        *problem = kvTr("part %1 is missing, so it is not an .xlsx or .xlsm workbook")
                       .arg(kContentTypesPart);
        return false;
    }
    XmlPartReader reader;
    if (!reader.open(package, kContentTypesPart)) {
        *problem = reader.problem();
        return false;
    }
    QXmlStreamReader& xml = reader.xml();
    while (reader.readNext()) {
        if (!xml.isStartElement())
            continue;
        const QStringView name = xml.name();
        const bool isDefault = name == u"Default";
        if (!isDefault && name != u"Override")
            continue;
        if (m_defaultTypes.size() + m_overrideTypes.size() >= m_limits.maxListEntries) {
            reader.fail(kvTr("part %1 lists more than %2 content types")
                            .arg(kContentTypesPart)
                            .arg(m_limits.maxListEntries));
            break;
        }
        const QXmlStreamAttributes attributes = xml.attributes();
        const QString type = attributeValue(attributes, u"ContentType").toString();
        if (isDefault) {
            m_defaultTypes.insert(attributeValue(attributes, u"Extension").toString().toLower(),
                                  type);
        } else {
            QString part = attributeValue(attributes, u"PartName").toString();
            if (part.startsWith(u'/'))
                part.remove(0, 1);
            m_overrideTypes.insert(part.toLower(), type);
        }
    }
    if (reader.failed()) {
        *problem = reader.problem();
        return false;
    }
    return true;
}

bool WorkbookIndex::readRelationships(ZipPackage& package, const QString& sourcePart,
                                      QList<Relationship>* relationships, QString* problem)
{
    const QString part = relationshipsPartFor(sourcePart);
    XmlPartReader reader;
    if (!reader.open(package, part)) {
        *problem = reader.problem();
        return false;
    }
    QXmlStreamReader& xml = reader.xml();
    while (reader.readNext()) {
        if (!xml.isStartElement() || xml.name() != u"Relationship")
            continue;
        if (relationships->size() >= m_limits.maxListEntries) {
            reader.fail(kvTr("part %1 lists more than %2 relationships")
                            .arg(part)
                            .arg(m_limits.maxListEntries));
            break;
        }
        const QXmlStreamAttributes attributes = xml.attributes();
        Relationship relationship;
        relationship.id = attributeValue(attributes, u"Id").toString();
        relationship.type = attributeValue(attributes, u"Type").toString();
        relationship.external =
            attributeValue(attributes, u"TargetMode").compare(u"External", Qt::CaseInsensitive) ==
            0;
        if (!relationship.external) {
            relationship.target =
                resolvePartName(sourcePart, attributeValue(attributes, u"Target").toString());
        }
        relationships->append(relationship);
    }
    if (reader.failed()) {
        *problem = reader.problem();
        return false;
    }
    return true;
}

bool WorkbookIndex::findWorkbookPart(ZipPackage& package, QString* problem)
{
    if (package.contains(relationshipsPartFor(QString()))) {
        QList<Relationship> relationships;
        if (!readRelationships(package, QString(), &relationships, problem))
            return false;
        for (const Relationship& relationship : std::as_const(relationships)) {
            if (!relationship.external &&
                hasRelationshipType(relationship.type, u"officeDocument")) {
                m_workbookPart = relationship.target;
                break;
            }
        }
    }
    // Without package relationships, the content types still tell which part is the workbook.
    if (m_workbookPart.isEmpty()) {
        for (auto it = m_overrideTypes.cbegin(); it != m_overrideTypes.cend(); ++it) {
            if (isWorkbookContentType(it.value()))
                m_workbookPart = it.key();
        }
    }
    if (m_workbookPart.isEmpty()) {
        *problem = kvTr("it has no workbook part, so it is not an .xlsx or .xlsm workbook");
        return false;
    }
    const QString type = contentType(m_workbookPart);
    if (!isWorkbookContentType(type)) {
        *problem = kvTr("its main part %1 is not a workbook (content type \"%2\"), so it is not "
                        "an .xlsx or .xlsm workbook")
                       .arg(m_workbookPart, type);
        return false;
    }
    if (!package.contains(m_workbookPart)) {
        *problem = kvTr("part %1 is missing").arg(m_workbookPart);
        return false;
    }
    return true;
}

bool WorkbookIndex::readWorkbook(ZipPackage& package, QList<QPair<QString, QString>>* sheetIds,
                                 QString* problem)
{
    XmlPartReader reader;
    if (!reader.open(package, m_workbookPart)) {
        *problem = reader.problem();
        return false;
    }
    QXmlStreamReader& xml = reader.xml();
    while (reader.readNext()) {
        if (!xml.isStartElement())
            continue;
        const QStringView name = xml.name();
        if (name == u"workbookPr") {
            m_date1904 = isTrue(attributeValue(xml.attributes(), u"date1904"));
        } else if (name == u"sheet") {
            if (sheetIds->size() >= m_limits.maxListEntries) {
                reader.fail(kvTr("part %1 lists more than %2 sheets")
                                .arg(m_workbookPart)
                                .arg(m_limits.maxListEntries));
                break;
            }
            const QXmlStreamAttributes attributes = xml.attributes();
            sheetIds->append({attributeValue(attributes, u"name").toString(),
                              attributeValue(attributes, u"id").toString()});
        }
    }
    if (reader.failed()) {
        *problem = reader.problem();
        return false;
    }
    return true;
}

} // namespace Xlsx::Internal
