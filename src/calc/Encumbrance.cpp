// How heavily a load weighs on the character.
#include "calc/Explanation.h"
#include "character/KVRCharacter.h"

namespace kvr {

std::int16_t KVRCharacter::GetEncLevel(Currency weight) {
  constexpr std::string_view kLimits[] = {"No Encumbrance", "Light Encumbrance", "Medium Encumbrance",
                                          "Heavy Encumbrance", "X-Heavy Encumbrance"};
  explain::Section section(*this, "enclevel,encumbrancelevel");
  const double load = weight.ToDouble();
  explain::Note(*this, "load: ", load);
  std::int16_t level = 0;
  for (std::string_view limit : kLimits) {
    const clsItem* stat = FindItem(limit, kStats);
    if (stat != nullptr) explain::Note(*this, limit, " up to ", stat->Score());
    if (stat != nullptr && stat->Score() >= load) return level;
    ++level;
  }
  return level;
}

}  // namespace kvr
