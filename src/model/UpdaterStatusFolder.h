#pragma once

#include <QString>

#include <optional>
#include <string>

namespace korvale {

/// Where the updater leaves its status messages, one encrypted text a file. The files are never
/// deleted here; which one was displayed last is known for the life of the object. Main thread.
class UpdaterStatusFolder {
public:
    /// The folder below KORVALE_SUPPORT_DIR, behind KORVALE_ROOT where that is set.
    UpdaterStatusFolder();
    explicit UpdaterStatusFolder(QString folder);

    /// Full path of the file to display next: that with the lowest name, by character code, beyond
    /// the one displayed last. It counts as displayed from now on, readable or not. No value when
    /// there is none, or no folder. What is no regular file is not there.
    [[nodiscard]] std::optional<QString> takeNext();

private:
    QString m_folder;
    std::string m_lastDisplayed = "0"; ///< so that only names beyond this one are ever shown
};

/// The whole file as UTF-8 text; no value when it cannot be read, is something else, or has more
/// than 1 MiB.
[[nodiscard]] std::optional<QString> readStatusFile(const QString& path);

} // namespace korvale
