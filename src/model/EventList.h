#pragma once

#include "model/JsonValue.h"
#include "model/ListFile.h"
#include "model/RememberedLists.h"

#include <QString>

#include <optional>

namespace korvale {

class HostCache;

/// The list of file and process events as one batch finds it. Two steps of a batch ask for it: it
/// is read when the first of them does, and once only. Main thread.
class EventList {
public:
    EventList(HostCache& hostCache, RememberedLists& remembered)
        : m_hostCache(hostCache), m_remembered(remembered) {}

    /// How it was found.
    [[nodiscard]] ListState state() { return read().state; }

    /// Name of the exploit type of the first record; empty when there is none.
    [[nodiscard]] QString firstExploitTypeName();

    /// The list, when it has members and is not the one that was taken last. It counts as taken
    /// then, and the next question reads the file anew.
    [[nodiscard]] std::optional<JsonValue> takeChanged();

private:
    const ListRead& read();

    HostCache& m_hostCache;
    RememberedLists& m_remembered;
    std::optional<ListRead> m_read;
};

/// Name of the exploit type of the first record of an event list; empty when there is none.
[[nodiscard]] QString firstExploitTypeName(const JsonValue& events);

} // namespace korvale
