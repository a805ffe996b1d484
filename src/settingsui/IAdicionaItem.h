#pragma once

#include "ItemEditorForm.h"
#include "widgets/CIResizableDialog.h"

#include <optional>

class CTVNodesUtil;
class QLabel;
class QPushButton;

namespace ListView {
class CIListViewPropriedade;
}

// The item editor: the field values of one item of the insertion list, for a new item ("Add
// item") or for the item selected in the tree ("Edit item"). The fields are the field rows of
// the settings file. "Ok" writes the item into the tree given with SetTree (see ItemEditorForm)
// and keeps the answer for editorResult().
class IAdicionaItem final : public CIResizableDialog
{
    Q_OBJECT

public:
    explicit IAdicionaItem(QWidget* parent = nullptr);

    void SetSettingsPath(const KVString& path) { m_settingsPath = path; }
    // The value of the read-only field "ITEM".
    void SetItemName(const KVString& name) { m_itemName = name; }
    // The tree that "Ok" writes into; in edit mode its current item is the item edited and
    // gives the values shown.
    void SetTree(CTVNodesUtil* tree) { m_tree = tree; }
    void SetEditMode(bool editMode) { m_editMode = editMode; }
    // The values of the item edited when no tree is given: texts FIELD=VALUE.
    void SetEditedAttributes(const QStringList& attributes) { m_editedAttributes = attributes; }

    bool editMode() const { return m_editMode; }
    // The answer of the last "Ok".
    const ItemEditorResult& editorResult() const { return m_result; }
    ListView::CIListViewPropriedade* fieldList() const { return m_list; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void OnInitDialog();
    void FillList();
    void OnOk();

    ListView::CIListViewPropriedade* m_list;
    QLabel* m_label;
    QPushButton* m_ok;
    QPushButton* m_cancel;
    KVString m_settingsPath;
    KVString m_itemName;
    CTVNodesUtil* m_tree = nullptr;
    bool m_editMode = false;
    std::optional<QStringList> m_editedAttributes;
    ItemEditorResult m_result;
    bool m_initialised = false;
};
