#pragma once

#include <QIcon>
#include <QString>

// The module's icons, drawn from the SVG sources compiled into the module. Each icon carries
// pixmaps for 16 and 32 pixels, so it does not depend on an icon-engine plug-in.
namespace KVIcons {

// `name` is the file name in icons/ without ".svg", e.g. "palette-folder". A name that is not
// compiled in gives a null icon.
QIcon icon(const QString& name);

} // namespace KVIcons
