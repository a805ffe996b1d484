#include "ListViewEditDelegate.h"

#include "ListViewEditModel.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPersistentModelIndex>

namespace ListView {

namespace {

constexpr const char* kIndexProperty = "kvCellIndex";
constexpr const char* kFileEditorProperty = "kvFileEditor";

CellKind kindOf(const QModelIndex& index)
{
    return static_cast<CellKind>(index.data(ListViewEditModel::KindRole).toInt());
}

} // namespace

ListViewEditDelegate::ListViewEditDelegate(QObject* parent) : QStyledItemDelegate(parent) {}

QRect ListViewEditDelegate::buttonRect(const QRect& cellRect)
{
    const int side = qMax(8, cellRect.height() - 2);
    return QRect(cellRect.right() - side, cellRect.top() + 1, side, cellRect.height() - 2);
}

bool ListViewEditDelegate::hasButton(const QModelIndex& index)
{
    const CellKind kind = kindOf(index);
    return index.isValid() && (kind == CellKind::File || kind == CellKind::Button);
}

QWidget* ListViewEditDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                            const QModelIndex& index) const
{
    QWidget* editor = nullptr;
    switch (kindOf(index)) {
    case CellKind::Choice: {
        auto* combo = new QComboBox(parent);
        combo->addItems(index.data(ListViewEditModel::ChoicesRole).toStringList());
        editor = combo;
        break;
    }
    case CellKind::File: {
        auto* line = new QLineEdit(parent);
        line->setProperty(kFileEditorProperty, true);
        QAction* browse =
            line->addAction(QApplication::style()->standardIcon(QStyle::SP_DirOpenIcon),
                            QLineEdit::TrailingPosition);
        browse->setObjectName(QStringLiteral("browse"));
        auto* self = const_cast<ListViewEditDelegate*>(this);
        connect(browse, &QAction::triggered, line, [self, line] { self->browseInto(line); });
        editor = line;
        break;
    }
    case CellKind::Text:
    case CellKind::Button:
        editor = QStyledItemDelegate::createEditor(parent, option, index);
        break;
    }
    if (editor)
        editor->setProperty(kIndexProperty, QVariant::fromValue(QPersistentModelIndex(index)));
    return editor;
}

void ListViewEditDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        combo->setCurrentIndex(combo->findText(index.data(Qt::EditRole).toString()));
        return;
    }
    QStyledItemDelegate::setEditorData(editor, index);
}

void ListViewEditDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                        const QModelIndex& index) const
{
    if (auto* combo = qobject_cast<QComboBox*>(editor)) {
        model->setData(index, combo->currentIndex() < 0 ? QString() : combo->currentText());
        return;
    }
    QStyledItemDelegate::setModelData(editor, model, index);
}

void ListViewEditDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const
{
    if (!hasButton(index)) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem item(option);
    initStyleOption(&item, index);
    const QWidget* widget = option.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    // The background spans the whole cell; the text stops before the button.
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &item, painter, widget);
    const QRect button = buttonRect(option.rect);
    item.rect.setRight(button.left() - 1);
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, widget);

    QStyleOptionButton push;
    push.rect = button;
    push.text = QStringLiteral("...");
    push.state = QStyle::State_Raised;
    if (option.state & QStyle::State_Enabled)
        push.state |= QStyle::State_Enabled;
    push.palette = option.palette;
    push.fontMetrics = option.fontMetrics;
    style->drawControl(QStyle::CE_PushButton, &push, painter, widget);
}

bool ListViewEditDelegate::editorEvent(QEvent* event, QAbstractItemModel* model,
                                       const QStyleOptionViewItem& option, const QModelIndex& index)
{
    if (hasButton(index) && (event->type() == QEvent::MouseButtonRelease ||
                             event->type() == QEvent::MouseButtonDblClick)) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::LeftButton &&
            buttonRect(option.rect).contains(mouse->position().toPoint())) {
            // A double click on the button is its second click, already answered.
            if (event->type() == QEvent::MouseButtonRelease)
                emit buttonClicked(index);
            return true;
        }
    }
    return QStyledItemDelegate::editorEvent(event, model, option, index);
}

bool ListViewEditDelegate::eventFilter(QObject* object, QEvent* event)
{
    auto* editor = qobject_cast<QWidget*>(object);
    if (!editor || event->type() != QEvent::KeyPress)
        return QStyledItemDelegate::eventFilter(object, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    if (editor->property(kFileEditorProperty).toBool() &&
        (key->key() == Qt::Key_F4 ||
         (key->key() == Qt::Key_Down && key->modifiers() == Qt::AltModifier))) {
        browseInto(editor);
        return true;
    }
    const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    const QPersistentModelIndex index =
        editor->property(kIndexProperty).value<QPersistentModelIndex>();
    const bool handled = QStyledItemDelegate::eventFilter(object, event);
    if (!enter)
        return handled;
    if (index.isValid())
        emit enterPressed(index);
    // The commit is on its way; the key must not go on to the dialog, whose default button
    // would otherwise close it before the edit is stored.
    return true;
}

void ListViewEditDelegate::browseInto(QWidget* editor) const
{
    // The typed text is committed and the editor closed first: the file dialog takes the focus
    // away from the editor, and browsing then writes the chosen name into the cell itself.
    const QPersistentModelIndex index =
        editor->property(kIndexProperty).value<QPersistentModelIndex>();
    auto* self = const_cast<ListViewEditDelegate*>(this);
    emit self->commitData(editor);
    emit self->closeEditor(editor, QAbstractItemDelegate::NoHint);
    if (index.isValid())
        emit self->buttonClicked(index);
}

} // namespace ListView
