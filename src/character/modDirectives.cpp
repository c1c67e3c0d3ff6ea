// Finds the directives in a tag list and puts what they come to in their place.
//
// Until these rooms are filled, directives stay in the text as they were written, and nobody is asked.
#include "character/modDirectives.h"

namespace kvr::modDirectives {

// No text changes, and nothing is cancelled.
bool HandleDirectives(std::string& /*text*/, KVRCharacter& /*character*/,
                      const std::vector<Substitution>& /*protectedVars*/) {
  return false;
}
bool HandleSpecialDirectives(std::string& /*text*/, KVRCharacter& /*character*/,
                             const std::vector<Substitution>& /*protectedVars*/) {
  return false;
}
bool HandleSelectXDirectives(std::string& /*text*/, KVRCharacter& /*character*/,
                             const std::vector<Substitution>& /*protectedVars*/) {
  return false;
}
// "%addeditemslist%" stays in the text.
void HandleAddedItemsList(std::string& /*text*/, const std::vector<std::int32_t>& /*addedItems*/,
                          KVRCharacter& /*character*/) {}

// The words stay in the tag list, and no window opens.
bool HandleBuildCombo(clsItem& /*item*/, bool /*noInitMods*/) {
  return false;
}
void HandleBuildIt(clsItem& /*item*/, bool /*noInitMods*/) {}
void HandleEdit(clsItem& /*item*/) {}

}  // namespace kvr::modDirectives
