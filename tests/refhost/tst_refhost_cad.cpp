#include "CadServices.h"
#include "CoreTestSupport.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QTest>

using namespace RefHost;

class TestRefHostCad : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        m_blocks = m_dir->path() + QStringLiteral("/Net/Dados/IEC/BLOCOS/");
        QVERIFY(CoreTest::writeBlockDxf(m_blocks + QStringLiteral("Motor.dxf"),
                                        {{QStringLiteral("TAG"), QStringLiteral("M?")},
                                         {QStringLiteral("PAGE_NUMBER"), QString()}}));
        QVERIFY(CoreTest::writeBlockDxf(m_blocks + QStringLiteral("LAMP.dxf"),
                                        {{QStringLiteral("TAG"), QStringLiteral("H?")}}));
        m_drawing = Drawing::withSinglePage();
        m_out.setData({});
        m_err.setData({});
        QVERIFY(m_out.open(QIODevice::WriteOnly));
        QVERIFY(m_err.open(QIODevice::WriteOnly));
        m_console = std::make_unique<Console>(&m_out, &m_err);
        m_reader = {};
        m_cad = std::make_unique<CadServices>(m_drawing, m_reader.reader(), *m_console);
    }

    void cleanup()
    {
        m_cad.reset();
        m_console.reset();
        m_out.close();
        m_err.close();
    }

    void variablesOfEachKind()
    {
        m_cad->setVarStr(QStringLiteral("kv_dwg"), QStringLiteral("M1"));
        m_cad->setVarBool(QStringLiteral("*INSERCAO_AUTOMATICA*"), true);
        m_cad->setVarLstStr(QStringLiteral("PBLLSTREGCAUTO"),
                            KVStringList{QStringLiteral("A"), QStringLiteral("1")});
        QCOMPARE(m_cad->getVarStr(QStringLiteral("KV_DWG"), QStringLiteral("x")),
                 QStringLiteral("M1"));
        QCOMPARE(m_cad->getVarStr(QStringLiteral("*insercao_automatica*"), {}),
                 QStringLiteral("1"));
        QCOMPARE(m_cad->getVarStr(QStringLiteral("PBLLSTREGCAUTO"), {}), QStringLiteral("A,1"));
        QCOMPARE(m_cad->getVarStr(QStringLiteral("UNKNOWN"), QStringLiteral("dflt")),
                 QStringLiteral("dflt"));
        m_cad->setVarBool(QStringLiteral("*INSERCAO_AUTOMATICA*"), false);
        QCOMPARE(m_cad->getVarStr(QStringLiteral("*INSERCAO_AUTOMATICA*"), {}),
                 QStringLiteral("0"));
        // One entry per name whatever its case; stored in upper case.
        QCOMPARE(m_drawing.variables().keys(),
                 (QStringList{QStringLiteral("*INSERCAO_AUTOMATICA*"), QStringLiteral("KV_DWG"),
                              QStringLiteral("PBLLSTREGCAUTO")}));
        QCOMPARE(m_drawing.variables().value(QStringLiteral("PBLLSTREGCAUTO")).kind,
                 DrawingVariable::Kind::TextList);
    }

    void variableReadFromAFileInAnotherCase()
    {
        DrawingVariable value;
        value.text = QStringLiteral("IEC");
        m_drawing.variables().insert(QStringLiteral("*Norma_Utilizada*"), value);
        QCOMPARE(m_cad->getVarStr(QStringLiteral("*NORMA_UTILIZADA*"), {}), QStringLiteral("IEC"));
        m_cad->setVarStr(QStringLiteral("*NORMA_UTILIZADA*"), QStringLiteral("NEMA"));
        QCOMPARE(m_drawing.variables().size(), 1);
        QCOMPARE(m_cad->getVarStr(QStringLiteral("*norma_utilizada*"), {}), QStringLiteral("NEMA"));
    }

    void currentLayer()
    {
        QCOMPARE(m_cad->currentLayer(), QStringLiteral("PAGE$1"));
        m_drawing.setCurrentLayer(m_drawing.appendPage(QStringLiteral("PAGE")));
        QCOMPARE(m_cad->currentLayer(), QStringLiteral("PAGE$2"));
    }

    void insertBlockResolvesTheWindowsPath()
    {
        const QString path = m_dir->path() + QStringLiteral("\\net\\DADOS\\iec\\Blocos\\MOTOR.dwg");
        QVERIFY(m_cad->insertBlock(path, QStringLiteral("MOTOR"), QStringLiteral("PAGE$1"), 10, 20,
                                   0, 90));
        QCOMPARE(m_reader.calls, 1);
        QCOMPARE(m_reader.paths.first(), m_blocks + QStringLiteral("Motor.dxf"));
        QCOMPARE(m_drawing.references().size(), 1);
        const BlockReference& reference = m_drawing.references().first();
        QCOMPARE(reference.blockName, QStringLiteral("MOTOR"));
        QCOMPARE(reference.layer, QStringLiteral("PAGE$1"));
        QCOMPARE(reference.x, 10.0);
        QCOMPARE(reference.y, 20.0);
        QCOMPARE(reference.rotationDegrees, 90.0);
        QCOMPARE(reference.attributes.size(), 2);
        QCOMPARE(reference.attributes.at(0).tag, QStringLiteral("TAG"));
        QCOMPARE(reference.attributes.at(0).value, QStringLiteral("M?"));
        QVERIFY(m_drawing.blocks().contains(QStringLiteral("MOTOR")));
        QVERIFY(m_err.data().isEmpty());
    }

    void aBlockIsReadOnce()
    {
        const QString path = m_blocks + QStringLiteral("Motor.dwg");
        QVERIFY(m_cad->insertBlock(path, QStringLiteral("Motor"), {}, 0, 0, 0, 0));
        QVERIFY(m_cad->insertBlock(path, QStringLiteral("MOTOR"), {}, 5, 0, 0, 0));
        QCOMPARE(m_reader.calls, 1);
        QCOMPARE(m_drawing.blocks().size(), 1);
        QCOMPARE(m_drawing.references().size(), 2);
        // An empty layer means the current one; the name is the definition's spelling.
        QCOMPARE(m_drawing.references().at(1).layer, QStringLiteral("PAGE$1"));
        QCOMPARE(m_drawing.references().at(1).blockName, QStringLiteral("Motor"));
    }

    void insertBlockFailures_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("message");
        QTest::newRow("missing") << "Missing.dwg"
                                 << "Missing"
                                 << "Missing.dwg: block file not found";
        QTest::newRow("unreadable") << "Empty.dwg"
                                    << "Empty"
                                    << "Empty.dxf: no entities";
        QTest::newRow("no name") << "Motor.dwg"
                                 << " "
                                 << "Motor.dwg: no block name given";
    }

    void insertBlockFailures()
    {
        QFETCH(QString, file);
        QFETCH(QString, name);
        QFETCH(QString, message);
        QFile empty(m_blocks + QStringLiteral("Empty.dxf"));
        QVERIFY(empty.open(QIODevice::WriteOnly));
        empty.close();
        QVERIFY(!m_cad->insertBlock(m_blocks + file, name, {}, 0, 0, 0, 0));
        QVERIFY(m_drawing.references().isEmpty());
        QVERIFY(m_drawing.blocks().isEmpty());
        const QString err = QString::fromUtf8(m_err.data());
        QVERIFY2(err.startsWith(QStringLiteral("error: ")) && err.contains(message) &&
                     err.endsWith(QLatin1Char('\n')) && err.count(QLatin1Char('\n')) == 1,
                 qPrintable(err));
        QVERIFY(m_out.data().isEmpty());
    }

    void fileExists_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<bool>("exists");
        QTest::newRow("dwg from dxf") << "\\NET\\dados\\IEC\\BLOCOS\\motor.dwg" << true;
        QTest::newRow("dxf") << "/Net/Dados/IEC/BLOCOS/lamp.DXF" << true;
        QTest::newRow("missing") << "/Net/Dados/IEC/BLOCOS/Other.dwg" << false;
    }

    void fileExists()
    {
        QFETCH(QString, path);
        QFETCH(bool, exists);
        QCOMPARE(m_cad->fileExists(m_dir->path() + path), exists);
    }

    void writeBlockAttributeWritesTheFirstMatch()
    {
        const QString motor = m_blocks + QStringLiteral("Motor.dwg");
        const QString lamp = m_blocks + QStringLiteral("LAMP.dwg");
        const QString page2 = m_drawing.appendPage(QStringLiteral("PAGE"));
        QVERIFY(
            m_cad->insertBlock(lamp, QStringLiteral("LAMP"), QStringLiteral("PAGE$1"), 0, 0, 0, 0));
        QVERIFY(m_cad->insertBlock(motor, QStringLiteral("MOTOR"), page2, 0, 0, 0, 0));
        QVERIFY(m_cad->insertBlock(motor, QStringLiteral("MOTOR"), QStringLiteral("PAGE$1"), 0, 0,
                                   0, 0));
        QVERIFY(m_cad->insertBlock(motor, QStringLiteral("MOTOR"), QStringLiteral("PAGE$1"), 0, 0,
                                   0, 0));

        QVERIFY(m_cad->writeBlockAttribute(QStringLiteral("page$1"), QStringLiteral("MOT*"),
                                           QStringLiteral("tag"), QStringLiteral("-M1")));
        const QList<BlockReference>& refs = m_drawing.references();
        QCOMPARE(refs.at(0).attributes.at(0).value, QStringLiteral("H?"));  // not matching name
        QCOMPARE(refs.at(1).attributes.at(0).value, QStringLiteral("M?"));  // other layer
        QCOMPARE(refs.at(2).attributes.at(0).value, QStringLiteral("-M1")); // the first match
        QCOMPARE(refs.at(3).attributes.at(0).value, QStringLiteral("M?"));  // not the first
        QCOMPARE(refs.at(2).attributes.at(1).value, QString());             // other tag

        // Found but without that tag: true, nothing written.
        QVERIFY(m_cad->writeBlockAttribute(QStringLiteral("PAGE$1"), QStringLiteral("*"),
                                           QStringLiteral("NONE"), QStringLiteral("x")));
        QCOMPARE(refs.at(0).attributes.at(0).value, QStringLiteral("H?"));
        QVERIFY(!m_cad->writeBlockAttribute(QStringLiteral("PAGE$1"), QStringLiteral("X*"),
                                            QStringLiteral("TAG"), QStringLiteral("x")));
        QVERIFY(!m_cad->writeBlockAttribute(QStringLiteral("PAGE$9"), QStringLiteral("*"),
                                            QStringLiteral("TAG"), QStringLiteral("x")));
    }

    void regenCounts()
    {
        QCOMPARE(m_cad->regenCount(), 0);
        m_cad->regen();
        m_cad->regen();
        QCOMPARE(m_cad->regenCount(), 2);
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_blocks;
    Drawing m_drawing;
    QBuffer m_out;
    QBuffer m_err;
    std::unique_ptr<Console> m_console;
    CoreTest::StandInBlockReader m_reader;
    std::unique_ptr<CadServices> m_cad;
};

QTEST_GUILESS_MAIN(TestRefHostCad)
#include "tst_refhost_cad.moc"
