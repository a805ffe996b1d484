#pragma once

#include <dl_writer_ascii.h>

#include <QByteArray>

namespace RefHost {

// A dxflib writer that collects the DXF text in memory instead of writing a file, so that the
// drawing writer can check the whole text before it replaces any file, and so that numbers are
// written the same way on every machine (shortest exact form, always with a decimal point).
class DxfMemoryWriter final : public DL_WriterA
{
public:
    DxfMemoryWriter();

    void dxfReal(int code, double value) const override;
    void dxfInt(int code, int value) const override;
    void dxfHex(int code, int value) const override;
    void dxfString(int code, const char* value) const override;
    void dxfString(int code, const std::string& value) const override;

    const QByteArray& text() const { return m_text; }
    QByteArray& text() { return m_text; }
    // The handle of the record written last (its group 5).
    int lastHandle() const { return m_lastHandle; }

    static QByteArray formatReal(double value);

private:
    void put(int code, QByteArrayView value) const;

    mutable QByteArray m_text;
    mutable int m_lastHandle = 0;
};

} // namespace RefHost
