// Texts in DXF files: Windows-1252 bytes, AutoCAD's \U+XXXX escapes, UTF-8 in newer files.
#include "DxfTextCodec.h"

#include <QtTest>

using namespace RefHost;

class TestDxfTextCodec : public QObject
{
    Q_OBJECT

private slots:
    void encode_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("ascii") << QStringLiteral("-K1 Motor") << QByteArray("-K1 Motor");
        QTest::newRow("code page")
            << QStringLiteral("a\u00e7\u00e3o \u20ac") << QByteArray("a\xe7\xe3o \x80");
        QTest::newRow("outside the code page")
            << QStringLiteral("\u2126\u4e2d") << QByteArray("\\U+2126\\U+4E2D");
        QTest::newRow("blanks at the ends")
            << QStringLiteral(" \tx y ") << QByteArray("\\U+0020\\U+0009x y\\U+0020");
        QTest::newRow("only blanks") << QStringLiteral("  ") << QByteArray("\\U+0020\\U+0020");
        QTest::newRow("line break") << QStringLiteral("a\nb") << QByteArray("a\\U+000Ab");
        QTest::newRow("literal escape")
            << QStringLiteral("\\U+0041") << QByteArray("\\U+005CU+0041");
        QTest::newRow("other backslashes") << QStringLiteral("C:\\P\\U") << QByteArray("C:\\P\\U");
        QTest::newRow("surrogate pair")
            << QStringLiteral("\U0001F600") << QByteArray("\\U+D83D\\U+DE00");
        QTest::newRow("empty") << QString() << QByteArray();
        QTest::newRow("one blank at the start") << QStringLiteral(" a") << QByteArray("\\U+0020a");
        QTest::newRow("one blank at the end") << QStringLiteral("a ") << QByteArray("a\\U+0020");
        QTest::newRow("single blank") << QStringLiteral(" ") << QByteArray("\\U+0020");
        QTest::newRow("ASCII ends") << QStringLiteral("~!x ~") << QByteArray("~!x ~");
        QTest::newRow("delete and tab")
            << QStringLiteral("a\u007fb\tc") << QByteArray("a\\U+007Fb\\U+0009c");
        QTest::newRow("backslash last") << QStringLiteral("a\\") << QByteArray("a\\");
        QTest::newRow("escape at the end") << QStringLiteral("x\\U+") << QByteArray("x\\U+005CU+");
    }

    void encode()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, bytes);
        QCOMPARE(DxfTextCodec::encode(text), bytes);
        // What is written reads back the same from an R2000 file.
        const DxfTextCodec codec = DxfTextCodec::forFile("AC1015", "ANSI_1252");
        QCOMPARE(codec.decode(bytes), text);
    }

    void decode_data()
    {
        QTest::addColumn<QByteArray>("version");
        QTest::addColumn<QByteArray>("codePage");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("R2000, Windows-1252")
            << QByteArray("AC1015") << QByteArray("ANSI_1252") << QByteArray("\xc9t\xe9 \x93x\x94")
            << QStringLiteral("\u00c9t\u00e9 \u201cx\u201d");
        QTest::newRow("no header")
            << QByteArray() << QByteArray() << QByteArray("\xe7") << QStringLiteral("\u00e7");
        QTest::newRow("R2000, Windows-1251")
            << QByteArray("AC1015") << QByteArray("ANSI_1251") << QByteArray("\xc4\xe0")
            << QStringLiteral("\u0414\u0430");
        QTest::newRow("R2018, UTF-8")
            << QByteArray("AC1032") << QByteArray("ANSI_1252") << QByteArray("a\xc3\xa7\\U+00E3o")
            << QStringLiteral("a\u00e7\u00e3o");
        QTest::newRow("lower-case escape digits")
            << QByteArray("AC1015") << QByteArray() << QByteArray("\\U+00e7")
            << QStringLiteral("\u00e7");
        QTest::newRow("not an escape")
            << QByteArray("AC1015") << QByteArray() << QByteArray("\\U+12G4 \\U+12")
            << QStringLiteral("\\U+12G4 \\U+12");
    }

    void decode()
    {
        QFETCH(QByteArray, version);
        QFETCH(QByteArray, codePage);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        QCOMPARE(DxfTextCodec::forFile(version, codePage).decode(bytes), text);
    }

    void chunksNeverCutAnEscapeNorEndInABlank()
    {
        QString text;
        for (int i = 0; i < 300; ++i)
            text += (i % 7 == 0) ? QStringLiteral(" ")
                                 : (i % 5 == 0 ? QStringLiteral("\u2126") : QStringLiteral("x"));
        const QByteArrayList pieces = DxfTextCodec::encodeChunks(text, 40);
        QVERIFY(pieces.size() > 5);
        QByteArray joined;
        for (const QByteArray& piece : pieces) {
            QVERIFY(piece.size() <= 40);
            QVERIFY(!piece.startsWith(' ') && !piece.endsWith(' '));
            joined += piece;
            // Every piece decodes on its own: no escape is cut in two.
            QVERIFY(!DxfTextCodec::forFile("AC1015", "ANSI_1252")
                         .decode(piece)
                         .contains(QLatin1String("\\U")));
        }
        QCOMPARE(DxfTextCodec::forFile("AC1015", "ANSI_1252").decode(joined), text);
        QVERIFY(DxfTextCodec::encodeChunks(QString()).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestDxfTextCodec)
#include "tst_dxf_textcodec.moc"
