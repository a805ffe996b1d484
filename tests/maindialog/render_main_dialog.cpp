// Renders the main dialog with the example workbook imported, without and with the symbol
// panel, into PNG files: the pictures of the documentation.
//
//     kv_render_main_dialog OUT_DIR
//
// The example standard is loaded into a temporary SQLite database and served by the reference
// host, which answers the import's file dialog with the example workbook; the example settings
// are copied to the temporary folder first, so nothing in the source tree is touched.

#include "MainDialogTestSupport.h"

#include "settingsui/widgets/CITreeSimbolosPopup.h"

#include <QDir>

#include <cstdio>

using namespace MainDialogTest;

namespace {

bool fail(const QString& message)
{
    std::fprintf(stderr, "kv_render_main_dialog: %s\n", qPrintable(message));
    return false;
}

bool save(QWidget& window, const QString& path)
{
    QTest::qWait(100);
    if (!window.grab().save(path))
        return fail(path + QStringLiteral(": cannot write the picture"));
    std::printf("%s\n", qPrintable(path));
    return true;
}

bool render(const QString& out)
{
    ExampleStandard standard;
    if (!standard.load())
        return fail(standard.error());
    ExampleHost host(standard, {exampleFile(QStringLiteral("sheets/example.xlsx"))});
    if (!host.ok())
        return fail(host.error());

    CIInsereAuto dialog;
    dialog.LoadSettings(standard.settings());
    dialog.show();
    if (!QTest::qWaitForWindowExposed(&dialog))
        return fail(QStringLiteral("the dialog was never shown"));
    if (!clickButton(dialog, "14007"))
        return fail(QStringLiteral("the import button cannot be pressed"));
    CTVNodesUtil& tree = dialog.itemList().tree();
    if (tree.childCount() != 18)
        return fail(QStringLiteral("the import gave %1 items, not 18").arg(tree.childCount()));

    // A few items open, so that symbols, pages and spaces show; one item added by hand without
    // a symbol yet.
    for (const char* name :
         {"-T1 - Control power supply 24 V DC", "-K1 - Pump contactor", "-S0 - Emergency stop"})
        tree.setExpanded(itemNamed(tree, QString::fromLatin1(name)), true);
    dialog.itemList().addItem(QStringLiteral("-X3 - Spare terminals"),
                              {QStringLiteral("ITEM=19"), QStringLiteral("TAG=-X3"),
                               QStringLiteral("DESCRIPTION=Spare terminals")});
    const TVNode selected = itemNamed(tree, QStringLiteral("-K1 - Pump contactor"));
    tree.selectNode(selected);
    ItemTreeView* view = itemTree(dialog);
    view->scrollTo(tree.indexOf(tree.firstChild()));
    if (!save(dialog, out + QStringLiteral("/main-dialog.png")))
        return false;

    // The panel open, with a terminal of the palette added to the spare item.
    tree.selectNode(itemNamed(tree, QStringLiteral("-X3 - Spare terminals")));
    if (!clickButton(dialog, "14012"))
        return fail(QStringLiteral("the symbol panel cannot be opened"));
    auto* palette = dialog.findChild<CITreeSimbolosPopup*>(QStringLiteral("14018"));
    QTreeWidgetItem* terminal = palette->findEntry(QStringLiteral("1502"));
    if (!terminal)
        return fail(QStringLiteral("the palette has no component 1502"));
    palette->scrollToItem(terminal);
    QTest::mouseClick(palette->viewport(), Qt::LeftButton, {},
                      palette->visualItemRect(terminal).center());
    if (!clickButton(dialog, "14025"))
        return fail(QStringLiteral("the add-to-item button cannot be pressed"));
    view->scrollTo(tree.indexOf(tree.current()));
    return save(dialog, out + QStringLiteral("/main-dialog-panel.png"));
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.size() != 2) {
        std::fprintf(stderr, "usage: kv_render_main_dialog OUT_DIR\n");
        return 2;
    }
    if (!QDir().mkpath(arguments.at(1))) {
        fail(arguments.at(1) + QStringLiteral(": cannot create the folder"));
        return 2;
    }
    return render(QDir(arguments.at(1)).absolutePath()) ? 0 : 1;
}
