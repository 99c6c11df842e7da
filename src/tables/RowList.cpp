#include "tables/RowList.h"

#include "tables/RowSorter.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace korvale {

RowList::RowList(RowBatchPtr batch) : size_(batch ? batch->size() : 0) {
    if (size_ > 0) {
        batches_.push_back(std::move(batch));
    }
}

RowRef RowList::at(std::size_t row) const {
    return order_.empty() ? RowRef{0, static_cast<std::uint32_t>(row)} : order_[row];
}

std::optional<QString> RowList::text(std::size_t row, RowKey key) const {
    if (row >= size_) {
        return std::nullopt;
    }
    const RowRef ref = at(row);
    return batches_[ref.batch]->text(ref.index, key);
}

void RowList::makeOrderExplicit() {
    if (!order_.empty()) {
        return;
    }
    order_.resize(size_);
    for (std::size_t row = 0; row < size_; ++row) {
        order_[row] = RowRef{0, static_cast<std::uint32_t>(row)};
    }
}

void RowList::prepend(RowBatchPtr batch) {
    if (size_ == 0) {
        *this = RowList(std::move(batch));
        return;
    }
    makeOrderExplicit();
    const std::size_t added = batch->size();
    const auto number = static_cast<std::uint32_t>(batches_.size());
    order_.insert(order_.begin(), added, RowRef{number, 0});
    for (std::size_t row = 0; row < added; ++row) {
        order_[row].index = static_cast<std::uint32_t>(row);
    }
    batches_.push_back(std::move(batch));
    size_ = order_.size();
}

void RowList::truncate(std::size_t count) {
    if (count >= size_) {
        return;
    }
    if (!order_.empty()) {
        order_.resize(count);
    }
    size_ = count;
    dropUnusedBatches();
}

void RowList::dropUnusedBatches() {
    if (size_ == 0) {
        *this = RowList();
        return;
    }
    if (order_.empty()) {
        return; // a single batch, and rows of it are left
    }
    constexpr auto unused = std::numeric_limits<std::uint32_t>::max();
    std::vector<std::uint32_t> renamed(batches_.size(), unused);
    std::vector<RowBatchPtr> kept;
    for (RowRef& ref : order_) {
        if (renamed[ref.batch] == unused) {
            renamed[ref.batch] = static_cast<std::uint32_t>(kept.size());
            kept.push_back(std::move(batches_[ref.batch]));
        }
        ref.batch = renamed[ref.batch];
    }
    batches_ = std::move(kept);
}

void RowList::sort(const SortDescriptors& descriptors) {
    if (descriptors.empty() || size_ < 2) {
        return;
    }
    makeOrderExplicit();
    sortRows(order_, batches_, descriptors);
}

} // namespace korvale
