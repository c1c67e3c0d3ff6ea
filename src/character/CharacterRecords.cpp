// The campaign's sums and the parts of a body.
#include "character/CharacterRecords.h"

#include <algorithm>

#include "core/Text.h"

namespace kvr {

void clsCampaignInfo::Calculate() {
  LoggedPoints = 0;
  for (const clsLogEntry& entry : Log) LoggedPoints += entry.CharPoints;
  TotalPoints = LoggedPoints + OtherPoints;
}

clsBodyItem* clsBody::Part(std::string_view name) {
  auto part = std::find_if(parts_.begin(), parts_.end(),
                           [&](const clsBodyItem& each) { return EqualNoCase(each.Name, name); });
  return part == parts_.end() ? nullptr : &*part;
}

bool clsBody::Add(clsBodyItem part) {
  if (Part(part.Name)) return false;
  parts_.push_back(std::move(part));
  return true;
}

}  // namespace kvr
