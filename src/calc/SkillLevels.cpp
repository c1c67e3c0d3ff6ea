// From points to levels of skills and spells, and from levels to points.
#include <algorithm>
#include <cmath>
#include <limits>

#include "calc/Combinations.h"
#include "calc/Explanation.h"
#include "calc/SkillScale.h"
#include "calc/modSolver.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

// Up to here each step has its own cost; past it the rest is divided by the cost of one more step.
constexpr std::int32_t kStepsWithCosts = 10;

template <class To>
To Held(std::int64_t value) {
  constexpr std::int64_t low = std::numeric_limits<To>::min(), high = std::numeric_limits<To>::max();
  return static_cast<To>(std::clamp(value, low, high));
}

// Only whole points count, and only a cost above 0 divides them.
std::int64_t StepsBeyond(Currency points, Currency costOfStep) {
  if (costOfStep <= Currency()) return 0;
  const auto whole = static_cast<std::int64_t>(std::floor(points.ToDouble()));
  constexpr std::int64_t kUnitsInPoint = 10000;
  return whole * kUnitsInPoint / costOfStep.Units();
}

}  // namespace

std::string_view SkillTypeNameOf(const clsItem& item) {
  return item.SkillType().empty() ? std::string_view("M/H") : item.SkillType();
}

const clsSkillCosts* SkillTypeOf(const clsItem& item) {
  return item.Owner->SkillType(SkillTypeNameOf(item));
}

std::string_view StatTextOf(const clsItem& item, const clsSkillCosts& type) {
  const std::string_view own = item.FreeTag("stat");
  return own.empty() ? std::string_view(type.DefaultStat) : own;
}

SkillScale::SkillScale(clsItem& item, const clsSkillCosts& type)
    : item_(item),
      type_(type),
      isTechnique_(item.Maneuver() == 1),
      levelWithoutPoints_(type.ZeroPointsOkay || EqualNoCase(Trim(type.DefaultStat), "%default")) {
  if (isTechnique_) return;
  if (item.Maneuver() == 2) {
    start_ = CombinedLevel(item).level;
  } else {
    start_ = CLngClamped(explain::SolvedStep(item, "rests on", StatTextOf(item, type)));
  }
  start_ += type.Base();
  explain::Note(item, type.Name, " starts at: ", start_, " (",
                explain::Signed{static_cast<double>(type.Base())}, ")");
}

std::int64_t SkillScale::StepsFor(Currency points) const {
  for (std::int32_t step = 1; step <= kStepsWithCosts; ++step) {
    const Currency cost = type_.LevelCost(step);
    if (points == cost) return step;
    if (points < cost) return step - 1;
  }
  return kStepsWithCosts + StepsBeyond(points - type_.LevelCost(kStepsWithCosts), type_.CostDiff());
}

std::int32_t SkillScale::Level(std::int32_t defaultLevel, Currency points) const {
  const std::int64_t start = StartFrom(defaultLevel);
  if (points <= Currency() || points < type_.MinCost()) {
    explain::Note(item_, explain::Points{points}, " buy no level");
    return levelWithoutPoints_ ? Held<std::int32_t>(start) : 0;
  }
  const std::int64_t steps = StepsFor(points);
  explain::Note(item_, "from ", explain::Points{points}, " (", type_.Name,
                "): ", explain::Signed{static_cast<double>(steps)}, " on ", start);
  return Held<std::int32_t>(start + steps);
}

Currency SkillScale::PointsFor(std::int32_t defaultLevel, std::int32_t wanted) const {
  const std::int64_t steps = wanted - StartFrom(defaultLevel);
  if (steps < 0) return -1;
  return type_.LevelCost(Held<std::int32_t>(steps));
}

std::int32_t clsItem::privGetLevel(std::int32_t defaultLevel, Currency points) {
  const clsSkillCosts* type = SkillTypeOf(*this);
  return type == nullptr ? defaultLevel : SkillScale(*this, *type).Level(defaultLevel, points);
}

Currency clsItem::privGetPointsForLevel(std::int32_t defaultLevel, std::int32_t wanted) {
  const clsSkillCosts* type = SkillTypeOf(*this);
  return type == nullptr ? Currency() : SkillScale(*this, *type).PointsFor(defaultLevel, wanted);
}

}  // namespace kvr
