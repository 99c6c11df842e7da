#pragma once

#include "Mutation.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

// What each fuzz target defines: this grammar, and LLVMFuzzerTestOneInput.

namespace korvale::fuzz {

[[nodiscard]] const Grammar& targetGrammar();

/// Inputs that the code under test took for valid, so that a driver can tell when hardly one is.
inline std::size_t taken = 0;

/// What must hold of every input.
inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

[[nodiscard]] inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {static_cast<const char*>(static_cast<const void*>(data)), size};
}

} // namespace korvale::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
