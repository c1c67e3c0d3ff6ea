// How heavily a load weighs on the character.
#include "character/KVRCharacter.h"

namespace kvr {

std::int16_t KVRCharacter::GetEncLevel(Currency weight) {
  constexpr std::string_view kLimits[] = {"No Encumbrance", "Light Encumbrance", "Medium Encumbrance",
                                          "Heavy Encumbrance", "X-Heavy Encumbrance"};
  const double load = weight.ToDouble();
  std::int16_t level = 0;
  for (std::string_view limit : kLimits) {
    const clsItem* stat = FindItem(limit, kStats);
    if (stat != nullptr && stat->Score() >= load) return level;
    ++level;
  }
  return level;
}

}  // namespace kvr
