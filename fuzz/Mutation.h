#pragma once

#include <random>
#include <span>
#include <string>
#include <string_view>

namespace korvale::fuzz {

using Random = std::mt19937_64;

/// How a character of a text can also be written.
enum class Spelling { AsItIs, JsonEscape, PercentEscape, Backslash };

/// What the inputs of a target are made of.
struct Grammar {
    std::string_view separators; ///< each is a token of its own; others run up to the next one
    char assign = '=';           ///< stands behind a name and in front of its value
    Spelling spelling = Spelling::AsItIs;
    std::span<const std::string_view> words; ///< tokens, and whole pieces, that matter to it
};

/// JSON with the members of the agent's files and replies, and the values that have hurt readers.
extern const Grammar json;
/// "key=value" lines under titles: settings, desktop entries.
extern const Grammar assignments;
/// D-Bus server addresses.
extern const Grammar addresses;

/// `text` with one or a few things changed: a token spelled otherwise, doubled, dropped, moved or
/// replaced, a member said twice, something nested deep, a byte damaged, the end cut off.
[[nodiscard]] std::string mutated(const Grammar& grammar, std::string_view text, Random& random);

} // namespace korvale::fuzz
