#include "shell/ElidedLabel.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace korvale {
namespace {

// No screen has room for more; measuring a text of megabytes would hold up the window.
constexpr qsizetype longestPainted = 2000;

/// One line of at most longestPainted characters: the ends of a longer text, without line feeds.
QString paintable(const QString& text) {
    QString line = text.size() <= longestPainted
                       ? text
                       : text.first(longestPainted / 2) + u'…' + text.last(longestPainted / 2);
    std::ranges::replace_if(
        line,
        [](QChar c) {
            return c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
                   c == QChar::ParagraphSeparator;
        },
        u' ');
    return line;
}

} // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

QSize ElidedLabel::sizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    return {metrics.horizontalAdvance(paintable(text())) + 2, metrics.height()};
}

QSize ElidedLabel::minimumSizeHint() const {
    return {0, fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
    if (text().isEmpty()) {
        return;
    }
    QPainter painter(this);
    const QRect place = contentsRect();
    const QString shown =
        fontMetrics().elidedText(paintable(text()), Qt::ElideMiddle, place.width());
    style()->drawItemText(&painter, place, static_cast<int>(alignment()) | Qt::TextSingleLine,
                          palette(), isEnabled(), shown, foregroundRole());
}

} // namespace korvale
