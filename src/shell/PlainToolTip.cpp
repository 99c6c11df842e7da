#include "shell/PlainToolTip.h"

#include "tables/SafeText.h"

#include <QWidget>

namespace korvale {

void setPlainToolTip(QWidget& widget, const QString& text) {
    const QString markup = toolTipMarkup(text);
    if (widget.toolTip() != markup) {
        widget.setToolTip(markup);
    }
    if (widget.accessibleDescription() != text) {
        widget.setAccessibleDescription(text);
    }
}

} // namespace korvale
