// Asks which of several library traits of one name is meant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "character/KVRCharacter.h"

namespace kvr {

// `positions` are those of the library's collection; `text` ends before "Please select ...". Nullptr when the
// user cancelled.
const clsSystemItem* ChooseItem(const KVRCharacter& character, std::string_view name, std::string text,
                                const std::vector<std::size_t>& positions);

}  // namespace kvr
