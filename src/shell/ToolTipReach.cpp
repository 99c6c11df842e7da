#include "shell/ToolTipReach.h"

#include <QEvent>
#include <QFocusEvent>
#include <QToolTip>
#include <QWidget>

namespace korvale {
namespace {

bool cameByKey(const QFocusEvent& event) {
    return event.reason() == Qt::TabFocusReason || event.reason() == Qt::BacktabFocusReason;
}

} // namespace

ToolTipReach::ToolTipReach(QWidget& widget) : QObject(&widget), m_widget(widget) {
    widget.installEventFilter(this);
}

void ToolTipReach::show(QWidget& widget) {
    const QPoint below = widget.mapToGlobal(widget.rect().bottomLeft());
    QToolTip::showText(below, widget.toolTip(), &widget);
}

bool ToolTipReach::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::ToolTipChange:
        m_widget.setFocusPolicy(m_widget.toolTip().isEmpty() ? Qt::NoFocus : Qt::TabFocus);
        break;
    case QEvent::FocusIn:
        m_widget.update();
        if (cameByKey(*static_cast<QFocusEvent*>(event))) {
            show(m_widget);
        }
        break;
    case QEvent::FocusOut:
        m_widget.update();
        QToolTip::hideText();
        break;
    case QEvent::MouseButtonRelease:
        show(m_widget);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace korvale
