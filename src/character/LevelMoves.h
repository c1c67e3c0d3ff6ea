// Moves a trait to a level as it is shown, bonuses included.
#pragma once

#include "character/clsItem.h"

namespace kvr {

// SetScoreTo takes the level bought of advantages and the like, and what is shown of all others.
inline bool SetShownLevelTo(clsItem& item, double level) {
  switch (item.ItemType) {
    case kStats:
    case kSkills:
    case kSpells:
    case kEquipment:
      return item.SetScoreTo(level);
    default:
      return item.SetScoreTo(level - item.Level() + item.BaseLevel());
  }
}

}  // namespace kvr
