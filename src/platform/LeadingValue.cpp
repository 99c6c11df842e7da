#include "platform/LeadingValue.h"

#include "core/base/Blanks.h"
#include "core/base/Digits.h"

#include <algorithm>

namespace korvale {
namespace {

std::string_view withoutBlanks(std::string_view text) {
    const auto* first = std::find_if_not(text.begin(), text.end(), isBlank);
    return text.substr(static_cast<std::size_t>(first - text.begin()));
}

} // namespace

std::uint64_t leadingInteger(std::string_view text) {
    text = withoutBlanks(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::uint64_t value = 0;
    for (const char c : text) {
        if (!isDigit(c)) {
            break;
        }
        value = value * 10 + static_cast<std::uint64_t>(c - '0');
    }
    return negative ? 0 - value : value;
}

bool leadingBoolean(std::string_view text) {
    text = withoutBlanks(text);
    if (text.starts_with('-') || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    const std::size_t first = text.find_first_not_of('0');
    constexpr std::string_view yes = "YyTt123456789";
    return first != std::string_view::npos && yes.find(text[first]) != std::string_view::npos;
}

} // namespace korvale
