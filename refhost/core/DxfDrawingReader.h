#pragma once

#include "Drawing.h"

#include <QString>

#include <optional>

namespace RefHost {

// Reads a drawing back from a DXF file written by DxfDrawingWriter: pages (from the layers and
// their page records), current layer, block definitions, block references with their
// attributes, component keys and associated components, and the drawing variables.
//
// Other DXF files are read as far as they fit the model: layers named GROUP$N become pages when
// the file has no page records, INSERTs in model space become block references (their scale
// is not kept) and nested blocks are expanded into their parents' geometry.
class DxfDrawingReader
{
public:
    struct Result
    {
        std::optional<Drawing> drawing;
        QString error; // names the file and the problem when `drawing` is empty
    };

    static Result read(const QString& path);
};

} // namespace RefHost
