#include "CIListViewEdit.h"

#include "ListViewEditDelegate.h"
#include "ListViewEditListener.h"
#include "host/CFxSystemServices.h"
#include "host/HostTypes.h"
#include "host/Translate.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>

namespace ListView {

namespace {

// The file name without folders and without its last extension, whichever separator the host
// used in the path.
QString baseNameOf(const QString& path)
{
    const qsizetype slash = qMax(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\'));
    QString name = path.mid(slash + 1);
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot > 0)
        name.truncate(dot);
    return name;
}

// Calls beginModal and endModal around a modal window opened for a cell.
class ModalScope final
{
public:
    ModalScope(ListViewEditListener* listener, int row, int column)
        : m_listener(listener), m_row(row), m_column(column)
    {
        if (m_listener)
            m_listener->beginModal(m_row, m_column);
    }
    ~ModalScope()
    {
        if (m_listener)
            m_listener->endModal(m_row, m_column);
    }
    ModalScope(const ModalScope&) = delete;
    ModalScope& operator=(const ModalScope&) = delete;

private:
    ListViewEditListener* m_listener;
    int m_row;
    int m_column;
};

} // namespace

CIListViewEdit::CIListViewEdit(QWidget* parent)
    : QTableView(parent), m_model(new ListViewEditModel(this)),
      m_delegate(new ListViewEditDelegate(this))
{
    setModel(m_model);
    setItemDelegate(m_delegate);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    // Tab leaves the list unless a cell is being edited; then it goes to the next cell.
    setTabKeyNavigation(false);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(false);

    connect(m_model, &ListViewEditModel::cellEdited, this, [this](int row, int column) {
        if (m_listener)
            m_listener->ItemChanged(row, column);
    });
    connect(m_model, &QAbstractItemModel::rowsRemoved, this,
            [this](const QModelIndex&, int first, int last) {
                if (m_selectionMark < first)
                    return;
                setSelectionMark(m_selectionMark <= last ? -1
                                                         : m_selectionMark - (last - first + 1));
            });
    connect(m_model, &QAbstractItemModel::modelReset, this, [this] { setSelectionMark(-1); });
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this](const QItemSelection& selected) {
                if (m_userInput && !selected.isEmpty())
                    setSelectionMark(selected.indexes().first().row());
            });
    connect(m_delegate, &ListViewEditDelegate::buttonClicked, this,
            &CIListViewEdit::onButtonClicked);
    connect(m_delegate, &ListViewEditDelegate::enterPressed, this,
            [this](const QModelIndex& index) {
                if (m_listener)
                    m_listener->OnEnter(index.row(), index.column());
            });
}

CIListViewEdit::~CIListViewEdit() = default;

int CIListViewEdit::AddColumn(const QString& title, int width, CellKind kind,
                              const QStringList& choices)
{
    m_columns.append({kind, choices});
    m_model->appendColumn(title);
    const int column = static_cast<int>(m_columns.size()) - 1;
    setColumnWidth(column, width);
    return column;
}

int CIListViewEdit::GetColumnCount() const
{
    return static_cast<int>(m_columns.size());
}

int CIListViewEdit::AddLine(const QStringList& texts, const KVString& cellName)
{
    QList<ListViewCell> cells;
    for (qsizetype column = 0; column < m_columns.size(); ++column) {
        ListViewCell cell;
        cell.kind = m_columns.at(column).kind;
        cell.choices = m_columns.at(column).choices;
        cell.name = cellName;
        cell.startFolder = m_startFolder;
        const QString text = texts.value(column);
        if (cell.kind != CellKind::Choice || cell.choices.contains(text))
            cell.text = text;
        cells.append(cell);
    }
    return AddCells(cells);
}

int CIListViewEdit::AddCells(const QList<ListViewCell>& cells)
{
    return m_model->appendLine(cells);
}

bool CIListViewEdit::DeleteLine(int row)
{
    return m_model->removeLine(row);
}

void CIListViewEdit::DeleteAllLines()
{
    m_model->clearLines();
}

int CIListViewEdit::GetLineCount() const
{
    return m_model->rowCount();
}

KVString CIListViewEdit::GetCellText(int row, int column) const
{
    const ListViewCell* cell = m_model->cell(row, column);
    return cell ? cell->text : KVString();
}

bool CIListViewEdit::SetCellText(int row, int column, const KVString& text)
{
    return m_model->setCellText(row, column, text);
}

QVariant CIListViewEdit::GetCellValue(int row, int column) const
{
    const ListViewCell* cell = m_model->cell(row, column);
    return cell ? cell->value : QVariant();
}

bool CIListViewEdit::SetCellValue(int row, int column, const QVariant& value)
{
    return m_model->setCellValue(row, column, value);
}

KVString CIListViewEdit::GetCellName(int row, int column) const
{
    const ListViewCell* cell = m_model->cell(row, column);
    return cell ? cell->name : KVString();
}

std::optional<CellKind> CIListViewEdit::GetCellKind(int row, int column) const
{
    const ListViewCell* cell = m_model->cell(row, column);
    return cell ? std::optional<CellKind>(cell->kind) : std::nullopt;
}

int CIListViewEdit::GetChoiceIndex(int row, int column) const
{
    const ListViewCell* cell = m_model->cell(row, column);
    if (!cell || cell->kind != CellKind::Choice || cell->text.isEmpty())
        return -1;
    return static_cast<int>(cell->choices.indexOf(cell->text));
}

bool CIListViewEdit::SetCellEditable(int row, int column, bool editable)
{
    return m_model->setCellEditable(row, column, editable);
}

void CIListViewEdit::commitEdit()
{
    if (!isEditing())
        return;
    QWidget* editor = indexWidget(currentIndex());
    if (!editor) {
        // Delegate editors are not index widgets: the open one is the focused child.
        for (QWidget* focus = QApplication::focusWidget(); focus; focus = focus->parentWidget()) {
            if (focus->parentWidget() == viewport()) {
                editor = focus;
                break;
            }
        }
    }
    if (!editor)
        return;
    commitData(editor);
    closeEditor(editor, QAbstractItemDelegate::NoHint);
}

void CIListViewEdit::setSelectionMark(int row)
{
    if (m_selectionMark == row)
        return;
    m_selectionMark = row;
    emit selectionMarkChanged(row);
}

void CIListViewEdit::pressCellButton(int row, int column)
{
    const ListViewCell* cell = m_model->cell(row, column);
    if (!cell || !cell->editable)
        return;
    if (cell->kind == CellKind::File) {
        if (const std::optional<QString> name = browseFile(row, column))
            m_model->setData(m_model->index(row, column), *name);
    } else if (cell->kind == CellKind::Button) {
        const ModalScope modal(m_listener, row, column);
        if (m_listener)
            m_listener->OnButtonCell(row);
    }
}

void CIListViewEdit::onButtonClicked(const QModelIndex& index)
{
    if (index.isValid())
        pressCellButton(index.row(), index.column());
}

std::optional<QString> CIListViewEdit::browseFile(int row, int column)
{
    CFxSystemServices* system = GetFxSystemServices();
    const ListViewCell* cell = m_model->cell(row, column);
    if (!system || !cell)
        return std::nullopt;
    const KVString filter =
        m_fileFilter.isEmpty() ? KVString(kvTr("All Files (*.*)|*.*||") + "&*.*&&") : m_fileFilter;
    const KVString folder = cell->startFolder;
    KVString path;
    int result = 0;
    {
        const ModalScope modal(m_listener, row, column);
        result = system->FileDialog(0, path, CFxUtils::GetMainWindowId(),
                                    CFxSystemServices::kOpenExisting, {}, {}, filter, folder,
                                    nullptr, nullptr, nullptr, 0);
    }
    if (result != KV_RESULT_OK || path.isEmpty())
        return std::nullopt;
    return m_fileCellText == FileCellText::BaseName ? baseNameOf(path) : QString(path);
}

bool CIListViewEdit::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event)
{
    const ListViewCell* cell = m_model->cell(index.row(), index.column());
    if (cell && cell->kind == CellKind::Button &&
        (trigger == EditKeyPressed || trigger == DoubleClicked)) {
        // A double click on the drawn button was already answered by its first click.
        const auto* mouse = event && event->type() == QEvent::MouseButtonDblClick
                                ? static_cast<QMouseEvent*>(event)
                                : nullptr;
        if (!mouse || !ListViewEditDelegate::buttonRect(visualRect(index))
                           .contains(mouse->position().toPoint()))
            pressCellButton(index.row(), index.column());
        return true;
    }
    return QTableView::edit(index, trigger, event);
}

void CIListViewEdit::mousePressEvent(QMouseEvent* event)
{
    const QScopedValueRollback<bool> user(m_userInput, true);
    QTableView::mousePressEvent(event);
}

void CIListViewEdit::mouseMoveEvent(QMouseEvent* event)
{
    const QScopedValueRollback<bool> user(m_userInput, true);
    QTableView::mouseMoveEvent(event);
}

void CIListViewEdit::keyPressEvent(QKeyEvent* event)
{
    const QScopedValueRollback<bool> user(m_userInput, true);
    const QModelIndex current = currentIndex();
    const ListViewCell* cell = m_model->cell(current.row(), current.column());
    if (cell && state() != EditingState) {
        const int key = event->key();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) &&
            !(event->modifiers() & ~Qt::KeypadModifier)) {
            if (m_listener)
                m_listener->OnEnter(current.row(), current.column());
            edit(current, EditKeyPressed, event);
            event->accept();
            return;
        }
        if (cell->kind == CellKind::File &&
            (key == Qt::Key_F4 || (key == Qt::Key_Down && event->modifiers() == Qt::AltModifier))) {
            pressCellButton(current.row(), current.column());
            event->accept();
            return;
        }
    }
    QTableView::keyPressEvent(event);
}

QModelIndex CIListViewEdit::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    if (action != MoveNext && action != MovePrevious)
        return QTableView::moveCursor(action, modifiers);
    // Tab in an editor walks the cells line by line, skipping the read-only ones, and stops
    // after the last cell.
    const int rows = m_model->rowCount();
    const int columns = m_model->columnCount();
    const int total = rows * columns;
    const QModelIndex current = currentIndex();
    int position = current.isValid() ? current.row() * columns + current.column()
                                     : (action == MoveNext ? -1 : total);
    const int step = action == MoveNext ? 1 : -1;
    for (position += step; position >= 0 && position < total; position += step) {
        const int row = position / columns;
        const int column = position % columns;
        const ListViewCell* cell = m_model->cell(row, column);
        if (cell && cell->editable && !isColumnHidden(column))
            return m_model->index(row, column);
    }
    return {};
}

} // namespace ListView
