// Checks of the workbook reader, asked what the import asks: does "Sheet1" exist, how many rows
// it has, which columns hold the titles of row 11, and the cells of the rows below.
#include "ReaderChecks.h"
#include "ScratchFile.h"
#include "WorkbookParts.h"

#include "import/CIExcel.h"

#include <QFileInfo>

#include <algorithm>

namespace ReaderChecks {

namespace {

const QString kSheet = QStringLiteral("Sheet1");
constexpr int kHeaderRow = 11;
// Rows read below the header; enough for every branch of the row reader, few enough that one
// input stays fast even when the sheet declares a million rows.
constexpr int kMaxRowsRead = 200;
// Columns read in every row besides those found by title.
constexpr int kPlainColumns = 6;

// The column titles of the example settings, and two that no sheet is likely to hold.
const QStringList kTitles = {QStringLiteral("ITEM"),         QStringLiteral("TAG"),
                             QStringLiteral("DESCRIPTION"),  QStringLiteral("TYPE"),
                             QStringLiteral("MANUFACTURER"), QStringLiteral("ORDER_NO"),
                             QStringLiteral("SECTION"),      QStringLiteral("PROJECT"),
                             QStringLiteral(" TAG "),        QStringLiteral("NO SUCH TITLE")};

// Lower than the reader's defaults so that one input costs little; the checks are about the
// reader's logic, and the defaults themselves are tested on real hostile workbooks.
WorkbookLimits fuzzingLimits()
{
    WorkbookLimits limits;
    limits.maxPartBytes = qint64(4) * 1024 * 1024;
    limits.maxTotalBytes = qint64(16) * 1024 * 1024;
    limits.maxMarkupRunBytes = qint64(1) * 1024 * 1024;
    limits.maxCells = qint64(256) * 1024;
    limits.maxStringLength = 64 * 1024;
    limits.maxRowCharacters = qsizetype(1) * 1024 * 1024;
    limits.maxSharedStrings = 64 * 1024;
    limits.maxSharedStringCharacters = qsizetype(4) * 1024 * 1024;
    limits.maxListEntries = 4096;
    return limits;
}

// A reader that met an error names the file and, from then on, answers every question empty.
QString checkFailedReader(CIExcel& excel, const QString& path)
{
    const WorkbookError& error = excel.error();
    recordOutcome(QStringLiteral("error: ") + error.problem);
    if (!error.isError())
        return QStringLiteral("the workbook is not open, but there is no error");
    if (error.filePath != path || !error.message().contains(QFileInfo(path).fileName()))
        return QStringLiteral("the error does not name the file: ") + error.message();
    if (excel.isOpen() || excel.WorkSheetExists(kSheet) || excel.VerifyRowCount(kSheet) != 0 ||
        excel.GetColumnIndex(kSheet, kTitles.first(), kHeaderRow) != -1 ||
        !excel.GetValue(kSheet, kHeaderRow, 0).isEmpty()) {
        return QStringLiteral("after the error \"%1\" the reader still answers").arg(error.problem);
    }
    return {};
}

QString checkWorkbookFile(const QString& path)
{
    const WorkbookLimits limits = fuzzingLimits();
    recordOutcome(QString());
    CIExcel excel(path, limits);
    if (!excel.isOpen())
        return checkFailedReader(excel, path);

    const bool exists = excel.WorkSheetExists(kSheet);
    if (excel.WorkSheetExists(kSheet.toUpper()) != exists)
        return QStringLiteral("sheet names are compared with regard to case");
    const int rowCount = excel.VerifyRowCount(kSheet);
    if (excel.error())
        return checkFailedReader(excel, path);
    if (rowCount < 0 || rowCount > limits.maxRow)
        return QStringLiteral("VerifyRowCount answers %1").arg(rowCount);
    if (!exists && rowCount != 0)
        return QStringLiteral("VerifyRowCount answers %1 for a missing sheet").arg(rowCount);
    if (excel.VerifyRowCount(kSheet) != rowCount)
        return QStringLiteral("VerifyRowCount changes its answer");

    QList<int> columns;
    for (int column = 0; column < kPlainColumns; ++column)
        columns.append(column);
    int titlesFound = 0;
    for (const QString& title : kTitles) {
        const int column = excel.GetColumnIndex(kSheet, title, kHeaderRow);
        if (excel.error())
            return checkFailedReader(excel, path);
        if (column < -1 || column >= limits.maxColumn)
            return QStringLiteral("GetColumnIndex answers %1 for \"%2\"").arg(column).arg(title);
        if (column >= 0 && !exists)
            return QStringLiteral("GetColumnIndex finds \"%1\" in a missing sheet").arg(title);
        if (column >= 0)
            ++titlesFound;
        if (column >= 0 && !columns.contains(column))
            columns.append(column);
    }

    // The first data cell, read again at the end: going back to an earlier row reads the
    // sheet again from the top and must give the same text.
    const QString firstValue = excel.GetValue(kSheet, kHeaderRow, columns.last());
    const int lastRow = std::min(rowCount, kHeaderRow + kMaxRowsRead);
    for (int row = kHeaderRow; row < lastRow; ++row) {
        for (const int column : columns) {
            const QString value = excel.GetValue(kSheet, row, column);
            if (excel.error())
                return checkFailedReader(excel, path);
            if (value.size() > limits.maxStringLength)
                return QStringLiteral("a cell text of %1 characters").arg(value.size());
        }
    }
    const QString again = excel.GetValue(kSheet, kHeaderRow, columns.last());
    if (excel.error())
        return checkFailedReader(excel, path);
    if (again != firstValue)
        return QStringLiteral("reading a row again gives \"%1\" instead of \"%2\"")
            .arg(again, firstValue);
    // Rows before the first one and past the end are empty, not errors.
    if (!excel.GetValue(kSheet, -1, 0).isEmpty() || !excel.GetValue(kSheet, 0, -1).isEmpty())
        return QStringLiteral("a negative row or column gives a text");
    recordOutcome(exists ? QStringLiteral("workbook open, Sheet1 with %1 rows, %2 titles found")
                               .arg(rowCount)
                               .arg(titlesFound)
                         : QStringLiteral("workbook open, no Sheet1"));
    return {};
}

} // namespace

QString workbook(const QByteArray& input)
{
    const QString path = ScratchFolder::instance().write(QStringLiteral("input.xlsx"), input);
    if (path.isEmpty())
        return QStringLiteral("the input could not be written to a scratch file");
    return checkWorkbookFile(path);
}

QString workbookParts(const QByteArray& input)
{
    const QString path = ScratchFolder::instance().path(QStringLiteral("parts.xlsx"));
    if (const QString problem = WorkbookParts::writePackage(WorkbookParts::parse(input), path);
        !problem.isEmpty()) {
        // libzip refusing a package is no fault of the reader; the input is simply not used.
        recordOutcome(QStringLiteral("not packaged: ") + problem);
        return {};
    }
    return checkWorkbookFile(path);
}

} // namespace ReaderChecks
