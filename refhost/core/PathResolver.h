#pragma once

#include <QString>

#include <optional>

namespace RefHost {

// Finds files the way the Windows host would: "\" and "/" both separate folders, and each
// folder or file name matches ignoring case. The host cannot read DWG files, so a block file
// N.dwg is read from the DXF file N.dxf beside it.
class PathResolver
{
public:
    // `path` with every "\" replaced by "/" and runs of separators collapsed.
    static QString normalized(const QString& path);
    // The existing file or folder that `path` names, with its real spelling; nothing when no
    // such entry exists. An exact match wins over a match ignoring case; among several matches
    // ignoring case the first in name order is taken.
    static std::optional<QString> resolve(const QString& path);
    // True when `path` names an existing regular file.
    static bool fileExists(const QString& path);
    // The file a block is read from: for "N.dwg" the file "N.dxf" beside it (either may be
    // spelled in any case); any other path is resolved as it is.
    static std::optional<QString> blockSource(const QString& path);
    // True when `path` is an existing file, or for "N.dwg" when "N.dxf" exists beside it.
    static bool blockFileExists(const QString& path);
};

} // namespace RefHost
