#include "agent/base/PathRules.h"

namespace korvale::agent {
namespace {

std::string_view firstPart(std::string_view path) {
    return path.substr(0, path.find('/'));
}

/// Whether one part of a path is what one part of a rule describes.
bool partMatches(std::string_view pattern, std::string_view part) {
    std::size_t star = std::string_view::npos; // in pattern, the last one seen
    std::size_t resume = 0;                    // in part, behind what that star stands for
    std::size_t at = 0;
    std::size_t index = 0;
    while (index < part.size()) {
        if (at < pattern.size() && pattern[at] == '*') {
            star = at++;
            resume = index;
        } else if (at < pattern.size() && (pattern[at] == '?' || pattern[at] == part[index])) {
            ++at;
            ++index;
        } else if (star != std::string_view::npos) {
            at = star + 1;
            index = ++resume;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', at) == std::string_view::npos;
}

bool liesIn(std::string_view path, std::string_view folder) {
    return path.starts_with(folder) &&
           (path.size() == folder.size() || path[folder.size()] == '/' || folder.size() == 1);
}

/// Part by part; the path may go on where the rule has ended.
bool matches(std::string_view rule, std::string_view path) {
    while (!rule.empty()) {
        if (path.empty()) {
            return false;
        }
        rule.remove_prefix(1); // the '/'
        path.remove_prefix(1);
        const std::string_view pattern = firstPart(rule);
        const std::string_view part = firstPart(path);
        if (part.empty() || !partMatches(pattern, part)) {
            return false;
        }
        rule.remove_prefix(pattern.size());
        path.remove_prefix(part.size());
    }
    return true;
}

bool hasDots(std::string_view path) {
    while (!path.empty()) {
        path.remove_prefix(1);
        const std::string_view part = firstPart(path);
        if (part.empty() || part == "." || part == "..") {
            return true;
        }
        path.remove_prefix(part.size());
    }
    return false;
}

} // namespace

bool PathRules::add(std::string_view rule, std::string& error) {
    while (rule.size() > 1 && rule.ends_with('/')) {
        rule.remove_suffix(1);
    }
    if (!rule.starts_with('/')) {
        error = "a path must begin with '/'";
        return false;
    }
    if (rule.find('\0') != std::string_view::npos || (rule.size() > 1 && hasDots(rule))) {
        error = "a path must not have empty parts, \".\" or \"..\" in it";
        return false;
    }
    m_rules.push_back({std::string(rule), rule.find_first_of("*?") == std::string_view::npos});
    return true;
}

const std::string* PathRules::match(std::string_view path) const {
    for (const Rule& rule : m_rules) {
        if (rule.plain ? liesIn(path, rule.text) : matches(rule.text, path)) {
            return &rule.text;
        }
    }
    return nullptr;
}

} // namespace korvale::agent
