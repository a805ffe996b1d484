#include "HostTrace.h"

#include "CFxDocument.h"
#include "CFxSystemServices.h"
#include "CICad.h"
#include "CVRServices.h"
#include "DrawingLanguage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMutexLocker>
#include <QRegularExpression>

namespace KVHostTrace::Internal {

using Fields = QList<QPair<QString, QByteArray>>;

QByteArray json(const QJsonValue& value)
{
    // QJsonDocument serialises only arrays and objects: wrap the value and strip the brackets.
    const QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return text.mid(1, text.size() - 2);
}

QByteArray json(const QString& text)
{
    return json(QJsonValue(text));
}

QByteArray json(const char* text)
{
    return json(QJsonValue(QString::fromUtf8(text)));
}

QByteArray jsonStrings(const QStringList& list)
{
    return QJsonDocument(QJsonArray::fromStringList(list)).toJson(QJsonDocument::Compact);
}

QJsonValue lispItemJson(const LispItem& item)
{
    switch (item.kind) {
    case LispItem::Kind::Text:
        return item.text;
    case LispItem::Kind::Integer:
        return static_cast<double>(item.integer);
    case LispItem::Kind::Real:
        return item.real;
    case LispItem::Kind::Point:
        return QJsonArray{item.point.x, item.point.y, item.point.z};
    case LispItem::Kind::ListBegin:
        return QJsonValue(QStringLiteral("("));
    case LispItem::Kind::ListEnd:
        return QJsonValue(QStringLiteral(")"));
    case LispItem::Kind::DottedPair:
        return QJsonValue(QStringLiteral("."));
    }
    return {};
}

QByteArray variantJson(const QVariant& value)
{
    if (!value.isValid() || value.isNull())
        return "null";
    switch (value.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::ULongLong:
    case QMetaType::Double:
        return json(QJsonValue(value.toDouble()));
    case QMetaType::Bool:
        return value.toBool() ? "true" : "false";
    default:
        return json(value.toString());
    }
}

class TracingProgressor final : public FxProgressorUtils::Progressor
{
public:
    TracingProgressor(HostTrace& trace, FxProgressorUtils::Progressor* inner)
        : m_trace(trace), m_inner(inner)
    {}
    void BeginNestedObject(int count, int flags) override
    {
        m_trace.write({{"op", json("progress")}, {"total", QByteArray::number(count)}});
        m_inner->BeginNestedObject(count, flags);
    }
    void Meter() override
    {
        m_trace.write({{"op", json("meter")}});
        m_inner->Meter();
    }

private:
    HostTrace& m_trace;
    FxProgressorUtils::Progressor* m_inner;
};

class TracingTask final : public CVRLongOperationTask
{
public:
    TracingTask(HostTrace& trace, CVRLongOperationTask& inner)
        : m_inner(inner), m_progressor(trace, inner.progressor())
    {}
    FxProgressorUtils::Progressor* progressor() override
    {
        return m_inner.progressor() ? &m_progressor : nullptr;
    }

private:
    CVRLongOperationTask& m_inner;
    TracingProgressor m_progressor;
};

class TracingRunner final : public ILongOperationRunner
{
public:
    TracingRunner(HostTrace& trace, ILongOperationRunner* inner) : m_trace(trace), m_inner(inner) {}
    longOperationResult run(const Task& task, const KVString& title, bool flag1,
                            bool flag2) override
    {
        m_trace.write({{"op", json("longOperation")}, {"title", json(title)}});
        return m_inner->run(
            [this, &task](CVRLongOperationTask& innerTask) {
                TracingTask traced(m_trace, innerTask);
                return task(traced);
            },
            title, flag1, flag2);
    }
    ILongOperationRunner* m_innerRunner() const { return m_inner; }

private:
    HostTrace& m_trace;
    ILongOperationRunner* m_inner;
};

// Wraps a query so that its statement is traced when the runner prepares it.
class TracingQuery final : public CVRQuery
{
public:
    TracingQuery(HostTrace& trace, std::shared_ptr<CVRQuery> inner)
        : m_trace(trace), m_inner(std::move(inner))
    {}
    bool IsSelect() const override { return m_inner->IsSelect(); }
    QString cacheKey() const override { return m_inner->cacheKey(); }
    QSqlQuery statement(const QSqlDatabase& db) const override
    {
        QSqlQuery query = m_inner->statement(db);
        const QString sql = query.lastQuery();
        QByteArray binds = "{";
        static const QRegularExpression placeholder(QStringLiteral(R"(:[A-Za-z_][A-Za-z0-9_]*)"));
        QStringList seen;
        for (auto it = placeholder.globalMatch(sql); it.hasNext();) {
            const QString name = it.next().captured(0);
            if (seen.contains(name))
                continue;
            seen.append(name);
            if (binds.size() > 1)
                binds += ',';
            binds += json(name.mid(1)) + ':' + variantJson(query.boundValue(name));
        }
        binds += '}';
        m_trace.write({{"op", json("query")}, {"sql", json(sql)}, {"bind", binds}});
        return query;
    }

private:
    HostTrace& m_trace;
    std::shared_ptr<CVRQuery> m_inner;
};

class TracingServices final : public CVRServices
{
public:
    TracingServices(HostTrace& trace, CVRServices* inner) : m_trace(trace), m_inner(inner) {}

    CVRCommandManager* GetCommandManager() override { return m_inner->GetCommandManager(); }
    CVRQueryResponse RunQuery(const std::shared_ptr<CVRQuery>& query) override
    {
        auto traced = std::make_shared<TracingQuery>(m_trace, query);
        CVRQueryResponse response = m_inner->RunQuery(traced);
        if (response.failed())
            m_trace.write({{"op", json("queryFailed")}, {"error", json(response.errorText())}});
        return response;
    }
    KVString GetCurrentLanguage() override
    {
        return service("GetCurrentLanguage", m_inner->GetCurrentLanguage());
    }
    QList<int> GetDescriptionLanguages() override { return m_inner->GetDescriptionLanguages(); }
    KVString GetWorkingFolder() override
    {
        return service("GetWorkingFolder", m_inner->GetWorkingFolder());
    }
    KVString GetBaseFolder() override { return service("GetBaseFolder", m_inner->GetBaseFolder()); }
    ILongOperationRunner* GetLongOperationRunner(CFxDocument* document) override
    {
        ILongOperationRunner* inner = m_inner->GetLongOperationRunner(document);
        if (!inner) {
            m_trace.write({{"op", json("service")},
                           {"call", json("GetLongOperationRunner")},
                           {"value", "null"}});
            return nullptr;
        }
        if (!m_runner || m_runner->m_innerRunner() != inner)
            m_runner = std::make_unique<TracingRunner>(m_trace, inner);
        return m_runner.get();
    }
    CVRQueryResponse GetComponentPropertyValue(const KVString& key,
                                               const KVString& property) override
    {
        CVRQueryResponse response = m_inner->GetComponentPropertyValue(key, property);
        m_trace.write({{"op", json("propertyValue")},
                       {"key", json(key)},
                       {"property", json(property)},
                       {"value", response.succeeded() ? variantJson(response.getSingleResult())
                                                      : QByteArray("null")}});
        return response;
    }
    KVString GetComponentBlockName(const KVString& key, const KVString& standard) override
    {
        const KVString name = m_inner->GetComponentBlockName(key, standard);
        m_trace.write({{"op", json("blockName")},
                       {"key", json(key)},
                       {"standard", json(standard)},
                       {"value", json(name)}});
        return name;
    }

private:
    KVString service(const char* call, const KVString& value)
    {
        m_trace.write({{"op", json("service")}, {"call", json(call)}, {"value", json(value)}});
        return value;
    }

    HostTrace& m_trace;
    CVRServices* m_inner;
    std::unique_ptr<TracingRunner> m_runner;
};

class TracingSystem final : public CFxSystemServices
{
public:
    TracingSystem(HostTrace& trace, CFxSystemServices* inner) : m_trace(trace), m_inner(inner) {}

    int FileDialog(int flag, KVString& path, KVWindowId parent, int mode, const KVString& title,
                   const KVString& defaultName, const KVString& filter,
                   const KVString& initialFolder, void* r1, void* r2, void* r3, int r4) override
    {
        const int result = m_inner->FileDialog(flag, path, parent, mode, title, defaultName, filter,
                                               initialFolder, r1, r2, r3, r4);
        m_trace.write({{"op", json("fileDialog")},
                       {"mode", QByteArray::number(mode)},
                       {"filter", json(filter)},
                       {"folder", json(initialFolder)},
                       {"result", QByteArray::number(result)},
                       {"path", json(path)}});
        return result;
    }
    CFxResourceContext* GetResourceContext() override { return m_inner->GetResourceContext(); }
    KVString GetMessageBoxTitle() override { return m_inner->GetMessageBoxTitle(); }
    int ShowMessageBox(MessageKind kind, KVWindowId parent, const KVString& title,
                       const KVString& text) override
    {
        m_trace.write({{"op", json("message")},
                       {"kind", json(kind == MessageKind::Warning ? "warning" : "critical")},
                       {"text", json(text)}});
        return m_inner->ShowMessageBox(kind, parent, title, text);
    }
    KVString GetTempFolder() override { return m_inner->GetTempFolder(); }

private:
    HostTrace& m_trace;
    CFxSystemServices* m_inner;
};

class TracingDocument final : public CFxDocument
{
public:
    TracingDocument(HostTrace& trace, CFxDocument* inner) : m_trace(trace), m_inner(inner) {}

    void SetLispResultString(const KVString& value) override
    {
        m_trace.write({{"op", json("result")}, {"value", json(value)}});
        m_inner->SetLispResultString(value);
    }
    void WriteElectricalLog(const KVString& text) override
    {
        m_trace.write({{"op", json("log")}, {"text", json(text)}});
        m_inner->WriteElectricalLog(text);
    }

private:
    HostTrace& m_trace;
    CFxDocument* m_inner;
};

class TracingCad final : public ICadServices
{
public:
    TracingCad(HostTrace& trace, ICadServices* inner) : m_trace(trace), m_inner(inner) {}

    KVString getVarStr(const KVString& name, const KVString& defaultValue) override
    {
        const KVString value = m_inner->getVarStr(name, defaultValue);
        m_trace.write({{"op", json("getvar")}, {"name", json(name)}, {"value", json(value)}});
        return value;
    }
    void setVarStr(const KVString& name, const KVString& value) override
    {
        m_trace.write({{"op", json("setvar")}, {"name", json(name)}, {"value", json(value)}});
        m_inner->setVarStr(name, value);
    }
    void setVarBool(const KVString& name, bool value) override
    {
        m_trace.write({{"op", json("setvar")},
                       {"name", json(name)},
                       {"value", value ? QByteArray("true") : QByteArray("false")}});
        m_inner->setVarBool(name, value);
    }
    void setVarLstStr(const KVString& name, const KVStringList& values) override
    {
        m_trace.write(
            {{"op", json("setvar")}, {"name", json(name)}, {"value", jsonStrings(values)}});
        m_inner->setVarLstStr(name, values);
    }
    KVString currentLayer() override
    {
        const KVString layer = m_inner->currentLayer();
        m_trace.write({{"op", json("getLayer")}, {"value", json(layer)}});
        return layer;
    }
    bool insertBlock(const KVString& path, const KVString& name, const KVString& layer, double x,
                     double y, double z, double angleDegrees) override
    {
        m_trace.write({{"op", json("insertBlock")},
                       {"path", json(path)},
                       {"name", json(name)},
                       {"layer", json(layer)},
                       {"x", json(QJsonValue(x))},
                       {"y", json(QJsonValue(y))},
                       {"angle", json(QJsonValue(angleDegrees))}});
        return m_inner->insertBlock(path, name, layer, x, y, z, angleDegrees);
    }
    bool fileExists(const KVString& path) override
    {
        const bool exists = m_inner->fileExists(path);
        m_trace.write({{"op", json("fileExists")},
                       {"path", json(path)},
                       {"value", exists ? QByteArray("true") : QByteArray("false")}});
        return exists;
    }
    void regen() override
    {
        m_trace.write({{"op", json("regen")}});
        m_inner->regen();
    }
    bool writeBlockAttribute(const KVString& layer, const KVString& blockPattern,
                             const KVString& tag, const KVString& value) override
    {
        m_trace.write({{"op", json("writeAttribute")},
                       {"layer", json(layer)},
                       {"block", json(blockPattern)},
                       {"tag", json(tag)},
                       {"value", json(value)}});
        return m_inner->writeBlockAttribute(layer, blockPattern, tag, value);
    }

private:
    HostTrace& m_trace;
    ICadServices* m_inner;
};

class TracingLanguage final : public IDrawingLanguage
{
public:
    TracingLanguage(HostTrace& trace, IDrawingLanguage* inner) : m_trace(trace), m_inner(inner) {}

    void invokeVoid(const KVStringList& nameAndArgs) override
    {
        m_trace.write({{"op", json("invoke")},
                       {"fn", json(nameAndArgs.value(0))},
                       {"args", jsonStrings(nameAndArgs.mid(1))}});
        m_inner->invokeVoid(nameAndArgs);
    }
    void invokeTyped(const LispChain& nameAndArgs) override
    {
        QJsonArray args;
        for (qsizetype i = 1; i < nameAndArgs.size(); ++i)
            args.append(lispItemJson(nameAndArgs[i]));
        m_trace.write(
            {{"op", json("invoke")},
             {"fn", json(nameAndArgs.isEmpty() ? QString() : QString(nameAndArgs[0].text))},
             {"args", QJsonDocument(args).toJson(QJsonDocument::Compact)}});
        m_inner->invokeTyped(nameAndArgs);
    }
    std::optional<LispChain> variable(const KVString& name) override
    {
        std::optional<LispChain> value = m_inner->variable(name);
        QByteArray valueJson = "null";
        if (value) {
            QJsonArray items;
            for (const LispItem& item : *value)
                items.append(lispItemJson(item));
            valueJson = QJsonDocument(items).toJson(QJsonDocument::Compact);
        }
        m_trace.write({{"op", json("lispvar")}, {"name", json(name)}, {"value", valueJson}});
        return value;
    }
    void print(const KVString& text) override
    {
        m_trace.write({{"op", json("print")}, {"text", json(text)}});
        m_inner->print(text);
    }
    bool registerFunction(const KVString& name, DrawingLanguageFunction function) override
    {
        m_trace.write({{"op", json("registerFunction")}, {"name", json(name)}});
        return m_inner->registerFunction(name, std::move(function));
    }

private:
    HostTrace& m_trace;
    IDrawingLanguage* m_inner;
};

class Decorators
{
public:
    Decorators(HostTrace& trace, const HostBinding& inner)
    {
        binding.mainWindow = inner.mainWindow;
        binding.palette = inner.palette;
        if (inner.electrical) {
            services = std::make_unique<TracingServices>(trace, inner.electrical);
            binding.electrical = services.get();
        }
        if (inner.system) {
            system = std::make_unique<TracingSystem>(trace, inner.system);
            binding.system = system.get();
        }
        if (inner.document) {
            document = std::make_unique<TracingDocument>(trace, inner.document);
            binding.document = document.get();
        }
        if (inner.cad) {
            cad = std::make_unique<TracingCad>(trace, inner.cad);
            binding.cad = cad.get();
        }
        if (inner.language) {
            language = std::make_unique<TracingLanguage>(trace, inner.language);
            binding.language = language.get();
        }
    }

    HostBinding binding;
    std::unique_ptr<TracingServices> services;
    std::unique_ptr<TracingSystem> system;
    std::unique_ptr<TracingDocument> document;
    std::unique_ptr<TracingCad> cad;
    std::unique_ptr<TracingLanguage> language;
};

} // namespace KVHostTrace::Internal

HostTrace::HostTrace(const HostBinding& inner, QIODevice* out)
    : m_out(out), m_decorators(std::make_unique<KVHostTrace::Internal::Decorators>(*this, inner))
{}

HostTrace::~HostTrace() = default;

HostBinding HostTrace::binding() const
{
    return m_decorators->binding;
}

void HostTrace::write(const QList<QPair<QString, QByteArray>>& fields)
{
    QByteArray line = "{";
    for (qsizetype i = 0; i < fields.size(); ++i) {
        if (i)
            line += ',';
        line += KVHostTrace::Internal::json(fields[i].first) + ':' + fields[i].second;
    }
    line += "}\n";
    QMutexLocker lock(&m_mutex);
    if (m_out)
        m_out->write(line);
}
