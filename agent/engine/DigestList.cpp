#include "agent/engine/DigestList.h"

#include "agent/base/Log.h"

#include <algorithm>

namespace korvale::agent {
namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr std::size_t kLongestName = 200;

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

} // namespace

std::size_t DigestList::add(std::string_view text) {
    std::size_t bad = 0;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty() || line.front() == '#') {
            continue;
        }
        const auto digest = parseSha256(line.substr(0, kSha256Digits));
        const std::string_view rest = line.substr(std::min(line.size(), kSha256Digits));
        if (!digest || (!rest.empty() && kBlanks.find(rest.front()) == std::string_view::npos)) {
            ++bad;
            continue;
        }
        const std::string name = printable(trimmed(rest).substr(0, kLongestName));
        m_entries.push_back({*digest, static_cast<std::uint32_t>(m_names.size()),
                             static_cast<std::uint32_t>(name.size())});
        m_names += name;
    }
    return bad;
}

void DigestList::sort() {
    const auto less = [](const Entry& one, const Entry& other) {
        return one.digest < other.digest;
    };
    std::stable_sort(m_entries.begin(), m_entries.end(), less);
}

std::optional<std::string> DigestList::find(const Sha256Digest& digest) const {
    const auto less = [](const Entry& entry, const Sha256Digest& value) {
        return entry.digest < value;
    };
    const auto found = std::lower_bound(m_entries.begin(), m_entries.end(), digest, less);
    if (found == m_entries.end() || found->digest != digest) {
        return std::nullopt;
    }
    return found->length == 0 ? "Listed" : m_names.substr(found->name, found->length);
}

} // namespace korvale::agent
