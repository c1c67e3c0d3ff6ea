// What follows when data change the tags of a trait that is on a character.
#pragma once

#include <string>
#include <string_view>

#include "character/KVRCharacter.h"

namespace kvr {

// The value of a tag as it is stored, formulas unsolved.
std::string StoredTagText(const clsItem& item, std::string_view tag);
// True for the tags from which the trait's bonuses, conditionals and taboos are made.
bool MakesRecords(std::string_view tag);
// Makes the trait's links anew, and its records if wanted, calculates it and spreads that.
void SpreadTagChange(clsItem& item, bool remakeRecords);

}  // namespace kvr
