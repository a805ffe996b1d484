#pragma once

#include "WorkbookError.h"
#include "WorkbookLimits.h"

#include "host/KVString.h"

#include <QHash>

#include <memory>

namespace Xlsx::Internal {
class ZipPackage;
class WorkbookIndex;
class SharedStringTable;
class CellFormats;
class SheetCursor;
struct RawCell;
} // namespace Xlsx::Internal

// The spreadsheet reader: reads the cells of .xlsx and .xlsm workbooks as the texts a
// spreadsheet program shows. The workbook is opened by the constructor and read only; sheets
// are streamed, so memory does not grow with the number of rows.
//
// Row numbers: the header row given to GetColumnIndex is the sheet's row as a person sees it
// (one-based: 11 is the row labelled 11), while the row given to GetValue is zero-based (11 is
// the row labelled 12, the first one below such a header). VerifyRowCount gives the exclusive
// bound of GetValue's rows, which is the number of the sheet's last row. Columns are zero-based
// in both (column A is 0).
//
// Rows are cheapest read in ascending order: the reader keeps the row it is on and the last
// header row asked for, and asking for an earlier row reads the sheet again from the top.
//
// A workbook that cannot be read, or that turns out to be damaged while it is read, makes
// error() tell the file and the problem; from then on every question has an empty answer.
class CIExcel final
{
public:
    explicit CIExcel(const KVString& path, const WorkbookLimits& limits = WorkbookLimits());
    ~CIExcel();
    CIExcel(const CIExcel&) = delete;
    CIExcel& operator=(const CIExcel&) = delete;

    // True when the workbook was opened and nothing has gone wrong since.
    bool isOpen() const { return m_opened && !m_error.isError(); }
    // The first problem met, at opening or later; no error while everything went well.
    const WorkbookError& error() const { return m_error; }
    KVString path() const { return m_error.filePath; }

    // Whether the workbook has a worksheet of that name (compared without regard to case, as
    // spreadsheet programs compare sheet names).
    bool WorkSheetExists(const KVString& sheet) const;
    // The exclusive bound of the zero-based rows of GetValue: the number of the sheet's last
    // row. From the sheet's declared dimension when it declares a range, else counted by
    // reading the sheet once. 0 for a missing or empty sheet.
    int VerifyRowCount(const KVString& sheet);
    // The zero-based column whose cell in row `headerRow` (one-based) holds `title`, both
    // without blanks at their ends and compared exactly; the leftmost such column when the
    // title repeats. -1 when there is none.
    int GetColumnIndex(const KVString& sheet, const KVString& title, int headerRow);
    // The text of the cell at zero-based `row` and `column`; an empty text for a cell that
    // does not exist.
    KVString GetValue(const KVString& sheet, int row, int column);

private:
    // The index of the worksheet called `sheet`, -1 when there is none. The last answer is
    // kept: the same name is asked for with every cell.
    int worksheetIndex(const KVString& sheet) const;
    // The cursor over `sheet`, started; null when the sheet is missing or reading failed.
    Xlsx::Internal::SheetCursor* cursorFor(const KVString& sheet);
    // The cells of one-based `rowNumber` of `sheet`; null when there are none to give.
    const QList<Xlsx::Internal::RawCell>* rowCells(const KVString& sheet, int rowNumber);
    QString cellText(const Xlsx::Internal::RawCell& cell) const;
    void fail(const QString& problem);

    WorkbookLimits m_limits;
    WorkbookError m_error;
    bool m_opened = false;
    std::unique_ptr<Xlsx::Internal::ZipPackage> m_package;
    std::unique_ptr<Xlsx::Internal::WorkbookIndex> m_index;
    std::unique_ptr<Xlsx::Internal::SharedStringTable> m_sharedStrings;
    std::unique_ptr<Xlsx::Internal::CellFormats> m_formats;
    std::unique_ptr<Xlsx::Internal::SheetCursor> m_cursor;
    int m_cursorSheet = -1;
    mutable bool m_lastSheetKnown = false;
    mutable QString m_lastSheetName;
    mutable int m_lastSheetIndex = -1;
    QHash<int, int> m_rowCounts; // sheet index -> VerifyRowCount

    // The last header row asked for: title (trimmed) -> leftmost column.
    int m_headerSheet = -1;
    int m_headerRow = 0;
    QHash<QString, int> m_headerColumns;
};
