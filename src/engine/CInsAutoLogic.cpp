#include "CInsAutoLogic.h"

#include "AssociatedComponents.h"
#include "InsAutoNames.h"

#include "host/CFxDocument.h"
#include "host/CICad.h"
#include "host/CVRServices.h"
#include "host/DrawingLanguage.h"
#include "host/LongOperation.h"
#include "host/Translate.h"

#include <optional>

namespace {

// Pages are layers named "PAGE$..."; the page's own name is the part before the first "$".
KVString pageNameOf(const KVString& layer)
{
    const qsizetype dollar = layer.indexOf(u'$');
    return dollar < 0 ? layer : KVString(layer.left(dollar));
}

// "x,y[,z]" as a point; a missing or non-numeric part reads as 0.
InsertionPoint pointFromText(const KVString& text)
{
    const QStringList parts = text.split(u',');
    return {KVString(parts.value(0)).toDoubleLenient(), KVString(parts.value(1)).toDoubleLenient(),
            KVString(parts.value(2)).toDoubleLenient()};
}

bool appendOnce(KVStringList& list, const KVString& value)
{
    // Searched from the end: the run asks for its current page, which is nearly always the one
    // appended last, so a long run does not compare every symbol's page with every page.
    if (list.lastIndexOf(value) >= 0)
        return false;
    list.append(value);
    return true;
}

KVStringList flatten(const KVNamedValues& pairs)
{
    KVStringList flat;
    for (const auto& [first, second] : pairs) {
        flat.append(first);
        flat.append(second);
    }
    return flat;
}

// The item's attribute list laid over the component's pairs: a name already present
// (ignoring case) takes the item's value, a new name is appended.
KVNamedValues mergeAttributes(KVNamedValues pairs, const KVNamedValues& attributes)
{
    for (const auto& [target, value] : attributes) {
        bool found = false;
        for (auto& pair : pairs) {
            if (pair.first.compare(target, Qt::CaseInsensitive) == 0) {
                pair.second = value;
                found = true;
                break;
            }
        }
        if (!found)
            pairs.append({target, value});
    }
    return pairs;
}

// Has the drawing-side function place one component at a point.
void invokeInsert(const KVString& key, const InsertionPoint& point,
                  const std::optional<KVString>& rotation = std::nullopt)
{
    LispChain chain{LispItem::fromText(InsAutoNames::kInsertFunction),
                    LispItem::fromInteger(key.toIntLenient()),
                    LispItem::fromPoint({point.x, point.y, point.z})};
    if (rotation)
        chain.append(LispItem::fromText(*rotation));
    kvInvokeTyped(chain);
}

} // namespace

void CInsAutoLogic::Executar(const CEInsAutoJob& job)
{
    m_job.gapBeforeVar = job.gapBeforeVar;
    m_job.gapAfterVar = job.gapAfterVar;
    m_job.startPoint = job.startPoint;
    m_job.spaceWidth = job.spaceWidth;
    m_job.pageMode = job.pageMode;
    m_job.fieldMap = job.fieldMap;
    m_job.items = job.items;
    m_job.pageComponents = job.pageComponents;
    m_job.pageBlocks = job.pageBlocks;
    InserirSimbAuto();
}

void CInsAutoLogic::InserirSimbAuto()
{
    CVRServices* services = GetElectricalServices();
    ILongOperationRunner* runner =
        services ? services->GetLongOperationRunner(ACTIVE_DOCUMENT()) : nullptr;
    if (!runner)
        return;

    if (m_job.pageMode == QLatin1String("1"))
        prepareNextPages();

    kvInvokeVoid(InsAutoNames::kRunStartFunction);
    runner->run(
        [this](CVRLongOperationTask& task) {
            runItems(task);
            return longOperationResult::Success;
        },
        KVString(), false, true);
    CICad::Regen();
    kvInvokeVoid(InsAutoNames::kRunEndFunction);

    const KVString layer = CICad::GetLayerCorrente();
    appendOnce(m_pagesWithComponents, layer);
    appendOnce(m_pagesWithBlocks, layer);
    kvInvokeVoid(InsAutoNames::kBuildPageListsFunction);

    QStringList pages = m_pagesWithComponents + m_pagesWithBlocks;
    pages.sort();
    pages.removeDuplicates();
    kvInvokeVoid(KVStringList(QStringList{InsAutoNames::kUpdateMacrosFunction} + pages));

    kvPrintf(QStringLiteral("\n\n"));
    kvPrintf(kvTr("Automatic insertion completed"));
}

void CInsAutoLogic::prepareNextPages()
{
    kvInvokeVoid(InsAutoNames::kBuildPageListsFunction);
    const KVString layer = CICad::GetLayerCorrente();
    const KVString pageName = pageNameOf(layer);

    // "*L_PAGINAS*" holds one list per page group: the group's name, then (page . layer)
    // pairs. Only the group named after the current page is taken.
    m_nextPages.clear();
    if (const std::optional<LispChain> chain = kvGetLispVariable(InsAutoNames::kPageListVar)) {
        int depth = 0;
        bool selected = false;
        for (qsizetype i = 0; i < chain->size(); ++i) {
            const LispItem& item = chain->at(i);
            if (item.kind == LispItem::Kind::ListBegin) {
                ++depth;
                if (depth == 1) {
                    selected = i + 1 < chain->size() &&
                               chain->at(i + 1).kind == LispItem::Kind::Text &&
                               chain->at(i + 1).text.compare(pageName, Qt::CaseInsensitive) == 0;
                } else if (depth == 2 && selected && i + 3 < chain->size() &&
                           chain->at(i + 1).kind == LispItem::Kind::Text &&
                           chain->at(i + 2).kind == LispItem::Kind::DottedPair &&
                           chain->at(i + 3).kind == LispItem::Kind::Text) {
                    m_nextPages.append({chain->at(i + 1).text, chain->at(i + 3).text});
                }
            } else if (item.kind == LispItem::Kind::ListEnd) {
                if (depth == 1 && selected)
                    break;
                --depth;
            }
        }
    }

    // The run starts on the current page; when it is not in the group, it starts as if it
    // were the group's first page.
    if (m_nextPages.isEmpty())
        return;
    qsizetype taken = 0;
    for (qsizetype i = 0; i < m_nextPages.size(); ++i) {
        if (m_nextPages.at(i).second == layer) {
            taken = i;
            break;
        }
    }
    kvInvokeVoid(InsAutoNames::kThawPageFunction, m_nextPages.at(taken).second);
    m_nextPages.remove(0, taken + 1);
}

void CInsAutoLogic::runItems(CVRLongOperationTask& task)
{
    FxProgressorUtils::Progressor* progressor = task.progressor();
    if (progressor)
        progressor->BeginNestedObject(static_cast<int>(m_job.items.size()), 0);

    m_point = pointFromText(m_job.startPoint);
    m_pageStart = m_point;
    m_spaceWidth = m_job.spaceWidth.toDoubleLenient();
    m_pagesWithComponents.clear();
    m_pagesWithBlocks.clear();

    for (const CEInsAutoItem& item : std::as_const(m_job.items)) {
        if (progressor)
            progressor->Meter();
        const ItemTargets targets = targetsOf(item);
        for (const CEInsAutoEntry& entry : item.entries) {
            const KVString layer = CICad::GetLayerCorrente();
            if (entry.kind == QLatin1String("0"))
                symbolStep(layer, entry, targets);
            else if (entry.kind == QLatin1String("1"))
                pageBreakStep();
            else if (entry.kind == QLatin1String("2"))
                m_point.x += m_spaceWidth;
            // Vertical spaces ("4") and unknown kinds leave the point where it is.
        }
    }
}

CInsAutoLogic::ItemTargets CInsAutoLogic::targetsOf(const CEInsAutoItem& item) const
{
    ItemTargets targets;
    for (const CEInsAutoFieldMap& field : m_job.fieldMap) {
        if (field.target.trimmed().isEmpty())
            continue;
        KVString value;
        for (const CEInsAutoPair& pair : item.values) {
            if (pair.name == field.fieldName) {
                value = pair.value;
                break;
            }
        }
        if (field.target.contains(u'@'))
            targets.pageVariables.append({field.target, value});
        else
            targets.attributes.append({field.target, value});
    }
    return targets;
}

void CInsAutoLogic::symbolStep(const KVString& layer, const CEInsAutoEntry& entry,
                               const ItemTargets& targets)
{
    // The page's fixed components and blocks go on before its first symbol.
    if (appendOnce(m_pagesWithComponents, layer))
        placePageComponents();
    if (appendOnce(m_pagesWithBlocks, layer))
        placePageBlocks();

    CICad::SetVarBool(InsAutoNames::kAutoInsertionVar, true);
    m_point = placeComponent(entry.key, m_point, targets.attributes);
    CICad::SetVarBool(InsAutoNames::kAutoInsertionVar, false);
    applyPageVariables(targets.pageVariables);
}

InsertionPoint CInsAutoLogic::placeComponent(const KVString& key, InsertionPoint point,
                                             const KVNamedValues& attributes)
{
    const std::optional<KVNamedValues> record = ComponentResolver::lookupComponent(key);
    if (!record)
        return point;
    if (!ComponentResolver::checkBlockFile(ComponentResolver::valueOf(*record, "KV_DWG")))
        return point;

    KVNamedValues associated;
    if (ComponentResolver::valueOf(*record, "KV_EXPLODE").toUpper() == QLatin1String("S"))
        AssociatedComponents::collect(key, associated);

    const KVString gapBefore = CICad::GetVarStr(m_job.gapBeforeVar);
    const KVString gapAfter = CICad::GetVarStr(m_job.gapAfterVar);
    const double gapBeforeValue =
        (gapBefore.isEmpty() ? KVString("0") : gapBefore).toDoubleLenient();
    const double gapAfterValue = (gapAfter.isEmpty() ? KVString("0") : gapAfter).toDoubleLenient();
    if (!gapBefore.isEmpty())
        point.x += gapBeforeValue;

    CICad::SetVarLstStr(InsAutoNames::kAssociatedVar, flatten(associated));
    CICad::SetVarLstStr(InsAutoNames::kAttributesVar,
                        flatten(mergeAttributes(*record, attributes)));
    invokeInsert(key, point);

    // The gap after is tested on the variable as the insertion left it, but its amount is the
    // one read before the insertion.
    if (!CICad::GetVarStr(m_job.gapAfterVar).isEmpty())
        point.x += gapAfterValue;
    return point;
}

void CInsAutoLogic::pageBreakStep()
{
    const KVString pageName = pageNameOf(CICad::GetLayerCorrente());
    if (m_job.pageMode == QLatin1String("0") || m_nextPages.isEmpty()) {
        kvInvokeVoid(InsAutoNames::kCreatePageFunction, pageName, QStringLiteral("0"));
    } else {
        kvInvokeVoid(InsAutoNames::kThawPageFunction, m_nextPages.takeFirst().second);
    }
    m_point = m_pageStart;
}

void CInsAutoLogic::placePageComponents()
{
    if (m_job.pageComponents.isEmpty() || m_job.pageComponents.first().name.isEmpty())
        return;
    for (const CEInsAutoFixedItem& component : std::as_const(m_job.pageComponents)) {
        if (component.name == QLatin1String("..."))
            continue;
        const InsertionPoint point = pointFromText(component.position + QLatin1String(",0"));
        // The drawing side expects radians from this rounded pi.
        const double radians = component.angle.toDoubleLenient() * 3.141592 / 180;
        invokeInsert(component.name, point, KVString(QString::asprintf("%.8f", radians)));
    }
}

void CInsAutoLogic::placePageBlocks()
{
    if (m_job.pageBlocks.isEmpty() || m_job.pageBlocks.first().name.isEmpty())
        return;
    const KVString networkDir = CICad::GetVarStr(InsAutoNames::kNetworkDirVar);
    const KVString standard = CICad::GetVarStr(InsAutoNames::kStandardVar);
    for (const CEInsAutoFixedItem& block : std::as_const(m_job.pageBlocks)) {
        KVString path = ComponentResolver::blockFilePath(networkDir, standard, block.name);
        path.replace(u'\\', u'/');
        if (!CICad::FileExists(path))
            continue;
        const QStringList position = block.position.split(u',');
        if (position.size() != 2)
            continue;
        // Blocks are placed in single precision and their angle stays in degrees.
        const float x = static_cast<float>(KVString(position.at(0)).toDoubleLenient());
        const float y = static_cast<float>(KVString(position.at(1)).toDoubleLenient());
        const KVString layer = CICad::GetLayerCorrente();
        CICad::InserirBloco(path, block.name, layer, x, y, 0, block.angle.toDoubleLenient());
    }
}

void CInsAutoLogic::applyPageVariables(const KVNamedValues& pageVariables)
{
    if (pageVariables.isEmpty())
        return;
    const KVString layer = CICad::GetLayerCorrente();
    for (const auto& [target, value] : pageVariables) {
        const QStringList parts = target.split(u'@');
        if (parts.size() < 2)
            continue;
        CICad::WriteBlockAttribute(layer, parts.at(1) + u'*', parts.at(0), value);
    }
}
