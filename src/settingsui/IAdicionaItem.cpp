#include "IAdicionaItem.h"

#include "host/Translate.h"
#include "maindialog/CTVNodesUtil.h"
#include "widgets/CIListViewPropriedade.h"

#include <QLabel>
#include <QPushButton>

namespace {

// Template size in dialog units.
constexpr int kWidth = 220;
constexpr int kHeight = 180;

} // namespace

IAdicionaItem::IAdicionaItem(QWidget* parent)
    : CIResizableDialog(parent), m_list(new ListView::CIListViewPropriedade(this)),
      m_label(new QLabel(this)), m_ok(new QPushButton(this)), m_cancel(new QPushButton(this))
{
    m_label->setObjectName(QStringLiteral("221"));
    m_list->setObjectName(QStringLiteral("14017"));
    m_ok->setObjectName(QStringLiteral("1"));
    m_cancel->setObjectName(QStringLiteral("2"));
    m_label->setBuddy(m_list);
    m_ok->setDefault(true);
    m_cancel->setAutoDefault(false);
    connect(m_ok, &QPushButton::clicked, this, &IAdicionaItem::OnOk);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);

    placeControl(m_label, 7, 7, 150, 8);
    placeControl(m_list, 7, 17, kWidth - 14, kHeight - 17 - 28);
    placeControl(m_ok, kWidth - 7 - 50 - 4 - 50, kHeight - 21, 50, 14);
    placeControl(m_cancel, kWidth - 7 - 50, kHeight - 21, 50, 14);
    resize(dialogUnits(0, 0, kWidth, kHeight).size());
    AddResizeRule(m_list, Follow::Grow, Follow::Grow);
    AddResizeRule(m_ok, Follow::Move, Follow::Move);
    AddResizeRule(m_cancel, Follow::Move, Follow::Move);
}

void IAdicionaItem::showEvent(QShowEvent* event)
{
    if (!m_initialised) {
        m_initialised = true;
        OnInitDialog();
    }
    CIResizableDialog::showEvent(event);
}

void IAdicionaItem::OnInitDialog()
{
    setWindowTitle(m_editMode ? kvTr("Edit item") : kvTr("Add item"));
    m_label->setText(kvTr("Field list:"));
    m_ok->setText(kvTr("Ok"));
    m_cancel->setText(kvTr("Cancel"));
    m_list->InitColumns(150, 200);
    FillList();
}

void IAdicionaItem::FillList()
{
    std::optional<QStringList> edited = m_editedAttributes;
    if (m_editMode && m_tree) {
        const TVNode selected = m_tree->current();
        edited = m_tree->GetKind(selected) == TVNodeKind::Item
                     ? attributeTexts(m_tree->GetAttributes(selected))
                     : QStringList();
    }
    if (!m_editMode)
        edited.reset();
    const ItemEditorForm::Lines lines =
        ItemEditorForm::readLines(m_settingsPath, m_itemName, edited);
    for (const ItemEditorLine& line : lines.lines)
        m_list->AddProperty(line.code, line.name, line.value, line.editable);
}

void IAdicionaItem::OnOk()
{
    m_list->commitEdit();
    QList<ItemEditorLine> lines;
    for (int row = 0; row < m_list->GetPropertyCount(); ++row) {
        lines.append({m_list->GetPropertyCode(row), m_list->GetPropertyName(row),
                      m_list->GetPropertyValue(row), m_list->IsPropertyEditable(row)});
    }
    m_result = ItemEditorForm::confirm(lines);
    if (m_tree)
        ItemEditorForm::apply(*m_tree, m_editMode, m_result);
    accept();
}
