#pragma once

#include <QString>

#include <optional>
#include <string>

namespace korvale {

/// Appends bytes to `key` whose plain byte order is the order people expect of the texts: no value
/// first, case folded, runs of digits by their number, accents only where all else is equal.
/// Independent of the locale.
void appendSortKey(const std::optional<QString>& text, std::string& key);

} // namespace korvale
