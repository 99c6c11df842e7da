#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korvale::agent {

/// Paths that something does not apply to. A rule is an absolute path and stands for what has that
/// name and everything beneath it; in each of its parts '*' is any number of characters and '?' any
/// one (a byte, as in names), never a '/'.
class PathRules {
public:
    /// False, and a sentence in `error`, for what is no rule: relative, empty or with ".", "..".
    [[nodiscard]] bool add(std::string_view rule, std::string& error);

    /// The first rule that applies to an absolute path without "." and ".."; null: none does.
    [[nodiscard]] const std::string* match(std::string_view path) const;
    [[nodiscard]] bool isEmpty() const { return m_rules.empty(); }

private:
    struct Rule {
        std::string text;
        bool plain = false; ///< no '*' or '?': compared at once
    };
    std::vector<Rule> m_rules;
};

} // namespace korvale::agent
