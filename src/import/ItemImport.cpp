#include "ItemImport.h"

#include "CCImportarDados.h"
#include "CQueryGetAllFieldDic.h"
#include "CQuerySearchComponentList.h"

#include "host/CFxDocument.h"
#include "host/CFxSystemServices.h"
#include "host/CVRServices.h"
#include "host/Translate.h"
#include "maindialog/CTVNodesUtil.h"
#include "maindialog/ItemListController.h"
#include "settings/CELstAtributos.h"

#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

// Errors of the import are reported as the dialog's handler reports them.
const QString kHandlerName = QStringLiteral("CIInsereAuto::OnBnClickedBtImportar");

const KVString kYes = QStringLiteral("S");
const QString kSeparatorAutomatic = QStringLiteral("0");
const QString kSeparatorAutomaticWithSpace = QStringLiteral("1");
const QString kSeparatorHorizontalSpace = QStringLiteral("2");
const QString kSeparatorPage = QStringLiteral("3");
const QString kSeparatorVerticalSpace = QStringLiteral("4");

// The importer's lists are read by index, as the settings' field lines say; a settings file
// whose field lines do not line up with the columns reaches past their end. That is an
// invalid argument, which stops the import where it is.
KVString entryAt(const KVStringList& list, qsizetype index, const char* listName)
{
    if (index < 0 || index >= list.size()) {
        throw std::invalid_argument("Invalid argument: index " + std::to_string(index) +
                                    " is outside " + listName + " (" + std::to_string(list.size()) +
                                    " entries)");
    }
    return list.at(index);
}

// The numeric value of one property of one component, from the host's ready-made query; 0
// when the query fails or finds nothing.
double propertyNumber(const KVString& componentKey, const KVString& property)
{
    CVRServices* services = GetElectricalServices();
    if (!services)
        return 0.0;
    const CVRQueryResponse response = services->GetComponentPropertyValue(componentKey, property);
    if (response.failed())
        return 0.0;
    return KVString(response.getSingleResult().toString()).toDoubleLenient();
}

int truncatedToInt(double value)
{
    if (value >= static_cast<double>(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    if (value <= static_cast<double>(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    return static_cast<int>(std::trunc(value));
}

// Restores the busy indicator when the import leaves, whichever way it leaves.
class BusyScope
{
public:
    explicit BusyScope(std::function<void(bool)> end) : m_end(std::move(end)) {}
    ~BusyScope() { m_end(false); }
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;

private:
    std::function<void(bool)> m_end;
};

} // namespace

ItemImport::ItemImport(CTVNodesUtil& tree, ImportDialogState& state) : m_tree(tree), m_state(state)
{}

ItemImport::~ItemImport() = default;

void ItemImport::setBusyIndicator(std::function<void(bool)> indicator)
{
    m_busyIndicator = std::move(indicator);
}

void ItemImport::setBusy(bool busy)
{
    if (m_busy == busy)
        return;
    m_busy = busy;
    if (m_busyIndicator)
        m_busyIndicator(busy);
}

int ItemImport::wholeNumber(const KVString& text)
{
    const QStringList pieces = text.split(u',', Qt::SkipEmptyParts);
    return pieces.isEmpty() ? 0 : KVString(pieces.first()).toIntLenient();
}

QString ItemImport::missingPropertiesMessage(const KVStringList& names)
{
    QString message = kvTr("Invalid configuration file. The following properties do not exist: ") +
                      names.join(QStringLiteral(", "));
    qsizetype end = message.size();
    while (end > 0 && (message.at(end - 1) == u',' || message.at(end - 1) == u' '))
        --end;
    message.truncate(end);
    return message;
}

ImportedSheet ImportedSheet::from(const CCImportarDados& importer)
{
    ImportedSheet sheet;
    sheet.headers.gapBeforeVar = importer.gapBeforeVar();
    sheet.headers.gapAfterVar = importer.gapAfterVar();
    sheet.headers.startPoint = importer.startPoint();
    sheet.headers.spaceWidth = importer.spaceWidth();
    sheet.headers.lispFieldList = importer.lispFieldList();
    sheet.headers.separatorMode = importer.separatorMode();
    sheet.headers.pageSize = importer.pageSize();
    sheet.headers.pageMode = importer.pageMode();
    sheet.columns = importer.columns();
    sheet.searchProps = importer.searchProps();
    sheet.showFlags = importer.showFlags();
    sheet.values = importer.values();
    return sheet;
}

template <typename Work> ItemImportResult ItemImport::guarded(Work&& work)
{
    ItemImportResult result;
    BusyScope busy([this](bool) { setBusy(false); });
    try {
        work(result);
    } catch (const std::exception& error) {
        // The handler ends here: what was built so far stays, and the count field and the
        // insertion button are left as they were.
        result.outcome = ItemImportOutcome::Failed;
        result.error = QString::fromLocal8Bit(error.what());
        result.countShown = false;
        result.insertionEnabled.reset();
        electricalLog(ACTIVE_DOCUMENT(), kHandlerName + QStringLiteral(" : ") + result.error);
    }
    return result;
}

ItemImportResult ItemImport::run(const KVString& settingsPath)
{
    CCImportarDados importer;
    importer.SetSettingsPath(settingsPath);
    ItemImportResult result = guarded([&](ItemImportResult& result) {
        if (!importer.Importar()) {
            result.outcome = ItemImportOutcome::NotRead;
            result.insertionEnabled = !m_tree.isEmpty();
            return;
        }
        buildTree(ImportedSheet::from(importer), result);
    });
    result.workbookPath = importer.filePath();
    return result;
}

ItemImportResult ItemImport::build(const ImportedSheet& sheet)
{
    return guarded([&](ItemImportResult& result) { buildTree(sheet, result); });
}

void ItemImport::buildTree(const ImportedSheet& sheet, ItemImportResult& result)
{
    // The previous list is gone from here on, whatever the checks below find.
    m_tree.clear();
    m_state.itemCount = 0;
    setBusy(true);
    m_state.headers = sheet.headers;

    m_startX = wholeNumber(m_state.headers.startPoint);
    m_pageSize = wholeNumber(m_state.headers.pageSize);
    m_spaceWidth = wholeNumber(m_state.headers.spaceWidth);
    m_pos = m_startX;
    m_lastSymbol = TVNode();

    const KVStringList known = knownProperties();
    for (const QString& property : sheet.searchProps) {
        const QString name = QString(property).remove(u'=').trimmed();
        if (!name.isEmpty() && !known.contains(name, Qt::CaseSensitive))
            result.missingProperties.append(name);
    }
    if (!result.missingProperties.isEmpty()) {
        result.outcome = ItemImportOutcome::MissingProperties;
        CFxMessageBox::warning(CFxUtils::GetMainWindowId(),
                               missingPropertiesMessage(result.missingProperties));
        return;
    }

    const qsizetype stride = sheet.columns.size();
    for (qsizetype row = 0; stride > 0 && row < sheet.values.size(); row += stride)
        importRow(sheet, row, result);

    result.outcome = ItemImportOutcome::Imported;
    result.countShown = true;
    setBusy(false);
    result.insertionEnabled = !m_tree.isEmpty();
}

KVStringList ItemImport::knownProperties() const
{
    KVStringList names;
    CVRServices* services = GetElectricalServices();
    if (!services)
        return names;
    const CVRQueryResponse response = services->RunQuery(std::make_shared<CQueryGetAllFieldDic>());
    if (response.failed())
        return names;
    for (const QVariantList& row : response.getResult()) {
        if (!row.isEmpty())
            names.append(row.first().toString().trimmed());
    }
    return names;
}

void ItemImport::importRow(const ImportedSheet& sheet, qsizetype row, ItemImportResult& result)
{
    const KVStringList& values = sheet.values;
    KVStringList conditions;
    auto attributes = std::make_unique<CELstAtributos>();

    const KVStringList& searchProps = sheet.searchProps;
    for (qsizetype i = 0; i < searchProps.size(); ++i) {
        const KVString property = searchProps.at(i).trimmed();
        const KVString title = entryAt(sheet.columns, i, "the column titles");
        const KVString value = entryAt(values, row + i, "the row values");
        if (!property.isEmpty()) {
            // "=" anywhere in the search property asks for equality, its absence for
            // containment. An empty cell is no condition for equality, while containment of
            // an empty text still asks that the component has the property at all.
            if (!property.contains(u'=')) {
                conditions.append(
                    CQuerySearchComponentList::containsCondition(property.toUpper(), value));
            } else if (!value.isEmpty()) {
                conditions.append(CQuerySearchComponentList::equalsCondition(
                    QString(property.toUpper()).remove(u'='), value));
            }
        }
        attributes->append(title + u'=' + value);
        if (title.toUpper() == u"ITEM")
            raiseLastItemNumber(value);
    }

    KVString text;
    const KVStringList& showFlags = sheet.showFlags;
    for (qsizetype i = 0; i < showFlags.size(); ++i) {
        if (showFlags.at(i) != kYes)
            continue;
        if (!text.isEmpty())
            text += QStringLiteral(" - ");
        text += entryAt(values, row + i, "the row values");
    }

    const TVNode item = m_tree.AddItem(text, std::move(attributes), false);
    placeSymbols(item, matchingComponents(conditions), result);
    ++m_state.itemCount;
    ++result.itemsImported;
}

void ItemImport::raiseLastItemNumber(const KVString& value)
{
    const double number = value.toDoubleLenient();
    if (number > m_state.lastItemNumber)
        m_state.lastItemNumber = truncatedToInt(number);
}

QMap<QString, CEComponente> ItemImport::matchingComponents(const KVStringList& conditions) const
{
    QMap<QString, CEComponente> components;
    CVRServices* services = GetElectricalServices();
    if (!services)
        return components;
    // Also run without conditions: the statement is then not valid and the item simply gets
    // no symbols.
    const CVRQueryResponse response =
        services->RunQuery(std::make_shared<CQuerySearchComponentList>(conditions));
    if (response.failed())
        return components;
    for (const QVariantList& row : response.getResult()) {
        const QString key = row.value(0).toString().trimmed();
        const QString description = row.value(1).toString().trimmed();
        // A key that comes twice keeps the later row.
        components.insert(key, CEComponente(key, description));
    }
    return components;
}

void ItemImport::placeSymbols(TVNode item, const QMap<QString, CEComponente>& components,
                              ItemImportResult& result)
{
    const QString& mode = m_state.headers.separatorMode;
    const bool pageFill = mode == kSeparatorAutomatic || mode == kSeparatorAutomaticWithSpace;
    for (const CEComponente& component : components) {
        if (pageFill) {
            placeWithPageFill(item, component);
        } else {
            const TVNode symbol = addSymbol(item, component);
            if (mode == kSeparatorPage)
                addMarkerAfter(item, symbol, TVNodeKind::Page);
            else if (mode == kSeparatorHorizontalSpace)
                addMarkerAfter(item, symbol, TVNodeKind::HorizontalSpace);
            else if (mode == kSeparatorVerticalSpace)
                addMarkerAfter(item, symbol, TVNodeKind::VerticalSpace);
        }
        ++result.symbolsPlaced;
    }
}

// Moves the simulated position over the component's gaps (and the space of mode "1"), and
// breaks the page where the position would pass the page size. The page break goes after the
// previous symbol, ahead of the space that followed it.
void ItemImport::placeWithPageFill(TVNode item, const CEComponente& component)
{
    const bool withSpace = m_state.headers.separatorMode == kSeparatorAutomaticWithSpace;
    const KVString& gapBefore = m_state.headers.gapBeforeVar;
    const KVString& gapAfter = m_state.headers.gapAfterVar;
    const double w1 =
        gapBefore.trimmed().isEmpty() ? 0.0 : propertyNumber(component.GetKey(), gapBefore);
    const double w2 =
        gapAfter.trimmed().isEmpty() ? 0.0 : propertyNumber(component.GetKey(), gapAfter);

    if (withSpace)
        m_pos += m_spaceWidth;
    m_pos += w1;
    if (m_pageSize < m_pos) {
        m_pos = m_startX + w1;
        addMarkerAfterLastSymbol(item, TVNodeKind::Page);
        if (withSpace)
            m_pos += m_spaceWidth;
    }
    if (!gapAfter.isEmpty()) {
        if (m_pageSize < m_pos + w2) {
            m_pos = m_startX + w2;
            addMarkerAfterLastSymbol(item, TVNodeKind::Page);
        } else {
            m_pos += w2;
        }
    }

    const TVNode symbol = addSymbol(item, component);
    if (withSpace)
        addMarkerAfter(item, symbol, TVNodeKind::HorizontalSpace);
}

TVNode ItemImport::addSymbol(TVNode item, const CEComponente& component)
{
    m_lastSymbol = m_tree.AddSymbol(item, TVNode(), component.GetDescricao(),
                                    std::make_unique<CEComponente>(component), false);
    return m_lastSymbol;
}

void ItemImport::addMarkerAfterLastSymbol(TVNode item, TVNodeKind kind)
{
    // Before the item's first symbol the last symbol belongs to an earlier item, or there is
    // none yet: the separator then opens the current item.
    const bool inItem = !m_lastSymbol.isNull() && m_tree.parentNode(m_lastSymbol) == item;
    addMarkerAfter(item, inItem ? m_lastSymbol : item, kind);
}

void ItemImport::addMarkerAfter(TVNode item, TVNode reference, TVNodeKind kind)
{
    m_tree.AddMarker(item, reference, defaultMarkerText(kind), kind, false);
}

ItemImportResult ItemImport::run(const KVString& settingsPath, ItemListController& list,
                                 ImportDialogState& state,
                                 std::function<void(bool busy)> busyIndicator)
{
    state.headers.separatorMode = list.separatorMode();
    state.itemCount = list.itemCount();
    state.lastItemNumber = list.lastItemNumber();
    ItemImport itemImport(list.tree(), state);
    itemImport.setBusyIndicator(std::move(busyIndicator));
    const ItemImportResult result = itemImport.run(settingsPath);
    if (result.outcome == ItemImportOutcome::NotRead)
        return result;
    list.setSeparatorMode(state.headers.separatorMode);
    list.setLastItemNumber(state.lastItemNumber);
    if (result.countShown)
        list.setItemCount(state.itemCount);
    return result;
}
