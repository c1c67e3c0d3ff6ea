// The directives that need the trait itself: its combination, the windows on it, the traits that it brought;
// and messages.
#include "calc/Combinations.h"
#include "character/DirectiveRun.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr::modDirectives {
namespace {

constexpr std::string_view kMarker = "%%message%%(";
constexpr std::string_view kAddedItems = "%addeditemslist%";

// The "#" of the word; npos for none.
std::size_t FindWord(std::string_view text, std::string_view word) {
  for (std::size_t hash = text.find('#'); hash != npos; hash = text.find('#', hash + 1)) {
    if (EqualNoCase(WordAt(text, hash).letters, word)) return hash;
  }
  return npos;
}

// Takes each "#word" out of the trait's free tags, with its brackets if it has any; returns what the first
// ones hold.
std::string TakeWord(clsItem& item, std::string_view word) {
  std::string text = item.TagListNoFill();
  std::string body;
  for (std::size_t hash = FindWord(text, word); hash != npos; hash = FindWord(text, word)) {
    const Word found = WordAt(text, hash);
    std::size_t end = hash + 1 + found.letters.size();
    if (found.open != npos) {
      const std::string_view rest = std::string_view(text).substr(found.open + 1);
      const std::string_view inside = rest.substr(0, modTags::FindCloseParen(rest));
      if (body.empty()) body = Trim(inside);
      end = std::min(text.size(), found.open + 1 + inside.size() + 1);
    }
    text.erase(hash, end - hash);
  }
  item.SetTagList(text);
  return body;
}

std::string ReferenceTo(const clsItem& item) {
  return std::string(modPrefixes::ItemTypeName(item.ItemType)) + ":" + item.FullName();
}

constexpr long kLeastSkills = 2;

SelectionRequest CombinationRequest(const clsItem& combination) {
  SelectionRequest request;
  request.Title = combination.FullName();
  request.Text = "Please choose the skills that " + combination.FullName() + " joins:";
  request.LimitNumber = true;
  request.MinNumber = kLeastSkills;
  for (const clsItem& skill : combination.Owner->ItemsByType[kSkills]) {
    if (&skill != &combination) request.Choices.push_back({skill.FullName(), skill.KeyText(), {}, {}, false});
  }
  return request;
}

// "Blade + Shield". The brackets of an extension would be read as those of the whole name.
std::string CombinationName(const std::vector<clsItem*>& skills) {
  std::string name;
  for (const clsItem* skill : skills) {
    if (!name.empty()) name += " + ";
    name += skill->Name();
    if (!skill->NameExt().empty()) name.append(" [").append(skill->NameExt()).append("]");
  }
  return name;
}

void StoreCombination(clsItem& combination, const std::vector<clsItem*>& skills, std::string_view flags) {
  std::vector<std::string> keys;
  for (const clsItem* skill : skills) keys.push_back(std::to_string(skill->IDKey));
  const std::vector<std::string> attacks(skills.size(), "1");
  combination.SetTagItem("combokeys", modTags::CreateListFromStringArray(keys));
  combination.SetTagItem("comboattacks", modTags::CreateListFromStringArray(attacks));
  if (!flags.empty()) combination.SetTagItem("comboflags", flags);
  RefreshCombinationKeys(combination);  // names the skills in `combodeffrom`
  KVRCharacter& character = *combination.Owner;
  character.ResortItem(combination, [&] { combination.SetName(CombinationName(skills)); });
  character.ClearTokensForItem(combination);
}

}  // namespace

bool HoldsWord(std::string_view text, std::string_view word) {
  return FindWord(text, word) != npos;
}

bool HandleBuildCombo(clsItem& item, bool quiet) {
  TraceScope trace("modDirectives:HandleBuildCombo");
  const std::string flags = TakeWord(item, "buildcombo");
  if (quiet) return false;
  const SelectionRequest request = CombinationRequest(item);
  Environment& env = item.Owner->Env();
  if (std::ssize(request.Choices) < kLeastSkills) {
    env.log.LogRed("'" + item.FullName() + "' can't be added: #buildcombo needs two skills to join.");
    return true;
  }
  const SelectionAnswer answer = env.prompts.ChooseMany(request);
  if (answer.Canceled) return true;
  std::vector<clsItem*> skills;
  for (const Choice& choice : answer.Chosen) {
    if (clsItem* skill = item.Owner->ItemByKey(NumberOfKeyText(choice.Alias))) skills.push_back(skill);
  }
  StoreCombination(item, skills, flags);
  return false;
}

void HandleBuildIt(clsItem& item, bool quiet) {
  TraceScope trace("modDirectives:HandleBuildIt");
  TakeWord(item, "buildit");
  if (!quiet) item.Owner->Env().prompts.EditMods(item.KeyText());
}

void HandleEdit(clsItem& item) {
  TraceScope trace("modDirectives:HandleEdit");
  TakeWord(item, "edit");
  item.Owner->Env().prompts.EditItem(item.KeyText());
}

void HandleAddedItemsList(std::string& text, const std::vector<std::int32_t>& addedItems,
                          KVRCharacter& character) {
  TraceScope trace("modDirectives:HandleAddedItemsList");
  std::vector<std::string> names;
  for (const std::int32_t id : addedItems) {
    if (const clsItem* item = character.ItemByKey(id)) names.push_back('"' + ReferenceTo(*item) + '"');
  }
  modTools::ReplaceAll(text, kAddedItems, modTags::CreateListFromStringArray(names));
  character.Env().log.LogLine(TraceTop() + ": Text$ = " + text);
  character.Env().log.LogLine(TraceTop() + ": End");
}

// --- Messages
// ---------------------------------------------------------------------------------------------------------

// Text, then title. A message with more commas is one text: none of it is lost.
void ShowMessage(KVRCharacter& character, std::string_view body) {
  const auto arguments = modNewParser::ParseSplitChars(body, ",", modNewParser::kNames);
  MessageRequest request;
  request.Text = ShownText(arguments.size() > 2 ? body : arguments.front());
  if (arguments.size() == 2) request.Title = ShownText(arguments[1]);
  character.Env().prompts.ShowMessage(request);
}

std::string HandleMessage(DirectiveRun& run, Directive& directive) {
  TraceScope trace("modDirectives:HandleMessage");
  ShowMessage(run.character, directive.body);
  return "";
}

void MarkMessages(std::string& text) {
  std::string marked;
  std::size_t copied = 0;
  for (std::size_t hash = text.find('#'); hash != npos; hash = text.find('#', hash + 1)) {
    const Word word = WordAt(text, hash);
    if (word.open == npos || !EqualNoCase(word.letters, "message")) continue;
    marked.append(text, copied, hash - copied).append(kMarker);
    copied = word.open + 1;
  }
  text = marked.append(text, copied);
}

std::vector<std::string> TakeMarkedMessages(std::string& text) {
  std::vector<std::string> bodies;
  for (std::size_t at = text.find(kMarker); at != npos; at = text.find(kMarker, at)) {
    const std::string_view rest = std::string_view(text).substr(at + kMarker.size());
    bodies.emplace_back(rest.substr(0, modTags::FindCloseParen(rest)));
    text.erase(at, kMarker.size() + bodies.back().size() + 1);
  }
  return bodies;
}

}  // namespace kvr::modDirectives
