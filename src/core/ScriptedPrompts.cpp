// Answers from a queue: fitting the next one to the prompt that asks, and the cancel where none fits.
#include "core/ScriptedPrompts.h"

#include "core/Environment.h"
#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTools.h"

namespace kvr {

namespace {

constexpr std::string_view kCancelWord = "cancel";

std::optional<Answer> ButtonOf(std::string_view word, Buttons buttons) {
  const bool hasOk = buttons == Buttons::Ok || buttons == Buttons::OkCancel;
  if (EqualNoCase(word, kCancelWord)) return CancelAnswer(buttons);
  if (hasOk && EqualNoCase(word, "ok")) return Answer::Ok;
  if (!hasOk && EqualNoCase(word, "yes")) return Answer::Yes;
  if (!hasOk && EqualNoCase(word, "no")) return Answer::No;
  return std::nullopt;
}

// The 0-based position that one word of an answer names; npos if none. A word in braces is a caption, never a
// position.
std::size_t PositionOf(std::string_view word, const std::vector<std::string_view>& captions) {
  std::size_t number = 0;
  const char* end = word.data() + word.size();
  if (const auto parsed = std::from_chars(word.data(), end, number);
      parsed.ptr == end && number >= 1 && number <= captions.size())
    return number - 1;
  const std::string_view caption = modTools::StripBraces(word);
  for (std::size_t i = 0; i < captions.size(); ++i) {
    if (EqualNoCase(Trim(captions[i]), Trim(caption))) return i;
  }
  return npos;
}

// The positions that an answer names, in its order; nothing if a word names none. An empty answer names no
// line.
std::optional<std::vector<std::size_t>> PositionsOf(std::string_view answer,
                                                    const std::vector<std::string_view>& captions,
                                                    bool allowRepeats) {
  std::vector<std::size_t> positions;
  if (Trim(answer).empty()) return positions;
  for (const std::string_view word : modNewParser::ParseSplitChars(answer, ",", modNewParser::kBraces)) {
    const std::size_t position = PositionOf(word, captions);
    if (position == npos) return std::nullopt;
    if (allowRepeats || std::find(positions.begin(), positions.end(), position) == positions.end())
      positions.push_back(position);
  }
  return positions;
}

std::vector<std::string_view> CaptionsOf(const std::vector<Choice>& choices) {
  std::vector<std::string_view> captions;
  for (const Choice& choice : choices) captions.push_back(choice.Caption);
  return captions;
}

bool FitsGoal(const SelectionRequest& goal, const std::vector<Choice>& choices,
              const std::vector<std::size_t>& positions) {
  Currency cost;
  for (const std::size_t position : positions) cost += choices[position].Cost;
  return GoalMet(goal, static_cast<long>(positions.size()), cost);
}

SelectionRequest GoalOf(const SelectItemsRequest& request) {
  SelectionRequest goal;
  goal.MinNumber = request.MinNumber;
  goal.MaxNumber = request.MaxNumber;
  goal.MinCost = request.MinCost;
  goal.MaxCost = request.MaxCost;
  goal.LimitNumber = request.LimitNumber;
  goal.LimitCost = request.LimitCost;
  goal.HasMaxCost = request.HasMaxCost;
  return goal;
}

std::string OnOneLine(std::string text) {
  for (const std::string_view lineBreak : {"\r\n", "\n", "\r"}) modTools::ReplaceAll(text, lineBreak, "~P");
  return text;
}

}  // namespace

void ScriptedPrompts::Notify(std::string_view title, std::string_view text,
                             std::string_view complaint) const {
  if (!onNotice_) return;
  std::string notice = "prompt: ";
  notice.append(title.empty() ? kProgramTitle : title).append(": ").append(text).append(complaint);
  onNotice_(OnOneLine(std::move(notice)));
}

std::optional<std::string> ScriptedPrompts::TakeAnswer(std::string_view title, std::string_view text) {
  if (answers_.empty()) {
    Notify(title, text, "");
    return std::nullopt;
  }
  std::string answer = std::move(answers_.front());
  answers_.pop_front();
  return answer;
}

void ScriptedPrompts::Misfit(std::string_view title, std::string_view text, std::string_view answer) const {
  Notify(title, text, " (the answer '" + std::string(answer) + "' does not fit)");
}

Answer ScriptedPrompts::MessageBox(std::string_view text, std::string_view title, Buttons buttons) {
  const auto answer = TakeAnswer(title, text);
  if (!answer) return CancelAnswer(buttons);
  if (const auto button = ButtonOf(Trim(*answer), buttons)) return *button;
  Misfit(title, text, *answer);
  return CancelAnswer(buttons);
}

TextAnswer ScriptedPrompts::PopupInputBox(std::string_view prompt, std::string_view title, std::string_view) {
  if (!prompt.empty()) inputPrompt_ = prompt;
  if (!title.empty()) inputTitle_ = title;
  auto answer = TakeAnswer(inputTitle_, inputPrompt_);
  if (!answer || EqualNoCase(Trim(*answer), kCancelWord)) return {};
  return {false, std::move(*answer)};
}

ChoiceAnswer ScriptedPrompts::ChooseOne(std::string_view title, std::string_view text,
                                        const std::vector<std::string>& choices) {
  const auto answer = TakeAnswer(title, text);
  if (!answer || EqualNoCase(Trim(*answer), kCancelWord)) return {};
  const auto positions = PositionsOf(*answer, {choices.begin(), choices.end()}, false);
  if (positions && positions->size() == 1)
    return {false, positions->front() + 1, choices[positions->front()]};
  Misfit(title, text, *answer);
  return {};
}

std::optional<std::vector<std::size_t>> ScriptedPrompts::ChoosePositions(const SelectionRequest& goal,
                                                                         const std::vector<Choice>& choices,
                                                                         std::string_view title,
                                                                         std::string_view text,
                                                                         bool allowRepeats) {
  const auto answer = TakeAnswer(title, text);
  if (!answer || EqualNoCase(Trim(*answer), kCancelWord)) return std::nullopt;
  auto positions = PositionsOf(*answer, CaptionsOf(choices), allowRepeats);
  if (positions && FitsGoal(goal, choices, *positions)) return positions;
  Misfit(title, text, *answer);
  return std::nullopt;
}

SelectionAnswer ScriptedPrompts::ChooseMany(const SelectionRequest& request) {
  const auto positions = ChoosePositions(request, request.Choices, request.Title, request.Text, false);
  SelectionAnswer result;
  if (!positions) return result;
  result.Canceled = false;
  std::vector<bool> chosen(request.Choices.size());
  for (const std::size_t position : *positions) {
    chosen[position] = true;
    result.Chosen.push_back(request.Choices[position]);
  }
  for (std::size_t i = 0; i < chosen.size(); ++i) {
    if (!chosen[i]) result.Unchosen.push_back(request.Choices[i]);
  }
  return result;
}

// A line that is named again is raised by a step each time.
SelectItemsAnswer ScriptedPrompts::PickItems(const SelectItemsRequest& request) {
  SelectItemsAnswer result;
  const auto answer = TakeAnswer(request.Title, request.Description);
  if (!answer || EqualNoCase(Trim(*answer), kCancelWord)) return result;
  const auto positions = PositionsOf(*answer, CaptionsOf(request.Items), true);
  bool fits = positions.has_value();
  if (fits) {
    for (const std::size_t position : *positions) fits = request.Picks->Pick(position) && fits;
  }
  if (fits && request.Picks->OkayAllowed()) {
    result.Canceled = false;
  } else {
    Misfit(request.Title, request.Description, *answer);
  }
  return result;
}

SelectItemsAnswer ScriptedPrompts::SelectItems(const SelectItemsRequest& request) {
  if (request.Picks) return PickItems(request);
  const auto positions =
      ChoosePositions(GoalOf(request), request.Items, request.Title, request.Description, request.MultiTrait);
  SelectItemsAnswer result;
  if (!positions) return result;
  result.Canceled = false;
  for (const std::size_t position : *positions) {
    const Choice& item = request.Items[position];
    if (item.Alts[0].empty())
      result.ItemsAdded.push_back(item.Alias);
    else
      result.ExistingItemsAdded.push_back(item.Alts[0]);
  }
  return result;
}

bool ScriptedPrompts::ShowMessage(const MessageRequest& request) {
  const Buttons buttons = request.ShowCancel ? Buttons::OkCancel : Buttons::Ok;
  return MessageBox(request.Text, request.Title, buttons) == Answer::Cancel;
}

ConfirmAnswer ScriptedPrompts::Confirm(std::string_view title, std::string_view text, bool okayOnly,
                                       std::string_view) {
  const Buttons buttons = okayOnly ? Buttons::Ok : Buttons::OkCancel;
  const auto answer = TakeAnswer(title, text);
  if (!answer) return {CancelAnswer(buttons) == Answer::Cancel, false};
  const auto words = modNewParser::ParseSplitChars(*answer, ",", modNewParser::kPlain);
  const bool isChecked = words.size() == 2 && EqualNoCase(words[1], "checked");
  const auto button = words.size() == (isChecked ? 2 : 1) ? ButtonOf(words[0], buttons) : std::nullopt;
  if (button) return {*button == Answer::Cancel, isChecked};
  Misfit(title, text, *answer);
  return {CancelAnswer(buttons) == Answer::Cancel, false};
}

ChoiceAnswer ScriptedPrompts::ChooseFromList(std::string_view title, const std::vector<std::string>& items) {
  return ChooseOne(title, "", items);
}

std::string ScriptedPrompts::TakePath(std::string_view title, std::string_view text) {
  auto answer = TakeAnswer(title, text);
  return answer && !EqualNoCase(Trim(*answer), kCancelWord) ? std::move(*answer) : std::string();
}

std::string ScriptedPrompts::ChooseDataSet(std::string_view presetPath) {
  return TakePath("Choose Data Set", presetPath);
}

std::string ScriptedPrompts::BrowseForFolder(std::string_view caption) {
  return TakePath(caption, "");
}

std::string ScriptedPrompts::SaveFileName(std::string_view title, std::string_view preset, std::string_view) {
  return TakePath(title, preset);
}

std::string ScriptedPrompts::OpenFileName(std::string_view title, std::string_view folder, std::string_view) {
  return TakePath(title, folder);
}

}  // namespace kvr
