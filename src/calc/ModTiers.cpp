// The six tiers of modifiers.
#include "calc/ModTiers.h"

#include <algorithm>
#include <cmath>

#include "calc/ModValue.h"
#include "calc/modSolver.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

constexpr double kUsualTier = 3, kLastTier = 5;

std::size_t TierOf(clsMod& mod) {
  const std::string_view tag = mod.Tags().Value("tier");
  double tier = kUsualTier;
  if (IsNumeric(tag)) {
    tier += Val(tag);
  } else if (!tag.empty()) {
    tier = modSolver::Solver("3+" + std::string(tag), mod);
  }
  return static_cast<std::size_t>(std::clamp(std::floor(tier), 0.0, kLastTier));
}

// Whether a number is whole, and where its whole part ends, is told by what 15 digits show of it.
double Rounded(double value, ModTierRules::Rounding rounding, bool up) {
  switch (rounding) {
    case ModTierRules::Rounding::Whole:
      value = Round15(value);
      return up ? std::ceil(value) : std::floor(value);
    case ModTierRules::Rounding::Cents:
      return RoundHalfEven(Round15(value * 100)) / 100;
    case ModTierRules::Rounding::None:
      break;
  }
  return value;
}

}  // namespace

void ModTiers::Tier::AddPercent(double added) {
  percent += added;
  percentFactor *= (100 + added) / 100;
}

double ModTiers::Tier::Apply(double total, const ModTierRules& rules) const {
  const double sum = Round15(total + flat);
  const double multiplied = per == 0 ? 0 : Round15(sum * times / per);
  if (rules.multiplyPercents) {
    return Round15(multiplied * std::max(Round15(percentFactor), (100 + rules.leastPercent) / 100));
  }
  return Round15(multiplied * (100 + std::max(Round15(percent), rules.leastPercent)) / 100);
}

void ModTiers::Add(clsMod& mod) {
  Tier& tier = tiers_[TierOf(mod)];
  const modValue::Value value = modValue::ReadValue(mod.Tags().Value("value"), mod);
  switch (value.family) {
    case modValue::Family::Multiply:
      tier.times *= value.number;
      tier.per *= value.divisor;
      break;
    case modValue::Family::Divide:
      tier.per *= value.number * value.divisor;
      break;
    case modValue::Family::Add:
      if (value.suffix == modValue::Suffix::None) {
        tier.flat += value.number;
      } else {
        tier.AddPercent(value.suffix == modValue::Suffix::Percent ? value.number : value.number * 100);
      }
  }
  if (StartsWithNoCase(mod.Tags().Value("round"), "d")) tier.roundUp = false;
}

double ModTiers::Total(const ModTierRules& rules) const {
  double total = 0;
  for (const Tier& tier : tiers_) {
    total = tier.Apply(total, rules);
    if (!rules.roundOnce) total = Rounded(total, rules.rounding, tier.roundUp);
  }
  return rules.roundOnce ? Rounded(total, rules.rounding, true) : total;
}

}  // namespace kvr
