// The main dialog as a window: its controls and texts, which buttons are enabled when, the
// symbol panel, resizing, LoadSettings and Setup. The host is the reference host over the
// example standard.
#include "MainDialogTestSupport.h"

#include "maindialog/ItemTreeIconDelegate.h"
#include "settingsui/CIConfigAuto.h"
#include "settingsui/widgets/CITreeSimbolosPopup.h"

#include <QDir>
#include <QLabel>
#include <QListView>
#include <QSizeGrip>

using namespace MainDialogTest;

class tst_maindialog_dialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void controlsCarryTheirIdentifiers_data();
    void controlsCarryTheirIdentifiers();
    void textsAreTranslatedWhenShown();
    void startUpEnablesTheListButtonsOnly();
    void treeImagesFollowTheNodeKinds();
    void emptyTreeDisablesRemoveAddAndCopyAfterASelectionChange();
    void addToItemNeedsAComponentAndASelectedNode();
    void panelChangesOnlyTheWidth();
    void resizingMovesAndStretchesTheControls();
    void resizingNeverGoesBelowTheFirstSize();
    void sizeGripStopsAtTheFirstSize();
    void loadSettingsCreatesMissingCompanions();
    void loadSettingsReplacesEveryCfa();
    void setupReloadsThePathsOnlyOnOk();
    void closeEndsTheModalDialog();

private:
    ExampleStandard m_standard;
};

namespace {

// Every control of the dialog with the geometry it has now.
QMap<QString, QRect> geometries(const QWidget& dialog)
{
    QMap<QString, QRect> result;
    for (const QWidget* child : dialog.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        if (!child->objectName().isEmpty())
            result.insert(child->objectName(), child->geometry());
    }
    return result;
}

QStringList enabledControls(const QWidget& dialog, const QStringList& ids)
{
    QStringList enabled;
    for (const QString& id : ids) {
        const QWidget* control = dialog.findChild<QWidget*>(id);
        if (control && control->isEnabled())
            enabled.append(id);
    }
    return enabled;
}

const QStringList kButtonIds = {"14008", "14007", "14014", "14017", "14012", "14011",
                                "14010", "14009", "14015", "2",     "14025", "14001"};

} // namespace

void tst_maindialog_dialog::initTestCase()
{
    QVERIFY2(m_standard.load(), qPrintable(m_standard.error()));
}

void tst_maindialog_dialog::cleanup()
{
    // A failed check may leave an override cursor behind; the next test starts without one.
    while (QGuiApplication::overrideCursor())
        QGuiApplication::restoreOverrideCursor();
}

void tst_maindialog_dialog::controlsCarryTheirIdentifiers_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("toolTip");
    QTest::newRow("item list caption") << "14016"
                                       << "QLabel"
                                       << "Item list:"
                                       << "";
    QTest::newRow("item tree") << "14013"
                               << "ItemTreeView"
                               << ""
                               << "";
    QTest::newRow("setup") << "14008"
                           << "QPushButton"
                           << ""
                           << "Setup";
    QTest::newRow("import") << "14007"
                            << "QPushButton"
                            << ""
                            << "Import";
    QTest::newRow("add item") << "14014"
                              << "QPushButton"
                              << ""
                              << "Add item";
    QTest::newRow("copy item") << "14017"
                               << "QPushButton"
                               << ""
                               << "Copy item";
    QTest::newRow("add symbol") << "14012"
                                << "QPushButton"
                                << ""
                                << "Add symbol";
    QTest::newRow("add page") << "14011"
                              << "QPushButton"
                              << ""
                              << "Add page";
    QTest::newRow("add space") << "14010"
                               << "QPushButton"
                               << ""
                               << "Add space";
    QTest::newRow("remove") << "14009"
                            << "QPushButton"
                            << ""
                            << "Remove";
    QTest::newRow("run") << "14015"
                         << "QPushButton"
                         << "Add"
                         << "";
    QTest::newRow("close") << "2"
                           << "QPushButton"
                           << "Close"
                           << "";
    QTest::newRow("count caption") << "230"
                                   << "QLabel"
                                   << "Items not imported:"
                                   << "";
    QTest::newRow("count") << "231"
                           << "QLabel"
                           << "0"
                           << "";
    QTest::newRow("palette caption") << "14020"
                                     << "QLabel"
                                     << "Symbols:"
                                     << "";
    QTest::newRow("palette") << "14018"
                             << "CITreeSimbolosPopup"
                             << ""
                             << "";
    QTest::newRow("add to item") << "14025"
                                 << "QPushButton"
                                 << ""
                                 << "";
    QTest::newRow("selected caption") << "14028"
                                      << "QLabel"
                                      << "Symbols selected:"
                                      << "";
    QTest::newRow("selected list") << "14039"
                                   << "QListView"
                                   << ""
                                   << "";
    QTest::newRow("finalize") << "14001"
                              << "QPushButton"
                              << "Finalize"
                              << "";
}

void tst_maindialog_dialog::controlsCarryTheirIdentifiers()
{
    QFETCH(QString, id);
    QFETCH(QString, className);
    QFETCH(QString, text);
    QFETCH(QString, toolTip);
    ExampleHost host(m_standard);
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    QVERIFY(showDialog(dialog));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Automatic insertion"));
    const QList<QWidget*> found = dialog.findChildren<QWidget*>(id);
    QCOMPARE(found.size(), 1);
    QWidget* control = found.first();
    QCOMPARE(QString::fromLatin1(control->metaObject()->className()), className);
    if (auto* label = qobject_cast<QLabel*>(control))
        QCOMPARE(label->text(), text);
    if (auto* pushButton = qobject_cast<QPushButton*>(control)) {
        QCOMPARE(pushButton->text(), text);
        // The bitmap buttons show a picture instead of a text.
        QCOMPARE(pushButton->icon().isNull(), !text.isEmpty());
    }
    QCOMPARE(control->toolTip(), toolTip);
}

void tst_maindialog_dialog::textsAreTranslatedWhenShown()
{
    ExampleHost host(m_standard);
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    // Installed after construction: the texts are looked up when the dialog is shown.
    DialogTest::BracketTranslator translator;
    QCoreApplication::installTranslator(&translator);
    QVERIFY(showDialog(dialog));
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("[Automatic insertion]"));
    QCOMPARE(dialog.findChild<QLabel*>("14016")->text(), QStringLiteral("[Item list:]"));
    QCOMPARE(dialog.findChild<QLabel*>("230")->text(), QStringLiteral("[Items not imported:]"));
    QCOMPARE(dialog.findChild<QLabel*>("14020")->text(), QStringLiteral("[Symbols:]"));
    QCOMPARE(dialog.findChild<QLabel*>("14028")->text(), QStringLiteral("[Symbols selected:]"));
    QCOMPARE(button(dialog, "14015")->text(), QStringLiteral("[Add]"));
    QCOMPARE(button(dialog, "2")->text(), QStringLiteral("[Close]"));
    QCOMPARE(button(dialog, "14001")->text(), QStringLiteral("[Finalize]"));
    QCOMPARE(button(dialog, "14008")->toolTip(), QStringLiteral("[Setup]"));
    QCOMPARE(button(dialog, "14009")->toolTip(), QStringLiteral("[Remove]"));
}

void tst_maindialog_dialog::startUpEnablesTheListButtonsOnly()
{
    ExampleHost host(m_standard);
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    QVERIFY(showDialog(dialog));
    QCOMPARE(enabledControls(dialog, kButtonIds),
             (QStringList{"14008", "14007", "14014", "14012", "14011", "14010", "2", "14001"}));
    QVERIFY(!dialog.isPanelShown());
    for (const char* id : {"14018", "14020", "14028", "14025", "14039", "14001"})
        QVERIFY2(!dialog.findChild<QWidget*>(id)->isVisible(), id);
    QCOMPARE(dialog.findChild<QLabel*>("231")->text(), QStringLiteral("0"));
    QCOMPARE(dialog.itemList().lastItemNumber(), 0);
}

void tst_maindialog_dialog::treeImagesFollowTheNodeKinds()
{
    ExampleHost host(m_standard);
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    QVERIFY(showDialog(dialog));
    ItemListController& list = dialog.itemList();
    const TVNode item = list.addItem(QStringLiteral("A"), {QStringLiteral("ITEM=1")});
    ItemTreeView* view = itemTree(dialog);
    const auto imageOf = [&](TVNode node) {
        return view->model()
            ->data(list.tree().indexOf(node), ItemTreeModel::ImageIndexRole)
            .toInt();
    };
    QCOMPARE(imageOf(item), 0);
    CEPasta entry(CEPasta::kComponent, QStringLiteral("1001"));
    entry.setDescricao(1, QStringLiteral("Breaker"));
    const TVNode symbol = list.addSymbol(entry);
    const TVNode page = list.addPage();
    const TVNode space = list.addSpace();
    QCOMPARE(imageOf(item), 1);
    QCOMPARE(imageOf(symbol), 2);
    QCOMPARE(imageOf(page), 3);
    QCOMPARE(imageOf(space), 4);
    // Each row is drawn with the picture of its image index: the rows of the same kind look
    // alike and the rows of different kinds do not.
    const auto picture = [&](TVNode node) {
        const QRect row = view->visualRect(list.tree().indexOf(node));
        return view->viewport()->grab(QRect(row.left(), row.top(), 24, row.height())).toImage();
    };
    QVERIFY(!ItemTreeIconDelegate::image(0).isNull());
    QCOMPARE(ItemTreeIconDelegate::imageCount(), 5);
    QVERIFY(picture(symbol) != picture(page));
    QVERIFY(picture(page) != picture(space));
    for (int index = 0; index < 5; ++index) {
        for (int other = index + 1; other < 5; ++other) {
            QVERIFY2(ItemTreeIconDelegate::image(index).pixmap(16).toImage() !=
                         ItemTreeIconDelegate::image(other).pixmap(16).toImage(),
                     qPrintable(QStringLiteral("%1 %2").arg(index).arg(other)));
        }
    }
}

void tst_maindialog_dialog::emptyTreeDisablesRemoveAddAndCopyAfterASelectionChange()
{
    ExampleHost host(m_standard);
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    QVERIFY(showDialog(dialog));
    ItemListController& list = dialog.itemList();
    const TVNode first = list.addItem(QStringLiteral("A"), {});
    QCOMPARE(enabledControls(dialog, {"14009", "14015", "14017"}),
             (QStringList{"14009", "14015", "14017"}));
    // The user selects the item and removes it: the selection moves to nothing.
    clickNode(*itemTree(dialog), first);
    QVERIFY(clickButton(dialog, "14009"));
    QVERIFY(list.tree().isEmpty());
    QCOMPARE(enabledControls(dialog, {"14009", "14015", "14017"}), QStringList());
}

void tst_maindialog_dialog::addToItemNeedsAComponentAndASelectedNode()
{
    ExampleHost host(m_standard);
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    QVERIFY(showDialog(dialog));
    auto* palette = dialog.findChild<CITreeSimbolosPopup*>("14018");
    QVERIFY(clickButton(dialog, "14012"));
    QPushButton* addToItem = button(dialog, "14025");
    const auto clickEntry = [&](const QString& key, int kind) {
        QTreeWidgetItem* line = palette->findEntry(key, kind);
        if (!line)
            return false;
        palette->scrollToItem(line);
        QTest::mouseClick(palette->viewport(), Qt::LeftButton, {},
                          palette->visualItemRect(line).center());
        return palette->currentItem() == line;
    };
    // No node of the item tree is selected.
    QVERIFY(clickEntry(QStringLiteral("1001"), CEPasta::kComponent));
    QVERIFY(!addToItem->isEnabled());

    ItemListController& list = dialog.itemList();
    list.addItem(QStringLiteral("A"), {});
    QVERIFY(clickEntry(QStringLiteral("1002"), CEPasta::kComponent));
    QVERIFY(addToItem->isEnabled());
    // A folder of the palette.
    QVERIFY(clickEntry(QStringLiteral("9100"), CEPasta::kFolder));
    QVERIFY(!addToItem->isEnabled());
    QVERIFY(clickEntry(QStringLiteral("1003"), CEPasta::kComponent));
    QVERIFY(addToItem->isEnabled());
}

void tst_maindialog_dialog::panelChangesOnlyTheWidth()
{
    ExampleHost host(m_standard);
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    QVERIFY(showDialog(dialog));
    const QRect closed = dialog.geometry();
    const QMap<QString, QRect> before = geometries(dialog);

    QVERIFY(clickButton(dialog, "14012"));
    QVERIFY(dialog.isPanelShown());
    QCOMPARE(dialog.width(), closed.width() + CIInsereAuto::kPanelWidth);
    QCOMPARE(dialog.height(), closed.height());
    QCOMPARE(dialog.geometry().topLeft(), closed.topLeft());
    QCOMPARE(geometries(dialog), before);
    QVERIFY(!button(dialog, "14012")->isEnabled());
    // The panel lies in the added width and shows the standard's palette.
    for (const char* id : {"14018", "14020", "14028", "14025", "14039", "14001"}) {
        const QWidget* control = dialog.findChild<QWidget*>(id);
        QVERIFY2(control->isVisible(), id);
        QVERIFY2(control->geometry().left() >= closed.width() - 1, id);
        QVERIFY2(control->geometry().right() < dialog.width(), id);
    }
    auto* palette = dialog.findChild<CITreeSimbolosPopup*>("14018");
    QVERIFY(palette->findEntry(QStringLiteral("1503")));

    QVERIFY(clickButton(dialog, "14001"));
    QVERIFY(!dialog.isPanelShown());
    QCOMPARE(dialog.geometry(), closed);
    QCOMPARE(geometries(dialog), before);
    QVERIFY(button(dialog, "14012")->isEnabled());
    QVERIFY(!palette->isVisible());
}

void tst_maindialog_dialog::resizingMovesAndStretchesTheControls()
{
    ExampleHost host(m_standard);
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    QVERIFY(showDialog(dialog));
    const QMap<QString, QRect> before = geometries(dialog);
    const int dx = 60;
    const int dy = 45;
    dialog.resize(dialog.size() + QSize(dx, dy));
    QTRY_COMPARE(dialog.size(), dialog.firstSize() + QSize(dx, dy));
    const QMap<QString, QRect> after = geometries(dialog);
    const auto expect = [&](const QString& id, int moveX, int moveY, int growX, int growY) {
        const QRect was = before.value(id);
        const QRect expected(was.x() + moveX, was.y() + moveY, was.width() + growX,
                             was.height() + growY);
        if (after.value(id) == expected)
            return true;
        qWarning("%s: expected %d,%d %dx%d, got %d,%d %dx%d", qPrintable(id), expected.x(),
                 expected.y(), expected.width(), expected.height(), after.value(id).x(),
                 after.value(id).y(), after.value(id).width(), after.value(id).height());
        return false;
    };
    QVERIFY(expect("14016", 0, 0, 0, 0));
    QVERIFY(expect("14013", 0, 0, dx, dy));
    for (const char* id : {"14008", "14007", "230", "231"})
        QVERIFY2(expect(id, 0, dy, 0, 0), id);
    for (const char* id : {"14014", "14017", "14012", "14011", "14010", "14009", "14015", "2",
                           "14025", "14028", "14039", "14001"})
        QVERIFY2(expect(id, dx, dy, 0, 0), id);
    QVERIFY(expect("14020", dx, 0, 0, 0));
    QVERIFY(expect("14018", dx, 0, 0, dy));

    // With the panel open after the change the controls still do not move.
    QVERIFY(clickButton(dialog, "14012"));
    QCOMPARE(geometries(dialog), after);
    // The panel keeps to the right edge of the larger window.
    const QRect palette = dialog.findChild<QWidget*>("14018")->geometry();
    QVERIFY(palette.right() < dialog.width());
    QVERIFY(palette.left() >= dialog.width() - CIInsereAuto::kPanelWidth - 1);
}

void tst_maindialog_dialog::resizingNeverGoesBelowTheFirstSize()
{
    ExampleHost host(m_standard);
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    QVERIFY(showDialog(dialog));
    const QSize first = dialog.firstSize();
    QVERIFY(first.isValid());
    QCOMPARE(dialog.size(), first);
    dialog.resize(first - QSize(100, 100));
    QCOMPARE(dialog.size(), first);

    QVERIFY(clickButton(dialog, "14012"));
    QCOMPARE(dialog.size(), first + QSize(CIInsereAuto::kPanelWidth, 0));
    dialog.resize(first.width() + 10, first.height() - 30);
    QCOMPARE(dialog.size(), first + QSize(CIInsereAuto::kPanelWidth, 0));
    dialog.resize(first.width() + CIInsereAuto::kPanelWidth + 20, first.height() + 20);
    QCOMPARE(dialog.size(), first + QSize(CIInsereAuto::kPanelWidth + 20, 20));

    QVERIFY(clickButton(dialog, "14001"));
    QCOMPARE(dialog.size(), first + QSize(20, 20));
    dialog.resize(first.width() - 50, first.height());
    QCOMPARE(dialog.size(), first);
}

void tst_maindialog_dialog::sizeGripStopsAtTheFirstSize()
{
    ExampleHost host(m_standard);
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    QVERIFY(showDialog(dialog));
    const QSize first = dialog.firstSize();
    auto* grip = dialog.findChild<QSizeGrip*>();
    QVERIFY(grip);
    const QPoint start = grip->rect().center();
    // Dragged outwards, the window follows the grip.
    QTest::mousePress(grip, Qt::LeftButton, {}, start);
    QTest::mouseMove(grip, start + QPoint(40, 30));
    QTest::mouseRelease(grip, Qt::LeftButton, {}, start + QPoint(40, 30));
    QTRY_COMPARE(dialog.size(), first + QSize(40, 30));
    // Dragged far inwards, it stops at the first size.
    const QPoint again = grip->rect().center();
    QTest::mousePress(grip, Qt::LeftButton, {}, again);
    QTest::mouseMove(grip, again - QPoint(300, 300));
    QTest::mouseRelease(grip, Qt::LeftButton, {}, again - QPoint(300, 300));
    QTRY_COMPARE(dialog.size(), first);
}

void tst_maindialog_dialog::loadSettingsCreatesMissingCompanions()
{
    QTemporaryDir dir;
    const QString cfa = dir.filePath(QStringLiteral("new.cfa"));
    const QString cfb = dir.filePath(QStringLiteral("new.cfb"));
    const QString cfc = dir.filePath(QStringLiteral("new.cfc"));
    QVERIFY(writeBytes(cfc, "1503;395,200;0;"));
    CIInsereAuto dialog;
    QCOMPARE(dialog.LoadSettings(cfa), QString());
    QCOMPARE(dialog.settingsPath(), cfa);
    QCOMPARE(dialog.blockFilePath(), cfb);
    QCOMPARE(dialog.symbolFilePath(), cfc);
    // The .cfa itself is neither read nor made; the missing .cfb is made empty and the .cfc
    // keeps what it holds.
    QVERIFY(!QFile::exists(cfa));
    QVERIFY(QFile::exists(cfb));
    QCOMPARE(readBytes(cfb), QByteArray());
    QCOMPARE(readBytes(cfc), QByteArray("1503;395,200;0;"));
}

void tst_maindialog_dialog::loadSettingsReplacesEveryCfa()
{
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("jobs.cfa")));
    const QString cfa = dir.filePath(QStringLiteral("jobs.cfa/a.cfa"));
    CIInsereAuto dialog;
    // The folder's ".cfa" is replaced as well, so the companions lie in folders that do not
    // exist: the dialog says which files it could not make.
    const QString error = dialog.LoadSettings(cfa);
    QCOMPARE(dialog.blockFilePath(), dir.filePath(QStringLiteral("jobs.cfb/a.cfb")));
    QCOMPARE(dialog.symbolFilePath(), dir.filePath(QStringLiteral("jobs.cfc/a.cfc")));
    QVERIFY2(error.contains(dir.filePath(QStringLiteral("jobs.cfb/a.cfb"))), qPrintable(error));
    QVERIFY2(error.contains(dir.filePath(QStringLiteral("jobs.cfc/a.cfc"))), qPrintable(error));
}

void tst_maindialog_dialog::setupReloadsThePathsOnlyOnOk()
{
    const QString savedAs = m_standard.path(QStringLiteral("setup-copy.cfa"));
    ExampleHost host(m_standard, {savedAs});
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    QCOMPARE(dialog.LoadSettings(m_standard.settings()), QString());
    QVERIFY(showDialog(dialog));

    // Closed: nothing changes.
    QString shownPath;
    {
        ModalWatch watch([&](QWidget* modal) {
            if (auto* settings = qobject_cast<CIConfigAuto*>(modal))
                shownPath = settings->settingsPath();
            modal->close();
        });
        QVERIFY(clickButton(dialog, "14008"));
        QVERIFY(watch.opened());
    }
    QCOMPARE(shownPath, m_standard.settings());
    QCOMPARE(dialog.settingsPath(), m_standard.settings());

    // Saved under a new name and confirmed: the dialog takes the new paths.
    {
        ModalWatch watch([&](QWidget* modal) {
            QTest::mouseClick(button(*modal, "1"), Qt::LeftButton);
            static_cast<QDialog*>(modal)->accept();
        });
        QVERIFY(clickButton(dialog, "14008"));
        QVERIFY(watch.opened());
    }
    QCOMPARE(dialog.settingsPath(), savedAs);
    QCOMPARE(dialog.blockFilePath(), m_standard.path(QStringLiteral("setup-copy.cfb")));
    QCOMPARE(dialog.symbolFilePath(), m_standard.path(QStringLiteral("setup-copy.cfc")));
    QCOMPARE(readBytes(savedAs), readBytes(m_standard.settings()));
}

void tst_maindialog_dialog::closeEndsTheModalDialog()
{
    ExampleHost host(m_standard);
    QVERIFY2(host.ok(), qPrintable(host.error()));
    CIInsereAuto dialog;
    dialog.LoadSettings(m_standard.settings());
    bool shown = false;
    ModalWatch watch([&](QWidget* modal) {
        shown = modal == &dialog;
        QTest::mouseClick(button(*modal, "2"), Qt::LeftButton);
    });
    QCOMPARE(dialog.DoModal(), int(QDialog::Rejected));
    QVERIFY(watch.opened());
    QVERIFY(shown);
    QVERIFY(!dialog.isVisible());
}

QTEST_MAIN(tst_maindialog_dialog)
#include "tst_maindialog_dialog.moc"
