#pragma once

#include <QLabel>

namespace korvale {

/// A label of one line of plain text that gives way: a text wider than its place is shortened, in
/// the middle unless told, so that a path keeps its beginning and its file name. text() and the
/// accessible name stay whole.
class ElidedLabel final : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    void setElideMode(Qt::TextElideMode mode) { m_elideMode = mode; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Qt::TextElideMode m_elideMode = Qt::ElideMiddle;
};

} // namespace korvale
