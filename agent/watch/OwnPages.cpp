#include "agent/watch/OwnPages.h"

#include <bit>
#include <cstdint>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace korvale::agent {
namespace {

constexpr std::size_t kStack = std::size_t{64} << 10;

/// Also makes the stack as long as it may have to be.
[[gnu::noinline]] void lockStack() {
    std::array<char, kStack> room; // NOLINT(*-member-init): only its place counts
    volatile char* const begin = room.data();
    for (std::size_t at = 0; at < room.size(); at += 512) {
        begin[at] = 0;
    }
    ::mlock(room.data(), room.size());
}

} // namespace

int OwnPages::add(dl_phdr_info* object, std::size_t /*size*/, void* pages) {
    OwnPages& found = *static_cast<OwnPages*>(pages);
    const std::string_view name = object->dlpi_name == nullptr ? "" : object->dlpi_name;
    if (!name.empty() && name.find("/libc.so") == std::string_view::npos) {
        return 0;
    }
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    for (ElfW(Half) index = 0; index < object->dlpi_phnum; ++index) {
        const ElfW(Phdr)& part = object->dlpi_phdr[index];
        if (part.p_type == PT_LOAD && (part.p_flags & (PF_X | PF_W)) != 0 &&
            found.m_count < found.m_parts.size()) {
            const std::uintptr_t from = (object->dlpi_addr + part.p_vaddr) & ~(page - 1);
            const std::uintptr_t to = object->dlpi_addr + part.p_vaddr + part.p_memsz;
            found.m_parts[found.m_count++] = {std::bit_cast<const void*>(from), to - from};
        }
    }
    return 0;
}

OwnPages OwnPages::find() {
    OwnPages pages;
    ::dl_iterate_phdr(&OwnPages::add, &pages);
    return pages;
}

void OwnPages::lock() const {
    ::mlockall(MCL_CURRENT | MCL_FUTURE | MCL_ONFAULT);
    for (std::size_t index = 0; index < m_count; ++index) {
        ::mlock(m_parts[index].begin, m_parts[index].size);
    }
    lockStack();
}

} // namespace korvale::agent
