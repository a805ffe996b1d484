#include "CIExcel.h"

#include "CellFormats.h"
#include "CellText.h"
#include "SharedStringTable.h"
#include "SheetCursor.h"
#include "WorkbookIndex.h"
#include "ZipPackage.h"

#include <QDate>

#include <algorithm>

using namespace Xlsx::Internal;

CIExcel::CIExcel(const KVString& path, const WorkbookLimits& limits)
    : m_limits(limits), m_package(std::make_unique<ZipPackage>(limits)),
      m_index(std::make_unique<WorkbookIndex>()),
      m_sharedStrings(std::make_unique<SharedStringTable>()),
      m_formats(std::make_unique<CellFormats>())
{
    m_error.filePath = path;
    QString problem = m_package->open(path);
    if (problem.isEmpty() && m_index->load(*m_package, m_limits, &problem) &&
        (m_index->sharedStringsPart().isEmpty() ||
         m_sharedStrings->load(*m_package, m_index->sharedStringsPart(), m_limits, &problem)) &&
        (m_index->stylesPart().isEmpty() ||
         m_formats->load(*m_package, m_index->stylesPart(), m_limits, &problem))) {
        m_opened = true;
        return;
    }
    fail(problem);
}

CIExcel::~CIExcel() = default;

void CIExcel::fail(const QString& problem)
{
    if (!m_error.isError())
        m_error.problem = problem;
}

int CIExcel::worksheetIndex(const KVString& sheet) const
{
    if (!isOpen())
        return -1;
    if (!m_lastSheetKnown || sheet != m_lastSheetName) {
        const int index = m_index->findSheet(sheet);
        m_lastSheetIndex = index >= 0 && m_index->sheets()[index].isWorksheet ? index : -1;
        m_lastSheetName = sheet;
        m_lastSheetKnown = true;
    }
    return m_lastSheetIndex;
}

bool CIExcel::WorkSheetExists(const KVString& sheet) const
{
    return worksheetIndex(sheet) >= 0;
}

SheetCursor* CIExcel::cursorFor(const KVString& sheet)
{
    const int index = worksheetIndex(sheet);
    if (index < 0)
        return nullptr;
    if (m_cursor && m_cursorSheet == index)
        return m_cursor.get();
    const SheetEntry& entry = m_index->sheets()[index];
    if (!entry.problem.isEmpty()) {
        fail(entry.problem);
        return nullptr;
    }
    m_cursor = std::make_unique<SheetCursor>(*m_package, m_limits, m_sharedStrings->size());
    m_cursorSheet = index;
    if (!m_cursor->start(entry.partName)) {
        fail(m_cursor->problem());
        return nullptr;
    }
    return m_cursor.get();
}

const QList<RawCell>* CIExcel::rowCells(const KVString& sheet, int rowNumber)
{
    if (rowNumber < 1 || rowNumber > m_limits.maxRow)
        return nullptr;
    SheetCursor* cursor = cursorFor(sheet);
    if (!cursor)
        return nullptr;
    const QList<RawCell>* cells = cursor->row(rowNumber);
    if (!cells)
        fail(cursor->problem());
    return cells;
}

int CIExcel::VerifyRowCount(const KVString& sheet)
{
    SheetCursor* cursor = cursorFor(sheet);
    if (!cursor)
        return 0;
    const auto known = m_rowCounts.constFind(m_cursorSheet);
    if (known != m_rowCounts.cend())
        return *known;
    int lastRow = cursor->declaredLastRow();
    if (lastRow < 0) {
        // No dimension to trust: count in a pass of its own, leaving the cursor where it is.
        SheetCursor scan(*m_package, m_limits, m_sharedStrings->size());
        if (!scan.start(cursor->partName()) || !scan.scanLastRow(&lastRow)) {
            fail(scan.problem());
            return 0;
        }
    }
    m_rowCounts.insert(m_cursorSheet, lastRow);
    return lastRow;
}

int CIExcel::GetColumnIndex(const KVString& sheet, const KVString& title, int headerRow)
{
    const int sheetIndex = worksheetIndex(sheet);
    if (sheetIndex < 0)
        return -1;
    if (sheetIndex != m_headerSheet || headerRow != m_headerRow) {
        const QList<RawCell>* cells = rowCells(sheet, headerRow);
        if (!cells)
            return -1;
        m_headerColumns.clear();
        for (const RawCell& cell : *cells) {
            const QString text = cellText(cell).trimmed();
            if (!text.isEmpty() && !m_headerColumns.contains(text))
                m_headerColumns.insert(text, cell.column);
        }
        m_headerSheet = sheetIndex;
        m_headerRow = headerRow;
    }
    return m_headerColumns.value(title.trimmed(), -1);
}

KVString CIExcel::GetValue(const KVString& sheet, int row, int column)
{
    if (row < 0 || column < 0 || !isOpen())
        return {};
    const QList<RawCell>* cells = rowCells(sheet, row + 1);
    if (!cells)
        return {};
    const auto found =
        std::lower_bound(cells->cbegin(), cells->cend(), column,
                         [](const RawCell& cell, int wanted) { return cell.column < wanted; });
    if (found == cells->cend() || found->column != column)
        return {};
    return cellText(*found);
}

QString CIExcel::cellText(const RawCell& cell) const
{
    switch (cell.type) {
    case CellType::SharedString:
        return m_sharedStrings->at(cell.sharedIndex);
    case CellType::Boolean: {
        const QString value = cell.text.trimmed();
        if (value == u"1" || value.compare(u"true", Qt::CaseInsensitive) == 0)
            return QStringLiteral("TRUE");
        if (value == u"0" || value.compare(u"false", Qt::CaseInsensitive) == 0)
            return QStringLiteral("FALSE");
        return cell.text;
    }
    case CellType::IsoDate: {
        const QString day = cell.text.left(10);
        return QDate::fromString(day, Qt::ISODate).isValid() ? day : cell.text;
    }
    case CellType::Number:
        if (m_formats->isDateStyle(cell.style)) {
            const QString date = CellText::formatDate(cell.number, m_index->date1904());
            if (!date.isEmpty())
                return date;
        }
        return CellText::formatGeneral(cell.number);
    case CellType::NumberText:
    case CellType::InlineString:
    case CellType::FormulaString:
    case CellType::Error:
        break;
    }
    return cell.text;
}
