#include "KVIcons.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

// The resources live in a static library: registering them from the function that reads them
// keeps the linker from dropping them.
static void initResources()
{
    Q_INIT_RESOURCE(kvinsertauto);
}

namespace KVIcons {

QIcon icon(const QString& name)
{
    static const bool registered = (initResources(), true);
    Q_UNUSED(registered);
    QSvgRenderer renderer(QStringLiteral(":/kvinsertauto/icons/%1.svg").arg(name));
    if (!renderer.isValid())
        return {};
    QIcon result;
    for (int side : {16, 32}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        renderer.render(&painter);
        painter.end();
        result.addPixmap(pixmap);
    }
    return result;
}

} // namespace KVIcons
