#pragma once

#include <QString>

#include <optional>

/// Arguments of commands read as values.
namespace korvale::sim {

[[nodiscard]] inline std::optional<bool> onOff(const QString& word) {
    if (word == QLatin1String("on")) {
        return true;
    }
    return word == QLatin1String("off") ? std::optional(false) : std::nullopt;
}

/// A decimal number from `least` to `most`.
[[nodiscard]] inline std::optional<int> numberIn(const QString& word, int least, int most) {
    bool isNumber = false;
    const int number = word.toInt(&isNumber);
    return isNumber && number >= least && number <= most ? std::optional(number) : std::nullopt;
}

[[nodiscard]] inline QString onOrOff() {
    return QStringLiteral("on or off is needed");
}
[[nodiscard]] inline QString noNumber(const QString& word) {
    return QStringLiteral("not a number that can be taken: ") + word;
}

} // namespace korvale::sim
