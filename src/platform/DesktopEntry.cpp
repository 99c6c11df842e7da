#include "platform/DesktopEntry.h"

#include "core/base/Blanks.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace korvale {
namespace {

/// Without the blanks at both ends.
std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// What a backslash and `letter` stand for.
char escaped(char letter) {
    switch (letter) {
    case 's':
        return ' ';
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'r':
        return '\r';
    default:
        return letter;
    }
}

/// Undoes the escapes that every text value may have, and hardly one has. The last one may lack its
/// letter.
std::string unescaped(std::string_view value) {
    std::string result;
    for (std::size_t slash = value.find('\\');
         slash != std::string_view::npos && slash + 1 < value.size(); slash = value.find('\\')) {
        result.append(value.substr(0, slash)).push_back(escaped(value[slash + 1]));
        value.remove_prefix(slash + 2);
    }
    return result.append(value);
}

/// The first word of a command line that has no backslash: up to a blank, or between quotes.
std::string_view plainFirstWord(std::string_view line) {
    if (line.starts_with('"')) {
        line.remove_prefix(1);
        return line.substr(0, line.find('"'));
    }
    std::size_t size = line.size();
    for (const char blank : {' ', '\t', '\n'}) { // each looked for by many bytes at once
        size = std::min(size, line.substr(0, size).find(blank));
    }
    return line.substr(0, size);
}

/// The same of any command line: between quotes a backslash stands before what is meant literally.
std::string firstWord(std::string_view line) {
    if (!line.starts_with('"')) {
        return std::string(plainFirstWord(line));
    }
    std::string word;
    for (std::size_t i = 1; i < line.size() && line[i] != '"'; ++i) {
        if (line[i] == '\\' && i + 1 < line.size()) {
            ++i;
        }
        word += line[i];
    }
    return word;
}

/// What the value of an "Exec" starts: a part of `exec`, or of `room` where it stands nowhere as it
/// is meant.
std::string_view programOf(std::string_view exec, std::string& room) {
    if (exec.find('\\') == std::string_view::npos) { // nearly always
        return plainFirstWord(exec);
    }
    room = firstWord(trimmed(unescaped(exec)));
    return room;
}

/// How much "Name[language]" is wanted: 0 most; one past the last is the plain "Name". `key` begins
/// behind the bracket.
std::size_t languageRank(std::string_view key, const std::vector<QByteArray>& languages) {
    const auto found =
        std::find_if(languages.begin(), languages.end(), [key](const QByteArray& language) {
            const auto length = static_cast<std::size_t>(language.size());
            return key.size() > length && key[length] == ']' &&
                   std::memcmp(key.data(), language.constData(), length) == 0;
        });
    return static_cast<std::size_t>(std::distance(languages.begin(), found));
}

/// Whether a line that begins so may hold a key that is read here. Most are translations of other
/// keys, and all entries of the desktop are read at every start.
bool mayMatter(char first) {
    switch (first) {
    case 'E': // Exec
    case 'H': // Hidden
    case 'N': // Name, NoDisplay
    case 'T': // Type
        return true;
    default:
        return isBlank(first);
    }
}

/// Takes the lines of the entry's main group one by one.
class Reader {
public:
    explicit Reader(const std::vector<QByteArray>& languages)
        : m_languages(languages), m_rank(languages.size() + 1) {}

    void read(std::string_view line) {
        static constexpr std::string_view translation = "Name[";
        line = trimmed(line);
        std::size_t rank = m_languages.size();
        if (line.starts_with(translation)) { // most lines, and nearly all in others' languages
            rank = languageRank(line.substr(translation.size()), m_languages);
            if (rank == m_languages.size()) {
                return;
            }
        }
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos) {
            return;
        }
        const std::string_view key = trimmed(line.substr(0, equals));
        const std::string_view value = trimmed(line.substr(equals + 1));
        if (key == "Exec") {
            std::string room;
            m_entry.program = programOf(value, room);
        } else if (key == "Type") {
            m_isApplication = value == "Application";
        } else if (key == "Hidden") {
            m_isHidden = value == "true";
        } else if (key == "NoDisplay") {
            m_entry.isShown = value != "true";
        } else if (key == "Name" || (rank < m_languages.size() && key.ends_with(']'))) {
            takeName(rank, value);
        }
    }

    /// Once all lines are read.
    [[nodiscard]] std::optional<DesktopEntry> takeEntry() {
        const bool usable = m_isApplication && !m_isHidden && !m_entry.program.empty() &&
                            m_rank <= m_languages.size();
        return usable ? std::optional(std::move(m_entry)) : std::nullopt;
    }

private:
    void takeName(std::size_t rank, std::string_view value) {
        if (rank < m_rank) {
            m_rank = rank;
            m_entry.name = QString::fromStdString(unescaped(value));
        }
    }

    const std::vector<QByteArray>& m_languages;
    DesktopEntry m_entry;
    std::size_t m_rank; ///< of the name taken; beyond the plain name's: none yet
    bool m_isApplication = false;
    bool m_isHidden = false;
};

const char* lineEnd(const char* at, const char* end) {
    const void* feed = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
    return feed ? static_cast<const char*>(feed) : end;
}

/// Only blanks stand before `at` in its line.
bool beginsLine(const char* begin, const char* at) {
    while (at > begin && at[-1] != '\n' && isBlank(at[-1])) {
        --at;
    }
    return at == begin || at[-1] == '\n';
}

} // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view content,
                                              const std::vector<QByteArray>& languages) {
    Reader reader(languages);
    bool inMainGroup = false;
    const char* const end = content.data() + content.size();
    for (const char* next = content.data(); next < end;) {
        const std::string_view line(next, lineEnd(next, end));
        if (*next == '[') {
            if (inMainGroup) {
                break;
            }
            inMainGroup = trimmed(line) == "[Desktop Entry]";
        } else if (inMainGroup && mayMatter(*next)) {
            reader.read(line);
        }
        next += line.size() + 1;
    }
    return reader.takeEntry();
}

bool mayStart(std::string_view content, const std::function<bool(std::string_view)>& isWanted) {
    static constexpr std::string_view key = "Exec";
    const char* const end = content.data() + content.size();
    std::string_view last; // the actions of an entry mostly start its program again
    for (std::size_t at = content.find('E'); at != std::string_view::npos;
         at = content.find('E', at + 1)) {
        const char* const begin = content.data() + at;
        if (!content.substr(at).starts_with(key) || !beginsLine(content.data(), begin)) {
            continue;
        }
        const std::string_view line(begin, lineEnd(begin, end));
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos) {
            continue;
        }
        std::string room;
        const std::string_view program = programOf(trimmed(line.substr(equals + 1)), room);
        if (program.empty() || program == last) {
            continue;
        }
        if (isWanted(program)) {
            return true;
        }
        last = room.empty() ? program : std::string_view();
    }
    return false;
}

} // namespace korvale
