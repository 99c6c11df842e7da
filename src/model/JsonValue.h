#pragma once

#include "model/JsonDocument.h"

#include <QByteArrayView>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace korvale {

struct JsonMember;
template <typename Item>
class JsonRange;

/// An immutable JSON value. Copies are cheap: a value shares the document it was parsed from and
/// keeps it alive. The default value is null, and so is what a missing member reads as: null and
/// missing are the same everywhere. Reading never fails. Reentrant.
class JsonValue {
public:
    using Kind = JsonKind;

    JsonValue() = default;
    JsonValue(std::shared_ptr<const JsonDocument> document, std::uint32_t index)
        : m_document(std::move(document)), m_index(index) {}

    /// Strict RFC 8259 in UTF-8 with an object or a list on top, nested at most 512 deep; anything
    /// else is no value. Of two members with one name the last counts, the earlier is as if absent.
    /// Numbers of any size are valid. Half a surrogate pair, escaped, reads as U+FFFD.
    [[nodiscard]] static std::optional<JsonValue> parse(QByteArrayView utf8);

    [[nodiscard]] Kind kind() const { return m_document ? node().kind : Kind::Null; }
    [[nodiscard]] bool isNull() const { return kind() == Kind::Null; }
    [[nodiscard]] bool isBoolean() const { return kind() == Kind::True || kind() == Kind::False; }
    [[nodiscard]] bool isNumber() const { return kind() == Kind::Number; }
    [[nodiscard]] bool isText() const { return kind() == Kind::Text; }
    [[nodiscard]] bool isList() const { return kind() == Kind::List; }
    [[nodiscard]] bool isObject() const { return kind() == Kind::Object; }

    /// The text in UTF-8 (it may contain NUL), or a number as it was spelled; empty for all others.
    /// Valid as long as this value or another of its document lives.
    [[nodiscard]] std::string_view utf8() const;

    /// Elements of a list, members of an object, else 0.
    [[nodiscard]] std::size_t size() const;

    /// The member `name` of an object (names are case-sensitive), else null.
    [[nodiscard]] JsonValue operator[](std::string_view name) const;

    /// The members of an object in the file's order, names as texts; none for all others.
    [[nodiscard]] JsonRange<JsonMember> members() const;
    /// The elements of a list; none for all others.
    [[nodiscard]] JsonRange<JsonValue> elements() const;

    /// Equality by value: numbers as the decimal numbers they spell (1, 1.0, 10e-1 and true are
    /// one), texts by character, objects whatever the order of their members, lists element by
    /// element.
    friend bool operator==(const JsonValue& a, const JsonValue& b);

    [[nodiscard]] const std::shared_ptr<const JsonDocument>& document() const { return m_document; }
    [[nodiscard]] std::uint32_t index() const { return m_index; }

private:
    [[nodiscard]] JsonNode node() const { return m_document->nodes[m_index]; }

    std::shared_ptr<const JsonDocument> m_document; ///< nullptr: null
    std::uint32_t m_index = 0;
};

struct JsonMember {
    JsonValue name; ///< a text
    JsonValue value;
};

/// What a container holds, in the file's order: for (const JsonMember& member : value.members()).
/// Keeps the document alive.
template <typename Item>
class JsonRange {
public:
    class Iterator {
    public:
        using value_type = Item;
        using difference_type = std::ptrdiff_t;

        Iterator() = default;
        Iterator(const JsonRange* range, std::uint32_t index) : m_range(range), m_index(index) {
            skipSuperseded();
        }
        Item operator*() const;
        Iterator& operator++();
        void operator++(int) { ++*this; }
        bool operator==(std::default_sentinel_t) const { return m_index >= m_range->m_end; }

    private:
        void skipSuperseded();

        const JsonRange* m_range = nullptr;
        std::uint32_t m_index = 0;
    };

    JsonRange() = default;
    /// The nodes [begin, end) of `document`.
    JsonRange(std::shared_ptr<const JsonDocument> document, std::uint32_t begin, std::uint32_t end)
        : m_document(std::move(document)), m_begin(begin), m_end(end) {}

    [[nodiscard]] Iterator begin() const { return Iterator(this, m_begin); }
    [[nodiscard]] std::default_sentinel_t end() const { return {}; }

private:
    std::shared_ptr<const JsonDocument> m_document;
    std::uint32_t m_begin = 0;
    std::uint32_t m_end = 0;
};

template <>
JsonMember JsonRange<JsonMember>::Iterator::operator*() const;
template <>
JsonRange<JsonMember>::Iterator& JsonRange<JsonMember>::Iterator::operator++();
template <>
void JsonRange<JsonMember>::Iterator::skipSuperseded();
template <>
JsonValue JsonRange<JsonValue>::Iterator::operator*() const;
template <>
JsonRange<JsonValue>::Iterator& JsonRange<JsonValue>::Iterator::operator++();
template <>
void JsonRange<JsonValue>::Iterator::skipSuperseded();

} // namespace korvale
