#include "ScarceMemory.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

std::atomic<std::size_t> limit = std::numeric_limits<std::size_t>::max();
std::atomic<int> refusals = 0;

} // namespace

void* operator new(std::size_t size) {
    void* block = size < limit ? std::malloc(size) : nullptr;
    if (block == nullptr) {
        ++refusals;
        throw std::bad_alloc();
    }
    return block;
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}

namespace korvale {

ScarceMemory::ScarceMemory(std::size_t most) {
    refusals = 0;
    limit = most;
}

ScarceMemory::~ScarceMemory() {
    limit = std::numeric_limits<std::size_t>::max();
}

int ScarceMemory::refused() {
    return refusals;
}

} // namespace korvale
