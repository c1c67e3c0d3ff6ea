// Puts modifiers on traits and on other modifiers: those of the library, and those that a trait or modifier
// brings in its `initmods`.
#include "character/KVRCharacter.h"
#include "character/ModTree.h"
#include "character/TechLevel.h"
#include "character/modDirectives.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr {

namespace {

constexpr std::string_view kNewModeQuestion =
    "Are you sure you want to add this modifier?\r\n"
    "Adding this modifier to the target will add a new attack mode to it, or possibly change an existing "
    "mode. Such a change can NOT be undone.";

}  // namespace

std::int32_t KVRCharacter::AddModFromSystem(std::string_view sysKey, CalcItem& owner) {
  TraceScope trace("KVRCharacter:AddModFromSystem");
  const ModRecord* record = system_.Mods.Item(sysKey);
  if (!record) {
    env_.log.LogRed("The library has no modifier with the key '" + std::string(sysKey) + "'.");
    return 0;
  }
  return CreateNewMod(owner, record->TagList(), record->Group());
}

std::int32_t KVRCharacter::CreateNewMod(CalcItem& owner, std::string_view tagList, std::string_view group) {
  TraceScope trace("KVRCharacter:CreateNewMod");
  clsMod* mod = MakeMod(owner, tagList, group);
  if (!mod) return 0;
  const std::int32_t id = mod->IDKey;
  LogFailure(env_.log, [&] {
    MakeModRecords(*mod);
    for (clsMod* inner : AllModsOf(*mod)) MakeModRecords(*inner);
    mod->UpdateMyBonuses();
    AfterModsChanged(*owner.RootOwnerItem());
  });
  return id;
}

clsMod* KVRCharacter::MakeMod(CalcItem& owner, std::string_view tagList, std::string_view group) {
  if (!ModsOf(owner) || !owner.RootOwnerItem() || !KeysAreLeft()) return nullptr;
  if (ModDepth(owner) >= kDeepestMod) {
    env_.log.LogRed("A modifier of '" + owner.RootOwnerItem()->FullName() +
                    "' is left out: modifiers on modifiers go too deep.");
    return nullptr;
  }
  NoteFormerState(*owner.RootOwnerItem());
  auto mod = std::make_unique<clsMod>();
  mod->Owner = &owner;
  // The tag is sought behind a comma.
  std::string list = "," + std::string(tagList);
  const std::string initMods = ExtractOwnInitMods(list);
  modDirectives::MarkMessages(list);
  if (modDirectives::HandleSpecialDirectives(list, *this, {{"%AddedItemsList%", ""}})) return nullptr;
  if (modDirectives::HandleDirectives(list, *this, {{"%AddedItemsList%", ""}})) return nullptr;
  const std::vector<std::string> messages = modDirectives::TakeMarkedMessages(list);
  mod->NewTagList(list);
  if (mod->Group().empty() && !group.empty()) mod->SetTagItem("group", group);
  if (std::string tl = mod->TagItem("tl"); !tl.empty()) mod->SetTagItem("tl", ReducedTL(tl, TL));
  if (!NewModeAllowed(*mod)) return nullptr;
  if (!mod->Tags().Value("addmode").empty()) ModAddsNewMode(*mod);
  clsMod& made = *mod;
  made.IDKey = NewKey();
  made.Flag = clsItem::kNewlyAdded;
  ModsOf(owner)->Add(std::move(mod), KeyTextOf(made.IDKey));
  if (made.TagItem("level").empty()) made.SetTagItem("level", "1");
  for (const std::string& message : messages) modDirectives::ShowMessage(*this, message);
  MakeInitialMods(made, initMods);
  return &made;
}

void KVRCharacter::MakeInitialMods(CalcItem& owner, std::string_view initMods) {
  for (std::string_view entry : modNewParser::ParseSplitChars(initMods, "|", modNewParser::kNames)) {
    if (entry.empty()) continue;
    env_.log.LogLine(TraceTop() + ": have new mod: " + std::string(entry));
    const std::string list = KVRSystem::ReturnModItem(modTools::StripQuotesAndBraces(entry));
    env_.log.LogLine(TraceTop() + ": reformat mod: " + list);
    LogFailure(env_.log, [&] { MakeMod(owner, list, "Initial"); });
  }
}

bool KVRCharacter::NewModeAllowed(const clsMod& mod) {
  if (mod.Tags().Value("addmode").empty() || env_.Config.NeverAskAboutNewModes) return true;
  const ConfirmAnswer answer =
      env_.prompts.Confirm("Are you sure?", kNewModeQuestion, false, "&Don't ask me this anymore.");
  if (answer.Canceled) {
    env_.log.LogLine("'" + mod.FullName() + "' was not added, because its attack mode was refused.");
    return false;
  }
  if (answer.ButtonChecked) env_.Config.NeverAskAboutNewModes = -1;
  return true;
}

void KVRCharacter::MakeModRecords(clsMod& mod) {
  AddBonusesFromOwner(mod);
  AddConditionalsFromOwner(mod);
}

void KVRCharacter::AfterModsChanged(clsItem& item) {
  ClearTokensForItem(item);
  CreateAffectsLinks(item);
  SetRefreshList(item.ItemType);
  item.Calculate();
  PushTrickle(item);
}

}  // namespace kvr
