// A skill type's arithmetic: points to steps and back.
#include "library/clsSkillCosts.h"

#include <algorithm>
#include <limits>

#include "core/Numbers.h"
#include "core/modTags.h"
#include "library/Records.h"

namespace kvr {
namespace {

constexpr std::string_view kSeparators = "/,";

// What a step past the end of a list adds: its last difference, or the only entry itself.
template <class Number>
Number LastDifference(const std::vector<Number>& list) {
  if (list.empty()) return Number(0);
  return list.size() == 1 ? list[0] : list.back() - list[list.size() - 2];
}

// The entry of a step from 1 on, continued past the end of the list.
template <class Number>
Number EntryOrBeyond(const std::vector<Number>& list, Number difference, std::int32_t step) {
  if (step <= 0 || list.empty()) return Number(0);
  const auto index = static_cast<std::size_t>(step);
  if (index <= list.size()) return list[index - 1];
  return list.back() + difference * static_cast<std::int32_t>(index - list.size());
}

}  // namespace

void clsSkillCosts::NewTagList(std::string_view tagList) {
  for (const modTags::TagItem& item : modTags::ReturnTagItems(tagList)) {
    if (item.name == "name") Name = item.value;
    if (item.name == "costs") Costs = item.value;
    if (item.name == "baseadj") BaseAdj = item.value;
    if (item.name == "adds") Adds = item.value;
    if (item.name == "defaultstat") DefaultStat = item.value;
    if (item.name == "relname") RelName = item.value;
    if (item.name == "zeropointsokay") ZeroPointsOkay = IsTrueWord(item.value);
    if (item.name == "subzero") SubZero = IsTrueWord(item.value);
  }
  CalcValues();
}

void clsSkillCosts::CalcValues() {
  base_ = CLngClamped(Val(BaseAdj));
  costs_.clear();
  adds_.clear();
  if (!Costs.empty())
    for (std::string_view cost : modNewParser::ParseSplitChars(Costs, kSeparators, modNewParser::kPlain))
      costs_.push_back(Currency::FromVal(cost));
  if (!Adds.empty())
    for (std::string_view add : modNewParser::ParseSplitChars(Adds, kSeparators, modNewParser::kPlain))
      adds_.push_back(Val(add));
  minCost_ = costs_.empty() ? Currency() : costs_.front();
  costDiff_ = LastDifference(costs_);
  addDiff_ = LastDifference(adds_);
}

Currency clsSkillCosts::LevelCost(std::int32_t step) const {
  return EntryOrBeyond(costs_, costDiff_, step);
}

double clsSkillCosts::LevelAdds(std::int32_t step) const {
  return EntryOrBeyond(adds_, addDiff_, step);
}

std::int32_t clsSkillCosts::ReturnStepForCost(Currency points) const {
  if (costs_.empty()) return 0;
  const auto count = static_cast<std::int64_t>(costs_.size());
  if (points >= costs_.back() && costDiff_ > Currency()) {
    const std::int64_t beyond = (points - costs_.back()).Units() / costDiff_.Units();
    return static_cast<std::int32_t>(
        std::min<std::int64_t>(count + beyond, std::numeric_limits<std::int32_t>::max()));
  }
  for (std::int64_t step = count; step > 0; --step)
    if (points >= costs_[static_cast<std::size_t>(step - 1)]) return static_cast<std::int32_t>(step);
  return 0;
}

}  // namespace kvr
