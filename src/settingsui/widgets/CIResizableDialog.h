#pragma once

#include <QDialog>
#include <QPointer>

// A dialog laid out like a dialog template (controls placed in dialog units) that can be
// resized. The size at the first size change becomes the minimum size; on every later change
// each registered control is moved and/or stretched by the difference from that first size.
class CIResizableDialog : public QDialog
{
    Q_OBJECT

public:
    // How a control follows one axis of the size difference.
    enum class Follow { Stay, Move, Grow };

    explicit CIResizableDialog(QWidget* parent = nullptr);

    // Registers a control: `horizontal` applies the width difference, `vertical` the height
    // difference. A control registered after the first size change starts from where it is.
    void AddResizeRule(QWidget* control, Follow horizontal, Follow vertical);

    // The size remembered at the first size change; invalid before it.
    QSize firstSize() const { return m_firstSize; }

    // Dialog units to pixels, from the dialog's font: a horizontal unit is a quarter of the
    // average character width, a vertical unit an eighth of the character height.
    QRect dialogUnits(int x, int y, int width, int height) const;
    int horizontalUnits(int units) const;
    int verticalUnits(int units) const;

protected:
    void placeControl(QWidget* control, int x, int y, int width, int height) const;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Rule
    {
        QPointer<QWidget> control;
        Follow horizontal;
        Follow vertical;
        QRect start;
        QSize differenceAtStart;
        bool started = false;
    };

    QSize currentDifference() const;
    void applyRules();

    QSize m_firstSize;
    QList<Rule> m_rules;
};
