#include "ZipPackage.h"

#include "host/Translate.h"

#include <QFile>
#include <QFileInfo>

#include <zip.h>

namespace Xlsx::Internal {

namespace {

QByteArray nativePath(const QString& path)
{
#ifdef Q_OS_WIN
    return path.toUtf8(); // libzip takes UTF-8 paths on Windows
#else
    return QFile::encodeName(path);
#endif
}

// A more helpful reason than "not a zip archive" for files that users commonly mistake for
// a workbook of the right kind.
QString sniffProblem(const QByteArray& head)
{
    static const QByteArray compoundFile("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
    if (head.startsWith(compoundFile)) {
        return kvTr("it is an old-format (.xls) or password-protected workbook, not an .xlsx or "
                    ".xlsm file");
    }
    return {};
}

QString zipOpenProblem(int code)
{
    switch (code) {
    case ZIP_ER_NOZIP:
        return kvTr("it is not a zip archive, so not an .xlsx or .xlsm workbook (the file is "
                    "damaged or of another kind)");
    case ZIP_ER_INCONS:
        return kvTr("its zip structure is inconsistent (the file is damaged or truncated)");
    case ZIP_ER_MEMORY:
        return kvTr("there is not enough memory to open it");
    default: {
        zip_error_t error;
        zip_error_init_with_code(&error, code);
        const QString text = QString::fromLocal8Bit(zip_error_strerror(&error));
        zip_error_fini(&error);
        return kvTr("it cannot be opened as a zip archive (%1)").arg(text);
    }
    }
}

} // namespace

ZipPackage::ZipPackage(const WorkbookLimits& limits) : m_limits(limits)
{
    m_budget.limit = limits.maxTotalBytes;
}

ZipPackage::~ZipPackage()
{
    if (m_zip)
        zip_discard(m_zip);
}

QString ZipPackage::open(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return kvTr("the file does not exist");
    if (info.isDir())
        return kvTr("it is a folder, not a file");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return kvTr("the file cannot be opened (%1)").arg(file.errorString());
    if (file.size() == 0)
        return kvTr("the file is empty");
    const QString sniffed = sniffProblem(file.read(8));
    if (!sniffed.isEmpty())
        return sniffed;
    file.close();

    int code = 0;
    m_zip = zip_open(nativePath(path).constData(), ZIP_RDONLY, &code);
    if (!m_zip)
        return zipOpenProblem(code);
    const zip_int64_t entries = zip_get_num_entries(m_zip, 0);
    if (entries > m_limits.maxListEntries) {
        zip_discard(m_zip);
        m_zip = nullptr;
        return kvTr("the zip archive holds %1 entries, more than the limit of %2")
            .arg(entries)
            .arg(m_limits.maxListEntries);
    }
    return {};
}

qint64 ZipPackage::locate(const QString& partName) const
{
    if (!m_zip || partName.isEmpty())
        return -1;
    return zip_name_locate(m_zip, partName.toUtf8().constData(), ZIP_FL_NOCASE);
}

bool ZipPackage::contains(const QString& partName) const
{
    return locate(partName) >= 0;
}

std::unique_ptr<ZipPartDevice> ZipPackage::openPart(const QString& partName, QString* problem)
{
    const qint64 index = locate(partName);
    if (index < 0) {
        *problem = kvTr("part %1 is missing").arg(partName);
        return nullptr;
    }
    zip_stat_t stat;
    zip_stat_init(&stat);
    if (zip_stat_index(m_zip, zip_uint64_t(index), 0, &stat) != 0) {
        *problem = kvTr("part %1 cannot be read (%2)")
                       .arg(partName, QString::fromLocal8Bit(zip_strerror(m_zip)));
        return nullptr;
    }
    if ((stat.valid & ZIP_STAT_SIZE) && stat.size > zip_uint64_t(m_limits.maxPartBytes)) {
        *problem = kvTr("part %1 declares %2 bytes uncompressed, more than the limit of %3 "
                        "bytes for one part")
                       .arg(partName)
                       .arg(stat.size)
                       .arg(m_limits.maxPartBytes);
        return nullptr;
    }
    if (m_budget.used >= m_budget.limit) {
        *problem = kvTr("the workbook decompresses to more than %1 bytes in total, the limit "
                        "for one workbook (reached before part %2)")
                       .arg(m_budget.limit)
                       .arg(partName);
        return nullptr;
    }
    zip_file_t* file = zip_fopen_index(m_zip, zip_uint64_t(index), 0);
    if (!file) {
        *problem = kvTr("part %1 cannot be read (%2)")
                       .arg(partName, QString::fromLocal8Bit(zip_strerror(m_zip)));
        return nullptr;
    }
    return std::make_unique<ZipPartDevice>(file, partName, m_limits.maxPartBytes,
                                           m_limits.maxMarkupRunBytes, &m_budget);
}

} // namespace Xlsx::Internal
