// What points buy on a skill or spell: the steps of its skill type above a start value, and back.
#pragma once

#include <cstdint>
#include <string_view>

#include "character/clsItem.h"
#include "library/clsSkillCosts.h"

namespace kvr {

// The skill type of a trait; one without a `type` has "M/H". nullptr when no such type is loaded.
std::string_view SkillTypeNameOf(const clsItem& item);
const clsSkillCosts* SkillTypeOf(const clsItem& item);

// The value of the attribute that a skill rests on: of its `stat` tag, or else of its type's DefaultStat.
std::string_view StatTextOf(const clsItem& item, const clsSkillCosts& type);

// One trait's scale. A technique starts from the default that is handed in; a combination from the level of
// the traits that it joins, and all others from their attribute, both with the type's Base on it.
class SkillScale {
 public:
  SkillScale(clsItem& item, const clsSkillCosts& type);

  // Negative points count as none. Without the points for the first step there is a level only for
  // techniques and for types with ZeroPointsOkay; for all others it is 0.
  std::int32_t Level(std::int32_t defaultLevel, Currency points) const;
  // -1 for a level below the start value, which itself costs nothing.
  Currency PointsFor(std::int32_t defaultLevel, std::int32_t wanted) const;

 private:
  std::int64_t StepsFor(Currency points) const;
  std::int64_t StartFrom(std::int32_t defaultLevel) const { return isTechnique_ ? defaultLevel : start_; }

  const clsItem& item_;
  const clsSkillCosts& type_;
  bool isTechnique_;
  bool levelWithoutPoints_;
  std::int64_t start_ = 0;
};

}  // namespace kvr
