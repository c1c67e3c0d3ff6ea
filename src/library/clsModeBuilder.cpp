// Weapon modes to parallel lists.
#include "library/clsModeBuilder.h"

#include "core/modTags.h"
#include "library/modPrefixes.h"

namespace kvr {

namespace {
constexpr std::size_t kMostValues = 1'000'000;
}

bool clsModeBuilder::AddMode(std::string_view tagString) {
  const std::vector<modTags::TagItem> items = modTags::ReturnTagItems(tagString);
  if ((count_ + 1) * (tags_.size() + items.size()) > kMostValues) return false;
  ++count_;
  SetValue("mode",
           modPrefixes::JoinNameAndExt(modTags::ValueOf(items, "name"), modTags::ValueOf(items, "nameext")));
  for (const modTags::TagItem& item : items)
    if (!item.name.empty() && item.name != "name" && item.name != "nameext") SetValue(item.name, item.value);
  return true;
}

// The first value that a mode gives to a tag stands.
void clsModeBuilder::SetValue(std::string_view name, std::string_view value) {
  auto [place, isNew] = places_.try_emplace(std::string(name), tags_.size());
  if (isNew) tags_.push_back({std::string(name), {}});
  std::vector<std::string>& values = tags_[place->second].values;
  if (values.size() == count_) return;
  values.resize(count_);
  values.back() = value;
}

std::string clsModeBuilder::ModeList() const {
  std::string list;
  for (const TagValues& tag : tags_) {
    if (!list.empty()) list += ',';
    list += tag.name + "(";
    for (std::size_t mode = 0; mode < count_; ++mode) {
      if (mode > 0) list += '|';
      if (mode < tag.values.size()) list += tag.values[mode];
    }
    list += ')';
  }
  return list;
}

}  // namespace kvr
