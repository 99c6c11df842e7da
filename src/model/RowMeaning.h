#pragma once

#include <QStringView>

#include <span>

namespace korvale {

/// What a category means and what a person can do about it, as keys of texts.
struct RowMeaning {
    QStringView name; ///< what rows have under RowKey::Meaning
    const char* meansKey;
    const char* doKey;
};

[[nodiscard]] std::span<const RowMeaning> rowMeanings();

/// The meaning of that name; that of an unknown state for any other.
[[nodiscard]] const RowMeaning& rowMeaning(QStringView name);

} // namespace korvale
