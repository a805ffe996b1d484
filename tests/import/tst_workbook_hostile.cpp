#include "import/CIExcel.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTest>

// Damaged and hostile workbooks: each gives an error that names the file and the problem,
// without crashing, hanging or using unbounded memory, and the reader then answers nothing.
class tst_workbook_hostile : public QObject
{
    Q_OBJECT

private slots:
    void refused_data();
    void refused();
    void limits_data();
    void limits();
    void missingFile();
    void defaultLimits();
    void errorMessageNamesFileAndProblem();
    void nothingAnsweredAfterAnError();
};

namespace {

QString dataFile(const QString& name)
{
    return QStringLiteral(KV_TEST_DATA_DIR "/xlsx/") + name;
}

const QString kSheet = QStringLiteral("Sheet1");

// Asks what the importer asks, so that problems found only while reading come out too.
void readLikeTheImporter(CIExcel& excel)
{
    if (!excel.WorkSheetExists(kSheet))
        return;
    const int rows = excel.VerifyRowCount(kSheet);
    excel.GetColumnIndex(kSheet, QStringLiteral("ITEM"), 1);
    for (int row = 0; row < qMin(rows, 100); ++row) {
        for (int column = 0; column < 3; ++column)
            excel.GetValue(kSheet, row, column);
    }
}

} // namespace

void tst_workbook_hostile::refused_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("problem"); // a part of the expected problem text
    QTest::addColumn<bool>("failsAtOpening");

    QTest::newRow("not a zip") << "hostile-not-a-zip.xlsx"
                               << "it is not a zip archive" << true;
    QTest::newRow("empty file") << "hostile-empty.xlsx"
                                << "the file is empty" << true;
    QTest::newRow("old .xls") << "hostile-legacy-xls.xlsx"
                              << "old-format (.xls)" << true;
    QTest::newRow("truncated") << "hostile-truncated.xlsx"
                               << "not a zip archive" << true;
    QTest::newRow("no content types") << "hostile-no-content-types.xlsx"
                                      << "part [Content_Types].xml is missing" << true;
    QTest::newRow("word document") << "hostile-word-document.xlsx"
                                   << "is not a workbook (content type "
                                      "\"application/"
                                      "vnd.openxmlformats-officedocument.wordprocessingml."
                                      "document.main+xml\")"
                                   << true;
    QTest::newRow("missing workbook part") << "hostile-missing-workbook.xlsx"
                                           << "part xl/workbook.xml is missing" << true;
    QTest::newRow("missing shared strings") << "hostile-missing-shared-strings.xlsx"
                                            << "part xl/sharedStrings.xml is missing" << true;
    QTest::newRow("garbage workbook XML") << "hostile-garbage-workbook.xlsx"
                                          << "part xl/workbook.xml is not well-formed XML" << true;
    QTest::newRow("missing sheet part") << "hostile-missing-sheet-part.xlsx"
                                        << "part xl/worksheets/sheet1.xml is missing" << false;
    QTest::newRow("dangling relationship")
        << "hostile-dangling-relationship.xlsx"
        << "sheet \"Sheet1\" refers to relationship \"rId9\"" << false;
    QTest::newRow("sheet points back to the workbook")
        << "hostile-sheet-is-workbook.xlsx"
        << "sheet \"Sheet1\" points to part xl/workbook.xml, which is not a worksheet" << false;
    QTest::newRow("target outside the package") << "hostile-target-outside.xlsx"
                                                << "points outside the workbook package" << false;
    QTest::newRow("garbage sheet XML")
        << "hostile-garbage-sheet.xlsx"
        << "part xl/worksheets/sheet1.xml is not well-formed XML" << false;
    QTest::newRow("entity expansion") << "hostile-entity-expansion.xlsx"
                                      << "holds a document type declaration" << false;
    QTest::newRow("shared string index")
        << "hostile-shared-string-index.xlsx"
        << "cell A1 of part xl/worksheets/sheet1.xml refers to shared string \"7\", but the "
           "workbook has 2 shared strings"
        << false;
    QTest::newRow("row beyond the last")
        << "hostile-row-beyond-limit.xlsx"
        << "holds row 2000000, beyond the last row 1048576" << false;
    QTest::newRow("column beyond the last")
        << "hostile-column-beyond-limit.xlsx"
        << "column 16385 of row 1, beyond the last column" << false;
    QTest::newRow("invalid cell reference") << "hostile-bad-cell-reference.xlsx"
                                            << "invalid reference \"1A\" in row 1" << false;
    QTest::newRow("rows out of order") << "hostile-rows-out-of-order.xlsx"
                                       << "holds row 3 after row 5" << false;
    QTest::newRow("huge declared size")
        << "hostile-huge-declared-size.xlsx"
        << "part xl/worksheets/sheet1.xml declares 4294967280 bytes uncompressed" << false;
    QTest::newRow("zip bomb")
        << "hostile-bomb.xlsx"
        << "part xl/worksheets/sheet1.xml declares 314572950 bytes uncompressed, more than the "
           "limit of 268435456 bytes for one part"
        << false;
    // The bomb that hides its size is in defaultLimits().
    QTest::newRow("elements nested a million deep")
        << "hostile-deep-nesting.xlsx"
        << "part xl/worksheets/sheet1.xml nests elements more than 256 deep" << false;
    QTest::newRow("one text of 64 MiB")
        << "hostile-long-text.xlsx"
        << "part xl/worksheets/sheet1.xml holds more than 16777216 bytes without markup" << false;
}

void tst_workbook_hostile::refused()
{
    QFETCH(QString, file);
    QFETCH(QString, problem);
    QFETCH(bool, failsAtOpening);

    const QString path = dataFile(file);
    QVERIFY(QFileInfo::exists(path));
    CIExcel excel(path);
    QCOMPARE(!excel.isOpen(), failsAtOpening);
    readLikeTheImporter(excel);
    QVERIFY(!excel.isOpen());
    QVERIFY(excel.error().isError());
    QCOMPARE(excel.error().filePath, path);
    QVERIFY2(excel.error().problem.contains(problem), qPrintable(excel.error().problem));
}

void tst_workbook_hostile::limits_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<WorkbookLimits>("limits");
    QTest::addColumn<QString>("problem");

    WorkbookLimits limits;
    limits.maxPartBytes = 1024 * 1024;
    QTest::newRow("part bytes, counted as they come out")
        << "hostile-bomb-deflate.xlsx" << limits
        << "part xl/worksheets/sheet1.xml decompresses to more than 1048576 bytes";

    limits = {};
    limits.maxPartBytes = 1000;
    QTest::newRow("part bytes, declared")
        << "xlsxwriter-values.xlsx" << limits << "bytes uncompressed, more than the limit of 1000";

    limits = {};
    limits.maxTotalBytes = 5000;
    QTest::newRow("total bytes") << "xlsxwriter-values.xlsx" << limits
                                 << "the workbook decompresses to more than 5000 bytes in total";

    limits = {};
    limits.maxCells = 100;
    QTest::newRow("cells") << "many-cells.xlsx" << limits
                           << "part xl/worksheets/sheet1.xml holds more than 100 cells";

    limits = {};
    limits.maxRow = 150;
    QTest::newRow("row number") << "many-cells.xlsx" << limits
                                << "holds row 151, beyond the last row 150 a sheet can have";

    limits = {};
    limits.maxColumn = 5;
    QTest::newRow("column number") << "many-cells.xlsx" << limits
                                   << "holds a cell in column 6 of row 1, beyond the last column "
                                      "5";

    limits = {};
    limits.maxStringLength = 5;
    QTest::newRow("string length, shared") << "xlsxwriter-values.xlsx" << limits
                                           << "part xl/sharedStrings.xml holds a text longer "
                                              "than 5 characters";
    QTest::newRow("string length, inline")
        << "import-openpyxl.xlsx" << limits << "holds a text longer than 5 characters";

    limits = {};
    limits.maxSharedStrings = 10;
    QTest::newRow("shared strings") << "xlsxwriter-values.xlsx" << limits
                                    << "part xl/sharedStrings.xml holds more than 10 shared "
                                       "strings";

    limits = {};
    limits.maxSharedStringCharacters = 100;
    QTest::newRow("shared string characters")
        << "xlsxwriter-values.xlsx" << limits << "holds more than 100 characters of shared strings";

    limits = {};
    limits.maxRowCharacters = 10;
    QTest::newRow("row characters") << "import-openpyxl.xlsx" << limits
                                    << "of part xl/worksheets/sheet1.xml holds more than 10 "
                                       "characters";

    limits = {};
    limits.maxListEntries = 3;
    QTest::newRow("zip entries") << "xlsxwriter-values.xlsx" << limits
                                 << "the zip archive holds 13 entries, more than the limit of 3";
    limits.maxListEntries = 20;
    QTest::newRow("content types") << "many-content-types.xlsx" << limits
                                   << "part [Content_Types].xml lists more than 20 content "
                                      "types";
}

void tst_workbook_hostile::limits()
{
    QFETCH(QString, file);
    QFETCH(WorkbookLimits, limits);
    QFETCH(QString, problem);

    // The same file reads without complaint under the default limits.
    {
        CIExcel excel(dataFile(file));
        readLikeTheImporter(excel);
        QVERIFY2(!excel.error().isError() || file.startsWith(u"hostile"),
                 qPrintable(excel.error().message()));
    }
    CIExcel excel(dataFile(file), limits);
    readLikeTheImporter(excel);
    QVERIFY(excel.error().isError());
    QVERIFY2(excel.error().problem.contains(problem), qPrintable(excel.error().problem));
}

void tst_workbook_hostile::missingFile()
{
    const QString path = dataFile(QStringLiteral("no-such-workbook.xlsx"));
    CIExcel excel(path);
    QVERIFY(!excel.isOpen());
    QCOMPARE(excel.error().problem, QStringLiteral("the file does not exist"));

    CIExcel folder(QStringLiteral(KV_TEST_DATA_DIR "/xlsx"));
    QVERIFY(!folder.isOpen());
    QCOMPARE(folder.error().problem, QStringLiteral("it is a folder, not a file"));
}

void tst_workbook_hostile::defaultLimits()
{
    // The documented figures.
    const WorkbookLimits limits;
    QCOMPARE(limits.maxPartBytes, qint64(256) * 1024 * 1024);
    QCOMPARE(limits.maxTotalBytes, qint64(1024) * 1024 * 1024);
    QCOMPARE(limits.maxCells, qint64(16) * 1024 * 1024);
    QCOMPARE(limits.maxRow, 1048576);
    QCOMPARE(limits.maxColumn, 16384);
    QCOMPARE(limits.maxStringLength, qsizetype(1024 * 1024));

    // A bomb that hides its size is stopped by counting, in bounded time.
    QElapsedTimer timer;
    timer.start();
    CIExcel excel(dataFile(QStringLiteral("hostile-bomb-lying.xlsx")));
    readLikeTheImporter(excel);
    QVERIFY(excel.error().isError());
    QVERIFY2(excel.error().problem.contains(QStringLiteral(
                 "part xl/worksheets/sheet1.xml decompresses to more than 268435456 bytes")),
             qPrintable(excel.error().problem));
    qInfo("the lying bomb was stopped after %lld ms", timer.elapsed());
}

void tst_workbook_hostile::errorMessageNamesFileAndProblem()
{
    const QString path = dataFile(QStringLiteral("hostile-not-a-zip.xlsx"));
    CIExcel excel(path);
    const QString message = excel.error().message();
    QVERIFY2(message.contains(QDir::toNativeSeparators(path)), qPrintable(message));
    QVERIFY2(message.contains(excel.error().problem), qPrintable(message));
    QVERIFY(message.startsWith(QStringLiteral("The spreadsheet \"")));

    const WorkbookError none;
    QVERIFY(!none.isError());
    QVERIFY(!none);
}

void tst_workbook_hostile::nothingAnsweredAfterAnError()
{
    // Row 1 reads; the damage further down stops the reader, which then answers nothing,
    // not even for the row it read before.
    CIExcel excel(dataFile(QStringLiteral("hostile-rows-out-of-order.xlsx")));
    QVERIFY(excel.isOpen());
    QVERIFY(excel.WorkSheetExists(kSheet));
    QCOMPARE(excel.GetValue(kSheet, 4, 0), QStringLiteral("5"));
    QCOMPARE(excel.GetValue(kSheet, 5, 0), QString());
    QVERIFY(excel.error().isError());
    QCOMPARE(excel.GetValue(kSheet, 4, 0), QString());
    QVERIFY(!excel.WorkSheetExists(kSheet));
    QCOMPARE(excel.VerifyRowCount(kSheet), 0);
    QCOMPARE(excel.GetColumnIndex(kSheet, QStringLiteral("5"), 5), -1);
}

QTEST_GUILESS_MAIN(tst_workbook_hostile)
#include "tst_workbook_hostile.moc"
