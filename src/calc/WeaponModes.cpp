// The modes of a weapon: reading them one by one, adding one and changing one.
#include <algorithm>

#include "calc/ModeLists.h"
#include "character/ItemFields.h"
#include "character/clsItem.h"
#include "library/ItemLines.h"

namespace kvr {
namespace {

// As many values as any table could show; a list that is filled up beyond that would only eat memory.
constexpr std::size_t kMostModes = 100000;

// `parryat` and `blockat` are no sign of a mode: skills have them too.
bool CountsModes(std::string_view tag) {
  return tag != "parryat" && tag != "blockat" && tag != "minst";
}

// The mode's data as tags: written with its name as the first field, as data files write it, or with tags
// only.
std::vector<modTags::TagItem> ReadModeData(std::string_view data, std::string& text) {
  const std::string_view head = Trim(data.substr(0, data.find('(')));
  const bool hasTagsOnly = EqualNoCase(head, "mode") || EqualNoCase(head, "name");
  ItemLines::Notes ignored;
  text = hasTagsOnly ? std::string(data) : ItemLines::ToTagString(data, ItemLines::Kind::Generic, ignored);
  return modTags::ReturnTagItems(text);
}

std::string NameOfMode(const std::vector<modTags::TagItem>& data) {
  const std::string_view mode = modTags::ValueOf(data, "mode");
  if (!mode.empty()) return std::string(mode);
  return modPrefixes::JoinNameAndExt(modTags::ValueOf(data, "name"), modTags::ValueOf(data, "nameext"));
}

// The name stands in `mode`; what a trait has once, such as its level or its parent, is none of a mode's.
bool IsNoValueOfMode(std::string_view tag) {
  if (tag.empty() || tag == "mode") return true;
  return ItemFields::Find(tag) && tag != "notes" && tag != "description";
}

}  // namespace

std::size_t clsItem::DamageModesCount() const {
  std::size_t count = 0;
  for (std::string_view tag : modeLists::SourceTags()) {
    if (CountsModes(tag)) count = std::max(count, modeLists::Values(FreeTag(tag)).size());
  }
  return count;
}

std::string clsItem::DamageModeTagItem(std::size_t mode, std::string_view tag) const {
  const std::string list = StoredTag(tag);
  return std::string(modeLists::ValueAt(list, mode));
}

std::string clsItem::DamageModeDamage(std::size_t mode) const {
  std::string damage = DamageModeTagItem(mode, "chardamage");
  return damage.empty() ? DamageModeTagItem(mode, "damage") : damage;
}

std::string clsItem::DamageModeType(std::size_t mode) const {
  std::string type = DamageModeTagItem(mode, "chardamtype");
  return type.empty() ? DamageModeTagItem(mode, "damtype") : type;
}

void clsItem::DamageModeTagItemSet(std::size_t mode, std::string_view tag, std::string_view value) {
  if (mode == 0 || mode > kMostModes) return;
  const std::string list = StoredTag(tag);
  std::vector<std::string> values;
  for (std::string_view former : modeLists::Values(list)) values.emplace_back(former);
  if (values.size() < mode) values.resize(mode);
  values[mode - 1] = value;
  SetTagItem(tag, modeLists::Joined(values));
}

std::size_t clsItem::DamageModeTagItemCount(std::string_view tag) const {
  const std::string list = StoredTag(tag);
  const std::vector<std::string_view> values = modeLists::Values(list);
  return static_cast<std::size_t>(
      std::ranges::count_if(values, [](std::string_view value) { return !value.empty(); }));
}

std::size_t clsItem::DamageModeTagItemAt(std::string_view tag, std::size_t startMode) const {
  const std::string list = StoredTag(tag);
  const std::vector<std::string_view> values = modeLists::Values(list);
  for (std::size_t mode = std::max<std::size_t>(startMode, 1); mode <= values.size(); ++mode) {
    if (!values[mode - 1].empty()) return mode;
  }
  return 0;
}

void clsItem::AddNewMode(std::string_view modeData) {
  std::string text;
  const std::vector<modTags::TagItem> data = ReadModeData(Trim(modeData), text);
  const std::string name = NameOfMode(data);
  const std::vector<std::string_view> names = modeLists::Values(FreeTag("mode"));
  const auto known = std::ranges::find_if(names, [&](auto former) { return EqualNoCase(former, name); });
  if (known != names.end() && !name.empty()) {
    UpdateExistingModeData(static_cast<std::size_t>(known - names.begin()) + 1, data);
  } else {
    AddNewModeAddData(data, name);
  }
}

void clsItem::AddNewModeAddData(const std::vector<modTags::TagItem>& data, std::string_view name) {
  const std::size_t mode = DamageModesCount() + 1;
  for (std::string_view tag : modeLists::SourceTags()) {
    if (!FreeTagIsEmpty(tag)) DamageModeTagItemSet(mode, tag, "");
  }
  DamageModeTagItemSet(mode, "mode", name);
  for (const modTags::TagItem& item : data) {
    if (IsNoValueOfMode(item.name)) continue;
    const std::string value = NewModeValue(mode, item.name, item.value);
    if (!value.empty()) DamageModeTagItemSet(mode, item.name, value);
  }
}

void clsItem::UpdateExistingModeData(std::size_t mode, const std::vector<modTags::TagItem>& data) {
  for (const modTags::TagItem& item : data) {
    if (IsNoValueOfMode(item.name)) continue;
    DamageModeTagItemSet(mode, item.name, NewModeValue(mode, item.name, item.value));
  }
}

std::string clsItem::NewModeValue(std::size_t mode, std::string_view tag, std::string_view value) const {
  if (EqualNoCase(value, "%copyfirst")) return DamageModeTagItem(1, tag);
  if (EqualNoCase(value, "%copyprev")) return DamageModeTagItem(mode - 1, tag);
  return EqualNoCase(value, "%calcme") ? "" : std::string(value);
}

}  // namespace kvr
