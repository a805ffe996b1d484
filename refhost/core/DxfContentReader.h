#pragma once

#include "DxfContent.h"
#include "DxfTextCodec.h"

#include <QString>

#include <optional>

namespace RefHost {

class DxfGroupFile;

// Turns a checked DXF file into DxfContent. dxflib interprets the header variables, the layer
// table, the blocks and the entities (LINE, CIRCLE, ARC, LWPOLYLINE, POLYLINE, TEXT, MTEXT,
// INSERT, ATTRIB, and their extended data); it is given only those records, rewritten where
// its parser relies on well-formed input (vertex counts, line lengths). ATTDEF, which dxflib
// does not read, is read here from the checked groups. Paper space and other entity types
// are left out.
class DxfContentReader
{
public:
    static std::optional<DxfContent> read(const DxfGroupFile& file, QString* error);

    // How the file's texts are encoded, from its header.
    static DxfTextCodec codecOf(const DxfGroupFile& file);

    // The longest value given to dxflib, which reads lines into a fixed buffer.
    static constexpr int MaxValueBytes = 1000;
    // Coordinates and sizes beyond this are refused (they only come from damaged files).
    static constexpr double MaxCoordinate = 1.0e12;
};

} // namespace RefHost
