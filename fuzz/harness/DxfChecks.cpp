// Checks of the reference host's DXF readers: the block drawing reader and the drawing reader.
#include "ReaderChecks.h"
#include "ScratchFile.h"

#include "DxfBlockReader.h"
#include "DxfDrawingReader.h"

#include <QFileInfo>

namespace ReaderChecks {

namespace {

// Either a result or an error, and an error names the file it is about.
template <typename Result>
QString checkOutcome(const Result& result, bool hasValue, const QString& path)
{
    if (hasValue == !result.error.isEmpty())
        return QStringLiteral("the reader answers both or neither of a result and an error");
    if (!hasValue && !result.error.contains(QFileInfo(path).fileName()))
        return QStringLiteral("the error does not name the file: ") + result.error;
    if (!hasValue)
        recordOutcome(QStringLiteral("error: ") + result.error);
    return {};
}

} // namespace

QString dxfBlock(const QByteArray& input)
{
    const QString path = ScratchFolder::instance().write(QStringLiteral("BLOCK_INPUT.dxf"), input);
    if (path.isEmpty())
        return QStringLiteral("the input could not be written to a scratch file");
    const RefHost::DxfBlockReader::Result result = RefHost::DxfBlockReader::read(path);
    if (QString problem = checkOutcome(result, result.block.has_value(), path); !problem.isEmpty())
        return problem;
    if (!result.block)
        return {};
    if (result.block->name != u"BLOCK_INPUT")
        return QStringLiteral("the block is not named after its file: ") + result.block->name;
    recordOutcome(QStringLiteral("block with %1 shapes and %2 attribute definitions")
                      .arg(result.block->geometry.size())
                      .arg(result.block->attributes.size()));
    return {};
}

QString dxfDrawing(const QByteArray& input)
{
    const QString path = ScratchFolder::instance().write(QStringLiteral("drawing.dxf"), input);
    if (path.isEmpty())
        return QStringLiteral("the input could not be written to a scratch file");
    const RefHost::DxfDrawingReader::Result result = RefHost::DxfDrawingReader::read(path);
    if (QString problem = checkOutcome(result, result.drawing.has_value(), path);
        !problem.isEmpty() || !result.drawing) {
        return problem;
    }
    recordOutcome(QStringLiteral("drawing read"));
    return {};
}

} // namespace ReaderChecks
