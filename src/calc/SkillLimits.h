// Limits of skills and spells: "upto(15)" holds the level, "upto(8pts)" the points.
#pragma once

#include <cstdint>

#include "character/clsItem.h"

namespace kvr {

struct SkillLimits {
  std::int32_t mostLevel = 0;  // 0 is no limit
  Currency mostPoints;         // 0 is no limit
  Currency leastPoints;
  bool hasLeastPoints = false;
};

// From `upto` and `control_upto`, of which the smaller one above 0 counts, and from `control_downto`, or else
// `downto`.
SkillLimits ReadSkillLimits(clsItem& item);

}  // namespace kvr
