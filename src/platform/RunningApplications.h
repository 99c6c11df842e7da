#pragma once

#include <QString>

#include <sys/types.h>
#include <vector>

namespace korvale {

struct RunningApplication {
    QString localizedName;
    pid_t pid; ///< of the oldest process, where several share one executable
};

/// The applications that this user runs in this session, this program among them.
class RunningApplications {
public:
    virtual ~RunningApplications() = default;
    /// By ascending pid. What ends while it is listed may be missing.
    [[nodiscard]] virtual std::vector<RunningApplication> list() const = 0;
};

} // namespace korvale
