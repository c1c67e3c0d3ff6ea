// Prerequisites and taboos of traits on a character.
//
// Until these rooms are filled, no check changes a trait's flags and no taboo is recorded.
#include "character/KVRCharacter.h"

namespace kvr {

// The flag stands as it was saved; nothing is asked, added or reported.
bool KVRCharacter::ItemNeedsCheck(clsItem& /*item*/, bool /*askToAdd*/, bool /*report*/) {
  return false;
}
// The flag and the text of what was found stand as they were saved.
bool KVRCharacter::ItemTabooCheck(clsItem& /*item*/, bool /*report*/) {
  return false;
}
// `Taboos` stays empty, so the three below have nothing to take away or to bring back.
void KVRCharacter::AddTaboosFromOwner(clsItem& /*owner*/) {}
void KVRCharacter::RemoveTaboosFromOwner(clsItem& /*owner*/) {}
void KVRCharacter::DisableItemTaboos(clsItem& /*item*/) {}
void KVRCharacter::EnableItemTaboos(clsItem& /*item*/) {}
std::vector<std::string> KVRCharacter::NeedsCheckAll(bool) {
  return {};
}
std::vector<std::string> KVRCharacter::NeedsCheckSelected(const std::vector<std::string>&) {
  return {};
}
std::string KVRCharacter::NeedsListUserFriendly(std::string text) {
  return text;
}
void KVRCharacter::AddSpecifiedItems(std::string_view, std::string_view) {}

}  // namespace kvr
