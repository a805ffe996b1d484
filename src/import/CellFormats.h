#pragma once

#include "WorkbookLimits.h"

#include <QList>
#include <QString>

namespace Xlsx::Internal {

class ZipPackage;

// Which cell styles show a number as a date. A cell's "s" attribute is an index into the
// workbook's cell formats; each names a number format, built in or defined in the styles part.
class CellFormats final
{
public:
    // Reads the styles part; returns false and sets `problem` when it cannot be read.
    bool load(ZipPackage& package, const QString& partName, const WorkbookLimits& limits,
              QString* problem);

    // True when the cell style at `styleIndex` shows numbers as dates. Unknown indexes are not
    // dates.
    bool isDateStyle(int styleIndex) const
    {
        return styleIndex >= 0 && styleIndex < m_dateStyles.size() && m_dateStyles[styleIndex];
    }

    // True for the built-in date formats 14 to 22 and for format codes that show a day, a
    // month or a year ("d", "m", "y" outside quoted text, escapes and bracketed parts).
    static bool isDateFormat(int numberFormatId, const QString& formatCode);

private:
    QList<bool> m_dateStyles;
};

} // namespace Xlsx::Internal
