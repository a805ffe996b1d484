#pragma once

#include <QString>

// Checks of the files a verb is given, before it reads or writes anything: each answers empty
// when the file will do, otherwise the problem starting with the path.
namespace FileChecks {

// `path` names a file that can be read.
QString readable(const QString& path);
// A file can be written at `path`: it is not a folder and its folder exists.
QString writable(const QString& path);

} // namespace FileChecks
