#include "platform/DesktopEntry.h"

#include <QByteArrayView>
#include <QList>

#include <algorithm>
#include <string_view>

namespace korvale {
namespace {

/// Undoes the escapes that every text value may have.
QByteArray unescaped(QByteArrayView value) {
    if (!value.contains('\\')) { // nearly always
        return value.toByteArray();
    }
    QByteArray result;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            result += value[i];
            continue;
        }
        switch (const char escaped = value[++i]; escaped) {
        case 's':
            result += ' ';
            break;
        case 'n':
            result += '\n';
            break;
        case 't':
            result += '\t';
            break;
        case 'r':
            result += '\r';
            break;
        default:
            result += escaped;
        }
    }
    return result;
}

/// The first word of a command line: up to a blank, or between quotes with backslash escapes.
QByteArray firstWord(const QByteArray& commandLine) {
    const QByteArray line = commandLine.trimmed();
    if (!line.startsWith('"')) {
        const auto end = std::find_if(line.begin(), line.end(),
                                      [](char c) { return c == ' ' || c == '\t' || c == '\n'; });
        return line.left(std::distance(line.begin(), end));
    }
    QByteArray word;
    for (qsizetype i = 1; i < line.size() && line[i] != '"'; ++i) {
        if (line[i] == '\\' && i + 1 < line.size()) {
            ++i;
        }
        word += line[i];
    }
    return word;
}

/// How much "Name[language]" is wanted: 0 most; one past the last is the plain "Name".
std::size_t languageRank(QByteArrayView key, const std::vector<QByteArray>& languages) {
    const auto found =
        std::find_if(languages.begin(), languages.end(),
                     [key](const QByteArray& language) { return QByteArrayView(language) == key; });
    return static_cast<std::size_t>(std::distance(languages.begin(), found));
}

/// Whether a line may hold a key that is read here. Most are translations of other keys, and all
/// entries of the desktop are read at every start.
bool mayMatter(QByteArrayView line) {
    switch (line.isEmpty() ? '\n' : line.front()) {
    case 'E': // Exec
    case 'H': // Hidden
    case 'N': // Name, NoDisplay
    case 'T': // Type
    case ' ':
    case '\t':
    case '\v':
    case '\f':
    case '\r':
        return true;
    default:
        return false;
    }
}

/// Takes the lines of the entry's main group one by one.
class Reader {
public:
    explicit Reader(const std::vector<QByteArray>& languages)
        : m_languages(languages), m_rank(languages.size() + 1) {}

    void read(QByteArrayView line) {
        const qsizetype equals = line.indexOf('=');
        if (equals <= 0) {
            return;
        }
        const QByteArrayView key = line.first(equals).trimmed();
        const QByteArrayView value = line.sliced(equals + 1).trimmed();
        if (key == "Exec") {
            m_entry.program = firstWord(unescaped(value));
        } else if (key == "Type") {
            m_isApplication = value == "Application";
        } else if (key == "Hidden") {
            m_isHidden = value == "true";
        } else if (key == "NoDisplay") {
            m_entry.isShown = value != "true";
        } else if (key == "Name") {
            takeName(m_languages.size(), value);
        } else if (key.startsWith("Name[") && key.endsWith(']')) {
            const std::size_t rank = languageRank(key.sliced(5).chopped(1), m_languages);
            if (rank < m_languages.size()) {
                takeName(rank, value);
            }
        }
    }

    [[nodiscard]] std::optional<DesktopEntry> entry() const {
        const bool usable = m_isApplication && !m_isHidden && !m_entry.program.isEmpty() &&
                            m_rank <= m_languages.size();
        return usable ? std::optional(m_entry) : std::nullopt;
    }

private:
    void takeName(std::size_t rank, QByteArrayView value) {
        if (rank < m_rank) {
            m_rank = rank;
            m_entry.name = QString::fromUtf8(unescaped(value));
        }
    }

    const std::vector<QByteArray>& m_languages;
    DesktopEntry m_entry;
    std::size_t m_rank; ///< of the name taken; beyond the plain name's: none yet
    bool m_isApplication = false;
    bool m_isHidden = false;
};

} // namespace

std::optional<DesktopEntry> parseDesktopEntry(const QByteArray& content,
                                              const std::vector<QByteArray>& languages) {
    Reader reader(languages);
    bool inMainGroup = false;
    std::string_view rest(content.constData(), static_cast<std::size_t>(content.size()));
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const QByteArrayView line(rest.data(), static_cast<qsizetype>(end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (line.startsWith('[')) {
            if (inMainGroup) {
                break;
            }
            inMainGroup = line.trimmed() == "[Desktop Entry]";
        } else if (inMainGroup && mayMatter(line)) {
            reader.read(line);
        }
    }
    return reader.entry();
}

} // namespace korvale
