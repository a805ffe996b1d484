#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

namespace RefHost {

// Converts texts between QString and the bytes of a DXF file.
//
// Reading: files of AutoCAD 2007 (AC1021) and later are UTF-8; older files use the code page
// named by $DWGCODEPAGE (Windows-1252 when it is missing or unknown). In both, "\U+XXXX"
// escapes stand for single UTF-16 code units.
//
// Writing (the R2000 files of the reference host, $DWGCODEPAGE ANSI_1252): Windows-1252 bytes.
// Characters that code page lacks, control characters, leading and trailing blanks (which DXF
// readers strip) and a backslash that would otherwise read as the start of an escape are
// written as "\U+XXXX", as AutoCAD does.
class DxfTextCodec
{
public:
    DxfTextCodec() = default;
    // The codec for a file with this $ACADVER and $DWGCODEPAGE (both may be empty).
    static DxfTextCodec forFile(const QByteArray& acadVersion, const QByteArray& codePage);

    QString decode(const QByteArray& bytes) const;

    // One value on one line, blanks at both ends escaped.
    static QByteArray encode(const QString& text);
    // The text cut into pieces of at most maxBytes (at least 16) for groups that hold a
    // limited length (extended data, records); blanks are escaped in them, so that no piece
    // starts or ends with one.
    // Joining the pieces and decoding gives the text back. An empty text gives no pieces.
    static QByteArrayList encodeChunks(const QString& text, int maxBytes = 240);

private:
    QByteArray m_codecName = QByteArrayLiteral("windows-1252");
};

} // namespace RefHost
