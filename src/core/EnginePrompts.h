// Everything that the engine asks of the user. Every prompt is modal; the engine waits for the answer. Cancel
// is never an error: the caller stops the one action, and the character stays as it was before that action.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "core/Currency.h"

namespace kvr {

enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Answer : int { Ok = 1, Cancel = 2, Yes = 6, No = 7 };
// What a host without a user gives: OK for an OK box, No for Yes/No, Cancel where there is one.
Answer CancelAnswer(Buttons buttons);

struct TextAnswer {
  bool Canceled = true;
  std::string Text;
};

struct ChoiceAnswer {
  bool Canceled = true;
  std::size_t ChoiceNum = 0;  // from 1
  std::string ChoiceText;
};

// One line of a selection.
struct Choice {
  std::string Caption;
  std::string Alias;  // the text to return if it differs from the caption; "" if it does not
  std::array<std::string, 5> Alts;
  Currency Cost;
  bool Picked = false;  // on entry
};

enum class CountBy { Number, Cost };

// A selection of one or many. A maximum of 0 is no limit. Where both number and cost are limited, both goals
// must be met before OK.
struct SelectionRequest {
  std::string Title, Text;
  std::vector<Choice> Choices;
  CountBy ByNumberOrCost = CountBy::Number;
  long MinNumber = 0, MaxNumber = 0;
  Currency MinCost, MaxCost;
  bool LimitNumber = false, LimitCost = false;
  bool HasMaxCost = false;  // a MaxCost of 0 is a limit too, since costs can be negative
};

struct SelectionAnswer {
  bool Canceled = true;
  std::vector<Choice> Chosen, Unchosen;
};

// "Want: exactly 2", "Want: at least 1", "Want: 0 to 3" and "Have: 2" or "Cost: 12"; and whether OK is
// allowed.
std::string GoalLine(const SelectionRequest& request);
std::string StatusLine(const SelectionRequest& request, long count, Currency cost);
bool GoalMet(const SelectionRequest& request, long count, Currency cost);

// A running selection of traits: each pick is made at once, so that its cost counts and can be changed before
// OK. Positions count from 0 in the request's Items.
class ItemPicks {
 public:
  virtual ~ItemPicks() = default;
  // Takes what is offered, or raises by a step what was taken. False, with a log line, when that can't be.
  virtual bool Pick(std::size_t position) = 0;
  // Lowers by a step what was taken, or gives it back.
  virtual bool Unpick(std::size_t position) = 0;
  virtual long CurCount() const = 0;
  virtual Currency CurCost() const = 0;
  virtual bool OkayAllowed() const = 0;
};

// A selection from whole library lists. Entries are keys of the library's trait collection, or key texts
// ("k17") of traits that the character has.
struct SelectItemsRequest {
  std::string Title, Description;
  std::vector<Choice> Items;  // Alias: the key; Alts[0]: the key text of the existing trait, "" for a new one
  long MinNumber = 0, MaxNumber = 0;
  Currency MinCost, MaxCost;
  bool LimitNumber = false, LimitCost = false;
  bool HasMaxCost = false;     // a MaxCost of 0 is a limit too, since costs can be negative
  bool MultiTrait = false;     // several types are offered
  ItemPicks* Picks = nullptr;  // picks are made here, and the answer only tells how it ended
};

struct SelectItemsAnswer {
  bool Canceled = true;
  std::vector<std::string> ItemsAdded;          // library keys
  std::vector<std::string> ExistingItemsAdded;  // key texts
};

struct MessageRequest {
  std::string Title, Heading, Text, ClosingLine;
  bool ShowCancel = false;
  bool ConfirmOkay = false;  // a tick box must be set before OK
  std::string CheckBoxText;
};

struct ConfirmAnswer {
  bool Canceled = true;
  bool ButtonChecked = false;
};

class EnginePrompts {
 public:
  virtual ~EnginePrompts() = default;

  virtual Answer MessageBox(std::string_view text, std::string_view title, Buttons buttons) = 0;
  // An empty title or prompt leaves the former one in place.
  virtual TextAnswer PopupInputBox(std::string_view prompt, std::string_view title,
                                   std::string_view preset) = 0;
  virtual ChoiceAnswer ChooseOne(std::string_view title, std::string_view text,
                                 const std::vector<std::string>& choices) = 0;
  virtual SelectionAnswer ChooseMany(const SelectionRequest& request) = 0;
  virtual SelectItemsAnswer SelectItems(const SelectItemsRequest& request) = 0;
  // True when cancelled.
  virtual bool ShowMessage(const MessageRequest& request) = 0;
  virtual ConfirmAnswer Confirm(std::string_view title, std::string_view text, bool okayOnly,
                                std::string_view checkButtonText) = 0;
  // Picks a trait from a list (the parent of a child).
  virtual ChoiceAnswer ChooseFromList(std::string_view title, const std::vector<std::string>& items) = 0;

  // The windows on one trait of the current character, by its key text: its modifiers, and its text. True
  // when cancelled.
  virtual bool EditMods(std::string_view itemKey) = 0;
  virtual bool EditItem(std::string_view itemKey) = 0;

  // File dialogs; "" when cancelled. The filter has the form "Name|*.ext|Name|*.ext".
  virtual std::string ChooseDataSet(std::string_view presetPath) = 0;
  virtual std::string BrowseForFolder(std::string_view caption) = 0;
  virtual std::string SaveFileName(std::string_view title, std::string_view preset,
                                   std::string_view filter) = 0;
  virtual std::string OpenFileName(std::string_view title, std::string_view folder,
                                   std::string_view filter) = 0;
};

}  // namespace kvr
