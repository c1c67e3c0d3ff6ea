// The six tiers of modifiers.
#include "calc/ModTiers.h"

#include <algorithm>
#include <cmath>

#include "calc/Explanation.h"
#include "calc/ModValue.h"
#include "calc/modSolver.h"
#include "core/KVRError.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

constexpr double kUsualTier = 3, kLastTier = 5;

// One that can't be worked out is the usual one; the solver has logged why.
double SolvedTier(std::string_view tag, clsMod& mod) {
  try {
    return modSolver::Solver("3+" + std::string(tag), mod);
  } catch (const SolverFailure&) {
    return kUsualTier;
  }
}

std::size_t TierOf(clsMod& mod) {
  const std::string_view tag = mod.Tags().Value("tier");
  double tier = kUsualTier;
  if (IsNumeric(tag)) {
    tier += Val(tag);
  } else if (!tag.empty()) {
    tier = SolvedTier(tag, mod);
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

double ModTiers::Tier::Apply(double total, const ModTierRules& rules, CalcRecord* record) const {
  const double sum = Round15(total + flat);
  const double multiplied = per == 0 ? 0 : Round15(sum * times / per);
  if (!noted.empty()) NoteShares(sum, multiplied, rules, record);
  if (rules.multiplyPercents) {
    return Round15(multiplied * std::max(Round15(percentFactor), (100 + rules.leastPercent) / 100));
  }
  return Round15(multiplied * (100 + std::max(Round15(percent), rules.leastPercent)) / 100);
}

// "Slow (-20%): -3 of 15"
void ModTiers::Tier::NoteShares(double sum, double multiplied, const ModTierRules& rules,
                                CalcRecord* record) const {
  for (const Noted& mod : noted) {
    if (mod.value.family != modValue::Family::Add) {
      explain::Note(record, mod.text, ": makes ", multiplied, " of ", sum);
    } else if (mod.value.suffix == modValue::Suffix::None) {
      explain::Note(record, mod.text, ": makes ", sum);
    } else {
      const double unit = mod.value.suffix == modValue::Suffix::Percent ? 100 : 1;
      explain::Note(record, mod.text, ": ", explain::Signed{Round15(multiplied * mod.value.number / unit)},
                    " of ", multiplied);
    }
  }
  const double least = rules.multiplyPercents ? (100 + rules.leastPercent) / 100 : rules.leastPercent;
  if ((rules.multiplyPercents ? Round15(percentFactor) : Round15(percent)) < least) {
    explain::Note(record, "limited to ", rules.leastPercent, "% in all");
  }
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
  if (record_ == nullptr) return;
  tier.noted.push_back({explain::Text(mod.FullName(), " (", mod.Tags().Value("value"), ")"), value});
}

double ModTiers::Total(const ModTierRules& rules) const {
  double total = 0;
  for (const Tier& tier : tiers_) {
    const double exact = tier.Apply(total, rules, record_);
    total = rules.roundOnce ? exact : Rounded(exact, rules.rounding, tier.roundUp);
    explain::NoteRounded(record_, exact, total);
  }
  if (!rules.roundOnce) return total;
  const double rounded = Rounded(total, rules.rounding, true);
  explain::NoteRounded(record_, total, rounded);
  return rounded;
}

}  // namespace kvr
