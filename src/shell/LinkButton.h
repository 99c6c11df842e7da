#pragma once

#include <QToolButton>

namespace korvale {

/// A button of nothing but its text, for a quiet row: in the palette's link colour, underlined
/// while it is pointed at, or as long as it can be pressed where that colour does not say so. Space
/// and Enter press it.
class LinkButton final : public QToolButton {
    Q_OBJECT

public:
    explicit LinkButton(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

} // namespace korvale
