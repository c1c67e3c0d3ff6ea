// Combinations: traits that join others, such as two attacks made as one.
//
// `combokeys` lists the keys of the joined traits, `comboattacks` how many of the attacks each of them makes,
// in the same order (1 where nothing stands; a trait with 0 does not count in the level). `comboflags` says
// which of their levels the combination has: the lowest, or with the word "highest" or "average" that one,
// the average being weighted by the attacks and rounded down. `combodeffrom` names the traits: a combination
// from a data file has nothing else, and gets its keys when all that it names are on the character.
#pragma once

#include <cstdint>

#include "calc/modSolver.h"
#include "character/clsItem.h"

namespace kvr {

// Brings `combokeys` and the tags beside it up to date: a trait that is gone is left out.
void RefreshCombinationKeys(clsItem& combination);

// The level that the joined traits give, without the skill type's Base; 0 when none of them counts. The
// source is the trait that decided it, the first one for an average.
struct CombinedLevelResult {
  std::int32_t level = 0;
  modSolver::DefaultSource source;
};
CombinedLevelResult CombinedLevel(clsItem& combination);

// Whether a combination joins the trait with that key, or joins combinations that do.
bool CombinationHolds(const clsItem& combination, std::int32_t idKey);

}  // namespace kvr
