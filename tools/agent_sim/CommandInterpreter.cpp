#include "agent_sim/CommandInterpreter.h"

#include "agent_sim/CommandWords.h"

namespace korvale::sim {
namespace {

ParsedLine notUnderstood(const QString& problem) {
    return {nullptr, {}, problem};
}

} // namespace

ParsedLine parseLine(const QString& line) {
    const QString text = line.trimmed();
    if (text.isEmpty() || text.startsWith(u'#')) {
        return {};
    }
    const std::optional<QStringList> nameAndRest = splitWords(text, 1);
    if (!nameAndRest) {
        return notUnderstood(QStringLiteral("a quote is not closed"));
    }
    const Command* command = findCommand(nameAndRest->constFirst());
    if (command == nullptr) {
        return notUnderstood(QStringLiteral("no such command (try help)"));
    }
    std::optional<QStringList> words = splitWords(text, command->restFrom + 1);
    if (!words) {
        return notUnderstood(QStringLiteral("a quote is not closed"));
    }
    words->removeFirst();
    if (words->size() < command->least || words->size() > command->most) {
        return notUnderstood(
            QStringLiteral("arguments: %1 (texts with blanks in quotes)")
                .arg(command->most == 0 ? QLatin1String("none") : command->arguments));
    }
    return {command, *words, {}};
}

} // namespace korvale::sim
