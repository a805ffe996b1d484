#include "ItemListController.h"

#include "host/Translate.h"

ItemListController::ItemListController(QObject* parent) : QObject(parent) {}

void ItemListController::setItemCount(int count)
{
    m_itemCount = count;
    emit itemCountChanged(m_itemCount);
}

void ItemListController::setLastItemNumber(int number)
{
    m_lastItemNumber = number;
}

void ItemListController::setDescriptionLanguages(const DescriptionLanguages& languages)
{
    m_languages = languages;
}

TVNode ItemListController::addItem(const AddItemEditor& editor)
{
    ++m_lastItemNumber;
    const std::optional<ItemEditorResult> result = editor(QString::number(m_lastItemNumber));
    if (!result)
        return {};
    const TVNode node = m_tree.AddItem(result->name, makeAttributeList(result->attributes), true);
    setItemCount(m_itemCount + 1);
    return node;
}

TVNode ItemListController::addItem(const KVString& name, const QStringList& attributes)
{
    return addItem([&](const KVString&) {
        return std::optional<ItemEditorResult>(ItemEditorResult{name, attributes});
    });
}

bool ItemListController::editItem(const EditItemEditor& editor)
{
    const TVNode selected = m_tree.current();
    if (!selected.isNull() && m_tree.GetKind(selected) != TVNodeKind::Item)
        return false;
    const std::optional<ItemEditorResult> result =
        editor(attributeTexts(m_tree.GetAttributes(selected)));
    if (!result || selected.isNull())
        return false;
    m_tree.SetAttributes(selected, makeAttributeList(result->attributes));
    return m_tree.SetName(selected, result->name);
}

bool ItemListController::canAddSymbol(const CEPasta& entry) const
{
    return entry.isComponent() && !m_tree.current().isNull();
}

TVNode ItemListController::addSymbol(const CEPasta& entry)
{
    const TVNode selected = m_tree.current();
    if (!entry.isComponent() || selected.isNull())
        return {};
    const KVString description = entry.preferredDescription(m_languages);
    const bool itemSelected = m_tree.GetKind(selected) == TVNodeKind::Item;
    const TVNode target = itemSelected ? selected : m_tree.parentNode(selected);
    if (m_tree.GetKind(target) != TVNodeKind::Item)
        return {};
    if (m_tree.childCount(target) == 0)
        setItemCount(m_itemCount - 1);
    const TVNode node =
        m_tree.AddSymbol(target, itemSelected ? TVNode() : selected, description,
                         std::make_unique<CEComponente>(entry.GetKey(), description), true);
    m_selectedSymbols.append(description, node);
    return node;
}

TVNode ItemListController::addPage()
{
    const TVNode selected = m_tree.current();
    return m_tree.AddMarker(m_tree.parentNode(selected), selected,
                            defaultMarkerText(TVNodeKind::Page), TVNodeKind::Page, true);
}

TVNode ItemListController::addSpace()
{
    const TVNode selected = m_tree.current();
    const TVNodeKind kind =
        m_separatorMode == u"2" ? TVNodeKind::HorizontalSpace : TVNodeKind::VerticalSpace;
    return m_tree.AddMarker(m_tree.parentNode(selected), selected, defaultMarkerText(kind), kind,
                            true);
}

bool ItemListController::remove()
{
    const TVNode selected = m_tree.current();
    if (selected.isNull())
        return false;
    const TVNode parent = m_tree.parentNode(selected);
    switch (m_tree.GetKind(selected)) {
    case TVNodeKind::Symbol: {
        if (const CEComponente* symbol = m_tree.GetSymbol(selected))
            m_selectedSymbols.removeFirst(symbol->GetDescricao());
        if (m_tree.childCount(parent) > 0) {
            // The scan follows the rows as shown, so it runs on into the following items
            // (and their children when they are expanded).
            bool otherSymbol = false;
            for (TVNode node = m_tree.firstChild(parent); !node.isNull() && !otherSymbol;
                 node = m_tree.nextVisible(node)) {
                otherSymbol = node != selected && m_tree.GetKind(node) == TVNodeKind::Symbol;
            }
            if (!otherSymbol) {
                setItemCount(m_itemCount + 1);
                m_tree.setImage(parent, TVNodeImage::ItemWithoutSymbol);
            }
        }
        break;
    }
    case TVNodeKind::Item:
        if (m_tree.childCount(selected) > 0) {
            for (const TVNode child : m_tree.children(selected)) {
                if (const CEComponente* symbol = m_tree.GetSymbol(child))
                    m_selectedSymbols.removeFirst(symbol->GetDescricao());
            }
        } else {
            setItemCount(m_itemCount - 1);
        }
        break;
    default:
        break;
    }
    return m_tree.RemoveNode(selected);
}

TVNode ItemListController::cloneChild(TVNode target, TVNode child, TVNode symbolAfter,
                                      TVNode markerReference)
{
    const TVNodeKind kind = m_tree.GetKind(child);
    if (kind == TVNodeKind::Symbol) {
        const CEComponente* symbol = m_tree.GetSymbol(child);
        const KVString key = symbol ? symbol->GetKey() : KVString();
        const KVString description = symbol ? symbol->GetDescricao() : m_tree.GetName(child);
        return m_tree.AddSymbol(target, symbolAfter, description,
                                std::make_unique<CEComponente>(key, description), false);
    }
    if (isMarkerKind(kind))
        return m_tree.AddMarker(target, markerReference, m_tree.record(child)->markerText, kind,
                                false);
    return {};
}

TVNode ItemListController::copyItem()
{
    const TVNode source = m_tree.current();
    if (m_tree.GetKind(source) != TVNodeKind::Item)
        return {};
    const TVNode copy =
        m_tree.AddItem(m_tree.GetText(source),
                       makeAttributeList(attributeTexts(m_tree.GetAttributes(source))), false);
    if (m_tree.childCount(source) == 0) {
        setItemCount(m_itemCount + 1);
        return copy;
    }
    // Each marker goes directly after the last copied symbol, so markers that follow one
    // symbol come out reversed, and markers ahead of the first symbol land in the source item
    // itself (the position is still the source). Both are intended.
    TVNode position = source;
    for (TVNode child = m_tree.firstChild(source); !child.isNull();
         child = m_tree.nextSibling(child)) {
        const TVNode created = cloneChild(copy, child, TVNode(), position);
        if (m_tree.GetKind(child) == TVNodeKind::Symbol)
            position = created;
    }
    return copy;
}

TVNode ItemListController::moveItem(TVNode item, TVNode target)
{
    if (m_tree.GetKind(item) != TVNodeKind::Item || !m_tree.parentNode(item).isNull())
        return {};
    auto attributes = makeAttributeList(attributeTexts(m_tree.GetAttributes(item)));
    const KVString text = m_tree.GetText(item);
    const TVNode moved = target.isNull()
                             ? m_tree.AddItem(text, std::move(attributes), false)
                             : m_tree.AddItemAfter(text, std::move(attributes), false, target);
    TVNode position = moved;
    for (const TVNode child : m_tree.children(item)) {
        const TVNode created = cloneChild(moved, child, position, position);
        if (created.isNull())
            continue;
        position = created;
        // Lines of "Symbols selected:" follow their symbol to its new node.
        m_selectedSymbols.replaceNode(child, created);
    }
    m_tree.RemoveNode(item);
    return moved;
}

bool ItemListController::selectSymbolLine(int row)
{
    if (row < 0 || row >= m_selectedSymbols.count())
        return false;
    return m_tree.selectNode(m_selectedSymbols.line(row).node);
}
