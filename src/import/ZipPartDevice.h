#pragma once

#include <QIODevice>
#include <QString>

struct zip_file;

namespace Xlsx::Internal {

// Decompressed bytes counted against a limit shared by every part of one package.
struct ByteBudget
{
    qint64 used = 0;
    qint64 limit = 0;
};

// One part of a zip package as a sequential device, decompressed as it is read, so that an
// XML reader can stream it. Reading stops with an error once the part or the package has
// decompressed more than its limit, when a run of bytes without markup is longer than the XML
// reader should hold at once, and when the compressed data is damaged.
class ZipPartDevice final : public QIODevice
{
public:
    // Takes ownership of `file`. `total` must outlive the device. `runLimit` bounds the bytes
    // between one "<" and the next.
    ZipPartDevice(zip_file* file, const QString& partName, qint64 partLimit, qint64 runLimit,
                  ByteBudget* total);
    ~ZipPartDevice() override;
    ZipPartDevice(const ZipPartDevice&) = delete;
    ZipPartDevice& operator=(const ZipPartDevice&) = delete;

    bool isSequential() const override { return true; }
    // What stopped the reading; empty while nothing went wrong.
    QString problem() const { return m_problem; }
    qint64 bytesDecompressed() const { return m_partBytes; }

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 maxSize) override;

private:
    zip_file* m_file;
    QString m_partName;
    qint64 m_partLimit;
    qint64 m_partBytes = 0;
    qint64 m_runLimit;
    qint64 m_runBytes = 0; // since the last "<"
    ByteBudget* m_total;
    QString m_problem;
};

} // namespace Xlsx::Internal
