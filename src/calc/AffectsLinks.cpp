// Links: which traits and records have to be looked at again when a trait changes. They are found by name in
// the texts of the others, ahead of time, so that a change reaches exactly what depends on it without any
// search.
#include <algorithm>

#include "calc/RecordLinks.h"
#include "calc/SkillScale.h"
#include "calc/TraitNames.h"
#include "character/FormerState.h"

namespace kvr {
namespace {

template <class T>
void Drop(std::vector<T>& list, const T& value) {
  list.erase(std::remove(list.begin(), list.end(), value), list.end());
}

// The modifiers below a trait, to any depth; `f` returns true to end the walk.
template <class F>
bool AnyMod(const clsSortedModCollection& mods, F&& f) {
  std::vector<const clsSortedModCollection*> waiting{&mods};
  while (!waiting.empty()) {
    const clsSortedModCollection& level = *waiting.back();
    waiting.pop_back();
    for (const clsMod& mod : level) {
      if (f(mod)) return true;
      if (!mod.Mods.Empty()) waiting.push_back(&mod.Mods);
    }
  }
  return false;
}

// A skill reads the stat of its type without naming it.
std::string TextOfSkillType(const clsItem& item) {
  if (item.ItemType != kSkills && item.ItemType != kSpells) return "";
  const clsSkillCosts* type = SkillTypeOf(item);
  return type == nullptr ? "" : LCase(type->DefaultStat);
}

// A skill with a tech level may be used from the same skill at another one, which its text doesn't name.
bool IsAtOtherTechLevel(const clsItem& item, const clsItem& that) {
  return item.ItemType == that.ItemType && (that.ItemType == kSkills || that.ItemType == kSpells) &&
         item.LCaseName() == that.LCaseName() && item.LCaseNameExt() == that.LCaseNameExt() &&
         !that.FreeTagIsEmpty("tl");
}

bool NamedBy(const TraitNames& names, const clsItem& item, const clsItem& that,
             std::string_view skillTypeText) {
  return names.AppearIn(that.FreeTags().LowerText()) ||
         (item.ItemType == kStats && names.AppearIn(skillTypeText)) || IsAtOtherTechLevel(item, that) ||
         (!that.Mods.Empty() &&
          AnyMod(that.Mods, [&](const clsMod& mod) { return names.AppearIn(mod.Tags().LowerText()); }));
}

// Every trait that a text of `that` names gets it on its list.
void LinkToAllNamed(TraitNameIndex& index, clsItem& that) {
  auto link = [&that](clsItem& item) {
    if (&item != &that) item.AffectedItems.push_back(that.IDKey);
  };
  index.NextTarget();
  index.Search(that.FreeTags().LowerText(), false, link);
  index.Search(TextOfSkillType(that), true, link);
  AnyMod(that.Mods, [&](const clsMod& mod) {
    index.Search(mod.Tags().LowerText(), false, link);
    return false;
  });
  if (that.FreeTagIsEmpty("tl")) return;
  index.Search(that.LCaseName(), false, [&](clsItem& item) {
    if (IsAtOtherTechLevel(item, that)) link(item);
  });
}

}  // namespace

void KVRCharacter::CreateAffectsLinks(clsItem& item) {
  if (!formerStates_.empty() && formerStates_.front()->PutOffLinks(item)) return;
  ClearAffectsLinks(item);
  TraitNames names(item);
  std::string itemSkillType = TextOfSkillType(item);
  for (clsItem& that : Items) {
    if (&that == &item) continue;
    std::string skillType = item.ItemType == kStats ? TextOfSkillType(that) : std::string();
    if (NamedBy(names, item, that, skillType)) item.AffectedItems.push_back(that.IDKey);
    if (NamedBy(TraitNames(that), that, item, itemSkillType)) that.AffectedItems.push_back(item.IDKey);
  }
  LinkCharValues(item);
  LinkToRecords(*this, item);
}

void KVRCharacter::CreateAllAffectsLinks() {
  charValueReaders_.clear();
  for (clsItem& item : Items) item.AffectedItems.clear();
  TraitNameIndex index(Items);
  for (clsItem& item : Items) {
    LinkToAllNamed(index, item);
    LinkCharValues(item);
  }
  LinkAllRecords(*this, index);
}

void KVRCharacter::ClearAffectsLinks(clsItem& item) {
  for (clsItem& other : Items) Drop(other.AffectedItems, item.IDKey);
  item.AffectedItems.clear();
  UnlinkFromRecords(item);
  Drop(charValueReaders_, item.IDKey);
}

// A modifier's text counts as its trait's: the trait is what gets calculated.
void KVRCharacter::LinkCharValues(clsItem& item) {
  auto reads = [&item](const TagText& tags) {
    const std::string& text = tags.LowerText();
    return text.find("char::") != npos || (item.ItemType != kEquipment && text.find("damage(") != npos);
  };
  if (reads(item.FreeTags()) || AnyMod(item.Mods, [&](const clsMod& mod) { return reads(mod.Tags()); })) {
    charValueReaders_.push_back(item.IDKey);
  }
}

bool KVRCharacter::ThisItemAffectsThatItem(clsItem& item, clsItem& that) {
  return NamedBy(TraitNames(item), item, that, TextOfSkillType(that));
}

bool KVRCharacter::ThisItemAffectsThatBonus(clsItem& item, clsBonus& that) {
  return TraitNames(item).AppearIn(LCase(that.FullBonusText));
}

bool KVRCharacter::TrickleThruModsAffected(clsItem& item, std::string_view lcaseName) {
  return AnyMod(item.Mods, [&](const clsMod& mod) { return NameAppears(mod.Tags().LowerText(), lcaseName); });
}

}  // namespace kvr
