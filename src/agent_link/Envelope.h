#pragma once

#include "model/JsonValue.h"

#include <QString>
#include <QVariantMap>

#include <cstdint>
#include <map>
#include <optional>

namespace korvale {

/// Members of a request, all of them texts.
using RequestMembers = std::map<QString, QString>;

/// A new envelope: one entry "<DATA>" with the compact UTF-8 JSON of `members`. Texts that Unicode
/// cannot encode (lone surrogates) yield an envelope whose data is empty.
[[nodiscard]] QVariantMap createXPCRequest(const RequestMembers& members);

/// The JSON object under "<DATA>"; no value when the entry is missing or no byte string, or when
/// the bytes are not valid JSON. Further entries are not looked at.
[[nodiscard]] std::optional<JsonValue> decodeXPCResponse(const QVariantMap& envelope);

/// A reply that was a dictionary. Data that did not parse reads like an object without members.
class ServiceReply {
public:
    explicit ServiceReply(const QVariantMap& envelope)
        : m_object(decodeXPCResponse(envelope).value_or(JsonValue())) {}

    /// True exactly when "RESP" is the text "OK".
    [[nodiscard]] bool isOk() const;
    /// The text under `member`; every other type counts as missing.
    [[nodiscard]] std::optional<QString> text(const char* member) const;
    /// The integer under `member`; missing is 0.
    [[nodiscard]] std::int32_t integer(const char* member) const;

private:
    JsonValue m_object;
};

} // namespace korvale
