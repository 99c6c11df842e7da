#include "agent/watch/FileEvents.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/fanotify.h>

namespace korvale::agent {
namespace {

constexpr std::size_t kLongestHandle = 128; // MAX_HANDLE_SZ

/// A copy: the buffer is not aligned for it.
template <typename Type>
std::optional<Type> copyOf(std::span<const char> bytes) {
    Type value;
    if (bytes.size() < sizeof value) {
        return std::nullopt;
    }
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

/// Folder and name from one record behind an event.
bool takeNameRecord(std::span<const char> record, FileEvent& event) {
    constexpr std::size_t handleAt = offsetof(fanotify_event_info_fid, handle);
    constexpr std::size_t bytesAt = offsetof(struct file_handle, f_handle);
    struct Head {
        unsigned int bytes;
        int type;
    };
    constexpr std::size_t systemAt = offsetof(fanotify_event_info_fid, fsid);
    if (record.size() < handleAt + bytesAt) {
        return false;
    }
    const std::span<const char> handle = record.subspan(handleAt);
    const auto head = copyOf<Head>(handle);
    if (!head || head->bytes > kLongestHandle || handle.size() < bytesAt + head->bytes) {
        return false;
    }
    static_assert(handleAt - systemAt == sizeof event.fileSystem);
    std::memcpy(&event.fileSystem, record.subspan(systemAt).data(), sizeof event.fileSystem);
    const std::span<const char> name = handle.subspan(bytesAt + head->bytes);
    const auto end = std::find(name.begin(), name.end(), '\0');
    if (end == name.end()) {
        return false;
    }
    event.name.assign(name.begin(), end);
    event.folder.assign(handle.begin(),
                        handle.begin() + static_cast<std::ptrdiff_t>(bytesAt + head->bytes));
    return !event.name.empty() && event.name != "." && event.name != ".." &&
           event.name.find('/') == std::string::npos;
}

bool takeRecords(std::span<const char> records, FileEvent& event) {
    while (const auto header = copyOf<fanotify_event_info_header>(records)) {
        if (header->len < sizeof *header || header->len > records.size()) {
            return false;
        }
        if (header->info_type == FAN_EVENT_INFO_TYPE_DFID_NAME) {
            return takeNameRecord(records.first(header->len), event);
        }
        records = records.subspan(header->len);
    }
    return false;
}

} // namespace

FileEvents parseFileEvents(std::span<const char> bytes) {
    FileEvents found;
    while (const auto head = copyOf<fanotify_event_metadata>(bytes)) {
        if (head->event_len < sizeof *head || head->event_len > bytes.size() ||
            head->metadata_len < sizeof *head || head->metadata_len > head->event_len) {
            break;
        }
        const std::span<const char> event = bytes.first(head->event_len);
        bytes = bytes.subspan(head->event_len);
        if ((head->mask & FAN_Q_OVERFLOW) != 0) {
            found.overflow = true;
            continue;
        }
        FileEvent taken;
        taken.process = head->pid;
        taken.isFolder = (head->mask & FAN_ONDIR) != 0;
        taken.descriptor = head->fd;
        if (head->fd >= 0 || takeRecords(event.subspan(head->metadata_len), taken)) {
            found.events.push_back(std::move(taken));
        }
    }
    return found;
}

} // namespace korvale::agent
