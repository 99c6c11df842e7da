#pragma once

#include <QLayout>

#include <memory>
#include <vector>

namespace korvale {

/// A layout that places its items by a rule of its own, which may need more height in less width.
/// Where an item stands follows from the width and from what the items want, never from where they
/// stood before: there is nothing that could flicker.
class PlacedLayout : public QLayout {
public:
    ~PlacedLayout() override;

    void addItem(QLayoutItem* item) override { m_items.emplace_back(item); }
    [[nodiscard]] int count() const override { return static_cast<int>(m_items.size()); }
    [[nodiscard]] QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    void setGeometry(const QRect& rect) override;

protected:
    PlacedLayout() = default;

    /// Places the items unless it is only `tried`; how high that is.
    virtual int place(const QRect& rect, bool tried) const = 0;
    /// Gives the item a place that was found from left to right.
    void put(QLayoutItem& item, const QRect& rect, const QRect& place) const;

    std::vector<std::unique_ptr<QLayoutItem>> m_items;
};

} // namespace korvale
