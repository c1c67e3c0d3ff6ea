// What the skill type of a trait makes of it: an ordinary skill, a technique or a combination.
#include "character/KVRCharacter.h"

namespace kvr {

void clsItem::CalcManeuver() {
  const clsSkillCosts* type = Owner->SkillType(type_.empty() ? "IQ/H" : std::string_view(type_));
  maneuver_ = 0;
  if (!type) return;
  if (type->DefaultStat == "%default") maneuver_ = 1;
  if (type->DefaultStat == "%combo") maneuver_ = 2;
  SetTagItem("sd", std::to_string(maneuver_));
}

}  // namespace kvr
