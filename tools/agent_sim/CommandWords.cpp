#include "agent_sim/CommandWords.h"

namespace korvale::sim {
namespace {

QChar escaped(QChar character) {
    switch (character.unicode()) {
    case u'n':
        return u'\n';
    case u't':
        return u'\t';
    default:
        return character;
    }
}

/// Takes a quoted word off the front of `rest`, which begins with its quote.
std::optional<QString> takeQuoted(QStringView& rest) {
    QString word;
    for (qsizetype i = 1; i < rest.size(); ++i) {
        if (rest[i] == u'"') {
            rest = rest.mid(i + 1);
            return word;
        }
        if (rest[i] == u'\\' && i + 1 < rest.size()) {
            word += escaped(rest[++i]);
        } else {
            word += rest[i];
        }
    }
    return std::nullopt;
}

QString takePlain(QStringView& rest) {
    qsizetype end = 0;
    while (end < rest.size() && !rest[end].isSpace()) {
        ++end;
    }
    QString word = rest.left(end).toString();
    rest = rest.mid(end);
    return word;
}

std::optional<QString> takeWord(QStringView& rest) {
    return rest.startsWith(u'"') ? takeQuoted(rest) : takePlain(rest);
}

QString wholeRest(QStringView rest) {
    QStringView tried = rest;
    if (tried.startsWith(u'"')) {
        const std::optional<QString> quoted = takeQuoted(tried);
        if (quoted && tried.isEmpty()) {
            return *quoted;
        }
    }
    return rest.toString();
}

} // namespace

std::optional<QStringList> splitWords(QStringView line, int restFrom) {
    QStringList words;
    QStringView rest = line.trimmed();
    while (!rest.isEmpty()) {
        if (words.size() == restFrom) {
            words.append(wholeRest(rest));
            break;
        }
        const std::optional<QString> word = takeWord(rest);
        if (!word) {
            return std::nullopt;
        }
        words.append(*word);
        rest = rest.trimmed();
    }
    return words;
}

} // namespace korvale::sim
