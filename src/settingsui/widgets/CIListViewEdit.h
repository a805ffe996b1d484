#pragma once

#include "ListViewEditModel.h"
#include "host/KVString.h"

#include <QTableView>

#include <optional>

namespace ListView {

class ListViewEditDelegate;
class ListViewEditListener;

// An editable list: columns with a title, a width and a cell kind, lines of cells edited in
// place. Enter, F2 or a double click edits a cell (a button cell presses its button instead),
// Tab in an editor moves on to the next cell, Escape cancels the edit. File cells browse
// through the host's file dialog from the list's start folder; button cells ask the listener
// for their value. The "selection mark" is the last line the user marked.
class CIListViewEdit : public QTableView
{
    Q_OBJECT

public:
    // What a file cell keeps of the file chosen by browsing.
    enum class FileCellText { FullPath, BaseName };

    explicit CIListViewEdit(QWidget* parent = nullptr);
    ~CIListViewEdit() override;

    void SetListener(ListViewEditListener* listener) { m_listener = listener; }
    ListViewEditListener* listener() const { return m_listener; }

    // Adds a column; the cells of lines added afterwards take its kind and, for a choice
    // column, its entries.
    int AddColumn(const QString& title, int width, CellKind kind, const QStringList& choices = {});
    int GetColumnCount() const;

    // The folder in which browsing starts for the file cells of lines added afterwards.
    void SetStartFolder(const KVString& folder) { m_startFolder = folder; }
    KVString GetStartFolder() const { return m_startFolder; }
    // The filter handed to the host's file dialog, in the host's notation.
    void SetFileFilter(const KVString& filter) { m_fileFilter = filter; }
    void SetFileCellText(FileCellText form) { m_fileCellText = form; }

    // Appends a line with one text per column (missing texts are empty) and returns its row.
    // A choice cell chooses the entry equal to its text, none when there is no such entry.
    // Every cell carries `cellName` as its internal name.
    int AddLine(const QStringList& texts, const KVString& cellName = {});
    bool DeleteLine(int row);
    void DeleteAllLines();
    int GetLineCount() const;

    // The text of a cell (a choice cell: the chosen entry's text); empty outside the table.
    KVString GetCellText(int row, int column) const;
    // Sets a cell's text without reporting it as the user's edit. A choice cell takes only
    // one of its entries, or the empty text for none.
    bool SetCellText(int row, int column, const KVString& text);
    QVariant GetCellValue(int row, int column) const;
    bool SetCellValue(int row, int column, const QVariant& value);
    KVString GetCellName(int row, int column) const;
    std::optional<CellKind> GetCellKind(int row, int column) const;
    // The chosen entry of a choice cell, -1 when none (or not a choice cell).
    int GetChoiceIndex(int row, int column) const;
    bool SetCellEditable(int row, int column, bool editable);

    // The last line the user marked, -1 when none (or when that line was deleted).
    int GetSelectionMark() const { return m_selectionMark; }

    // True while a cell's editor is open.
    bool isEditing() const { return state() == EditingState; }
    // Stores and closes an open editor, as leaving the cell does.
    void commitEdit();

    // Presses the button of a file or button cell, as a click on it does.
    void pressCellButton(int row, int column);

    ListViewEditModel* cellModel() const { return m_model; }

signals:
    void selectionMarkChanged(int row);

protected:
    // Appends a line of ready-made cells (for lists with cells of mixed kinds).
    int AddCells(const QList<ListViewCell>& cells);

    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

private:
    struct Column
    {
        CellKind kind;
        QStringList choices;
    };

    void setSelectionMark(int row);
    std::optional<QString> browseFile(int row, int column);
    void onButtonClicked(const QModelIndex& index);

    ListViewEditModel* m_model;
    ListViewEditDelegate* m_delegate;
    ListViewEditListener* m_listener = nullptr;
    QList<Column> m_columns;
    KVString m_startFolder;
    KVString m_fileFilter;
    FileCellText m_fileCellText = FileCellText::FullPath;
    int m_selectionMark = -1;
    // Set while a key or mouse event of the user is handled: only then does a selection
    // change move the selection mark.
    bool m_userInput = false;
};

} // namespace ListView
