#include "Mutation.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace korvale::fuzz {
namespace {

using Tokens = std::vector<std::string>;

std::size_t below(Random& random, std::size_t limit) {
    return random() % limit;
}

/// A quoted text with its quotes is one token, as is a separator.
Tokens tokensOf(std::string_view text, std::string_view separators) {
    Tokens tokens;
    while (!text.empty()) {
        std::size_t length = 1;
        if (text.front() == '"') {
            while (length < text.size() && text[length] != '"') {
                length += text[length] == '\\' ? 2 : 1;
            }
            ++length;
        } else if (separators.find(text.front()) == std::string_view::npos) {
            length = text.find_first_of(std::string(separators) + '"', 1);
        }
        length = std::min(length, text.size());
        tokens.emplace_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return tokens;
}

std::string hex(unsigned value, std::size_t digits, Random& random) {
    const char* const alphabet = below(random, 2) == 0 ? "0123456789abcdef" : "0123456789ABCDEF";
    std::string result(digits, '0');
    for (std::size_t i = digits; i > 0; --i, value /= 16) {
        result[i - 1] = alphabet[value % 16];
    }
    return result;
}

std::string spelled(char c, Spelling spelling, Random& random) {
    const auto code = static_cast<unsigned char>(c);
    switch (spelling) {
    case Spelling::JsonEscape:
        return code < 0x80 ? std::string("\\u").append(hex(code, 4, random)) : std::string(1, c);
    case Spelling::PercentEscape:
        return std::string("%").append(hex(code, 2, random));
    case Spelling::Backslash:
        return std::string("\\") + c;
    case Spelling::AsItIs:
        break;
    }
    return std::string(1, c);
}

/// The same token in other words: some or all of its characters escaped.
std::string respelled(const std::string& token, Spelling spelling, Random& random) {
    const std::size_t oneIn = 1 + below(random, 3);
    std::string result;
    for (std::size_t i = 0; i < token.size(); ++i) {
        if (token[i] == '\\' && i + 1 < token.size()) { // an escape stays whole
            result += token[i++];
            result += token[i];
        } else if (token[i] == '"' || below(random, oneIn) != 0) {
            result += token[i];
        } else {
            result += spelled(token[i], spelling, random);
        }
    }
    return result;
}

bool isText(std::string_view token) {
    return token.starts_with('"');
}

/// Puts names and values in other places and other words, so that the whole stays well formed.
class Rewriting {
public:
    Rewriting(const Grammar& grammar, Tokens& tokens, Random& random)
        : m_grammar(grammar), m_tokens(tokens), m_random(random) {}

    void change(std::size_t at) {
        std::string& token = m_tokens[at];
        const bool isJson = m_grammar.spelling == Spelling::JsonEscape;
        switch (below(m_random, 6)) {
        case 0:
            if (isText(token) || !isJson) {
                token = respelled(token, m_grammar.spelling, m_random);
            }
            break;
        case 1:
        case 2:
            repeatMember(at);
            break;
        case 3:
            swapWithAnother(at);
            break;
        case 4:
            if (isJson && !isName(at)) {
                token = nested(token);
                break;
            }
            [[fallthrough]];
        default:
            token = word(isJson && isName(at));
        }
    }

    [[nodiscard]] bool isContent(std::size_t at) const {
        return m_grammar.separators.find(m_tokens[at].front()) == std::string_view::npos;
    }

private:
    [[nodiscard]] bool isName(std::size_t at) const {
        do {
            ++at;
        } while (at < m_tokens.size() &&
                 std::string_view(" \t\r\n").find(m_tokens[at].front()) != std::string_view::npos);
        return at < m_tokens.size() && m_tokens[at].front() == m_grammar.assign;
    }

    std::string word(bool asText) {
        std::string_view chosen;
        do {
            chosen = m_grammar.words[below(m_random, m_grammar.words.size())];
        } while (asText && !isText(chosen));
        return std::string(chosen);
    }

    /// "name":value becomes "name":word,"name":value, the first name spelled otherwise.
    void repeatMember(std::size_t at) {
        if (!isName(at)) {
            return;
        }
        const bool isJson = m_grammar.spelling == Spelling::JsonEscape;
        const Tokens member{respelled(m_tokens[at], m_grammar.spelling, m_random),
                            std::string(1, m_grammar.assign), word(false), isJson ? "," : "\n"};
        m_tokens.insert(m_tokens.begin() + static_cast<std::ptrdiff_t>(at), member.begin(),
                        member.end());
    }

    void swapWithAnother(std::size_t at) {
        const std::size_t other = below(m_random, m_tokens.size());
        if (isContent(other) && isName(other) == isName(at)) {
            std::swap(m_tokens[at], m_tokens[other]);
        }
    }

    std::string nested(const std::string& token) {
        static constexpr std::array depths{1U, 1U, 1U, 2U, 3U, 508U, 513U, 2000U};
        const std::size_t depth = depths[below(m_random, depths.size())];
        return std::string(depth, '[') + token + std::string(depth, ']');
    }

    const Grammar& m_grammar;
    Tokens& m_tokens;
    Random& m_random;
};

std::string damaged(std::string text, Random& random) {
    static constexpr std::string_view bytes("\"\\{}[],:;=%0-.eu \n\r\t\x00\x1f\x7f\x80\xc3\xed\xff",
                                            28);
    const std::size_t at = below(random, text.size() + 1);
    switch (below(random, 4)) {
    case 0:
        text.resize(at);
        break;
    case 1:
        text.erase(at, 1 + below(random, 4));
        break;
    default:
        text.insert(at, 1, bytes[below(random, bytes.size())]);
    }
    return text;
}

/// Puts one token where it does not belong.
void misplace(Tokens& tokens, const Grammar& grammar, Random& random) {
    const std::size_t at = below(random, tokens.size());
    const auto place = tokens.begin() + static_cast<std::ptrdiff_t>(at);
    switch (below(random, 4)) {
    case 0:
        tokens.erase(place);
        break;
    case 1:
        tokens.insert(place, std::string(tokens[at]));
        break;
    case 2:
        std::swap(tokens[at], tokens[below(random, tokens.size())]);
        break;
    default:
        tokens.insert(place, std::string(grammar.words[below(random, grammar.words.size())]));
    }
}

void changeOneThing(Tokens& tokens, const Grammar& grammar, Random& random) {
    if (below(random, 8) == 0) {
        misplace(tokens, grammar, random);
        return;
    }
    Rewriting rewriting(grammar, tokens, random);
    const std::size_t start = below(random, tokens.size());
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const std::size_t at = (start + i) % tokens.size();
        if (rewriting.isContent(at)) {
            rewriting.change(at);
            return;
        }
    }
}

constexpr std::array<std::string_view, 61> jsonWords{"\"State\"",
                                                     "\"ID\"",
                                                     "\"Score\"",
                                                     "\"PID\"",
                                                     "\"Type\"",
                                                     "\"Time\"",
                                                     "\"MessageMask\"",
                                                     "\"ScannerState\"",
                                                     "\"AnalyzedCount\"",
                                                     "\"CurrentFile\"",
                                                     "\"BlockedExePath\"",
                                                     "\"ConsumerNotificationMessage\"",
                                                     "\"ConsumerNotificationUrl\"",
                                                     "\"RESP\"",
                                                     "\"VALU\"",
                                                     "\"PNAME\"",
                                                     "\"PMODE\"",
                                                     "\"PNOTF\"",
                                                     "\"OK\"",
                                                     "\"0\"",
                                                     "\"Local Policy\"",
                                                     "\"SondarNotificationMessage\"",
                                                     "\"NoKorvaleUI\"",
                                                     "\"Use Vexa App Icon\"",
                                                     "\"geometry\"",
                                                     "\"columns\"",
                                                     "\"platform\"",
                                                     "\"\"",
                                                     "\"a\"",
                                                     "\"/\"",
                                                     "\"\\/\"",
                                                     "\"\\u0000\"",
                                                     "\"\\udce9\"",
                                                     "\"\\ud83d\\ude00\"",
                                                     "\"\\ud83d\"",
                                                     "\"<b>x</b>&amp;\"",
                                                     "\"\\u202e\\u001b[31m\\n\"",
                                                     "\"%@%s%n%li\"",
                                                     "\"=1+1\"",
                                                     "0",
                                                     "-0",
                                                     "1",
                                                     "1.0",
                                                     "1.9",
                                                     "9",
                                                     "25",
                                                     "-1",
                                                     "4095",
                                                     "4294967296",
                                                     "9223372036854775807",
                                                     "-9223372036854775808",
                                                     "18446744073709551617",
                                                     "123456789012345678901234567890",
                                                     "1e400",
                                                     "1e-400",
                                                     "0.1e-5",
                                                     "true",
                                                     "false",
                                                     "null",
                                                     "{}",
                                                     "[]"};

constexpr std::array<std::string_view, 30> assignmentWords{"[General]",
                                                           "[Desktop Entry]",
                                                           "[Desktop Action x]",
                                                           "UserNotificationOn",
                                                           "ShowUserNotificationChanged",
                                                           "Exec",
                                                           "Name",
                                                           "Name[de]",
                                                           "Name[de_AT@x]",
                                                           "Name[",
                                                           "Type",
                                                           "Application",
                                                           "Hidden",
                                                           "NoDisplay",
                                                           "true",
                                                           "false",
                                                           "1",
                                                           "0",
                                                           "+007",
                                                           "=",
                                                           "\n",
                                                           "\\x41",
                                                           "\\s",
                                                           "\"a \\\" b\" %U",
                                                           "@Invalid()",
                                                           "@ByteArray(x)",
                                                           "@Variant(\\0\\0\\0\\x7f)",
                                                           "PRETTY_NAME",
                                                           "'q'",
                                                           "\"1, 2\""};

constexpr std::array<std::string_view, 20> addressWords{
    "unix:",       "path=",     "abstract=",   "guid=",
    "tcp:host=",   "unixexec:", "runtime=yes", "tmpdir=",
    ";",           ",",         "%",           "%2",
    "%zz",         "%00",       "%25",         "/nowhere/at/all",
    "autolaunch:", ":",         "OK\r\n",      "REJECTED EXTERNAL\r\n"};

} // namespace

const Grammar json{"{}[]:, \t\r\n", ':', Spelling::JsonEscape, jsonWords};
const Grammar assignments{"=\n[]", '=', Spelling::Backslash, assignmentWords};
const Grammar addresses{":;,=%", '=', Spelling::PercentEscape, addressWords};

std::string mutated(const Grammar& grammar, std::string_view text, Random& random) {
    Tokens tokens = tokensOf(text, grammar.separators);
    for (std::size_t i = 1 + below(random, 2); i > 0 && !tokens.empty(); --i) {
        changeOneThing(tokens, grammar, random);
    }
    std::string result;
    for (const std::string& token : tokens) {
        result += token;
    }
    return result.empty() || below(random, 10) == 0 ? damaged(std::move(result), random) : result;
}

} // namespace korvale::fuzz
