// Names of traits in texts.
#include "calc/TraitNames.h"

#include <algorithm>
#include <array>

namespace kvr {
namespace {

bool IsCommonLetters(std::string_view name) {
  return name == "st" || name == "ht";
}

bool IsLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

std::vector<clsItem*> PointersTo(const clsSortedItemCollection& items) {
  std::vector<clsItem*> result;
  result.reserve(items.Count());
  for (clsItem& item : items) result.push_back(&item);
  return result;
}

}  // namespace

TraitNames::TraitNames(const clsItem& item) : name_(item.LCaseName()) {
  // The name is the head of the full name, so a text that holds the latter holds the former.
  if ((name_.empty() || IsCommonLetters(name_)) && !item.LCaseNameExt().empty())
    fullName_ = LCase(item.FullName());
  if (item.ItemType != kStats) return;
  symbol_ = LCase(item.FreeTag("symbol"));
  if (name_ == "damage base" || name_ == "striking st") damage_ = "damage(";
}

bool TraitNames::AppearIn(std::string_view lowerText) const {
  bool appear = false;
  ForEach([&](std::string_view name) { appear = appear || NameAppears(lowerText, name); });
  return appear;
}

bool IsReference(std::string_view lowerText, std::size_t begin, std::string_view name) {
  if (!IsCommonLetters(name)) return true;
  std::string_view before = lowerText.substr(0, begin), after = lowerText.substr(begin + name.size());
  if (!after.empty() && IsLetterOrDigit(after.front())) return false;
  if (before.ends_with("st:")) return true;
  if (!before.empty() && IsLetterOrDigit(before.back())) return false;
  if (name == "ht") return true;
  if (after.starts_with(':') && !after.starts_with("::")) return false;
  constexpr std::array<std::string_view, 3> kOtherNames = {"ing ", "arm ", "tk "};
  return std::ranges::none_of(kOtherNames, [&](std::string_view head) { return before.ends_with(head); });
}

bool NameAppears(std::string_view lowerText, std::string_view name) {
  if (name.empty()) return false;
  for (std::size_t at = lowerText.find(name); at != npos; at = lowerText.find(name, at + 1)) {
    if (IsReference(lowerText, at, name)) return true;
  }
  return false;
}

TraitNameIndex::TraitNameIndex(const clsSortedItemCollection& items)
    : items_(PointersTo(items)),
      patterns_(PatternsOf(items_)),
      automaton_(TextsOf(patterns_)),
      seen_(items_.size(), 0) {}

std::vector<TraitNameIndex::Pattern> TraitNameIndex::PatternsOf(const std::vector<clsItem*>& items) {
  std::vector<std::pair<std::string, std::uint32_t>> named;
  named.reserve(items.size());
  for (std::uint32_t i = 0; i < items.size(); ++i) {
    TraitNames(*items[i]).ForEach([&](std::string_view name) { named.emplace_back(name, i); });
  }
  std::ranges::sort(named);
  std::vector<Pattern> patterns;
  for (auto& [name, trait] : named) {
    if (patterns.empty() || patterns.back().text != name) patterns.push_back({std::move(name), {}});
    patterns.back().traits.push_back(trait);
  }
  return patterns;
}

std::vector<std::string_view> TraitNameIndex::TextsOf(const std::vector<Pattern>& patterns) {
  std::vector<std::string_view> texts;
  texts.reserve(patterns.size());
  for (const Pattern& pattern : patterns) texts.push_back(pattern.text);
  return texts;
}

}  // namespace kvr
