#pragma once

#include "ItemListController.h"
#include "TVNode.h"

#include "host/KVString.h"
#include "import/ItemImport.h"
#include "settingsui/widgets/CIResizableDialog.h"

#include <functional>
#include <memory>

class CEPasta;
class CITreeSimbolosPopup;
class ItemTreeView;
class QLabel;
class QListView;
class QPushButton;

// The main dialog of the automatic insertion: the item list (a tree of items with their
// symbols, page breaks and spaces), the buttons that build it (import, add, copy, remove,
// move by drag and drop), a symbol panel with the palette of the standard in use, and "Add",
// which turns the list into an insertion job, closes the dialog and runs the job.
//
// Every control's object name is its numeric identifier ("14013" for the item tree, "14015"
// for "Add", ...). The list itself and its operations live in ItemListController; the dialog
// only connects them to the controls and to the other dialogs.
class CIInsereAuto final : public CIResizableDialog
{
    Q_OBJECT

public:
    // How much the symbol panel widens the window, in pixels.
    static constexpr int kPanelWidth = 335;
    // What a drop calls to move an item: ItemListController::moveItem unless replaced.
    using ItemMover = std::function<TVNode(ItemListController& list, TVNode item, TVNode target)>;

    explicit CIInsereAuto(QWidget* parent = nullptr);
    ~CIInsereAuto() override;

    // Takes `path` as the .cfa path and forms the .cfb and .cfc paths from it (".cfa" replaced
    // wherever it occurs). Companion files that do not exist are created empty; nothing is
    // read. Returns why a companion could not be created (naming the file), else empty.
    QString LoadSettings(const KVString& path);
    // Runs the dialog modally.
    int DoModal();

    KVString settingsPath() const { return m_settingsPath; }
    KVString blockFilePath() const { return m_blockPath; }
    KVString symbolFilePath() const { return m_symbolPath; }

    ItemListController& itemList() { return m_list; }
    // The header texts that the last import copied from the settings file.
    const ImportHeaderTexts& importedHeaders() const { return m_importState.headers; }
    bool isPanelShown() const { return m_panelShown; }
    bool isDragging() const { return m_dragging; }
    // Until the dialog is first shown: an invalid size.
    QSize firstSize() const { return m_firstSize; }

    // Drops the item `item` at the screen point `screenPoint` over the item tree: after the
    // item whose lower half is there, after the item before the one whose upper half is there,
    // first when the point is above all items, last when it is below them.
    void DropOnTreeview(const QPoint& screenPoint, TVNode item);
    void setItemMover(ItemMover mover);

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void createControls();
    void placeControls();
    QRect panelUnits(int x, int y, int width, int height) const;
    QList<QWidget*> panelControls() const;
    void OnInitDialog();
    void OnSize(const QSize& size);

    void OnBnClickedSetup();
    void OnBnClickedBtImportar();
    void OnBnClickedAddItem();
    void OnEditItem();
    void OnBnClickedCopyItem();
    void OnBnClickedAddPage();
    void OnBnClickedAddSpace();
    void OnBnClickedRemove();
    void OnBnClickedRun();
    void OnBnClickedAddSymbol();
    void ShowSymbolPanel();
    void HideSymbolPanel();
    void OnTreeSelectionChanged();
    void OnPaletteSelectionChanging(const CEPasta* entry);
    void OnSymbolLineSelected(int row);
    void ShowCount();

    void OnBeginDrag(TVNode node, const QPoint& point);
    void OnDragMouseMove(const QPoint& screenPoint);
    void OnDragButtonUp(const QPoint& screenPoint);
    QWidget* windowUnder(const QPoint& screenPoint) const;
    static bool isItemTree(const QWidget* widget);
    void endDrag();

    ItemListController m_list;
    ImportDialogState m_importState;
    ItemMover m_mover;

    QLabel* m_itemListLabel;
    ItemTreeView* m_tree;
    QPushButton* m_setup;
    QPushButton* m_import;
    QPushButton* m_addItem;
    QPushButton* m_copyItem;
    QPushButton* m_addSymbol;
    QPushButton* m_addPage;
    QPushButton* m_addSpace;
    QPushButton* m_remove;
    QPushButton* m_run;
    QPushButton* m_close;
    QLabel* m_countLabel;
    QLabel* m_count;
    QLabel* m_paletteLabel;
    CITreeSimbolosPopup* m_palette;
    QPushButton* m_addToItem;
    QLabel* m_selectedLabel;
    QListView* m_selectedList;
    QPushButton* m_finalize;

    KVString m_settingsPath;
    KVString m_blockPath;
    KVString m_symbolPath;

    bool m_initialised = false;
    // The template is laid out with the panel; start-up hides it.
    bool m_panelShown = true;
    bool m_panelShownAtLastLayout = true;
    QSize m_previousSize;
    QSize m_firstSize;

    // The drag of an item in the tree.
    bool m_dragging = false;
    TVNode m_dragNode;
    bool m_dropAllowed = false;
    std::unique_ptr<QLabel> m_dragImage;
    int m_dragTimer = 0;
};
