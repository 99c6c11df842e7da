#pragma once

#include <QLayout>

#include <memory>
#include <vector>

namespace korvale {

/// Puts its items beside each other, as many as there is room for, and the rest below.
class FlowLayout final : public QLayout {
public:
    explicit FlowLayout(int itemSpacing) : m_spacing(itemSpacing) {}
    ~FlowLayout() override = default;

    void addItem(QLayoutItem* item) override { m_items.emplace_back(item); }
    [[nodiscard]] int count() const override { return static_cast<int>(m_items.size()); }
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    /// All items in one row.
    [[nodiscard]] QSize sizeHint() const override;
    /// The widest item alone.
    [[nodiscard]] QSize minimumSize() const override;
    void setGeometry(const QRect& rect) override;

private:
    /// Places the items unless it is only `tried`; how high that is.
    int place(const QRect& rect, bool tried) const;

    std::vector<std::unique_ptr<QLayoutItem>> m_items;
    int m_spacing;
};

} // namespace korvale
