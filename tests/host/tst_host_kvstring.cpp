#include "host/KVString.h"

#include <QTest>

// Numbers travel as text through the module; a text that is not a number reads as 0, and a
// text that starts with a number reads as that number, whatever the process locale says.
class tst_host_kvstring : public QObject
{
    Q_OBJECT

private slots:
    void toIntLenient_data();
    void toIntLenient();
    void toDoubleLenient_data();
    void toDoubleLenient();
    void conversions();
};

void tst_host_kvstring::toIntLenient_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");
    QTest::newRow("plain") << "42" << 42;
    QTest::newRow("leading blanks") << "  7" << 7;
    QTest::newRow("sign") << "-12" << -12;
    QTest::newRow("trailing text") << "12abc" << 12;
    QTest::newRow("decimal part dropped") << "12.7" << 12;
    QTest::newRow("not a number") << "abc" << 0;
    QTest::newRow("empty") << "" << 0;
    QTest::newRow("lone sign") << "-" << 0;
    QTest::newRow("too large saturates") << "99999999999" << INT_MAX;
}

void tst_host_kvstring::toIntLenient()
{
    QFETCH(QString, text);
    QFETCH(int, expected);
    QCOMPARE(KVString(text).toIntLenient(), expected);
}

void tst_host_kvstring::toDoubleLenient_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("expected");
    QTest::newRow("integer") << "15" << 15.0;
    QTest::newRow("decimal") << "12.5" << 12.5;
    QTest::newRow("fraction only") << ".25" << 0.25;
    QTest::newRow("exponent") << "1e3" << 1000.0;
    QTest::newRow("dangling exponent") << "2e" << 2.0;
    QTest::newRow("trailing text") << "3.5mm" << 3.5;
    QTest::newRow("comma is not a decimal point") << "3,5" << 3.0;
    QTest::newRow("not a number") << "x1" << 0.0;
    QTest::newRow("blank") << " " << 0.0;
}

void tst_host_kvstring::toDoubleLenient()
{
    QFETCH(QString, text);
    QFETCH(double, expected);
    QCOMPARE(KVString(text).toDoubleLenient(), expected);
}

void tst_host_kvstring::conversions()
{
    const KVString fromWide(L"Tens\u00e3o");
    QCOMPARE(fromWide.toQString(), QStringLiteral("Tens\u00e3o"));
    QCOMPARE(fromWide.toWide(), std::wstring(L"Tens\u00e3o"));
    QCOMPARE(KVString("Descri\xc3\xa7\xc3\xa3o"), QStringLiteral("Descri\u00e7\u00e3o"));
    const KVStringList list{QStringLiteral("a"), QStringLiteral("b")};
    QCOMPARE(list.toQStringList().join(u','), QStringLiteral("a,b"));
}

QTEST_APPLESS_MAIN(tst_host_kvstring)
#include "tst_host_kvstring.moc"
