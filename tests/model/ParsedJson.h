#pragma once

#include "model/JsonValue.h"

#include <QByteArray>

#include <stdexcept>

namespace korvale {

/// The parsed text, which must be valid JSON.
inline JsonValue parsedJson(const QByteArray& text) {
    const std::optional<JsonValue> value = JsonValue::parse(text);
    if (!value) {
        throw std::invalid_argument("not JSON: " + text.left(200).toStdString());
    }
    return *value;
}

} // namespace korvale
