#include "ListViewEditModel.h"

namespace ListView {

ListViewEditModel::ListViewEditModel(QObject* parent) : QAbstractTableModel(parent) {}

int ListViewEditModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

int ListViewEditModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_titles.size());
}

QVariant ListViewEditModel::data(const QModelIndex& index, int role) const
{
    const ListViewCell* c = cell(index.row(), index.column());
    if (!c || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return c->text.toQString();
    case Qt::ToolTipRole:
        return c->text.isEmpty() ? QVariant() : QVariant(c->text.toQString());
    case KindRole:
        return static_cast<int>(c->kind);
    case ChoicesRole:
        return c->choices.toQStringList();
    default:
        return {};
    }
}

bool ListViewEditModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    const ListViewCell* c = cell(index.row(), index.column());
    if (!c || !c->editable)
        return false;
    const QString text = value.toString();
    if (c->text == text)
        return true;
    if (!setCellText(index.row(), index.column(), text))
        return false;
    emit cellEdited(index.row(), index.column());
    return true;
}

Qt::ItemFlags ListViewEditModel::flags(const QModelIndex& index) const
{
    const ListViewCell* c = cell(index.row(), index.column());
    if (!c)
        return Qt::NoItemFlags;
    Qt::ItemFlags result = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    // A button cell is never typed into: its button chooses the value.
    if (c->editable && c->kind != CellKind::Button)
        result |= Qt::ItemIsEditable;
    return result;
}

QVariant ListViewEditModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
        section >= m_titles.size())
        return {};
    return m_titles.at(section);
}

void ListViewEditModel::appendColumn(const QString& title)
{
    const int column = static_cast<int>(m_titles.size());
    beginInsertColumns({}, column, column);
    m_titles.append(title);
    for (auto& line : m_lines)
        line.append(ListViewCell{});
    endInsertColumns();
}

int ListViewEditModel::appendLine(const QList<ListViewCell>& cells)
{
    QList<ListViewCell> line = cells.mid(0, m_titles.size());
    while (line.size() < m_titles.size())
        line.append(ListViewCell{});
    const int row = static_cast<int>(m_lines.size());
    beginInsertRows({}, row, row);
    m_lines.append(line);
    endInsertRows();
    return row;
}

bool ListViewEditModel::removeLine(int row)
{
    if (row < 0 || row >= m_lines.size())
        return false;
    beginRemoveRows({}, row, row);
    m_lines.removeAt(row);
    endRemoveRows();
    return true;
}

void ListViewEditModel::clearLines()
{
    if (m_lines.isEmpty())
        return;
    beginResetModel();
    m_lines.clear();
    endResetModel();
}

const ListViewCell* ListViewEditModel::cell(int row, int column) const
{
    if (row < 0 || row >= m_lines.size() || column < 0 || column >= m_titles.size())
        return nullptr;
    return &m_lines.at(row).at(column);
}

ListViewCell* ListViewEditModel::mutableCell(int row, int column)
{
    if (row < 0 || row >= m_lines.size() || column < 0 || column >= m_titles.size())
        return nullptr;
    return &m_lines[row][column];
}

bool ListViewEditModel::setCellText(int row, int column, const QString& text)
{
    ListViewCell* c = mutableCell(row, column);
    if (!c)
        return false;
    if (c->kind == CellKind::Choice && !text.isEmpty() && !c->choices.contains(text))
        return false;
    c->text = text;
    notifyCell(row, column);
    return true;
}

bool ListViewEditModel::setCellValue(int row, int column, const QVariant& value)
{
    ListViewCell* c = mutableCell(row, column);
    if (!c)
        return false;
    c->value = value;
    return true;
}

bool ListViewEditModel::setCellEditable(int row, int column, bool editable)
{
    ListViewCell* c = mutableCell(row, column);
    if (!c)
        return false;
    c->editable = editable;
    notifyCell(row, column);
    return true;
}

void ListViewEditModel::notifyCell(int row, int column)
{
    const QModelIndex changed = index(row, column);
    emit dataChanged(changed, changed);
}

} // namespace ListView
