// References in needs, bonuses and effects: each must lead to something that a loaded file defines.
#include <array>

#include "calc/BonusSentence.h"
#include "calc/BonusTargets.h"
#include "character/TemplateEntries.h"
#include "character/modNeeds.h"
#include "core/Numbers.h"
#include "core/modTags.h"
#include "core/modTools.h"
#include "frontend/LintChecks.h"

namespace kvr::Lint {
namespace {

// What a number in needs can count without naming it.
constexpr std::array<std::string_view, 16> kCounted = {"quirks",           "perks",
                                                       "spells",           "skills",
                                                       "colleges",         "spell cats",
                                                       "spell categories", "other colleges",
                                                       "other spell cats", "other spell categories",
                                                       "classes",          "skill cats",
                                                       "skill categories", "other classes",
                                                       "other skill cats", "other skill categories"};

// "SK:Name", "CO:College", "GR:Group": what the prefix says the name is.
void CheckReference(const Check& check, std::string_view reference, bool anyExtension) {
  const auto [prefix, rest] = modPrefixes::ExtractPrefix(reference);
  const std::string_view name = modTools::StripQuotesAndBraces(rest);
  const ItemType type = modPrefixes::TypeFromPrefix(prefix);
  if (type != kNoType) {
    const bool known = type == kStats ? check.names.HasStat(name) : check.names.HasTrait(type, name);
    if (!known && !(anyExtension && check.names.HasAnyOf(type, name))) check.Tell("No such trait", reference);
  } else if (EqualNoCase(prefix, "GR")) {
    if (!check.names.HasGroup(name)) check.Tell("No such group", reference);
  } else if (!EqualNoCase(prefix, "SAMECAT")) {
    if (!check.names.HasCategory(name)) check.Tell("No such category", reference);
  }
}

// --- Needs

// "3 CO:Gale", "10 spells": true when it counts.
bool CheckCount(const Check& check, std::string_view left) {
  const std::size_t blank = left.find(' ');
  if (blank == npos || !IsNumeric(left.substr(0, blank)) || Val(left.substr(0, blank)) <= 0) return false;
  const std::string_view kind = Trim(left.substr(blank));
  if (!modPrefixes::ExtractPrefix(kind).prefix.empty()) {
    CheckReference(check, kind, true);
    return true;
  }
  return std::ranges::any_of(kCounted, [&](std::string_view each) { return EqualNoCase(each, kind); });
}

bool IsExpression(std::string_view text) {
  return text.find_first_of("@+*/()") != npos || text.find("::") != npos || IsNumeric(text);
}

void CheckNeed(const Check& check, std::string_view entry) {
  if (entry.empty() || ContainsNoCase(entry, " spells from ") || ContainsNoCase(entry, " skills from "))
    return;
  const std::string_view left = modNeeds::GetComparisonValues(entry).left;
  if (CheckCount(check, left)) return;
  const std::string_view name = modTools::StripQuotesAndBraces(left.substr(0, left.find("::")));
  const std::string_view prefix = modPrefixes::ExtractPrefix(name).prefix;
  if (!prefix.empty() && (modPrefixes::FindPrefix(prefix) || EqualNoCase(prefix, "GR"))) {
    CheckReference(check, name, true);
  } else if (check.names.HasStat(name) || check.names.HasAnyOf(kNoType, name) ||
             check.names.HasTrait(kNoType, name)) {
    return;
  } else if (IsExpression(left)) {
    CheckFormula(check, left);
  } else {
    check.Tell("No such trait", entry);
  }
}

void CheckNeedsTo(const Check& check, std::string_view needs, int depth) {
  if (depth > kDeepest) return check.Tell("Groups nested too deep", needs);
  for (std::string_view list : modNewParser::ParseSplitChars(needs, "|", modNewParser::kNames)) {
    for (std::string_view entry : modNewParser::ParseSplitChars(list, ",", modNewParser::kNames)) {
      if (IsUnsettled(entry)) continue;
      entry = modTools::StripQuotesAndBraces(entry);
      if (entry.starts_with('('))
        CheckNeedsTo(check, entry.substr(1, modTags::FindCloseParen(entry.substr(1))), depth + 1);
      else
        CheckNeed(check, entry);
    }
  }
}

// --- Bonuses

void CheckTarget(const Check& check, std::string_view target) {
  target = modTools::StripQuotesAndBraces(target);
  target = modTools::StripQuotesAndBraces(target.substr(0, target.find("::")));
  if (EndsWithNoCase(target, " pts")) target = Trim(target.substr(0, target.size() - 4));
  if (target.empty() || IsTagQuestion(target)) return;
  const auto [prefix, rest] = modPrefixes::ExtractPrefix(target);
  const std::string_view list = modTools::StripQuotesAndBraces(rest);
  const auto entries = modNewParser::ParseSplitChars(list, ",", modNewParser::kNames);
  if (entries.size() > 1) {
    for (std::string_view entry : entries) {
      entry = modTools::StripQuotesAndBraces(entry);
      const bool named = prefix.empty() || !modPrefixes::ExtractPrefix(entry).prefix.empty();
      CheckTarget(check, named ? std::string(entry) : std::string(prefix) + ":" + std::string(entry));
    }
  } else if (!prefix.empty()) {
    CheckReference(check, target, true);
  } else if (!EqualNoCase(target, "me") && !EqualNoCase(target, "owner") &&
             !FindSpecialTarget(LCase(target)) && !check.names.HasStat(target)) {
    check.Tell("No such trait", target);
  }
}

// The operators and the word of points at the ends of an amount are no part of its formula.
void CheckAmount(const Check& check, std::string_view amount) {
  while (!amount.empty() && std::string_view("+-=*/xX ").find(amount[0]) != npos) amount.remove_prefix(1);
  for (std::string_view ending : {"points", "pts"}) {
    if (!EndsWithNoCase(amount, ending)) continue;
    const std::string_view before = amount.substr(0, amount.size() - ending.size());
    if (!before.ends_with("::")) amount = before;
  }
  CheckFormula(check, amount);
}

// --- Effects

void CheckWith(const Check& check, std::string_view mods) {
  for (std::string_view entry : modNewParser::ParseSplitWord(mods, " and ", modNewParser::kNames)) {
    entry = modTools::StripQuotesAndBraces(entry);
    const bool isDefinition = entry.find(',') != npos;
    if (entry.empty() || isDefinition || IsUnsettled(entry)) continue;
    const std::size_t colon = entry.find(':');
    const std::string_view group = colon == npos ? "" : Trim(entry.substr(0, colon));
    const std::string_view name = colon == npos ? entry : Trim(entry.substr(colon + 1));
    if (!check.names.HasMod(group, name)) check.Tell("No such modifier", entry);
  }
}

// What is added may be another extension of a name that the library has.
void CheckAdded(const Check& check, std::string_view text) {
  const EffectEntry entry = ReadEffectEntry(text);
  CheckWith(check, entry.with);
  if (entry.type == kNoType) return check.Tell("An entry without the prefix of a type", text);
  if (IsUnsettled(entry.name)) return;
  const auto [name, ext] = modPrefixes::SplitNameAndExt(entry.name);
  const bool known =
      check.names.HasTrait(entry.type, entry.name) ||
      (ext.empty() ? check.names.HasAnyOf(entry.type, name) : check.names.HasTrait(entry.type, name));
  if (!known) check.Tell("No such trait", text);
}

void CheckCreated(const Check& check, std::string_view text) {
  const EffectEntry entry = ReadEffectEntry(text);
  CheckWith(check, entry.with);
  if (entry.type == kNoType) return check.Tell("An entry without the prefix of a type", text);
  if (check.depth >= kDeepest) return check.Tell("Traits nested too deep", text.substr(0, 80));
  const auto complain = [&](std::string_view what, std::string_view found) { check.Tell(what, found); };
  CheckTags(entry.type, TagsOfCreated(entry), check.names, complain, check.depth + 1);
}

template <class Entry>
void ForEachEntry(std::string_view entries, Entry&& entry) {
  for (std::string_view text : templateEntries::Split(entries)) {
    if (!text.starts_with('#') && !text.starts_with('%')) entry(text);
  }
}

}  // namespace

void CheckNeeds(const Check& check, std::string_view needs) {
  if (needs.find('$') == npos) CheckNeedsTo(check, needs, 0);
}

void CheckBonuses(const Check& check, std::string_view sentences) {
  for (std::string_view text : modNewParser::ParseSplitChars(sentences, ",", modNewParser::kNames)) {
    if (text.empty() || IsUnsettled(text)) continue;
    const std::optional<BonusSentence> sentence = ReadBonusSentence(text);
    if (!sentence) {
      check.Tell("A sentence that names no target", text);
      continue;
    }
    CheckTarget(check, sentence->target);
    CheckFormula(check, sentence->upto);
    if (!sentence->target.ends_with('$')) CheckAmount(check, sentence->amount);
  }
}

void CheckAdds(const Check& check, std::string_view entries) {
  ForEachEntry(entries, [&](std::string_view text) { CheckAdded(check, text); });
}

// An entry with tags of its own makes the trait where the library lacks it.
void CheckSelect(const Check& check, std::string_view text) {
  const std::vector<modTags::TagItem> items = modTags::ReturnTagItems(text);
  ForEachEntry(modTags::ValueOf(items, "list"), [&](std::string_view entry) {
    const std::string_view inner = templateEntries::StripWhole(entry);
    const bool hasTags = templateEntries::Split(inner).size() > 1;
    if (!hasTags && !IsUnsettled(inner)) CheckAdded(check, inner);
  });
}

void CheckCreates(const Check& check, std::string_view entries) {
  ForEachEntry(entries, [&](std::string_view text) { CheckCreated(check, text); });
}

}  // namespace kvr::Lint
