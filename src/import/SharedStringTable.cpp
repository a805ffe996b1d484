#include "SharedStringTable.h"

#include "XmlPartReader.h"

#include "host/Translate.h"

#include <algorithm>

namespace Xlsx::Internal {

bool SharedStringTable::load(ZipPackage& package, const QString& partName,
                             const WorkbookLimits& limits, QString* problem)
{
    m_characters.clear();
    m_offsets = {0};
    // The offsets are 32-bit, which holds far more than the character limit.
    const qsizetype maxCharacters =
        std::min<qsizetype>(limits.maxSharedStringCharacters, qsizetype(0xFFFFFFFFu));

    XmlPartReader reader;
    if (!reader.open(package, partName)) {
        *problem = reader.problem();
        return false;
    }
    QXmlStreamReader& xml = reader.xml();
    QString item;
    while (reader.readNext()) {
        if (!xml.isStartElement())
            continue;
        if (xml.name() == u"sst") {
            // The declared count is only a hint, and a hostile file may declare anything.
            const qsizetype declared =
                attributeValue(xml.attributes(), u"uniqueCount").toLongLong();
            if (declared > 0)
                m_offsets.reserve(std::min(declared, limits.maxSharedStrings) + 1);
            continue;
        }
        if (xml.name() != u"si") {
            continue;
        }
        if (size() >= limits.maxSharedStrings) {
            reader.fail(kvTr("part %1 holds more than %2 shared strings")
                            .arg(partName)
                            .arg(limits.maxSharedStrings));
            break;
        }
        if (!reader.readStringItem(&item, limits.maxStringLength))
            break;
        if (m_characters.size() + item.size() > maxCharacters) {
            reader.fail(kvTr("part %1 holds more than %2 characters of shared strings")
                            .arg(partName)
                            .arg(maxCharacters));
            break;
        }
        m_characters.append(item);
        m_offsets.append(quint32(m_characters.size()));
    }
    if (reader.failed()) {
        *problem = reader.problem();
        return false;
    }
    m_characters.squeeze();
    m_offsets.squeeze();
    return true;
}

QString SharedStringTable::at(qsizetype index) const
{
    const quint32 begin = m_offsets[index];
    return m_characters.mid(begin, m_offsets[index + 1] - begin);
}

} // namespace Xlsx::Internal
