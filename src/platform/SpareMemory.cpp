#include "platform/SpareMemory.h"

#include "platform/SmallFile.h"

#include <QByteArray>
#include <QList>

#include <algorithm>
#include <cstdlib>
#include <malloc.h>
#include <unistd.h>

namespace korvale {
namespace {

constexpr long worthAWalk = 1L << 15; // bytes

/// Bytes in memory that are this process's alone, as /proc/self/statm tells in pages: "size
/// resident shared …".
long ownMemory() {
    const QByteArray counts = readSmallFile("/proc/self/statm", 256).value_or(QByteArray());
    const QByteArrayList fields = counts.split(' ');
    return fields.size() > 2 ? (fields[1].toLong() - fields[2].toLong()) * ::sysconf(_SC_PAGESIZE)
                             : 0;
}

/// Bytes in memory that the program does not use at present: what it has freed, and some that never
/// goes back, as stacks and what libraries have of their own.
long spareMemory() {
    const struct mallinfo2 heap = ::mallinfo2();
    return ownMemory() - static_cast<long>(heap.uordblks + heap.hblkhd);
}

} // namespace

void keepMemoryInOnePlace() {
    ::mallopt(M_ARENA_MAX, 1); // each thread has its own small store in front of it
}

void SpareMemory::giveBack() {
    const long spare = spareMemory();
    if (spare - m_spare < worthAWalk) {
        m_spare = std::min(m_spare, spare);
        return;
    }
    ::malloc_trim(0);
    m_spare = spareMemory();
}

} // namespace korvale
