// The tests of needs that count: "3 CO:Fire", "10 spells", "2 GR:Weapons >= 12", "5 spells from 3 other
// colleges".
//
// The number in front says how many; what stands behind an operator is asked of each that counts.
#include <algorithm>

#include "character/NeedsSteps.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTags.h"
#include "core/modTools.h"
#include "library/CategoryPrefixes.h"

namespace kvr::modNeeds {
namespace {

using Kind = Finding::Kind;

// What can be counted without a name.
struct CountedKind {
  std::string_view words;
  Kind kind;
  ItemType type;
};
// Each row of categories may have "other " in front.
constexpr CountedKind kCountedKinds[] = {
    {"quirks", Kind::Items, kQuirks},
    {"perks", Kind::Items, kPerks},
    {"spells", Kind::Items, kSpells},
    {"skills", Kind::Items, kSkills},
    {"colleges", Kind::Categories, kSpells},
    {"spell cats", Kind::Categories, kSpells},
    {"spell categories", Kind::Categories, kSpells},
    {"classes", Kind::Categories, kSkills},
    {"skill cats", Kind::Categories, kSkills},
    {"skill categories", Kind::Categories, kSkills},
};

// Of templates too, which no bonus reaches by category.
ItemType TypeOfCountedCategory(std::string_view prefix) {
  if (EqualNoCase(prefix, "PACAT") || EqualNoCase(prefix, "TECAT")) return kPackages;
  return modPrefixes::TypeFromCategoryPrefix(prefix);
}

// A number above zero as a count; 0 when it is none.
std::int32_t CountOf(std::string_view word) {
  if (!IsNumeric(word) || Val(word) <= 0) return 0;
  return std::max(1, CLngClamped(Val(word)));
}

bool Counts(const Check& check, const Finding& finding, clsItem& item) {
  if (!MayCount(check, item) || !ValidNeedsCheck(item, check.needer)) return false;
  Currency value = finding.value;
  std::string_view tag = finding.tag;
  GetNeededDefaults(check.Character().Env().Config, item.ItemType, value, tag);
  return Holds(finding.comparison, NumberInTag(item, tag), value);
}

// Calls f(item) for each trait of the type that counts.
template <class F>
void ForEachCounted(const Check& check, const Finding& finding, F&& f) {
  for (clsItem& item : check.Character().ItemsByType[static_cast<std::size_t>(finding.type)])
    if (Counts(check, finding, item)) f(item);
  if (check.also && check.also->ItemType == finding.type && Counts(check, finding, *check.also))
    f(*check.also);
}

std::vector<std::string_view> CategoriesOf(const clsItem& item) {
  auto names = modNewParser::ParseSplitChars(item.FreeTag("cat"), ",", modNewParser::kPlain);
  std::erase_if(names, [](std::string_view name) { return name.empty(); });
  return names;
}

bool IsAnyOf(std::string_view name, const std::vector<std::string_view>& names) {
  return std::ranges::any_of(names, [&](std::string_view each) { return EqualNoCase(each, name); });
}

void CheckSpecialCaseNumberOfItems(const Check& check, Finding& finding) {
  ForEachCounted(check, finding, [&](clsItem&) { ++finding.counted; });
  finding.met = finding.counted >= finding.wanted;
}

bool HasMember(const Check& check, const Finding& finding, const clsRefItem& member) {
  KVRCharacter& character = check.Character();
  if (check.also && check.also->ItemType == member.ItemType &&
      EqualNoCase(check.also->FullName(), member.FullName()) && Counts(check, finding, *check.also))
    return true;
  const std::size_t position = character.ItemPositionByNameAndExt(member.FullName(), member.ItemType);
  return AnyFrom(character, position, member.ItemType, true,
                 [&](clsItem& item) { return Counts(check, finding, item); });
}

void CheckSpecialCaseNumberFromAGroup(const Check& check, Finding& finding) {
  for (const clsRefItem& member : check.Character().Groups) {
    if (EqualNoCase(member.Group, finding.group)) finding.counted += HasMember(check, finding, member);
  }
  finding.met = finding.counted >= finding.wanted;
}

// A category may be named by its code.
std::string_view CategoryName(const clsSortedCatCollection& cats, std::string_view nameOrCode,
                              ItemType type) {
  std::string_view byCode = nameOrCode;
  for (const clsCategory& cat : cats) {
    if (cat.ItemType != type) continue;
    if (EqualNoCase(cat.Name, nameOrCode)) return cat.Name;
    if (!cat.Code.empty() && EqualNoCase(cat.Code, nameOrCode)) byCode = cat.Name;
  }
  return byCode;
}

void CheckSpecialCaseNumberFromACategory(const Check& check, Finding& finding) {
  std::vector<std::string_view> wanted;
  if (finding.sameCategory) {
    wanted = CategoriesOf(check.needer);
  } else {
    finding.group = CategoryName(check.Character().Cats, finding.group, finding.type);
    if (!finding.group.empty()) wanted.push_back(finding.group);
  }
  ForEachCounted(check, finding, [&](clsItem& item) {
    finding.counted += std::ranges::any_of(
        wanted, [&](std::string_view name) { return modTags::IsItemInList(name, item.FreeTag("cat")); });
  });
  finding.met = finding.counted >= finding.wanted;
}

// In the order of the character's list, each trait serves the first of its categories that still lacks one;
// it serves no second one.
void CheckSpecialCaseNumberOfCats(const Check& check, Finding& finding) {
  struct Tally {
    std::string_view name;
    std::int32_t count = 0;
  };
  std::vector<Tally> tallies;
  std::vector<std::string_view> own;
  if (finding.others) own = CategoriesOf(check.needer);
  ForEachCounted(check, finding, [&](clsItem& item) {
    for (std::string_view name : CategoriesOf(item)) {
      if (IsAnyOf(name, own)) continue;
      auto tally =
          std::ranges::find_if(tallies, [&](const Tally& each) { return EqualNoCase(each.name, name); });
      if (tally == tallies.end()) tally = tallies.insert(tallies.end(), Tally{name});
      if (tally->count == finding.perCategory) continue;
      finding.counted += ++tally->count == finding.perCategory;
      break;
    }
  });
  finding.met = finding.counted >= finding.wanted;
}

// "5 spells from 3 other colleges"
bool ReadSpread(Finding& finding) {
  const std::string_view left = finding.parts.left;
  const bool spells = ContainsNoCase(left, " spells from ");
  if (!spells && !ContainsNoCase(left, " skills from ")) return false;
  auto words = modNewParser::ParseChars(left, " ", modNewParser::kPlain).tokens;
  std::erase_if(words, [](std::string_view word) { return word.empty(); });
  if (words.size() < 4) return false;
  finding.perCategory = CountOf(words[0]);
  finding.wanted = CountOf(words[3]);
  if (finding.perCategory == 0 || finding.wanted == 0) return false;
  finding.kind = Kind::Categories;
  finding.type = spells ? kSpells : kSkills;
  finding.others = words.size() > 4 && EqualNoCase(words[4], "other");
  return true;
}

bool ReadCountedKind(std::string_view words, Finding& finding) {
  const bool others = StartsWithNoCase(words, "other ");
  if (others) words = Trim(words.substr(6));
  for (const CountedKind& row : kCountedKinds) {
    if (!EqualNoCase(row.words, words) || (others && row.kind != Kind::Categories)) continue;
    finding.kind = row.kind;
    finding.type = row.type;
    finding.others = others;
    return true;
  }
  return false;
}

bool ReadCountedCategory(const Check& check, const modPrefixes::Reference& reference, Finding& finding) {
  finding.sameCategory = EqualNoCase(reference.prefix, "SAMECAT");
  finding.type = finding.sameCategory ? check.needer.ItemType : TypeOfCountedCategory(reference.prefix);
  if (finding.type == kNoType) return false;
  finding.kind = Kind::Category;
  finding.group = modTools::StripQuotesAndBraces(reference.rest);
  return true;
}

// What stands behind the number, its tag cut off.
std::string_view WithoutTag(std::string_view text) {
  const std::size_t at = modNewParser::FindWordTopLevel(text, "::", modNewParser::kNames);
  return Trim(text.substr(0, at));
}

bool ReadCounting(const Check& check, Finding& finding) {
  const std::string_view left = finding.parts.left;
  const std::size_t blank = left.find(' ');
  const std::int32_t number = blank == npos ? 0 : CountOf(left.substr(0, blank));
  if (number == 0 && !EqualNoCase(finding.parts.prefix, "GR")) return false;
  finding.wanted = std::max(1, number);
  const std::string_view rest =
      modTools::StripQuotesAndBraces(WithoutTag(number ? Trim(left.substr(blank)) : left));
  const modPrefixes::Reference reference = modPrefixes::ExtractPrefix(rest);
  if (reference.prefix.empty()) return ReadCountedKind(rest, finding);
  if (!EqualNoCase(reference.prefix, "GR")) return ReadCountedCategory(check, reference, finding);
  finding.kind = Kind::Group;
  finding.group = modTools::StripQuotesAndBraces(reference.rest);
  return true;
}

}  // namespace

bool CheckSpecialCases(const Check& check, Finding& finding) {
  if (!ReadSpread(finding) && !ReadCounting(check, finding)) return false;
  if (finding.tag.empty()) finding.tag = "level";
  switch (finding.kind) {
    case Kind::Items:
      CheckSpecialCaseNumberOfItems(check, finding);
      break;
    case Kind::Group:
      CheckSpecialCaseNumberFromAGroup(check, finding);
      break;
    case Kind::Category:
      CheckSpecialCaseNumberFromACategory(check, finding);
      break;
    default:
      CheckSpecialCaseNumberOfCats(check, finding);
  }
  return true;
}

bool CountsTraits(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789";
  if (text.empty()) return false;
  if (ContainsNoCase(text, "GR:")) return true;
  for (std::size_t at = text.find_first_of(kDigits); at != npos; at = text.find_first_of(kDigits, at)) {
    const bool begins = at == 0 || std::string_view(" ,|({\"").find(text[at - 1]) != npos;
    at = std::min(text.find_first_not_of(kDigits, at), text.size());
    if (begins && at < text.size() && text[at] == ' ') return true;
  }
  return false;
}

}  // namespace kvr::modNeeds
