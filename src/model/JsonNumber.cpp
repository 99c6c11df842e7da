#include "model/JsonNumber.h"

#include "core/base/Digits.h"

#include <QLocale>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace korvale {

namespace {

/// Far beyond what a file of at most 256 MiB can move an exponent by with its digits.
constexpr std::int64_t exponentLimit = std::int64_t{1} << 40;

std::int64_t exponentPart(std::string_view text) {
    const bool negative = text.starts_with('-');
    std::int64_t value = 0;
    for (const char c : text) {
        if (isDigit(c)) {
            value = std::min(exponentLimit, value * 10 + (c - '0'));
        }
    }
    return negative ? -value : value;
}

} // namespace

CanonicalNumber canonicalNumber(std::string_view spelling) {
    CanonicalNumber number;
    if (spelling.starts_with('-')) {
        number.negative = true;
        spelling.remove_prefix(1);
    }
    const std::size_t e = spelling.find_first_of("eE");
    if (e != std::string_view::npos) {
        number.exponent = exponentPart(spelling.substr(e + 1));
        spelling = spelling.substr(0, e);
    }
    const std::size_t point = spelling.find('.');
    number.digits = spelling.substr(0, point);
    if (point != std::string_view::npos) {
        const std::string_view fraction = spelling.substr(point + 1);
        number.digits += fraction;
        number.exponent -= static_cast<std::int64_t>(fraction.size());
    }
    number.digits.erase(0, number.digits.find_first_not_of('0'));
    if (number.digits.empty()) {
        return {};
    }
    const std::size_t last = number.digits.find_last_not_of('0');
    number.exponent += static_cast<std::int64_t>(number.digits.size() - 1 - last);
    number.digits.resize(last + 1);
    return number;
}

std::uint64_t numberToBits(std::string_view spelling) {
    std::int64_t small = 0;
    const char* end = spelling.data() + spelling.size();
    if (const auto [stop, error] = std::from_chars(spelling.data(), end, small);
        error == std::errc{} && stop == end) {
        return static_cast<std::uint64_t>(small);
    }
    const CanonicalNumber number = canonicalNumber(spelling);
    const auto count = static_cast<std::int64_t>(number.digits.size());
    const std::int64_t whole = std::clamp<std::int64_t>(count + number.exponent, 0, count);
    std::uint64_t bits = 0;
    for (const char c :
         std::string_view(number.digits).substr(0, static_cast<std::size_t>(whole))) {
        bits = bits * 10 + static_cast<std::uint64_t>(c - '0');
    }
    // From the 64th zero on nothing is left in the lowest 64 bits.
    for (std::int64_t i = 0; i < std::min<std::int64_t>(number.exponent, 64); ++i) {
        bits *= 10;
    }
    return number.negative ? 0 - bits : bits;
}

bool numberIsZero(std::string_view spelling) {
    const std::string_view mantissa = spelling.substr(0, spelling.find_first_of("eE"));
    return std::none_of(mantissa.begin(), mantissa.end(),
                        [](char c) { return c >= '1' && c <= '9'; });
}

QString numberText(std::string_view spelling) {
    if (numberIsZero(spelling)) {
        return QStringLiteral("0");
    }
    const QLatin1String spelled(spelling.data(), static_cast<qsizetype>(spelling.size()));
    if (spelling.find_first_of(".eE") == std::string_view::npos) {
        return spelled;
    }
    double value = 0;
    const char* end = spelling.data() + spelling.size();
    if (std::from_chars(spelling.data(), end, value).ec != std::errc{}) {
        return spelled;
    }
    // All integers below 1e16 are written out, as integers are in decimal.
    if (std::abs(value) < 1e16 && value == std::trunc(value)) {
        return QString::number(static_cast<qint64>(value));
    }
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

} // namespace korvale
