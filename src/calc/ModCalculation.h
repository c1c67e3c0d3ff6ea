// Steps of the calculation of modifiers that the source files of that topic share.
#pragma once

#include <string_view>

#include "character/clsMod.h"

namespace kvr::modCalculation {

// Sets `level` (within its limits), `premodsvalue`, `value` and `valuenum` from the modifier's own tags, with
// nothing of what is on it.
void CalcValue(clsMod& mod);
// Writes a result, unless the tag says so already.
void WriteTag(clsMod& mod, std::string_view tag, std::string_view value);

}  // namespace kvr::modCalculation
