#pragma once

#include <QToolButton>

namespace korvale {

/// A button that opens a menu: three lines, drawn in the palette's colours at every scale factor.
class MenuButton final : public QToolButton {
    Q_OBJECT

public:
    explicit MenuButton(QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace korvale
