// What a trait does to others when it is added: a procedure for each of the tags that say so.
//
// Until these rooms are filled, the tags stay on the trait as they are and nothing else changes; `ChangeLog`
// stays empty.
#include "character/KVRCharacter.h"

namespace kvr {

// No trait is set to a value, created or added.
void KVRCharacter::HandleSets(clsItem& /*item*/) {}
void KVRCharacter::HandleCreates(clsItem& /*item*/) {}
void KVRCharacter::HandleAdds(clsItem& /*item*/) {}
// No modifier is put on another trait or taken from it.
void KVRCharacter::HandleAddMods(clsItem& /*item*/) {}
void KVRCharacter::HandleRemoveMods(clsItem& /*item*/) {}
// The user is not asked; nothing is picked.
KVRCharacter::SelectResult KVRCharacter::HandleSelect(clsItem& /*item*/, int /*index*/, int /*count*/) {
  return {};
}
// No family is formed by the data; the user's own parents and children are in Parents.cpp.
void KVRCharacter::HandleParentOf(clsItem& /*item*/) {}
void KVRCharacter::HandleChildOf(clsItem& /*item*/) {}
// No tag of another trait is changed.
void KVRCharacter::HandleMergeTags(clsItem& /*item*/) {}
void KVRCharacter::HandleReplaceTags(clsItem& /*item*/) {}
// The character's own texts stay as they are.
void KVRCharacter::HandleRace(clsItem& /*item*/) {}
void KVRCharacter::HandleBodyType(clsItem& /*item*/) {}
void KVRCharacter::HandleCharWeight(clsItem& /*item*/) {}
void KVRCharacter::HandleCharHeight(clsItem& /*item*/) {}
void KVRCharacter::HandleAge(clsItem& /*item*/) {}
void KVRCharacter::HandleAppearance(clsItem& /*item*/) {}
// There is nothing to take back, since nothing was changed.
void KVRCharacter::HandleReversion(std::int32_t /*sourceKey*/) {}
bool KVRCharacter::SetExistingItemToValue(clsItem&, std::string_view, std::string_view) {
  return false;
}
bool KVRCharacter::ForceExistingItemToValue(clsItem&, std::string_view, std::string_view) {
  return false;
}
void KVRCharacter::AddModsFromAndList(clsItem&, std::string_view) {}
void KVRCharacter::ModAddsNewMode(clsMod& mod) {
  if (clsItem* item = mod.RootOwnerItem()) item->AddNewMode(mod.Tags().Value("addmode"));
}

}  // namespace kvr
