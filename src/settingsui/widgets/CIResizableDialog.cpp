#include "CIResizableDialog.h"

#include <QFontMetricsF>
#include <QResizeEvent>

#include <cmath>

namespace {

int follow(CIResizableDialog::Follow how, int start, int difference, bool isSize)
{
    switch (how) {
    case CIResizableDialog::Follow::Stay:
        return start;
    case CIResizableDialog::Follow::Move:
        return isSize ? start : start + difference;
    case CIResizableDialog::Follow::Grow:
        return isSize ? start + difference : start;
    }
    return start;
}

} // namespace

CIResizableDialog::CIResizableDialog(QWidget* parent) : QDialog(parent)
{
    setSizeGripEnabled(true);
}

void CIResizableDialog::AddResizeRule(QWidget* control, Follow horizontal, Follow vertical)
{
    if (!control)
        return;
    Rule rule{control, horizontal, vertical, {}, {}, false};
    if (m_firstSize.isValid()) {
        rule.start = control->geometry();
        rule.differenceAtStart = currentDifference();
        rule.started = true;
    }
    m_rules.append(rule);
}

QSize CIResizableDialog::currentDifference() const
{
    return m_firstSize.isValid() ? size() - m_firstSize : QSize(0, 0);
}

int CIResizableDialog::horizontalUnits(int units) const
{
    // The average width of the Latin letters, as dialog templates measure it.
    const QFontMetricsF metrics(font());
    const qreal average = metrics.horizontalAdvance(QStringLiteral(
                              "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz")) /
                          52.0;
    return static_cast<int>(std::lround(units * average / 4.0));
}

int CIResizableDialog::verticalUnits(int units) const
{
    const QFontMetricsF metrics(font());
    return static_cast<int>(std::lround(units * metrics.height() / 8.0));
}

QRect CIResizableDialog::dialogUnits(int x, int y, int width, int height) const
{
    return QRect(horizontalUnits(x), verticalUnits(y), horizontalUnits(width),
                 verticalUnits(height));
}

void CIResizableDialog::placeControl(QWidget* control, int x, int y, int width, int height) const
{
    control->setGeometry(dialogUnits(x, y, width, height));
}

void CIResizableDialog::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    if (!m_firstSize.isValid()) {
        m_firstSize = event->size();
        setMinimumSize(m_firstSize);
        for (Rule& rule : m_rules) {
            if (rule.control && !rule.started) {
                rule.start = rule.control->geometry();
                rule.differenceAtStart = QSize(0, 0);
                rule.started = true;
            }
        }
        return;
    }
    applyRules();
}

void CIResizableDialog::applyRules()
{
    const QSize difference = currentDifference();
    for (const Rule& rule : std::as_const(m_rules)) {
        if (!rule.control || !rule.started)
            continue;
        const int dx = difference.width() - rule.differenceAtStart.width();
        const int dy = difference.height() - rule.differenceAtStart.height();
        const QRect& start = rule.start;
        rule.control->setGeometry(follow(rule.horizontal, start.x(), dx, false),
                                  follow(rule.vertical, start.y(), dy, false),
                                  follow(rule.horizontal, start.width(), dx, true),
                                  follow(rule.vertical, start.height(), dy, true));
    }
}
