#include "agent/watch/LockedPages.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <link.h>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace korvale::agent {
namespace {

int lockObject(dl_phdr_info* object, std::size_t /*size*/, void* /*unused*/) {
    const std::string_view name = object->dlpi_name == nullptr ? "" : object->dlpi_name;
    if (!name.empty() && name.find("/libc.so") == std::string_view::npos) {
        return 0;
    }
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    for (ElfW(Half) index = 0; index < object->dlpi_phnum; ++index) {
        const ElfW(Phdr)& part = object->dlpi_phdr[index];
        if (part.p_type == PT_LOAD && (part.p_flags & PF_X) != 0) {
            const std::uintptr_t from = (object->dlpi_addr + part.p_vaddr) & ~(page - 1);
            const std::uintptr_t to = object->dlpi_addr + part.p_vaddr + part.p_memsz;
            ::mlock(std::bit_cast<const void*>(from), to - from);
        }
    }
    return 0;
}

} // namespace

void lockOwnPages() {
    ::mlockall(MCL_CURRENT | MCL_FUTURE | MCL_ONFAULT);
    ::dl_iterate_phdr(lockObject, nullptr);
}

} // namespace korvale::agent
