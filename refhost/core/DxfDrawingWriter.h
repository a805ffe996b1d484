#pragma once

#include <QString>

namespace RefHost {

class Drawing;

// Writes a whole drawing as an ASCII DXF file (AutoCAD 2000 format, AC1015) through dxflib:
// one layer per page (frozen state kept), the block definitions with their geometry and
// ATTDEFs, one INSERT with ATTRIBs per block reference, the drawing variables in the objects
// section. How pages, titles and variables are kept is described in docs/dxf.md; the drawing
// reader reads all of it back.
//
// The file is written to a temporary file in the same folder and renamed over `path` only when
// complete, so a failure never leaves a half-written or damaged file behind.
class DxfDrawingWriter
{
public:
    // Returns an empty string on success, otherwise a message naming the file and the problem.
    static QString write(const Drawing& drawing, const QString& path);

    // The DXF text that write() would store (for tests and for callers that keep it elsewhere).
    // `error` receives the problem when the drawing cannot be written.
    static QByteArray toDxf(const Drawing& drawing, QString* error);
};

} // namespace RefHost
