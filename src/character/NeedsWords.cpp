// Demands in words that a player understands, and what keeps a library trait from being taken.
#include <fmt/format.h>

#include <array>
#include <memory>

#include "character/NeedsSteps.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr::modNeeds {
namespace {

using Kind = Finding::Kind;
using modNewParser::kNames;

constexpr std::array<std::string_view, 10> kNouns = {
    "traits", "attributes", "advantages", "disadvantages",       "quirks",
    "perks",  "skills",     "spells",     "pieces of equipment", "templates"};

std::string_view Noun(ItemType type) {
  return kNouns[type >= kFirstType && type <= kLastType ? static_cast<std::size_t>(type) : 0];
}

// "level 2", "12", "4 points"
std::string Amount(Currency value, std::string_view tag) {
  const std::string number = NumberText(value);
  if (EqualNoCase(tag, "score") || EqualNoCase(tag, "count")) return number;
  if (EqualNoCase(tag, "points") || EqualNoCase(tag, "baseapppoints"))
    return number + (value == Currency(1) ? " point" : " points");
  return fmt::format("{} {}", tag, number);
}

std::string_view ComparisonWords(Comparison comparison) {
  switch (comparison) {
    case Comparison::AtMost:
      return "at most ";
    case Comparison::Unlike:
      return "other than ";
    case Comparison::Equal:
      return "exactly ";
    case Comparison::MoreThan:
      return "above ";
    case Comparison::LessThan:
      return "below ";
    default:
      return "";
  }
}

bool IsAtLeast(const Finding& finding) {
  return finding.comparison == Comparison::AtLeast || finding.comparison == Comparison::None;
}

std::string TraitWords(const Finding& finding) {
  const std::string name(finding.parts.name);
  if (IsAtLeast(finding) && finding.value == Currency(1) && finding.type != kStats) return name;
  return name + " " + std::string(ComparisonWords(finding.comparison)) + Amount(finding.value, finding.tag);
}

std::string CountedWords(const Finding& finding) {
  const std::string_view noun = Noun(finding.type), other = finding.others ? "other " : "";
  switch (finding.kind) {
    case Kind::Group:
      return fmt::format("{} of the group {}", finding.wanted, finding.group);
    case Kind::Category:
      if (finding.sameCategory) return fmt::format("{} {} of its own category", finding.wanted, noun);
      return fmt::format("{} {} of {}", finding.wanted, noun, finding.group);
    case Kind::Categories:
      if (finding.perCategory == 1)
        return fmt::format("{} from {} {}categories", noun, finding.wanted, other);
      return fmt::format("{} {} from each of {} {}categories", finding.perCategory, noun, finding.wanted,
                         other);
    default:
      return fmt::format("{} {}", finding.wanted, noun);
  }
}

// --- Terms

std::string Reading(const Finding& finding) {
  // A formula alone is met when it isn't 0, so it is read without a value.
  const bool compares =
      finding.kind == Kind::Trait || (finding.kind == Kind::Formula && !finding.parts.value.empty());
  return compares ? KVRCharacter::NeedsListUserFriendly(NormalForm(finding)) : WantedWords(finding);
}

// Calls f(place, entry) for each test of a demand.
template <class F>
void ForEachTest(std::string_view text, const std::string& place, int depth, F& f) {
  if (depth > kDeepestGroup) return;
  int alternative = 0;
  for (std::string_view list : modNewParser::ParseSplitChars(text, "|", kNames)) {
    const std::string here = place + std::to_string(++alternative);
    for (std::string_view token : modNewParser::ParseSplitChars(list, ",", kNames)) {
      const std::string_view entry = modTools::StripQuotesAndBraces(token);
      if (!entry.starts_with('(')) {
        f(here, entry);
        continue;
      }
      ForEachTest(GroupText(entry), here + ".", depth + 1, f);
    }
  }
}

std::vector<Term> TermsOf(const Check& check, std::string_view text) {
  std::vector<Term> terms;
  auto add = [&](const std::string& place, std::string_view entry) {
    if (Trim(entry).empty()) return;
    const Finding finding = Examine(check, entry);
    terms.push_back({place, std::string(entry), Reading(finding), HaveWords(finding), finding.met});
  };
  ForEachTest(text, "", 0, add);
  return terms;
}

// --- Reasons

struct Lack {
  std::string wanted, have;
};

std::string InOneLine(const std::vector<Lack>& lacks) {
  std::string line;
  for (const Lack& lack : lacks) {
    if (!line.empty()) line += " and ";
    line += lack.have.empty() ? lack.wanted : lack.wanted + " (" + lack.have + ")";
  }
  return line;
}

std::vector<Lack> LacksOfAny(const Check& check, std::string_view text, int depth);

std::vector<Lack> LacksOfAll(const Check& check, std::string_view list, int depth) {
  std::vector<Lack> lacks;
  modNewParser::ForEachToken(list, ',', kNames, [&](std::string_view token) {
    const std::string_view entry = modTools::StripQuotesAndBraces(token);
    if (entry.starts_with('(')) {
      const std::vector<Lack> nested = LacksOfAny(check, GroupText(entry), depth + 1);
      lacks.insert(lacks.end(), nested.begin(), nested.end());
      return;
    }
    const Finding finding = Examine(check, entry);
    if (!finding.met) lacks.push_back({WantedWords(finding), HaveWords(finding)});
  });
  return lacks;
}

// Empty when one of the alternatives is met; several become one line.
std::vector<Lack> LacksOfAny(const Check& check, std::string_view text, int depth) {
  if (depth > kDeepestGroup) return {{"groups nested less deep", ""}};
  std::vector<std::vector<Lack>> alternatives;
  for (std::string_view list : modNewParser::ParseSplitChars(text, "|", kNames)) {
    alternatives.push_back(LacksOfAll(check, list, depth));
    if (alternatives.back().empty()) return {};
  }
  if (alternatives.size() == 1) return alternatives.front();
  std::string line;
  for (const std::vector<Lack>& lacks : alternatives) {
    if (!line.empty()) line += " or ";
    line += InOneLine(lacks);
  }
  return {{line, ""}};
}

// The library trait as it would be on the character, with the least that it can be had for.
std::unique_ptr<clsItem> Planned(KVRCharacter& character, const clsSystemItem& record) {
  auto item = std::make_unique<clsItem>();
  item->NewTagList(record.TagList());
  item->ItemType = record.ItemType;
  item->Owner = &character;
  item->SetLevel(1);
  if (record.ItemType == kEquipment) item->SetTagItem("count", "1");
  const bool learned = record.ItemType == kSkills || record.ItemType == kSpells;
  const Currency points = learned ? Currency(1) : Currency::FromVal(record.GetTagItem("cost"));
  item->SetPoints(points);
  item->SetBaseAppPoints(points);
  return item;
}

bool Demands(const clsSystemItem& record) {
  return !record.GetTagItem("needs").empty() || !record.GetTagItem("taboo").empty();
}

bool Names(const Entry& entry, const clsSystemItem& record) {
  const ItemType type = modPrefixes::TypeFromPrefix(entry.prefix);
  if (type != record.ItemType && !entry.prefix.empty()) return false;
  const modPrefixes::NameAndExt name = modPrefixes::SplitNameAndExt(entry.name);
  return EqualNoCase(name.name, record.Name()) &&
         (name.ext.empty() || EqualNoCase(name.ext, record.NameExt()));
}

bool MayCountSome(const Entry& entry) {
  return EqualNoCase(entry.prefix, "GR") || IsNumeric(entry.left.substr(0, entry.left.find(' ')));
}

// Whether the count would be full with one more, and the trait is that one.
bool FillsCount(const clsTaboo& taboo, const clsSystemItem& record) {
  const Finding without = Examine({*taboo.Owner, true}, taboo.TabooItem);
  if (without.kind == Kind::Trait || without.kind == Kind::Formula) return false;
  if (without.type != record.ItemType && without.kind != Kind::Group) return false;
  const auto item = Planned(*taboo.Owner->Owner, record);
  const Finding with = Examine({*taboo.Owner, true, false, item.get()}, taboo.TabooItem);
  return with.met && with.counted > without.counted;
}

// Whether a taboo of a trait on the character would be broken by the library trait, newly taken.
bool IsNamedBy(const clsTaboo& taboo, const clsSystemItem& record) {
  if (TaboosAreMitigated(*taboo.Owner)) return false;
  const Entry entry = ReadEntry(taboo.TabooItem);
  if (!Names(entry, record)) return MayCountSome(entry) && FillsCount(taboo, record);
  const auto item = Planned(*taboo.Owner->Owner, record);
  if (TaboosAreMitigated(*item)) return false;
  if (entry.comparison == Comparison::None) return true;
  const Finding finding = Examine({*taboo.Owner, true}, taboo.TabooItem);
  return Holds(finding.comparison, NumberInTag(*item, finding.tag), finding.value);
}

template <class F>
bool AnyTabooAgainst(KVRCharacter& character, const clsSystemItem& record, F&& f) {
  for (const auto& taboo : character.Taboos)
    if (IsNamedBy(*taboo, record) && f(*taboo)) return true;
  return false;
}

void AddTabooReasons(const Check& check, std::vector<std::string>& reasons) {
  if (TaboosAreMitigated(check.needer)) return;
  modNewParser::ForEachToken(check.needer.FreeTag("taboo"), ',', kNames, [&](std::string_view entry) {
    if (Trim(entry).empty() || (check.planned && IsOpen(entry))) return;
    const Finding finding = Examine(check, entry);
    if (finding.met) reasons.push_back("can't go together with " + WantedWords(finding));
  });
}

}  // namespace

std::string WantedWords(const Finding& finding) {
  if (finding.kind == Kind::Trait) return TraitWords(finding);
  if (finding.kind == Kind::Formula) return std::string(finding.entry);
  std::string words = CountedWords(finding);
  if (finding.value == kNoValue) return words;
  return fmt::format("{}, each {}{}", words,
                     IsAtLeast(finding) ? "at least " : ComparisonWords(finding.comparison),
                     Amount(finding.value, finding.tag));
}

std::string HaveWords(const Finding& finding) {
  if (finding.kind == Kind::Formula) return "it comes to " + NumberText(finding.have);
  if (finding.kind == Kind::Categories)
    return fmt::format("you have {} such categor{}", finding.counted, finding.counted == 1 ? "y" : "ies");
  if (finding.kind != Kind::Trait) return "you have " + std::to_string(finding.counted);
  if (!finding.present) return "you don't have it";
  if (!finding.ready) return "you have it, but it lacks what it needs itself";
  return "you have " + Amount(finding.have, finding.tag);
}

std::vector<Term> NeedsTerms(clsItem& item) {
  const std::string text = NeedsText(item);
  return TermsOf({item}, text);
}

std::vector<Term> TabooTerms(clsItem& item) {
  const Check check{item, true};
  const std::string text(item.FreeTag("taboo"));
  std::vector<Term> terms;
  for (std::string_view entry : modNewParser::ParseSplitChars(text, ",", kNames)) {
    if (entry.empty()) continue;
    const Finding finding = Examine(check, entry);
    terms.push_back({"1", std::string(entry), Reading(finding), HaveWords(finding), finding.met});
  }
  return terms;
}

std::vector<std::string> WhyNot(KVRCharacter& character, const clsSystemItem& record) {
  std::vector<std::string> reasons;
  if (Demands(record)) {
    const auto item = Planned(character, record);
    const std::string needs = NeedsText(*item);
    for (const Lack& lack : LacksOfAny({*item, false, true}, needs, 0))
      reasons.push_back("needs " + lack.wanted + (lack.have.empty() ? "" : "; " + lack.have));
    AddTabooReasons({*item, true, true}, reasons);
  }
  AnyTabooAgainst(character, record, [&](const clsTaboo& taboo) {
    reasons.push_back("can't go together with " + taboo.Owner->FullName() + ", which rules it out");
    return false;
  });
  return reasons;
}

bool MayBeTaken(KVRCharacter& character, const clsSystemItem& record) {
  if (AnyTabooAgainst(character, record, [](const clsTaboo&) { return true; })) return false;
  if (!Demands(record)) return true;
  const auto item = Planned(character, record);
  if (!NeedsAreMet({*item, false, true}, NeedsText(*item))) return false;
  std::vector<std::string> reasons;
  AddTabooReasons({*item, true, true}, reasons);
  return reasons.empty();
}

}  // namespace kvr::modNeeds
