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

constexpr long worthALook = 1L << 20; // bytes

/// Pages in memory that are this process's alone, as /proc/self/statm tells: "size resident shared
/// …".
long ownPages() {
    const QByteArray counts = readSmallFile("/proc/self/statm", 256).value_or(QByteArray());
    const QByteArrayList fields = counts.split(' ');
    return fields.size() > 2 ? fields[1].toLong() - fields[2].toLong() : 0;
}

} // namespace

void SpareMemory::giveBack() {
    const long pages = ownPages();
    if ((pages - m_settled) * ::sysconf(_SC_PAGESIZE) < worthALook) {
        m_settled = std::min(m_settled, pages);
        return;
    }
    ::malloc_trim(0);
    m_settled = ownPages();
}

} // namespace korvale
