#include "shell/PlainToolTip.h"

#include <QTextDocument>
#include <QWidget>

namespace korvale {

QString plainToolTip(const QString& text) {
    if (!Qt::mightBeRichText(text)) {
        return text;
    }
    return QLatin1String("<p style='white-space:pre-wrap'>") + text.toHtmlEscaped() +
           QLatin1String("</p>");
}

void setPlainToolTip(QWidget& widget, const QString& text) {
    widget.setToolTip(plainToolTip(text));
    widget.setAccessibleDescription(text);
}

} // namespace korvale
