#include "shell/PlainToolTip.h"

#include "platform/SafeText.h"

#include <QWidget>

namespace korvale {

void setPlainToolTip(QWidget& widget, const QString& text) {
    const QString markup = toolTipMarkup(text);
    if (widget.toolTip() != markup) {
        widget.setToolTip(markup);
    }
    const QString description = severalLinesText(text);
    if (widget.accessibleDescription() != description) {
        widget.setAccessibleDescription(description);
    }
}

} // namespace korvale
