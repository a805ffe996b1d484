#include "SheetCursor.h"

#include "CellText.h"
#include "ZipPackage.h"

#include "host/Translate.h"

#include <algorithm>
#include <climits>

namespace Xlsx::Internal {

namespace {

CellType cellType(QStringView t)
{
    if (t.isEmpty() || hasName(t, u"n"))
        return CellType::Number;
    if (hasName(t, u"s"))
        return CellType::SharedString;
    if (hasName(t, u"inlineStr"))
        return CellType::InlineString;
    if (hasName(t, u"str"))
        return CellType::FormulaString;
    if (hasName(t, u"b"))
        return CellType::Boolean;
    if (hasName(t, u"e"))
        return CellType::Error;
    if (hasName(t, u"d"))
        return CellType::IsoDate;
    return CellType::FormulaString; // unknown types: show the value as written
}

QString columnName(int column)
{
    QString name;
    for (int n = column + 1; n > 0; n = (n - 1) / 26)
        name.prepend(QChar(u'A' + (n - 1) % 26));
    return name;
}

} // namespace

SheetCursor::SheetCursor(ZipPackage& package, const WorkbookLimits& limits,
                         qsizetype sharedStringCount)
    : m_package(package), m_limits(limits), m_sharedStringCount(sharedStringCount)
{}

void SheetCursor::fail(const QString& problem)
{
    if (m_problem.isEmpty())
        m_problem = problem;
    m_reader.fail(problem);
}

QString SheetCursor::cellName(int column, int rowNumber) const
{
    return columnName(column) + QString::number(rowNumber);
}

bool SheetCursor::start(const QString& partName)
{
    m_partName = partName;
    m_declaredLastRow = -1;
    return restart();
}

bool SheetCursor::restart()
{
    if (failed())
        return false;
    m_cells.clear();
    m_currentRow = 0;
    m_previousRow = 0;
    m_atEnd = false;
    m_cellCount = 0;
    if (!m_reader.open(m_package, m_partName)) {
        fail(m_reader.problem());
        return false;
    }
    QXmlStreamReader& xml = m_reader.xml();
    // Up to the start of the cells, noting the declared dimension on the way.
    while (m_reader.readNext()) {
        if (!xml.isStartElement())
            continue;
        const QStringView name = xml.name();
        if (hasName(name, u"sheetData"))
            return true;
        if (hasName(name, u"dimension")) {
            const QStringView ref = attributeValue(xml.attributes(), u"ref");
            const qsizetype colon = ref.indexOf(u':');
            int firstColumn = 0, firstRow = 0, lastColumn = 0, lastRow = 0;
            m_declaredLastRow = -1;
            if (colon > 0 &&
                CellText::parseCellReference(ref.left(colon), &firstColumn, &firstRow) &&
                CellText::parseCellReference(ref.mid(colon + 1), &lastColumn, &lastRow) &&
                firstRow >= 1 && lastRow >= firstRow && lastRow <= m_limits.maxRow) {
                m_declaredLastRow = lastRow;
            }
        }
    }
    if (m_reader.failed()) {
        fail(m_reader.problem());
        return false;
    }
    m_atEnd = true; // a sheet without cells
    m_currentRow = INT_MAX;
    return true;
}

const QList<RawCell>* SheetCursor::row(int rowNumber)
{
    if (failed())
        return nullptr;
    if (rowNumber == m_currentRow)
        return &m_cells;
    if (rowNumber > m_previousRow && rowNumber < m_currentRow)
        return &m_noCells;
    if (rowNumber <= m_previousRow && !restart())
        return nullptr;
    while (m_currentRow < rowNumber) {
        if (!readRow(true))
            break;
    }
    if (failed())
        return nullptr;
    return rowNumber == m_currentRow ? &m_cells : &m_noCells;
}

bool SheetCursor::scanLastRow(int* lastRow)
{
    int last = 0;
    while (readRow(false)) {
        if (!m_cells.isEmpty())
            last = m_currentRow;
    }
    *lastRow = last;
    return !failed();
}

bool SheetCursor::readRow(bool keepCells)
{
    if (m_atEnd || failed())
        return false;
    QXmlStreamReader& xml = m_reader.xml();
    m_cells.clear();
    while (m_reader.readNext()) {
        if (xml.isEndElement()) {
            // The end of sheetData: no more rows.
            break;
        }
        if (!xml.isStartElement())
            continue;
        if (!hasName(xml.name(), u"row")) {
            if (!m_reader.skipElement())
                break;
            continue;
        }

        const QStringView r = attributeValue(xml.attributes(), u"r");
        int rowNumber = m_currentRow + 1;
        if (!r.isEmpty()) {
            rowNumber = CellText::parseIndex(r, INT_MAX);
            if (rowNumber <= 0) {
                fail(kvTr("part %1 holds a row with the invalid number \"%2\"")
                         .arg(m_partName, r.toString()));
                return false;
            }
        }
        if (rowNumber > m_limits.maxRow) {
            fail(kvTr("part %1 holds row %2, beyond the last row %3 a sheet can have")
                     .arg(m_partName)
                     .arg(rowNumber)
                     .arg(m_limits.maxRow));
            return false;
        }
        if (rowNumber <= m_currentRow) {
            fail(kvTr("part %1 holds row %2 after row %3; rows must come in ascending order")
                     .arg(m_partName)
                     .arg(rowNumber)
                     .arg(m_currentRow));
            return false;
        }

        int nextColumn = 0;
        qsizetype rowCharacters = 0;
        bool ordered = true;
        int lastColumn = -1;
        while (m_reader.readNext()) {
            if (xml.isEndElement())
                break; // the end of the row
            if (!xml.isStartElement())
                continue;
            if (!hasName(xml.name(), u"c")) {
                if (!m_reader.skipElement())
                    break;
                continue;
            }
            if (!readCell(keepCells, rowNumber, &nextColumn, &rowCharacters))
                break;
            if (nextColumn - 1 <= lastColumn)
                ordered = false;
            lastColumn = nextColumn - 1;
        }
        if (m_reader.failed()) {
            fail(m_reader.problem());
            return false;
        }
        if (!ordered) {
            std::stable_sort(
                m_cells.begin(), m_cells.end(),
                [](const RawCell& a, const RawCell& b) { return a.column < b.column; });
        }
        m_previousRow = m_currentRow;
        m_currentRow = rowNumber;
        return true;
    }
    if (m_reader.failed()) {
        fail(m_reader.problem());
        return false;
    }
    m_atEnd = true;
    m_previousRow = m_currentRow;
    m_currentRow = INT_MAX;
    m_cells.clear();
    return false;
}

bool SheetCursor::readCell(bool keepCells, int rowNumber, int* nextColumn, qsizetype* rowCharacters)
{
    QXmlStreamReader& xml = m_reader.xml();
    if (++m_cellCount > m_limits.maxCells) {
        fail(kvTr("part %1 holds more than %2 cells").arg(m_partName).arg(m_limits.maxCells));
        return false;
    }
    const QXmlStreamAttributes attributes = xml.attributes();
    RawCell cell;
    cell.column = *nextColumn;
    QStringView type;
    for (const QXmlStreamAttribute& attribute : attributes) {
        const QStringView name = attribute.name();
        if (hasName(name, u"r")) {
            int referencedRow = 0;
            if (!CellText::parseCellReference(attribute.value(), &cell.column, &referencedRow)) {
                fail(kvTr("part %1 holds a cell with the invalid reference \"%2\" in row %3")
                         .arg(m_partName, attribute.value().toString())
                         .arg(rowNumber));
                return false;
            }
        } else if (hasName(name, u"t")) {
            type = attribute.value();
        } else if (hasName(name, u"s")) {
            cell.style = CellText::parseIndex(attribute.value(), INT_MAX);
        }
    }
    if (cell.column >= m_limits.maxColumn) {
        fail(kvTr("part %1 holds a cell in column %2 of row %3, beyond the last column %4 a "
                  "sheet can have")
                 .arg(m_partName)
                 .arg(cell.column + 1)
                 .arg(rowNumber)
                 .arg(m_limits.maxColumn));
        return false;
    }
    *nextColumn = cell.column + 1;
    cell.type = cellType(type);

    if (!keepCells) {
        // Counting rows only: a cell is a cell, whatever it holds.
        if (m_cells.isEmpty())
            m_cells.append(cell);
        return m_reader.skipElement();
    }

    bool hasValue = false;
    while (m_reader.readNext()) {
        if (xml.isEndElement())
            break; // the end of the cell
        if (!xml.isStartElement())
            continue;
        const QStringView name = xml.name();
        bool ok = true;
        if (hasName(name, u"v")) {
            ok = m_reader.readElementText(&m_text, m_limits.maxStringLength);
            hasValue = ok;
        } else if (hasName(name, u"is")) {
            ok = m_reader.readStringItem(&m_text, m_limits.maxStringLength);
            hasValue = ok;
            if (cell.type == CellType::Number)
                cell.type = CellType::InlineString;
        } else {
            ok = m_reader.skipElement(); // formulas and anything else
        }
        if (!ok)
            return false;
    }
    if (m_reader.failed())
        return false;
    if (!hasValue)
        return true; // a styled but empty cell, or a formula without a cached value

    if (cell.type == CellType::SharedString) {
        cell.sharedIndex = CellText::parseIndex(QStringView(m_text).trimmed(), INT_MAX);
        if (cell.sharedIndex < 0 || cell.sharedIndex >= m_sharedStringCount) {
            fail(kvTr("cell %1 of part %2 refers to shared string \"%3\", but the workbook has "
                      "%4 shared strings")
                     .arg(cellName(cell.column, rowNumber), m_partName, m_text)
                     .arg(m_sharedStringCount));
            return false;
        }
    } else if (cell.type == CellType::Number) {
        if (!CellText::parseNumber(m_text, &cell.number)) {
            cell.type = CellType::NumberText;
            cell.text = QString(m_text.constData(), m_text.size());
        }
    } else {
        *rowCharacters += m_text.size();
        if (*rowCharacters > m_limits.maxRowCharacters) {
            fail(kvTr("row %1 of part %2 holds more than %3 characters")
                     .arg(rowNumber)
                     .arg(m_partName)
                     .arg(m_limits.maxRowCharacters));
            return false;
        }
        // A copy of its own, so that m_text keeps its buffer for the next cell.
        cell.text = QString(m_text.constData(), m_text.size());
    }
    m_cells.append(std::move(cell));
    return true;
}

} // namespace Xlsx::Internal
