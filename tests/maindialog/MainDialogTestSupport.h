#pragma once

// Shared pieces of the main dialog's tests: the reference host over the example standard, the
// dialog's controls by identifier, rows of the item tree as points for the mouse, and a probe
// that sees what the screen shows while the module asks the host for data.

#include "ItemTreeTestSupport.h"

#include "ReferenceHost.h"
#include "StandardLoader.h"

#include "host/CVRServices.h"
#include "host/HostBinding.h"
#include "maindialog/CIInsereAuto.h"
#include "maindialog/ItemTreeView.h"
#include "settingsui/DialogTestSupport.h"

#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

namespace MainDialogTest {

inline QString exampleFile(const QString& relative)
{
    return QStringLiteral(KV_SOURCE_DIR "/examples/") + relative;
}

inline QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

inline bool writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// The example standard loaded once into an SQLite file of a temporary folder, with a copy of
// the example settings beside it. Hosts are made over it as a test needs them.
class ExampleStandard
{
public:
    bool load()
    {
        if (!m_dir.isValid()) {
            m_error = QStringLiteral("no temporary folder");
            return false;
        }
        for (const char* extension : {".cfa", ".cfb", ".cfc"}) {
            const QString from = exampleFile(QStringLiteral("settings/example") + extension);
            if (!QFile::copy(from, path(QStringLiteral("example") + extension))) {
                m_error = from + QStringLiteral(": cannot copy");
                return false;
            }
        }
        const RefHost::StandardLoadResult loaded = RefHost::StandardLoader::loadDatabase(
            database(),
            {exampleFile(QStringLiteral("standard/schema.sql")),
             exampleFile(QStringLiteral("standard/data.sql"))},
            false);
        m_error = loaded.error;
        return loaded.ok;
    }

    QString error() const { return m_error; }
    QString path(const QString& relative) const { return m_dir.filePath(relative); }
    QString database() const { return path(QStringLiteral("standard.sqlite")); }
    QString settings() const { return path(QStringLiteral("example.cfa")); }

private:
    QTemporaryDir m_dir;
    QString m_error;
};

// A reference host over the example standard, installed while it lives. Whatever the host
// writes goes to two buffers: the command line (`out`) and messages and the log (`err`).
class ExampleHost
{
public:
    explicit ExampleHost(const ExampleStandard& standard, QStringList fileDialogAnswers = {})
        : m_console(&m_out, &m_err)
    {
        m_out.open(QIODevice::ReadWrite);
        m_err.open(QIODevice::ReadWrite);
        RefHost::HostOptions options;
        options.database = standard.database();
        options.standard = QStringLiteral("IEC");
        options.networkDir = exampleFile(QStringLiteral("network"));
        options.language = QStringLiteral("1");
        options.workingFolder = standard.path(QString());
        options.tempFolder = standard.path(QString());
        options.fileDialogAnswers = std::move(fileDialogAnswers);
        options.console = &m_console;
        RefHost::ReferenceHost::Created created =
            RefHost::ReferenceHost::create(std::move(options));
        m_host = std::move(created.host);
        m_error = created.error;
        if (m_host) {
            m_binding = m_host->untracedBinding();
            m_installed = std::make_unique<ScopedHostBinding>(m_binding);
        }
    }

    bool ok() const { return m_host != nullptr; }
    QString error() const { return m_error; }
    RefHost::ReferenceHost& host() { return *m_host; }
    HostBinding& binding() { return m_binding; }
    // Installs `binding` in place of the host's own (for instance with a probe in it).
    void reinstall(const HostBinding& binding)
    {
        m_installed.reset();
        m_binding = binding;
        m_installed = std::make_unique<ScopedHostBinding>(m_binding);
    }

    QString out() const { return QString::fromUtf8(m_out.data()); }
    QString err() const { return QString::fromUtf8(m_err.data()); }

private:
    QBuffer m_out;
    QBuffer m_err;
    RefHost::Console m_console;
    std::unique_ptr<RefHost::ReferenceHost> m_host;
    QString m_error;
    HostBinding m_binding;
    std::unique_ptr<ScopedHostBinding> m_installed;
};

// The electrical services of another host, with a look at the screen at every query: the
// override cursor and whatever the test wants to know at that moment.
class QueryProbe final : public CVRServices
{
public:
    explicit QueryProbe(CVRServices* inner) : m_inner(inner) {}

    std::function<void()> onQuery;
    // The override cursor's shape at each query; -1 when there was none.
    QList<int> cursors;

    CVRCommandManager* GetCommandManager() override { return m_inner->GetCommandManager(); }
    CVRQueryResponse RunQuery(const std::shared_ptr<CVRQuery>& query) override
    {
        const QCursor* cursor = QGuiApplication::overrideCursor();
        cursors.append(cursor ? int(cursor->shape()) : -1);
        if (onQuery)
            onQuery();
        return m_inner->RunQuery(query);
    }
    KVString GetCurrentLanguage() override { return m_inner->GetCurrentLanguage(); }
    QList<int> GetDescriptionLanguages() override { return m_inner->GetDescriptionLanguages(); }
    KVString GetWorkingFolder() override { return m_inner->GetWorkingFolder(); }
    KVString GetBaseFolder() override { return m_inner->GetBaseFolder(); }
    ILongOperationRunner* GetLongOperationRunner(CFxDocument* document) override
    {
        return m_inner->GetLongOperationRunner(document);
    }
    CVRQueryResponse GetComponentPropertyValue(const KVString& componentKey,
                                               const KVString& propertyName) override
    {
        return m_inner->GetComponentPropertyValue(componentKey, propertyName);
    }
    KVString GetComponentBlockName(const KVString& componentKey, const KVString& standard) override
    {
        return m_inner->GetComponentBlockName(componentKey, standard);
    }

private:
    CVRServices* m_inner;
};

inline QPushButton* button(const QWidget& dialog, const char* id)
{
    return dialog.findChild<QPushButton*>(QString::fromLatin1(id));
}

inline bool clickButton(const QWidget& dialog, const char* id)
{
    QPushButton* pushButton = button(dialog, id);
    if (!pushButton || !pushButton->isVisible() || !pushButton->isEnabled())
        return false;
    QTest::mouseClick(pushButton, Qt::LeftButton);
    return true;
}

inline ItemTreeView* itemTree(const QWidget& dialog)
{
    return dialog.findChild<ItemTreeView*>(QStringLiteral("14013"));
}

inline bool showDialog(QWidget& dialog)
{
    dialog.show();
    dialog.activateWindow();
    return QTest::qWaitForWindowExposed(&dialog);
}

// A point of a node's row: `fraction` 0 is its top line, 1 just below its bottom line.
inline QPoint rowPoint(const ItemTreeView& view, TVNode node, double fraction)
{
    const QRect row = view.nodeRect(node);
    return QPoint(row.left() + 40, row.top() + int(row.height() * fraction));
}

inline void clickNode(ItemTreeView& view, TVNode node)
{
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, rowPoint(view, node, 0.5));
}

// Presses the left button on `node`'s row and moves the mouse just far enough for the tree to
// announce a drag.
inline void startDrag(ItemTreeView& view, TVNode node)
{
    const QPoint start = rowPoint(view, node, 0.5);
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, start);
    QTest::mouseMove(view.viewport(), start + QPoint(0, QApplication::startDragDistance() + 1));
}

// Drags `node` and lets it go at `point` of `target`.
inline void dragAndDrop(ItemTreeView& view, TVNode node, QWidget* target, const QPoint& point)
{
    startDrag(view, node);
    QTest::mouseMove(target, point);
    QTest::mouseRelease(target, Qt::LeftButton, {}, point);
}

// The item texts of the root, in order.
inline QStringList itemTexts(const CTVNodesUtil& tree)
{
    QStringList texts;
    for (const TVNode item : tree.children())
        texts.append(tree.GetText(item));
    return texts;
}

// The root item whose text is `text`, or null.
inline TVNode itemNamed(const CTVNodesUtil& tree, const QString& text)
{
    for (const TVNode item : tree.children()) {
        if (tree.GetText(item) == text)
            return item;
    }
    return {};
}

// Runs `action` on the modal dialog that the next step opens, and tells whether one opened.
// Unlike DialogTest::actOnModal it gives up at once when none is open by the time the event
// loop runs again, so that a dialog that must not open cannot catch a later one.
class ModalWatch
{
public:
    explicit ModalWatch(std::function<void(QWidget*)> action) : m_action(std::move(action))
    {
        QTimer::singleShot(0, &m_context, [this] {
            QWidget* modal = QApplication::activeModalWidget();
            if (!modal)
                return;
            m_opened = true;
            m_action(modal);
            if (modal->isVisible())
                modal->close();
        });
    }
    bool opened() const { return m_opened; }

private:
    QObject m_context;
    std::function<void(QWidget*)> m_action;
    bool m_opened = false;
};

} // namespace MainDialogTest
