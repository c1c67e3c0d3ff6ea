// Bonuses and conditionals of an owner: the records that a trait or modifier gives, made from its tags
// `gives` and `conditional`, dropped with it, and kept up to date when it is calculated.
#include "calc/RecordLinks.h"
#include "character/KVRCharacter.h"
#include "character/ModTree.h"
#include "core/modNewParser.h"

namespace kvr {
namespace {

bool IsInactive(CalcItem& owner) {
  return EqualNoCase(owner.TagItem("inactive"), "yes");
}

// An inactive or disabled trait gives nothing, and its modifiers neither.
bool GivesNothing(CalcItem& owner) {
  clsItem* root = owner.RootOwnerItem();
  return IsInactive(owner) || root == nullptr || IsInactive(*root) || !root->FreeTagIsEmpty("disabled");
}

// A sentence that can't be read leaves no record, and the others are made all the same.
void AddRecords(KVRCharacter& character, CalcItem& owner, std::string_view tag, const RecordKind& kind) {
  const std::string sentences = owner.TagItem(tag);
  if (sentences.empty()) return;
  modNewParser::ForEachToken(sentences, ',', modNewParser::kNames, [&](std::string_view sentence) {
    auto record = std::make_unique<clsBonus>();
    record->Owner = &owner;
    if (Trim(sentence).empty() || !record->CreateBonusFromText(sentence)) return;
    clsBonus& made = *(character.*kind.records).emplace_back(std::move(record));
    (owner.Given()->*kind.given).push_back(&made);
    (character.*kind.createLinks)(made);
    character.PushRecalcBonus(made);
  });
}

void RemoveRecords(KVRCharacter& character, CalcItem& owner, const RecordKind& kind) {
  GivenRecords* given = owner.Given();
  if (given == nullptr || (given->*kind.given).empty()) return;
  for (clsBonus* record : given->*kind.given) {
    character.NoteFormerRecord(*record);
    character.PushRecalcBonus(*record);
    (character.*kind.clearLinks)(*record);
  }
  (given->*kind.given).clear();
  std::erase_if(character.*kind.records, [&](const auto& record) { return record->Owner == &owner; });
}

// True if one of the values is another one now.
bool UpdateRecords(KVRCharacter& character, const std::vector<clsBonus*>& records) {
  bool changed = false;
  for (clsBonus* record : records) {
    if (!CalculateRecord(*record)) continue;
    changed = true;
    character.PushRecalcBonus(*record);
  }
  return changed;
}

bool UpdateAll(CalcItem& owner, std::vector<clsBonus*> GivenRecords::*given) {
  KVRCharacter* character = owner.RootOwnerChar();
  if (character == nullptr) return false;
  bool changed = UpdateRecords(*character, owner.Given()->*given);
  for (clsMod* mod : AllModsOf(owner)) {
    if (UpdateRecords(*character, mod->Given()->*given)) changed = true;
  }
  return changed;
}

}  // namespace

bool CalculateRecord(clsBonus& record) {
  const double value = record.Value;
  const std::string text = record.StringValueText;
  record.Calculate();
  return record.Value != value || record.StringValueText != text;
}

void KVRCharacter::AddBonusesFromOwner(CalcItem& owner) {
  TraceScope trace("KVRCharacter:AddBonusesFromOwner");
  if (IsInactive(owner)) {
    env_.log.LogLine(TraceTop() + ": " + owner.NameForMessages() +
                     " is inactive, not allowing bonuses to be created.");
  }
  if (GivesNothing(owner)) return;
  const std::string mitigated = owner.TagItem("mitigated");
  if (mitigated.empty() || EqualNoCase(mitigated, "taboo")) {
    AddRecords(*this, owner, "gives", kBonuses);
  } else {
    AddBonusesFromOwnerAsConditionals(owner);
  }
}

void KVRCharacter::AddBonusesFromOwnerAsConditionals(CalcItem& owner) {
  if (!GivesNothing(owner)) AddRecords(*this, owner, "gives", kConditionals);
}

void KVRCharacter::AddConditionalsFromOwner(CalcItem& owner) {
  if (!GivesNothing(owner)) AddRecords(*this, owner, "conditional", kConditionals);
}

void KVRCharacter::RemoveBonusesFromOwner(CalcItem& owner) {
  RemoveRecords(*this, owner, kBonuses);
}

void KVRCharacter::RemoveConditionalsFromOwner(CalcItem& owner) {
  RemoveRecords(*this, owner, kConditionals);
}

void KVRCharacter::DisableItemBonuses(clsItem& item) {
  RemoveBonusesFromOwner(item);
  RemoveConditionalsFromOwner(item);
  DeActivateItemModsBonuses(item);
}

void KVRCharacter::EnableItemBonuses(clsItem& item) {
  AddBonusesFromOwner(item);
  AddConditionalsFromOwner(item);
  ReActivateItemModsBonuses(item);
}

void KVRCharacter::DeActivateItemModsBonuses(clsItem& item) {
  for (clsMod* mod : AllModsOf(item)) {
    RemoveBonusesFromOwner(*mod);
    RemoveConditionalsFromOwner(*mod);
  }
}

void KVRCharacter::ReActivateItemModsBonuses(clsItem& item) {
  for (clsMod* mod : AllModsOf(item)) MakeModRecords(*mod);
}

void KVRCharacter::PushRecalcGiven(clsItem& item) {
  auto push = [this](CalcItem& owner) {
    for (clsBonus* record : owner.Given()->bonuses) PushRecalcBonus(*record);
    for (clsBonus* record : owner.Given()->conditionals) PushRecalcBonus(*record);
  };
  push(item);
  for (clsMod* mod : AllModsOf(item)) push(*mod);
}

void KVRCharacter::RelinkOwnerBonuses(clsItem& item) {
  for (const RecordKind* kind : {&kBonuses, &kConditionals}) {
    for (clsBonus* record : item.Given()->*(kind->given)) {
      if (record->TargetType != kTargetOwner) continue;
      PushRecalcBonus(*record);
      (this->*(kind->createLinks))(*record);
      PushRecalcBonus(*record);
    }
  }
}

bool clsItem::UpdateMyBonuses() {
  return UpdateAll(*this, &GivenRecords::bonuses);
}
bool clsItem::UpdateMyConditionals() {
  return UpdateAll(*this, &GivenRecords::conditionals);
}
bool clsMod::UpdateMyBonuses() {
  return UpdateAll(*this, &GivenRecords::bonuses);
}
bool clsMod::UpdateMyConditionals() {
  return UpdateAll(*this, &GivenRecords::conditionals);
}

}  // namespace kvr
