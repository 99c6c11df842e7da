#pragma once

#include <QRectF>
#include <QString>

#include <cstdint>
#include <optional>

QT_BEGIN_NAMESPACE
class QFontMetrics;
class QPainter;
QT_END_NAMESPACE

namespace korvale {

/// Draws one column title: a grey gradient with a line below. The painter's font is the header's.
class CustHeaderCell {
public:
    explicit CustHeaderCell(QString title = {}) : m_title(std::move(title)) {}

    [[nodiscard]] const QString& title() const { return m_title; }
    /// The small arrow of a sorted column; no value: not sorted by.
    void setSortIndicator(std::optional<bool> ascending) { m_sortAscending = ascending; }
    [[nodiscard]] std::optional<bool> sortIndicator() const { return m_sortAscending; }

    /// The order in words, empty without one.
    [[nodiscard]] QString sortOrderText() const;
    /// Width of a column that shows the whole title, sorted or not, in a header of that font.
    [[nodiscard]] int fittingWidth(const QFontMetrics& metrics) const;

    /// Not highlighted.
    void drawWithFrame(QPainter& painter, const QRectF& frame) const;
    void drawWithFrame(QPainter& painter, const QRectF& frame, bool highlighted) const;

    /// Where the gradient goes inside `frame`.
    [[nodiscard]] static QRectF gradientFrame(const QRectF& frame);
    /// Where the title goes inside `frame`.
    [[nodiscard]] static QRectF interiorFrame(const QRectF& frame);

private:
    void drawInterior(QPainter& painter, const QRectF& frame) const;

    QString m_title;
    std::optional<bool> m_sortAscending;
};

} // namespace korvale
