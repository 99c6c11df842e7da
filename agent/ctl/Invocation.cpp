#include "agent/ctl/Invocation.h"

#include "agent/base/FileUri.h"
#include "agent/base/Utf8.h"
#include "agent/ctl/CommandTable.h"

#include <QJsonArray>

#include <algorithm>
#include <filesystem>

namespace korvale::agent {
namespace {

constexpr std::size_t kShortestIdentifier = 8;
constexpr std::size_t kLongestNumber = 7; // a longer one is the beginning of an identifier

bool isOf(const std::string& word, std::string_view characters) {
    return !word.empty() && word.find_first_not_of(characters) == std::string::npos;
}

bool isNumber(const std::string& word) {
    return word.size() <= kLongestNumber && isOf(word, "0123456789");
}

QString uriOf(const std::string& word) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::absolute(word, error).lexically_normal();
    std::filesystem::path folder = std::filesystem::canonical(path.parent_path(), error);
    const std::filesystem::path whole = error ? path : folder / path.filename();
    std::string text = whole.string();
    if (text.size() > 1 && text.ends_with('/')) {
        text.pop_back();
    }
    return QString::fromStdString(fileUri(text));
}

QJsonValue selectorOf(const std::string& word) {
    if (isNumber(word)) {
        return std::stoi(word);
    }
    if (word.size() >= kShortestIdentifier && isOf(word, "0123456789abcdef")) {
        return QString::fromStdString(word);
    }
    return word.starts_with("file://") ? QString::fromStdString(word) : uriOf(word);
}

QString text(std::string_view view) {
    return QString::fromUtf8(view.data(), static_cast<qsizetype>(view.size()));
}

/// Reads the words of one command.
class Reader {
public:
    Reader(const Command& command, std::string& error) : m_command(command), m_error(error) {
        m_invocation.method = text(command.method);
        m_invocation.confirm = command.method == "Delete";
    }

    std::optional<Invocation> read(const std::vector<std::string>& words) {
        bool options = true;
        for (std::size_t i = 1; i < words.size(); ++i) {
            const std::string& word = words[i];
            if (options && word == "--") {
                options = false;
            } else if (options && word.size() > 1 && word.starts_with('-')) {
                if (!readOption(words, i)) {
                    return std::nullopt;
                }
            } else {
                m_words.push_back(word);
            }
        }
        return takeWords() ? std::optional(m_invocation) : std::nullopt;
    }

private:
    bool fail(const std::string& sentence) {
        m_error = sentence;
        return false;
    }

    bool readOption(const std::vector<std::string>& words, std::size_t& i) {
        const std::string& word = words[i];
        if (word == "--json") {
            m_invocation.json = true;
            return true;
        }
        const auto option =
            std::find_if(m_command.options.begin(), m_command.options.end(),
                         [&](const Option& candidate) { return candidate.word == word; });
        if (option == m_command.options.end()) {
            return fail(std::string(m_command.word) + " has no option " + word);
        }
        const bool takesWord = option->kind == OptionKind::Text || option->kind == OptionKind::Path;
        if (takesWord && i + 1 == words.size()) {
            return fail(word + " needs a value");
        }
        apply(*option, takesWord ? words[++i] : std::string());
        return true;
    }

    void apply(const Option& option, const std::string& value) {
        const QString name = text(option.argument);
        switch (option.kind) {
        case OptionKind::True:
        case OptionKind::False:
            m_invocation.arguments.insert(name, option.kind == OptionKind::True);
            break;
        case OptionKind::Text:
            m_invocation.arguments.insert(name, QString::fromStdString(validUtf8(value)));
            break;
        case OptionKind::Path:
            m_invocation.arguments.insert(name, uriOf(value));
            break;
        case OptionKind::Wait:
            m_invocation.wait = true;
            break;
        case OptionKind::Yes:
            m_invocation.confirm = false;
            break;
        }
    }

    bool takeWords() {
        const std::string usage = std::string(m_command.word) + ' ' + std::string(m_command.usage);
        switch (m_command.words) {
        case WordsAre::None:
            return m_words.empty() || fail("more words than expected: " + usage);
        case WordsAre::Threats:
            return takeThreats(usage);
        case WordsAre::Path:
        case WordsAre::MaybePath:
            return takePath(usage);
        case WordsAre::MaybeNumber:
            break;
        }
        if (m_words.size() > 1 || (!m_words.empty() && !isNumber(m_words.front()))) {
            return fail("one number is expected: " + usage);
        }
        if (!m_words.empty()) {
            m_invocation.arguments.insert(QStringLiteral("scan"), std::stoi(m_words.front()));
        }
        return true;
    }

    bool takeThreats(const std::string& usage) {
        QJsonArray selectors;
        for (const std::string& word : m_words) {
            selectors.append(selectorOf(word));
        }
        m_invocation.arguments.insert(QStringLiteral("threats"), selectors);
        return !selectors.isEmpty() || fail("which threats? " + usage);
    }

    bool takePath(const std::string& usage) {
        const bool needed = m_command.words == WordsAre::Path;
        if (m_words.size() > 1 || (needed && m_words.empty())) {
            return fail("one path is expected: " + usage);
        }
        if (!m_words.empty()) {
            m_invocation.arguments.insert(QStringLiteral("uri"), uriOf(m_words.front()));
        }
        return true;
    }

    const Command& m_command;
    std::string& m_error;
    Invocation m_invocation;
    std::vector<std::string> m_words;
};

bool isHelp(const std::string& word) {
    return word == "--help" || word == "-h" || word == "help";
}

} // namespace

std::optional<Invocation> readCommandLine(const std::vector<std::string>& words,
                                          std::string& error) {
    const auto asked = [&](const auto& test) {
        const auto end = std::find(words.begin(), words.end(), "--");
        return std::any_of(words.begin(), end, test);
    };
    Invocation plain;
    if (words.empty() ||
        asked([](const std::string& word) { return word == "--help" || word == "-h"; }) ||
        isHelp(words.front())) {
        plain.kind = Invocation::Kind::Help;
        return plain;
    }
    if (words.front() == "--version") {
        plain.kind = Invocation::Kind::Version;
        return plain;
    }
    const auto commands = commandTable();
    const auto command =
        std::find_if(commands.begin(), commands.end(),
                     [&](const Command& candidate) { return candidate.word == words.front(); });
    if (command == commands.end()) {
        error = "there is no command " + words.front();
        return std::nullopt;
    }
    return Reader(*command, error).read(words);
}

std::string commandHelp() {
    std::string help = "Usage: korvale-agentctl COMMAND [--json] ...\n\n";
    for (const Command& command : commandTable()) {
        help += "  " + std::string(command.word) +
                (command.usage.empty() ? "" : ' ' + std::string(command.usage)) + "\n      " +
                std::string(command.help) + '\n';
    }
    return help + "\nTHREAT is a number or identifier that \"threats\" shows (the first eight "
                  "digits will do),\nor a path. --json prints the agent's answer as it is. "
                  "korvale-agentctl(8) says more.\n";
}

} // namespace korvale::agent
