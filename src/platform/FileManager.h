#pragma once

#include <QString>

#include <functional>

QT_BEGIN_NAMESPACE
class QObject;
QT_END_NAMESPACE

namespace korvale {

/// Shows files where they are, in the user's file manager, and never opens or runs one. Main
/// thread; never waits for a disk or for the file manager.
class FileManager {
public:
    using Answer = std::function<void(bool)>;

    virtual ~FileManager() = default;
    /// Whether there is something at `path`. Answered later, on the main thread, unless `context`
    /// has gone by then; not at all while its file system hangs.
    virtual void lookFor(const QString& path, QObject* context, Answer answer) = 0;
    /// Shows what is at `path`, or its folder; false when neither can be shown.
    virtual void show(const QString& path, QObject* context, Answer answer) = 0;
};

} // namespace korvale
