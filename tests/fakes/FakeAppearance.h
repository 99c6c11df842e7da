#pragma once

#include "platform/Appearance.h"

#include <utility>

namespace korvale::fakes {

/// An appearance whose entry the test sets; set() notifies, change `entry` for silence.
class FakeAppearance final : public Appearance {
public:
    [[nodiscard]] QVariant interfaceStyle() const override { return entry; }
    void set(QVariant style) {
        entry = std::move(style);
        Q_EMIT interfaceThemeChanged();
    }

    QVariant entry;
};

} // namespace korvale::fakes
