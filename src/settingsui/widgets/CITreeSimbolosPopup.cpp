#include "CITreeSimbolosPopup.h"

#include "host/Translate.h"
#include "resources/KVIcons.h"

#include <QHeaderView>

namespace {

constexpr int kEntryRole = Qt::UserRole + 1;

} // namespace

CITreeSimbolosPopup::CITreeSimbolosPopup(QWidget* parent)
    : QTreeWidget(parent), m_languages(DescriptionLanguages::fromHost())
{
    setHeaderHidden(true);
    setColumnCount(1);
    setIconSize(QSize(16, 16));
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    connect(this, &QTreeWidget::currentItemChanged, this,
            [this](QTreeWidgetItem* current) { emit entrySelected(entryOf(current)); });
    connect(this, &QTreeWidget::itemExpanded, this, [](QTreeWidgetItem* item) {
        item->setIcon(0, KVIcons::icon(QStringLiteral("palette-folder-open")));
    });
    connect(this, &QTreeWidget::itemCollapsed, this, [](QTreeWidgetItem* item) {
        item->setIcon(0, KVIcons::icon(QStringLiteral("palette-folder")));
    });
}

CITreeSimbolosPopup::~CITreeSimbolosPopup() = default;

std::optional<CENorma> CITreeSimbolosPopup::GetNormaSelecionada()
{
    IComponentPalette* palette = GetComponentPalette();
    return palette ? palette->GetNormaSelecionada() : std::nullopt;
}

KVString CITreeSimbolosPopup::carga(const CENorma& standard, int flags)
{
    clear();
    m_tree = {};
    IComponentPalette* palette = GetComponentPalette();
    if (!palette) {
        showError(kvTr("The host has no component palette."));
        return kvTr("The host has no component palette.");
    }
    m_tree = palette->carga(standard, flags);
    if (!m_tree.ok()) {
        const KVString error = m_tree.error;
        m_tree.roots.clear();
        showError(error);
        return error;
    }
    fill(nullptr, m_tree.roots);
    return {};
}

KVString CITreeSimbolosPopup::cargaNormaSelecionada()
{
    const std::optional<CENorma> standard = GetNormaSelecionada();
    if (!standard) {
        clear();
        m_tree = {};
        const KVString error = kvTr("No standard is selected in the component palette.");
        showError(error);
        return error;
    }
    return carga(*standard, 0);
}

void CITreeSimbolosPopup::setDescriptionLanguages(const DescriptionLanguages& languages)
{
    m_languages = languages;
}

const CEPasta* CITreeSimbolosPopup::entryOf(const QTreeWidgetItem* item) const
{
    return item ? static_cast<const CEPasta*>(item->data(0, kEntryRole).value<const void*>())
                : nullptr;
}

const CEPasta* CITreeSimbolosPopup::currentEntry() const
{
    return entryOf(currentItem());
}

QTreeWidgetItem* CITreeSimbolosPopup::findEntry(const KVString& key, int kind) const
{
    for (QTreeWidgetItemIterator it(const_cast<CITreeSimbolosPopup*>(this)); *it; ++it) {
        const CEPasta* entry = entryOf(*it);
        if (entry && entry->GetKey() == key && entry->GetTipo() == kind)
            return *it;
    }
    return nullptr;
}

void CITreeSimbolosPopup::fill(QTreeWidgetItem* parent,
                               const std::vector<std::unique_ptr<CEPasta>>& entries)
{
    for (const auto& entry : entries) {
        auto* item = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(this);
        KVString text = entry->preferredDescription(m_languages);
        if (text.isEmpty())
            text = entry->GetKey();
        item->setText(0, text);
        item->setData(0, kEntryRole, QVariant::fromValue(static_cast<const void*>(entry.get())));
        item->setIcon(0, KVIcons::icon(entry->isComponent() ? QStringLiteral("palette-component")
                                                            : QStringLiteral("palette-folder")));
        if (!entry->isComponent())
            fill(item, entry->children());
    }
}

void CITreeSimbolosPopup::showError(const KVString& error)
{
    auto* item = new QTreeWidgetItem(this);
    item->setText(0, error);
    item->setToolTip(0, error);
    item->setIcon(0, KVIcons::icon(QStringLiteral("palette-error")));
    item->setFlags(Qt::ItemIsEnabled);
}
