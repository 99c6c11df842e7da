#include "model/UnreadableFiles.h"

#include "core/base/Logging.h"

namespace korvale {

bool UnreadableFiles::couldNotBeRead(const QString& path) {
    const std::optional<FileStamp> stamp = fileStamp(path);
    if (!stamp) {
        m_told.remove(path);
        return false;
    }
    const auto told = m_told.constFind(path);
    if (told == m_told.constEnd() || *told != *stamp) {
        m_told.insert(path, *stamp);
        logLine(LogLevel::Warn,
                "%@ is there and cannot be read: what the agent has found is not known from it.",
                path);
    }
    return true;
}

} // namespace korvale
