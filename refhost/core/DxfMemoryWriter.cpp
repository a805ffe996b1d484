#include "DxfMemoryWriter.h"

#include <QLocale>

#include <cmath>

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

void DxfMemoryWriter::put(int code, const QByteArray& value) const
{
    // Group codes right-aligned in three columns, as AutoCAD and dxflib write them.
    m_text += QByteArray::number(code).rightJustified(3, ' ');
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
    put(code, QByteArray::number(value));
}

void DxfMemoryWriter::dxfHex(int code, int value) const
{
    if (code == 5)
        m_lastHandle = value;
    put(code, QByteArray::number(value, 16).toUpper());
}

void DxfMemoryWriter::dxfString(int code, const char* value) const
{
    put(code, QByteArray(value));
}

void DxfMemoryWriter::dxfString(int code, const std::string& value) const
{
    put(code, QByteArray::fromStdString(value));
}

} // namespace RefHost
