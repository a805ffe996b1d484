#include "DxfBlockReader.h"

#include "DxfBlockExpander.h"
#include "DxfContentReader.h"
#include "DxfGroupFile.h"

#include <QFileInfo>

namespace RefHost {

DxfBlockReader::Result DxfBlockReader::read(const QString& path)
{
    Result result;
    const std::optional<DxfGroupFile> file = DxfGroupFile::load(path, &result.error);
    if (!file)
        return result;
    const std::optional<DxfContent> content = DxfContentReader::read(*file, &result.error);
    if (!content)
        return result;

    BlockDefinition block;
    block.name = QFileInfo(path).completeBaseName();
    block.basePoint = content->insertionBase;
    block.geometry = content->modelSpace.geometry;
    block.attributes = content->modelSpace.attributeDefinitions;
    DxfBlockExpander expander(*content, *file);
    if (!expander.expand(content->modelSpace.inserts, QTransform(), block.geometry)) {
        result.error = expander.error();
        return result;
    }
    if (block.geometry.isEmpty() && block.attributes.isEmpty()) {
        result.error = file->error(QStringLiteral("the model space holds no lines, arcs, circles, "
                                                  "polylines, texts or attribute definitions"));
        return result;
    }
    result.block = block;
    return result;
}

} // namespace RefHost
