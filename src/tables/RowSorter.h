#pragma once

#include "tables/RowList.h"
#include "tables/SortDescriptor.h"

#include <span>

namespace korvale {

/// Sorts `rows` in place and stably, also when descending. A text becomes its sort key once; later
/// descriptors look only at the rows that the earlier ones left equal.
void sortRows(std::span<RowRef> rows, std::span<const RowBatchPtr> batches,
              std::span<const SortDescriptor> descriptors);

} // namespace korvale
