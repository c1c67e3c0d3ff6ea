// A character in plain text, as a player would read it at a glance.
#pragma once

#include <string>
#include <vector>

#include "character/KVRCharacter.h"

namespace kvr {

std::vector<std::string> CharacterSummary(KVRCharacter& character);

}  // namespace kvr
