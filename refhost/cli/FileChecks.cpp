#include "FileChecks.h"

#include <QFile>
#include <QFileInfo>

namespace FileChecks {

QString readable(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return path + QStringLiteral(": no such file");
    if (info.isDir())
        return path + QStringLiteral(": is a folder, not a file");
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return path + QStringLiteral(": cannot be read: ") + file.errorString();
    return {};
}

QString writable(const QString& path)
{
    const QFileInfo info(path);
    if (info.isDir())
        return path + QStringLiteral(": is a folder, not a file");
    const QFileInfo folder(info.absolutePath());
    if (!folder.isDir())
        return path + QStringLiteral(": the folder %1 does not exist").arg(folder.filePath());
    return {};
}

} // namespace FileChecks
