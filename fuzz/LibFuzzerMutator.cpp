// Half of libFuzzer's inputs are its own, the other half follow the target's grammar.

#include "Target.h"

#include <algorithm>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed) {
    korvale::fuzz::Random random(seed);
    if (random() % 2 == 0) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    const std::string result = korvale::fuzz::mutated(korvale::fuzz::targetGrammar(),
                                                      korvale::fuzz::textOf(data, size), random);
    const std::size_t length = std::min(result.size(), maxSize);
    std::copy_n(result.begin(), length, data);
    return length;
}
