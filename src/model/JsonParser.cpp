#include "model/JsonParser.h"

#include "core/base/Digits.h"
#include "model/JsonEscapes.h"
#include "model/JsonNames.h"
#include "model/JsonScanner.h"

#include <cstring>
#include <new>
#include <span>

namespace korvale {

namespace {

/// The work space of a larger text is given back at once: it would add to the list's peak.
constexpr std::size_t keptTextSize = std::size_t{1} << 20;

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

const char* skipDigits(const char* at) {
    while (isDigit(*at)) {
        ++at;
    }
    return at;
}

/// The place behind the JSON number at `at`, nullptr when there is none. Stops at a NUL.
const char* skipNumber(const char* at) {
    if (*at == '-') {
        ++at;
    }
    if (!isDigit(*at)) {
        return nullptr;
    }
    at = *at == '0' ? at + 1 : skipDigits(at);
    if (*at == '.') {
        if (!isDigit(*++at)) {
            return nullptr;
        }
        at = skipDigits(at);
    }
    if (*at == 'e' || *at == 'E') {
        ++at;
        if (*at == '+' || *at == '-') {
            ++at;
        }
        if (!isDigit(*at)) {
            return nullptr;
        }
        at = skipDigits(at);
    }
    return at;
}

/// The grammar, over the places that JsonScanner found. That has also checked that strings are
/// closed, are UTF-8 and hold no control characters; outside of strings all is ASCII here.
class Grammar {
public:
    Grammar(char* bytes, std::span<const std::uint32_t> places, JsonDocument& document)
        : m_bytes(bytes),
          m_place(places.data()),
          m_end(places.data() + places.size()),
          m_document(document),
          m_first(document.nodes.get()),
          m_next(m_first),
          m_backslash(nextBackslash(0)) {}

    bool document() { return (peek() == '{' || peek() == '[') && value(1) && m_place == m_end; }

private:
    [[nodiscard]] char peek() const { return m_bytes[*m_place]; }

    [[nodiscard]] std::size_t nextBackslash(std::size_t from) const {
        const std::size_t size = *m_end;
        const void* at = std::memchr(m_bytes + from, '\\', size - from);
        return at ? static_cast<std::size_t>(static_cast<const char*>(at) - m_bytes) : size;
    }

    [[nodiscard]] std::uint32_t count() const {
        return static_cast<std::uint32_t>(m_next - m_first);
    }

    void add(JsonKind kind, std::size_t offset, std::size_t extent) {
        JsonNode node{};
        node.kind = kind;
        node.offset = static_cast<std::uint32_t>(offset) & 0x0FFFFFFFU;
        node.extent = static_cast<std::uint32_t>(extent);
        *m_next++ = node; // one store
    }

    // Recursion ends at maxJsonDepth.
    // NOLINTBEGIN(misc-no-recursion)
    bool value(std::size_t depth) {
        switch (peek()) {
        case '"':
            return text();
        case '{':
            return depth <= maxJsonDepth && object(depth);
        case '[':
            return depth <= maxJsonDepth && list(depth);
        case 't':
            return word("true", JsonKind::True);
        case 'f':
            return word("false", JsonKind::False);
        case 'n':
            return word("null", JsonKind::Null);
        default:
            return number();
        }
    }

    bool object(std::size_t depth) {
        ++m_place;
        const std::uint32_t self = count();
        std::uint32_t size = 0;
        add(JsonKind::Object, 0, 0);
        if (peek() == '}') {
            ++m_place;
            close(self, 0);
            return true;
        }
        char separator = '\0';
        std::uint64_t marks = 0;
        bool repeated = false;
        do {
            const std::uint32_t name = count();
            if (peek() != '"' || !text() || m_bytes[*m_place++] != ':') {
                return false;
            }
            const std::uint64_t mark = markOf(m_first[name]);
            repeated = repeated || (marks & mark) != 0;
            marks |= mark;
            if (!value(depth + 1)) {
                return false;
            }
            ++size;
            separator = m_bytes[*m_place++];
        } while (separator == ',');
        close(self, size);
        if (repeated && separator == '}') {
            m_first[self].offset = supersedeNames(m_document, self) & 0x0FFFFFFFU;
        }
        return separator == '}';
    }

    bool list(std::size_t depth) {
        ++m_place;
        const std::uint32_t self = count();
        std::uint32_t size = 0;
        add(JsonKind::List, 0, 0);
        if (peek() == ']') {
            ++m_place;
            close(self, 0);
            return true;
        }
        char separator = '\0';
        do {
            if (!value(depth + 1)) {
                return false;
            }
            ++size;
            separator = m_bytes[*m_place++];
        } while (separator == ',');
        close(self, size);
        return separator == ']';
    }
    // NOLINTEND(misc-no-recursion)

    /// One of 64 bits: names with different bits differ, so that few objects need a closer look.
    [[nodiscard]] std::uint64_t markOf(JsonNode name) const {
        // Of what is behind a name nothing may count: resolved escapes leave bytes there. Behind an
        // empty one, which had no escapes, there is always its quote.
        const char* text = m_bytes + name.offset;
        const auto sum = name.extent + 7U * static_cast<unsigned char>(text[0]) +
                         static_cast<unsigned char>(text[name.extent / 2]);
        return std::uint64_t{1} << (sum & 63U);
    }

    void close(std::uint32_t self, std::uint32_t size) {
        m_first[self].offset = size & 0x0FFFFFFFU;
        m_first[self].extent = count();
    }

    bool text() {
        const std::size_t begin = *m_place++ + std::size_t{1};
        // Between a string and the next place there are blanks at most.
        std::size_t end = *m_place - std::size_t{1};
        while (m_bytes[end] != '"') {
            --end;
        }
        if (m_backslash >= end) {
            add(JsonKind::Text, begin, end - begin);
            return true;
        }
        return escapedText(begin, end);
    }

    bool escapedText(std::size_t begin, std::size_t end) {
        if (m_backslash < begin) {
            return false; // outside of a string
        }
        const auto size = resolveEscapes({m_bytes + begin, end - begin});
        m_backslash = nextBackslash(end);
        if (size) {
            add(JsonKind::Text, begin, *size);
        }
        return size.has_value();
    }

    bool number() {
        const std::size_t begin = *m_place++;
        const char* end = skipNumber(m_bytes + begin);
        if (!end || !scalarEndsAt(end)) {
            return false;
        }
        add(JsonKind::Number, begin, static_cast<std::size_t>(end - (m_bytes + begin)));
        return true;
    }

    bool word(std::string_view expected, JsonKind kind) {
        const char* begin = m_bytes + *m_place++;
        // Stops at the NUL behind the text.
        if (std::strncmp(begin, expected.data(), expected.size()) != 0 ||
            !scalarEndsAt(begin + expected.size())) {
            return false;
        }
        add(kind, 0, 0);
        return true;
    }

    /// Nothing but blanks stands between a word's end and the next place, unless it is part of it.
    [[nodiscard]] bool scalarEndsAt(const char* end) const {
        return end == m_bytes + *m_place || isBlank(*end);
    }

    char* m_bytes;
    const std::uint32_t* m_place;
    const std::uint32_t* m_end; ///< holds the text's size, where m_bytes has a NUL
    JsonDocument& m_document;
    JsonNode* m_first;
    JsonNode* m_next;        ///< behind the last node so far
    std::size_t m_backslash; ///< the first one that was not resolved yet
};

} // namespace

JsonParser::JsonParser() = default;
JsonParser::~JsonParser() = default;

std::shared_ptr<const JsonDocument> JsonParser::parse(std::shared_ptr<char[]> bytes,
                                                      std::size_t size) {
    if (size == 0 || size > maxJsonSize) {
        return nullptr;
    }
    std::shared_ptr<const JsonDocument> document;
    try {
        document = parseText(std::move(bytes), size);
    } catch (const std::bad_alloc&) {
        m_scanner.reset();
    }
    if (size > keptTextSize) {
        m_scanner.reset();
    }
    return document;
}

std::shared_ptr<const JsonDocument> JsonParser::parseText(std::shared_ptr<char[]> bytes,
                                                          std::size_t size) {
    if (!m_scanner) {
        m_scanner = std::make_unique<JsonScanner>();
    }
    bytes.get()[size] = '\0';
    const auto places = m_scanner->scan(bytes.get(), size);
    if (!places) {
        return nullptr;
    }
    auto document = std::make_shared<JsonDocument>();
    // Each node takes a place of its own and all but the first a separator or bracket.
    document->nodes = std::make_unique_for_overwrite<JsonNode[]>(places->size() + 1);
    document->bytes = bytes;
    return Grammar(bytes.get(), *places, *document).document() ? document : nullptr;
}

} // namespace korvale
