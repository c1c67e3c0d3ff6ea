// Prerequisites and taboos of one trait on its character: the flags that a check sets, what it offers to add,
// and the records of taboos.
#include <algorithm>

#include "character/KVRCharacter.h"
#include "character/modNeeds.h"
#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTools.h"

namespace kvr {
namespace {

// The alternative that the user picks to be added; "" when there is none to add.
std::string ChooseAlternative(const clsItem& item, const std::vector<std::string>& alternatives) {
  if (alternatives.size() == 1) return alternatives.front();
  const std::string name = item.FullName();
  SelectionRequest request;
  request.Title = "Choose Prereqs: " + name;
  request.Text =
      "Please select the list of items that you wish to use to satisfy the prerequisites for " + name + ".";
  request.MinNumber = request.MaxNumber = 1;
  request.LimitNumber = true;
  for (const std::string& alternative : alternatives) {
    Choice choice;
    choice.Caption = KVRCharacter::NeedsListUserFriendly(alternative);
    choice.Alias = alternative;
    request.Choices.push_back(std::move(choice));
  }
  const SelectionAnswer answer = item.Owner->Env().prompts.ChooseMany(request);
  return answer.Canceled || answer.Chosen.empty() ? "" : answer.Chosen.front().Alias;
}

std::string ReportOf(const clsItem& item, const std::vector<std::string>& alternatives) {
  std::string text = item.FullName() + " still needs: ";
  for (std::size_t i = 0; i < alternatives.size(); ++i) {
    if (i > 0) text += '\n';
    text += KVRCharacter::NeedsListUserFriendly(alternatives[i]);
  }
  return text;
}

bool StoreNeedsCheck(clsItem& item, bool met) {
  const std::int16_t flag = met ? 0 : -1;
  if (item.NeedsCheck() == flag) return false;
  item.Owner->NoteFormerState(item);
  item.SetNeedsCheck(flag);
  return true;
}

bool StoreTabooCheck(clsItem& item, std::string_view found) {
  const std::int16_t flag = found.empty() ? 0 : -1;
  if (item.TabooFailed() == flag && item.FreeTag("tabootext") == found) return false;
  item.Owner->NoteFormerState(item);
  item.SetTabooFailed(flag);
  if (found.empty()) {
    item.DeleteTag("tabootext");
  } else {
    item.SetTagItem("tabootext", found);
  }
  return true;
}

}  // namespace

// Every calculation of a trait comes through here, so a trait without needs costs one look at its tags.
bool KVRCharacter::ItemNeedsCheck(clsItem& item, bool askToAdd, bool report) {
  if (item.FreeTagIsEmpty("needs")) return StoreNeedsCheck(item, true);
  const std::string needs = modNeeds::NeedsText(item);
  if (Trim(needs).empty() || modNeeds::NeedsAreMet({item}, needs)) return StoreNeedsCheck(item, true);
  bool changed = StoreNeedsCheck(item, false);
  if (!askToAdd && !report) return changed;
  std::vector<std::string> missing;
  modNeeds::NeedsCheckORItems(item, needs, missing);
  if (report) env_.log.LogLine(ReportOf(item, missing));
  const std::string chosen = askToAdd && !missing.empty() ? ChooseAlternative(item, missing) : "";
  if (chosen.empty()) return changed;
  const std::int32_t id = item.IDKey;
  AddSpecifiedItems(item.FullName(), chosen, id);
  // What was added may have brought or taken anything.
  if (ItemByKey(id) == &item && StoreNeedsCheck(item, modNeeds::NeedsAreMet({item}, needs)))
    changed = !changed;
  return changed;
}

void KVRCharacter::RecheckCountingNeeds() {
  for (clsItem& item : Items) {
    if (modNeeds::CountsTraits(item.FreeTag("needs")) || modNeeds::CountsTraits(item.FreeTag("taboo"))) {
      QueueItem(item);
    }
  }
  TrickleRecalcItems();
}

bool KVRCharacter::ItemTabooCheck(clsItem& item, bool report) {
  const std::string_view taboo = item.FreeTag("taboo");
  std::string found;
  if (!taboo.empty() && !modNeeds::TaboosAreMitigated(item))
    modNeeds::TabooCheckItems(item, std::string(taboo), found);
  const bool changed = StoreTabooCheck(item, found);
  if (report && !found.empty()) env_.log.LogLine(item.FullName() + " taboo exists: " + found);
  return changed;
}

std::string KVRCharacter::NeedsListUserFriendly(std::string text) {
  modTools::ReplaceAll(text, "::baseapppoints", "pts");
  return text;
}

void KVRCharacter::AddTaboosFromOwner(clsItem& owner) {
  modNewParser::ForEachToken(owner.FreeTag("taboo"), ',', modNewParser::kNames, [&](std::string_view entry) {
    entry = Trim(entry);
    if (entry.empty()) return;
    auto taboo = std::make_unique<clsTaboo>();
    taboo->TabooItem = entry;
    taboo->Owner = &owner;
    Taboos.push_back(std::move(taboo));
  });
}

void KVRCharacter::RemoveTaboosFromOwner(clsItem& owner) {
  std::erase_if(Taboos, [&](const auto& taboo) { return taboo->Owner == &owner; });
}

// A trait that is switched off forbids nothing.
void KVRCharacter::DisableItemTaboos(clsItem& item) {
  RemoveTaboosFromOwner(item);
}

void KVRCharacter::EnableItemTaboos(clsItem& item) {
  RemoveTaboosFromOwner(item);
  AddTaboosFromOwner(item);
}

}  // namespace kvr
