// The prompts of a host without a user: queued answers, else the listed Cancel.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "core/EnginePrompts.h"

namespace kvr {

// An answer stays queued until a prompt takes it. For a box it is the button's word, followed by ",checked"
// for a notice whose box is ticked; for an input and a file dialog the text; for a list positions from 1 or
// captions, separated by commas, a caption with a comma (or one that could be a position) in braces; "cancel"
// cancels. What does not fit falls through to the cancel and is told to `onNotice`, as is every prompt that
// finds no answer ("prompt: TITLE: TEXT" on one line, line breaks as "~P", the title "BRASK Kivera" where
// there is none).
class ScriptedPrompts : public EnginePrompts {
 public:
  using Notice = std::function<void(const std::string&)>;
  explicit ScriptedPrompts(Notice onNotice = {}) : onNotice_(std::move(onNotice)) {}

  void QueueAnswer(std::string answer) { answers_.push_back(std::move(answer)); }
  std::size_t QueuedAnswers() const { return answers_.size(); }
  void ClearAnswers() { answers_.clear(); }

  Answer MessageBox(std::string_view text, std::string_view title, Buttons buttons) override;
  TextAnswer PopupInputBox(std::string_view prompt, std::string_view title, std::string_view preset) override;
  ChoiceAnswer ChooseOne(std::string_view title, std::string_view text,
                         const std::vector<std::string>& choices) override;
  SelectionAnswer ChooseMany(const SelectionRequest& request) override;
  SelectItemsAnswer SelectItems(const SelectItemsRequest& request) override;
  bool ShowMessage(const MessageRequest& request) override;
  ConfirmAnswer Confirm(std::string_view title, std::string_view text, bool okayOnly,
                        std::string_view checkButtonText) override;
  ChoiceAnswer ChooseFromList(std::string_view title, const std::vector<std::string>& items) override;
  // A host without a user has no windows.
  bool EditMods(std::string_view) override { return true; }
  bool EditItem(std::string_view) override { return true; }
  std::string ChooseDataSet(std::string_view presetPath) override;
  std::string BrowseForFolder(std::string_view caption) override;
  std::string SaveFileName(std::string_view title, std::string_view preset, std::string_view filter) override;
  std::string OpenFileName(std::string_view title, std::string_view folder, std::string_view filter) override;

 private:
  void Notify(std::string_view title, std::string_view text, std::string_view complaint) const;
  void Misfit(std::string_view title, std::string_view text, std::string_view answer) const;
  // Nothing, and a notice, when none is queued.
  std::optional<std::string> TakeAnswer(std::string_view title, std::string_view text);
  // Nothing when cancelled or when the answer does not meet the goal.
  std::optional<std::vector<std::size_t>> ChoosePositions(const SelectionRequest& goal,
                                                          const std::vector<Choice>& choices,
                                                          std::string_view title, std::string_view text,
                                                          bool allowRepeats);
  SelectItemsAnswer PickItems(const SelectItemsRequest& request);
  std::string TakePath(std::string_view title, std::string_view text);

  Notice onNotice_;
  std::deque<std::string> answers_;
  std::string inputTitle_, inputPrompt_;
};

}  // namespace kvr
