#include "host/CFxDocument.h"
#include "host/CFxSystemServices.h"
#include "host/CICad.h"
#include "host/CVRServices.h"
#include "host/DrawingLanguage.h"
#include "host/HostBinding.h"
#include "host/HostTrace.h"

#include <QBuffer>
#include <QSqlDatabase>
#include <QSqlError>
#include <QTest>

// A minimal host that answers with fixed values and remembers what reached it, so that the
// test can tell that the trace passes every call on as well as writing it.
class MiniHost final : public ICadServices,
                       public IDrawingLanguage,
                       public CFxSystemServices,
                       public CFxDocument,
                       public CVRServices,
                       public ILongOperationRunner
{
public:
    QStringList received;
    QSqlDatabase db;

    KVString getVarStr(const KVString& name, const KVString& def) override
    {
        received << "getvar " + name;
        return name == u"*NORMA_UTILIZADA*" ? KVString("IEC") : def;
    }
    void setVarStr(const KVString& name, const KVString& value) override
    {
        received << "setvar " + name + "=" + value;
    }
    void setVarBool(const KVString& name, bool) override { received << "setbool " + name; }
    void setVarLstStr(const KVString& name, const KVStringList&) override
    {
        received << "setlist " + name;
    }
    KVString currentLayer() override { return "PAGE$1"; }
    bool insertBlock(const KVString&, const KVString& name, const KVString&, double, double, double,
                     double) override
    {
        received << "insert " + name;
        return true;
    }
    bool fileExists(const KVString& path) override { return path.endsWith(u".dwg"); }
    void regen() override { received << "regen"; }
    bool writeBlockAttribute(const KVString&, const KVString&, const KVString& tag,
                             const KVString&) override
    {
        received << "attr " + tag;
        return true;
    }

    void invokeVoid(const KVStringList& args) override { received << "invoke " + args.join(u' '); }
    void invokeTyped(const LispChain& args) override { received << "typed " + args[0].text; }
    std::optional<LispChain> variable(const KVString& name) override
    {
        if (name != u"*L_PAGINAS*")
            return std::nullopt;
        return LispChain{LispItem::listBegin(), LispItem::fromText("PAGE"), LispItem::dottedPair(),
                         LispItem::listEnd()};
    }
    void print(const KVString& text) override { received << "print " + text; }

    int FileDialog(int, KVString& path, KVWindowId, int, const KVString&, const KVString&,
                   const KVString&, const KVString&, void*, void*, void*, int) override
    {
        path = "/tmp/x.cfa";
        return KV_RESULT_OK;
    }
    CFxResourceContext* GetResourceContext() override { return nullptr; }
    KVString GetMessageBoxTitle() override { return "Host"; }
    int ShowMessageBox(MessageKind, KVWindowId, const KVString& title,
                       const KVString& text) override
    {
        received << "box " + title + ": " + text;
        return 1;
    }
    KVString GetTempFolder() override { return "/tmp"; }

    void SetLispResultString(const KVString& value) override { received << "result " + value; }
    void WriteElectricalLog(const KVString& text) override { received << "log " + text; }

    CVRCommandManager* GetCommandManager() override { return nullptr; }
    CVRQueryResponse RunQuery(const std::shared_ptr<CVRQuery>& query) override
    {
        return query->Execute(db);
    }
    KVString GetCurrentLanguage() override { return "1"; }
    QList<int> GetDescriptionLanguages() override { return {1, 2}; }
    KVString GetWorkingFolder() override { return {}; }
    KVString GetBaseFolder() override { return {}; }
    ILongOperationRunner* GetLongOperationRunner(CFxDocument*) override { return this; }
    CVRQueryResponse GetComponentPropertyValue(const KVString&, const KVString&) override
    {
        return CVRQueryResponse::failure("none");
    }
    KVString GetComponentBlockName(const KVString&, const KVString&) override { return "CB1"; }

    longOperationResult run(const Task& task, const KVString&, bool, bool) override
    {
        struct Progress final : FxProgressorUtils::Progressor, CVRLongOperationTask
        {
            QStringList* log;
            void BeginNestedObject(int count, int) override
            {
                *log << "begin " + QString::number(count);
            }
            void Meter() override { *log << "meter"; }
            FxProgressorUtils::Progressor* progressor() override { return this; }
        } progress;
        progress.log = &received;
        return task(progress);
    }

    HostBinding binding()
    {
        HostBinding b;
        b.cad = this;
        b.language = this;
        b.system = this;
        b.document = this;
        b.electrical = this;
        b.mainWindow = 7;
        return b;
    }
};

class KeyQuery final : public CVRQuery
{
public:
    explicit KeyQuery(QString key) : m_key(std::move(key)) {}
    QString cacheKey() const override { return {}; }
    QSqlQuery statement(const QSqlDatabase& db) const override
    {
        QSqlQuery query(db);
        query.prepare(QStringLiteral("SELECT NAME FROM T WHERE KEY = :key"));
        query.bindValue(QStringLiteral(":key"), m_key);
        return query;
    }

private:
    QString m_key;
};

class tst_host_trace : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void everyCallIsWrittenInOrderAndPassedOn();
    void queryIsTracedWithItsBoundValues();
    void longOperationProgressIsTraced();
    void nothingInstalledAnswersEmpty();

private:
    QStringList lines(const QBuffer& buffer) const
    {
        return QString::fromUtf8(buffer.data()).split(u'\n', Qt::SkipEmptyParts);
    }
};

void tst_host_trace::initTestCase()
{
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("trace"));
    db.setDatabaseName(QStringLiteral(":memory:"));
    QVERIFY2(db.open(), qPrintable(db.lastError().text()));
    QSqlQuery q(db);
    QVERIFY(q.exec(QStringLiteral("CREATE TABLE T (KEY VARCHAR(10), NAME VARCHAR(20))")));
    QVERIFY(q.exec(QStringLiteral("INSERT INTO T VALUES ('1', 'Contactor'), ('2', 'Relay')")));
}

void tst_host_trace::everyCallIsWrittenInOrderAndPassedOn()
{
    MiniHost host;
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    HostTrace trace(host.binding(), &out);
    ScopedHostBinding installed(trace.binding());

    QCOMPARE(CICad::GetVarStr("*NORMA_UTILIZADA*"), KVString("IEC"));
    CICad::SetVarStr("KV_KEY", "12");
    CICad::SetVarBool("*INSERCAO_AUTOMATICA*", true);
    CICad::SetVarLstStr("PBLLSTREGCAUTO", KVStringList{"TAG", "K1"});
    QCOMPARE(CICad::GetLayerCorrente(), KVString("PAGE$1"));
    QVERIFY(CICad::FileExists("C:\\DADOS\\IEC\\BLOCOS\\K.dwg"));
    QVERIFY(CICad::InserirBloco("/n/TB.dwg", "TB", "PAGE$1", 1.5, 2, 0, 90));
    CICad::Regen();
    QVERIFY(CICad::WriteBlockAttribute("PAGE$1", "TB*", "PROJECT", "P-1"));
    kvInvokeVoid("criarpagina", "PAGE", "0");
    kvInvokeTyped({LispItem::fromText("inserirAuto"), LispItem::fromInteger(12),
                   LispItem::fromPoint({1, 2, 0}), LispItem::fromText("1.57079600")});
    QVERIFY(kvGetLispVariable("*L_PAGINAS*").has_value());
    kvPrintf("\n\nAutomatic insertion completed");
    CFxMessageBox::critical(CFxUtils::GetMainWindowId(), "The component was not found");
    electricalLog(ACTIVE_DOCUMENT(), "CIInsereAuto::DropOnTreeview : boom");

    const QStringList expected = {
        R"({"op":"getvar","name":"*NORMA_UTILIZADA*","value":"IEC"})",
        R"({"op":"setvar","name":"KV_KEY","value":"12"})",
        R"({"op":"setvar","name":"*INSERCAO_AUTOMATICA*","value":true})",
        R"({"op":"setvar","name":"PBLLSTREGCAUTO","value":["TAG","K1"]})",
        R"({"op":"getLayer","value":"PAGE$1"})",
        R"({"op":"fileExists","path":"C:\\DADOS\\IEC\\BLOCOS\\K.dwg","value":true})",
        R"({"op":"insertBlock","path":"/n/TB.dwg","name":"TB","layer":"PAGE$1","x":1.5,"y":2,"angle":90})",
        R"({"op":"regen"})",
        R"({"op":"writeAttribute","layer":"PAGE$1","block":"TB*","tag":"PROJECT","value":"P-1"})",
        R"({"op":"invoke","fn":"criarpagina","args":["PAGE","0"]})",
        R"({"op":"invoke","fn":"inserirAuto","args":[12,[1,2,0],"1.57079600"]})",
        R"x({"op":"lispvar","name":"*L_PAGINAS*","value":["(","PAGE",".",")"]})x",
        R"({"op":"print","text":"\n\nAutomatic insertion completed"})",
        R"({"op":"message","kind":"critical","text":"The component was not found"})",
        R"({"op":"log","text":"CIInsereAuto::DropOnTreeview : boom"})",
    };
    QCOMPARE(lines(out), expected);
    QCOMPARE(host.received,
             QStringList({"getvar *NORMA_UTILIZADA*", "setvar KV_KEY=12",
                          "setbool *INSERCAO_AUTOMATICA*", "setlist PBLLSTREGCAUTO", "insert TB",
                          "regen", "attr PROJECT", "invoke criarpagina PAGE 0", "typed inserirAuto",
                          "print \n\nAutomatic insertion completed",
                          "box Host: The component was not found",
                          "log CIInsereAuto::DropOnTreeview : boom"}));
}

void tst_host_trace::queryIsTracedWithItsBoundValues()
{
    MiniHost host;
    host.db = QSqlDatabase::database(QStringLiteral("trace"));
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    HostTrace trace(host.binding(), &out);
    ScopedHostBinding installed(trace.binding());

    const CVRQueryResponse response =
        GetElectricalServices()->RunQuery(std::make_shared<KeyQuery>(QStringLiteral("2")));
    QVERIFY(response.succeeded());
    QCOMPARE(response.getSingleResult().toString(), QStringLiteral("Relay"));
    QCOMPARE(response.getColumns().size(), 1);
    QCOMPARE(response.getColumns().first().name, QStringLiteral("NAME"));
    const QString expected = QStringLiteral(
        R"({"op":"query","sql":"SELECT NAME FROM T WHERE KEY = :key","bind":{"key":"2"}})");
    QCOMPARE(lines(out), QStringList{expected});
}

void tst_host_trace::longOperationProgressIsTraced()
{
    MiniHost host;
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    HostTrace trace(host.binding(), &out);
    ScopedHostBinding installed(trace.binding());

    ILongOperationRunner* runner =
        GetElectricalServices()->GetLongOperationRunner(ACTIVE_DOCUMENT());
    QVERIFY(runner);
    const longOperationResult result = runner->run(
        [](CVRLongOperationTask& task) {
            task.progressor()->BeginNestedObject(2, 0);
            task.progressor()->Meter();
            task.progressor()->Meter();
            return longOperationResult::Success;
        },
        {}, false, true);
    QCOMPARE(result, longOperationResult::Success);
    QCOMPARE(lines(out),
             QStringList({R"({"op":"longOperation","title":""})", R"({"op":"progress","total":2})",
                          R"({"op":"meter"})", R"({"op":"meter"})"}));
    QCOMPARE(host.received, QStringList({"begin 2", "meter", "meter"}));
}

void tst_host_trace::nothingInstalledAnswersEmpty()
{
    ScopedHostBinding installed(HostBinding{});
    QVERIFY(GetElectricalServices() == nullptr);
    QVERIFY(ACTIVE_DOCUMENT() == nullptr);
    QCOMPARE(CICad::GetVarStr("X", "fallback"), KVString("fallback"));
    QVERIFY(!CICad::FileExists("/"));
    QVERIFY(!kvGetLispVariable("*L_PAGINAS*").has_value());
    QCOMPARE(CFxMessageBox::warning(0, "nobody sees this"), 0);
    kvInvokeVoid("inicioInsAuto");
    electricalLog(ACTIVE_DOCUMENT(), "dropped");
}

QTEST_GUILESS_MAIN(tst_host_trace)
#include "tst_host_trace.moc"
