#include "DxfMemoryWriter.h"

#include <QLocale>

#include <cctype>
#include <charconv>
#include <cmath>
#include <cstring>

namespace RefHost {

// dxflib's own writer opens the named file; an empty name leaves its stream closed and unused.
DxfMemoryWriter::DxfMemoryWriter() : DL_WriterA("", DL_Codes::AC1015) {}

QByteArray DxfMemoryWriter::formatReal(double value)
{
    if (value == 0.0 || !std::isfinite(value))
        return QByteArrayLiteral("0.0");
    QByteArray text = QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
    if (!text.contains('.') && !text.contains('e'))
        text += ".0";
    return text;
}

void DxfMemoryWriter::put(int code, QByteArrayView value) const
{
    // Group codes right-aligned in three columns, as AutoCAD and dxflib write them. The digits
    // go through a stack buffer: a drawing has millions of groups.
    char digits[16];
    const qsizetype length = std::to_chars(digits, digits + sizeof digits, code).ptr - digits;
    if (length < 3)
        m_text.append(3 - length, ' ');
    m_text.append(digits, length);
    m_text += '\n';
    m_text += value;
    m_text += '\n';
}

void DxfMemoryWriter::dxfReal(int code, double value) const
{
    put(code, formatReal(value));
}

void DxfMemoryWriter::dxfInt(int code, int value) const
{
    char digits[16];
    const char* end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    put(code, QByteArrayView(digits, end - digits));
}

void DxfMemoryWriter::dxfHex(int code, int value) const
{
    if (code == 5)
        m_lastHandle = value;
    if (value < 0) {
        put(code, QByteArray::number(value, 16).toUpper());
        return;
    }
    char digits[16];
    char* end = std::to_chars(digits, digits + sizeof digits, value, 16).ptr;
    for (char* c = digits; c != end; ++c)
        *c = char(std::toupper(static_cast<unsigned char>(*c)));
    put(code, QByteArrayView(digits, end - digits));
}

void DxfMemoryWriter::dxfString(int code, const char* value) const
{
    put(code, QByteArrayView(value, value ? qsizetype(std::strlen(value)) : 0));
}

void DxfMemoryWriter::dxfString(int code, const std::string& value) const
{
    put(code, QByteArrayView(value.data(), qsizetype(value.size())));
}

} // namespace RefHost
