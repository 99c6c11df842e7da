#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace korvale::sim {

/// Cuts a line into words at blanks; "..." holds a word together (\" \\ \n \t inside). From word
/// number `restFrom` on (counted from 0) what is left of the line is one word, which loses its
/// quotes when it is quoted as a whole. Nothing when a quote is not closed.
[[nodiscard]] std::optional<QStringList> splitWords(QStringView line, int restFrom);

} // namespace korvale::sim
