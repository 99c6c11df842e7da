#pragma once

#include <QEvent>
#include <QObject>
#include <QPaintEvent>
#include <QRegion>

namespace korvale {

/// As an event filter: what of a widget was painted.
struct PaintedRegion : QObject {
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            painted += static_cast<QPaintEvent*>(event)->region();
        }
        return false;
    }
    QRegion painted;
};

} // namespace korvale
