#include "ScratchFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <memory>

namespace {

// Kept alive until exit so that the folder is removed at the end of the process.
std::unique_ptr<QTemporaryDir>& temporaryDir()
{
    static std::unique_ptr<QTemporaryDir> dir;
    return dir;
}

} // namespace

ScratchFolder::ScratchFolder()
{
    temporaryDir() =
        std::make_unique<QTemporaryDir>(QDir::tempPath() + QStringLiteral("/kv-fuzz-XXXXXX"));
    m_folder = temporaryDir()->isValid() ? temporaryDir()->path() : QDir::tempPath();
}

ScratchFolder& ScratchFolder::instance()
{
    static ScratchFolder folder;
    return folder;
}

QString ScratchFolder::path(const QString& fileName) const
{
    return m_folder + u'/' + fileName;
}

QString ScratchFolder::write(const QString& fileName, const QByteArray& bytes) const
{
    const QString filePath = path(fileName);
    QFile file(filePath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return {};
    if (file.write(bytes) != bytes.size())
        return {};
    file.close();
    return file.error() == QFileDevice::NoError ? filePath : QString();
}

void ScratchFolder::remove(const QString& fileName) const
{
    QFile::remove(path(fileName));
}
