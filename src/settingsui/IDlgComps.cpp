#include "IDlgComps.h"

#include "host/CEPasta.h"
#include "host/Translate.h"
#include "widgets/CITreeSimbolosPopup.h"

#include <QLabel>
#include <QPushButton>

namespace {

// Template size in dialog units.
constexpr int kWidth = 200;
constexpr int kHeight = 230;

} // namespace

IDlgComps::IDlgComps(QWidget* parent)
    : CIResizableDialog(parent), m_tree(new CITreeSimbolosPopup(this)), m_label(new QLabel(this)),
      m_add(new QPushButton(this)), m_cancel(new QPushButton(this))
{
    m_tree->setObjectName(QStringLiteral("14018"));
    m_label->setObjectName(QStringLiteral("14020"));
    m_add->setObjectName(QStringLiteral("14001"));
    m_cancel->setObjectName(QStringLiteral("8"));
    m_label->setBuddy(m_tree);
    // Both buttons only close the dialog: the chosen key is what the selection left behind.
    m_add->setAutoDefault(false);
    m_cancel->setAutoDefault(false);
    connect(m_add, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_tree, &CITreeSimbolosPopup::entrySelected, this, &IDlgComps::OnSelectionChanged);

    placeControl(m_label, 7, 7, 150, 8);
    placeControl(m_tree, 7, 17, kWidth - 14, kHeight - 17 - 28);
    placeControl(m_add, kWidth - 7 - 50 - 4 - 50, kHeight - 21, 50, 14);
    placeControl(m_cancel, kWidth - 7 - 50, kHeight - 21, 50, 14);
    resize(dialogUnits(0, 0, kWidth, kHeight).size());
    AddResizeRule(m_tree, Follow::Grow, Follow::Grow);
    AddResizeRule(m_add, Follow::Move, Follow::Move);
    AddResizeRule(m_cancel, Follow::Move, Follow::Move);
}

KVString IDlgComps::Run()
{
    m_chosenKey.clear();
    exec();
    return m_chosenKey;
}

void IDlgComps::showEvent(QShowEvent* event)
{
    if (!m_initialised) {
        m_initialised = true;
        OnInitDialog();
    }
    CIResizableDialog::showEvent(event);
}

void IDlgComps::OnInitDialog()
{
    m_add->setEnabled(false);
    setWindowTitle(kvTr("Symbols:"));
    m_label->setText(kvTr("List of Symbols:"));
    m_cancel->setText(kvTr("Cancel"));
    m_add->setText(kvTr("Add"));
    m_tree->cargaNormaSelecionada();
}

void IDlgComps::OnSelectionChanged(const CEPasta* entry)
{
    if (entry && entry->GetTipo() == CEPasta::kComponent) {
        m_add->setEnabled(true);
        m_chosenKey = entry->GetKey();
    } else {
        m_add->setEnabled(false);
    }
}
