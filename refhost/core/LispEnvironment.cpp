#include "LispEnvironment.h"

#include "DrawingVariableNames.h"

#include <QHash>

#include <numbers>

namespace RefHost {

namespace {

using namespace DrawingVariableNames;

const QString kPageNumberTag = QStringLiteral("PAGE_NUMBER");
const QString kPageCountTag = QStringLiteral("PAGE_COUNT");

// An argument as text: texts as they are, numbers in decimal; nothing for other kinds.
std::optional<QString> textArgument(const LispChain& args, qsizetype index)
{
    if (index >= args.size())
        return std::nullopt;
    const LispItem& item = args.at(index);
    switch (item.kind) {
    case LispItem::Kind::Text:
        return QString(item.text);
    case LispItem::Kind::Integer:
        return QString::number(item.integer);
    case LispItem::Kind::Real:
        return QString::number(item.real, 'g', 17);
    default:
        return std::nullopt;
    }
}

std::optional<qint64> integerArgument(const LispChain& args, qsizetype index)
{
    if (index >= args.size())
        return std::nullopt;
    const LispItem& item = args.at(index);
    switch (item.kind) {
    case LispItem::Kind::Integer:
        return item.integer;
    case LispItem::Kind::Real:
        return static_cast<qint64>(item.real);
    case LispItem::Kind::Text:
        return item.text.toIntLenient();
    default:
        return std::nullopt;
    }
}

// A point argument, or a text "x,y[,z]" (missing coordinates are 0).
std::optional<KVPoint3d> pointArgument(const LispChain& args, qsizetype index)
{
    if (index >= args.size())
        return std::nullopt;
    const LispItem& item = args.at(index);
    if (item.kind == LispItem::Kind::Point)
        return item.point;
    if (item.kind != LispItem::Kind::Text)
        return std::nullopt;
    const QStringList parts = item.text.split(QLatin1Char(','));
    KVPoint3d point;
    point.x = KVString(parts.value(0)).toDoubleLenient();
    point.y = KVString(parts.value(1)).toDoubleLenient();
    point.z = KVString(parts.value(2)).toDoubleLenient();
    return point;
}

// The value of the first name/value pair of a flat list whose name equals `tag` ignoring case.
std::optional<QString> valueForTag(const QStringList& flat, const QString& tag)
{
    for (qsizetype i = 0; i + 1 < flat.size(); i += 2) {
        if (flat.at(i).compare(tag, Qt::CaseInsensitive) == 0)
            return flat.at(i + 1);
    }
    return std::nullopt;
}

} // namespace

LispEnvironment::LispEnvironment(Drawing& drawing, CadServices& cad, UndoHistory& undo,
                                 Console& console)
    : m_drawing(drawing), m_cad(cad), m_undo(undo), m_console(console)
{
    const QList<Entry> functions = {
        {QStringLiteral("monta_listas_de_paginas_globais"), &LispEnvironment::buildPageLists},
        {QStringLiteral("Descongela_as_layers_da_pagina"), &LispEnvironment::thawPage},
        {QStringLiteral("criarpagina"), &LispEnvironment::createPage},
        {QStringLiteral("inicioInsAuto"), &LispEnvironment::beginInsertion},
        {QStringLiteral("fimInsAuto"), &LispEnvironment::endInsertion},
        {QStringLiteral("atualizarMacros"), &LispEnvironment::updateMacros},
        {QStringLiteral("inserirAuto"), &LispEnvironment::insertComponent},
    };
    for (const Entry& entry : functions)
        m_functions.insert(entry.name.toUpper(), entry);
}

void LispEnvironment::invokeVoid(const KVStringList& nameAndArgs)
{
    if (nameAndArgs.isEmpty()) {
        m_console.error(QStringLiteral("drawing-language call without a function name"));
        return;
    }
    LispChain args;
    for (qsizetype i = 1; i < nameAndArgs.size(); ++i)
        args.append(LispItem::fromText(nameAndArgs.at(i)));
    call(nameAndArgs.first(), args);
}

void LispEnvironment::invokeTyped(const LispChain& nameAndArgs)
{
    if (nameAndArgs.isEmpty() || nameAndArgs.first().kind != LispItem::Kind::Text) {
        m_console.error(QStringLiteral("drawing-language call without a function name"));
        return;
    }
    call(nameAndArgs.first().text, nameAndArgs.mid(1));
}

std::optional<LispChain> LispEnvironment::variable(const KVString& name)
{
    const QMap<QString, LispChain>& variables = m_drawing.lispVariables();
    for (auto it = variables.constBegin(); it != variables.constEnd(); ++it) {
        if (it.key().compare(name, Qt::CaseInsensitive) == 0)
            return it.value();
    }
    return std::nullopt;
}

void LispEnvironment::print(const KVString& text)
{
    m_console.print(text);
}

void LispEnvironment::setVariable(const QString& name, const LispChain& value)
{
    QMap<QString, LispChain>& variables = m_drawing.lispVariables();
    for (auto it = variables.begin(); it != variables.end();) {
        if (it.key().compare(name, Qt::CaseInsensitive) == 0)
            it = variables.erase(it);
        else
            ++it;
    }
    variables.insert(name.toUpper(), value);
}

bool LispEnvironment::registerFunction(const KVString& name, DrawingLanguageFunction function)
{
    // A built-in function keeps its name.
    if (m_functions.contains(QString(name).toUpper()))
        return false;
    return m_registered.add(name, std::move(function));
}

QStringList LispEnvironment::functionNames() const
{
    QStringList names;
    for (const Entry& entry : m_functions)
        names.append(entry.name);
    names.append(m_registered.names());
    return names;
}

bool LispEnvironment::call(const QString& name, const LispChain& args)
{
    const auto found = m_functions.constFind(name.toUpper());
    if (found != m_functions.constEnd())
        return (this->*found->function)(found->name, args);
    // Not a built-in function: a module's, or reported as unknown.
    return m_registered.call(name, args.size(), m_console);
}

// "*L_PAGINAS*" holds one list per page group, one after the other (they are not wrapped in an
// outer list): (GROUP (TITLE . LAYER) (TITLE . LAYER) ...) (GROUP2 ...) ...
bool LispEnvironment::buildPageLists(const QString&, const LispChain&)
{
    LispChain chain;
    for (const PageGroup& group : m_drawing.groups()) {
        chain.append(LispItem::listBegin());
        chain.append(LispItem::fromText(group.name));
        for (const Page& page : group.pages) {
            chain.append(LispItem::listBegin());
            chain.append(LispItem::fromText(page.title));
            chain.append(LispItem::dottedPair());
            chain.append(LispItem::fromText(page.layer));
            chain.append(LispItem::listEnd());
        }
        chain.append(LispItem::listEnd());
    }
    setVariable(kPageList, chain);
    return true;
}

bool LispEnvironment::thawPage(const QString& name, const LispChain& args)
{
    const std::optional<QString> layer = textArgument(args, 0);
    if (!layer)
        return fail(name, QStringLiteral("expects the layer name of a page"));
    if (!m_drawing.findPage(*layer))
        return fail(name, QStringLiteral("no page has the layer \"%1\"").arg(*layer));
    m_drawing.setCurrentLayer(*layer);
    return true;
}

// The second argument (the run passes "0") is accepted and not used.
bool LispEnvironment::createPage(const QString& name, const LispChain& args)
{
    const std::optional<QString> group = textArgument(args, 0);
    if (!group || group->trimmed().isEmpty())
        return fail(name, QStringLiteral("expects the name of a page group"));
    m_drawing.setCurrentLayer(m_drawing.appendPage(*group));
    return true;
}

bool LispEnvironment::beginInsertion(const QString& name, const LispChain&)
{
    if (!m_undo.beginStep(insertionStepLabel()))
        return fail(name, QStringLiteral("an insertion step is already open"));
    return true;
}

bool LispEnvironment::endInsertion(const QString& name, const LispChain&)
{
    if (!m_undo.endStep())
        return fail(name, QStringLiteral("no insertion step is open"));
    return true;
}

// Names that are not pages are passed over: the run names the current layer, which need not be
// a page.
bool LispEnvironment::updateMacros(const QString&, const LispChain& args)
{
    // A run names every page at once, so the pages' positions and the named layers are looked
    // up in hashes and the references are walked once, not once per named page. Names equal
    // ignoring case (QString::compare) are exactly those with equal case-folded forms.
    QHash<QString, std::pair<int, int>> pagePositions;
    for (const PageGroup& group : m_drawing.groups()) {
        for (qsizetype i = 0; i < group.pages.size(); ++i) {
            // The first page of a name counts, as in Drawing::pagePosition.
            QString key = group.pages.at(i).layer.toCaseFolded();
            if (!pagePositions.contains(key))
                pagePositions.insert(std::move(key), {int(i + 1), int(group.pages.size())});
        }
    }
    QHash<QString, std::pair<int, int>> named;
    for (qsizetype i = 0; i < args.size(); ++i) {
        const std::optional<QString> layer = textArgument(args, i);
        if (!layer)
            continue;
        QString key = layer->toCaseFolded();
        const auto found = pagePositions.constFind(key);
        if (found != pagePositions.cend())
            named.insert(std::move(key), found.value());
    }
    if (named.isEmpty())
        return true;
    for (BlockReference& reference : m_drawing.references()) {
        const auto found = named.constFind(reference.layer.toCaseFolded());
        if (found == named.cend())
            continue;
        const auto [position, count] = found.value();
        for (AttributeValue& attribute : reference.attributes) {
            if (attribute.tag.compare(kPageNumberTag, Qt::CaseInsensitive) == 0)
                attribute.value = QString::number(position);
            else if (attribute.tag.compare(kPageCountTag, Qt::CaseInsensitive) == 0)
                attribute.value = QString::number(count);
        }
    }
    return true;
}

// Arguments: the component key (integer), the insertion point, optionally the rotation in
// radians as text. The run publishes the component it places ("KV_KEY", "KV_DWG" and the
// attribute lists) before the call; for that key the published block name and lists are used.
// Any other key (the run's per-page components) takes its block name from the database and
// keeps its attributes' defaults.
bool LispEnvironment::insertComponent(const QString& name, const LispChain& args)
{
    const std::optional<qint64> key = integerArgument(args, 0);
    const std::optional<KVPoint3d> point = pointArgument(args, 1);
    if (!key || !point)
        return fail(name, QStringLiteral("expects a component key and an insertion point"));
    double rotationDegrees = 0.0;
    if (const std::optional<QString> rotation = textArgument(args, 2))
        rotationDegrees = KVString(*rotation).toDoubleLenient() * 180.0 / std::numbers::pi;

    const QString keyText = QString::number(*key);
    const QString standard = m_cad.getVarStr(kStandard, {});
    const KVString publishedKey = m_cad.getVarStr(kComponentKey, {}).trimmed();
    const bool published = !publishedKey.isEmpty() && publishedKey.toIntLenient() == *key;
    QString blockName;
    if (published)
        blockName = m_cad.getVarStr(kBlockName, {}).trimmed();
    else if (m_blockNameLookup)
        blockName = m_blockNameLookup(keyText, standard).trimmed();
    if (blockName.isEmpty())
        return fail(name, published ? QStringLiteral("component %1 has no block name (%2 is empty)")
                                          .arg(keyText, kBlockName)
                                    : QStringLiteral("component %1 has no block name in standard "
                                                     "\"%2\"")
                                          .arg(keyText, standard));
    const QString path = m_cad.getVarStr(kNetworkDir, {}) + QStringLiteral("DADOS/") + standard +
                         QStringLiteral("/BLOCOS/") + blockName + QStringLiteral(".dwg");
    const BlockPlacement placement = m_cad.placeBlock(
        path, blockName, m_drawing.currentLayer(), point->x, point->y, point->z, rotationDegrees);
    if (!placement.succeeded())
        return fail(name, placement.error);

    BlockReference& reference = m_drawing.references()[placement.referenceIndex];
    reference.componentKey = keyText;
    if (!published)
        return true;
    const QStringList values = listVariable(kAttributes);
    for (AttributeValue& attribute : reference.attributes) {
        if (const std::optional<QString> value = valueForTag(values, attribute.tag))
            attribute.value = *value;
    }
    reference.associated = listVariable(kAssociated);
    return true;
}

bool LispEnvironment::fail(const QString& function, const QString& problem)
{
    m_console.error(function + QStringLiteral(": ") + problem);
    return false;
}

QStringList LispEnvironment::listVariable(const QString& name) const
{
    const DrawingVariable* found = m_cad.variable(name);
    if (!found || found->kind != DrawingVariable::Kind::TextList)
        return {};
    return found->list;
}

} // namespace RefHost
