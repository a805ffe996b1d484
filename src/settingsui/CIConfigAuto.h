#pragma once

#include "host/KVString.h"
#include "settings/SettingsWriter.h"
#include "widgets/CIResizableDialog.h"
#include "widgets/ListViewEditListener.h"

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace ListView {
class CIListViewEdit;
}

// The settings dialog: the seven header values, the field list, the symbol list and the block
// list of one settings file, edited in place. "Save" writes the three files under a name chosen
// in the host's file dialog and leaves the dialog open; "Close" drops unsaved edits. Every
// control's object name is its numeric identifier ("14017" for the field list, ...).
class CIConfigAuto final : public CIResizableDialog, public ListView::ListViewEditListener
{
    Q_OBJECT

public:
    explicit CIConfigAuto(QWidget* parent = nullptr);
    ~CIConfigAuto() override;

    // The .cfa path; the .cfb and .cfc paths are formed from it. Set before the dialog opens.
    void SetSettingsPath(const KVString& path);
    KVString settingsPath() const { return m_settingsPath; }
    KVString blockFilePath() const { return m_blockPath; }
    KVString symbolFilePath() const { return m_symbolPath; }

    // What the controls hold now, as the settings writer takes it.
    SettingsDialogContents contents() const;

    // The symbol list's button cell: the symbol chooser (IDlgComps) picks the row's key.
    void OnButtonCell(int row) override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void createControls();
    void layoutControls();
    void OnInitDialog();
    void LoadContents(const SettingsDialogContents& contents);
    void ShowSettingsPath();

    void OnAddField();
    void OnAddBlock();
    void OnAddSymbol();
    static void RemoveMarkedLine(ListView::CIListViewEdit* list);
    void OnSave();

    KVString m_settingsPath;
    KVString m_blockPath;
    KVString m_symbolPath;
    KVString m_blockFolder;
    bool m_initialised = false;

    QGroupBox* m_itemsGroup;
    QLabel* m_fieldListLabel;
    ListView::CIListViewEdit* m_fieldList;
    QPushButton* m_addField;
    QPushButton* m_removeField;
    QGroupBox* m_spacingGroup;
    QLabel* m_previousLabel;
    QLineEdit* m_previous;
    QLabel* m_nextLabel;
    QLineEdit* m_next;
    QLabel* m_separatorLabel;
    QComboBox* m_separator;
    QLabel* m_startPointLabel;
    QLineEdit* m_startPoint;
    QLabel* m_pageSizeLabel;
    QLineEdit* m_pageSize;
    QLabel* m_paginationLabel;
    QComboBox* m_pagination;
    QLabel* m_spaceLabel;
    QLineEdit* m_space;
    QGroupBox* m_symbolsGroup;
    QLabel* m_symbolListLabel;
    ListView::CIListViewEdit* m_symbolList;
    QPushButton* m_addSymbol;
    QPushButton* m_removeSymbol;
    QGroupBox* m_blocksGroup;
    QLabel* m_blockListLabel;
    ListView::CIListViewEdit* m_blockList;
    QPushButton* m_addBlock;
    QPushButton* m_removeBlock;
    QLabel* m_settingsLabel;
    QPushButton* m_save;
    QPushButton* m_close;
};
