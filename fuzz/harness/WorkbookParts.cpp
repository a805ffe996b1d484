#include "WorkbookParts.h"

#include <QFile>

#include <zip.h>

namespace WorkbookParts {

namespace {

const QByteArray kPartMark("== ");

} // namespace

QList<Part> parse(const QByteArray& text)
{
    QList<Part> parts;
    qsizetype position = 0;
    while (position < text.size()) {
        const bool atLineStart = position == 0 || text.at(position - 1) == '\n';
        if (atLineStart && text.mid(position, kPartMark.size()) == kPartMark) {
            qsizetype lineEnd = text.indexOf('\n', position);
            if (lineEnd < 0)
                lineEnd = text.size();
            parts.append(
                {text.mid(position + kPartMark.size(), lineEnd - position - kPartMark.size()),
                 QByteArray()});
            position = lineEnd + 1;
            continue;
        }
        qsizetype next = text.indexOf("\n" + kPartMark, position);
        const qsizetype end = next < 0 ? text.size() : next + 1;
        if (!parts.isEmpty()) {
            QByteArray chunk = text.mid(position, end - position);
            // The line end before the next part line belongs to the mark, not to the part.
            if (next >= 0 && chunk.endsWith('\n'))
                chunk.chop(1);
            parts.last().bytes += chunk;
        }
        position = end;
    }
    return parts;
}

QString writePackage(const QList<Part>& parts, const QString& path)
{
    QFile::remove(path);
    int code = 0;
    zip_t* archive =
        zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, &code);
    if (!archive)
        return QStringLiteral("libzip cannot create %1 (error %2)").arg(path).arg(code);
    for (const Part& part : parts) {
        // libzip keeps the pointer until zip_close; the parts outlive it.
        zip_source_t* source =
            zip_source_buffer(archive, part.bytes.constData(), zip_uint64_t(part.bytes.size()), 0);
        if (!source)
            continue;
        const zip_int64_t index = zip_file_add(archive, part.name.constData(), source,
                                               ZIP_FL_OVERWRITE | ZIP_FL_ENC_UTF_8);
        if (index < 0) {
            zip_source_free(source);
            continue;
        }
        zip_set_file_compression(archive, zip_uint64_t(index), ZIP_CM_STORE, 0);
    }
    if (zip_close(archive) != 0) {
        const QString problem = QString::fromLocal8Bit(zip_strerror(archive));
        zip_discard(archive);
        return QStringLiteral("libzip cannot write %1: %2").arg(path, problem);
    }
    return {};
}

} // namespace WorkbookParts
