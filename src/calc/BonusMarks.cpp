// Marks on a trait: which of the tags that weapons and armour work with some bonus targets.
#include <algorithm>
#include <array>

#include "character/clsItem.h"

namespace kvr {
namespace {

constexpr std::array<std::string_view, 23> kMarkedTags = {
    "parryat", "blockat", "damage", "damtype",     "rangehalfdam", "rangemax",   "reach",      "dr",
    "db",      "pd",      "acc",    "rof",         "armordivisor", "parry",      "shots",      "rcl",
    "minst",   "radius",  "break",  "raiseruleof", "skillscore",   "parryscore", "effectivest"};

// 0 for a tag that has no mark.
std::uint32_t MarkOf(std::string_view tag) {
  for (std::size_t i = 0; i < kMarkedTags.size(); ++i) {
    if (EqualNoCase(tag, kMarkedTags[i])) return std::uint32_t{1} << i;
  }
  return 0;
}

}  // namespace

void clsItem::SetBonusAffectsFlag(std::string_view tag) {
  bonusMarks_ |= MarkOf(tag);
}

bool clsItem::GetBonusAffectsFlag(std::string_view tag) const {
  return (bonusMarks_ & MarkOf(tag)) != 0;
}

}  // namespace kvr
