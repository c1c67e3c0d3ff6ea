// What references can lead to: the library's names, and those of traits that other traits make.
#include "character/TemplateEntries.h"
#include "core/Text.h"
#include "core/modTags.h"
#include "frontend/LintChecks.h"

namespace kvr::Lint {
namespace {

std::string TypedKey(ItemType type, std::string_view name) {
  return std::to_string(type) + LCase(name);
}

}  // namespace

KnownNames::KnownNames(const KVRSystem& system) : system_(system) {
  for (const clsSystemItem& item : system.Items) AddItem(item);
  for (const clsCategory& category : system.Cats) {
    categories_.insert(LCase(category.Name));
    if (!category.Code.empty()) categories_.insert(LCase(category.Code));
  }
  for (const clsRefItem& member : system.Groups) groups_.insert(LCase(member.Group));
  for (const ModRecord& mod : system.Mods) mods_.insert(mod.LCaseFullName());
}

void KnownNames::AddItem(const clsSystemItem& item) {
  if (item.ItemType == kStats) symbols_.insert(LCase(item.GetTagItem("symbol")));
  if (const std::string_view group = item.GetTagItem("group"); !group.empty()) groups_.insert(LCase(group));
  if (IsUnsettled(item.NameExt())) chosen_.insert(TypedKey(item.ItemType, item.Name()));
  for (std::string_view text : templateEntries::Split(item.GetTagItem("creates"))) AddCreated(text);
}

void KnownNames::AddCreated(std::string_view text) {
  const EffectEntry entry = ReadEffectEntry(text);
  const std::string tags = "," + TagsOfCreated(entry);
  const std::string_view name = modTags::GetTagValue("name", tags);
  const std::string_view ext = modTags::GetTagValue("nameext", tags);
  traits_.insert(TypedKey(entry.type, modPrefixes::JoinNameAndExt(name, ext)));
  anyOf_.insert(TypedKey(entry.type, name));
}

bool KnownNames::Holds(const Names& names, std::string_view name) {
  return names.contains(LCase(name));
}

bool KnownNames::HasTrait(ItemType type, std::string_view fullName) const {
  if (system_.FindItem(fullName, type)) return true;
  if (type == kNoType) {
    for (ItemType each = kFirstType; each <= kLastType; ++each)
      if (HasTrait(each, fullName)) return true;
    return false;
  }
  return traits_.contains(TypedKey(type, fullName)) ||
         chosen_.contains(TypedKey(type, modPrefixes::SplitNameAndExt(fullName).name));
}

bool KnownNames::HasAnyOf(ItemType type, std::string_view name) const {
  return !system_.GetAllItems(name, type).empty() || anyOf_.contains(TypedKey(type, name));
}

bool KnownNames::HasStat(std::string_view name) const {
  return HasTrait(kStats, name) || (!name.empty() && Holds(symbols_, name));
}

bool KnownNames::HasMod(std::string_view group, std::string_view fullName) const {
  return group.empty() ? Holds(mods_, fullName) : system_.FindMod(fullName, group) != nullptr;
}

bool IsUnsettled(std::string_view text) {
  if (text.find('#') != npos) return true;
  for (std::size_t at = text.find('%'); at != npos; at = text.find('%', at + 1)) {
    const std::string_view behind = text.substr(at + 1);
    if (!StartsWithNoCase(behind, "level") && !StartsWithNoCase(behind, "count")) return true;
  }
  return false;
}

EffectEntry ReadEffectEntry(std::string_view text) {
  templateEntries::Entry entry = templateEntries::ReadEntry(text);
  templateEntries::TraitReference reference = templateEntries::ReadReference(entry.left);
  return {reference.type, std::move(reference.name), std::move(entry.mods)};
}

std::string TagsOfCreated(const EffectEntry& entry) {
  switch (entry.type) {
    case kStats:
      return KVRSystem::ReturnStatItem(entry.name);
    case kSkills:
      return KVRSystem::ReturnSkillItem(entry.name);
    case kSpells:
      return KVRSystem::ReturnSpellItem(entry.name);
    case kEquipment:
      return KVRSystem::ReturnEquipmentItem(entry.name);
    default:
      return KVRSystem::ReturnAdItem(entry.name);
  }
}

}  // namespace kvr::Lint
