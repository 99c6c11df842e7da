#include "shell/MarkedAction.h"

#include <QActionEvent>

namespace korvale {

MarkedAction::MarkedAction(QObject* parent) : QAction(parent) {
    setCheckable(true);
    // The toolkit has turned the mark before it says so.
    connect(this, &QAction::toggled, this, [this] { setChecked(m_mark); });
}

void MarkedAction::setMark(bool isOn) {
    m_mark = isOn;
    setChecked(isOn);
}

void MarkedMenu::actionEvent(QActionEvent* event) {
    const auto* action = qobject_cast<const MarkedAction*>(event->action());
    const bool isPassing = event->type() == QEvent::ActionChanged && action != nullptr &&
                           action->isChecked() != action->mark();
    if (!isPassing) {
        QMenu::actionEvent(event);
    }
}

} // namespace korvale
