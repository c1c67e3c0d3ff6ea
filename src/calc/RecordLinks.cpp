// The links of bonuses and conditionals. A sum on a trait then looks at nothing but what applies to it, and a
// changed value reaches the amounts that read it.
#include "calc/RecordLinks.h"

#include <algorithm>

#include "calc/BonusTargets.h"

namespace kvr {
namespace {

constexpr const RecordKind* kKinds[] = {&kBonuses, &kConditionals};

// Marks follow what applies; they are set anew when a record has gone.
void RenewMarks(clsItem& item) {
  item.ClearBonusAffectsFlag();
  for (const RecordKind* kind : kKinds) {
    for (const clsBonus* record : item.*(kind->applied)) {
      if (!record->TargetTag.empty()) item.SetBonusAffectsFlag(record->TargetTag);
    }
  }
}

// On a trait the records stand in order of their keys, however the links came about: sums and display lines
// don't depend on it.
void LinkIfApplied(clsItem& item, clsBonus& record, const BonusTarget& target, const RecordKind& kind) {
  if (!target.AppliesTo(item)) return;
  std::vector<clsBonus*>& applied = item.*kind.applied;
  const auto place = std::ranges::lower_bound(applied, record.IDKey, {}, &clsBonus::IDKey);
  if (place != applied.end() && *place == &record) return;
  applied.insert(place, &record);
  record.Targets.push_back(item.IDKey);
  if (!record.TargetTag.empty()) item.SetBonusAffectsFlag(record.TargetTag);
}

void LinkTargets(clsBonus& record, TargetFinder& finder, const RecordKind& kind) {
  const BonusTarget target(record);
  record.Linked = true;
  finder.ForEachCandidate(target, [&](clsItem& item) { LinkIfApplied(item, record, target, kind); });
  if (!target.IsImproper()) return;
  ActivityLog& log = record.Owner->RootOwnerChar()->Env().log;
  log.LogRed(record.GiverName() +
             ": This bonus was improperly defined, and could not be used: " + record.FullBonusText);
  log.LogRed(
      "<Bonus> to BYTAG:<Type> where <tag> [ is | isnot | includes | excludes | listincludes | listexcludes "
      "] "
      "<tagvalue>");
}

void Unlink(KVRCharacter& character, clsBonus& record, const RecordKind& kind) {
  if (!record.Linked) return;
  for (std::int32_t key : record.Targets) {
    clsItem* item = character.ItemByKey(key);
    if (item == nullptr) continue;
    std::erase(item->*kind.applied, &record);
    if (!record.TargetTag.empty()) RenewMarks(*item);
  }
  for (clsItem& item : character.Items) std::erase(item.*kind.affected, record.IDKey);
  record.Targets.clear();
  record.Linked = false;
}

void LinkRecord(KVRCharacter& character, clsBonus& record, const RecordKind& kind) {
  Unlink(character, record, kind);
  TargetFinder finder(character);
  LinkTargets(record, finder, kind);
  const std::string text = LCase(record.FullBonusText);
  for (clsItem& item : character.Items) {
    if (TraitNames(item).AppearIn(text)) (item.*kind.affected).push_back(record.IDKey);
  }
}

}  // namespace

void LinkToRecords(KVRCharacter& character, clsItem& item) {
  const TraitNames names(item);
  for (const RecordKind* kind : kKinds) {
    for (auto& record : character.*(kind->records)) {
      LinkIfApplied(item, *record, BonusTarget(*record), *kind);
      if (names.AppearIn(LCase(record->FullBonusText))) (item.*(kind->affected)).push_back(record->IDKey);
    }
  }
}

void UnlinkFromRecords(clsItem& item) {
  item.ClearBonusAffectsFlag();
  for (const RecordKind* kind : kKinds) {
    for (clsBonus* record : item.*(kind->applied)) std::erase(record->Targets, item.IDKey);
    (item.*(kind->applied)).clear();
    (item.*(kind->affected)).clear();
  }
}

void LinkAllRecords(KVRCharacter& character, TraitNameIndex& index) {
  for (clsItem& item : character.Items) {
    item.ClearBonusAffectsFlag();
    for (const RecordKind* kind : kKinds) {
      (item.*(kind->applied)).clear();
      (item.*(kind->affected)).clear();
    }
  }
  TargetFinder finder(character);
  for (const RecordKind* kind : kKinds) {
    for (auto& record : character.*(kind->records)) {
      record->Targets.clear();
      LinkTargets(*record, finder, *kind);
      index.NextTarget();
      index.Search(LCase(record->FullBonusText), false,
                   [&](clsItem& item) { (item.*(kind->affected)).push_back(record->IDKey); });
    }
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

void KVRCharacter::ClearBonusAffectsLinks(clsBonus& bonus) {
  Unlink(*this, bonus, kBonuses);
}

void KVRCharacter::ClearConditionalAffectsLinks(clsBonus& conditional) {
  Unlink(*this, conditional, kConditionals);
}

// An amount that reads the character's base damage is calculated with the trait that gives it.
void KVRCharacter::LinkRecordToCharValues(const clsBonus& record) {
  clsItem* giver = record.Owner == nullptr ? nullptr : record.Owner->RootOwnerItem();
  if (giver == nullptr || !ContainsNoCase(record.Bonus, "char::base")) return;
  if (std::ranges::find(charValueReaders_, giver->IDKey) == charValueReaders_.end()) {
    charValueReaders_.push_back(giver->IDKey);
  }
}

}  // namespace kvr
