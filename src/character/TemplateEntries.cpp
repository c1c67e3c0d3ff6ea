// Takes the entries of a template's tags apart.
#include "character/TemplateEntries.h"

#include "core/modNewParser.h"
#include "core/modTools.h"

namespace kvr::templateEntries {

namespace {

using modNewParser::kNames;

// Cuts a bare word out of the text; true if it was there.
bool CutWord(std::string& text, std::string_view word) {
  bool found = false;
  for (std::size_t at; (at = modNewParser::FindWordTopLevel(text, word, kNames)) != npos; found = true) {
    text.erase(at, word.size());
  }
  return found;
}

// Cuts the text behind a word off and returns it; "" when the word isn't there.
std::string CutBehind(std::string& text, std::string_view word) {
  const std::size_t at = modNewParser::FindWordTopLevel(text, word, kNames);
  if (at == npos) return "";
  std::string behind(Trim(std::string_view(text).substr(at + word.size())));
  text.erase(at);
  return behind;
}

std::vector<std::string> AnswersIn(std::string_view list) {
  std::vector<std::string> answers;
  for (std::string_view answer : Split(list)) answers.emplace_back(modTools::StripQuotesAndBraces(answer));
  return answers;
}

}  // namespace

std::string_view StripWhole(std::string_view text) {
  text = Trim(text);
  if (text.size() < 2 || (text.front() != '{' && text.front() != '"')) return text;
  modNewParser::NestingLevels levels(kNames);
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (levels.Step(text[i])) return text;
  }
  return modTools::StripQuotesAndBraces(text);
}

std::vector<std::string_view> Split(std::string_view list) {
  if (Trim(list).empty()) return {};
  std::vector<std::string_view> entries = modNewParser::ParseSplitChars(list, ",", kNames);
  std::erase_if(entries, [](std::string_view entry) { return entry.empty(); });
  return entries;
}

TraitReference ReadReference(std::string_view text) {
  const auto [prefix, rest] = modPrefixes::ExtractPrefix(StripWhole(text));
  return {std::string(prefix), std::string(StripWhole(rest)), modPrefixes::TypeFromPrefix(prefix)};
}

clsItem* FindOn(const KVRCharacter& character, const TraitReference& reference) {
  if (clsItem* item = character.FindItem(reference.name, reference.type)) return item;
  const bool mayBeStat = reference.type == kNoType || reference.type == kStats;
  return mayBeStat ? character.FindItemBySymbol(reference.name, kStats) : nullptr;
}

Entry ReadEntry(std::string_view text) {
  std::string rest(StripWhole(text));
  Entry entry;
  entry.ownIt = !CutWord(rest, "#donotown");
  entry.needIt = !CutWord(rest, "#noneeds");
  std::string answers = CutBehind(rest, " respond ");
  if (answers.empty()) answers = CutBehind(rest, " input ");
  entry.answers = AnswersIn(answers);
  entry.mods = CutBehind(rest, " with ");
  const modNeeds::ComparisonParts parts = modNeeds::GetComparisonValues(rest);
  entry.left = StripWhole(parts.left);
  entry.comparison = parts.comparison;
  entry.value = parts.right;
  return entry;
}

Sides SplitAtWord(std::string_view text, std::string_view word) {
  const std::vector<std::string_view> sides = modNewParser::ParseSplitWord(text, word, kNames);
  if (sides.size() != 2) return {};
  return {sides[0], sides[1], true};
}

std::string_view PointsOf(std::string_view value) {
  constexpr std::string_view kEnding = "pts";
  value = Trim(value);
  if (!EndsWithNoCase(value, kEnding)) return "";
  return Trim(value.substr(0, value.size() - kEnding.size()));
}

}  // namespace kvr::templateEntries
