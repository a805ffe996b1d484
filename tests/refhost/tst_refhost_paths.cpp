#include "PathResolver.h"
#include "WildcardPattern.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using RefHost::PathResolver;

namespace {

bool touch(const QString& path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly);
}

} // namespace

class TestRefHostPaths : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        m_root = m_dir->path();
        QVERIFY(touch(m_root + QStringLiteral("/Net/Dados/IEC/BLOCOS/M1.dxf")));
        QVERIFY(touch(m_root + QStringLiteral("/Net/Dados/IEC/BLOCOS/Lamp.DXF")));
        QVERIFY(touch(m_root + QStringLiteral("/Net/Dados/IEC/BLOCOS/Real.dwg")));
        QVERIFY(touch(m_root + QStringLiteral("/Net/Dados/IEC/BLOCOS/Both.dwg")));
        QVERIFY(touch(m_root + QStringLiteral("/Net/Dados/IEC/BLOCOS/Both.dxf")));
        QVERIFY(touch(m_root + QStringLiteral("/Case/abc.txt")));
        QVERIFY(touch(m_root + QStringLiteral("/Case/ABC.txt")));
    }

    void normalized_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("expected");
        QTest::newRow("backslashes") << "a\\b\\c.dwg"
                                     << "a/b/c.dwg";
        QTest::newRow("mixed and doubled") << "/net/\\DADOS\\\\IEC//x"
                                           << "/net/DADOS/IEC/x";
        QTest::newRow("plain") << "/a/b"
                               << "/a/b";
    }

    void normalized()
    {
        QFETCH(QString, path);
        QFETCH(QString, expected);
        QCOMPARE(PathResolver::normalized(path), expected);
    }

    void resolve_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("expected"); // relative to the root; empty: not found
        QTest::newRow("exact") << "/Net/Dados/IEC/BLOCOS/M1.dxf"
                               << "/Net/Dados/IEC/BLOCOS/M1.dxf";
        QTest::newRow("case of every part") << "/net/DADOS/iec/Blocos/m1.DXF"
                                            << "/Net/Dados/IEC/BLOCOS/M1.dxf";
        QTest::newRow("windows separators") << "\\Net\\DADOS\\IEC\\BLOCOS\\lamp.dxf"
                                            << "/Net/Dados/IEC/BLOCOS/Lamp.DXF";
        QTest::newRow("mixed separators") << "/Net/DADOS\\IEC\\BLOCOS\\M1.dxf"
                                          << "/Net/Dados/IEC/BLOCOS/M1.dxf";
        QTest::newRow("folder") << "/NET/dados/"
                                << "/Net/Dados";
        QTest::newRow("exact spelling wins") << "/Case/ABC.txt"
                                             << "/Case/ABC.txt";
        QTest::newRow("exact spelling wins 2") << "/Case/abc.txt"
                                               << "/Case/abc.txt";
        QTest::newRow("first in name order") << "/Case/Abc.txt"
                                             << "/Case/ABC.txt";
        QTest::newRow("missing") << "/Net/Dados/IEC/BLOCOS/M2.dxf"
                                 << "";
        QTest::newRow("file used as folder") << "/Net/Dados/IEC/BLOCOS/M1.dxf/x"
                                             << "";
        QTest::newRow("missing folder") << "/Net/Other/IEC"
                                        << "";
    }

    void resolve()
    {
        QFETCH(QString, path);
        QFETCH(QString, expected);
        const std::optional<QString> found = PathResolver::resolve(m_root + path);
        if (expected.isEmpty()) {
            QVERIFY2(!found, qPrintable(found.value_or(QString())));
            return;
        }
        QVERIFY(found);
        QCOMPARE(QDir::cleanPath(*found), QDir::cleanPath(m_root + expected));
    }

    void resolveRelativePath()
    {
        const QString saved = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_root));
        const std::optional<QString> found = PathResolver::resolve(QStringLiteral("net\\dados"));
        QDir::setCurrent(saved);
        QVERIFY(found);
        QCOMPARE(*found, QStringLiteral("Net/Dados"));
        QVERIFY(!PathResolver::resolve(QString()));
    }

    void blockFiles_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("exists");
        QTest::addColumn<QString>("source"); // empty: none
        QTest::newRow("dwg read from dxf")
            << "\\net\\dados\\IEC\\BLOCOS\\M1.dwg" << true << "/Net/Dados/IEC/BLOCOS/M1.dxf";
        QTest::newRow("upper-case suffixes")
            << "/Net/Dados/IEC/BLOCOS/LAMP.DWG" << true << "/Net/Dados/IEC/BLOCOS/Lamp.DXF";
        QTest::newRow("dwg alone exists, nothing to read")
            << "/Net/Dados/IEC/BLOCOS/Real.dwg" << true << "";
        QTest::newRow("dwg and dxf: the dxf is read")
            << "/Net/Dados/IEC/BLOCOS/Both.dwg" << true << "/Net/Dados/IEC/BLOCOS/Both.dxf";
        QTest::newRow("neither") << "/Net/Dados/IEC/BLOCOS/None.dwg" << false << "";
        QTest::newRow("dxf given")
            << "/Net/Dados/IEC/BLOCOS/m1.dxf" << true << "/Net/Dados/IEC/BLOCOS/M1.dxf";
        QTest::newRow("a folder is no block file") << "/Net/Dados/IEC/BLOCOS" << false << "";
    }

    void blockFiles()
    {
        QFETCH(QString, path);
        QFETCH(bool, exists);
        QFETCH(QString, source);
        QCOMPARE(PathResolver::blockFileExists(m_root + path), exists);
        const std::optional<QString> found = PathResolver::blockSource(m_root + path);
        if (source.isEmpty()) {
            QVERIFY(!found);
        } else {
            QVERIFY(found);
            QCOMPARE(QDir::cleanPath(*found), QDir::cleanPath(m_root + source));
        }
    }

    void wildcards_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("matches");
        QTest::newRow("star") << "MOT*"
                              << "MOTOR_3F" << true;
        QTest::newRow("star empty") << "MOT*"
                                    << "MOT" << true;
        QTest::newRow("star ignores case") << "mot*"
                                           << "Motor" << true;
        QTest::newRow("star no match") << "MOT*"
                                       << "XMOTOR" << false;
        QTest::newRow("only star") << "*"
                                   << "anything" << true;
        QTest::newRow("only star empty") << "*"
                                         << "" << true;
        QTest::newRow("question") << "M?1"
                                  << "MX1" << true;
        QTest::newRow("question needs one") << "M?1"
                                            << "M1" << false;
        QTest::newRow("digit") << "M#"
                               << "M7" << true;
        QTest::newRow("digit not letter") << "M#"
                                          << "MA" << false;
        QTest::newRow("letter") << "@1"
                                << "Q1" << true;
        QTest::newRow("letter not digit") << "@1"
                                          << "91" << false;
        QTest::newRow("dot") << "A.B"
                             << "A-B" << true;
        QTest::newRow("dot not letter") << "A.B"
                                        << "AXB" << false;
        QTest::newRow("set") << "[AB]1"
                             << "b1" << true;
        QTest::newRow("set no") << "[AB]1"
                                << "C1" << false;
        QTest::newRow("range") << "K[0-3]"
                               << "K2" << true;
        QTest::newRow("range no") << "K[0-3]"
                                  << "K5" << false;
        QTest::newRow("negated set") << "K[~0-3]"
                                     << "K5" << true;
        QTest::newRow("negated set no") << "K[~0-3]"
                                        << "K2" << false;
        QTest::newRow("escape") << "A`*"
                                << "A*" << true;
        QTest::newRow("escape literal") << "A`*"
                                        << "AB" << false;
        QTest::newRow("alternatives") << "X*,MOT*"
                                      << "MOTOR" << true;
        QTest::newRow("alternatives none") << "X*,Y*"
                                           << "MOTOR" << false;
        QTest::newRow("negation") << "~MOT*"
                                  << "LAMP" << true;
        QTest::newRow("negation no") << "~MOT*"
                                     << "MOTOR" << false;
        QTest::newRow("regex characters are plain") << "A+B(1)"
                                                    << "A+B(1)" << true;
        QTest::newRow("regex characters no") << "A+B"
                                             << "AAB" << false;
        QTest::newRow("anchored") << "MOT"
                                  << "MOTOR" << false;
    }

    void wildcards()
    {
        QFETCH(QString, pattern);
        QFETCH(QString, text);
        QFETCH(bool, matches);
        QCOMPARE(RefHost::WildcardPattern(pattern).matches(text), matches);
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_root;
};

QTEST_GUILESS_MAIN(TestRefHostPaths)
#include "tst_refhost_paths.moc"
