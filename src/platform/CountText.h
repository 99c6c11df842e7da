#pragma once

#include <QString>

#include <cstdint>

namespace korvale {

/// A number for people to read: with the separators of the user's locale, "1,034"; in locales
/// without any (C) as in English.
[[nodiscard]] QString countText(std::int64_t count);

} // namespace korvale
