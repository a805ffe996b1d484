#pragma once

#include "host/KVString.h"

#include <QAbstractTableModel>
#include <QVariant>

namespace ListView {

// What a cell of an editable list holds and how it is edited.
enum class CellKind : int {
    Choice = 0, // one entry of a list of texts
    Text = 1,   // free text
    File = 3,   // a file name, typed or chosen by browsing from the list's start folder
    Button = 6, // a value chosen by the list's listener when the cell's button is pressed
};

struct ListViewCell
{
    CellKind kind = CellKind::Text;
    // The text shown. For a choice cell the text of the chosen entry (empty when none).
    KVString text;
    // A value kept beside the text (a button cell's chosen value, a property line's code).
    QVariant value;
    // The internal name that the owner gave the cell when it added the line.
    KVString name;
    KVStringList choices;
    bool editable = true;
    // Where browsing starts (file cells): the list's start folder when the line was added.
    KVString startFolder;
};

// The cells of an editable list: a table of ListViewCell with column titles. Edits made
// through setData (by a view) are reported with cellEdited; the owner's own changes are not.
class ListViewEditModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    // Role under which data() answers the CellKind of a cell, as int.
    static constexpr int KindRole = Qt::UserRole + 1;
    // Role under which data() answers a choice cell's entries, as QStringList.
    static constexpr int ChoicesRole = Qt::UserRole + 2;

    explicit ListViewEditModel(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

    void appendColumn(const QString& title);
    int appendLine(const QList<ListViewCell>& cells);
    bool removeLine(int row);
    void clearLines();

    // Null outside the table.
    const ListViewCell* cell(int row, int column) const;
    // Replaces a cell's text without reporting an edit; a choice cell's text must be one of
    // its entries (or empty) to be taken.
    bool setCellText(int row, int column, const QString& text);
    bool setCellValue(int row, int column, const QVariant& value);
    bool setCellEditable(int row, int column, bool editable);

signals:
    void cellEdited(int row, int column);

private:
    ListViewCell* mutableCell(int row, int column);
    void notifyCell(int row, int column);

    QStringList m_titles;
    QList<QList<ListViewCell>> m_lines;
};

} // namespace ListView
