#pragma once

#include "CIListViewEdit.h"

namespace ListView {

// A property list: one line per property, with the columns "Field" (the name, read-only) and
// "Value" (free text, editable where the line allows it). Each line also carries a code that
// is not shown.
class CIListViewPropriedade final : public CIListViewEdit
{
    Q_OBJECT

public:
    explicit CIListViewPropriedade(QWidget* parent = nullptr);

    // Adds the two columns, with their titles translated now.
    void InitColumns(int nameWidth, int valueWidth);

    int AddProperty(const KVString& code, const KVString& name, const KVString& value,
                    bool editable);
    int GetPropertyCount() const { return GetLineCount(); }
    KVString GetPropertyCode(int row) const;
    KVString GetPropertyName(int row) const { return GetCellText(row, kNameColumn); }
    KVString GetPropertyValue(int row) const { return GetCellText(row, kValueColumn); }
    bool IsPropertyEditable(int row) const;

    static constexpr int kNameColumn = 0;
    static constexpr int kValueColumn = 1;
};

} // namespace ListView
