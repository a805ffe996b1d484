#pragma once

#include <QMainWindow>

class QAction;
class QLabel;
class QPlainTextEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace KvHost {

class CommandLineEdit;
class DesktopHost;
class PageView;

// The desktop host's window: page groups and pages on the left, the current page in the middle,
// the command-line output under it and the command line at the bottom. The host's own commands
// (NEW, OPEN, SAVE, SAVEAS, UNDO, REDO, NEXTPAGE, PREVPAGE, PAGE, ZOOM,
// SETTINGS) live in the same
// command manager as the module's, so the command line, the menus and the completion list treat
// them alike.
class MainWindow final : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(DesktopHost& host, QWidget* parent = nullptr);
    ~MainWindow() override;

    // Runs one command line ("ZOOM 2", "VRINSAUTO", or "(kvGetTempDir)" for a function a
    // module registered); false when the command or function is unknown or failed.
    bool execute(const QString& line);

    CommandLineEdit* commandLine() const { return m_commandLine; }
    QPlainTextEdit* outputPane() const { return m_output; }
    QTreeWidget* pageTree() const { return m_pages; }
    PageView* pageView() const { return m_view; }

    // Refreshes the command list (after the module registered its commands).
    void refreshCommands();
    // Adds a line to the command-line pane.
    void appendOutput(const QString& text, bool isError = false);

    static QStringList hostCommandNames();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    bool callFunction(const QString& expression);
    void registerHostCommands();
    void buildMenus();
    void refreshAll();
    void refreshPages();
    void refreshState();
    void openFile();
    bool saveFile(bool askForName);
    void editSettings();
    void zoom(const QString& argument);
    void report(const QString& problem);

    DesktopHost& m_host;
    PageView* m_view = nullptr;
    QTreeWidget* m_pages = nullptr;
    QPlainTextEdit* m_output = nullptr;
    CommandLineEdit* m_commandLine = nullptr;
    QLabel* m_pageLabel = nullptr;
    QLabel* m_connectionLabel = nullptr;
    QAction* m_undo = nullptr;
    QAction* m_redo = nullptr;
    QList<QAction*> m_moduleActions;
    QString m_arguments; // of the command being run
    bool m_refreshingPages = false;
};

} // namespace KvHost
