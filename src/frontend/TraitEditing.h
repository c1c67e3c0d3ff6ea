// What a user's edit of a trait does, whichever window or command it comes from: the change, and the
// recalculation of everything that depends on it.
#pragma once

#include <string>
#include <string_view>

#include "character/KVRCharacter.h"

namespace kvr::TraitEditing {

// Shown when a value would not leave the tag text whole.
inline constexpr std::string_view kMismatchedParens =
    "You entered a mismatched number of parenthesis, which is not allowed. Please try again.";

// Writes a tag. False, and nothing changes, when the value's parentheses do not balance. Writing `parentkey`
// moves the trait to that parent, or to none; `childkeylist` is what comes of it, and stays.
bool SetTag(clsItem& item, std::string_view tag, std::string_view value);

// SetScoreTo.
void SetLevel(clsItem& item, double level);
// The points that the user spent.
void SetPointsSpent(clsItem& item, Currency points);
// `count` steps up or down.
void Increment(clsItem& item, int count);
void Decrement(clsItem& item, int count);
void SetModLevel(clsMod& mod, std::int32_t level);
void AfterModsChanged(clsItem& item);

}  // namespace kvr::TraitEditing
