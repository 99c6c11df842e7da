#include "tables/SortDescriptor.h"

#include <algorithm>

namespace korvale {

bool sortFirstBy(SortDescriptors& descriptors, RowKey key) {
    const bool turns = !descriptors.empty() && descriptors.front().key == key;
    const bool ascending = !turns || !descriptors.front().ascending;
    std::erase_if(descriptors, [key](const SortDescriptor& old) { return old.key == key; });
    descriptors.insert(descriptors.begin(), {key, ascending});
    return ascending;
}

} // namespace korvale
