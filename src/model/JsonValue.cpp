#include "model/JsonValue.h"

#include "model/JsonFingerprint.h"
#include "model/JsonNumber.h"
#include "model/JsonParser.h"

#include <algorithm>
#include <new>

namespace korvale {

std::optional<JsonValue> JsonValue::parse(QByteArrayView utf8) {
    const auto size = static_cast<std::size_t>(utf8.size());
    if (size > maxJsonSize) {
        return std::nullopt;
    }
    try {
        auto bytes = std::make_shared_for_overwrite<char[]>(size + jsonPadding);
        std::copy(utf8.begin(), utf8.end(), bytes.get());
        auto document = JsonParser().parse(std::move(bytes), size);
        return document ? std::optional(JsonValue(std::move(document), 0)) : std::nullopt;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

std::string_view JsonValue::utf8() const {
    return isText() || isNumber() ? m_document->view(node()) : std::string_view();
}

std::size_t JsonValue::size() const {
    return isObject() || isList() ? node().offset : 0;
}

JsonValue JsonValue::operator[](std::string_view name) const {
    if (!isObject()) {
        return {};
    }
    const std::uint32_t end = node().extent;
    for (std::uint32_t at = m_index + 1; at < end; at = m_document->behind(at + 1)) {
        const JsonNode candidate = m_document->nodes[at];
        if (candidate.superseded == 0 && m_document->view(candidate) == name) {
            return JsonValue(m_document, at + 1);
        }
    }
    return {};
}

JsonRange<JsonMember> JsonValue::members() const {
    return isObject() ? JsonRange<JsonMember>(m_document, m_index + 1, node().extent)
                      : JsonRange<JsonMember>();
}

JsonRange<JsonValue> JsonValue::elements() const {
    return isList() ? JsonRange<JsonValue>(m_document, m_index + 1, node().extent)
                    : JsonRange<JsonValue>();
}

namespace {

/// true counts as 1 and false as 0.
std::optional<CanonicalNumber> numberOf(const JsonValue& value) {
    if (value.isBoolean()) {
        return canonicalNumber(value.kind() == JsonKind::True ? "1" : "0");
    }
    return value.isNumber() ? std::optional(canonicalNumber(value.utf8())) : std::nullopt;
}

} // namespace

// Containers are equal when their fingerprints are: one walk over each, however large they are.
bool operator==(const JsonValue& a, const JsonValue& b) {
    if (const auto number = numberOf(a)) {
        return number == numberOf(b);
    }
    if (a.kind() != b.kind() || a.isNull()) {
        return a.kind() == b.kind();
    }
    if (a.isText()) {
        return a.utf8() == b.utf8();
    }
    return jsonFingerprint(*a.m_document, a.m_index) == jsonFingerprint(*b.m_document, b.m_index);
}

template <>
JsonMember JsonRange<JsonMember>::Iterator::operator*() const {
    return {JsonValue(m_range->m_document, m_index), JsonValue(m_range->m_document, m_index + 1)};
}

template <>
void JsonRange<JsonMember>::Iterator::skipSuperseded() {
    const JsonDocument* document = m_range->m_document.get();
    while (m_index < m_range->m_end && document->nodes[m_index].superseded != 0) {
        m_index = document->behind(m_index + 1);
    }
}

template <>
auto JsonRange<JsonMember>::Iterator::operator++() -> Iterator& {
    m_index = m_range->m_document->behind(m_index + 1);
    skipSuperseded();
    return *this;
}

template <>
JsonValue JsonRange<JsonValue>::Iterator::operator*() const {
    return JsonValue(m_range->m_document, m_index);
}

template <>
void JsonRange<JsonValue>::Iterator::skipSuperseded() {}

template <>
auto JsonRange<JsonValue>::Iterator::operator++() -> Iterator& {
    m_index = m_range->m_document->behind(m_index);
    return *this;
}

} // namespace korvale
