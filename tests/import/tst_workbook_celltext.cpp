#include "import/CellFormats.h"
#include "import/CellText.h"
#include "import/WorkbookIndex.h"
#include "import/XmlPartReader.h"

#include <QTest>

#include <cmath>

using namespace Xlsx::Internal;

// The conversions from stored cell values to the texts a spreadsheet program shows.
class tst_workbook_celltext : public QObject
{
    Q_OBJECT

private slots:
    void formatGeneral_data();
    void formatGeneral();
    void formatDate_data();
    void formatDate();
    void parseNumber_data();
    void parseNumber();
    void cellReference_data();
    void cellReference();
    void dateFormat_data();
    void dateFormat();
    void escapes_data();
    void escapes();
    void partNames_data();
    void partNames();
};

void tst_workbook_celltext::formatGeneral_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("expected");
    QTest::newRow("one") << 1.0 << "1";
    QTest::newRow("twelve point seven") << 12.7 << "12.7";
    QTest::newRow("tenth") << 0.1 << "0.1";
    QTest::newRow("float noise rounded at 15 digits") << 0.1 + 0.2 << "0.3";
    QTest::newRow("third") << 1.0 / 3.0 << "0.333333333333333";
    QTest::newRow("two thirds rounds up") << 2.0 / 3.0 << "0.666666666666667";
    QTest::newRow("zero") << 0.0 << "0";
    QTest::newRow("negative zero") << -0.0 << "0";
    QTest::newRow("negative") << -5.5 << "-5.5";
    QTest::newRow("hundred thousand") << 100000.0 << "100000";
    QTest::newRow("fifteen digits") << 123456789012345.0 << "123456789012345";
    QTest::newRow("1E+15") << 1e15 << "1E+15";
    QTest::newRow("2^53") << 9007199254740992.0 << "9.00719925474099E+15";
    QTest::newRow("large") << 1e20 << "1E+20";
    QTest::newRow("large with digits") << 1.5e20 << "1.5E+20";
    QTest::newRow("small positional") << 0.000000001 << "0.000000001";
    QTest::newRow("small exponent") << 1e-10 << "1E-10";
    QTest::newRow("negative small exponent") << -2.5e-12 << "-2.5E-12";
    QTest::newRow("huge exponent") << 1.7976931348623157e308 << "1.79769313486232E+308";
    QTest::newRow("trailing zeros after rounding") << 1.0000000000000002 << "1";
    QTest::newRow("millions with decimals") << 1234567.891 << "1234567.891";
}

void tst_workbook_celltext::formatGeneral()
{
    QFETCH(double, value);
    QFETCH(QString, expected);
    QCOMPARE(CellText::formatGeneral(value), expected);
}

void tst_workbook_celltext::formatDate_data()
{
    QTest::addColumn<double>("serial");
    QTest::addColumn<bool>("date1904");
    QTest::addColumn<QString>("expected");
    QTest::newRow("day 1") << 1.0 << false << "1900-01-01";
    QTest::newRow("day 59") << 59.0 << false << "1900-02-28";
    QTest::newRow("day 60 kept for compatibility") << 60.0 << false << "1900-02-29";
    QTest::newRow("day 61") << 61.0 << false << "1900-03-01";
    QTest::newRow("2024-03-15") << 45366.0 << false << "2024-03-15";
    QTest::newRow("time of day dropped") << 45366.77083333334 << false << "2024-03-15";
    QTest::newRow("almost midnight rounds up") << 45366.999999999996 << false << "2024-03-16";
    QTest::newRow("day 0") << 0.0 << false << "1900-01-00";
    QTest::newRow("last day") << 2958465.0 << false << "9999-12-31";
    QTest::newRow("after the last day") << 2958466.0 << false << "";
    QTest::newRow("negative") << -1.0 << false << "";
    QTest::newRow("1904 day 0") << 0.0 << true << "1904-01-01";
    QTest::newRow("1904 2024-03-15") << 43904.0 << true << "2024-03-15";
}

void tst_workbook_celltext::formatDate()
{
    QFETCH(double, serial);
    QFETCH(bool, date1904);
    QFETCH(QString, expected);
    QCOMPARE(CellText::formatDate(serial, date1904), expected);
}

void tst_workbook_celltext::parseNumber_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<double>("expected");
    QTest::newRow("integer") << "42" << true << 42.0;
    QTest::newRow("decimal") << "12.7" << true << 12.7;
    QTest::newRow("exponent") << "1E-10" << true << 1e-10;
    QTest::newRow("exponent with plus") << "1.5E+20" << true << 1.5e20;
    QTest::newRow("negative") << "-5.5" << true << -5.5;
    QTest::newRow("plus sign") << "+3" << true << 3.0;
    QTest::newRow("blanks at the ends") << " 3 " << true << 3.0;
    QTest::newRow("seventeen digits") << "0.30000000000000004" << true << 0.30000000000000004;
    QTest::newRow("empty") << "" << false << 0.0;
    QTest::newRow("text") << "abc" << false << 0.0;
    QTest::newRow("trailing text") << "12abc" << false << 0.0;
    QTest::newRow("comma") << "12,5" << false << 0.0;
    QTest::newRow("not ASCII") << "１２" << false << 0.0;
    QTest::newRow("infinity") << "inf" << false << 0.0;
    QTest::newRow("too long") << QString(70, u'1') << false << 0.0;
}

void tst_workbook_celltext::parseNumber()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    double value = -1;
    QCOMPARE(CellText::parseNumber(text, &value), valid);
    if (valid)
        QTEST(value, "expected");
}

void tst_workbook_celltext::cellReference_data()
{
    QTest::addColumn<QString>("reference");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("row");
    QTest::newRow("A1") << "A1" << true << 0 << 1;
    QTest::newRow("Z9") << "Z9" << true << 25 << 9;
    QTest::newRow("AA10") << "AA10" << true << 26 << 10;
    QTest::newRow("AB12") << "AB12" << true << 27 << 12;
    QTest::newRow("XFD1048576") << "XFD1048576" << true << 16383 << 1048576;
    QTest::newRow("lower case") << "ab12" << true << 27 << 12;
    QTest::newRow("letters only") << "C" << true << 2 << 0;
    QTest::newRow("digits first") << "1A" << false << 0 << 0;
    QTest::newRow("four letters") << "ABCD1" << false << 0 << 0;
    QTest::newRow("row zero") << "A0" << false << 0 << 0;
    QTest::newRow("trailing junk") << "A1x" << false << 0 << 0;
    QTest::newRow("empty") << "" << false << 0 << 0;
    QTest::newRow("absurd row") << "A99999999999" << false << 0 << 0;
}

void tst_workbook_celltext::cellReference()
{
    QFETCH(QString, reference);
    QFETCH(bool, valid);
    int column = -7;
    int row = -7;
    QCOMPARE(CellText::parseCellReference(reference, &column, &row), valid);
    if (valid) {
        QTEST(column, "column");
        QTEST(row, "row");
    }
}

void tst_workbook_celltext::dateFormat_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("isDate");
    QTest::newRow("General") << 0 << "" << false;
    QTest::newRow("built-in 13") << 13 << "" << false;
    QTest::newRow("built-in 14") << 14 << "" << true;
    QTest::newRow("built-in 22") << 22 << "" << true;
    QTest::newRow("built-in 23") << 23 << "" << false;
    QTest::newRow("yyyy-mm-dd") << 164 << "yyyy-mm-dd" << true;
    QTest::newRow("dd/mm/yyyy") << 165 << "dd/mm/yyyy" << true;
    QTest::newRow("upper case") << 165 << "DD.MM.YY" << true;
    QTest::newRow("two decimals") << 165 << "0.00" << false;
    QTest::newRow("percent") << 9 << "0%" << false;
    QTest::newRow("quoted letters") << 166 << "0 \"days\"" << false;
    QTest::newRow("escaped letter") << 166 << "0\\d" << false;
    QTest::newRow("colour and locale") << 166 << "[Red][$-409]0.00" << false;
    QTest::newRow("locale then date") << 166 << "[$-409]d-mmm-yy" << true;
    QTest::newRow("General text") << 166 << "General" << false;
    QTest::newRow("custom code for a built-in id") << 14 << "0.0" << false;
}

void tst_workbook_celltext::dateFormat()
{
    QFETCH(int, id);
    QFETCH(QString, code);
    QFETCH(bool, isDate);
    QCOMPARE(CellFormats::isDateFormat(id, code), isDate);
}

void tst_workbook_celltext::escapes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("none") << "plain"
                          << "plain";
    QTest::newRow("carriage return") << "a_x000D_b"
                                     << "a\rb";
    QTest::newRow("escaped underscore") << "_x005F_x0041_"
                                        << "_x0041_";
    QTest::newRow("not hex") << "_x00G1_"
                             << "_x00G1_";
    QTest::newRow("too short") << "_x41_"
                               << "_x41_";
    QTest::newRow("at the end") << "ab_x0041_"
                                << "abA";
}

void tst_workbook_celltext::escapes()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(decodeEscapes(text), expected);
}

void tst_workbook_celltext::partNames_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("expected");
    QTest::newRow("relative") << "xl/workbook.xml"
                              << "worksheets/sheet1.xml"
                              << "xl/worksheets/sheet1.xml";
    QTest::newRow("absolute") << "xl/workbook.xml"
                              << "/xl/worksheets/sheet1.xml"
                              << "xl/worksheets/sheet1.xml";
    QTest::newRow("parent") << "xl/worksheets/sheet1.xml"
                            << "../sharedStrings.xml"
                            << "xl/sharedStrings.xml";
    QTest::newRow("from the root") << ""
                                   << "xl/workbook.xml"
                                   << "xl/workbook.xml";
    QTest::newRow("percent-encoded") << "xl/workbook.xml"
                                     << "worksheets/my%20sheet.xml"
                                     << "xl/worksheets/my sheet.xml";
    QTest::newRow("outside the package") << "xl/workbook.xml"
                                         << "../../etc/passwd"
                                         << "";
}

void tst_workbook_celltext::partNames()
{
    QFETCH(QString, source);
    QFETCH(QString, target);
    QFETCH(QString, expected);
    QCOMPARE(resolvePartName(source, target), expected);
}

QTEST_GUILESS_MAIN(tst_workbook_celltext)
#include "tst_workbook_celltext.moc"
