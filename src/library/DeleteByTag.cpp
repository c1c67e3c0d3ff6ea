// Reads and runs #deletebytag.
#include "library/DeleteByTag.h"

#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr {
namespace {

bool TakeWord(std::string& text, std::string_view word) {
  const std::size_t found = FindNoCase(text, word);
  if (found == npos) return false;
  text.erase(found, word.size());
  return true;
}

std::string Plain(std::string_view text) {
  return std::string(modTools::StripQuotesAndBraces(Trim(text)));
}

}  // namespace

bool DeleteByTag::Run(std::string_view argument) {
  std::string text(argument);
  TakeEchoWord(text);
  LogStep("Executing #DeleteByTag: " + std::string(line_), Echo::Short);
  if (!ReadFields(text)) return false;
  for (std::size_t i = system_.Items.Count(); i >= 1; --i) {
    const clsSystemItem& item = system_.Items.Item(i);
    if (type_ != kNoType && item.ItemType != type_) continue;
    if (!ValueChecking(item, main_, true)) continue;
    if (unless_ && ValueChecking(item, *unless_, false)) {
      LogStep("Saved From Deleting", Echo::Short);
    } else {
      LogStep("Deleting " + item.FullName(), Echo::Short);
      system_.DeleteItem(item);
    }
  }
  return true;
}

void DeleteByTag::TakeEchoWord(std::string& text) {
  if (TakeWord(text, "echologshort"))
    echo_ = Echo::Short;
  else if (TakeWord(text, "echolog"))
    echo_ = Echo::Full;
}

bool DeleteByTag::ReadFields(std::string_view text) {
  const std::vector<std::string_view> fields = modNewParser::ParseSplitChars(text, ",", modNewParser::kNames);
  if (fields.size() < 2) return false;
  LogStep("TraitType$ = " + std::string(fields[0]));
  LogStep("ComparisonText$ = " + std::string(fields[1]));
  type_ = modPrefixes::TypeFromTypeWord(fields[0]);
  if (type_ == kNoType && !EqualNoCase(fields[0], "all")) return false;
  for (std::size_t i = 2; i < fields.size(); ++i)
    if (!ReadOption(fields[i])) return false;
  return ReadComparisons(fields[1]);
}

bool DeleteByTag::ReadOption(std::string_view field) {
  std::string text(field);
  ignoreEmpty_ |= TakeWord(text, "ignoreempty") || TakeWord(text, "ignore empty");
  const std::string word = LCase(Trim(text));
  if (word.empty()) return true;
  LogStep("ByNum$ = " + word);
  byNumber_ = word == "num" || word == "number" || word == "numeric" || word == "#" || word == "# numeric";
  return byNumber_ || word == "text" || word == "string" || word == "$" || word == "$ text";
}

bool DeleteByTag::ReadComparisons(std::string_view text) {
  constexpr std::string_view kUnless = " unless ";
  const std::size_t found = modNewParser::FindWordTopLevel(text, kUnless, modNewParser::kNames);
  const std::string_view comparisonText = Trim(text.substr(0, found));
  bool unlessByNumber = byNumber_;
  if (found != npos) {
    unlessText_ = CutUnlessKind(Trim(text.substr(found + kUnless.size())), unlessByNumber);
    LogStep("UnlessText = '" + unlessText_ + "'");
    LogStep(std::string("UnlessByNumber = ") + (unlessByNumber ? "True" : "False"));
    LogStep("ComparisonText = '" + std::string(comparisonText) + "'");
  }
  const std::optional<Comparison> main = ReadComparison(comparisonText, byNumber_, "");
  if (!main) return false;
  main_ = *main;
  if (found == npos) return true;
  unless_ = ReadComparison(unlessText_, unlessByNumber, "Unless");
  return unless_.has_value();
}

// Cuts the word that says how the second test compares; without one it compares as the first.
std::string_view DeleteByTag::CutUnlessKind(std::string_view text, bool& byNumber) {
  if (StartsWithNoCase(text, "num ") || text.starts_with('#') || text.starts_with('$')) {
    byNumber = !text.starts_with('$');
    text = Trim(text.substr(byNumber && text[0] != '#' ? 3 : 1));
  }
  return text;
}

auto DeleteByTag::ReadComparison(std::string_view text, bool byNumber, std::string_view label)
    -> std::optional<Comparison> {
  std::optional<Comparison> comparison = GetAbsoluteComparisonValues(text);
  if (!comparison) return std::nullopt;
  comparison->byNumber = byNumber;
  LogStep(std::string(label) + "TagName$ = '" + comparison->tag + "'");
  LogStep(std::string(label) + "TagValue$ = '" + comparison->value + "'");
  return comparison;
}

// Words first; then the operators in this order, the first that the text holds.
std::optional<DeleteByTag::Comparison> DeleteByTag::GetAbsoluteComparisonValues(std::string_view text) {
  struct Operator {
    std::string_view sign;
    Test test;
  };
  static constexpr Operator kOperators[] = {
      {"<=", Test::LessOrEqual}, {">=", Test::GreaterOrEqual}, {"<>", Test::Unequal}, {">", Test::Greater},
      {"<", Test::Less},         {"==", Test::Equal},          {"=", Test::Equal}};
  if (std::optional<Comparison> special = DoSpecialCaseFlags(text)) return special;
  for (const auto& [sign, test] : kOperators) {
    const std::size_t found = text.find(sign);
    if (found == npos) continue;
    Comparison comparison{
        Plain(text.substr(0, found)), Plain(text.substr(found + sign.size())), test, false, {}};
    comparison.words = std::string(sign) + " '" + comparison.value + "'";
    return comparison.tag.empty() ? std::nullopt : std::optional(comparison);
  }
  return std::nullopt;
}

std::optional<DeleteByTag::Comparison> DeleteByTag::DoSpecialCaseFlags(std::string_view text) {
  struct Word {
    std::string_view word, shown;
    Test test;
    bool hasValue;
  };
  static constexpr Word kWords[] = {{"isempty", "IsEmpty", Test::IsEmpty, false},
                                    {"isnotempty", "IsNotEmpty", Test::IsNotEmpty, false},
                                    {"isnumeric", "IsNumeric", Test::IsNumeric, false},
                                    {"isnotnumeric", "IsNotNumeric", Test::IsNotNumeric, false},
                                    {" hasinlist", "HasInList", Test::HasInList, true},
                                    {" contains", "Contains", Test::Contains, true}};
  constexpr std::string_view kSigns = "<>= ";
  for (const auto& [word, shown, test, hasValue] : kWords) {
    const std::size_t found = FindNoCase(text, word);
    if (found == npos) continue;
    std::string_view behind = text.substr(found + word.size());
    behind.remove_prefix(std::min(behind.find_first_not_of(kSigns), behind.size()));
    Comparison comparison{Plain(text.substr(0, found)), hasValue ? Plain(behind) : "", test, false, {}};
    if (comparison.tag.empty() && !hasValue) comparison.tag = Plain(behind);
    comparison.words = shown;
    if (hasValue) comparison.words += " '" + comparison.value + "'";
    return comparison.tag.empty() ? std::nullopt : std::optional(comparison);
  }
  return std::nullopt;
}

bool DeleteByTag::ValueChecking(const clsSystemItem& item, const Comparison& comparison, bool isMain) {
  const std::string value = item.TagItem(comparison.tag);
  if (ignoreEmpty_ && value.empty()) {
    if (isMain) LogStep("Ignoring empty tag, will NOT delete.");
    return false;
  }
  if (echo_ == Echo::Full)
    LogStep(comparison.tag + "::" + item.FullName() + "(" + value + ") <--> " + comparison.words);
  const bool matches = Holds(comparison, value);
  if (matches && isMain && unless_) LogStep("Will be Deleted Unless " + unlessText_);
  return matches;
}

bool DeleteByTag::Holds(const Comparison& comparison, std::string_view value) {
  const std::partial_ordering order = comparison.byNumber
                                          ? Val(value) <=> Val(comparison.value)
                                          : std::partial_ordering(LCase(value) <=> LCase(comparison.value));
  switch (comparison.test) {
    case Test::LessOrEqual:
      return order <= 0;
    case Test::GreaterOrEqual:
      return order >= 0;
    case Test::Unequal:
      return order != 0;
    case Test::Greater:
      return order > 0;
    case Test::Less:
      return order < 0;
    case Test::Equal:
      return order == 0;
    case Test::IsEmpty:
      return value.empty();
    case Test::IsNotEmpty:
      return !value.empty();
    case Test::IsNumeric:
      return IsNumeric(value);
    case Test::IsNotNumeric:
      return !IsNumeric(value);
    case Test::HasInList:
      return !comparison.value.empty() && modTags::IsItemInList(comparison.value, value);
    case Test::Contains:
      return ContainsNoCase(value, comparison.value);
  }
  return false;
}

void DeleteByTag::LogStep(const std::string& text, Echo from) {
  if (echo_ >= from) system_.Env().log.LogIndented(text);
}

}  // namespace kvr
