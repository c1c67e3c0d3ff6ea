// Points of children and of owned components.
#include "calc/Children.h"

#include <cmath>
#include <vector>

#include "calc/Explanation.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/modNewParser.h"

namespace kvr {
namespace {

// Floors the fifth and adds one when the whole points leave a rest: 21 counts 5, 20 and 20.5 count 4.
Currency PointsOfLesserForm(Currency cost) {
  double points = cost.ToDouble();
  double counted = std::floor(points / 5);
  if (std::fmod(std::trunc(points), 5) > 0) counted += 1;
  return Currency::FromDouble(counted);
}

Currency PointsOfForms(const clsItem& owner, const std::vector<Currency>& costs) {
  std::size_t best = 0;
  for (std::size_t i = 1; i < costs.size(); ++i) {
    if (costs[i] > costs[best]) best = i;
  }
  Currency sum;
  for (std::size_t i = 0; i < costs.size(); ++i) sum += i == best ? costs[i] : PointsOfLesserForm(costs[i]);
  explain::Note(owner, "of these forms the dearest costs all of its points, each other one a fifth: ", sum);
  return sum;
}

}  // namespace

ChildProfile ChildProfileOf(const clsItem& item) {
  std::int16_t profile = CInt(Val(item.FreeTag("childprofile")));
  if (item.ItemType != kAds || profile == 0) return ChildProfile::Sum;
  return profile == 1 ? ChildProfile::AlternativeForms : ChildProfile::Nothing;
}

Currency PointsOfChildren(const clsItem& item, ChildProfile profile) {
  if (profile == ChildProfile::Nothing) return 0;
  std::vector<Currency> costs;
  modNewParser::ForEachToken(item.ChildKeyList(), ',', modNewParser::kPlain, [&](std::string_view key) {
    const clsItem* child = item.Owner->Items.Item(Trim(key));
    if (child == nullptr) return;
    costs.push_back(child->Points());
    explain::Note(item, child->FullName(), ": ", costs.back());
  });
  if (profile == ChildProfile::AlternativeForms) return PointsOfForms(item, costs);
  Currency sum;
  for (Currency cost : costs) sum += cost;
  return sum;
}

Currency PointsOfOwned(const clsItem& item) {
  if (!IsSet(item.FreeTag("owns"))) return 0;
  Currency sum;
  modNewParser::ForEachToken(item.FreeTag("pkids"), ',', modNewParser::kPlain, [&](std::string_view entry) {
    const clsItem* component = item.Owner->ItemByKey(CLngClamped(Val(entry)));
    if (component == nullptr || !IsSet(component->FreeTag("owned"))) return;
    sum += component->Points();
    explain::Note(item, "its component ", component->FullName(), ": ", component->Points());
  });
  return sum;
}

}  // namespace kvr
