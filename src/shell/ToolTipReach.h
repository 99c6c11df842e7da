#pragma once

#include <QObject>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace korvale {

/// Shows the tooltip of a widget to those who cannot hover: when Tab comes to it, and when it is
/// clicked on or touched. Takes Tab only while there is a tooltip.
class ToolTipReach final : public QObject {
    Q_OBJECT

public:
    /// Belongs to `widget`, which otherwise takes no focus.
    explicit ToolTipReach(QWidget& widget);

    /// Shows the tooltip of `widget` below it; nothing without one.
    static void show(QWidget& widget);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& m_widget;
};

} // namespace korvale
