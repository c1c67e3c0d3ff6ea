// Directives: "#choice(...)", "#input(...)" and the like inside a tag list, which run when a trait is added.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "character/KVRCharacter.h"

namespace kvr::modDirectives {

struct Substitution {
  std::string name, value;
};

// Each runs its kind of directives over the text and returns true when the user cancelled. `protectedVars`
// are names with the values put in their place.
bool HandleDirectives(std::string& text, KVRCharacter& character,
                      const std::vector<Substitution>& protectedVars);
bool HandleSpecialDirectives(std::string& text, KVRCharacter& character,
                             const std::vector<Substitution>& protectedVars);
bool HandleSelectXDirectives(std::string& text, KVRCharacter& character,
                             const std::vector<Substitution>& protectedVars);
// Puts the traits that were added in the place of "%addeditemslist%".
void HandleAddedItemsList(std::string& text, const std::vector<std::int32_t>& addedItems,
                          KVRCharacter& character);

// "#buildcombo": true when cancelled. "#buildit" and "#edit".
bool HandleBuildCombo(clsItem& item, bool noInitMods);
void HandleBuildIt(clsItem& item, bool noInitMods);
void HandleEdit(clsItem& item);

}  // namespace kvr::modDirectives
