// What the JSON parser relies on of the library's first stage, on each of the library's
// implementations that this machine can run.
#include "model/JsonScanner.h"

#include "PlainJson.h"
#include "RandomLists.h"
#include "model/JsonParser.h"
#include "model/JsonValue.h"

#include <gtest/gtest.h>
#include <simdjson.h>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace korvale {
namespace {

std::vector<const simdjson::implementation*> implementations() {
    std::vector<const simdjson::implementation*> usable;
    for (const simdjson::implementation* candidate : simdjson::get_available_implementations()) {
        if (candidate->supported_by_runtime_system()) {
            usable.push_back(candidate);
        }
    }
    return usable;
}

class JsonScannerOf : public testing::TestWithParam<const simdjson::implementation*> {
protected:
    JsonScannerOf() { simdjson::get_active_implementation() = GetParam(); }
    ~JsonScannerOf() override { simdjson::get_active_implementation() = m_usual; }

    /// No value where the scanner has none.
    std::optional<std::vector<std::uint32_t>> places(const std::string& text) {
        const auto found = m_scanner.scan(text.data(), text.size());
        return found ? std::optional(std::vector<std::uint32_t>(found->begin(), found->end()))
                     : std::nullopt;
    }

private:
    const simdjson::implementation* m_usual = simdjson::get_active_implementation();
    JsonScanner m_scanner;
};

/// The places of a text whose strings are closed, one character after the other.
std::vector<std::uint32_t> plainPlaces(const std::string& text) {
    std::vector<std::uint32_t> places;
    bool inString = false;
    bool inOther = false;
    for (std::uint32_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (inString) {
            at += c == '\\' ? 1 : 0;
            inString = c != '"';
            continue;
        }
        const bool structural = std::string_view("[]{}:,").find(c) != std::string_view::npos;
        const bool blank = std::string_view(" \t\r\n").find(c) != std::string_view::npos;
        inString = c == '"';
        if (structural || inString || (!blank && !inOther)) {
            places.push_back(at);
        }
        inOther = !structural && !blank && !inString;
    }
    return places;
}

TEST_P(JsonScannerOf, FindsThePlacesOfValidTexts) {
    RandomNumbers numbers(11);
    for (int round = 0; round < 200; ++round) {
        const std::string text = RandomLists(numbers).list(below(numbers, 30));
        EXPECT_EQ(places(text), plainPlaces(text)) << text;
    }
}

TEST_P(JsonScannerOf, PutsTheTextsSizeBehindTheLastPlace) {
    JsonScanner scanner;
    for (std::size_t size = 2; size < 300; ++size) {
        const std::string text = "[" + std::string(size - 2, ' ') + "]";
        const auto found = scanner.scan(text.data(), text.size());
        ASSERT_TRUE(found);
        EXPECT_EQ(*(found->data() + found->size()), size);
    }
}

TEST_P(JsonScannerOf, RefusesWhatIsNotUtf8OrNoClosedString) {
    for (const char* wrong :
         {"[\"a]", "[\"\\\"]", "[\"\x01\"]", "[\"a\nb\"]", "[\"\x1F\"]", "[\"\xFF\"]", "[\"\xC3\"]",
          "[\"\xED\xA0\x80\"]", "[\"\xC0\xAF\"]", "", " "}) {
        for (const std::size_t before : {0, 1, 30, 31, 60, 61, 62, 63, 64, 126, 127, 128}) {
            EXPECT_FALSE(places(std::string(before, ' ') + wrong)) << before << wrong;
        }
    }
}

TEST_P(JsonScannerOf, ReadsListsAsThePlainReaderDoes) {
    RandomNumbers numbers(12);
    for (int round = 0; round < 2000; ++round) {
        const std::string text = damaged(RandomLists(numbers).list(1 + below(numbers, 4)), numbers);
        const auto plain = parsePlainJson(text);
        const auto fast = JsonValue::parse(QByteArray::fromStdString(text));
        ASSERT_EQ(plain.has_value(), fast.has_value()) << text;
        ASSERT_TRUE(!plain || plain->members.size() + plain->elements.size() == fast->size());
    }
}

/// Bytes whose last one is the last that may be touched.
std::shared_ptr<char[]> bytesAtAnEdge(std::size_t size) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t whole = (size + page - 1) / page * page;
    void* memory =
        mmap(nullptr, whole + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::bad_alloc();
    }
    char* begin = static_cast<char*>(memory);
    mprotect(begin + whole, page, PROT_NONE);
    return {begin + (whole - size), [=](char*) { munmap(memory, whole + page); }};
}

TEST_P(JsonScannerOf, NothingBehindTheOneByteOfPaddingIsTouched) {
    JsonParser parser;
    RandomNumbers numbers(13);
    for (int round = 0; round < 400; ++round) {
        const std::string valid = RandomLists(numbers).list(below(numbers, 6));
        for (const std::string& text : {valid, damaged(valid, numbers)}) {
            const std::shared_ptr<char[]> bytes = bytesAtAnEdge(text.size() + jsonPadding);
            std::copy(text.begin(), text.end(), bytes.get());
            EXPECT_EQ(parser.parse(bytes, text.size()) != nullptr, parsePlainJson(text).has_value())
                << text;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EachUsable, JsonScannerOf, testing::ValuesIn(implementations()),
                         [](const auto& one) { return one.param->name(); });

} // namespace
} // namespace korvale
