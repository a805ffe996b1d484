#include "import/CIExcel.h"

#include <QTest>

#include <optional>

// The workbook reader on workbooks written by real spreadsheet producers: every kind of cell
// value, sheet names, gaps, row numbering and the order in which rows are asked for.
class tst_workbook_reader : public QObject
{
    Q_OBJECT

private slots:
    void opens_data();
    void opens();
    void values_data();
    void values();
    void gaps_data();
    void gaps();
    void rowCountFromDimension_data();
    void rowCountFromDimension();
    void sheetNames_data();
    void sheetNames();
    void headerRowIsOneBasedValueRowsZeroBased();
    void columnIndex_data();
    void columnIndex();
    void rowsInAnyOrder();
    void rowsAndCellsWithoutReferences();
    void outOfRangeArguments();
};

namespace {

QString dataFile(const QString& name)
{
    return QStringLiteral(KV_TEST_DATA_DIR "/xlsx/") + name;
}

const QString kValues = QStringLiteral("Values");

// The producers of the value workbook: each wrote the same cases in the same rows.
const QStringList kProducers = {
    QStringLiteral("openpyxl-values.xlsx"),          // inline strings, no cached formulas
    QStringLiteral("xlsxwriter-values.xlsx"),        // shared strings, rich text runs
    QStringLiteral("xlsxwriter-inline-values.xlsx"), // inline strings, rich inline runs
    QStringLiteral("xlsxwriter-values.xlsm"),        // macro-enabled package
};

bool isOpenpyxl(const QString& file)
{
    return file.startsWith(u"openpyxl");
}

} // namespace

void tst_workbook_reader::opens_data()
{
    QTest::addColumn<QString>("file");
    for (const QString& file : kProducers)
        QTest::newRow(qPrintable(file)) << file;
}

void tst_workbook_reader::opens()
{
    QFETCH(QString, file);
    CIExcel excel(dataFile(file));
    QVERIFY2(excel.isOpen(), qPrintable(excel.error().message()));
    QVERIFY(!excel.error().isError());
    QCOMPARE(excel.path(), dataFile(file));
}

void tst_workbook_reader::values_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("sheetRow"); // as a person sees it
    QTest::addColumn<QString>("expected");

    struct Case
    {
        const char* name;
        int row;
        QString expected;
        // What openpyxl's file gives when it wrote something else than the other producers.
        std::optional<QString> openpyxlExpected;
    };
    const QList<Case> cases = {
        {"string", 2, QStringLiteral("Motor 3 kW"), {}},
        {"blanks kept", 3, QStringLiteral("  padded  "), {}},
        {"integer", 4, QStringLiteral("1"), {}},
        {"decimal", 5, QStringLiteral("12.7"), {}},
        {"tenth", 6, QStringLiteral("0.1"), {}},
        {"sum of floats", 7, QStringLiteral("0.3"), {}},
        {"third", 8, QStringLiteral("0.333333333333333"), {}},
        {"fifteen digits", 9, QStringLiteral("123456789012345"), {}},
        {"large", 10, QStringLiteral("1E+20"), {}},
        {"small", 11, QStringLiteral("1E-10"), {}},
        {"negative", 12, QStringLiteral("-5.5"), {}},
        {"hundred thousand", 13, QStringLiteral("100000"), {}},
        {"two to the 53", 14, QStringLiteral("9.00719925474099E+15"), {}},
        {"true", 15, QStringLiteral("TRUE"), {}},
        {"false", 16, QStringLiteral("FALSE"), {}},
        {"error", 17, QStringLiteral("#N/A"), {}},
        // openpyxl writes formulas without their cached results, which read as empty.
        {"formula number", 18, QStringLiteral("6"), QString()},
        {"formula text", 19, QStringLiteral("ab"), QString()},
        {"date custom format", 20, QStringLiteral("2024-03-15"), {}},
        {"date built-in 14", 21, QStringLiteral("2024-03-15"), {}},
        {"date dd/mm/yyyy", 22, QStringLiteral("1999-12-31"), {}},
        {"date and time", 23, QStringLiteral("2024-03-15"), {}},
        {"early date", 24, QStringLiteral("1900-01-15"), {}},
        {"number format ignored", 25, QStringLiteral("3.14159"), {}},
        {"rich text", 26, QStringLiteral("Bold and italic"), {}},
        {"unicode", 27, QStringLiteral("Ünïcødé – 電気"), {}},
        {"empty value", 28, QString(), {}},
        {"missing row", 29, QString(), {}},
        {"percent", 31, QStringLiteral("0.25"), {}},
        // xlsxwriter escapes the underscore of a text that looks like an escape; openpyxl
        // writes it raw, and a raw escape means the character it names.
        {"escape-like text", 32, QStringLiteral("_x0041_"), QStringLiteral("A")},
        {"control character", 33, QStringLiteral("a\u0007b"), QString()},
    };
    for (const QString& file : kProducers) {
        for (const Case& c : cases) {
            const QString expected =
                isOpenpyxl(file) && c.openpyxlExpected ? *c.openpyxlExpected : c.expected;
            QTest::addRow("%s: %s", qPrintable(file), c.name) << file << c.row << expected;
        }
    }
}

void tst_workbook_reader::values()
{
    QFETCH(QString, file);
    QFETCH(int, sheetRow);
    QFETCH(QString, expected);
    CIExcel excel(dataFile(file));
    QVERIFY2(excel.isOpen(), qPrintable(excel.error().message()));
    // Value rows are zero-based: the row labelled n is n - 1.
    QCOMPARE(excel.GetValue(kValues, sheetRow - 1, 1), expected);
    QVERIFY2(!excel.error().isError(), qPrintable(excel.error().message()));
}

void tst_workbook_reader::gaps_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("expected");
    for (const QString& file : kProducers) {
        QTest::addRow("%s: A", qPrintable(file)) << file << 0 << "gaps";
        QTest::addRow("%s: C missing", qPrintable(file)) << file << 2 << "";
        QTest::addRow("%s: D", qPrintable(file)) << file << 3 << "d";
        QTest::addRow("%s: E missing", qPrintable(file)) << file << 4 << "";
        QTest::addRow("%s: F", qPrintable(file)) << file << 5 << "f";
        QTest::addRow("%s: AA missing", qPrintable(file)) << file << 26 << "";
        QTest::addRow("%s: AB", qPrintable(file)) << file << 27 << "ab";
        QTest::addRow("%s: beyond the last", qPrintable(file)) << file << 500 << "";
    }
}

void tst_workbook_reader::gaps()
{
    QFETCH(QString, file);
    QFETCH(int, column);
    QFETCH(QString, expected);
    CIExcel excel(dataFile(file));
    QCOMPARE(excel.GetValue(kValues, 29, column), expected); // the row labelled 30
}

void tst_workbook_reader::rowCountFromDimension_data()
{
    QTest::addColumn<QString>("file");
    for (const QString& file : kProducers)
        QTest::newRow(qPrintable(file)) << file;
}

void tst_workbook_reader::rowCountFromDimension()
{
    QFETCH(QString, file);
    CIExcel excel(dataFile(file));
    // The last row is labelled 40, so the zero-based value rows end before 40.
    QCOMPARE(excel.VerifyRowCount(kValues), 40);
    QCOMPARE(excel.GetValue(kValues, 39, 0), QStringLiteral("last"));
    QCOMPARE(excel.VerifyRowCount(QStringLiteral("Summary")), 1);
    QCOMPARE(excel.VerifyRowCount(QStringLiteral("No such sheet")), 0);
}

void tst_workbook_reader::sheetNames_data()
{
    QTest::addColumn<QString>("file");
    for (const QString& file : kProducers)
        QTest::newRow(qPrintable(file)) << file;
}

void tst_workbook_reader::sheetNames()
{
    QFETCH(QString, file);
    CIExcel excel(dataFile(file));
    QVERIFY(excel.WorkSheetExists(QStringLiteral("Sheet1")));
    QVERIFY(excel.WorkSheetExists(QStringLiteral("sheet1")));
    QVERIFY(excel.WorkSheetExists(QStringLiteral("Summary")));
    QVERIFY(excel.WorkSheetExists(kValues));
    QVERIFY(!excel.WorkSheetExists(QStringLiteral("Sheet2")));
    QVERIFY(!excel.WorkSheetExists(QString()));
    const QString unicodeName = QStringLiteral("Ünïcødé — 電気");
    QVERIFY(excel.WorkSheetExists(unicodeName));

    // Each name reads its own sheet, whatever its position in the workbook.
    QCOMPARE(excel.GetValue(QStringLiteral("Summary"), 0, 0), QStringLiteral("not this sheet"));
    QCOMPARE(excel.GetValue(QStringLiteral("Sheet1"), 0, 0), QStringLiteral("sheet one"));
    QCOMPARE(excel.GetValue(unicodeName, 1, 1), QStringLiteral("unicode sheet"));
    QCOMPARE(excel.GetValue(kValues, 1, 1), QStringLiteral("Motor 3 kW"));
    // Switching back and forth between sheets.
    QCOMPARE(excel.GetValue(QStringLiteral("Sheet1"), 0, 0), QStringLiteral("sheet one"));
    QCOMPARE(excel.GetValue(QStringLiteral("No such sheet"), 0, 0), QString());
    QVERIFY(!excel.error().isError());
}

void tst_workbook_reader::headerRowIsOneBasedValueRowsZeroBased()
{
    CIExcel excel(dataFile(QStringLiteral("import-openpyxl.xlsx")));
    const QString sheet = QStringLiteral("Sheet1");
    // The titles are in the row labelled 11; the same number 11 reads the first data row.
    QCOMPARE(excel.GetColumnIndex(sheet, QStringLiteral("ITEM"), 11), 0);
    QCOMPARE(excel.GetColumnIndex(sheet, QStringLiteral("CODE"), 11), 2);
    QCOMPARE(excel.GetValue(sheet, 10, 0), QStringLiteral("ITEM"));
    QCOMPARE(excel.GetValue(sheet, 11, 0), QStringLiteral("1"));
    QCOMPARE(excel.GetValue(sheet, 11, 1), QStringLiteral("Contactor"));
    // The last data row is labelled 17, so rows below 17 are the value rows.
    QCOMPARE(excel.VerifyRowCount(sheet), 17);
    QCOMPARE(excel.GetValue(sheet, 15, 1), QStringLiteral("Lamp"));
    QCOMPARE(excel.GetValue(sheet, 16, 1), QStringLiteral("  Blanks and Case kept  "));
    QCOMPARE(excel.GetValue(sheet, 17, 1), QString());
}

void tst_workbook_reader::columnIndex_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("headerRow");
    QTest::addColumn<int>("expected");
    for (const QString& file :
         {QStringLiteral("import-openpyxl.xlsx"), QStringLiteral("import-xlsxwriter.xlsx")}) {
        QTest::addRow("%s: first", qPrintable(file)) << file << "ITEM" << 11 << 0;
        QTest::addRow("%s: last", qPrintable(file)) << file << "NOTE" << 11 << 4;
        QTest::addRow("%s: blanks around the title", qPrintable(file))
            << file << "  REF " << 11 << 3;
        QTest::addRow("%s: case matters", qPrintable(file)) << file << "item" << 11 << -1;
        QTest::addRow("%s: not there", qPrintable(file)) << file << "MISSING" << 11 << -1;
        QTest::addRow("%s: empty title", qPrintable(file)) << file << "" << 11 << -1;
        QTest::addRow("%s: title of another row", qPrintable(file))
            << file << "ELSEWHERE" << 11 << -1;
        QTest::addRow("%s: that row asked for", qPrintable(file)) << file << "ELSEWHERE" << 5 << 1;
        QTest::addRow("%s: a row without cells", qPrintable(file)) << file << "ITEM" << 15 << -1;
        QTest::addRow("%s: row zero", qPrintable(file)) << file << "ITEM" << 0 << -1;
    }
}

void tst_workbook_reader::columnIndex()
{
    QFETCH(QString, file);
    QFETCH(QString, title);
    QFETCH(int, headerRow);
    QFETCH(int, expected);
    CIExcel excel(dataFile(file));
    QCOMPARE(excel.GetColumnIndex(QStringLiteral("Sheet1"), title, headerRow), expected);
    QVERIFY(!excel.error().isError());
}

void tst_workbook_reader::rowsInAnyOrder()
{
    // Every cell read in row order, then backwards, then jumping about: the same texts, and
    // the header lookup keeps working while the rows move on.
    CIExcel excel(dataFile(QStringLiteral("xlsxwriter-values.xlsx")));
    const int rows = excel.VerifyRowCount(kValues);
    QCOMPARE(rows, 40);
    QList<QStringList> forward;
    for (int row = 0; row < rows; ++row) {
        QStringList cells;
        for (int column = 0; column < 28; ++column)
            cells.append(excel.GetValue(kValues, row, column));
        forward.append(cells);
        QCOMPARE(excel.GetColumnIndex(kValues, QStringLiteral("value"), 1), 1);
    }
    QCOMPARE(forward[1][1], QStringLiteral("Motor 3 kW"));
    QCOMPARE(forward[29][27], QStringLiteral("ab"));
    for (int row = rows - 1; row >= 0; --row) {
        for (int column = 27; column >= 0; --column)
            QCOMPARE(excel.GetValue(kValues, row, column), forward[row][column]);
    }
    for (const int row : {30, 2, 39, 0, 17, 17, 16, 25}) {
        QCOMPARE(excel.GetValue(kValues, row, 1), forward[row][1]);
        QCOMPARE(excel.GetColumnIndex(kValues, QStringLiteral("case"), 1), 0);
    }
    QVERIFY(!excel.error().isError());
}

void tst_workbook_reader::rowsAndCellsWithoutReferences()
{
    // Rows without "r" follow the row before; cells without "r" follow the cell before; the
    // dimension "A1" says nothing, so the rows are counted by reading the sheet.
    CIExcel excel(dataFile(QStringLiteral("no-references.xlsx")));
    const QString sheet = QStringLiteral("Sheet1");
    QVERIFY2(excel.isOpen(), qPrintable(excel.error().message()));
    QCOMPARE(excel.VerifyRowCount(sheet), 7);
    QCOMPARE(excel.GetValue(sheet, 0, 0), QStringLiteral("1"));
    QCOMPARE(excel.GetValue(sheet, 0, 1), QStringLiteral("second"));
    QCOMPARE(excel.GetValue(sheet, 1, 0), QStringLiteral("2"));
    QCOMPARE(excel.GetValue(sheet, 1, 1), QString());
    QCOMPARE(excel.GetValue(sheet, 6, 0), QString());
    QCOMPARE(excel.GetValue(sheet, 6, 2), QStringLiteral("7"));
    QCOMPARE(excel.GetValue(sheet, 6, 3), QStringLiteral("8"));
    QVERIFY(!excel.error().isError());
}

void tst_workbook_reader::outOfRangeArguments()
{
    CIExcel excel(dataFile(QStringLiteral("openpyxl-values.xlsx")));
    QCOMPARE(excel.GetValue(kValues, -1, 0), QString());
    QCOMPARE(excel.GetValue(kValues, 0, -1), QString());
    QCOMPARE(excel.GetValue(kValues, 2000000, 0), QString());
    QCOMPARE(excel.GetValue(kValues, 0, 100000), QString());
    QCOMPARE(excel.GetColumnIndex(kValues, QStringLiteral("case"), -3), -1);
    QCOMPARE(excel.GetValue(kValues, 0, 0), QStringLiteral("case"));
    QVERIFY(!excel.error().isError());
}

QTEST_GUILESS_MAIN(tst_workbook_reader)
#include "tst_workbook_reader.moc"
