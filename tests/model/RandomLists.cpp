#include "RandomLists.h"

#include <QString>

namespace korvale {
namespace {

const char* const states[] = {"0",  "1",    "2",    "3",     "5",     "9",   "10",
                              "16", "17",   "25",   "1.0",   "90e-1", "1.9", "\"9\"",
                              "{}", "null", "true", "false", "[1]",   "11"};
const char* const values[] = {"1e400",
                              "-0",
                              "[1,[2,{}]]",
                              "{\"a\":{\"a\":1,\"a\":2}}",
                              "123456789012345678901234567890",
                              "\"\\u0000\"",
                              "null",
                              "0.1e-5",
                              "12",
                              "2.0",
                              "1e1",
                              "12345678901234567890123",
                              "1.25e3",
                              "-0.333",
                              "true",
                              "false",
                              "[[[[[[[[\"\\ud800\"]]]]]]]]"};
const char* const identifiers[] = {"12",
                                   "2",
                                   "abc",
                                   "",
                                   "1",
                                   "ä",
                                   "0f0f0f0f0f0f0f0f0f0f0f",
                                   "18446744073709551628",
                                   "36893488147419103244"};

} // namespace

std::string RandomLists::list(std::size_t records) {
    std::vector<std::string> members;
    for (std::size_t i = 0; i < records; ++i) {
        members.push_back(text(path(records)) + blank() + ":" + record());
    }
    return object(members);
}

std::string RandomLists::object(const std::vector<std::string>& members) {
    std::string out = blank() + "{" + blank();
    for (std::size_t i = 0; i < members.size(); ++i) {
        out += i == 0 ? "" : blank() + "," + blank();
        out += members[i];
    }
    return out + blank() + "}" + blank();
}

std::string RandomLists::path(std::size_t records) {
    static const char* const shorts[] = {"", "a", "/", "é", "\\", "\x01", "\uFFFD", "x/"};
    if (below(m_numbers, 6) == 0) {
        return pick(m_numbers, shorts);
    }
    static const char* const parts[] = {"/home/ü", "/TMP", "/a b", "/日本", "/\"q\"",
                                        "/x\ny",   "/",    "/\\",  "",      "/😀"};
    std::string result;
    for (std::size_t i = below(m_numbers, 4); i > 0; --i) {
        result += pick(m_numbers, parts);
    }
    return result + "/F" + std::to_string(below(m_numbers, records + records / 4 + 1));
}

std::string RandomLists::record() {
    if (below(m_numbers, 12) == 0) {
        static const char* const others[] = {"5",  "null", "[]", "\"x\"", "[{\"State\":1}]",
                                             "{}", "true"};
        return pick(m_numbers, others);
    }
    std::vector<std::string> members;
    for (std::size_t i = below(m_numbers, 6); i > 0; --i) {
        members.push_back(member());
    }
    return object(members);
}

std::string RandomLists::member() {
    switch (below(m_numbers, 4)) {
    case 0:
        return text("ID") + ":" +
               (below(m_numbers, 3) == 0 ? pick(m_numbers, values)
                                         : text(pick(m_numbers, identifiers)));
    case 1:
        return text("Score") + ":" + pick(m_numbers, values);
    default:
        return text("State") + blank() + ":" + blank() + pick(m_numbers, states);
    }
}

std::string RandomLists::blank() {
    static const char* const blanks[] = {"", "", "", "", " ", "\n", "\t", "\r\n  "};
    return pick(m_numbers, blanks);
}

std::string RandomLists::text(const std::string& utf8) {
    std::string out = "\"";
    for (const char16_t unit : QString::fromStdString(utf8).toStdU16String()) {
        const bool must = unit == u'"' || unit == u'\\' || unit < 0x20;
        if (unit == u'/' && below(m_numbers, 8) == 0) {
            out += "\\/";
        } else if (unit == 0xFFFD && below(m_numbers, 2) == 0) {
            out += "\\uDCE9"; // half a pair reads as that character
        } else if (must || QChar::isSurrogate(unit) || below(m_numbers, 12) == 0) {
            const QString code = QString::number(unit, 16).rightJustified(4, QLatin1Char('0'));
            out.append("\\u").append(
                (below(m_numbers, 2) == 0 ? code : code.toUpper()).toStdString());
        } else {
            out += QString(QChar(unit)).toStdString();
        }
    }
    return out + "\"";
}

std::string damaged(std::string text, RandomNumbers& numbers) {
    static const char bytes[] = {'"',    '\\',   '{',    '}',    '[',    ']',    ',',  ':',
                                 '0',    '-',    '.',    'e',    'u',    ' ',    '\n', '\x00',
                                 '\x1F', '\x7F', '\x80', '\xC3', '\xED', '\xFF', 'a'};
    for (std::size_t i = 1 + below(numbers, 3); i > 0 && !text.empty(); --i) {
        const std::size_t at = below(numbers, text.size());
        switch (below(numbers, 5)) {
        case 0:
            text.erase(at, 1 + below(numbers, 4));
            break;
        case 1:
            text.insert(at, 1, pick(numbers, bytes));
            break;
        case 2:
            text.resize(at);
            break;
        default:
            text[at] = pick(numbers, bytes);
        }
    }
    return text;
}

} // namespace korvale
