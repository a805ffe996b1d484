#include "CellFormats.h"

#include "XmlPartReader.h"

#include "host/Translate.h"

#include <QHash>

namespace Xlsx::Internal {

bool CellFormats::isDateFormat(int numberFormatId, const QString& formatCode)
{
    if (formatCode.isEmpty())
        return numberFormatId >= 14 && numberFormatId <= 22;
    bool inQuote = false;
    for (qsizetype i = 0; i < formatCode.size(); ++i) {
        const QChar c = formatCode[i];
        if (inQuote) {
            inQuote = c != u'"';
            continue;
        }
        switch (c.unicode()) {
        case u'"':
            inQuote = true;
            break;
        case u'\\': // the next character is shown as it is
        case u'_':  // the next character only gives its width
        case u'*':  // the next character fills the cell
            ++i;
            break;
        case u'[': { // colours, conditions, locales, elapsed times
            const qsizetype close = formatCode.indexOf(u']', i);
            if (close < 0)
                return false;
            i = close;
            break;
        }
        case u'd':
        case u'D':
        case u'm':
        case u'M':
        case u'y':
        case u'Y':
            return true;
        default:
            break;
        }
    }
    return false;
}

bool CellFormats::load(ZipPackage& package, const QString& partName, const WorkbookLimits& limits,
                       QString* problem)
{
    m_dateStyles.clear();
    XmlPartReader reader;
    if (!reader.open(package, partName)) {
        *problem = reader.problem();
        return false;
    }
    QXmlStreamReader& xml = reader.xml();
    QHash<int, QString> customFormats;
    QList<int> cellFormatIds;
    enum class Section { None, NumberFormats, CellFormats };
    Section section = Section::None;
    int depth = 0;
    while (reader.readNext()) {
        if (xml.isEndElement()) {
            if (--depth == 1)
                section = Section::None;
            continue;
        }
        if (!xml.isStartElement())
            continue;
        ++depth;
        const QStringView name = xml.name();
        if (depth == 2) {
            if (name == u"numFmts")
                section = Section::NumberFormats;
            else if (name == u"cellXfs")
                section = Section::CellFormats;
            continue;
        }
        if (depth != 3 || section == Section::None)
            continue;
        if (customFormats.size() + cellFormatIds.size() >= limits.maxListEntries) {
            reader.fail(kvTr("part %1 lists more than %2 formats")
                            .arg(partName)
                            .arg(limits.maxListEntries));
            break;
        }
        const QXmlStreamAttributes attributes = xml.attributes();
        const int id = attributeValue(attributes, u"numFmtId").toInt();
        if (section == Section::NumberFormats && name == u"numFmt")
            customFormats.insert(id, attributeValue(attributes, u"formatCode").toString());
        else if (section == Section::CellFormats && name == u"xf")
            cellFormatIds.append(id);
    }
    if (reader.failed()) {
        *problem = reader.problem();
        return false;
    }
    m_dateStyles.reserve(cellFormatIds.size());
    for (const int id : std::as_const(cellFormatIds))
        m_dateStyles.append(isDateFormat(id, customFormats.value(id)));
    return true;
}

} // namespace Xlsx::Internal
