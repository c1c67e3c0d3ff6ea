// Switches traits off and on, and gives them other names.
//
// A component that a template brought can't be taken away without changing the template, so it is disabled:
// it stays under another name, and an advantage that costs the opposite stands beside it.
#include "character/KVRCharacter.h"
#include "character/modLists.h"
#include "core/Numbers.h"

namespace kvr {

namespace {

constexpr std::string_view kDisabledMark = "*DISABLED*";

// Moves a tag's value to another tag, so that the checks no longer see it.
void PutAside(clsItem& item, std::string_view tag, std::string_view aside) {
  const std::string value = item.TagItem(tag);
  if (value.empty()) return;
  item.SetTagItem(aside, value);
  item.SetTagItem(tag, "");
}

void TakeBack(clsItem& item, std::string_view tag, std::string_view aside) {
  const std::string value = item.TagItem(aside);
  if (!value.empty()) item.SetTagItem(tag, value);
  item.DeleteTag(aside);
}

std::int32_t NumberInTag(const clsItem& item, std::string_view tag) {
  return CLngClamped(Val(item.FreeTag(tag)));
}

// The number of the trait that stands beside a disabled one. 0 where `disabledwith` names any other trait, as
// it may in a file that was edited: that one must not be removed for it.
std::int32_t NegativeOf(const KVRCharacter& character, const clsItem& item) {
  const clsItem* negative = character.ItemByKey(NumberInTag(item, "disabledwith"));
  const bool isPair = negative && negative != &item && NumberInTag(*negative, "disabledfrom") == item.IDKey;
  return isPair ? negative->IDKey : 0;
}

// The first trait of that name and of the item's type, other than the item itself.
std::size_t PositionOfOther(const KVRCharacter& character, const clsItem& item, std::string_view fullName) {
  std::size_t position = character.ItemPositionByNameAndExt(fullName, item.ItemType, 1);
  if (position && &character.Items.Item(position) == &item) {
    position = character.ItemPositionByNameAndExt(fullName, item.ItemType, position + 1);
  }
  return position;
}

}  // namespace

void KVRCharacter::ResortItem(clsItem& item, const std::function<void()>& change) {
  NoteFormerState(item);
  const std::string key = item.KeyText();
  clsSortedItemList& list = ItemsByType[static_cast<std::size_t>(item.ItemType)];
  std::unique_ptr<clsItem> taken = Items.Take(key);
  if (!taken) return change();
  list.Remove(key);
  const auto putBack = [&] {
    list.Add(&item, key);
    Items.Add(std::move(taken), key);
  };
  try {
    change();
  } catch (...) {
    putBack();
    throw;
  }
  putBack();
}

// --- Disabling and enabling
// ---------------------------------------------------------------------------------------------

std::int32_t KVRCharacter::MakeDisablingItem(const clsItem& item, std::string_view oldName) {
  std::string line = "NO, " + NumberText(-item.Points()) + ", locked(yes), disabled(yes), disabledfrom(" +
                     std::to_string(item.IDKey) + ")";
  if (std::string_view keep = item.FreeTag("keep"); !keep.empty()) {
    line.append(", keep(").append(keep).append(")");
  }
  std::string list = KVRSystem::ReturnAdItem(line);
  // The name follows as a tag: in the item line, a comma or a quotation mark in it would be taken for the
  // line's own.
  list.append(",name(NO ").append(oldName).append(")");
  if (!item.NameExt().empty()) list.append(",nameext(").append(item.NameExt()).append(")");
  return CreateNewItem(kAds, list, "", "", -1, -1, -1);
}

void KVRCharacter::DisableItem(std::string_view keyText) {
  TraceScope trace("KVRCharacter:DisableItem");
  env_.log.LogLine("CollectionKey = " + std::string(keyText));
  clsItem* item = ItemByKey(NumberOfKeyText(keyText));
  if (!item) return;
  if (!item->FreeTagIsEmpty("disabled")) {
    return env_.log.LogLine("'" + item->FullName() +
                            "' can't be disabled, because it's a disabled component, or represents one.");
  }
  if (item->FreeTagIsEmpty("keep")) {
    return env_.log.LogLine("'" + item->FullName() + "' can't be disabled, because it's not a component.");
  }
  SetRefreshList(item->ItemType);
  DisableItemBonuses(*item);
  DisableItemTaboos(*item);
  PutAside(*item, "needs", "needs*disabled*");
  PutAside(*item, "taboo", "taboo*disabled*");
  ClearTokensForItem(*item);
  PushRecalcItems(*item);
  const std::string oldName = item->Name();
  env_.log.LogLine("Start FullName = " + item->FullName());
  ResortItem(*item, [&] {
    item->SetName(oldName + std::string(kDisabledMark));
    item->SetTagItem("disabled", "yes");
  });
  env_.log.LogLine("End FullName = " + item->FullName());
  // What reached it by its name does so no longer, as after the next loading.
  CreateAffectsLinks(*item);
  item->Calculate();
  const std::int32_t disabling = MakeDisablingItem(*item, oldName);
  if (clsItem* bringer = ItemByKey(NumberInTag(*item, "keep"))) {
    std::string pkids(bringer->FreeTag("pkids"));
    modLists::InsertItemIntoList(std::to_string(disabling), pkids);
    bringer->SetTagItem("pkids", pkids);
    QueueItem(*bringer);
  }
  item->SetTagItem("disabledwith", std::to_string(disabling));
  TrickleRecalcItems();
  env_.events.RefreshLists();
}

void KVRCharacter::EnableItem(std::string_view keyText) {
  TraceScope trace("KVRCharacter:EnableItem");
  clsItem* item = ItemByKey(NumberOfKeyText(keyText));
  if (!item) return;
  if (item->FreeTagIsEmpty("disabled")) {
    return env_.log.LogLine("'" + item->FullName() + "' can't be enabled, because it's not disabled.");
  }
  if (item->FreeTagIsEmpty("disabledwith")) {
    item = ItemByKey(NumberInTag(*item, "disabledfrom"));
    if (!item) return;
    env_.log.LogLine("Re-enabling " + item->FullName());
  }
  const std::int32_t id = item->IDKey, negative = NegativeOf(*this, *item);
  ClearTokensForItem(*item);
  ResortItem(*item, [&] {
    item->SetName(item->Name().substr(0, UCase(item->Name()).find(kDisabledMark)));
    item->DeleteTag("disabled");
    item->DeleteTag("disabledwith");
  });
  TakeBack(*item, "needs", "needs*disabled*");
  TakeBack(*item, "taboo", "taboo*disabled*");
  EnableItemBonuses(*item);
  EnableItemTaboos(*item);
  SetRefreshList(item->ItemType);
  RemoveItem(KeyTextOf(negative));
  // In a damaged file the two may be one family, and leave together.
  if (ItemByKey(id) != item) return env_.events.RefreshLists();
  ClearTokensForItem(*item);
  CreateAffectsLinks(*item);
  item->Calculate();
  PushTrickle(*item);
  env_.events.RefreshLists();
}

// --- Names
// --------------------------------------------------------------------------------------------------------------

bool KVRCharacter::RenameItem(std::string_view keyText, std::string_view newName, std::string_view newExt,
                              bool quiet) {
  TraceScope trace("KVRCharacter:RenameItem");
  clsItem* item = ItemByKey(NumberOfKeyText(keyText));
  if (!item) return false;
  env_.log.LogLine("Start FullName = " + item->FullName());
  env_.log.LogLine("NewName = " + std::string(newName));
  env_.log.LogLine("NewExt = " + std::string(newExt));
  if (item->FreeTagIsEmpty("basedon")) item->SetTagItem("basedon", item->FullName());
  env_.log.LogLine("Start BasedOn = " + item->TagItem("basedon"));
  const std::string newFullName = modPrefixes::JoinNameAndExt(newName, newExt);
  const std::size_t position = PositionOfOther(*this, *item, newFullName);
  env_.log.LogLine("p = " + std::to_string(position));
  if (position && !quiet) {
    env_.log.LogLine("'" + newFullName + "' was already in use. A duplicate might now exist.");
  }
  ClearTokensForItem(*item);
  ResortItem(*item, [&] {
    item->SetName(newName);
    item->SetNameExt(newExt);
  });
  ClearTokensForItem(*item);
  SetRefreshList(item->ItemType);
  PushRecalcItems(*item);
  CreateAffectsLinks(*item);
  // Other bonuses may reach it under the new name, and its own show that name.
  QueueItem(*item);
  PushRecalcGiven(*item);
  PushTrickle(*item);
  env_.log.LogLine("End FullName = " + item->FullName());
  return position == 0;
}

// --- Being active
// -------------------------------------------------------------------------------------------------------

void KVRCharacter::DeActivateItem(std::string_view keyText) {
  TraceScope trace("KVRCharacter:DeActivateItem");
  clsItem* item = ItemByKey(NumberOfKeyText(keyText));
  if (!item) return;
  SetRefreshList(item->ItemType);
  item->SetTagItem("inactive", "yes");
  RemoveBonusesFromOwner(*item);
  RemoveConditionalsFromOwner(*item);
  DeActivateItemModsBonuses(*item);
  ClearTokensForItem(*item);
  PushTrickle(*item);
}

void KVRCharacter::ReActivateItem(std::string_view keyText) {
  TraceScope trace("KVRCharacter:ReActivateItem");
  clsItem* item = ItemByKey(NumberOfKeyText(keyText));
  if (!item || item->FreeTagIsEmpty("inactive")) return;
  SetRefreshList(item->ItemType);
  item->DeleteTag("inactive");
  AddBonusesFromOwner(*item);
  AddConditionalsFromOwner(*item);
  ReActivateItemModsBonuses(*item);
  ClearTokensForItem(*item);
  CreateAffectsLinks(*item);
  PushTrickle(*item);
}

}  // namespace kvr
