// The forms of a modifier's cost and value, and clsMod::Calculate, which turns the one into the other at the
// modifier's level.
#include "calc/ModValue.h"

#include <cmath>

#include "calc/Explanation.h"
#include "calc/ModCalculation.h"
#include "calc/modSolver.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/modNewParser.h"
#include "core/modTools.h"

namespace kvr {
namespace modValue {
namespace {

bool IsTimesMark(char mark) {
  return mark == '*' || mark == 'x' || mark == 'X';
}
bool BeginsWithTimes(std::string_view text) {
  return !text.empty() && IsTimesMark(text.front());
}

Suffix SuffixOf(std::string_view text) {
  if (text.ends_with('%')) return Suffix::Percent;
  return EndsWithNoCase(text, "cf") ? Suffix::CostFactor : Suffix::None;
}

std::string_view WithoutSuffix(std::string_view text) {
  switch (SuffixOf(text)) {
    case Suffix::Percent:
      text.remove_suffix(1);
      break;
    case Suffix::CostFactor:
      text.remove_suffix(2);
      break;
    case Suffix::None:
      break;
  }
  return Trim(text);
}

std::vector<std::string_view> Pieces(std::string_view cost) {
  std::vector<std::string_view> pieces;
  modNewParser::ForEachToken(cost, '/', modNewParser::kPlain,
                             [&](std::string_view piece) { pieces.push_back(Trim(piece)); });
  return pieces;
}

// The first entry takes in a second piece that is a divisor; later pieces count where they multiply.
void ReadMultiplyingEntries(CostList& list, std::string_view cost) {
  const std::vector<std::string_view> pieces = Pieces(cost);
  list.entries.push_back(pieces[0]);
  for (std::size_t i = 1; i < pieces.size(); ++i) {
    if (BeginsWithTimes(pieces[i])) {
      list.entries.push_back(pieces[i]);
    } else if (i == 1) {
      const char* end = pieces[1].data() + pieces[1].size();
      list.entries[0] = cost.substr(0, static_cast<std::size_t>(end - cost.data()));
    }
  }
}

// Multiplies or divides by each number of "2/3"; false when one of them is none.
bool ReadFactors(std::string_view text, Value& value) {
  bool numbers = true, first = true;
  modNewParser::ForEachToken(text, '/', modNewParser::kPlain, [&](std::string_view token) {
    token = Trim(token);
    numbers = numbers && IsNumeric(token);
    (first ? value.number : value.divisor) *= Val(token);
    first = false;
  });
  return numbers;
}

Value ReadMultiplying(std::string_view text, CalcItem& mod) {
  Value value;
  value.number = 1;
  value.family = text.front() == '/' ? Family::Divide : Family::Multiply;
  const std::string_view operand = text.substr(1);
  if (!ReadFactors(operand, value)) {
    const std::string formula = (value.family == Family::Divide ? "1/" : "1*") + std::string(operand);
    value = {Family::Multiply, Suffix::None, modSolver::Solver(formula, mod), 1, false};
    value.fault = value.number == 0;
  } else if (value.divisor == 0 || (value.family == Family::Divide && value.number == 0)) {
    value.fault = true;
  }
  return value;
}

}  // namespace

double CostList::Number(std::size_t entry) const {
  const std::string_view text = entries[entry - 1];
  if (text.empty()) return 0;
  return Val(multiplies ? text.substr(1) : WithoutSuffix(text));
}

double CostList::LastDifference() const {
  const std::size_t last = entries.size();
  return last == 1 ? Number(1) : Number(last) - Number(last - 1);
}

CostList ReadCost(std::string_view cost) {
  CostList list;
  cost = Trim(cost);
  if (cost.empty()) cost = "+0";
  list.multiplies = BeginsWithTimes(cost) || cost.front() == '/';
  if (list.multiplies) {
    ReadMultiplyingEntries(list, cost);
    return list;
  }
  list.entries = Pieces(cost);
  list.suffix = SuffixOf(list.entries[0]);
  if (list.suffix == Suffix::None && list.entries.size() > 1) list.suffix = SuffixOf(list.entries[1]);
  return list;
}

Value ReadValue(std::string_view text, CalcItem& mod) {
  text = Trim(text);
  if (BeginsWithTimes(text) || text.starts_with('/')) return ReadMultiplying(text, mod);
  return {Family::Add, SuffixOf(text), Val(WithoutSuffix(text)), 1, false};
}

std::string TextOf(const Value& value) {
  std::string text;
  switch (value.family) {
    case Family::Add:
      if (!(value.number < 0)) text = "+";
      AppendStr(text, value.number);
      if (value.suffix == Suffix::Percent) text += "%";
      if (value.suffix == Suffix::CostFactor) text += " CF";
      break;
    case Family::Multiply:
      text = "*";
      AppendStr(text, value.number / value.divisor);
      break;
    case Family::Divide:
      text = "/";
      AppendStr(text, value.number * value.divisor);
  }
  return text;
}

}  // namespace modValue

namespace {

using modValue::CostList;
using modValue::Family;

// What a modifier is worth at its level.
struct Worth {
  std::string value;
  double number = 0;
  bool fault = false;
};

// Of a number that was worked out; a cost that divides goes on as one that multiplies.
Worth Computed(const CostList& costs, double number, bool fault) {
  fault = fault || !std::isfinite(number);
  if (!std::isfinite(number)) number = 0;
  const Family family = costs.multiplies ? Family::Multiply : Family::Add;
  return {modValue::TextOf({family, costs.suffix, number, 1, fault}), number, fault};
}

// Whether a text that reads as 0 does so because it begins with no number.
bool IsNumberless(std::string_view text, double number) {
  const std::size_t begin = text.find_first_not_of(" +-.");
  return number == 0 && (begin == npos || text[begin] < '0' || text[begin] > '9');
}

double SolvedFormula(std::string_view formula, std::int32_t level, clsMod& mod) {
  std::string text = LCase(formula);
  modTools::ReplaceAll(text, "%level", Str(level));
  return modSolver::Solver(text, mod);
}

// The entry of a multiplying cost stays as it is written.
Worth WorthOfEntry(const CostList& costs, std::int32_t level, clsMod& mod) {
  if (level == 0) return Computed(costs, costs.multiplies ? 1 : 0, false);
  const auto entry = static_cast<std::size_t>(level);
  const std::string_view text = costs.entries[entry - 1];
  const double number = costs.Number(entry);
  if (costs.multiplies && text.empty()) return Computed(costs, 1, true);
  if (costs.multiplies) return {std::string(text), number, modValue::ReadValue(text, mod).fault};
  return Computed(costs, number, IsNumberless(text, number));
}

Worth WorthPastEnd(const CostList& costs, std::int32_t level) {
  const std::size_t last = costs.entries.size();
  const double number = costs.Number(last) + (level - costs.Count()) * costs.LastDifference();
  return Computed(costs, number, IsNumberless(costs.entries[last - 1], number));
}

Worth WorthAtLevel(clsMod& mod, std::int32_t level) {
  const TagText& tags = mod.Tags();
  const CostList costs = modValue::ReadCost(tags.Value("cost"));
  if (level != 1) explain::Note(mod, "level ", level, " of cost(", tags.Value("cost"), ")");
  const bool forced = !tags.Value("forceformula").empty();
  if (!forced && level <= costs.Count()) return WorthOfEntry(costs, level, mod);
  if (const std::string_view formula = tags.Value("formula"); !formula.empty()) {
    return Computed(costs, SolvedFormula(formula, level, mod), false);
  }
  return WorthPastEnd(costs, level);
}

// The level within 0 and `upto`; the tag follows where it lies outside.
std::int32_t LevelWithinLimits(clsMod& mod) {
  const std::int32_t read = CLngClamped(Val(mod.Tags().Value("level")));
  std::int32_t level = read;
  if (const std::string_view upto = mod.Tags().Value("upto"); !upto.empty()) {
    const std::int32_t highest = CLngClamped(modSolver::Solver(upto, mod));
    if (highest > 0) level = std::min(level, highest);
    if (level != read) explain::Note(mod, "limited to level ", level, " by upto(", upto, ")");
  }
  level = std::max(level, 0);
  if (level != read) mod.SetTagItem("level", std::to_string(level));
  return level;
}

}  // namespace

void modCalculation::WriteTag(clsMod& mod, std::string_view tag, std::string_view value) {
  if (mod.Tags().Find(tag) != value) mod.SetTagItem(tag, value);
}

void modCalculation::CalcValue(clsMod& mod) {
  const Worth worth = WorthAtLevel(mod, LevelWithinLimits(mod));
  if (worth.fault) mod.ReportFault(clsMod::Fault::BadCost);
  WriteTag(mod, "premodsvalue", worth.value);
  WriteTag(mod, "value", worth.value);
  std::string number;
  AppendStr(number, worth.number);
  WriteTag(mod, "valuenum", number);
}

}  // namespace kvr
