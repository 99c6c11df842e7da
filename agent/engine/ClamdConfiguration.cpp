#include "agent/engine/ClamdConfiguration.h"

#include "agent/base/SmallFile.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <limits>
#include <optional>

namespace korvale::agent {
namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr std::int64_t kLargestEver = std::numeric_limits<std::int32_t>::max() - 2;

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// "25M", "400k", "123"; 0 stands for no limit.
std::optional<std::int64_t> parseSize(std::string_view text) {
    std::int64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, value);
    const std::string_view unit(behind, static_cast<std::size_t>(end - behind));
    std::int64_t factor = 1;
    if (unit == "K" || unit == "k") {
        factor = 1 << 10;
    } else if (unit == "M" || unit == "m") {
        factor = 1 << 20;
    } else if (!unit.empty()) {
        return std::nullopt;
    }
    if (error != std::errc() || value < 0 || __builtin_mul_overflow(value, factor, &value)) {
        return std::nullopt;
    }
    return value;
}

/// As clamd reads a switch, whatever the case of its letters.
bool isNo(std::string_view value) {
    constexpr std::string_view no = "no";
    constexpr std::string_view wrong = "false";
    const auto same = [](char left, char right) {
        return std::tolower(static_cast<unsigned char>(left)) == right;
    };
    return value == "0" || std::equal(value.begin(), value.end(), no.begin(), no.end(), same) ||
           std::equal(value.begin(), value.end(), wrong.begin(), wrong.end(), same);
}

void take(std::string_view option, std::string_view value, ClamdConfiguration& configuration) {
    if (option == "MaxFileSize") {
        configuration.maxFileSize = parseSize(value).value_or(configuration.maxFileSize);
    } else if (option == "MaxScanSize") {
        configuration.maxScanSize = parseSize(value).value_or(configuration.maxScanSize);
    } else if (option == "LocalSocket" && value.starts_with('/')) {
        configuration.localSocket = value;
    } else if (option == "DatabaseDirectory" && value.starts_with('/')) {
        configuration.databaseFolder = value;
    } else if (option == "TemporaryDirectory" && value.starts_with('/')) {
        configuration.temporaryFolder = value;
    } else if (option == "User") {
        configuration.user = value;
    } else if (option == "ScanArchive") {
        configuration.scanArchives = !isNo(value);
    }
}

std::string_view unquoted(std::string_view value) {
    const bool quoted = value.size() >= 2 && value.front() == '"' && value.back() == '"';
    return quoted ? value.substr(1, value.size() - 2) : value;
}

} // namespace

std::int64_t ClamdConfiguration::largestFile() const {
    const auto limit = [](std::int64_t size) { return size == 0 ? kLargestEver : size; };
    return std::min({limit(maxFileSize), limit(maxScanSize), kLargestEver});
}

ClamdConfiguration parseClamdConfiguration(std::string_view text) {
    ClamdConfiguration configuration;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        const std::size_t blank = line.find_first_of(kBlanks);
        if (line.empty() || line.front() == '#' || blank == std::string_view::npos) {
            continue;
        }
        take(line.substr(0, blank), unquoted(trimmed(line.substr(blank))), configuration);
    }
    return configuration;
}

ClamdConfiguration readClamdConfiguration(const std::string& path) {
    std::string error;
    return parseClamdConfiguration(
        readSmallFile(path, std::size_t{256} << 10, error).value_or(std::string()));
}

} // namespace korvale::agent
