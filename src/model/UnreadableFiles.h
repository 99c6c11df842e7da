#pragma once

#include "platform/FileStamp.h"

#include <QHash>
#include <QString>

namespace korvale {

/// Remembers which of the agent's files are there and cannot be read, and says so in the log: once
/// a change of the file, however often it is tried. Main thread.
class UnreadableFiles {
public:
    /// The file at `path` was read.
    void wasRead(const QString& path) { m_told.remove(path); }
    /// It was not. True when it is there: that is worth a WARN line, the first time. False when it
    /// is missing, which is not.
    bool couldNotBeRead(const QString& path);

private:
    QHash<QString, FileStamp> m_told;
};

} // namespace korvale
