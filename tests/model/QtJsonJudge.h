#pragma once

#include "model/JsonValue.h"

#include <QByteArray>
#include <QJsonValue>

namespace korvale {

// QJsonDocument as an outside judge of the program's reader. What the two see differently is listed
// in JsonJudgesTest, each with a test of its own.

/// What the judge reads; undefined when it refuses the text.
[[nodiscard]] QJsonValue judged(const QByteArray& text);

/// The text without what only the judge takes.
[[nodiscard]] QByteArray withoutListed(const QByteArray& text);

/// Whether both read the same values.
[[nodiscard]] bool meansTheSame(const JsonValue& ours, const QJsonValue& theirs);

} // namespace korvale
