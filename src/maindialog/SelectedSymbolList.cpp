#include "SelectedSymbolList.h"

SelectedSymbolList::SelectedSymbolList(QObject* parent) : QAbstractListModel(parent) {}

int SelectedSymbolList::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant SelectedSymbolList::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Line& line = m_lines.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return QString(line.description);
    case NodeIdRole:
        return line.node.id();
    default:
        return {};
    }
}

QHash<int, QByteArray> SelectedSymbolList::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert(NodeIdRole, "nodeId");
    return names;
}

void SelectedSymbolList::append(const KVString& description, TVNode node)
{
    const int row = count();
    beginInsertRows({}, row, row);
    m_lines.append({description, node});
    endInsertRows();
}

bool SelectedSymbolList::removeFirst(const KVString& description)
{
    for (int row = 0; row < count(); ++row) {
        if (m_lines.at(row).description == description) {
            beginRemoveRows({}, row, row);
            m_lines.removeAt(row);
            endRemoveRows();
            return true;
        }
    }
    return false;
}

void SelectedSymbolList::clear()
{
    if (m_lines.isEmpty())
        return;
    beginResetModel();
    m_lines.clear();
    endResetModel();
}

void SelectedSymbolList::replaceNode(TVNode from, TVNode to)
{
    for (int row = 0; row < count(); ++row) {
        if (m_lines.at(row).node == from) {
            m_lines[row].node = to;
            const QModelIndex changed = index(row);
            emit dataChanged(changed, changed, {NodeIdRole});
        }
    }
}
