#pragma once

#include "BlockDefinition.h"

#include <QString>

#include <optional>

namespace RefHost {

// Reads a block drawing: a DXF file whose model space holds one symbol (LINE, CIRCLE, ARC,
// LWPOLYLINE, POLYLINE, TEXT, MTEXT and ATTDEF entities; INSERTs of blocks defined in the
// same file are expanded into their geometry). The base point is the drawing's $INSBASE and
// the block is named after the file (its name without the extension).
class DxfBlockReader
{
public:
    struct Result
    {
        std::optional<BlockDefinition> block;
        QString error; // names the file and the problem when `block` is empty
    };

    static Result read(const QString& path);
};

} // namespace RefHost
