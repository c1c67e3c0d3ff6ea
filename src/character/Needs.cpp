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

}  // namespace kvr
