#pragma once

#include <QLabel>

QT_BEGIN_NAMESPACE
class QTextLayout;
QT_END_NAMESPACE

namespace korvale {

/// A label of plain text on as many lines as it takes, whatever its words: one that is wider than
/// the label, such as a path, is broken anywhere. It can have the focus, shows that, and keeps its
/// text for those who read the window.
class WrappedLabel final : public QLabel {
    Q_OBJECT

public:
    /// `text` is shown as it is.
    explicit WrappedLabel(const QString& text, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int layOut(QTextLayout& layout, int width) const;
};

} // namespace korvale
