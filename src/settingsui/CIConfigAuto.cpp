#include "CIConfigAuto.h"

#include "IDlgComps.h"
#include "SettingsDialogData.h"
#include "SettingsFilePicker.h"
#include "host/CFxSystemServices.h"
#include "host/HostTypes.h"
#include "host/Translate.h"
#include "settings/SettingsModes.h"
#include "settings/SettingsTextFile.h"
#include "widgets/CIListViewEdit.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>

using ListView::CellKind;
using ListView::CIListViewEdit;

namespace {

// The internal name of every cell this dialog adds.
const char* const kCellName = "NOVOCAMPO";
// The text of a new block or symbol row, and of a field row's name.
const char* const kNewRowName = "...";

// Template size and grid in dialog units.
constexpr int kWidth = 370;
constexpr int kHeight = 374;
constexpr int kMargin = 4;
constexpr int kInner = 11;
constexpr int kButtonWidth = 50;
constexpr int kButtonHeight = 14;
constexpr int kButtonGap = 4;
constexpr int kEditHeight = 12;

// The three columns of the "Spacing" group: where each starts, its label width and its box
// width. The last column holds the two lists, whose entries are the longest texts.
struct SpacingColumn
{
    int x;
    int labelWidth;
    int boxWidth;
};
constexpr SpacingColumn kSpacingColumns[] = {{11, 46, 56}, {123, 38, 56}, {227, 44, 86}};

template <typename T> T* named(T* widget, const char* id)
{
    widget->setObjectName(QString::fromLatin1(id));
    return widget;
}

QStringList translated(const QStringList& texts)
{
    QStringList result;
    for (const QString& text : texts)
        result.append(kvTr(text.toUtf8().constData()));
    return result;
}

} // namespace

CIConfigAuto::CIConfigAuto(QWidget* parent) : CIResizableDialog(parent)
{
    createControls();
    layoutControls();
}

CIConfigAuto::~CIConfigAuto() = default;

void CIConfigAuto::createControls()
{
    // Created in the order in which Tab walks through them.
    m_itemsGroup = named(new QGroupBox(this), "236");
    m_fieldListLabel = named(new QLabel(this), "221");
    m_fieldList = named(new CIListViewEdit(this), "14017");
    m_addField = named(new QPushButton(this), "14019");
    m_removeField = named(new QPushButton(this), "14021");

    m_spacingGroup = named(new QGroupBox(this), "222");
    m_previousLabel = named(new QLabel(this), "223");
    m_previous = named(new QLineEdit(this), "14024");
    m_nextLabel = named(new QLabel(this), "224");
    m_next = named(new QLineEdit(this), "14027");
    m_separatorLabel = named(new QLabel(this), "225");
    m_separator = named(new QComboBox(this), "14031");
    m_startPointLabel = named(new QLabel(this), "226");
    m_startPoint = named(new QLineEdit(this), "14033");
    m_pageSizeLabel = named(new QLabel(this), "227");
    m_pageSize = named(new QLineEdit(this), "14034");
    m_paginationLabel = named(new QLabel(this), "229");
    m_pagination = named(new QComboBox(this), "14032");
    m_spaceLabel = named(new QLabel(this), "228");
    m_space = named(new QLineEdit(this), "14035");

    m_symbolsGroup = named(new QGroupBox(this), "238");
    m_symbolListLabel = named(new QLabel(this), "239");
    m_symbolList = named(new CIListViewEdit(this), "237");
    m_addSymbol = named(new QPushButton(this), "14037");
    m_removeSymbol = named(new QPushButton(this), "240");

    m_blocksGroup = named(new QGroupBox(this), "235");
    m_blockListLabel = named(new QLabel(this), "234");
    m_blockList = named(new CIListViewEdit(this), "232");
    m_addBlock = named(new QPushButton(this), "14036");
    m_removeBlock = named(new QPushButton(this), "233");

    m_settingsLabel = named(new QLabel(this), "220");
    m_save = named(new QPushButton(this), "1");
    m_close = named(new QPushButton(this), "2");

    m_fieldListLabel->setBuddy(m_fieldList);
    m_previousLabel->setBuddy(m_previous);
    m_nextLabel->setBuddy(m_next);
    m_separatorLabel->setBuddy(m_separator);
    m_startPointLabel->setBuddy(m_startPoint);
    m_pageSizeLabel->setBuddy(m_pageSize);
    m_paginationLabel->setBuddy(m_pagination);
    m_spaceLabel->setBuddy(m_space);
    m_symbolListLabel->setBuddy(m_symbolList);
    m_blockListLabel->setBuddy(m_blockList);
    m_settingsLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);

    // No button is the dialog's default: Enter in a box must neither save nor close.
    for (QPushButton* button : findChildren<QPushButton*>()) {
        button->setAutoDefault(false);
        button->setDefault(false);
    }
    m_symbolList->SetListener(this);
    m_blockList->SetFileCellText(CIListViewEdit::FileCellText::BaseName);

    connect(m_addField, &QPushButton::clicked, this, &CIConfigAuto::OnAddField);
    connect(m_removeField, &QPushButton::clicked, this, [this] { RemoveMarkedLine(m_fieldList); });
    connect(m_addBlock, &QPushButton::clicked, this, &CIConfigAuto::OnAddBlock);
    connect(m_removeBlock, &QPushButton::clicked, this, [this] { RemoveMarkedLine(m_blockList); });
    connect(m_addSymbol, &QPushButton::clicked, this, &CIConfigAuto::OnAddSymbol);
    connect(m_removeSymbol, &QPushButton::clicked, this,
            [this] { RemoveMarkedLine(m_symbolList); });
    connect(m_save, &QPushButton::clicked, this, &CIConfigAuto::OnSave);
    connect(m_close, &QPushButton::clicked, this, &QDialog::reject);
}

void CIConfigAuto::layoutControls()
{
    const int inner = kWidth - 2 * kInner;
    const int removeX = kWidth - kInner - kButtonWidth;
    const int addX = removeX - kButtonGap - kButtonWidth;
    // A labelled list inside a group: caption and buttons on one line, the list below.
    const auto placeList = [&](QGroupBox* group, QLabel* label, CIListViewEdit* list,
                               QPushButton* add, QPushButton* remove, int top, int height,
                               int listHeight) {
        placeControl(group, kMargin, top, kWidth - 2 * kMargin, height);
        placeControl(label, kInner, top + 14, addX - kInner - kButtonGap, 8);
        placeControl(add, addX, top + 11, kButtonWidth, kButtonHeight);
        placeControl(remove, removeX, top + 11, kButtonWidth, kButtonHeight);
        placeControl(list, kInner, top + 28, inner, listHeight);
    };
    placeList(m_itemsGroup, m_fieldListLabel, m_fieldList, m_addField, m_removeField, 4, 112, 78);

    // Spacing: three columns of label and box, three lines.
    const int spacingTop = 120;
    placeControl(m_spacingGroup, kMargin, spacingTop, kWidth - 2 * kMargin, 62);
    const auto placePair = [&](QLabel* label, QWidget* box, int column, int line) {
        const SpacingColumn& at = kSpacingColumns[column];
        const int y = spacingTop + 14 + line * 16;
        placeControl(label, at.x, y + 2, at.labelWidth, 8);
        placeControl(box, at.x + at.labelWidth + 2, y, at.boxWidth, kEditHeight);
    };
    placePair(m_previousLabel, m_previous, 0, 0);
    placePair(m_nextLabel, m_next, 1, 0);
    placePair(m_separatorLabel, m_separator, 2, 0);
    placePair(m_startPointLabel, m_startPoint, 0, 1);
    placePair(m_pageSizeLabel, m_pageSize, 1, 1);
    placePair(m_paginationLabel, m_pagination, 2, 1);
    placePair(m_spaceLabel, m_space, 0, 2);

    placeList(m_symbolsGroup, m_symbolListLabel, m_symbolList, m_addSymbol, m_removeSymbol, 186, 80,
              46);
    placeList(m_blocksGroup, m_blockListLabel, m_blockList, m_addBlock, m_removeBlock, 270, 80, 46);

    const int buttonsTop = kHeight - kButtonHeight - 6;
    const int closeX = kWidth - 7 - kButtonWidth;
    const int saveX = closeX - kButtonGap - kButtonWidth;
    placeControl(m_settingsLabel, 7, buttonsTop + 3, saveX - 7 - kButtonGap, 8);
    placeControl(m_save, saveX, buttonsTop, kButtonWidth, kButtonHeight);
    placeControl(m_close, closeX, buttonsTop, kButtonWidth, kButtonHeight);
    resize(dialogUnits(0, 0, kWidth, kHeight).size());

    // The field list takes both differences; what lies below it moves down; every group and
    // list takes the width difference; buttons keep to the right edge.
    AddResizeRule(m_itemsGroup, Follow::Grow, Follow::Grow);
    AddResizeRule(m_fieldList, Follow::Grow, Follow::Grow);
    AddResizeRule(m_addField, Follow::Move, Follow::Stay);
    AddResizeRule(m_removeField, Follow::Move, Follow::Stay);
    AddResizeRule(m_spacingGroup, Follow::Grow, Follow::Move);
    for (QWidget* control :
         {static_cast<QWidget*>(m_previousLabel), static_cast<QWidget*>(m_previous),
          static_cast<QWidget*>(m_nextLabel), static_cast<QWidget*>(m_next),
          static_cast<QWidget*>(m_separatorLabel), static_cast<QWidget*>(m_separator),
          static_cast<QWidget*>(m_startPointLabel), static_cast<QWidget*>(m_startPoint),
          static_cast<QWidget*>(m_pageSizeLabel), static_cast<QWidget*>(m_pageSize),
          static_cast<QWidget*>(m_paginationLabel), static_cast<QWidget*>(m_pagination),
          static_cast<QWidget*>(m_spaceLabel), static_cast<QWidget*>(m_space)})
        AddResizeRule(control, Follow::Stay, Follow::Move);
    for (QGroupBox* group : {m_symbolsGroup, m_blocksGroup})
        AddResizeRule(group, Follow::Grow, Follow::Move);
    for (CIListViewEdit* list : {m_symbolList, m_blockList})
        AddResizeRule(list, Follow::Grow, Follow::Move);
    for (QLabel* label : {m_symbolListLabel, m_blockListLabel})
        AddResizeRule(label, Follow::Stay, Follow::Move);
    for (QPushButton* button :
         {m_addSymbol, m_removeSymbol, m_addBlock, m_removeBlock, m_save, m_close})
        AddResizeRule(button, Follow::Move, Follow::Move);
    AddResizeRule(m_settingsLabel, Follow::Grow, Follow::Move);
}

void CIConfigAuto::SetSettingsPath(const KVString& path)
{
    m_settingsPath = path;
    m_blockPath = companionPath(path, QStringLiteral(".cfb"));
    m_symbolPath = companionPath(path, QStringLiteral(".cfc"));
}

void CIConfigAuto::showEvent(QShowEvent* event)
{
    if (!m_initialised) {
        m_initialised = true;
        OnInitDialog();
    }
    CIResizableDialog::showEvent(event);
}

void CIConfigAuto::OnInitDialog()
{
    setWindowTitle(kvTr("Settings - Automatic insertion"));
    m_itemsGroup->setTitle(kvTr("Items:"));
    m_fieldListLabel->setText(kvTr("Field list:"));
    m_addField->setText(kvTr("Add"));
    m_removeField->setText(kvTr("Remove"));
    m_symbolsGroup->setTitle(kvTr("Symbols:"));
    m_symbolListLabel->setText(kvTr("List of Symbols:"));
    m_addSymbol->setText(kvTr("Add"));
    m_removeSymbol->setText(kvTr("Remove"));
    m_blocksGroup->setTitle(kvTr("Blocks"));
    m_blockListLabel->setText(kvTr("List of blocks:"));
    m_addBlock->setText(kvTr("Add"));
    m_removeBlock->setText(kvTr("Remove"));
    m_spacingGroup->setTitle(kvTr("Spacing"));
    m_previousLabel->setText(kvTr("Previous:"));
    m_nextLabel->setText(kvTr("Next:"));
    m_separatorLabel->setText(kvTr("Separator:"));
    m_paginationLabel->setText(kvTr("Pagination:"));
    m_startPointLabel->setText(kvTr("Initial point:"));
    m_pageSizeLabel->setText(kvTr("Page size:"));
    m_spaceLabel->setText(kvTr("Space:"));
    m_save->setText(kvTr("Save"));
    m_close->setText(kvTr("Close"));

    m_fieldList->AddColumn(kvTr("Field"), 150, CellKind::Text);
    m_fieldList->AddColumn(kvTr("Attribute"), 200, CellKind::Text);
    m_fieldList->AddColumn(kvTr("Search"), 160, CellKind::Text);
    m_fieldList->AddColumn(kvTr("Show"), 50, CellKind::Choice, {kvTr("No"), kvTr("Yes")});
    m_blockList->AddColumn(kvTr("Block"), 400, CellKind::File);
    m_blockList->AddColumn(kvTr("Point"), 80, CellKind::Text);
    m_blockList->AddColumn(kvTr("Angle"), 80, CellKind::Text);
    m_blockList->SetFileFilter(kvTr("Drawing files (*.dwg)|*.dwg||") + QStringLiteral("&*.dwg&") +
                               kvTr("All Files (*.*)|*.*||") + QStringLiteral("&*.*&&"));
    m_symbolList->AddColumn(kvTr("Block"), 400, CellKind::Button);
    m_symbolList->AddColumn(kvTr("Point"), 80, CellKind::Text);
    m_symbolList->AddColumn(kvTr("Angle"), 80, CellKind::Text);

    m_separator->addItems(translated(separatorModeTexts()));
    // The pagination list is sorted: the stored value is the position in the sorted list.
    QStringList pagination = translated(paginationModeTexts());
    std::sort(pagination.begin(), pagination.end(), [](const QString& a, const QString& b) {
        return QString::localeAwareCompare(a, b) < 0;
    });
    m_pagination->addItems(pagination);

    const SettingsFiles files = readSettingsFiles(m_settingsPath);
    m_blockFolder = SettingsDialogData::blockFolder();
    LoadContents(SettingsDialogData::fromFiles(files));
}

void CIConfigAuto::LoadContents(const SettingsDialogContents& contents)
{
    const KVString name = QString::fromLatin1(kCellName);
    for (const auto& field : contents.fields)
        m_fieldList->AddLine({field.fieldName, field.attribute, field.search, field.show}, name);
    for (const auto& block : contents.blocks) {
        m_blockList->SetStartFolder(m_blockFolder);
        m_blockList->AddLine({block.blockName, block.position, block.angle}, name);
    }
    for (const auto& symbol : contents.symbols)
        m_symbolList->AddLine({symbol.blockName, symbol.position, symbol.angle}, name);

    m_previous->setText(contents.gapBeforeVar);
    m_next->setText(contents.gapAfterVar);
    m_space->setText(contents.spaceWidth);
    m_startPoint->setText(contents.startPoint);
    m_pageSize->setText(contents.pageSize);
    m_separator->setCurrentIndex(
        contents.separatorIndex < m_separator->count() ? contents.separatorIndex : -1);
    m_pagination->setCurrentIndex(
        contents.paginationIndex < m_pagination->count() ? contents.paginationIndex : -1);
    ShowSettingsPath();
}

void CIConfigAuto::ShowSettingsPath()
{
    const QString text = kvTr("Settings: ") + m_settingsPath;
    m_settingsLabel->setText(text);
    m_settingsLabel->setToolTip(text);
}

SettingsDialogContents CIConfigAuto::contents() const
{
    SettingsDialogContents contents;
    contents.gapBeforeVar = m_previous->text();
    contents.gapAfterVar = m_next->text();
    contents.startPoint = m_startPoint->text();
    contents.spaceWidth = m_space->text();
    contents.separatorIndex = m_separator->currentIndex();
    contents.pageSize = m_pageSize->text();
    contents.paginationIndex = m_pagination->currentIndex();
    for (int row = 0; row < m_fieldList->GetLineCount(); ++row) {
        contents.fields.append({m_fieldList->GetCellText(row, 0), m_fieldList->GetCellText(row, 1),
                                m_fieldList->GetCellText(row, 2),
                                m_fieldList->GetCellText(row, 3)});
    }
    const auto placements = [](const CIListViewEdit* list) {
        QList<SettingsDialogContents::PlacementLine> lines;
        for (int row = 0; row < list->GetLineCount(); ++row) {
            lines.append(
                {list->GetCellText(row, 0), list->GetCellText(row, 1), list->GetCellText(row, 2)});
        }
        return lines;
    };
    contents.blocks = placements(m_blockList);
    contents.symbols = placements(m_symbolList);
    return contents;
}

void CIConfigAuto::OnAddField()
{
    m_fieldList->AddLine({QString::fromLatin1(kNewRowName), {}, {}, kvTr("No")},
                         QString::fromLatin1(kCellName));
}

void CIConfigAuto::OnAddBlock()
{
    m_blockList->SetStartFolder(m_blockFolder);
    m_blockList->AddLine(
        {QString::fromLatin1(kNewRowName), QStringLiteral("0,0"), QStringLiteral("0")},
        QString::fromLatin1(kCellName));
}

void CIConfigAuto::OnAddSymbol()
{
    m_symbolList->AddLine(
        {QString::fromLatin1(kNewRowName), QStringLiteral("0,0"), QStringLiteral("0")},
        QString::fromLatin1(kCellName));
}

void CIConfigAuto::RemoveMarkedLine(CIListViewEdit* list)
{
    const int marked = list->GetSelectionMark();
    if (marked >= 0)
        list->DeleteLine(marked);
}

void CIConfigAuto::OnButtonCell(int row)
{
    IDlgComps chooser(this);
    const KVString key = chooser.Run();
    if (key.isEmpty())
        return;
    m_symbolList->SetCellText(row, 0, key);
    m_symbolList->SetCellValue(row, 0, key.toQString());
}

void CIConfigAuto::OnSave()
{
    for (CIListViewEdit* list : {m_fieldList, m_blockList, m_symbolList})
        list->commitEdit();
    const SettingsDialogContents current = contents();
    KVString path;
    if (SettingsFilePicker::pick(CFxSystemServices::kSaveAs, path) != KV_RESULT_OK)
        return;
    const SettingsWriteResult written = writeSettingsFiles(current, path);
    if (written.mainWritten) {
        m_settingsPath = written.cfaPath;
        m_blockPath = written.cfbPath;
        ShowSettingsPath();
    }
    if (written.symbolsWritten)
        m_symbolPath = written.cfcPath;
}
