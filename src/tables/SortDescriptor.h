#pragma once

#include "model/Row.h"

#include <vector>

namespace korvale {

/// One user's choice of order: by the text under `key`.
struct SortDescriptor {
    RowKey key = RowKey::File;
    bool ascending = true;
    friend bool operator==(const SortDescriptor&, const SortDescriptor&) = default;
};

/// In priority order: the first decides, later ones break its ties. Empty: no order.
using SortDescriptors = std::vector<SortDescriptor>;

/// What a click on a column title does: `key` decides from now on, ascending at first, turned when
/// it decided before; earlier choices break ties. True when it is ascending now.
bool sortFirstBy(SortDescriptors& descriptors, RowKey key);

} // namespace korvale
