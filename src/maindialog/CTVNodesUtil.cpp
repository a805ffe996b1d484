#include "CTVNodesUtil.h"

namespace {

int markerImage(TVNodeKind kind)
{
    return kind == TVNodeKind::Page ? TVNodeImage::Page : TVNodeImage::Space;
}

bool hasNamedLabel(TVNodeKind kind)
{
    return kind == TVNodeKind::Item || kind == TVNodeKind::Symbol || kind == TVNodeKind::Unnamed;
}

KVString entryCode(TVNodeKind kind)
{
    switch (kind) {
    case TVNodeKind::Symbol:
        return "0";
    case TVNodeKind::Page:
        return "1";
    case TVNodeKind::HorizontalSpace:
        return "2";
    case TVNodeKind::VerticalSpace:
        return "4";
    default:
        return {};
    }
}

// Double quotes become apostrophes and U+00C2 becomes a hyphen in every item name that
// reaches the job.
KVString jobItemName(const KVString& name)
{
    QString result = name;
    result.replace(QChar(u'"'), QChar(u'\''));
    result.replace(QChar(0x00C2), QChar(u'-'));
    return result;
}

CEInsAutoPair jobPair(const QString& attribute)
{
    const qsizetype equals = attribute.indexOf(u'=');
    if (equals < 0)
        return {KVString(), KVString(QString(attribute).replace(u'"', u'\''))};
    QString value = attribute.mid(equals + 1);
    value.replace(u'"', u'\'');
    return {attribute.left(equals), value};
}

} // namespace

CTVNodesUtil::CTVNodesUtil(QObject* parent) : ItemTreeModel(parent) {}

TVNode CTVNodesUtil::AddItem(const KVString& name, std::unique_ptr<CELstAtributos> attributes,
                             bool select)
{
    return AddItemAfter(name, std::move(attributes), select, TVNode());
}

TVNode CTVNodesUtil::AddItemAfter(const KVString& name, std::unique_ptr<CELstAtributos> attributes,
                                  bool select, TVNode after)
{
    TVNodeData data;
    data.kind = TVNodeKind::Item;
    data.attributes = std::move(attributes);
    const TVNode node =
        insertNode(TVNode(), after, std::move(data), TVNodeImage::ItemWithoutSymbol);
    SetName(node, name);
    if (select)
        selectNode(node);
    return node;
}

TVNode CTVNodesUtil::AddMarker(TVNode item, TVNode reference, const KVString& text, TVNodeKind kind,
                               bool select)
{
    if (!isMarkerKind(kind) || !contains(reference))
        return {};
    TVNode parent = item;
    TVNode after = reference;
    if (GetKind(reference) == TVNodeKind::Item) {
        parent = reference;
        after = TVNode::first();
    }
    if (GetKind(parent) != TVNodeKind::Item)
        return {};

    TVNodeData data;
    data.kind = kind;
    data.markerText = text;
    data.displayText = text;
    const TVNode node = insertNode(parent, after, std::move(data), markerImage(kind));
    if (select)
        selectNode(node);
    return node;
}

TVNode CTVNodesUtil::AddSymbol(TVNode item, TVNode after, const KVString& description,
                               std::unique_ptr<CEComponente> symbol, bool select)
{
    if (GetKind(item) != TVNodeKind::Item)
        return {};
    TVNodeData data;
    data.kind = TVNodeKind::Symbol;
    data.symbol = std::move(symbol);
    // A null or foreign `after` puts the symbol last: the model appends in both cases, and
    // TVNode::first() is not a position that this operation offers.
    const TVNode position = after.isFirst() ? TVNode() : after;
    const TVNode node = insertNode(item, position, std::move(data), TVNodeImage::Symbol);
    SetName(node, description);
    setImage(item, TVNodeImage::ItemWithSymbol);
    if (select)
        selectNode(node);
    return node;
}

bool CTVNodesUtil::SetName(TVNode node, const KVString& name)
{
    TVNodeData* data = mutableRecord(node);
    if (!data)
        return false;
    data->name = name;
    data->displayText = hasNamedLabel(data->kind) ? name : KVString();
    recordChanged(node);
    return true;
}

bool CTVNodesUtil::SetAttributes(TVNode node, std::unique_ptr<CELstAtributos> attributes)
{
    TVNodeData* data = mutableRecord(node);
    if (!data)
        return false;
    data->attributes = std::move(attributes);
    recordChanged(node);
    return true;
}

TVNodeKind CTVNodesUtil::GetKind(TVNode node) const
{
    const TVNodeData* data = record(node);
    return data ? data->kind : TVNodeKind::None;
}

const CEComponente* CTVNodesUtil::GetSymbol(TVNode node) const
{
    const TVNodeData* data = record(node);
    return data ? data->symbol.get() : nullptr;
}

const CELstAtributos* CTVNodesUtil::GetAttributes(TVNode node) const
{
    const TVNodeData* data = record(node);
    return data ? data->attributes.get() : nullptr;
}

KVString CTVNodesUtil::GetName(TVNode node) const
{
    const TVNodeData* data = record(node);
    return data ? data->name : KVString();
}

KVString CTVNodesUtil::GetText(TVNode node) const
{
    const TVNodeData* data = record(node);
    return data ? data->displayText : KVString();
}

bool CTVNodesUtil::RemoveNode(TVNode node)
{
    switch (GetKind(node)) {
    case TVNodeKind::Item:
    case TVNodeKind::Symbol:
    case TVNodeKind::Unnamed:
    case TVNodeKind::Page:
    case TVNodeKind::HorizontalSpace:
    case TVNodeKind::VerticalSpace:
        return removeNode(node);
    default:
        return false;
    }
}

QList<CEInsAutoItem> CTVNodesUtil::JobItems() const
{
    QList<CEInsAutoItem> items;
    for (const TVNode node : children()) {
        if (childCount(node) == 0)
            continue;
        const TVNodeData* data = record(node);
        CEInsAutoItem item;
        item.name = jobItemName(data->name);
        for (const QString& attribute : attributeTexts(data->attributes.get()))
            item.values.append(jobPair(attribute));
        for (const TVNode child : children(node)) {
            const TVNodeData* childData = record(child);
            CEInsAutoEntry entry;
            entry.kind = entryCode(childData->kind);
            if (childData->kind == TVNodeKind::Symbol && childData->symbol)
                entry.key = childData->symbol->GetKey();
            item.entries.append(entry);
        }
        items.append(item);
    }
    return items;
}

QList<CEInsAutoItem> CTVNodesUtil::TakeJobItems()
{
    const QList<CEInsAutoItem> items = JobItems();
    for (const TVNode node : children()) {
        if (childCount(node) == 0)
            continue;
        mutableRecord(node)->attributes.reset();
        for (const TVNode child : children(node))
            mutableRecord(child)->symbol.reset();
    }
    return items;
}
