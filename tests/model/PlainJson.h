#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace korvale {

/// JSON read the plain way, as the reference that the program's parser is held against: one
/// character after the other into a tree of strings, sharing no code with it.
struct PlainJson {
    enum class Kind { Null, False, True, Number, Text, List, Object };

    Kind kind = Kind::Null;
    std::string text;     ///< of a text; of a number its canonical spelling, digits "e" exponent
    std::string spelling; ///< of a number, as it was found
    std::vector<PlainJson> elements;
    std::vector<std::pair<std::string, PlainJson>> members; ///< no name twice, the last one counts

    [[nodiscard]] const PlainJson* find(std::string_view name) const;
    /// The same text for equal values, whatever the order of members.
    [[nodiscard]] std::string canonical() const;
    /// As a formatted text shows the value.
    [[nodiscard]] std::string shown() const;

private:
    [[nodiscard]] std::string compact() const;
};

[[nodiscard]] std::optional<PlainJson> parsePlainJson(std::string_view text);

} // namespace korvale
