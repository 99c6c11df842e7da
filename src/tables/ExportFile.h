#pragma once

#include "tables/RowExport.h"
#include "tables/RowSnapshot.h"

#include <QString>

#include <functional>
#include <span>

namespace korvale {

/// What became of an export.
struct ExportResult {
    enum class Outcome {
        Written,
        Cancelled,
        NoFile, ///< what stands there is no ordinary file: a folder, device, FIFO or socket
        NoRoom, ///< on the disk, or within what the person may use of it
        Failed,
    };
    Outcome outcome = Outcome::Failed;
    QString reason; ///< of Failed, in the user's language as far as the system has it
};

/// Writes `rows` to the file at `path`, links followed. It takes the place of what stands there
/// once it is whole and on the disk; whatever goes wrong before leaves that as it is, and nothing
/// beside it. A few kilobytes are in memory at a time. `goOn` is told how many rows are done every
/// so often, and ends the export when it returns false. Any thread, and waits for the disk.
[[nodiscard]] ExportResult writeRows(const RowSnapshot& rows, std::span<const ExportField> fields,
                                     ExportFormat format, const QString& path,
                                     const std::function<bool(std::size_t done)>& goOn);

} // namespace korvale
