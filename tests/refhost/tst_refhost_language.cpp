#include "CoreTestSupport.h"
#include "LispEnvironment.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QTest>

#include <numbers>

using namespace RefHost;

namespace {

LispChain text(const QString& t)
{
    return {LispItem::fromText(t)};
}

} // namespace

class TestRefHostLanguage : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        // The standard's folders are spelled unlike the path the function builds.
        QVERIFY(
            CoreTest::writeBlockDxf(m_dir->path() + QStringLiteral("/Net/Dados/iec/Blocos/M1.DXF"),
                                    {{QStringLiteral("TAG"), QStringLiteral("M?")},
                                     {QStringLiteral("DESCRICAO"), QStringLiteral("none")},
                                     {QStringLiteral("FABRICANTE"), QStringLiteral("ACME")}}));
        m_drawing = Drawing::withSinglePage(QStringLiteral("A"));
        m_drawing.appendPage(QStringLiteral("A"));
        m_drawing.appendPage(QStringLiteral("B"));
        m_drawing.findPage(QStringLiteral("A$2"))->title = QStringLiteral("Second");
        m_out.setData({});
        m_err.setData({});
        QVERIFY(m_out.open(QIODevice::WriteOnly));
        QVERIFY(m_err.open(QIODevice::WriteOnly));
        m_console = std::make_unique<Console>(&m_out, &m_err);
        m_reader = {};
        m_cad = std::make_unique<CadServices>(m_drawing, m_reader.reader(), *m_console);
        m_undo = std::make_unique<UndoHistory>(m_drawing);
        m_lisp = std::make_unique<LispEnvironment>(m_drawing, *m_cad, *m_undo, *m_console);
        m_cad->setVarStr(QStringLiteral("*DIRETORIO_REDE*"),
                         m_dir->path() + QStringLiteral("/NET/"));
        m_cad->setVarStr(QStringLiteral("*NORMA_UTILIZADA*"), QStringLiteral("IEC"));
    }

    void cleanup()
    {
        m_lisp.reset();
        m_undo.reset();
        m_cad.reset();
        m_console.reset();
        m_out.close();
        m_err.close();
    }

    void pageListsOnePerGroup()
    {
        m_lisp->invokeVoid(KVStringList{QStringLiteral("monta_listas_de_paginas_globais")});
        const std::optional<LispChain> value = m_lisp->variable(QStringLiteral("*l_paginas*"));
        QVERIFY(value);
        const LispChain expected = {
            LispItem::listBegin(),
            LispItem::fromText(QStringLiteral("A")),
            LispItem::listBegin(),
            LispItem::fromText(QStringLiteral("A$1")),
            LispItem::dottedPair(),
            LispItem::fromText(QStringLiteral("A$1")),
            LispItem::listEnd(),
            LispItem::listBegin(),
            LispItem::fromText(QStringLiteral("Second")),
            LispItem::dottedPair(),
            LispItem::fromText(QStringLiteral("A$2")),
            LispItem::listEnd(),
            LispItem::listEnd(),
            LispItem::listBegin(),
            LispItem::fromText(QStringLiteral("B")),
            LispItem::listBegin(),
            LispItem::fromText(QStringLiteral("B$1")),
            LispItem::dottedPair(),
            LispItem::fromText(QStringLiteral("B$1")),
            LispItem::listEnd(),
            LispItem::listEnd(),
        };
        QCOMPARE(*value, expected);
        QVERIFY(m_err.data().isEmpty());
        QVERIFY(m_out.data().isEmpty());

        // Built again from the drawing as it is now.
        m_drawing.appendPage(QStringLiteral("B"));
        m_lisp->invokeVoid(KVStringList{QStringLiteral("MONTA_LISTAS_DE_PAGINAS_GLOBAIS")});
        QCOMPARE(m_lisp->variable(QStringLiteral("*L_PAGINAS*"))->size(), expected.size() + 5);
    }

    void unsetVariableIsNothing() { QVERIFY(!m_lisp->variable(QStringLiteral("*L_PAGINAS*"))); }

    void thawPageMakesItCurrent()
    {
        m_lisp->invokeVoid(
            KVStringList{QStringLiteral("Descongela_as_layers_da_pagina"), QStringLiteral("b$1")});
        QCOMPARE(m_drawing.currentLayer(), QStringLiteral("B$1"));
        QVERIFY(!m_drawing.findPage(QStringLiteral("B$1"))->frozen);
        QVERIFY(m_drawing.findPage(QStringLiteral("A$1"))->frozen);
        QVERIFY(m_err.data().isEmpty());
    }

    void thawUnknownPageChangesNothing()
    {
        m_lisp->invokeVoid(
            KVStringList{QStringLiteral("Descongela_as_layers_da_pagina"), QStringLiteral("C$1")});
        QCOMPARE(m_drawing.currentLayer(), QStringLiteral("A$1"));
        QCOMPARE(QString::fromUtf8(m_err.data()),
                 QStringLiteral("error: Descongela_as_layers_da_pagina: no page has the layer "
                                "\"C$1\"\n"));
    }

    void createPageAppendsAndMakesCurrent()
    {
        m_lisp->invokeVoid(
            KVStringList{QStringLiteral("criarpagina"), QStringLiteral("A"), QStringLiteral("0")});
        QCOMPARE(m_drawing.currentLayer(), QStringLiteral("A$3"));
        QCOMPARE(m_drawing.groups().first().pages.size(), 3);
        QVERIFY(m_drawing.findPage(QStringLiteral("A$2"))->frozen);
        m_lisp->invokeVoid(KVStringList{QStringLiteral("criarpagina"), QStringLiteral("NEW"),
                                        QStringLiteral("0")});
        QCOMPARE(m_drawing.currentLayer(), QStringLiteral("NEW$1"));
        QCOMPARE(m_drawing.groups().size(), 3);
        QVERIFY(m_err.data().isEmpty());

        m_lisp->invokeVoid(KVStringList{QStringLiteral("criarpagina"), QStringLiteral(" ")});
        QCOMPARE(m_drawing.groups().size(), 3);
        QVERIFY(m_err.data().startsWith("error: criarpagina: "));
    }

    void insertionStepCanBeUndone()
    {
        m_lisp->invokeVoid(KVStringList{QStringLiteral("inicioInsAuto")});
        QVERIFY(m_undo->isStepOpen());
        m_lisp->invokeVoid(
            KVStringList{QStringLiteral("criarpagina"), QStringLiteral("A"), QStringLiteral("0")});
        m_cad->setVarStr(QStringLiteral("X"), QStringLiteral("1"));
        m_lisp->invokeVoid(KVStringList{QStringLiteral("fimInsAuto")});
        QVERIFY(!m_undo->isStepOpen());
        QVERIFY(m_undo->canUndo());
        QCOMPARE(m_undo->undoLabel(), QStringLiteral("Automatic insertion"));

        QVERIFY(m_undo->undo());
        QCOMPARE(m_drawing.currentLayer(), QStringLiteral("A$1"));
        QCOMPARE(m_drawing.pageLayers().size(), 3);
        QVERIFY(!m_drawing.variables().contains(QStringLiteral("X")));
        QVERIFY(m_undo->redo());
        QCOMPARE(m_drawing.currentLayer(), QStringLiteral("A$3"));
        QCOMPARE(m_cad->getVarStr(QStringLiteral("X"), {}), QStringLiteral("1"));
        QVERIFY(m_err.data().isEmpty());
    }

    void insertionStepOutOfOrder()
    {
        m_lisp->invokeVoid(KVStringList{QStringLiteral("fimInsAuto")});
        QCOMPARE(QString::fromUtf8(m_err.data()),
                 QStringLiteral("error: fimInsAuto: no insertion step is open\n"));
        m_lisp->invokeVoid(KVStringList{QStringLiteral("inicioInsAuto")});
        m_lisp->invokeVoid(KVStringList{QStringLiteral("inicioInsAuto")});
        QVERIFY(m_err.data().endsWith("error: inicioInsAuto: an insertion step is already open\n"));
        QVERIFY(!m_undo->canUndo());
    }

    void updateMacrosNumbersThePages()
    {
        const QString block = m_dir->path() + QStringLiteral("/net/dados/IEC/blocos/Frame.dxf");
        QVERIFY(
            CoreTest::writeBlockDxf(block, {{QStringLiteral("page_number"), QStringLiteral("?")},
                                            {QStringLiteral("PAGE_COUNT"), QStringLiteral("?")},
                                            {QStringLiteral("OTHER"), QStringLiteral("?")}}));
        for (const QString& layer :
             {QStringLiteral("A$1"), QStringLiteral("A$2"), QStringLiteral("B$1")})
            QVERIFY(
                m_cad->placeBlock(block, QStringLiteral("FRAME"), layer, 0, 0, 0, 0).succeeded());

        m_lisp->invokeVoid(KVStringList{QStringLiteral("atualizarMacros"), QStringLiteral("A$2"),
                                        QStringLiteral("B$1"), QStringLiteral("0")});
        const QList<BlockReference>& refs = m_drawing.references();
        auto values = [](const BlockReference& r) {
            return QStringList{r.attributes.at(0).value, r.attributes.at(1).value,
                               r.attributes.at(2).value};
        };
        QCOMPARE(values(refs.at(0)), (QStringList{"?", "?", "?"})); // A$1 not named
        QCOMPARE(values(refs.at(1)), (QStringList{"2", "2", "?"}));
        QCOMPARE(values(refs.at(2)), (QStringList{"1", "1", "?"}));
        QVERIFY(m_err.data().isEmpty());
    }

    // Layers are matched ignoring case, in the arguments as on the references.
    void updateMacrosMatchesLayersIgnoringCase()
    {
        const QString block = m_dir->path() + QStringLiteral("/net/dados/IEC/blocos/Frame.dxf");
        QVERIFY(
            CoreTest::writeBlockDxf(block, {{QStringLiteral("PAGE_NUMBER"), QStringLiteral("?")},
                                            {QStringLiteral("page_count"), QStringLiteral("?")}}));
        for (const QString& layer : {QStringLiteral("a$2"), QStringLiteral("A$1"),
                                     QStringLiteral("b$1"), QStringLiteral("C$1")})
            QVERIFY(
                m_cad->placeBlock(block, QStringLiteral("FRAME"), layer, 0, 0, 0, 0).succeeded());

        m_lisp->invokeVoid(KVStringList{QStringLiteral("atualizarMacros"), QStringLiteral("A$2"),
                                        QStringLiteral("a$1"), QStringLiteral("C$1"),
                                        QStringLiteral("a$2")});
        QStringList values;
        for (const BlockReference& reference : m_drawing.references())
            values.append(reference.attributes.at(0).value + u'/' +
                          reference.attributes.at(1).value);
        // B$1 not named, C$1 not a page.
        QCOMPARE(values, (QStringList{"2/2", "1/2", "?/?", "?/?"}));
        QVERIFY(m_err.data().isEmpty());
    }

    void insertComponentWithItsAttributes()
    {
        m_cad->setVarStr(QStringLiteral("KV_KEY"), QStringLiteral("100"));
        m_cad->setVarStr(QStringLiteral("KV_DWG"), QStringLiteral(" M1 "));
        m_cad->setVarLstStr(QStringLiteral("PBLLSTREGCAUTO"),
                            KVStringList{QStringLiteral("KV_KEY"), QStringLiteral("100"),
                                         QStringLiteral("tag"), QStringLiteral("-M1"),
                                         QStringLiteral("Descricao"), QStringLiteral("Motor"),
                                         QStringLiteral("TAG"), QStringLiteral("second")});
        m_cad->setVarLstStr(QStringLiteral("PBLLSTVINCAUTO"),
                            KVStringList{QStringLiteral("2"), QStringLiteral("500")});
        m_drawing.setCurrentLayer(QStringLiteral("A$2"));
        m_lisp->invokeTyped({LispItem::fromText(QStringLiteral("inserirAuto")),
                             LispItem::fromInteger(100), LispItem::fromPoint({12.5, 30, 1}),
                             LispItem::fromText(QStringLiteral("1.5707963"))});
        QVERIFY2(m_err.data().isEmpty(), m_err.data().constData());
        QCOMPARE(m_reader.calls, 1);
        QVERIFY(m_reader.paths.first().endsWith(QStringLiteral("/Net/Dados/iec/Blocos/M1.DXF")));
        QCOMPARE(m_drawing.references().size(), 1);
        const BlockReference& reference = m_drawing.references().first();
        QCOMPARE(reference.blockName, QStringLiteral("M1"));
        QCOMPARE(reference.layer, QStringLiteral("A$2"));
        QCOMPARE(reference.x, 12.5);
        QCOMPARE(reference.y, 30.0);
        QCOMPARE(reference.z, 1.0);
        QVERIFY(qAbs(reference.rotationDegrees - 1.5707963 * 180 / std::numbers::pi) < 1e-9);
        QCOMPARE(reference.attributes.at(0).value, QStringLiteral("-M1")); // first pair wins
        QCOMPARE(reference.attributes.at(1).value, QStringLiteral("Motor"));
        QCOMPARE(reference.attributes.at(2).value, QStringLiteral("ACME")); // keeps its default
        QCOMPARE(reference.associated, (QStringList{QStringLiteral("2"), QStringLiteral("500")}));
        QCOMPARE(reference.componentKey, QStringLiteral("100"));
    }

    void insertComponentWithoutRotationFromTextArguments()
    {
        m_cad->setVarStr(QStringLiteral("KV_KEY"), QStringLiteral("7"));
        m_cad->setVarStr(QStringLiteral("KV_DWG"), QStringLiteral("m1"));
        m_lisp->invokeVoid(KVStringList{QStringLiteral("inserirauto"), QStringLiteral("7"),
                                        QStringLiteral("1,2")});
        QVERIFY2(m_err.data().isEmpty(), m_err.data().constData());
        const BlockReference& reference = m_drawing.references().first();
        QCOMPARE(reference.rotationDegrees, 0.0);
        QCOMPARE(reference.x, 1.0);
        QCOMPARE(reference.y, 2.0);
        QCOMPARE(reference.componentKey, QStringLiteral("7"));
        QCOMPARE(reference.attributes.at(0).value, QStringLiteral("M?"));
        QVERIFY(reference.associated.isEmpty());
    }

    void insertComponentFailures_data()
    {
        QTest::addColumn<QString>("blockName");
        QTest::addColumn<bool>("withPoint");
        QTest::addColumn<QString>("message");
        QTest::newRow("no block name")
            << " " << true
            << "error: inserirAuto: component 100 has no block name (KV_DWG is empty)\n";
        QTest::newRow("no block file") << "M2" << true << "M2.dwg: block file not found";
        QTest::newRow("no point")
            << "M1" << false
            << "error: inserirAuto: expects a component key and an insertion point\n";
    }

    void insertComponentFailures()
    {
        QFETCH(QString, blockName);
        QFETCH(bool, withPoint);
        QFETCH(QString, message);
        m_cad->setVarStr(QStringLiteral("KV_KEY"), QStringLiteral("100"));
        m_cad->setVarStr(QStringLiteral("KV_DWG"), blockName);
        LispChain call = {LispItem::fromText(QStringLiteral("inserirAuto")),
                          LispItem::fromInteger(100)};
        if (withPoint)
            call.append(LispItem::fromPoint({0, 0, 0}));
        const Drawing before = m_drawing;
        m_lisp->invokeTyped(call);
        QVERIFY(m_drawing.references().isEmpty());
        QCOMPARE(m_drawing.blocks().size(), before.blocks().size());
        const QString err = QString::fromUtf8(m_err.data());
        QVERIFY2(err.startsWith(QStringLiteral("error: inserirAuto: ")) && err.contains(message) &&
                     err.count(QLatin1Char('\n')) == 1,
                 qPrintable(err));
        QVERIFY(m_out.data().isEmpty());
    }

    void componentThatIsNotPublishedTakesItsBlockFromTheLookup()
    {
        // The published component is 100 with block M1 and its attribute values; the run's
        // per-page component 1503 is placed without being published.
        m_cad->setVarStr(QStringLiteral("KV_KEY"), QStringLiteral("100"));
        m_cad->setVarStr(QStringLiteral("KV_DWG"), QStringLiteral("NOT_THIS"));
        m_cad->setVarLstStr(QStringLiteral("PBLLSTREGCAUTO"),
                            KVStringList{QStringLiteral("TAG"), QStringLiteral("-M1")});
        m_cad->setVarLstStr(QStringLiteral("PBLLSTVINCAUTO"),
                            KVStringList{QStringLiteral("2"), QStringLiteral("500")});
        QStringList asked;
        m_lisp->setBlockNameLookup([&asked](const QString& key, const QString& standard) {
            asked.append(key + QLatin1Char('/') + standard);
            return key == u"1503" ? QStringLiteral(" M1 ") : QString();
        });
        m_lisp->invokeTyped({LispItem::fromText(QStringLiteral("inserirAuto")),
                             LispItem::fromInteger(1503), LispItem::fromPoint({395, 200, 0}),
                             LispItem::fromText(QStringLiteral("0.00000000"))});
        QVERIFY2(m_err.data().isEmpty(), m_err.data().constData());
        QCOMPARE(asked, QStringList{QStringLiteral("1503/IEC")});
        const BlockReference& reference = m_drawing.references().first();
        QCOMPARE(reference.blockName, QStringLiteral("M1"));
        QCOMPARE(reference.componentKey, QStringLiteral("1503"));
        QCOMPARE(reference.attributes.at(0).value, QStringLiteral("M?")); // defaults kept
        QVERIFY(reference.associated.isEmpty());

        m_lisp->invokeTyped({LispItem::fromText(QStringLiteral("inserirAuto")),
                             LispItem::fromInteger(1504), LispItem::fromPoint({0, 0, 0})});
        QCOMPARE(QString::fromUtf8(m_err.data()),
                 QStringLiteral("error: inserirAuto: component 1504 has no block name in "
                                "standard \"IEC\"\n"));
        QCOMPARE(m_drawing.references().size(), 1);
    }

    void unknownFunctionOnlyReportsIt()
    {
        const Drawing before = m_drawing;
        m_lisp->invokeVoid(KVStringList{QStringLiteral("apagaTudo"), QStringLiteral("A$1")});
        m_lisp->invokeTyped(text(QStringLiteral("outraCoisa")));
        QCOMPARE(QString::fromUtf8(m_err.data()),
                 QStringLiteral("error: unknown drawing-language function \"apagaTudo\"\n"
                                "error: unknown drawing-language function \"outraCoisa\"\n"));
        QVERIFY(m_out.data().isEmpty());
        QCOMPARE(m_drawing.pageLayers(), before.pageLayers());
        QCOMPARE(m_drawing.currentLayer(), before.currentLayer());
        QVERIFY(m_drawing.lispVariables().isEmpty());
    }

    void printGoesToTheOutput()
    {
        m_lisp->print(QStringLiteral("\n\nAutomatic insertion completed"));
        QCOMPARE(m_out.data(), QByteArray("\n\nAutomatic insertion completed"));
        QVERIFY(m_err.data().isEmpty());
    }

    void knowsItsFunctions()
    {
        QStringList names = m_lisp->functionNames();
        names.sort();
        QCOMPARE(names, (QStringList{"Descongela_as_layers_da_pagina", "atualizarMacros",
                                     "criarpagina", "fimInsAuto", "inicioInsAuto", "inserirAuto",
                                     "monta_listas_de_paginas_globais"}));
    }

    void moduleFunctionIsCalledByName()
    {
        int calls = 0;
        QVERIFY(m_lisp->registerFunction(QStringLiteral("kvGetTempDir"), [&calls]() {
            ++calls;
            return ModuleFunctions::kResultSet;
        }));
        m_lisp->invokeVoid(KVStringList{QStringLiteral("KVGETTEMPDIR")});
        m_lisp->invokeTyped(text(QStringLiteral("kvgettempdir")));
        QCOMPARE(calls, 2);
        QVERIFY(m_err.data().isEmpty());
        QVERIFY(m_lisp->functionNames().contains(QStringLiteral("kvGetTempDir")));
    }

    void moduleFunctionFailures()
    {
        int status = 3;
        QVERIFY(m_lisp->registerFunction(QStringLiteral("kvTest"), [&status]() { return status; }));
        QVERIFY(!m_lisp->call(QStringLiteral("kvTest"), {}));
        QVERIFY(!m_lisp->call(QStringLiteral("kvTest"), text(QStringLiteral("extra"))));
        status = ModuleFunctions::kResultSet;
        QVERIFY(m_lisp->call(QStringLiteral("kvTest"), {}));
        QCOMPARE(QString::fromUtf8(m_err.data()),
                 QStringLiteral("error: kvTest: the function answered status 3\n"
                                "error: kvTest: takes no arguments\n"));
    }

    void registeredNamesAreNotTakenTwice()
    {
        const auto answer = []() { return ModuleFunctions::kResultSet; };
        // A built-in function and an already registered one keep their names, whatever the case.
        QVERIFY(!m_lisp->registerFunction(QStringLiteral("INSERIRAUTO"), answer));
        QVERIFY(m_lisp->registerFunction(QStringLiteral("kvGetTempDir"), answer));
        QVERIFY(!m_lisp->registerFunction(QStringLiteral("KVGetTempDir"), answer));
        QVERIFY(!m_lisp->registerFunction(QString(), answer));
        QVERIFY(!m_lisp->registerFunction(QStringLiteral("kvEmpty"), DrawingLanguageFunction()));
        QCOMPARE(m_lisp->functionNames().size(), 8);
    }

    void removedModuleFunctionsAreUnknown()
    {
        int calls = 0;
        QVERIFY(m_lisp->registerFunction(QStringLiteral("kvGetTempDir"), [&calls]() {
            ++calls;
            return ModuleFunctions::kResultSet;
        }));
        m_lisp->removeRegisteredFunctions();
        QVERIFY(!m_lisp->call(QStringLiteral("kvGetTempDir"), {}));
        QCOMPARE(calls, 0);
        QCOMPARE(QString::fromUtf8(m_err.data()),
                 QStringLiteral("error: unknown drawing-language function \"kvGetTempDir\"\n"));
        QCOMPARE(m_lisp->functionNames().size(), 7);
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    Drawing m_drawing;
    QBuffer m_out;
    QBuffer m_err;
    std::unique_ptr<Console> m_console;
    CoreTest::StandInBlockReader m_reader;
    std::unique_ptr<CadServices> m_cad;
    std::unique_ptr<UndoHistory> m_undo;
    std::unique_ptr<LispEnvironment> m_lisp;
};

QTEST_GUILESS_MAIN(TestRefHostLanguage)
#include "tst_refhost_language.moc"
