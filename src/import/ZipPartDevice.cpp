#include "ZipPartDevice.h"

#include "host/Translate.h"

#include <zip.h>

#include <cstring>

namespace Xlsx::Internal {

ZipPartDevice::ZipPartDevice(zip_file* file, const QString& partName, qint64 partLimit,
                             qint64 runLimit, ByteBudget* total)
    : m_file(file), m_partName(partName), m_partLimit(partLimit), m_runLimit(runLimit),
      m_total(total)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

ZipPartDevice::~ZipPartDevice()
{
    if (m_file)
        zip_fclose(m_file);
}

qint64 ZipPartDevice::readData(char* data, qint64 maxSize)
{
    if (!m_problem.isEmpty() || !m_file)
        return -1;
    if (maxSize <= 0)
        return 0;
    const zip_int64_t count = zip_fread(m_file, data, zip_uint64_t(maxSize));
    if (count < 0) {
        m_problem = kvTr("the compressed data of part %1 is damaged (%2)")
                        .arg(m_partName, QString::fromLocal8Bit(zip_file_strerror(m_file)));
        return -1;
    }
    m_partBytes += count;
    m_total->used += count;
    if (m_partBytes > m_partLimit) {
        m_problem = kvTr("part %1 decompresses to more than %2 bytes, the limit for one part")
                        .arg(m_partName)
                        .arg(m_partLimit);
        return -1;
    }
    if (m_total->used > m_total->limit) {
        m_problem = kvTr("the workbook decompresses to more than %1 bytes in total, the limit "
                         "for one workbook (reached while reading part %2)")
                        .arg(m_total->limit)
                        .arg(m_partName);
        return -1;
    }
    // Runs that lie wholly inside this chunk are shorter than the chunk; only the run that
    // goes on from earlier chunks can grow past the limit.
    const char* begin = data;
    const char* end = data + count;
    const void* found = std::memchr(begin, '<', size_t(count));
    const char* first = found ? static_cast<const char*>(found) : end;
    if (m_runBytes + (first - begin) > m_runLimit) {
        m_problem = kvTr("part %1 holds more than %2 bytes without markup, more than a cell can "
                         "hold")
                        .arg(m_partName)
                        .arg(m_runLimit);
        return -1;
    }
    if (first == end) {
        m_runBytes += count;
    } else {
        const char* last = end;
        while (*(last - 1) != '<')
            --last;
        m_runBytes = end - last;
    }
    return count;
}

qint64 ZipPartDevice::writeData(const char*, qint64)
{
    return -1;
}

} // namespace Xlsx::Internal
