#pragma once

#include "WorkbookLimits.h"
#include "XmlPartReader.h"

#include <QList>
#include <QString>

namespace Xlsx::Internal {

class ZipPackage;

// What a cell holds, before it is turned into text.
enum class CellType : quint8 {
    Number,
    NumberText, // a number cell whose value does not read as a number: shown as written
    SharedString,
    InlineString,
    FormulaString, // the cached text result of a formula
    Boolean,
    Error,
    IsoDate,
};

// One cell as stored: its column, style and raw value.
struct RawCell
{
    int column = 0; // zero-based
    int style = 0;
    CellType type = CellType::Number;
    int sharedIndex = -1; // for SharedString
    double number = 0;    // for Number
    QString text;         // the value as written, for the other types
};

// A forward-only cursor over the rows of one sheet part: it streams the XML and holds only
// the row it is on, so memory does not grow with the number of rows. Asking for a row before
// the one it is on starts the stream again from the top.
class SheetCursor final
{
public:
    SheetCursor(ZipPackage& package, const WorkbookLimits& limits, qsizetype sharedStringCount);
    SheetCursor(const SheetCursor&) = delete;
    SheetCursor& operator=(const SheetCursor&) = delete;

    // Starts reading `partName` and reads up to its cells. False when that fails.
    bool start(const QString& partName);
    const QString& partName() const { return m_partName; }

    // The last row of the sheet's declared dimension ("A1:J100" gives 100), or -1 when the
    // sheet declares none, or one that is not a range and so says nothing reliable (some
    // programs always write "A1").
    int declaredLastRow() const { return m_declaredLastRow; }

    // The cells of the row numbered `rowNumber` (one-based), in column order; empty when the
    // sheet has no such row. Null when reading failed (see problem()).
    const QList<RawCell>* row(int rowNumber);

    // Reads on to the end of the sheet without keeping any cells and gives the number of the
    // last row that has cells (0 when none). Meant for a cursor of its own, just started, so
    // that it does not disturb the one that serves the rows. False when reading failed.
    bool scanLastRow(int* lastRow);

    bool failed() const { return !m_problem.isEmpty(); }
    QString problem() const { return m_problem; }

private:
    bool restart();
    // Reads the next row into m_cells; false at the end of the cells or on failure.
    bool readRow(bool keepCells);
    bool readCell(bool keepCells, int rowNumber, int* nextColumn, qsizetype* rowCharacters);
    void fail(const QString& problem);
    QString cellName(int column, int rowNumber) const;

    ZipPackage& m_package;
    WorkbookLimits m_limits;
    qsizetype m_sharedStringCount;
    QString m_partName;
    XmlPartReader m_reader;
    int m_declaredLastRow = -1;

    QList<RawCell> m_cells;
    const QList<RawCell> m_noCells;
    // m_cells belong to row m_currentRow; the rows after m_previousRow and before it have no
    // cells. At the end of the sheet m_currentRow is past every row.
    int m_currentRow = 0;
    int m_previousRow = 0;
    bool m_atEnd = false;
    qint64 m_cellCount = 0;
    QString m_text;
    QString m_problem;
};

} // namespace Xlsx::Internal
