#pragma once

#include "shell/PlacedLayout.h"

namespace korvale {

/// Puts its items beside each other, as many as there is room for, and the rest below.
class FlowLayout final : public PlacedLayout {
public:
    explicit FlowLayout(int itemSpacing) : m_spacing(itemSpacing) {}

    /// All items in one row.
    [[nodiscard]] QSize sizeHint() const override;
    /// The widest item alone.
    [[nodiscard]] QSize minimumSize() const override;

private:
    int place(const QRect& rect, bool tried) const override;

    int m_spacing;
};

} // namespace korvale
