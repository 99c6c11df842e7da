#pragma once

#include "model/JsonDocument.h"

#include <cstdint>
#include <memory>

namespace korvale {

/// One file of the list of file threats, as indices of document nodes; 0 for what is missing.
struct FileThreatRecord {
    std::uint32_t path = 0;  ///< the record's name
    std::uint32_t state = 0; ///< the state itself, without the bit that grouping ignores
    std::uint32_t id = 0;
    std::uint32_t score = 0;
};

/// The record behind the name at `path`; its value is an object.
[[nodiscard]] FileThreatRecord readFileThreat(const std::shared_ptr<const JsonDocument>& document,
                                              std::uint32_t path);

} // namespace korvale
