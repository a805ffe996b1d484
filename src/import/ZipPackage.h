#pragma once

#include "WorkbookLimits.h"
#include "ZipPartDevice.h"

#include <QString>

#include <memory>

struct zip;

namespace Xlsx::Internal {

// A zip package opened for reading parts by name. Part names are matched without regard to
// case, as the package conventions of office documents require, and given without a leading
// "/". The file stays open for the life of the object, so that a sheet can be read again.
class ZipPackage final
{
public:
    explicit ZipPackage(const WorkbookLimits& limits);
    ~ZipPackage();
    ZipPackage(const ZipPackage&) = delete;
    ZipPackage& operator=(const ZipPackage&) = delete;

    // Opens the file; returns what is wrong with it, or an empty text on success.
    QString open(const QString& path);
    bool isOpen() const { return m_zip != nullptr; }
    const WorkbookLimits& limits() const { return m_limits; }

    bool contains(const QString& partName) const;
    // Opens a part for streaming. Returns null and sets `problem` when the part is missing,
    // declares more bytes than the limits allow or cannot be decompressed.
    std::unique_ptr<ZipPartDevice> openPart(const QString& partName, QString* problem);

private:
    qint64 locate(const QString& partName) const;

    zip* m_zip = nullptr;
    WorkbookLimits m_limits;
    ByteBudget m_budget;
};

} // namespace Xlsx::Internal
