#pragma once

#include "ZipPackage.h"

#include <QString>
#include <QXmlStreamReader>

#include <memory>

namespace Xlsx::Internal {

// Streams the XML of one package part. It puts the part's name into every problem it reports,
// prefers the device's problem (limits, damaged data) to the parser's, refuses document type
// declarations, which office documents never carry, and elements nested deeper than the
// limit, so that the parser's stack of open elements stays small.
class XmlPartReader final
{
public:
    XmlPartReader() = default;
    XmlPartReader(const XmlPartReader&) = delete;
    XmlPartReader& operator=(const XmlPartReader&) = delete;

    // Opens `partName` of `package` and starts reading it. Returns false and sets problem().
    bool open(ZipPackage& package, const QString& partName);
    void close();
    const QString& partName() const { return m_partName; }

    QXmlStreamReader& xml() { return m_xml; }

    // Reads the next token. False at the end of the document and when reading failed; then
    // problem() tells which.
    bool readNext();
    // Stops reading with `problem`, which is reported as is.
    void fail(const QString& problem);
    bool failed() const { return !m_problem.isEmpty(); }
    QString problem() const { return m_problem; }

    // Reads the text of the element the reader is on up to its end tag and leaves the reader
    // on that end tag. Fails when the text is longer than `maxLength` characters. `text` keeps
    // its capacity, so that reading many values into one buffer allocates nothing.
    bool readElementText(QString* text, qsizetype maxLength);
    // The same, appending to `text`; `maxLength` counts what it already holds.
    bool appendElementText(QString* text, qsizetype maxLength);
    // Reads a string item (the content of a shared-string "si" or an inline "is") up to its
    // end tag: the text of its "t" element, or of the "t" elements of its rich-text runs
    // joined; phonetic runs are left out. The "_xHHHH_" escapes of control characters are
    // decoded.
    bool readStringItem(QString* text, qsizetype maxLength);
    // Skips the current element with everything inside it.
    bool skipElement();

private:
    void noteParserProblem();

    std::unique_ptr<ZipPartDevice> m_device;
    QXmlStreamReader m_xml;
    QString m_partName;
    QString m_problem;
    int m_depth = 0;
    int m_maxDepth = 0;
};

// Whether an element or attribute name is `expected`. Names are short, and comparing them
// inline is noticeably faster than the general string comparison when done for every cell.
inline bool hasName(QStringView name, QStringView expected)
{
    if (name.size() != expected.size())
        return false;
    for (qsizetype i = 0; i < name.size(); ++i) {
        if (name[i] != expected[i])
            return false;
    }
    return true;
}

// The value of the attribute called `localName`, whatever its namespace prefix; empty when absent.
QStringView attributeValue(const QXmlStreamAttributes& attributes, QStringView localName);

// Replaces each "_xHHHH_" escape by the character it stands for, as the spreadsheet format
// writes characters that XML cannot hold.
QString decodeEscapes(const QString& text);

} // namespace Xlsx::Internal
