// Prompts that can walk through a creation by themselves: they answer every question with something that fits
// and cancel at one of them. Until CancelAt is called they are ordinary scripted prompts.
//
//   world.prompts.CancelAt(3);   // 0: at none
//   ... add a trait ...
//   world.prompts.Asked();       // how many questions there were; below 3 when the third never came
#pragma once

#include "core/ScriptedPrompts.h"

namespace kvr {

class CancelingPrompts : public ScriptedPrompts {
 public:
  using ScriptedPrompts::ScriptedPrompts;

  void CancelAt(int number) {
    walks_ = true;
    cancelAt_ = number;
    asked_ = 0;
  }
  int Asked() const { return asked_; }

  Answer MessageBox(std::string_view text, std::string_view title, Buttons buttons) override {
    if (!walks_) return ScriptedPrompts::MessageBox(text, title, buttons);
    if (Cancels()) return CancelAnswer(buttons);
    return buttons == Buttons::Ok || buttons == Buttons::OkCancel ? Answer::Ok : Answer::Yes;
  }
  TextAnswer PopupInputBox(std::string_view prompt, std::string_view title,
                           std::string_view preset) override {
    if (!walks_) return ScriptedPrompts::PopupInputBox(prompt, title, preset);
    if (Cancels()) return {};
    return {false, preset.empty() ? "x" : std::string(preset)};
  }
  ChoiceAnswer ChooseOne(std::string_view title, std::string_view text,
                         const std::vector<std::string>& choices) override {
    if (!walks_) return ScriptedPrompts::ChooseOne(title, text, choices);
    if (Cancels() || choices.empty()) return {};
    return {false, 1, choices[0]};
  }
  SelectionAnswer ChooseMany(const SelectionRequest& request) override {
    if (!walks_) return ScriptedPrompts::ChooseMany(request);
    SelectionAnswer answer;
    if (Cancels()) return answer;
    Currency cost;
    answer.Unchosen = request.Choices;
    while (!GoalMet(request, static_cast<long>(answer.Chosen.size()), cost)) {
      if (answer.Unchosen.empty()) return {};
      answer.Chosen.push_back(answer.Unchosen.front());
      answer.Unchosen.erase(answer.Unchosen.begin());
      cost += answer.Chosen.back().Cost;
    }
    answer.Canceled = false;
    return answer;
  }
  SelectItemsAnswer SelectItems(const SelectItemsRequest& request) override {
    if (!walks_ || !request.Picks) return ScriptedPrompts::SelectItems(request);
    SelectItemsAnswer answer;
    if (Cancels()) return answer;
    // One of each in turn, then steps upwards, as long as that leads on.
    ItemPicks& picks = *request.Picks;
    bool moved = true;
    while (!picks.OkayAllowed() && moved) {
      moved = false;
      for (std::size_t i = 0; i < request.Items.size() && !picks.OkayAllowed(); ++i) {
        const bool enough = request.LimitNumber && picks.CurCount() >= request.MinNumber;
        const long before = picks.CurCount();
        if (!picks.Pick(i)) continue;
        if (enough && picks.CurCount() > before) {
          picks.Unpick(i);
        } else {
          moved = true;
        }
      }
    }
    answer.Canceled = !picks.OkayAllowed();
    return answer;
  }
  ConfirmAnswer Confirm(std::string_view title, std::string_view text, bool okayOnly,
                        std::string_view checkButtonText) override {
    if (!walks_) return ScriptedPrompts::Confirm(title, text, okayOnly, checkButtonText);
    return {Cancels() && !okayOnly, false};
  }
  bool EditMods(std::string_view) override { return !walks_ || Cancels(); }
  bool EditItem(std::string_view) override { return !walks_ || Cancels(); }

 private:
  bool Cancels() { return ++asked_ == cancelAt_; }

  bool walks_ = false;
  int cancelAt_ = 0, asked_ = 0;
};

}  // namespace kvr
