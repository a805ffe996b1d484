#include "CIInsereAuto.h"

#include "ItemTreeView.h"

#include "engine/CEInsAutoJobBuilder.h"
#include "engine/CInsAutoLogic.h"
#include "host/CEPasta.h"
#include "host/CFxDocument.h"
#include "host/DrawingLanguage.h"
#include "host/Translate.h"
#include "resources/KVIcons.h"
#include "settings/SettingsTextFile.h"
#include "settingsui/CIConfigAuto.h"
#include "settingsui/IAdicionaItem.h"
#include "settingsui/widgets/CITreeSimbolosPopup.h"

#include <QApplication>
#include <QGuiApplication>
#include <QLabel>
#include <QListView>
#include <QMouseEvent>
#include <QPushButton>
#include <QResizeEvent>

#include <cmath>
#include <initializer_list>

namespace {

// The template in dialog units. The item list and its buttons fill the left part, up to
// kPanelLeft; the symbol panel is laid out right of it in kPanelWidth pixels.
constexpr int kTemplateHeight = 311;
constexpr int kPanelLeft = 308;
constexpr int kPanelUnits = 220;
constexpr int kMargin = 5;

// The hot spot of the drag image: where the pointer holds it.
constexpr QPoint kDragHotSpot(8, 8);
constexpr int kDragTimerInterval = 3000;

using Controls = std::initializer_list<QWidget*>;

const QString kDropOnTreeview = QStringLiteral("CIInsereAuto::DropOnTreeview");

template <typename Widget> Widget* named(Widget* widget, const char* id)
{
    widget->setObjectName(QString::fromLatin1(id));
    return widget;
}

QPushButton* bitmapButton(QWidget* parent, const char* id, const char* icon)
{
    auto* button = named(new QPushButton(parent), id);
    button->setIcon(KVIcons::icon(QString::fromLatin1(icon)));
    button->setIconSize(QSize(16, 16));
    button->setAutoDefault(false);
    return button;
}

QPushButton* textButton(QWidget* parent, const char* id)
{
    auto* button = named(new QPushButton(parent), id);
    button->setAutoDefault(false);
    return button;
}

void moveBy(QWidget* control, int dx, int dy)
{
    if (dx != 0 || dy != 0)
        control->move(control->pos() + QPoint(dx, dy));
}

void growBy(QWidget* control, int dx, int dy)
{
    if (dx != 0 || dy != 0)
        control->resize(control->size() + QSize(dx, dy));
}

TVNode rootItemOf(const CTVNodesUtil& tree, TVNode node)
{
    for (TVNode parent = tree.parentNode(node); !parent.isNull(); parent = tree.parentNode(parent))
        node = parent;
    return node;
}

// Puts the arrow back and ends the drag however the button-up handler is left.
class DragEnd
{
public:
    explicit DragEnd(std::function<void()> end) : m_end(std::move(end)) {}
    ~DragEnd() { m_end(); }
    DragEnd(const DragEnd&) = delete;
    DragEnd& operator=(const DragEnd&) = delete;

private:
    std::function<void()> m_end;
};

} // namespace

CIInsereAuto::CIInsereAuto(QWidget* parent)
    : CIResizableDialog(parent), m_mover([](ItemListController& list, TVNode item, TVNode target) {
          return list.moveItem(item, target);
      })
{
    const DescriptionLanguages languages = DescriptionLanguages::fromHost();
    m_list.setDescriptionLanguages(languages);
    createControls();
    m_palette->setDescriptionLanguages(languages);
    placeControls();
    // The first size is the template's, with the panel; start-up takes the panel away.
    resize(horizontalUnits(kPanelLeft) + kPanelWidth, verticalUnits(kTemplateHeight));
    OnSize(size());
}

CIInsereAuto::~CIInsereAuto()
{
    if (m_dragging) {
        qApp->removeEventFilter(this);
        QGuiApplication::restoreOverrideCursor();
    }
}

void CIInsereAuto::createControls()
{
    m_itemListLabel = named(new QLabel(this), "14016");
    m_tree = named(new ItemTreeView(this), "14013");
    m_tree->setTree(&m_list.tree());
    m_setup = bitmapButton(this, "14008", "button-setup");
    m_import = bitmapButton(this, "14007", "button-import");
    m_addItem = bitmapButton(this, "14014", "button-add-item");
    m_copyItem = bitmapButton(this, "14017", "button-copy-item");
    m_addSymbol = bitmapButton(this, "14012", "button-add-symbol");
    m_addPage = bitmapButton(this, "14011", "button-add-page");
    m_addSpace = bitmapButton(this, "14010", "button-add-space");
    m_remove = bitmapButton(this, "14009", "button-remove");
    m_run = textButton(this, "14015");
    m_close = textButton(this, "2");
    m_countLabel = named(new QLabel(this), "230");
    m_count = named(new QLabel(this), "231");
    m_paletteLabel = named(new QLabel(this), "14020");
    m_palette = named(new CITreeSimbolosPopup(this), "14018");
    m_addToItem = bitmapButton(this, "14025", "button-add-to-item");
    m_selectedLabel = named(new QLabel(this), "14028");
    m_selectedList = named(new QListView(this), "14039");
    m_selectedList->setModel(&m_list.selectedSymbols());
    m_selectedList->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_selectedList->setSelectionMode(QAbstractItemView::SingleSelection);
    m_finalize = textButton(this, "14001");
    m_itemListLabel->setBuddy(m_tree);
    m_paletteLabel->setBuddy(m_palette);
    m_selectedLabel->setBuddy(m_selectedList);

    connect(m_setup, &QPushButton::clicked, this, &CIInsereAuto::OnBnClickedSetup);
    connect(m_import, &QPushButton::clicked, this, &CIInsereAuto::OnBnClickedBtImportar);
    connect(m_remove, &QPushButton::clicked, this, &CIInsereAuto::OnBnClickedRemove);
    connect(m_run, &QPushButton::clicked, this, &CIInsereAuto::OnBnClickedRun);
    connect(m_addPage, &QPushButton::clicked, this, &CIInsereAuto::OnBnClickedAddPage);
    connect(m_addSpace, &QPushButton::clicked, this, &CIInsereAuto::OnBnClickedAddSpace);
    connect(m_addSymbol, &QPushButton::clicked, this, &CIInsereAuto::ShowSymbolPanel);
    connect(m_addItem, &QPushButton::clicked, this, &CIInsereAuto::OnBnClickedAddItem);
    connect(m_addToItem, &QPushButton::clicked, this, &CIInsereAuto::OnBnClickedAddSymbol);
    connect(m_close, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_finalize, &QPushButton::clicked, this, &CIInsereAuto::HideSymbolPanel);
    connect(m_copyItem, &QPushButton::clicked, this, &CIInsereAuto::OnBnClickedCopyItem);
    connect(&m_list.tree(), &ItemTreeModel::currentChanged, this,
            &CIInsereAuto::OnTreeSelectionChanged);
    connect(m_palette, &CITreeSimbolosPopup::entrySelected, this,
            &CIInsereAuto::OnPaletteSelectionChanging);
    connect(m_selectedList->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) { OnSymbolLineSelected(current.row()); });
    connect(m_tree, &ItemTreeView::doubleClickedAt, this, &CIInsereAuto::OnEditItem);
    connect(m_tree, &ItemTreeView::beginDrag, this, &CIInsereAuto::OnBeginDrag);
    connect(&m_list, &ItemListController::itemCountChanged, this, &CIInsereAuto::ShowCount);
}

QRect CIInsereAuto::panelUnits(int x, int y, int width, int height) const
{
    // The panel is kPanelWidth pixels wide whatever the font, so its controls share that
    // width in proportion to their template positions.
    const double scale = (kPanelWidth - horizontalUnits(kMargin)) / double(kPanelUnits);
    const int origin = horizontalUnits(kPanelLeft);
    const int left = origin + static_cast<int>(std::lround((x - kPanelLeft) * scale));
    const int right = origin + static_cast<int>(std::lround((x + width - kPanelLeft) * scale));
    const QRect vertical = dialogUnits(0, y, 0, height);
    return QRect(left, vertical.y(), right - left, vertical.height());
}

void CIInsereAuto::placeControls()
{
    placeControl(m_itemListLabel, 12, 4, 150, 8);
    placeControl(m_tree, 5, 13, 298, 251);
    placeControl(m_setup, 5, 269, 16, 16);
    placeControl(m_import, 21, 269, 16, 16);
    placeControl(m_addItem, 207, 269, 16, 16);
    placeControl(m_copyItem, 223, 269, 16, 16);
    placeControl(m_addSymbol, 239, 269, 16, 16);
    placeControl(m_addPage, 255, 269, 16, 16);
    placeControl(m_addSpace, 271, 269, 16, 16);
    placeControl(m_remove, 287, 269, 16, 16);
    placeControl(m_run, 198, 290, 50, 16);
    placeControl(m_close, 253, 290, 50, 16);
    placeControl(m_countLabel, 8, 295, 70, 11);
    placeControl(m_count, 78, 295, 68, 11);
    m_paletteLabel->setGeometry(panelUnits(315, 4, 125, 8));
    m_palette->setGeometry(panelUnits(308, 13, 220, 147));
    m_addToItem->setGeometry(panelUnits(511, 165, 17, 16));
    m_selectedLabel->setGeometry(panelUnits(315, 181, 147, 8));
    m_selectedList->setGeometry(panelUnits(308, 190, 220, 95));
    m_finalize->setGeometry(panelUnits(478, 290, 50, 16));
}

QList<QWidget*> CIInsereAuto::panelControls() const
{
    return {m_palette, m_paletteLabel, m_selectedLabel, m_addToItem, m_selectedList, m_finalize};
}

QString CIInsereAuto::LoadSettings(const KVString& path)
{
    m_settingsPath = path;
    m_blockPath = companionPath(path, QStringLiteral(".cfb"));
    m_symbolPath = companionPath(path, QStringLiteral(".cfc"));
    // A missing companion is created empty and an existing one keeps its content.
    QStringList errors;
    for (const KVString& companion : {m_blockPath, m_symbolPath}) {
        if (const SettingsFileStatus status = SettingsTextFile::ensureExists(companion); !status)
            errors.append(status.error);
    }
    return errors.join(u'\n');
}

int CIInsereAuto::DoModal()
{
    return exec();
}

void CIInsereAuto::setItemMover(ItemMover mover)
{
    m_mover = std::move(mover);
}

void CIInsereAuto::showEvent(QShowEvent* event)
{
    if (!m_initialised) {
        m_initialised = true;
        OnInitDialog();
    }
    CIResizableDialog::showEvent(event);
}

void CIInsereAuto::OnInitDialog()
{
    setWindowTitle(kvTr("Automatic insertion"));
    m_itemListLabel->setText(kvTr("Item list:"));
    m_countLabel->setText(kvTr("Items not imported:"));
    m_paletteLabel->setText(kvTr("Symbols:"));
    m_selectedLabel->setText(kvTr("Symbols selected:"));
    m_run->setText(kvTr("Add"));
    m_close->setText(kvTr("Close"));
    m_finalize->setText(kvTr("Finalize"));
    m_setup->setToolTip(kvTr("Setup"));
    m_import->setToolTip(kvTr("Import"));
    m_addItem->setToolTip(kvTr("Add item"));
    m_copyItem->setToolTip(kvTr("Copy item"));
    m_addSymbol->setToolTip(kvTr("Add symbol"));
    m_addPage->setToolTip(kvTr("Add page"));
    m_addSpace->setToolTip(kvTr("Add space"));
    m_remove->setToolTip(kvTr("Remove"));

    for (QWidget* control : {m_addItem, m_addSymbol, m_addPage, m_addSpace})
        control->setEnabled(true);
    for (QWidget* control : {m_copyItem, m_remove, m_run, m_addToItem})
        control->setEnabled(false);

    // Hidden as "Finalize" hides it, except that the Add symbol button is already enabled.
    for (QWidget* control : panelControls())
        control->hide();
    resize(width() - kPanelWidth, height());
    m_panelShown = false;
    OnSize(size());
    m_firstSize = size();
    setMinimumSize(m_firstSize);

    m_list.setLastItemNumber(0);
    ShowCount();
}

void CIInsereAuto::resizeEvent(QResizeEvent* event)
{
    // The controls follow this dialog's own rules (the symbol panel changes the width without
    // moving anything), not the rules of the resizable base.
    QDialog::resizeEvent(event); // NOLINT(bugprone-parent-virtual-call)
    OnSize(event->size());
}

void CIInsereAuto::OnSize(const QSize& size)
{
    if (!m_previousSize.isValid())
        m_previousSize = size;
    int dx = size.width() - m_previousSize.width();
    const int dy = size.height() - m_previousSize.height();
    m_previousSize = size;
    if (m_panelShown != m_panelShownAtLastLayout) {
        // The panel's own width is not a change of the controls' room.
        dx += m_panelShown ? -kPanelWidth : kPanelWidth;
        m_panelShownAtLastLayout = m_panelShown;
    }
    if (dx == 0 && dy == 0)
        return;
    growBy(m_tree, dx, dy);
    growBy(m_palette, 0, dy);
    for (QWidget* control : Controls{m_setup, m_import, m_countLabel, m_count})
        moveBy(control, 0, dy);
    for (QWidget* control :
         Controls{m_addItem, m_copyItem, m_addSymbol, m_addPage, m_addSpace, m_remove, m_run,
                  m_close, m_addToItem, m_selectedLabel, m_selectedList, m_finalize})
        moveBy(control, dx, dy);
    for (QWidget* control : Controls{m_paletteLabel, m_palette})
        moveBy(control, dx, 0);
    update();
}

void CIInsereAuto::ShowCount()
{
    m_count->setText(QString::number(m_list.itemCount()));
}

void CIInsereAuto::ShowSymbolPanel()
{
    if (m_panelShown)
        return;
    m_addSymbol->setEnabled(false);
    for (QWidget* control : panelControls())
        control->show();
    m_panelShown = true;
    resize(width() + kPanelWidth, height());
    OnSize(size());
    if (m_firstSize.isValid())
        setMinimumSize(m_firstSize + QSize(kPanelWidth, 0));
    m_palette->cargaNormaSelecionada();
}

void CIInsereAuto::HideSymbolPanel()
{
    if (!m_panelShown)
        return;
    m_addSymbol->setEnabled(true);
    for (QWidget* control : panelControls())
        control->hide();
    m_panelShown = false;
    if (m_firstSize.isValid())
        setMinimumSize(m_firstSize);
    resize(width() - kPanelWidth, height());
    OnSize(size());
}

void CIInsereAuto::OnBnClickedSetup()
{
    CIConfigAuto settings(this);
    settings.SetSettingsPath(m_settingsPath);
    if (settings.exec() == QDialog::Accepted)
        LoadSettings(settings.settingsPath());
}

void CIInsereAuto::OnBnClickedBtImportar()
{
    const ItemImportResult result =
        ItemImport::run(m_settingsPath, m_list, m_importState, [](bool busy) {
            if (busy)
                QGuiApplication::setOverrideCursor(Qt::WaitCursor);
            else
                QGuiApplication::restoreOverrideCursor();
        });
    if (result.insertionEnabled)
        m_run->setEnabled(*result.insertionEnabled);
}

void CIInsereAuto::OnBnClickedAddItem()
{
    m_list.addItem([this](const KVString& proposedName) -> std::optional<ItemEditorResult> {
        IAdicionaItem editor(this);
        editor.SetSettingsPath(m_settingsPath);
        editor.SetItemName(proposedName);
        editor.SetEditMode(false);
        if (editor.exec() != QDialog::Accepted)
            return std::nullopt;
        return editor.editorResult();
    });
}

void CIInsereAuto::OnEditItem()
{
    m_list.editItem([this](const QStringList& attributes) -> std::optional<ItemEditorResult> {
        IAdicionaItem editor(this);
        editor.SetSettingsPath(m_settingsPath);
        editor.SetEditMode(true);
        editor.SetEditedAttributes(attributes);
        if (editor.exec() != QDialog::Accepted)
            return std::nullopt;
        return editor.editorResult();
    });
}

void CIInsereAuto::OnBnClickedCopyItem()
{
    m_list.copyItem();
}

void CIInsereAuto::OnBnClickedAddPage()
{
    m_list.addPage();
}

void CIInsereAuto::OnBnClickedAddSpace()
{
    m_list.addSpace();
}

void CIInsereAuto::OnBnClickedRemove()
{
    m_list.remove();
}

void CIInsereAuto::OnBnClickedAddSymbol()
{
    if (const CEPasta* entry = m_palette->currentEntry())
        m_list.addSymbol(*entry);
}

void CIInsereAuto::OnBnClickedRun()
{
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    for (QWidget* control : Controls{m_addPage, m_addSpace, m_remove, m_setup, m_import, m_addItem,
                                     m_tree, m_run, m_copyItem})
        control->setEnabled(false);
    const CEInsAutoJobBuildResult built = CEInsAutoJobBuilder::build(m_settingsPath, m_list.tree());
    // A settings file that cannot be read counts as empty; the user learns which one.
    for (const QString& error : built.errors)
        kvPrintf(QStringLiteral("\n") + error);
    QGuiApplication::restoreOverrideCursor();
    reject();

    CInsAutoLogic engine;
    engine.Executar(built.job);
}

void CIInsereAuto::OnTreeSelectionChanged()
{
    const bool hasNodes = m_list.hasNodes();
    for (QWidget* control : {m_remove, m_run, m_copyItem})
        control->setEnabled(hasNodes);
}

void CIInsereAuto::OnPaletteSelectionChanging(const CEPasta* entry)
{
    m_addToItem->setEnabled(entry && m_list.canAddSymbol(*entry));
}

void CIInsereAuto::OnSymbolLineSelected(int row)
{
    m_list.selectSymbolLine(row);
}

void CIInsereAuto::OnBeginDrag(TVNode node, const QPoint& point)
{
    m_dragNode = node;
    // Only whole items move; their symbols, pages and spaces go with them.
    if (!m_list.tree().parentNode(node).isNull() || !m_list.tree().contains(node))
        return;
    m_dragImage = std::make_unique<QLabel>(nullptr, Qt::ToolTip | Qt::FramelessWindowHint |
                                                        Qt::WindowTransparentForInput);
    m_dragImage->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_dragImage->setAttribute(Qt::WA_ShowWithoutActivating);
    m_dragImage->setWindowOpacity(0.7);
    m_dragImage->setPixmap(m_tree->dragPixmap(node));
    m_dragImage->adjustSize();
    m_dragImage->move(m_tree->viewport()->mapToGlobal(point) - kDragHotSpot);
    m_dragImage->show();

    m_dragging = true;
    m_dropAllowed = false;
    // The dialog sees every mouse move and the button release until the drag ends, wherever
    // the pointer goes.
    qApp->installEventFilter(this);
    QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
    // Nothing is done on its ticks: the tree does not scroll by itself during a drag.
    m_dragTimer = startTimer(kDragTimerInterval);
}

bool CIInsereAuto::eventFilter(QObject* watched, QEvent* event)
{
    if (m_dragging) {
        if (event->type() == QEvent::MouseMove) {
            OnDragMouseMove(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
            return true;
        }
        if (event->type() == QEvent::MouseButtonRelease &&
            static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            OnDragButtonUp(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
            return true;
        }
    }
    return CIResizableDialog::eventFilter(watched, event);
}

QWidget* CIInsereAuto::windowUnder(const QPoint& screenPoint) const
{
    // The drag image is not what the pointer is over.
    const bool imageShown = m_dragImage && m_dragImage->isVisible();
    if (imageShown)
        m_dragImage->hide();
    QWidget* widget = QApplication::widgetAt(screenPoint);
    if (imageShown)
        m_dragImage->show();
    return widget;
}

bool CIInsereAuto::isItemTree(const QWidget* widget)
{
    // The tree's rows, scroll bars and frame are all the tree.
    for (const QWidget* w = widget; w; w = w->isWindow() ? nullptr : w->parentWidget()) {
        if (qobject_cast<const ItemTreeView*>(w))
            return true;
    }
    return false;
}

void CIInsereAuto::OnDragMouseMove(const QPoint& screenPoint)
{
    if (m_dragImage)
        m_dragImage->move(screenPoint - kDragHotSpot);
    const QWidget* under = windowUnder(screenPoint);
    m_dropAllowed = isItemTree(under);
    QGuiApplication::changeOverrideCursor(m_dropAllowed ? Qt::ArrowCursor : Qt::ForbiddenCursor);
}

void CIInsereAuto::OnDragButtonUp(const QPoint& screenPoint)
{
    qApp->removeEventFilter(this);
    if (!m_dragging)
        return;
    const DragEnd end([this] { endDrag(); });
    if (m_dragImage)
        m_dragImage->hide();
    const QWidget* under = QApplication::widgetAt(screenPoint);
    if (m_dropAllowed && isItemTree(under))
        DropOnTreeview(screenPoint, m_dragNode);
}

void CIInsereAuto::endDrag()
{
    if (!m_dragging)
        return;
    m_dragging = false;
    if (m_dragImage)
        m_dragImage->hide();
    if (m_dragTimer != 0) {
        killTimer(m_dragTimer);
        m_dragTimer = 0;
    }
    QGuiApplication::restoreOverrideCursor();
}

void CIInsereAuto::DropOnTreeview(const QPoint& screenPoint, TVNode item)
{
    const CTVNodesUtil& tree = m_list.tree();
    const QPoint point = m_tree->viewport()->mapFromGlobal(screenPoint);
    const TVNode hit = rootItemOf(tree, m_tree->hitTest(point).node);

    // The row above the point's half-row decides between "after this item" and "after the
    // one before it".
    const int halfHeight = static_cast<qint16>(m_tree->itemHeight()) / 2;
    const ItemTreeView::HitTest above = m_tree->hitTest(point - QPoint(0, halfHeight));
    const TVNode previousHit = rootItemOf(tree, above.node);

    TVNode target;
    if (hit == previousHit)
        target = hit;
    else if (above.flags.testFlag(ItemTreeView::Above))
        target = TVNode::first();
    else if (!hit.isNull() && !tree.previousSibling(hit).isNull() &&
             tree.previousSibling(hit) == previousHit)
        target = previousHit;
    else
        target = TVNode::first();

    try {
        m_mover(m_list, item, target);
        m_tree->viewport()->update();
    } catch (const std::exception& error) {
        electricalLog(ACTIVE_DOCUMENT(), kDropOnTreeview + QStringLiteral(" : ") +
                                             QString::fromLocal8Bit(error.what()));
        throw;
    }
}
