#include "model/HostCache.h"

#include "model/HostCacheFiles.h"
#include "platform/RegularFile.h"
#include "platform/RootedPath.h"

#include <QStringBuilder>

#include <array>

namespace korvale {

namespace {

struct MaskedFile {
    std::uint32_t bit;
    const char* name;
    const char* key;
};

/// Bit 8 names no file, and bits above 2048 none either. The names are the agent's: that of bit 16
/// differs from the process list's, HostCacheFile::processStates, on purpose.
constexpr std::array<MaskedFile, 11> maskedFiles{{
    {1, HostCacheFile::fileStates, "FileStateMessage"},
    {2, HostCacheFile::scannerState, "ScannerStateMessage"},
    {4, HostCacheFile::analysisCount, "AnalysisCountMessage"},
    {16, HostCacheFile::processState, "ProcessStateMessage"},
    {32, HostCacheFile::exeBlocked, "ExeBlockedMessage"},
    {64, HostCacheFile::quillmarStatus, "QuillmarStatusMessage"},
    {128, HostCacheFile::processTerminated, "ProcessTerminatedMessage"},
    {256, HostCacheFile::processActionBlocked, "ProcessActionBlockedMessage"},
    {512, HostCacheFile::halyxHostStatus, "HalyxHostStatusMessage"},
    {1024, HostCacheFile::consumerNotification, "ConsumerNotificationMessage"},
    {2048, HostCacheFile::externalDevices, "ExternalDeviceNotificationMessage"},
}};

constexpr QLatin1String userNotificationOn("UserNotificationOn");
constexpr QLatin1String showUserNotificationChanged("ShowUserNotificationChanged");

} // namespace

HostCache::HostCache(UserDefaults& defaults)
    : HostCache(defaults, rootedPath(QStringLiteral(KORVALE_SUPPORT_DIR "/HostCache"))) {}

HostCache::HostCache(UserDefaults& defaults, QString folder)
    : m_defaults(defaults), m_folder(std::move(folder)) {}

std::optional<JsonValue> HostCache::readFile(const QString& name) {
    auto file = RegularFile::open(pathOf(name));
    auto content = file ? file->readAll() : std::nullopt;
    if (!content) {
        return std::nullopt;
    }
    auto document = m_parser.parse(std::move(content->bytes), content->size);
    return document ? std::optional(JsonValue(std::move(document), 0)) : std::nullopt;
}

std::optional<JsonValue> HostCache::readFile(const QString& name, bool& isUnreadable) {
    const QString path = pathOf(name);
    auto content = readFile(name);
    if (content) {
        m_unreadable.wasRead(path);
    }
    isUnreadable = !content && m_unreadable.couldNotBeRead(path);
    return content;
}

std::map<QString, JsonValue> HostCache::getLatest(std::uint32_t mask) {
    std::map<QString, JsonValue> latest;
    for (const MaskedFile& file : maskedFiles) {
        if ((mask & file.bit) == 0) {
            continue;
        }
        if (auto content = readFile(QString::fromLatin1(file.name))) {
            latest.emplace(QString::fromLatin1(file.key), std::move(*content));
        }
    }
    return latest;
}

ListRead HostCache::readList(const QString& name, const ListChecksum& last) {
    const QString path = pathOf(name);
    ListRead read = readListFile(path, last, m_parser);
    if (read.state != ListState::Absent) {
        m_unreadable.wasRead(path);
    } else if (m_unreadable.couldNotBeRead(path)) {
        read.state = ListState::Unreadable;
    }
    return read;
}

bool HostCache::isCurrentUserNotificationOn() const {
    return hasCurrentUserChangedNotification() && m_defaults.boolForKey(userNotificationOn);
}

bool HostCache::hasCurrentUserChangedNotification() const {
    return m_defaults.boolForKey(showUserNotificationChanged);
}

void HostCache::setCurrentUserNotification(bool on, bool changed) {
    setFlag(userNotificationOn, on);
    setFlag(showUserNotificationChanged, changed);
}

QString HostCache::pathOf(const QString& name) const {
    return m_folder % QLatin1Char('/') % name;
}

void HostCache::setFlag(const QString& key, bool value) {
    if (value) {
        m_defaults.setInteger(key, 1);
    } else {
        m_defaults.removeObject(key);
    }
}

} // namespace korvale
