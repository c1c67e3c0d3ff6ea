// The arithmetic of modifiers on a number: the points of a trait, the price of a piece, the value of a
// modifier that bears modifiers itself.
//
// Modifiers stand in six tiers, 0 to 5; without a `tier` tag in tier 3. Each tier goes on with the total of
// the one before, tier 0 begins with the number:
//   1. flat values are added;
//   2. multipliers and divisors apply;
//   3. percentages apply, summed, the sum not below the limit. With multiplyPercents each applies by itself
//      and their product is limited. A cost factor counts as 100 percent;
//   4. the total is rounded, up unless a modifier of the tier rounds down.
// Within a tier the order of the modifiers makes no difference.
#pragma once

#include <array>

#include <string>
#include <vector>

#include "calc/ModValue.h"
#include "character/clsMod.h"

namespace kvr {

class CalcRecord;

struct ModTierRules {
  enum class Rounding { None, Whole, Cents };

  Rounding rounding = Rounding::Whole;
  bool roundOnce = false;  // at the end, and then up, in place of each tier
  bool multiplyPercents = false;
  double leastPercent = -80;
};

class ModTiers {
 public:
  // With a record, the modifiers' shares are noted in it.
  explicit ModTiers(double number, CalcRecord* record = nullptr) : record_(record) {
    tiers_[0].flat = number;
  }

  // Takes in the modifier's tags `value`, `tier` and `round`.
  void Add(clsMod& mod);
  // May be infinite or no number when the values are of that size.
  double Total(const ModTierRules& rules) const;

 private:
  // A modifier for the record: "Slow (-20%)".
  struct Noted {
    std::string text;
    modValue::Value value;
  };
  struct Tier {
    double flat = 0;
    double times = 1, per = 1;
    double percent = 0, percentFactor = 1;  // the sum, and the product of (100 + percentage) / 100
    bool roundUp = true;
    std::vector<Noted> noted;

    double Apply(double total, const ModTierRules& rules, CalcRecord* record) const;
    void NoteShares(double sum, double multiplied, const ModTierRules& rules, CalcRecord* record) const;
    void AddPercent(double added);
  };

  CalcRecord* record_;
  std::array<Tier, 6> tiers_;
};

}  // namespace kvr
