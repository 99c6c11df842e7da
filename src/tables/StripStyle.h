#pragma once

#include <QProxyStyle>

namespace korvale {

/// Keeps room between the tabs and the pages of a tab view.
class StripStyle final : public QProxyStyle {
    Q_OBJECT

public:
    /// In device-independent pixels.
    void setHeight(int height) { m_height = height; }
    [[nodiscard]] int height() const { return m_height; }

    [[nodiscard]] QRect subElementRect(SubElement element, const QStyleOption* option,
                                       const QWidget* widget) const override {
        const QRect rect = QProxyStyle::subElementRect(element, option, widget);
        return element == SE_TabWidgetTabContents ? rect.adjusted(0, m_height, 0, 0) : rect;
    }

private:
    int m_height = 0;
};

} // namespace korvale
