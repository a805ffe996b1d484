#include "XmlPartReader.h"

#include "host/Translate.h"

namespace Xlsx::Internal {

bool XmlPartReader::open(ZipPackage& package, const QString& partName)
{
    close();
    m_partName = partName;
    m_depth = 0;
    m_maxDepth = package.limits().maxXmlDepth;
    m_device = package.openPart(partName, &m_problem);
    if (!m_device)
        return false;
    m_xml.setDevice(m_device.get());
    return true;
}

void XmlPartReader::close()
{
    m_xml.setDevice(nullptr);
    m_xml.clear();
    m_device.reset();
    m_problem.clear();
}

void XmlPartReader::noteParserProblem()
{
    if (!m_problem.isEmpty())
        return;
    if (m_device && !m_device->problem().isEmpty()) {
        m_problem = m_device->problem();
        return;
    }
    m_problem = kvTr("part %1 is not well-formed XML (line %2, column %3: %4)")
                    .arg(m_partName)
                    .arg(m_xml.lineNumber())
                    .arg(m_xml.columnNumber())
                    .arg(m_xml.errorString());
}

bool XmlPartReader::readNext()
{
    if (!m_problem.isEmpty() || !m_device)
        return false;
    const QXmlStreamReader::TokenType token = m_xml.readNext();
    if (token == QXmlStreamReader::Invalid) {
        noteParserProblem();
        return false;
    }
    if (token == QXmlStreamReader::DTD) {
        fail(kvTr("part %1 holds a document type declaration, which workbooks never have")
                 .arg(m_partName));
        return false;
    }
    if (token == QXmlStreamReader::StartElement && ++m_depth > m_maxDepth) {
        fail(kvTr("part %1 nests elements more than %2 deep").arg(m_partName).arg(m_maxDepth));
        return false;
    }
    if (token == QXmlStreamReader::EndElement)
        --m_depth;
    return token != QXmlStreamReader::EndDocument;
}

void XmlPartReader::fail(const QString& problem)
{
    if (m_problem.isEmpty())
        m_problem = problem;
}

bool XmlPartReader::readElementText(QString* text, qsizetype maxLength)
{
    text->resize(0);
    return appendElementText(text, maxLength);
}

bool XmlPartReader::appendElementText(QString* text, qsizetype maxLength)
{
    int depth = 1;
    while (readNext()) {
        switch (m_xml.tokenType()) {
        case QXmlStreamReader::StartElement:
            ++depth;
            break;
        case QXmlStreamReader::EndElement:
            if (--depth == 0)
                return true;
            break;
        case QXmlStreamReader::Characters:
        case QXmlStreamReader::EntityReference:
            if (depth == 1) {
                if (text->size() + m_xml.text().size() > maxLength) {
                    fail(kvTr("part %1 holds a text longer than %2 characters, the limit "
                              "for one cell")
                             .arg(m_partName)
                             .arg(maxLength));
                    return false;
                }
                text->append(m_xml.text());
            }
            break;
        default:
            break;
        }
    }
    if (!failed())
        noteParserProblem();
    return false;
}

bool XmlPartReader::readStringItem(QString* text, qsizetype maxLength)
{
    text->resize(0);
    // Depth below the item's element; the text runs are "t" directly in the item or in an "r".
    int depth = 0;
    bool inRun = false;
    while (readNext()) {
        switch (m_xml.tokenType()) {
        case QXmlStreamReader::StartElement: {
            const QStringView name = m_xml.name();
            if (hasName(name, u"t") && (depth == 0 || (depth == 1 && inRun))) {
                if (!appendElementText(text, maxLength))
                    return false;
                break;
            }
            if (depth == 0 && hasName(name, u"r"))
                inRun = true;
            ++depth;
            break;
        }
        case QXmlStreamReader::EndElement:
            if (depth == 0) {
                if (text->contains(u"_x"))
                    *text = decodeEscapes(*text);
                return true;
            }
            if (--depth == 0)
                inRun = false;
            break;
        default:
            break;
        }
    }
    if (!failed())
        noteParserProblem();
    return false;
}

bool XmlPartReader::skipElement()
{
    int depth = 1;
    while (readNext()) {
        if (m_xml.isStartElement())
            ++depth;
        else if (m_xml.isEndElement() && --depth == 0)
            return true;
    }
    if (!failed())
        noteParserProblem();
    return false;
}

QStringView attributeValue(const QXmlStreamAttributes& attributes, QStringView localName)
{
    for (const QXmlStreamAttribute& attribute : attributes) {
        if (hasName(attribute.name(), localName))
            return attribute.value();
    }
    return {};
}

namespace {
int hexValue(QChar c)
{
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'a' && u <= u'f')
        return u - u'a' + 10;
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    return -1;
}
} // namespace

QString decodeEscapes(const QString& text)
{
    QString result;
    result.reserve(text.size());
    qsizetype i = 0;
    while (i < text.size()) {
        if (text[i] == u'_' && i + 6 < text.size() && text[i + 1] == u'x' && text[i + 6] == u'_') {
            int value = 0;
            bool ok = true;
            for (int k = 2; k < 6 && ok; ++k) {
                const int digit = hexValue(text[i + k]);
                ok = digit >= 0;
                value = value * 16 + digit;
            }
            if (ok) {
                result.append(QChar(char16_t(value)));
                i += 7;
                continue;
            }
        }
        result.append(text[i]);
        ++i;
    }
    return result;
}

} // namespace Xlsx::Internal
