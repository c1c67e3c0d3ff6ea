// Directives: words such as "#choice(...)" and "#input(...)" inside a tag list, which run when a trait or
// modifier is added. Each comes to plain text, which stands in its place afterwards;
// docs/formats/directives.md tells what each does.
//
// Whoever runs them passes a text of any kind: a whole tag list, or one value. A text without "#" costs one
// search. What the user chose is not read as a directive in the same run, and what the user typed never is:
// it loses the "#" of a directive's word. A run that does not end (a list that leads back to itself, brackets
// in brackets without end) is cancelled, with a red log line.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "character/KVRCharacter.h"

namespace kvr::modDirectives {

// A variable whose value is not known yet. A directive that holds its name in any case is left where it is,
// for a later run.
struct Substitution {
  std::string name, value;
};

// Whose text it is, for the log and for titles: a trait, and the tag in hand when the text is one value.
struct Origin {
  std::string trait, tag;
};

// Each runs its kind of directives from left to right and returns true when the user cancelled; the text is
// then worthless. `notHandled` receives what was left for a later run, with "," between. The trait is named
// by the text's own tag `name` where no origin is given.
//
// "#choice", "#choicelist", "#list", "#grouplist", "#buildlist", "#buildcharitemlist", "#message".
bool HandleDirectives(std::string& text, KVRCharacter& character,
                      const std::vector<Substitution>& protectedVars, std::string* notHandled = nullptr);
// "#input", "#inputreplace", "#inputtotag", "#inputtotagreplace".
bool HandleSpecialDirectives(std::string& text, KVRCharacter& character,
                             const std::vector<Substitution>& protectedVars,
                             std::string* notHandled = nullptr);
// "#buildselectlist".
bool HandleSelectXDirectives(std::string& text, KVRCharacter& character,
                             const std::vector<Substitution>& protectedVars,
                             std::string* notHandled = nullptr, Origin origin = {});
// Puts the traits that were added in the place of "%addeditemslist%": "AD:Luck", "SK:Sword (Broad)".
void HandleAddedItemsList(std::string& text, const std::vector<std::int32_t>& addedItems,
                          KVRCharacter& character);

// The directives at the end of adding. They leave the trait's free tags; with `quiet` nobody is asked.
// The word as a whole, in any case: "#edit" is not in "#edition".
bool HoldsWord(std::string_view text, std::string_view word);
// Asks for the skills of a combination; true when cancelled.
bool HandleBuildCombo(clsItem& item, bool quiet);
// The windows on the trait's modifiers and on its text.
void HandleBuildIt(clsItem& item, bool quiet);
void HandleEdit(clsItem& item);

// A modifier's messages wait until it has been put on. In its text they are marked, then taken out, then
// shown.
void MarkMessages(std::string& text);
std::vector<std::string> TakeMarkedMessages(std::string& text);
// The inside of a "#message(text, title)".
void ShowMessage(KVRCharacter& character, std::string_view body);

}  // namespace kvr::modDirectives
