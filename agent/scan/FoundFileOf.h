#pragma once

#include "agent/scan/ScanTypes.h"
#include "agent/scan/TreeWalk.h"

namespace korvale::agent {

/// What the judgement of an open file amounts to for who keeps findings; without a permit. Any
/// thread.
[[nodiscard]] FoundFile foundFileOf(const WalkedFile& file, Judgement judgement);

} // namespace korvale::agent
