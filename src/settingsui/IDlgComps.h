#pragma once

#include "host/KVString.h"
#include "widgets/CIResizableDialog.h"

class CEPasta;
class CITreeSimbolosPopup;
class QLabel;
class QPushButton;

// The symbol chooser: the palette of the standard selected in the host's palette, from which
// the user picks one component for a row of the settings dialog's symbol list. It answers the
// key of the last component selected, whichever button closed it.
class IDlgComps final : public CIResizableDialog
{
    Q_OBJECT

public:
    explicit IDlgComps(QWidget* parent = nullptr);

    // Clears the chosen key, runs the dialog modally and returns the chosen key: empty when no
    // component was ever selected. The dialog's own result is not looked at.
    KVString Run();
    KVString chosenKey() const { return m_chosenKey; }

    CITreeSimbolosPopup* symbolTree() const { return m_tree; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    void OnInitDialog();
    void OnSelectionChanged(const CEPasta* entry);

    CITreeSimbolosPopup* m_tree;
    QLabel* m_label;
    QPushButton* m_add;
    QPushButton* m_cancel;
    KVString m_chosenKey;
    bool m_initialised = false;
};
