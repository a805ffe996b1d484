#include "MainWindow.h"

#include "CommandLineEdit.h"
#include "DesktopHost.h"
#include "HostSettingsDialog.h"
#include "PageView.h"

#include "host/CVRCommand.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSplitter>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace KvHost {

namespace {

// The host's filter notation: the label (translated) with its pattern, then the pattern alone.
QString drawingFilter()
{
    return MainWindow::tr("Drawing (*.dxf)|*.dxf||") + QStringLiteral("&*.dxf&&");
}

// The title the page's title block shows ("PAGE_TITLE"), else the page's own title when it has
// one other than its layer name.
QString pageTitle(const RefHost::Drawing& drawing, const RefHost::Page& page)
{
    for (const RefHost::BlockReference& reference : drawing.references()) {
        if (reference.layer.compare(page.layer, Qt::CaseInsensitive) != 0)
            continue;
        for (const RefHost::AttributeValue& attribute : reference.attributes) {
            if (attribute.tag.compare(QLatin1String("PAGE_TITLE"), Qt::CaseInsensitive) == 0 &&
                !attribute.value.trimmed().isEmpty())
                return attribute.value.trimmed();
        }
    }
    return page.title == page.layer ? QString() : page.title;
}

} // namespace

MainWindow::MainWindow(DesktopHost& host, QWidget* parent) : QMainWindow(parent), m_host(host)
{
    setObjectName(QStringLiteral("KvHostMainWindow"));
    setWindowTitle(QStringLiteral("kvhost"));

    m_pages = new QTreeWidget(this);
    m_pages->setObjectName(QStringLiteral("pages"));
    m_pages->setHeaderLabels({tr("Page"), tr("Title"), tr("Symbols")});
    m_pages->header()->setStretchLastSection(false);
    m_pages->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    m_pages->header()->setSectionResizeMode(1, QHeaderView::Stretch);
    m_pages->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    m_pages->setRootIsDecorated(true);
    m_pages->setMinimumWidth(240);

    m_view = new PageView(this);
    m_view->setObjectName(QStringLiteral("pageView"));

    m_output = new QPlainTextEdit(this);
    m_output->setObjectName(QStringLiteral("output"));
    m_output->setReadOnly(true);
    m_output->setMaximumBlockCount(5000);
    QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    m_output->setFont(mono);
    m_output->setMinimumHeight(90);

    m_commandLine = new CommandLineEdit(this);
    m_commandLine->setObjectName(QStringLiteral("commandLine"));
    m_commandLine->setFont(mono);

    auto* prompt = new QLabel(tr("Command:"), this);
    prompt->setFont(mono);
    auto* commandRow = new QWidget(this);
    auto* commandLayout = new QHBoxLayout(commandRow);
    commandLayout->setContentsMargins(4, 2, 4, 4);
    commandLayout->addWidget(prompt);
    commandLayout->addWidget(m_commandLine, 1);

    auto* bottom = new QWidget(this);
    auto* bottomLayout = new QVBoxLayout(bottom);
    bottomLayout->setContentsMargins(0, 0, 0, 0);
    bottomLayout->setSpacing(0);
    bottomLayout->addWidget(m_output, 1);
    bottomLayout->addWidget(commandRow);

    auto* right = new QSplitter(Qt::Vertical, this);
    right->addWidget(m_view);
    right->addWidget(bottom);
    right->setStretchFactor(0, 4);
    right->setStretchFactor(1, 1);
    right->setSizes({560, 150});

    auto* main = new QSplitter(Qt::Horizontal, this);
    main->addWidget(m_pages);
    main->addWidget(right);
    main->setStretchFactor(1, 1);
    main->setSizes({260, 1000});
    setCentralWidget(main);

    m_pageLabel = new QLabel(this);
    m_connectionLabel = new QLabel(this);
    statusBar()->addWidget(m_pageLabel, 1);
    statusBar()->addPermanentWidget(m_connectionLabel);

    registerHostCommands();
    buildMenus();

    connect(&m_host, &DesktopHost::output, this, &MainWindow::appendOutput);
    connect(&m_host, &DesktopHost::drawingChanged, this, &MainWindow::refreshAll);
    connect(&m_host, &DesktopHost::connectionChanged, this, &MainWindow::refreshState);
    connect(m_commandLine, &CommandLineEdit::commandEntered, this,
            [this](const QString& line) { execute(line); });
    connect(m_pages, &QTreeWidget::currentItemChanged, this,
            [this](QTreeWidgetItem* item, QTreeWidgetItem*) {
                if (m_refreshingPages || !item)
                    return;
                const QString layer = item->data(0, Qt::UserRole).toString();
                if (!layer.isEmpty())
                    m_host.setCurrentPage(layer);
            });

    m_host.setMainWindow(this);
    resize(1280, 820);
    refreshCommands();
    refreshAll();
    if (!m_host.isConnected())
        appendOutput(tr("No standard database: %1\n").arg(m_host.connectionProblem()), true);
    m_commandLine->setFocus();
}

MainWindow::~MainWindow()
{
    for (const QString& name : hostCommandNames())
        m_host.commands().RemoveCommand(name);
    m_host.setMainWindow(nullptr);
}

QStringList MainWindow::hostCommandNames()
{
    return {QStringLiteral("NEW"),      QStringLiteral("OPEN"),     QStringLiteral("SAVE"),
            QStringLiteral("SAVEAS"),   QStringLiteral("UNDO"),     QStringLiteral("REDO"),
            QStringLiteral("NEXTPAGE"), QStringLiteral("PREVPAGE"), QStringLiteral("PAGE"),
            QStringLiteral("ZOOM"),     QStringLiteral("SETTINGS")};
}

void MainWindow::registerHostCommands()
{
    const auto add = [this](const QString& name, std::function<void()> function) {
        m_host.commands().AddCommand(makeNotUndoableFunctionCommand(
            name, [function](CFxCommandContext*) { function(); }, CVRCommand::runTime::Session));
    };
    add(QStringLiteral("NEW"), [this]() { m_host.newDrawing(); });
    add(QStringLiteral("OPEN"), [this]() { openFile(); });
    add(QStringLiteral("SAVE"), [this]() { saveFile(false); });
    add(QStringLiteral("SAVEAS"), [this]() { saveFile(true); });
    add(QStringLiteral("UNDO"), [this]() {
        const QString label = m_host.undoLabel();
        if (m_host.undo())
            appendOutput(tr("Undone: %1\n").arg(label));
        else
            appendOutput(tr("Nothing to undo\n"));
    });
    add(QStringLiteral("REDO"), [this]() {
        const QString label = m_host.redoLabel();
        if (m_host.redo())
            appendOutput(tr("Redone: %1\n").arg(label));
        else
            appendOutput(tr("Nothing to redo\n"));
    });
    add(QStringLiteral("NEXTPAGE"), [this]() {
        if (!m_host.stepPage(1))
            appendOutput(tr("This is the last page\n"));
    });
    add(QStringLiteral("PREVPAGE"), [this]() {
        if (!m_host.stepPage(-1))
            appendOutput(tr("This is the first page\n"));
    });
    add(QStringLiteral("PAGE"), [this]() {
        if (!m_host.setCurrentPage(m_arguments.trimmed()))
            appendOutput(tr("No page \"%1\"; the pages are %2\n")
                             .arg(m_arguments.trimmed(),
                                  m_host.drawing().pageLayers().join(QStringLiteral(", "))),
                         true);
    });
    add(QStringLiteral("ZOOM"), [this]() { zoom(m_arguments); });
    add(QStringLiteral("SETTINGS"), [this]() { editSettings(); });
}

void MainWindow::buildMenus()
{
    const auto command = [this](const QString& name) { return [this, name]() { execute(name); }; };
    QStyle* style = QApplication::style();

    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* newAction = file->addAction(style->standardIcon(QStyle::SP_FileIcon), tr("&New"),
                                         QKeySequence::New, this, command(QStringLiteral("NEW")));
    QAction* openAction =
        file->addAction(style->standardIcon(QStyle::SP_DialogOpenButton), tr("&Open..."),
                        QKeySequence::Open, this, command(QStringLiteral("OPEN")));
    QAction* saveAction =
        file->addAction(style->standardIcon(QStyle::SP_DialogSaveButton), tr("&Save"),
                        QKeySequence::Save, this, command(QStringLiteral("SAVE")));
    file->addAction(tr("Save &As..."), QKeySequence::SaveAs, this,
                    command(QStringLiteral("SAVEAS")));
    file->addSeparator();
    file->addAction(tr("Se&ttings..."), this, command(QStringLiteral("SETTINGS")));
    file->addSeparator();
    file->addAction(tr("&Quit"), QKeySequence::Quit, this, &QWidget::close);

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    m_undo = edit->addAction(style->standardIcon(QStyle::SP_ArrowBack), tr("&Undo"),
                             QKeySequence::Undo, this, command(QStringLiteral("UNDO")));
    m_redo = edit->addAction(style->standardIcon(QStyle::SP_ArrowForward), tr("&Redo"),
                             QKeySequence::Redo, this, command(QStringLiteral("REDO")));

    QMenu* view = menuBar()->addMenu(tr("&View"));
    QAction* previous =
        view->addAction(style->standardIcon(QStyle::SP_MediaSeekBackward), tr("&Previous page"),
                        QKeySequence(Qt::Key_PageUp), this, command(QStringLiteral("PREVPAGE")));
    QAction* next =
        view->addAction(style->standardIcon(QStyle::SP_MediaSeekForward), tr("&Next page"),
                        QKeySequence(Qt::Key_PageDown), this, command(QStringLiteral("NEXTPAGE")));
    view->addSeparator();
    view->addAction(tr("Zoom &in"), QKeySequence::ZoomIn, this, command(QStringLiteral("ZOOM IN")));
    view->addAction(tr("Zoom &out"), QKeySequence::ZoomOut, this,
                    command(QStringLiteral("ZOOM OUT")));
    QAction* extents = view->addAction(style->standardIcon(QStyle::SP_TitleBarMaxButton),
                                       tr("Zoom &extents"), this, command(QStringLiteral("ZOOM")));

    QMenu* insertion = menuBar()->addMenu(tr("&Insertion"));
    QAction* run = insertion->addAction(tr("&Automatic insertion... (VRINSAUTO)"), this,
                                        command(QStringLiteral("VRINSAUTO")));
    QAction* config = insertion->addAction(tr("Insertion &settings... (VRINSAUTOCONFIG)"), this,
                                           command(QStringLiteral("VRINSAUTOCONFIG")));
    m_moduleActions = {run, config};

    QToolBar* bar = addToolBar(tr("Main"));
    bar->setObjectName(QStringLiteral("mainToolBar"));
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->addActions({newAction, openAction, saveAction});
    bar->addSeparator();
    bar->addActions({m_undo, m_redo});
    bar->addSeparator();
    bar->addActions({previous, next, extents});
    bar->addSeparator();
    run->setIcon(style->standardIcon(QStyle::SP_MediaPlay));
    run->setIconText(tr("Insert"));
    config->setIcon(style->standardIcon(QStyle::SP_FileDialogDetailedView));
    config->setIconText(tr("Insertion settings"));
    previous->setIconText(tr("Previous"));
    next->setIconText(tr("Next"));
    extents->setIconText(tr("Extents"));
    bar->addActions({run, config});
}

bool MainWindow::execute(const QString& line)
{
    const QString trimmed = line.trimmed();
    if (trimmed.isEmpty())
        return false;
    if (trimmed.startsWith(QLatin1Char('(')))
        return callFunction(trimmed);
    const QString name = trimmed.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty);
    m_arguments = trimmed.section(QLatin1Char(' '), 1, -1, QString::SectionSkipEmpty);
    appendOutput(tr("Command: %1\n").arg(trimmed.toUpper()));
    if (m_host.isRunningCommand()) {
        appendOutput(tr("A command is running; try again when it has finished\n"), true);
        return false;
    }
    if (!m_host.runCommand(name)) {
        appendOutput(tr("Unknown command \"%1\"\n").arg(name.toUpper()), true);
        return false;
    }
    m_arguments.clear();
    return true;
}

// "(NAME ARG ...)" calls a function that a module registered in the drawing language, as the
// command line of a CAD host does; its result is written below.
bool MainWindow::callFunction(const QString& expression)
{
    appendOutput(tr("Command: %1\n").arg(expression));
    if (!expression.endsWith(QLatin1Char(')'))) {
        appendOutput(tr("Unbalanced parentheses in \"%1\"\n").arg(expression), true);
        return false;
    }
    const QStringList words =
        expression.mid(1, expression.size() - 2).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const QString name = words.value(0);
    if (m_host.isRunningCommand()) {
        appendOutput(tr("A command is running; try again when it has finished\n"), true);
        return false;
    }
    if (!m_host.moduleFunctions().contains(name)) {
        appendOutput(tr("Unknown function \"%1\"\n").arg(name), true);
        return false;
    }
    return m_host.callModuleFunction(name, words.size() - 1);
}

void MainWindow::refreshCommands()
{
    m_commandLine->setCommandNames(m_host.commands().names());
    for (QAction* action : std::as_const(m_moduleActions)) {
        const QString text = action->text();
        const QString name = text.section(QLatin1Char('('), -1).chopped(1);
        action->setEnabled(m_host.commands().find(name) != nullptr);
    }
}

void MainWindow::appendOutput(const QString& text, bool isError)
{
    Q_UNUSED(isError)
    // The pane shows the text as a terminal would: line ends come with the text.
    QTextCursor cursor(m_output->document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(text);
    m_output->verticalScrollBar()->setValue(m_output->verticalScrollBar()->maximum());
}

void MainWindow::refreshAll()
{
    refreshPages();
    m_view->setDrawing(&m_host.drawing());
    m_view->setLayer(m_host.drawing().currentLayer());
    refreshState();
}

void MainWindow::refreshPages()
{
    m_refreshingPages = true;
    m_pages->clear();
    const RefHost::Drawing& drawing = m_host.drawing();
    QHash<QString, int> counts;
    for (const RefHost::BlockReference& reference : drawing.references())
        ++counts[reference.layer.toUpper()];
    QTreeWidgetItem* current = nullptr;
    for (const RefHost::PageGroup& group : drawing.groups()) {
        auto* groupItem = new QTreeWidgetItem(m_pages, {group.name});
        groupItem->setFlags(Qt::ItemIsEnabled);
        QFont bold = groupItem->font(0);
        bold.setBold(true);
        groupItem->setFont(0, bold);
        for (const RefHost::Page& page : group.pages) {
            auto* pageItem = new QTreeWidgetItem(
                groupItem, {page.layer, pageTitle(drawing, page),
                            QString::number(counts.value(page.layer.toUpper()))});
            pageItem->setData(0, Qt::UserRole, page.layer);
            pageItem->setTextAlignment(2, Qt::AlignRight);
            if (page.layer.compare(drawing.currentLayer(), Qt::CaseInsensitive) == 0)
                current = pageItem;
        }
        groupItem->setExpanded(true);
    }
    if (current) {
        m_pages->setCurrentItem(current);
        QFont bold = current->font(0);
        bold.setBold(true);
        current->setFont(0, bold);
        current->setFont(1, bold);
    }
    m_refreshingPages = false;
}

void MainWindow::refreshState()
{
    const RefHost::Drawing& drawing = m_host.drawing();
    const auto [position, count] = drawing.pagePosition(drawing.currentLayer());
    qsizetype references = 0;
    for (const RefHost::BlockReference& reference : drawing.references()) {
        if (reference.layer.compare(drawing.currentLayer(), Qt::CaseInsensitive) == 0)
            ++references;
    }
    m_pageLabel->setText(tr("Page %1 (%2 of %3 in its group), %4 symbols  |  %5 pages, %6 "
                            "symbols in the drawing")
                             .arg(drawing.currentLayer())
                             .arg(position)
                             .arg(count)
                             .arg(references)
                             .arg(drawing.pageLayers().size())
                             .arg(drawing.references().size()));
    const HostSettings& settings = m_host.settings();
    m_connectionLabel->setText(
        m_host.isConnected()
            ? tr("Standard %1 | %2").arg(settings.standard, QFileInfo(settings.database).fileName())
            : tr("No standard database"));
    m_undo->setEnabled(m_host.canUndo());
    m_redo->setEnabled(m_host.canRedo());
    m_undo->setText(m_host.canUndo() ? tr("&Undo %1").arg(m_host.undoLabel()) : tr("&Undo"));
    m_redo->setText(m_host.canRedo() ? tr("&Redo %1").arg(m_host.redoLabel()) : tr("&Redo"));
    const QString name =
        m_host.filePath().isEmpty() ? tr("Untitled") : QFileInfo(m_host.filePath()).fileName();
    setWindowTitle(QStringLiteral("%1%2 - kvhost").arg(name, m_host.isModified() ? "*" : ""));
}

void MainWindow::openFile()
{
    KVString path;
    const QString folder = m_host.filePath().isEmpty() ? m_host.settings().lastFolder
                                                       : QFileInfo(m_host.filePath()).path();
    if (m_host.system().FileDialog(0, path, 0, CFxSystemServices::kOpenExisting, tr("Open drawing"),
                                   {}, drawingFilter(), folder, nullptr, nullptr, nullptr,
                                   0) != KV_RESULT_OK)
        return;
    if (const QString problem = m_host.openDrawing(path); !problem.isEmpty()) {
        report(problem);
        return;
    }
    appendOutput(tr("Opened %1: %2 pages, %3 block references\n")
                     .arg(QString(path))
                     .arg(m_host.drawing().pageLayers().size())
                     .arg(m_host.drawing().references().size()));
}

bool MainWindow::saveFile(bool askForName)
{
    KVString path = m_host.filePath();
    if (askForName || path.isEmpty()) {
        if (m_host.system().FileDialog(0, path, 0, CFxSystemServices::kSaveAs, tr("Save drawing"),
                                       {}, drawingFilter(), m_host.settings().lastFolder, nullptr,
                                       nullptr, nullptr, 0) != KV_RESULT_OK)
            return false;
        if (QFileInfo(path).suffix().isEmpty())
            path += QStringLiteral(".dxf");
    }
    if (const QString problem = m_host.saveDrawing(path); !problem.isEmpty()) {
        report(problem);
        return false;
    }
    appendOutput(tr("Wrote %1: %2 pages, %3 block references\n")
                     .arg(QString(path))
                     .arg(m_host.drawing().pageLayers().size())
                     .arg(m_host.drawing().references().size()));
    return true;
}

void MainWindow::editSettings()
{
    HostSettingsDialog dialog(m_host.settings(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString problem = m_host.applySettings(dialog.settings());
    if (!problem.isEmpty())
        report(problem);
    else
        appendOutput(tr("Connected to %1 (standard %2)\n")
                         .arg(m_host.settings().database, m_host.settings().standard));
}

void MainWindow::zoom(const QString& argument)
{
    const QString word = argument.trimmed().toUpper();
    bool isNumber = false;
    const double factor = word.toDouble(&isNumber);
    if (word.isEmpty() || word == QLatin1String("E") || word == QLatin1String("EXTENTS"))
        m_view->zoomExtents();
    else if (word == QLatin1String("IN"))
        m_view->zoomBy(1.25);
    else if (word == QLatin1String("OUT"))
        m_view->zoomBy(0.8);
    else if (isNumber && factor > 0.0)
        m_view->zoomBy(factor / m_view->zoom());
    else
        appendOutput(tr("ZOOM takes IN, OUT, EXTENTS or a factor, not \"%1\"\n").arg(argument),
                     true);
}

void MainWindow::report(const QString& problem)
{
    m_host.system().ShowMessageBox(MessageKind::Warning, 0, {}, problem);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (m_host.isModified() && !m_host.system().isScripted()) {
        const auto answer = QMessageBox::question(
            this, QStringLiteral("kvhost"), tr("The drawing has changes. Save them?"),
            QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
        if (answer == QMessageBox::Cancel || (answer == QMessageBox::Save && !saveFile(false))) {
            event->ignore();
            return;
        }
    }
    event->accept();
}

} // namespace KvHost
