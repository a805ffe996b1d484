// Moving items of the main dialog's item tree by dragging them with the mouse: where a drop
// puts the item, what a drag of a child or a release elsewhere does, the cursor and the drag
// image, and a move that fails.
#include "MainDialogTestSupport.h"

#include "settingsui/widgets/CITreeSimbolosPopup.h"

#include <QLabel>
#include <QListView>
#include <QScrollBar>

#include <stdexcept>

using namespace MainDialogTest;
using ItemTreeTestSupport::describe;
using ItemTreeTestSupport::describeChildren;

class tst_maindialog_dragdrop : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void dropOnARow_data();
    void dropOnARow();
    void lowerHalfOfItselfRecreatesTheItemInPlace();
    void aboveTheFirstShownRowMovesFirst();
    void belowTheLastItemMovesToTheEnd();
    void halfARowBelowTheLastItemMovesFirst();
    void frameAboveTheRowsMovesToTheEnd();
    void draggingAChildDoesNothing();
    void releaseOverAnotherWindowMovesNothing_data();
    void releaseOverAnotherWindowMovesNothing();
    void releaseWhereNoWindowIsMovesNothing();
    void cursorAndImageFollowTheDrag();
    void failingMoveIsLoggedAndThrownOn();

private:
    // Items A, B, C, D, each with one symbol; A and B show their symbols, C and D are closed.
    void fillFourItems();
    TVNode item(const QString& name) const { return itemNamed(m_dialog->itemList().tree(), name); }

    ExampleStandard m_standard;
    std::unique_ptr<ExampleHost> m_host;
    std::unique_ptr<CIInsereAuto> m_dialog;
    ItemTreeView* m_view = nullptr;
};

namespace {

std::unique_ptr<CEPasta> component(const QString& key)
{
    auto entry = std::make_unique<CEPasta>(CEPasta::kComponent, key);
    entry->setDescricao(1, QStringLiteral("Symbol ") + key);
    return entry;
}

bool dragImageShown()
{
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        const auto* label = qobject_cast<const QLabel*>(widget);
        if (label && label->isVisible() && !label->pixmap().isNull())
            return true;
    }
    return false;
}

int overrideShape()
{
    const QCursor* cursor = QGuiApplication::overrideCursor();
    return cursor ? int(cursor->shape()) : -1;
}

} // namespace

void tst_maindialog_dragdrop::initTestCase()
{
    QVERIFY2(m_standard.load(), qPrintable(m_standard.error()));
}

void tst_maindialog_dragdrop::init()
{
    m_host = std::make_unique<ExampleHost>(m_standard);
    QVERIFY2(m_host->ok(), qPrintable(m_host->error()));
    m_dialog = std::make_unique<CIInsereAuto>();
    m_dialog->LoadSettings(m_standard.settings());
    QVERIFY(showDialog(*m_dialog));
    m_view = itemTree(*m_dialog);
    QVERIFY(m_view);
}

void tst_maindialog_dragdrop::cleanup()
{
    m_dialog.reset();
    m_host.reset();
    while (QGuiApplication::overrideCursor())
        QGuiApplication::restoreOverrideCursor();
}

void tst_maindialog_dragdrop::fillFourItems()
{
    ItemListController& list = m_dialog->itemList();
    int key = 1001;
    for (const char* name : {"A", "B", "C", "D"}) {
        list.addItem(QString::fromLatin1(name), {QStringLiteral("TAG=") + QLatin1String(name)});
        list.addSymbol(*component(QString::number(key++)));
    }
    CTVNodesUtil& tree = list.tree();
    tree.setExpanded(item("C"), false);
    tree.setExpanded(item("D"), false);
    tree.setCurrent({});
    QCOMPARE(describe(tree), QStringLiteral("A[S:1001] B[S:1002] C[S:1003] D[S:1004]"));
}

void tst_maindialog_dragdrop::dropOnARow_data()
{
    QTest::addColumn<QString>("dragged");
    QTest::addColumn<QString>("onItem");
    // -1: the item's own row; 0, 1, ...: that child's row.
    QTest::addColumn<int>("childRow");
    QTest::addColumn<double>("fraction");
    QTest::addColumn<QString>("expected");
    QTest::newRow("lower half: after that item") << "D"
                                                 << "A" << -1 << 0.75 << "A D B C";
    QTest::newRow("upper half of the first item: first") << "C"
                                                         << "A" << -1 << 0.25 << "C A B D";
    QTest::newRow("upper half: after the item before") << "A"
                                                       << "D" << -1 << 0.25 << "B C A D";
    QTest::newRow("upper half below an open item's child: after that item")
        << "D"
        << "C" << -1 << 0.25 << "A B D C";
    QTest::newRow("lower half of a child: after its item") << "D"
                                                           << "A" << 0 << 0.75 << "A D B C";
    QTest::newRow("upper half of a first child: after its item") << "C"
                                                                 << "B" << 0 << 0.25 << "A B C D";
    QTest::newRow("upper half of a first child, item moved up") << "D"
                                                                << "A" << 0 << 0.25 << "A D B C";
    QTest::newRow("dragged onto the item above it") << "B"
                                                    << "A" << -1 << 0.75 << "A B C D";
}

void tst_maindialog_dragdrop::dropOnARow()
{
    QFETCH(QString, dragged);
    QFETCH(QString, onItem);
    QFETCH(int, childRow);
    QFETCH(double, fraction);
    QFETCH(QString, expected);
    fillFourItems();
    const CTVNodesUtil& tree = m_dialog->itemList().tree();
    const TVNode target = childRow < 0 ? item(onItem) : tree.children(item(onItem)).value(childRow);
    QVERIFY(!m_view->nodeRect(target).isEmpty());
    dragAndDrop(*m_view, item(dragged), m_view->viewport(), rowPoint(*m_view, target, fraction));
    QCOMPARE(itemTexts(tree).join(u' '), expected);
    QVERIFY(!m_dialog->isDragging());
    // Each item keeps its symbol.
    for (const TVNode root : tree.children())
        QCOMPARE(tree.childCount(root), 1);
    QCOMPARE(describeChildren(tree, item(dragged)),
             QStringLiteral("S:%1").arg(1001 + QStringLiteral("ABCD").indexOf(dragged)));
}

void tst_maindialog_dragdrop::lowerHalfOfItselfRecreatesTheItemInPlace()
{
    fillFourItems();
    CTVNodesUtil& tree = m_dialog->itemList().tree();
    const TVNode before = item("B");
    tree.setCurrent(tree.firstChild(before));
    m_dialog->itemList().addPage();
    QCOMPARE(describeChildren(tree, before), QStringLiteral("S:1002,P"));
    dragAndDrop(*m_view, before, m_view->viewport(), rowPoint(*m_view, before, 0.75));
    QCOMPARE(itemTexts(tree), (QStringList{"A", "B", "C", "D"}));
    // A new node in the same place, with the children in their order; the old one is gone.
    QVERIFY(!tree.contains(before));
    QCOMPARE(describeChildren(tree, item("B")), QStringLiteral("S:1002,P"));
    QCOMPARE(attributeTexts(tree.GetAttributes(item("B"))), QStringList{"TAG=B"});
}

void tst_maindialog_dragdrop::aboveTheFirstShownRowMovesFirst()
{
    ItemListController& list = m_dialog->itemList();
    for (int number = 1; number <= 60; ++number)
        list.addItem(QStringLiteral("I%1").arg(number), {});
    const CTVNodesUtil& tree = list.tree();
    const TVNode top = itemNamed(tree, QStringLiteral("I20"));
    m_view->scrollTo(tree.indexOf(top), QAbstractItemView::PositionAtTop);
    QCOMPARE(m_view->hitTest(QPoint(5, 1)).node, top);
    // The upper half of the first row shown: the row above lies above the visible rows.
    const TVNode dragged = itemNamed(tree, QStringLiteral("I25"));
    dragAndDrop(*m_view, dragged, m_view->viewport(), rowPoint(*m_view, top, 0.25));
    QCOMPARE(itemTexts(tree).first(), QStringLiteral("I25"));
    QCOMPARE(itemTexts(tree).at(1), QStringLiteral("I1"));
    QCOMPARE(tree.childCount(), 60);
}

void tst_maindialog_dragdrop::belowTheLastItemMovesToTheEnd()
{
    fillFourItems();
    const TVNode last = item("D");
    const int h = m_view->itemHeight();
    const QPoint below = rowPoint(*m_view, last, 1.0) + QPoint(0, h);
    QVERIFY(m_view->viewport()->rect().contains(below));
    dragAndDrop(*m_view, item("B"), m_view->viewport(), below);
    QCOMPARE(itemTexts(m_dialog->itemList().tree()).join(u' '), QStringLiteral("A C D B"));
}

void tst_maindialog_dragdrop::halfARowBelowTheLastItemMovesFirst()
{
    // Nothing lies under the point, but the last item lies half a row above it: the two hit
    // tests differ, the upper one is not above the rows, and nothing precedes "no item", so
    // the item goes first.
    fillFourItems();
    dragAndDrop(*m_view, item("C"), m_view->viewport(), rowPoint(*m_view, item("D"), 1.25));
    QCOMPARE(itemTexts(m_dialog->itemList().tree()).join(u' '), QStringLiteral("C A B D"));
}

void tst_maindialog_dragdrop::frameAboveTheRowsMovesToTheEnd()
{
    // The tree's frame belongs to the tree, but no row lies under it or half a row above it:
    // both hit tests find nothing, which means the end.
    fillFourItems();
    const QPoint frame(m_view->width() / 2, 0);
    QVERIFY(m_view->viewport()->geometry().top() > 0);
    dragAndDrop(*m_view, item("B"), m_view, frame);
    QCOMPARE(itemTexts(m_dialog->itemList().tree()).join(u' '), QStringLiteral("A C D B"));
}

void tst_maindialog_dragdrop::draggingAChildDoesNothing()
{
    fillFourItems();
    const CTVNodesUtil& tree = m_dialog->itemList().tree();
    const TVNode symbol = tree.firstChild(item("A"));
    startDrag(*m_view, symbol);
    QVERIFY(!m_dialog->isDragging());
    QVERIFY(!dragImageShown());
    QCOMPARE(overrideShape(), -1);
    const QPoint over = rowPoint(*m_view, item("D"), 0.75);
    QTest::mouseMove(m_view->viewport(), over);
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, over);
    QCOMPARE(describe(tree), QStringLiteral("A[S:1001] B[S:1002] C[S:1003] D[S:1004]"));
    QVERIFY(!m_dialog->isDragging());
}

void tst_maindialog_dragdrop::releaseOverAnotherWindowMovesNothing_data()
{
    QTest::addColumn<QString>("window");
    QTest::newRow("palette") << "14018";
    QTest::newRow("symbols selected") << "14039";
    QTest::newRow("add button") << "14015";
}

void tst_maindialog_dragdrop::releaseOverAnotherWindowMovesNothing()
{
    QFETCH(QString, window);
    fillFourItems();
    QVERIFY(clickButton(*m_dialog, "14012"));
    auto* target = m_dialog->findChild<QWidget*>(window);
    QVERIFY(target && target->isVisible());
    auto* scrollArea = qobject_cast<QAbstractScrollArea*>(target);
    QWidget* receiver = scrollArea ? scrollArea->viewport() : target;
    const QPoint point = receiver->rect().center();
    startDrag(*m_view, item("A"));
    QVERIFY(m_dialog->isDragging());
    QTest::mouseMove(receiver, point);
    QCOMPARE(overrideShape(), int(Qt::ForbiddenCursor));
    QTest::mouseRelease(receiver, Qt::LeftButton, {}, point);
    QCOMPARE(itemTexts(m_dialog->itemList().tree()).join(u' '), QStringLiteral("A B C D"));
    QVERIFY(!m_dialog->isDragging());
    QCOMPARE(overrideShape(), -1);
    QVERIFY(!dragImageShown());
    // The next drag works as usual.
    dragAndDrop(*m_view, item("A"), m_view->viewport(), rowPoint(*m_view, item("C"), 0.75));
    QCOMPARE(itemTexts(m_dialog->itemList().tree()).join(u' '), QStringLiteral("B C A D"));
}

void tst_maindialog_dragdrop::releaseWhereNoWindowIsMovesNothing()
{
    fillFourItems();
    startDrag(*m_view, item("A"));
    QVERIFY(m_dialog->isDragging());
    // Left of and above the dialog's frame: no window of the application is there.
    const QPoint outside = m_view->viewport()->mapFrom(m_dialog.get(), QPoint(-40, -40));
    QVERIFY(!QApplication::widgetAt(m_view->viewport()->mapToGlobal(outside)));
    QTest::mouseMove(m_view->viewport(), outside);
    QCOMPARE(overrideShape(), int(Qt::ForbiddenCursor));
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, outside);
    QCOMPARE(itemTexts(m_dialog->itemList().tree()).join(u' '), QStringLiteral("A B C D"));
    QVERIFY(!m_dialog->isDragging());
    QCOMPARE(overrideShape(), -1);
}

void tst_maindialog_dragdrop::cursorAndImageFollowTheDrag()
{
    fillFourItems();
    QVERIFY(clickButton(*m_dialog, "14012"));
    auto* palette = m_dialog->findChild<CITreeSimbolosPopup*>(QStringLiteral("14018"));
    QVERIFY(!dragImageShown());
    startDrag(*m_view, item("B"));
    QVERIFY(m_dialog->isDragging());
    QVERIFY(dragImageShown());
    QCOMPARE(overrideShape(), int(Qt::ArrowCursor));
    QTest::mouseMove(palette->viewport(), palette->viewport()->rect().center());
    QCOMPARE(overrideShape(), int(Qt::ForbiddenCursor));
    // The tree's scroll bar area and frame are the tree too.
    QTest::mouseMove(m_view, QPoint(1, 1));
    QCOMPARE(overrideShape(), int(Qt::ArrowCursor));
    const QPoint onD = rowPoint(*m_view, item("D"), 0.75);
    QTest::mouseMove(m_view->viewport(), onD);
    QCOMPARE(overrideShape(), int(Qt::ArrowCursor));
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, onD);
    QVERIFY(!dragImageShown());
    QCOMPARE(overrideShape(), -1);
    QCOMPARE(itemTexts(m_dialog->itemList().tree()).join(u' '), QStringLiteral("A C D B"));
}

void tst_maindialog_dragdrop::failingMoveIsLoggedAndThrownOn()
{
    fillFourItems();
    int calls = 0;
    m_dialog->setItemMover([&](ItemListController&, TVNode, TVNode) -> TVNode {
        ++calls;
        throw std::runtime_error("the drawing database is locked");
    });
    const QPoint onD = rowPoint(*m_view, item("D"), 0.75);
    startDrag(*m_view, item("A"));
    QTest::mouseMove(m_view->viewport(), onD);
    QVERIFY_THROWS_EXCEPTION(std::runtime_error,
                             QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, onD));
    QCOMPARE(calls, 1);
    QVERIFY2(m_host->err().contains(QStringLiteral(
                 "log: CIInsereAuto::DropOnTreeview : the drawing database is locked\n")),
             qPrintable(m_host->err()));
    // The drag is over all the same, and nothing moved.
    QVERIFY(!m_dialog->isDragging());
    QCOMPARE(overrideShape(), -1);
    QCOMPARE(itemTexts(m_dialog->itemList().tree()).join(u' '), QStringLiteral("A B C D"));
}

QTEST_MAIN(tst_maindialog_dragdrop)
#include "tst_maindialog_dragdrop.moc"
