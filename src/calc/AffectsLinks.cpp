// Links: which traits and records have to be looked at again when a trait changes. They are found by name in
// the texts of the others, ahead of time, so that a change reaches exactly what depends on it without any
// search.
#include <algorithm>

#include "calc/TraitNames.h"
#include "character/KVRCharacter.h"

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
  const clsSkillCosts* type = item.Owner->SkillType(item.SkillType().empty() ? "M/H" : item.SkillType());
  return type == nullptr ? "" : LCase(type->DefaultStat);
}

bool NamedBy(const TraitNames& names, const clsItem& item, const clsItem& that,
             std::string_view skillTypeText) {
  return names.AppearIn(that.FreeTags().LowerText()) ||
         (item.ItemType == kStats && names.AppearIn(skillTypeText)) ||
         (!that.Mods.Empty() &&
          AnyMod(that.Mods, [&](const clsMod& mod) { return names.AppearIn(mod.Tags().LowerText()); }));
}

// Both kinds of records, with the lists that belong to each.
struct RecordKind {
  std::vector<std::unique_ptr<clsBonus>> KVRCharacter::*records;
  std::vector<clsBonus*> clsItem::*applied;
  std::vector<std::int32_t> clsItem::*affected;
};
constexpr RecordKind kBonuses{&KVRCharacter::Bonuses, &clsItem::AppliedBonuses, &clsItem::AffectedBonuses};
constexpr RecordKind kConditionals{&KVRCharacter::Conditionals, &clsItem::AppliedConditionals,
                                   &clsItem::AffectedConditionals};

void LinkIfApplied(clsItem& item, clsBonus& record, const RecordKind& kind) {
  if (!item.BonusAppliesByRef(record)) return;
  (item.*kind.applied).push_back(&record);
  record.Targets.push_back(item.IDKey);
  if (!record.TargetTag.empty()) item.SetBonusAffectsFlag(record.TargetTag);
}

void Unlink(KVRCharacter& character, clsBonus& record, const RecordKind& kind) {
  for (clsItem& item : character.Items) {
    Drop(item.*kind.affected, record.IDKey);
    Drop(item.*kind.applied, &record);
  }
  record.Targets.clear();
}

void LinkRecord(KVRCharacter& character, clsBonus& record, const RecordKind& kind) {
  Unlink(character, record, kind);
  std::string text = LCase(record.FullBonusText);
  for (clsItem& item : character.Items) {
    LinkIfApplied(item, record, kind);
    if (TraitNames(item).AppearIn(text)) (item.*kind.affected).push_back(record.IDKey);
  }
}

void UnlinkFromRecords(clsItem& item, const RecordKind& kind) {
  for (clsBonus* record : item.*kind.applied) Drop(record->Targets, item.IDKey);
  (item.*kind.applied).clear();
  (item.*kind.affected).clear();
}

void LinkToRecords(KVRCharacter& character, clsItem& item, const RecordKind& kind) {
  TraitNames names(item);
  for (auto& record : character.*kind.records) {
    LinkIfApplied(item, *record, kind);
    if (names.AppearIn(LCase(record->FullBonusText))) (item.*kind.affected).push_back(record->IDKey);
  }
}

void LinkAllToRecords(KVRCharacter& character, TraitNameIndex& index, const RecordKind& kind) {
  for (auto& record : character.*kind.records) {
    record->Targets.clear();
    for (clsItem& item : character.Items) LinkIfApplied(item, *record, kind);
    index.NextTarget();
    index.Search(LCase(record->FullBonusText), false,
                 [&](clsItem& item) { (item.*kind.affected).push_back(record->IDKey); });
  }
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
}

}  // namespace

void KVRCharacter::CreateAffectsLinks(clsItem& item) {
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
  LinkToRecords(*this, item, kBonuses);
  LinkToRecords(*this, item, kConditionals);
}

void KVRCharacter::CreateAllAffectsLinks() {
  charValueReaders_.clear();
  for (clsItem& item : Items) {
    UnlinkFromRecords(item, kBonuses);
    UnlinkFromRecords(item, kConditionals);
    item.AffectedItems.clear();
    item.ClearBonusAffectsFlag();
  }
  TraitNameIndex index(Items);
  for (clsItem& item : Items) {
    LinkToAllNamed(index, item);
    LinkCharValues(item);
  }
  LinkAllToRecords(*this, index, kBonuses);
  LinkAllToRecords(*this, index, kConditionals);
}

void KVRCharacter::ClearAffectsLinks(clsItem& item) {
  for (clsItem& other : Items) Drop(other.AffectedItems, item.IDKey);
  item.AffectedItems.clear();
  item.ClearBonusAffectsFlag();
  UnlinkFromRecords(item, kBonuses);
  UnlinkFromRecords(item, kConditionals);
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

void KVRCharacter::CreateBonusAffectsLinks(clsBonus& bonus) {
  LinkRecord(*this, bonus, kBonuses);
  LinkRecordToCharValues(bonus);
}

void KVRCharacter::CreateConditionalAffectsLinks(clsBonus& conditional) {
  LinkRecord(*this, conditional, kConditionals);
  LinkRecordToCharValues(conditional);
}

// An amount that reads the character's base damage is calculated with the trait that gives it.
void KVRCharacter::LinkRecordToCharValues(const clsBonus& record) {
  clsItem* giver = record.Owner == nullptr ? nullptr : record.Owner->RootOwnerItem();
  if (giver == nullptr || !ContainsNoCase(record.Bonus, "char::base")) return;
  if (std::ranges::find(charValueReaders_, giver->IDKey) == charValueReaders_.end()) {
    charValueReaders_.push_back(giver->IDKey);
  }
}

void KVRCharacter::ClearBonusAffectsLinks(clsBonus& bonus) {
  Unlink(*this, bonus, kBonuses);
}

void KVRCharacter::ClearConditionalAffectsLinks(clsBonus& conditional) {
  Unlink(*this, conditional, kConditionals);
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
