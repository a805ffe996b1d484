#include "CIListViewPropriedade.h"

#include "host/Translate.h"

namespace ListView {

CIListViewPropriedade::CIListViewPropriedade(QWidget* parent) : CIListViewEdit(parent) {}

void CIListViewPropriedade::InitColumns(int nameWidth, int valueWidth)
{
    AddColumn(kvTr("Field"), nameWidth, CellKind::Text);
    AddColumn(kvTr("Value"), valueWidth, CellKind::Text);
}

int CIListViewPropriedade::AddProperty(const KVString& code, const KVString& name,
                                       const KVString& value, bool editable)
{
    ListViewCell nameCell;
    nameCell.text = name;
    nameCell.value = code.toQString();
    nameCell.editable = false;
    ListViewCell valueCell;
    valueCell.text = value;
    valueCell.editable = editable;
    return AddCells({nameCell, valueCell});
}

KVString CIListViewPropriedade::GetPropertyCode(int row) const
{
    return GetCellValue(row, kNameColumn).toString();
}

bool CIListViewPropriedade::IsPropertyEditable(int row) const
{
    const ListViewCell* cell = cellModel()->cell(row, kValueColumn);
    return cell && cell->editable;
}

} // namespace ListView
