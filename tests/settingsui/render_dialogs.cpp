// Renders the settings dialog, the item editor and the symbol chooser, filled with the example
// settings and the example standard, into PNG files: the pictures of the documentation.
//
//     kv_render_dialogs OUT_DIR
//
// The example standard is loaded into a temporary SQLite database and served by the reference
// host; the example settings are copied to a temporary folder first, so nothing in the source
// tree is touched.

#include "ReferenceHost.h"
#include "StandardLoader.h"

#include "maindialog/CTVNodesUtil.h"
#include "settingsui/CIConfigAuto.h"
#include "settingsui/IAdicionaItem.h"
#include "settingsui/IDlgComps.h"
#include "settingsui/widgets/CIListViewEdit.h"
#include "settingsui/widgets/CITreeSimbolosPopup.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPixmap>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

namespace {

const QString kSource = QStringLiteral(KV_SOURCE_DIR);

bool fail(const QString& message)
{
    std::fprintf(stderr, "kv_render_dialogs: %s\n", qPrintable(message));
    return false;
}

bool save(QWidget& window, const QString& path)
{
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        return fail(path + QStringLiteral(": the window was never shown"));
    QTest::qWait(50);
    if (!window.grab().save(path))
        return fail(path + QStringLiteral(": cannot write the picture"));
    std::printf("%s\n", qPrintable(path));
    return true;
}

bool copyExample(const QString& folder)
{
    for (const char* extension : {".cfa", ".cfb", ".cfc"}) {
        const QString from = kSource + QStringLiteral("/examples/settings/example") + extension;
        if (!QFile::copy(from, folder + QStringLiteral("/example") + extension))
            return fail(from + QStringLiteral(": cannot copy the example settings"));
    }
    return true;
}

bool render(const QString& out)
{
    QTemporaryDir work;
    if (!work.isValid() || !copyExample(work.path()))
        return fail(QStringLiteral("cannot prepare a temporary folder"));
    const QString database = work.filePath(QStringLiteral("standard.sqlite"));
    const RefHost::StandardLoadResult loaded = RefHost::StandardLoader::loadDatabase(
        database,
        {kSource + QStringLiteral("/examples/standard/schema.sql"),
         kSource + QStringLiteral("/examples/standard/data.sql")},
        false);
    if (!loaded.ok)
        return fail(loaded.error);

    RefHost::HostOptions options;
    options.database = database;
    options.standard = QStringLiteral("IEC");
    options.networkDir = kSource + QStringLiteral("/examples/network");
    options.language = QStringLiteral("1");
    options.workingFolder = work.path();
    RefHost::ReferenceHost::Created created = RefHost::ReferenceHost::create(std::move(options));
    if (!created.host)
        return fail(created.error);
    const ScopedHostBinding installed(created.host->untracedBinding());
    // A path relative to the temporary folder, so the pictures do not change from run to run.
    if (!QDir::setCurrent(work.path()))
        return fail(work.path() + QStringLiteral(": cannot change to the folder"));
    const QString cfa = QStringLiteral("example.cfa");

    CIConfigAuto settings;
    settings.SetSettingsPath(cfa);
    if (!save(settings, out + QStringLiteral("/settings-dialog.png")))
        return false;

    CTVNodesUtil tree;
    tree.AddItem(
        QStringLiteral("-Q1 - Main circuit breaker"),
        makeAttributeList({QStringLiteral("ITEM=1"), QStringLiteral("TAG=-Q1"),
                           QStringLiteral("DESCRIPTION=Main circuit breaker"),
                           QStringLiteral("TYPE=MCB"), QStringLiteral("MANUFACTURER=NORDWERK"),
                           QStringLiteral("ORDER_NO=NW-MCB3-C16"),
                           QStringLiteral("SECTION=Power supply")}),
        true);
    IAdicionaItem editor;
    editor.SetSettingsPath(cfa);
    editor.SetItemName(QStringLiteral("1"));
    editor.SetTree(&tree);
    editor.SetEditMode(true);
    if (!save(editor, out + QStringLiteral("/item-editor.png")))
        return false;

    IDlgComps chooser;
    chooser.show();
    CITreeSimbolosPopup* symbols = chooser.symbolTree();
    if (QTreeWidgetItem* component = symbols->findEntry(QStringLiteral("1503"))) {
        symbols->setCurrentItem(component);
        symbols->scrollToItem(component);
    }
    return save(chooser, out + QStringLiteral("/symbol-chooser.png"));
}

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.size() != 2) {
        std::fprintf(stderr, "usage: kv_render_dialogs OUT_DIR\n");
        return 2;
    }
    if (!QDir().mkpath(arguments.at(1))) {
        fail(arguments.at(1) + QStringLiteral(": cannot create the folder"));
        return 2;
    }
    return render(QDir(arguments.at(1)).absolutePath()) ? 0 : 1;
}
