// Small steps that the calculators of all trait types share.
#pragma once

#include <string_view>

#include "character/clsItem.h"
#include "core/Numbers.h"

namespace kvr {

// Writes a result into the free tag list, which stays untouched when the tag says so already.
inline void WriteTag(clsItem& item, std::string_view tag, std::string_view value) {
  if (item.FreeTag(tag) != value) item.SetTagItem(tag, value);
}

// A result that may be none: an empty one takes the tag away.
inline void WriteOrDeleteTag(clsItem& item, std::string_view tag, std::string_view value) {
  if (!value.empty()) {
    WriteTag(item, tag, value);
  } else if (item.FreeTags().Find(tag)) {
    item.DeleteTag(tag);
  }
}

// Adds a line for each conditional on a tag of the trait to the list that the trait shows.
void ListTagConditionals(clsItem& item);

// The sums over conditional bonuses; each adds its lines to the list that the trait shows.
inline void SumConditionals(clsItem& item) {
  item.ConditionalApplicableLevelMult();
  item.ConditionalApplicablePointMult();
  item.ConditionalApplicableSysBonus();
  item.ConditionalApplicableSysPoints();
  ListTagConditionals(item);
}

// Calculates a trait of which an input was changed. When that fails, in whatever way, the change is undone.
template <class Undo>
bool CalculateOrUndo(clsItem& item, Undo&& undo) {
  try {
    if (item.Calculate()) return true;
  } catch (const SolverFailure&) {
    undo();
    throw;
  }
  undo();
  return false;
}

// Whether a move from `before` brought `after` to `wanted` or beyond it.
inline bool ReachedOrPassed(double before, double after, double wanted) {
  if (Round15(after) == Round15(wanted)) return true;
  return wanted > before ? after > wanted : after < wanted;
}

}  // namespace kvr
