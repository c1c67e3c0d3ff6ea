// Bonuses and conditionals: making the records of a trait from its `gives` and `conditional` tags, dropping
// them, and keeping their values up to date.
#include "character/KVRCharacter.h"

namespace kvr {

void clsBonus::Calculate() {}

void KVRCharacter::AddBonusesFromOwner(CalcItem& /*owner*/) {}
void KVRCharacter::RemoveBonusesFromOwner(CalcItem& /*owner*/) {}
void KVRCharacter::AddConditionalsFromOwner(CalcItem& /*owner*/) {}
void KVRCharacter::RemoveConditionalsFromOwner(CalcItem& /*owner*/) {}
void KVRCharacter::AddBonusesFromOwnerAsConditionals(CalcItem& /*owner*/) {}
void KVRCharacter::DisableItemBonuses(clsItem& /*item*/) {}
void KVRCharacter::EnableItemBonuses(clsItem& /*item*/) {}
void KVRCharacter::DeActivateItemModsBonuses(clsItem& /*item*/) {}
void KVRCharacter::ReActivateItemModsBonuses(clsItem& /*item*/) {}

bool clsItem::BonusAppliesByRef(const clsBonus& /*bonus*/) {
  return false;
}
bool clsItem::UpdateMyBonuses() {
  return false;
}
bool clsItem::UpdateMyConditionals() {
  return false;
}
bool clsMod::UpdateMyBonuses() {
  return false;
}
bool clsMod::UpdateMyConditionals() {
  return false;
}

}  // namespace kvr
