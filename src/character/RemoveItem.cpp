// Takes traits and modifiers off the character, with all that hangs on them: children, components, bonuses,
// links, and what was changed for them elsewhere.
#include <algorithm>

#include "character/KVRCharacter.h"
#include "character/ModTree.h"
#include "core/Numbers.h"
#include "core/modTags.h"

namespace kvr {

namespace {

// Components of components are removed one inside the other to this depth; deeper ones wait their turn.
constexpr std::size_t kDeepestRemoval = 100;

// The number in `keep`: the trait that brought this one.
std::int32_t BringerOf(const clsItem& item) {
  return CLngClamped(Val(item.FreeTag("keep")));
}

}  // namespace

// One call of RemoveItem, with the traits that it takes along.
//
// A formula that fails while the neighbours are recalculated must not leave a trait half removed, so such a
// failure is kept until the end.
class ItemRemoval {
 public:
  explicit ItemRemoval(KVRCharacter& character) : character_(character) {}

  void Remove(clsItem& item);
  // Recalculates the bringers of what was removed, and passes on the first failure.
  void Finish();

 private:
  void Step(const std::function<void()>& step);
  void DropRecords(clsItem& item);
  void LeaveParent(clsItem& item);
  void PushChildren(clsItem& item);
  void LeaveBringer(clsItem& item);
  void RemoveComponents(clsItem& item);
  void TakeOff(clsItem& item);
  bool IsUnderRemoval(std::int32_t id) const;

  KVRCharacter& character_;
  std::vector<std::int32_t> bringers_;
  FirstFailure failure_;
};

void ItemRemoval::Step(const std::function<void()>& step) {
  failure_.Run([&] { LogFailure(character_.env_.log, step); });
}

bool ItemRemoval::IsUnderRemoval(std::int32_t id) const {
  return std::find(character_.removing_.begin(), character_.removing_.end(), id) !=
         character_.removing_.end();
}

void ItemRemoval::Remove(clsItem& item) {
  if (IsUnderRemoval(item.IDKey)) return;
  const std::int32_t id = item.IDKey;
  character_.NoteFormerState(item);
  character_.removing_.push_back(id);
  character_.SetRefreshList(item.ItemType);
  Step([&] { DropRecords(item); });
  Step([&] { LeaveParent(item); });
  PushChildren(item);
  LeaveBringer(item);
  RemoveComponents(item);
  Step([&] { character_.HandleReversion(id); });
  character_.ClearTokensForItem(item);
  Step([&] { character_.PushRecalcItems(item); });
  Step([&] { character_.ClearAffectsLinks(item); });
  TakeOff(item);
  std::erase(character_.removing_, id);
  // Components leave before their bringer, which must not be calculated anew for each of them.
  if (character_.removing_.empty()) Step([&] { character_.TrickleRecalcItems(); });
}

void ItemRemoval::DropRecords(clsItem& item) {
  character_.RemoveBonusesFromOwner(item);
  character_.RemoveConditionalsFromOwner(item);
  character_.RemoveTaboosFromOwner(item);
  character_.RemoveModsFromOwner(item);
}

void ItemRemoval::LeaveParent(clsItem& item) {
  if (clsItem* parent = character_.DetachFromParent(item)) parent->Calculate();
}

void ItemRemoval::PushChildren(clsItem& item) {
  modNewParser::ForEachToken(item.ChildKeyList(), ',', modNewParser::kPlain, [&](std::string_view key) {
    clsItem* child = character_.ItemByKey(NumberOfKeyText(Trim(key)));
    if (!child) return;
    character_.PushDeleteItem(child->KeyText());
    character_.NoteFormerState(*child);
    child->SetParentKey("");
  });
}

void ItemRemoval::LeaveBringer(clsItem& item) {
  if (item.FreeTagIsEmpty("owned") && item.FreeTagIsEmpty("disabled")) return;
  clsItem* bringer = character_.ItemByKey(BringerOf(item));
  if (!bringer) return;
  character_.NoteFormerState(*bringer);
  std::string pkids(bringer->FreeTag("pkids"));
  if (!pkids.empty()) {
    modTags::RemoveItemFromList(std::to_string(item.IDKey), pkids);
    bringer->SetTagItem("pkids", pkids);
  }
  if (!IsUnderRemoval(bringer->IDKey)) bringers_.push_back(bringer->IDKey);
}

void ItemRemoval::RemoveComponents(clsItem& item) {
  if (item.FreeTagIsEmpty("pkids")) return;
  std::vector<std::int32_t> components;
  for (const clsItem& other : character_.Items) {
    if (!other.FreeTagIsEmpty("keep") && BringerOf(other) == item.IDKey) components.push_back(other.IDKey);
  }
  // From the end to the start.
  std::reverse(components.begin(), components.end());
  for (std::int32_t id : components) {
    const clsItem* component = character_.ItemByKey(id);
    if (!component || IsUnderRemoval(id)) continue;
    character_.env_.log.LogLine(item.Name() + ": I should also be deleting: " + component->Name());
    if (character_.removing_.size() < kDeepestRemoval) {
      Step([&] { character_.RemoveItem(KeyTextOf(id)); });
    } else {
      character_.PushDeleteItem(KeyTextOf(id));
    }
  }
}

// A calculation since the records were dropped may have made some again.
void ItemRemoval::TakeOff(clsItem& item) {
  Step([&] { DropRecords(item); });
  const std::string key = item.KeyText();
  character_.ItemsByType[static_cast<std::size_t>(item.ItemType)].Remove(key);
  character_.Items.Remove(key);
}

void ItemRemoval::Finish() {
  for (std::int32_t id : bringers_) {
    if (clsItem* bringer = character_.ItemByKey(id)) Step([&] { bringer->Calculate(); });
  }
  if (!bringers_.empty()) Step([&] { character_.TrickleRecalcItems(); });
  if (character_.creations_.empty() && character_.removing_.empty()) {
    Step([&] { character_.RecheckCountingNeeds(); });
  }
  failure_.PassOn();
}

void KVRCharacter::RemoveItem(std::string_view keyText) {
  TraceScope trace("KVRCharacter:RemoveItem");
  const clsItem* first = ItemByKey(NumberOfKeyText(keyText));
  if (!first) return;
  PushDeleteItem(first->KeyText());
  ItemRemoval removal(*this);
  while (!deleteStack_.empty()) {
    if (clsItem* item = ItemByKey(NumberOfKeyText(PopDeleteItem()))) removal.Remove(*item);
  }
  removal.Finish();
}

void KVRCharacter::RemoveMod(CalcItem& owner, std::string_view modKey) {
  TraceScope trace("KVRCharacter:RemoveMod");
  clsSortedModCollection* mods = ModsOf(owner);
  clsMod* mod = mods ? mods->Item(modKey) : nullptr;
  if (!mod) return;
  if (clsItem* root = owner.RootOwnerItem()) NoteFormerState(*root);
  RemoveModsFromOwner(*mod);
  RemoveBonusesFromOwner(*mod);
  RemoveConditionalsFromOwner(*mod);
  mods->Remove(KeyTextOf(mod->IDKey));
  if (clsItem* root = owner.RootOwnerItem()) AfterModsChanged(*root);
}

void KVRCharacter::RemoveModsFromOwner(CalcItem& owner) {
  for (clsMod* mod : AllModsOf(owner)) {
    RemoveBonusesFromOwner(*mod);
    RemoveConditionalsFromOwner(*mod);
  }
  if (clsSortedModCollection* mods = ModsOf(owner)) mods->Clear();
}

bool KVRCharacter::RemovalTakesUnfinished(const clsItem& item) const {
  std::vector<std::int32_t> reached;
  for (const Creation& creation : creations_) reached.push_back(creation.id);
  // Removing a trait takes its children and its components along, so look upwards from those being made.
  for (std::size_t i = 0; i < reached.size(); ++i) {
    const clsItem* at = ItemByKey(reached[i]);
    if (!at) continue;
    if (at == &item) return true;
    for (std::int32_t above : {NumberOfKeyText(at->ParentKey()), BringerOf(*at)}) {
      if (std::find(reached.begin(), reached.end(), above) == reached.end()) reached.push_back(above);
    }
  }
  return false;
}

void KVRCharacter::CheckDupe(std::int32_t id) {
  TraceScope trace("KVRCharacter:CheckDupe");
  const clsItem* existing = ItemByKey(id);
  if (!existing || RemovalTakesUnfinished(*existing)) return;
  if (existing->FreeTagIsEmpty("keep")) {
    const Answer answer = env_.prompts.MessageBox(
        "Item '" + existing->FullName() +
            "' already exists on the character. Should I delete the existing copy in favor of the item from "
            "this template? (If No, you should do so manually later.)",
        "Remove existing duplicate item?", Buttons::YesNo);
    if (answer == Answer::Yes) RemoveItem(existing->KeyText());
  } else if (!env_.Config.NeverAskAboutTemplateDuplicates) {
    const clsItem* bringer = ItemByKey(BringerOf(*existing));
    const ConfirmAnswer answer = env_.prompts.Confirm(
        "Duplicate Item",
        "Duplicate item.\r\n\r\nThere is already an item '" + existing->FullName() +
            "' on the character. The existing item is a component of item '" +
            (bringer ? bringer->FullName() : std::string()) +
            "', so you'll have duplicate items. Work with your GM to resolve such stacking issues (p. B261).",
        false, "&Don't show me this dialog anymore.");
    if (answer.ButtonChecked && !answer.Canceled) env_.Config.NeverAskAboutTemplateDuplicates = -1;
  }
}

}  // namespace kvr
