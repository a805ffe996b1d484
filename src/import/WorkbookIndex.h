#pragma once

#include "WorkbookLimits.h"

#include <QHash>
#include <QList>
#include <QString>

namespace Xlsx::Internal {

class ZipPackage;

// One sheet listed by the workbook.
struct SheetEntry
{
    QString name;
    // The part holding the sheet's cells; empty when the sheet cannot be read.
    QString partName;
    // Why the sheet cannot be read (a dangling or wrong reference); empty when it can.
    QString problem;
    // False for chart sheets and dialog sheets, which hold no cells. A sheet whose reference
    // is broken counts as a worksheet, so that reading it reports the damage.
    bool isWorksheet = true;
};

// The map of a workbook package: which part is the workbook, which sheets it lists under which
// names and where their cells are, and where the shared strings and the styles are. It is
// found the way the package conventions prescribe: the content types, the package
// relationships to the workbook part, then the workbook's own relationships.
class WorkbookIndex final
{
public:
    // Returns false and sets `problem` when the package is not a readable workbook.
    bool load(ZipPackage& package, const WorkbookLimits& limits, QString* problem);

    const QList<SheetEntry>& sheets() const { return m_sheets; }
    // The first sheet whose name equals `name` without regard to case (sheet names are unique
    // in that sense); -1 when there is none.
    int findSheet(const QString& name) const;
    QString workbookPart() const { return m_workbookPart; }
    QString sharedStringsPart() const { return m_sharedStringsPart; }
    QString stylesPart() const { return m_stylesPart; }
    // Dates count from 1904 instead of 1900.
    bool date1904() const { return m_date1904; }

private:
    struct Relationship
    {
        QString id;
        QString type;
        QString target; // a part name, resolved against the source part
        bool external = false;
    };

    bool readContentTypes(ZipPackage& package, QString* problem);
    bool readRelationships(ZipPackage& package, const QString& sourcePart,
                           QList<Relationship>* relationships, QString* problem);
    bool findWorkbookPart(ZipPackage& package, QString* problem);
    bool readWorkbook(ZipPackage& package, QList<QPair<QString, QString>>* sheetIds,
                      QString* problem);
    QString contentType(const QString& partName) const;

    WorkbookLimits m_limits;
    QHash<QString, QString> m_defaultTypes;  // extension (lower case) -> content type
    QHash<QString, QString> m_overrideTypes; // part name (lower case) -> content type
    QString m_workbookPart;
    QString m_sharedStringsPart;
    QString m_stylesPart;
    bool m_date1904 = false;
    QList<SheetEntry> m_sheets;
};

// The part name that `target` of a relationship held by `sourcePart` points to, without a
// leading "/"; empty when it points outside the package.
QString resolvePartName(const QString& sourcePart, const QString& target);

} // namespace Xlsx::Internal
