#pragma once

#include <QByteArray>
#include <QString>

// A private folder for the inputs that a reader takes by path. Every input is written over the
// previous one of the same name, so a long fuzzing run leaves one file per name behind, and
// the folder is removed when the process ends.
class ScratchFolder final
{
public:
    // The process's folder, created on first use.
    static ScratchFolder& instance();

    // Writes `bytes` to `fileName` in the folder and returns its path; an empty path when the
    // file cannot be written (the caller reports that as a failed check).
    QString write(const QString& fileName, const QByteArray& bytes) const;
    // The path of `fileName` in the folder, whether or not it exists.
    QString path(const QString& fileName) const;
    // Removes `fileName` if it exists.
    void remove(const QString& fileName) const;

private:
    ScratchFolder();
    QString m_folder;
};
