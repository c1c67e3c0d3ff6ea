// The record of an explained calculation, its lines as a tree, and the calculation run for its sake.
#include "calc/Explanation.h"

#include <algorithm>
#include <array>

#include "calc/ModeLists.h"
#include "calc/modSolver.h"
#include "character/SolvedTags.h"
#include "core/Text.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr {
namespace {

constexpr std::size_t kMostBytes = 1000000;

bool IsFormulaLine(const CalcRecord::Line& line) {
  return line.text.empty();
}

bool IsSameFormula(std::string_view a, std::string_view b) {
  return modTools::StripQuotesAndBraces(a) == modTools::StripQuotesAndBraces(b);
}

// Without the blanks that numbers bring along when they are put in: "12-5" for "12- 5".
std::string Tidied(std::string_view formula) {
  const auto isMark = [](char c) { return std::string_view("(+-*/<>=^").find(c) != npos; };
  std::string tidy;
  for (std::size_t i = 0; i < formula.size(); ++i) {
    const bool isBehindMark = i >= 2 && isMark(formula[i - 1]) && formula[i - 2] != ' ';
    if (formula[i] != ' ' || !isBehindMark) tidy += formula[i];
  }
  return tidy;
}

// What one line says twice is said once: a formula that is nothing but one reference, and a result that is a
// formula's.
void TakeInOnlyLine(CalcRecord::Line& line) {
  if (line.below.size() != 1 || !IsFormulaLine(line.below[0])) return;
  CalcRecord::Line only = std::move(line.below[0]);
  const bool isRepeated = IsSameFormula(line.formula, only.formula);
  const bool isResult = line.formula.empty() && line.result == only.result;
  if (isResult) line.formula = std::move(only.formula);
  if (isRepeated || isResult) {
    line.below = std::move(only.below);
  } else {
    line.below[0] = std::move(only);
  }
}

std::string Shown(const CalcRecord::Line& line) {
  if (IsFormulaLine(line)) return line.formula + " = " + line.result;
  std::string shown = line.text;
  if (!line.result.empty()) shown += ": " + line.result;
  if (!line.formula.empty()) shown += " = " + line.formula;
  return shown;
}

void AppendLines(std::vector<std::string>& shown, const std::vector<CalcRecord::Line>& lines,
                 std::size_t depth) {
  for (const CalcRecord::Line& line : lines) {
    shown.push_back(std::string(2 * depth, ' ') + Shown(line));
    AppendLines(shown, line.below, depth + 1);
  }
}

// Lets a calculation note what it does.
class Recording {
 public:
  Recording(KVRCharacter& character, CalcRecord& record) : state_(character.Solving) {
    state_.record = &record;
  }
  ~Recording() { state_.record = nullptr; }
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

 private:
  SolverState& state_;
};

// Where the result stands that the calculation makes of a tag: a weapon's "reach" is worked out in
// "charreach".
std::string_view ResultTag(const clsItem& item, std::string_view tag) {
  struct Twin {
    std::string_view tag, result;
  };
  static constexpr Twin kTwins[] = {
      {"parry", "parrylevel"}, {"parryat", "parrylevel"}, {"block", "blocklevel"}, {"blockat", "blocklevel"}};
  const std::string inHand = "char" + std::string(tag);
  const auto calculated = modeLists::CalculatedTags();
  const auto place = std::ranges::find(calculated, inHand);
  if (place != calculated.end() && !item.FreeTagIsEmpty(*place)) return *place;
  for (const Twin& twin : kTwins) {
    if (twin.tag == tag && !item.FreeTagIsEmpty(twin.result)) return twin.result;
  }
  return tag;
}

std::vector<std::string> WithHead(std::string head, const std::string& value,
                                  std::vector<std::string> lines) {
  if (!value.empty()) head += ": " + value;
  if (lines.empty()) lines.emplace_back("  nothing is calculated for this tag; it stands as it was written");
  lines.insert(lines.begin(), std::move(head));
  return lines;
}

}  // namespace

std::vector<std::string> CalcRecord::LinesFor(std::string_view tag) const {
  std::vector<std::string> shown;
  for (const Section& section : sections_) {
    if (modTags::IsItemInList(tag, section.tags)) AppendLines(shown, section.lines, 1);
  }
  if (bytes_ > kMostBytes) shown.emplace_back("  ...");
  return shown;
}

void CalcRecord::OpenSection(const CalcItem& subject, std::string_view tags) {
  if (&subject != subject_) {
    ++muted_;
    opened_.push_back(Opened::Muted);
  } else if (!open_.empty()) {
    opened_.push_back(Opened::Within);
  } else {
    opened_.push_back(Opened::Section);
    sections_.push_back({std::string(tags), {}});
    open_.emplace_back();
  }
}

void CalcRecord::CloseSection() {
  const Opened last = opened_.back();
  opened_.pop_back();
  if (last == Opened::Muted) --muted_;
  if (last != Opened::Section) return;
  sections_.back().lines = std::move(open_.back().below);
  open_.pop_back();
}

void CalcRecord::Restart(const CalcItem& subject) {
  if (&subject == subject_ && open_.empty()) sections_.clear();
}

void CalcRecord::Open(Line line) {
  open_.push_back(std::move(line));
}

void CalcRecord::Close(bool needsDetail) {
  Line line = std::move(open_.back());
  open_.pop_back();
  if (needsDetail && line.below.empty()) return;
  if (IsFormulaLine(line) && IsNumeric(line.formula)) return;
  line.formula = Tidied(line.formula);
  TakeInOnlyLine(line);
  if (!IsFormulaLine(line) && line.formula == line.result) line.formula.clear();
  Add(std::move(line));
}

void CalcRecord::Add(Line line) {
  if (bytes_ > kMostBytes) return;
  bytes_ += sizeof(Line) + line.text.size() + line.formula.size() + line.result.size();
  open_.back().below.push_back(std::move(line));
}

void CalcRecord::Repeat(std::string_view tag) {
  for (const Section& section : sections_) {
    if (!modTags::IsItemInList(tag, section.tags)) continue;
    for (const Line& line : section.lines) Add(line);
  }
}

namespace explain {

void Append(std::string& text, std::string_view part) {
  text += part;
}
void Append(std::string& text, double value) {
  text += NumberText(value);
}
void Append(std::string& text, Currency value) {
  text += NumberText(value);
}
void Append(std::string& text, Signed part) {
  if (part.value >= 0) text += '+';
  text += NumberText(part.value);
}
void Append(std::string& text, Points part) {
  text += NumberText(part.value);
  text += part.value == Currency(1) ? " point" : " points";
}

double SolvedStep(CalcItem& context, std::string_view label, std::string_view formula, Detail detail) {
  if (formula.empty()) return 0;
  Step step(context, label);
  if (detail == Detail::Needed) step.NeedsDetail();
  return step.Is(modSolver::Solver(formula, context));
}

std::string Written(const clsItem& item, std::initializer_list<std::string_view> tags) {
  std::string written;
  for (std::string_view tag : tags) {
    if (item.FreeTagIsEmpty(tag)) continue;
    if (!written.empty()) written += ", ";
    written.append(tag).append("(").append(item.FreeTag(tag)).append(")");
  }
  return written;
}

}  // namespace explain

std::vector<std::string> ExplainTag(clsItem& item, std::string_view tag) {
  const std::string wanted = LCase(Trim(tag));
  CalcRecord record(item);
  {
    Recording recording(*item.Owner, record);
    item.Calculate();
    explain::Section section(item, wanted);
    if (IsSolvedTag(wanted)) item.TagItem(wanted);
  }
  return WithHead(wanted + " of " + item.FullName(), item.TagItem(ResultTag(item, wanted)),
                  record.LinesFor(wanted));
}

std::vector<std::string> ExplainTag(KVRCharacter& character, std::string_view tag) {
  const std::string wanted = LCase(Trim(tag));
  // What waits is calculated before, so that the totals are summed once.
  character.CalcPointCosts();
  CalcRecord record(character);
  {
    Recording recording(character, record);
    character.CalcPointCosts();
    explain::Section section(character, wanted);
    if (IsSolvedTag(wanted)) character.TagItem(wanted);
  }
  return WithHead(wanted + " of " + character.Name, character.TagItem(wanted), record.LinesFor(wanted));
}

}  // namespace kvr
