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

    explicit CellView(QLatin1String identifier = reuseIdentifier) : m_identifier(identifier) {}

    [[nodiscard]] QLatin1String identifier() const { return m_identifier; }

    /// A null text shows nothing.
    void setText(const QString& text);
    /// The text as given, not as drawn.
    [[nodiscard]] const QString& text() const { return m_text; }
    /// The text as drawn: one line, without characters that would reorder or break it.
    [[nodiscard]] const QString& shownText() const { return m_shownText; }

    void setToolTip(const QString& toolTip) { m_toolTip = toolTip; }
    [[nodiscard]] const QString& toolTip() const { return m_toolTip; }

    void setTextColor(const QColor& color) { m_textColor = color; }
    [[nodiscard]] const QColor& textColor() const { return m_textColor; }
    void setBackgroundColor(const QColor& color) { m_backgroundColor = color; }
    [[nodiscard]] const QColor& backgroundColor() const { return m_backgroundColor; }
    void setBordered(bool bordered) { m_bordered = bordered; }
    [[nodiscard]] bool isBordered() const { return m_bordered; }
    void setLineBreakMode(LineBreakMode mode) { m_lineBreakMode = mode; }
    [[nodiscard]] LineBreakMode lineBreakMode() const { return m_lineBreakMode; }

    /// Draws background and text; the painter's font is the table's.
    void draw(QPainter& painter, const QRect& frame, Qt::LayoutDirection direction) const;

private:
    QLatin1String m_identifier;
    QString m_text;
    QString m_shownText;
    QString m_toolTip;
    QColor m_textColor = Qt::black;
    QColor m_backgroundColor = Qt::transparent;
    LineBreakMode m_lineBreakMode = LineBreakMode::Clip;
    bool m_bordered = false;
};

} // namespace korvale
