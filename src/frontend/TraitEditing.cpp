// Edits of one trait, as the windows and kivera-batch make them.
#include "frontend/TraitEditing.h"

#include "character/TagChanges.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modTags.h"

namespace kvr::TraitEditing {

namespace {

bool IsNameTag(std::string_view tag) {
  return EqualNoCase(tag, "name") || EqualNoCase(tag, "nameext");
}

// The links of a family stand on both sides, so they are made and undone there, never written.
void SetParent(KVRCharacter& character, const clsItem& item, std::string_view key) {
  if (Trim(key).empty()) {
    character.UnmakeChildOf(item.KeyText());
  } else if (const clsItem* parent = character.ItemByKey(NumberOfKeyText(Trim(key)))) {
    character.MakeChildOf(item.KeyText(), parent->KeyText());
  } else {
    character.Env().log.LogRed("'" + item.FullName() + "' got no parent: there is no trait '" +
                               std::string(key) + "'.");
  }
}

void Recalculate(KVRCharacter& character, clsItem& item) {
  character.ClearTokensForItem(item);
  item.Calculate();
  character.PushTrickle(item);
  character.SetRefreshList(item.ItemType);
}

}  // namespace

bool SetTag(clsItem& item, std::string_view tag, std::string_view value) {
  if (!modTags::ParensBalance(value) || !modTags::ParensBalance(tag)) return false;
  KVRCharacter& character = *item.Owner;
  if (EqualNoCase(tag, "childkeylist")) return true;
  if (EqualNoCase(tag, "parentkey")) {
    SetParent(character, item, value);
    return true;
  }
  character.ClearTokensForItem(item);
  character.PushRecalcItems(item);  // those who know it by its former text
  if (IsNameTag(tag)) {
    character.ResortItem(item, [&] { item.SetTagItem(tag, value); });
  } else {
    item.SetTagItem(tag, value);
  }
  if (IsNameTag(tag)) character.PushRecalcGiven(item);
  SpreadTagChange(item, MakesRecords(tag));
  return true;
}

void SetLevel(clsItem& item, double level) {
  item.SetScoreTo(level);
  item.Owner->SetRefreshList(item.ItemType);
}

void SetPointsSpent(clsItem& item, Currency points) {
  item.SetBasePoints(points);
  Recalculate(*item.Owner, item);
}

void Increment(clsItem& item, int count) {
  for (int i = 0; i < count; ++i) item.Increment();
  item.Owner->SetRefreshList(item.ItemType);
}

void Decrement(clsItem& item, int count) {
  for (int i = 0; i < count; ++i) item.Decrement();
  item.Owner->SetRefreshList(item.ItemType);
}

void SetModLevel(clsMod& mod, std::int32_t level) {
  mod.SetTagItem("level", std::to_string(level));
  mod.Calculate();
  if (clsItem* item = mod.RootOwnerItem()) AfterModsChanged(*item);
}

void AfterModsChanged(clsItem& item) {
  item.Owner->CreateAffectsLinks(item);
  Recalculate(*item.Owner, item);
}

}  // namespace kvr::TraitEditing
