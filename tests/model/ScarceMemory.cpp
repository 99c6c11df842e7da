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

// The C++ library makes these of the one above; a sanitizer's would go their own way.
void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
    return operator new(size, tag);
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}

void operator delete[](void* block) noexcept {
    std::free(block);
}

void operator delete[](void* block, std::size_t /*size*/) noexcept {
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
