#pragma once

#include "TVNode.h"

#include "host/KVString.h"

#include <QAbstractListModel>
#include <QList>

// The "Symbols selected:" list of the main dialog: one line per symbol added from the palette,
// with the symbol's description as text and the Symbol node as the line's data. A line may
// outlive its node (only the first line with a removed symbol's description is deleted); the
// tree then answers that it has no such node.
class SelectedSymbolList final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        NodeIdRole = Qt::UserRole + 1, // quint64: TVNode::fromId() gives the handle back
    };

    struct Line
    {
        KVString description;
        TVNode node;
        friend bool operator==(const Line&, const Line&) = default;
    };

    explicit SelectedSymbolList(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

    void append(const KVString& description, TVNode node);
    // Deletes the first line whose text equals `description`; false when there is none.
    bool removeFirst(const KVString& description);
    void clear();
    // Points the lines of `from` at `to` (a node re-created elsewhere).
    void replaceNode(TVNode from, TVNode to);

    int count() const { return static_cast<int>(m_lines.size()); }
    Line line(int row) const { return m_lines.value(row); }
    const QList<Line>& lines() const { return m_lines; }

private:
    QList<Line> m_lines;
};
