// Walks the modifiers on a trait and the modifiers on those.
#pragma once

#include <string>
#include <vector>

#include "character/clsItem.h"

namespace kvr {

// Modifiers on modifiers go this deep and no further: none is put on deeper, and those that a file brings
// deeper down have no effect.
inline constexpr int kDeepestMod = 100;

// How many modifiers stand between the record and its trait, itself counted; 0 for a trait.
int ModDepth(CalcItem& owner);
// The modifiers that the record carries itself; nullptr for a record that can carry none.
clsSortedModCollection* ModsOf(CalcItem& owner);
// All modifiers on the record, to any depth, each before those that it carries.
std::vector<clsMod*> AllModsOf(CalcItem& owner);
// Takes the record's own `initmods` out of its tag list and returns the value; one inside another tag's value
// (of a trait that this one creates) stays.
std::string ExtractOwnInitMods(std::string& tagList);

}  // namespace kvr
