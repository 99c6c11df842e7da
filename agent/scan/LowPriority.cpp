#include "agent/scan/LowPriority.h"

#include <linux/ioprio.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace korvale::agent {

void lowerOwnPriority() {
    constexpr int nice = 10;
    constexpr int self = 0;
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), nice);
    ::syscall(SYS_ioprio_set, IOPRIO_WHO_PROCESS, self, IOPRIO_PRIO_VALUE(IOPRIO_CLASS_IDLE, 0));
}

} // namespace korvale::agent
