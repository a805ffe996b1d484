#pragma once

#include <QStyledItemDelegate>

namespace ListView {

// Paints and edits the cells of an editable list by their kind: a combo box for a choice, a
// line edit for text, a line edit with a browse action (also F4) for a file name, and a small
// push button drawn at the right end of file and button cells. The list answers the buttons.
class ListViewEditDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit ListViewEditDelegate(QObject* parent = nullptr);

    // The rectangle of the button drawn in a cell of `cellRect`.
    static QRect buttonRect(const QRect& cellRect);
    static bool hasButton(const QModelIndex& index);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

signals:
    // The button drawn in a file or button cell was clicked.
    void buttonClicked(const QModelIndex& index);
    // Enter was pressed in the editor of `index`, which is about to commit.
    void enterPressed(const QModelIndex& index);

protected:
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    // Commits and closes a file editor, then asks for the browse (buttonClicked).
    void browseInto(QWidget* editor) const;
};

} // namespace ListView
