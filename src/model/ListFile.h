#pragma once

#include "model/JsonParser.h"
#include "model/JsonValue.h"
#include "model/ListChecksum.h"

#include <QString>

namespace korvale {

enum class ListState {
    Absent,     ///< missing, no regular file, too large or not valid JSON
    Unreadable, ///< all but missing, where a caller tells them apart
    Empty,      ///< an object or list without members
    Unchanged,  ///< the members and values that the remembered checksum stands for
    Changed,
};

/// A list file as it was found. A JSON list on top that holds something is a list too: it can
/// change, and is then parsed as one without records.
struct ListRead {
    ListState state = ListState::Absent;
    /// Of Unchanged and Changed lists, to be remembered when the list is parsed. That of an
    /// Unchanged list may be remembered at once: it knows the present bytes.
    ListChecksum checksum;
    /// What the file holds; null for Absent, and for Unchanged where the very bytes are the same.
    JsonValue list;
};

/// Reads the list at `path` and compares it with the one that `last` was remembered of. The same
/// bytes are not parsed, nor kept in memory.
[[nodiscard]] ListRead readListFile(const QString& path, const ListChecksum& last,
                                    JsonParser& parser);

} // namespace korvale
