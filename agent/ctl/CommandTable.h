#pragma once

#include <span>
#include <string_view>

namespace korvale::agent {

/// How an option changes the call.
enum class OptionKind {
    True,  ///< sets its argument to true
    False, ///< sets its argument to false
    Text,  ///< takes the next word as its argument
    Path,  ///< takes the next word, a path, as "uri"
    Wait,  ///< waits for the end of the scan
    Yes,   ///< does not ask first
};

struct Option {
    std::string_view word; ///< with its dashes
    OptionKind kind;
    std::string_view argument; ///< of the method; empty: none
};

/// What the words that are no options are.
enum class WordsAre { None, Threats, Path, MaybePath, MaybeNumber };

struct Command {
    std::string_view word;
    std::string_view method; ///< of the control interface
    WordsAre words;
    std::span<const Option> options;
    std::string_view usage; ///< behind the word
    std::string_view help;
};

[[nodiscard]] std::span<const Command> commandTable();

} // namespace korvale::agent
