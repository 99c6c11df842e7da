#pragma once

#include <QColor>
#include <QLatin1String>
#include <QRect>
#include <QString>

#include <cstdint>

QT_BEGIN_NAMESPACE
class QPainter;
QT_END_NAMESPACE

namespace korvale {

/// What a cell does with text that is too long.
enum class LineBreakMode : std::uint8_t { Clip = 2, TruncateTail = 4 };

/// One drawn cell, used again for other rows and columns. It keeps what it showed until it is told
/// otherwise. Texts are untrusted: they are drawn as plain text on one line.
class CellView {
public:
    static constexpr QLatin1String reuseIdentifier{"__FPView"};

    explicit CellView(QLatin1String identifier = reuseIdentifier) : identifier_(identifier) {}

    [[nodiscard]] QLatin1String identifier() const { return identifier_; }

    /// A null text shows nothing.
    void setText(const QString& text);
    /// The text as given, not as drawn.
    [[nodiscard]] const QString& text() const { return text_; }
    /// The text as drawn: one line, without characters that would reorder or break it.
    [[nodiscard]] const QString& shownText() const { return shownText_; }

    void setToolTip(const QString& toolTip) { toolTip_ = toolTip; }
    [[nodiscard]] const QString& toolTip() const { return toolTip_; }

    void setTextColor(const QColor& color) { textColor_ = color; }
    [[nodiscard]] const QColor& textColor() const { return textColor_; }
    void setBackgroundColor(const QColor& color) { backgroundColor_ = color; }
    [[nodiscard]] const QColor& backgroundColor() const { return backgroundColor_; }
    void setBordered(bool bordered) { bordered_ = bordered; }
    [[nodiscard]] bool isBordered() const { return bordered_; }
    void setLineBreakMode(LineBreakMode mode) { lineBreakMode_ = mode; }
    [[nodiscard]] LineBreakMode lineBreakMode() const { return lineBreakMode_; }

    /// Draws background and text; the painter's font is the table's.
    void draw(QPainter& painter, const QRect& frame, Qt::LayoutDirection direction) const;

private:
    QLatin1String identifier_;
    QString text_;
    QString shownText_;
    QString toolTip_;
    QColor textColor_ = Qt::black;
    QColor backgroundColor_ = Qt::transparent;
    LineBreakMode lineBreakMode_ = LineBreakMode::Clip;
    bool bordered_ = false;
};

} // namespace korvale
