#include "model/JsonScanner.h"

#include <simdjson.h>

namespace korvale {

// simdjson's own interface to its first stage is not public, and what is said of the places in this
// class's interface is not written down by simdjson in full. It holds for versions 3.0 to 4.x and
// for all their implementations, and JsonScannerTest proves it for each one that the machine can
// run. The public On-Demand interface can be as strict, but takes a tenth more instructions a list;
// the DOM cannot keep what a list needs (spellings of numbers, integers of any size).
struct JsonScanner::Implementation {
    std::unique_ptr<simdjson::internal::dom_parser_implementation> parser;

    /// simdjson needs one place for each byte at worst; untouched ones cost no memory.
    bool makeRoom(std::size_t size) {
        if (!parser) {
            return simdjson::get_active_implementation()->create_dom_parser_implementation(
                       size, 1, parser) == simdjson::SUCCESS;
        }
        return size <= parser->capacity() || parser->allocate(size, 1) == simdjson::SUCCESS;
    }
};

JsonScanner::JsonScanner() : m_implementation(std::make_unique<Implementation>()) {}

JsonScanner::~JsonScanner() = default;

std::optional<std::span<const std::uint32_t>> JsonScanner::scan(const char* bytes,
                                                                std::size_t size) {
    auto& parser = m_implementation->parser;
    if (!m_implementation->makeRoom(size)) {
        parser.reset();
        return std::nullopt;
    }
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): simdjson reads bytes
    const auto* from = static_cast<const std::uint8_t*>(static_cast<const void*>(bytes));
    if (parser->stage1(from, size, simdjson::stage1_mode::regular) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    return std::span<const std::uint32_t>(parser->structural_indexes.get(),
                                          parser->n_structural_indexes);
}

} // namespace korvale
