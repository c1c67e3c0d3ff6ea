// Needs and taboos taken apart and tested against a character.
#include "character/modNeeds.h"

#include <algorithm>
#include <cmath>

#include "calc/modSolver.h"
#include "character/NeedsSteps.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr::modNeeds {
namespace {

using modNewParser::kNames;

constexpr std::size_t kMostAlternatives = 1000;
constexpr std::size_t kMostCharacters = 1000000;  // of all alternatives together

struct Operator {
  std::string_view text;
  Comparison comparison;
};
// In the order in which they are looked for.
constexpr Operator kOperators[] = {{"<=", Comparison::AtMost},  {">=", Comparison::AtLeast},
                                   {"<>", Comparison::Unlike},  {">", Comparison::MoreThan},
                                   {"<", Comparison::LessThan}, {"==", Comparison::Equal},
                                   {"=", Comparison::Equal}};

struct CutTag {
  std::string_view text, tag;
};
// "text::tag" with the mark outside quotes, parentheses and braces.
CutTag CutOffTag(std::string_view text) {
  if (text.find("::") == npos) return {text, ""};
  const std::size_t at = modNewParser::FindWordTopLevel(text, "::", kNames);
  if (at == npos) return {text, ""};
  return {Trim(text.substr(0, at)), Trim(text.substr(at + 2))};
}

void ReadRightSide(std::string_view right, Entry& entry) {
  const CutTag cut = CutOffTag(right);
  entry.value = cut.text;
  entry.tag = cut.tag;
  if (EndsWithNoCase(entry.value, "pts")) {
    entry.value = Trim(entry.value.substr(0, entry.value.size() - 3));
    entry.tag = "baseapppoints";
  }
  entry.tagOnRight = !entry.tag.empty();
}

void ReadLeftSide(std::string_view left, Entry& entry) {
  entry.left = modTools::StripQuotesAndBraces(left);
  const CutTag cut = CutOffTag(entry.left);
  if (entry.tag.empty()) entry.tag = cut.tag;
  const modPrefixes::Reference reference =
      modPrefixes::ExtractPrefix(modTools::StripQuotesAndBraces(cut.text));
  entry.prefix = reference.prefix;
  entry.name = modTools::StripQuotesAndBraces(reference.rest);
}

// Numbers too large for points stop at the end of the range.
Currency SolvedValue(std::string_view text, clsItem& needer) {
  constexpr double kEnd = 900000000000000;
  const bool isPlain = IsNumeric(text);
  const double value = isPlain ? Val(text) : modSolver::SolverGuarded(text, needer);
  if (isPlain && std::abs(value) <= kEnd) return Currency::FromVal(text);
  return std::isnan(value) ? Currency() : Currency::FromDouble(std::clamp(value, -kEnd, kEnd));
}

// What a test states itself, before defaults fill it up.
struct Stated {
  Currency value;
  std::string_view tag;
};

void CheckSpecificItem(const Check& check, Finding& finding, const Stated& stated) {
  KVRCharacter& character = check.Character();
  const std::string_view name = finding.parts.name;
  const ItemType type = finding.anyType ? kNoType : finding.type;
  const auto test = [&](clsItem& item) {
    if (!MayCount(check, item)) return false;
    finding.present = true;
    if (!ValidNeedsCheck(item, check.needer)) return false;
    auto [value, tag] = finding.anyType ? stated : Stated{finding.value, finding.tag};
    if (finding.anyType) GetNeededDefaults(character.Env().Config, item.ItemType, value, tag);
    const Currency have = NumberInTag(item, tag);
    finding.have = finding.ready ? std::max(finding.have, have) : have;
    finding.ready = true;
    return Holds(finding.comparison, have, value);
  };
  finding.met = AnyFrom(character, character.ItemPositionByNameAndExt(name, type), type, true, test);
  if (finding.present) return;
  // Without a specialization any of them will do.
  if (!HasExtension(name)) {
    finding.met = AnyFrom(character, character.ItemPositionByNameOnly(name, type), type, false, test);
  }
  if (finding.present || finding.type != kStats) return;
  if (clsItem* stat = character.FindItemBySymbol(name, kStats)) finding.met = test(*stat);
}

// The type of the character's first trait of that name beside the needer; kNoType for none.
ItemType TypeOnCharacter(const Check& check, std::string_view name, ItemType type) {
  KVRCharacter& character = check.Character();
  ItemType found = kNoType;
  const auto take = [&](const clsItem& item) {
    if (&item == &check.needer) return false;
    found = item.ItemType;
    return true;
  };
  if (!AnyFrom(character, character.ItemPositionByNameAndExt(name, type), type, true, take) &&
      type == kNoType && !HasExtension(name)) {
    AnyFrom(character, character.ItemPositionByNameOnly(name, type), type, false, take);
  }
  return found;
}

// What a name without a prefix is: an attribute, a spell, any other trait of the character (then any of that
// name will do, whatever its type), one of the library; kNoType when it must be a formula.
ItemType TypeOfBareName(const Check& check, std::string_view name, bool& anyType) {
  const KVRCharacter& character = check.Character();
  if (name.empty() || name.starts_with('@') || IsNumeric(name)) return kNoType;
  if (character.FindItem(name, kStats) || character.FindItemBySymbol(name, kStats)) return kStats;
  if (TypeOnCharacter(check, name, kSpells)) return kSpells;
  if (const ItemType type = TypeOnCharacter(check, name, kNoType)) {
    anyType = true;
    return type;
  }
  const KVRSystem& library = character.System();
  std::size_t position = library.ItemPositionByNameAndExt(name, kNoType);
  if (!position && !HasExtension(name)) position = library.ItemPositionByNameOnly(name, kNoType);
  return position ? library.Items.Item(position).ItemType : kNoType;
}

void CheckFormula(const Check& check, Finding& finding, bool compares) {
  finding.kind = Finding::Kind::Formula;
  finding.have = SolvedValue(finding.parts.left, check.needer);
  finding.met = compares ? Holds(finding.comparison, finding.have, finding.value) : !finding.have.IsZero();
}

// --- Lists

using Alternatives = std::vector<std::string>;

// What is left out where a demand could be met in too many ways, or is nested too deep.
struct Bounds {
  bool tooMany = false, tooDeep = false;
};

void AppendCombined(std::string& one, std::string_view other) {
  if (!one.empty()) one += ", ";
  one += other;
}

Alternatives Combine(const Alternatives& a, const Alternatives& b, bool& tooMany) {
  if (a.empty() || b.empty()) return a.empty() ? b : a;
  Alternatives combined;
  std::size_t characters = 0;
  for (const std::string& one : a) {
    for (const std::string& other : b) {
      characters += one.size() + other.size();
      if (combined.size() == kMostAlternatives || (characters > kMostCharacters && !combined.empty())) {
        tooMany = true;
        return combined;
      }
      combined.push_back(one);
      AppendCombined(combined.back(), other);
    }
  }
  return combined;
}

// One walk through a demand. Without `missing` it only tells whether the demand is met.
class NeedsWalk {
 public:
  explicit NeedsWalk(const Check& check) : check_(check) {}

  bool AnyOf(std::string_view text, Alternatives* missing, int depth) {
    if (depth > kDeepestGroup) {
      bounds.tooDeep = true;
      if (missing) missing->emplace_back(text);
      return false;
    }
    bool met = false;
    modNewParser::ForEachToken(text, '|', kNames, [&](std::string_view list) {
      if (met) return;
      Alternatives lacking;
      met = AllOf(list, missing ? &lacking : nullptr, depth);
      if (!met && missing) Take(lacking, *missing);
    });
    if (met && missing) missing->clear();
    return met;
  }

  bool AllOf(std::string_view text, Alternatives* missing, int depth) {
    bool met = true;
    modNewParser::ForEachToken(text, ',', kNames, [&](std::string_view token) {
      if (!met && !missing) return;
      const std::string_view entry = modTools::StripQuotesAndBraces(token);
      if (!(entry.starts_with('(') ? Group(entry, missing, depth) : Test(entry, missing))) met = false;
    });
    return met;
  }

  Bounds bounds;

 private:
  bool Group(std::string_view entry, Alternatives* missing, int depth) {
    Alternatives lacking;
    if (AnyOf(GroupText(entry), missing ? &lacking : nullptr, depth + 1)) return true;
    if (missing) *missing = Combine(*missing, lacking, bounds.tooMany);
    return false;
  }

  bool Test(std::string_view entry, Alternatives* missing) {
    const Finding finding = Examine(check_, entry);
    if (finding.met || !missing) return finding.met;
    if (missing->empty()) missing->emplace_back();
    const std::string normal = NormalForm(finding);
    for (std::string& alternative : *missing) AppendCombined(alternative, normal);
    return false;
  }

  void Take(Alternatives& from, Alternatives& to) {
    for (std::string& alternative : from) {
      if (to.size() == kMostAlternatives) {
        bounds.tooMany = true;
        return;
      }
      to.push_back(std::move(alternative));
    }
  }

  const Check& check_;
};

void TellBounds(const clsItem& item, const Bounds& bounds) {
  if (!bounds.tooMany && !bounds.tooDeep) return;
  item.Owner->Env().log.LogRed("The tag 'needs' of '" + item.FullName() +
                               (bounds.tooDeep ? "' nests its groups too deep; they count as not met."
                                               : "' can be met in too many ways; the first are kept."));
}

}  // namespace

std::string_view OperatorText(Comparison comparison) {
  for (const Operator& each : kOperators)
    if (each.comparison == comparison && each.text != "==") return each.text;
  return ">=";
}

bool Holds(Comparison comparison, Currency have, Currency value) {
  switch (comparison) {
    case Comparison::AtMost:
      return have <= value;
    case Comparison::Unlike:
      return have != value;
    case Comparison::Equal:
      return have == value;
    case Comparison::MoreThan:
      return have > value;
    case Comparison::LessThan:
      return have < value;
    default:
      return have >= value;
  }
}

ComparisonParts GetComparisonValues(std::string_view entry) {
  entry = Trim(entry);
  if (entry.find_first_of("<>=") == npos) return {entry, "", Comparison::None};
  for (const Operator& each : kOperators) {
    const std::size_t at = modNewParser::FindWordTopLevel(entry, each.text, kNames);
    if (at != npos)
      return {Trim(entry.substr(0, at)), Trim(entry.substr(at + each.text.size())), each.comparison};
  }
  return {entry, "", Comparison::None};
}

Entry ReadEntry(std::string_view text) {
  Entry entry;
  const ComparisonParts parts = GetComparisonValues(modTools::StripQuotesAndBraces(text));
  entry.comparison = parts.comparison;
  ReadRightSide(parts.right, entry);
  ReadLeftSide(parts.left, entry);
  return entry;
}

bool HasExtension(std::string_view name) {
  return name.find('(') != npos;
}

void GetNeededDefaults(const DataSetOptions& options, ItemType type, Currency& value, std::string_view& tag) {
  if (value != kNoValue) {
    if (tag.empty()) tag = type == kStats ? "score" : type == kEquipment ? "count" : "level";
    return;
  }
  const auto take = [&](double defaultValue, const std::string& defaultTag) {
    value = Currency::FromDouble(defaultValue);
    if (tag.empty()) tag = defaultTag;
  };
  switch (type) {
    case kStats:
      return take(options.NeedsDefaultLevelStats, options.NeedsDefaultValueStats);
    case kAds:
    case kDisads:
    case kQuirks:
    case kPerks:
    case kPackages:
      return take(options.NeedsDefaultLevelAds, options.NeedsDefaultValueAds);
    case kSpells:
      return take(options.NeedsDefaultLevelSpells, options.NeedsDefaultValueSpells);
    case kEquipment:
      return take(options.NeedsDefaultLevelEquipment, options.NeedsDefaultValueEquipment);
    default:
      return take(options.NeedsDefaultLevelSkills, options.NeedsDefaultValueSkills);
  }
}

bool MayCount(const Check& check, const clsItem& candidate) {
  return &candidate != &check.needer && !(check.taboo && TaboosAreMitigated(candidate));
}

Currency NumberInTag(clsItem& item, std::string_view tag) {
  return Currency::FromVal(item.TagItem(tag));
}

bool TaboosAreMitigated(const clsItem& item) {
  const std::string_view mitigated = item.FreeTag("mitigated");
  return !mitigated.empty() && !EqualNoCase(mitigated, "gives");
}

bool ValidNeedsCheck(const clsItem& candidate, const clsItem& needer) {
  if (candidate.NeedsCheck() == 0) return true;
  const std::string_view counted = candidate.FreeTag("countasneed"), ident = needer.FreeTag("ident");
  return !counted.empty() && !ident.empty() && !EqualNoCase(counted, "no") &&
         modTags::IsItemInList(ident, counted);
}

Finding Examine(const Check& check, std::string_view text) {
  Finding finding(Trim(text));
  const Entry& parts = finding.parts;
  if (finding.entry.empty() || (check.planned && IsOpen(finding.entry))) {
    finding.met = true;
    return finding;
  }
  finding.comparison = parts.comparison;
  finding.tag = parts.tag;
  const bool compares = !parts.value.empty();
  if (compares) finding.value = SolvedValue(parts.value, check.needer);
  if (CheckSpecialCases(check, finding)) return finding;
  finding.type = parts.prefix.empty() ? TypeOfBareName(check, parts.name, finding.anyType)
                                      : modPrefixes::TypeFromPrefix(parts.prefix);
  const bool isFormula = parts.prefix.empty() && finding.type == kNoType;
  if (isFormula && !parts.tagOnRight) finding.tag = "";
  const Stated stated{finding.value, finding.tag};
  GetNeededDefaults(check.Character().Env().Config, finding.type, finding.value, finding.tag);
  if (isFormula) {
    CheckFormula(check, finding, compares);
  } else {
    CheckSpecificItem(check, finding, stated);
  }
  return finding;
}

std::string NormalForm(const Finding& finding) {
  const bool counts = finding.kind != Finding::Kind::Trait && finding.kind != Finding::Kind::Formula;
  if (counts) return std::string(finding.entry);
  std::string form;
  if (!finding.parts.prefix.empty()) form.append(finding.parts.prefix).append(":");
  const std::string_view name =
      finding.kind == Finding::Kind::Formula ? finding.parts.left : finding.parts.name;
  // What would come apart when it is read again.
  const bool braced = finding.kind == Finding::Kind::Trait && name.find_first_of(",<>=|") != npos;
  form.append(braced ? "{" : "").append(name).append(braced ? "} " : " ");
  form.append(OperatorText(finding.comparison)).append(" ").append(NumberText(finding.value));
  for (std::string_view plain : {"score", "level", "count"})
    if (EqualNoCase(finding.tag, plain)) return form;
  return form.append("::").append(LCase(finding.tag));
}

bool NeedChecksOkay(clsItem& item, std::string& entry) {
  const Finding finding = Examine({item}, entry);
  if (!finding.met) entry = NormalForm(finding);
  return finding.met;
}

bool NeedsAreMet(const Check& check, std::string_view needsText) {
  return NeedsWalk(check).AnyOf(needsText, nullptr, 0);
}

bool NeedsCheckORItems(clsItem& item, std::string_view needsText, std::vector<std::string>& outList) {
  const Check check{item};
  NeedsWalk walk(check);
  outList.clear();
  const bool met = walk.AnyOf(needsText, &outList, 0);
  TellBounds(item, walk.bounds);
  return met;
}

bool NeedsCheckANDItems(clsItem& item, std::string_view text, std::vector<std::string>& outList) {
  const Check check{item};
  NeedsWalk walk(check);
  outList.clear();
  const bool met = walk.AllOf(text, &outList, 0);
  TellBounds(item, walk.bounds);
  return met;
}

bool TabooCheckItems(clsItem& item, std::string_view text, std::string& found) {
  const Check check{item, true};
  found.clear();
  modNewParser::ForEachToken(text, ',', kNames, [&](std::string_view token) {
    const std::string_view entry = Trim(token);
    if (!entry.empty() && Examine(check, entry).met) AppendCombined(found, entry);
  });
  return found.empty();
}

std::vector<std::string> NeedsBigArray(const std::vector<std::string>& a, const std::vector<std::string>& b) {
  bool tooMany = false;
  return Combine(a, b, tooMany);
}

std::string NeedsText(clsItem& item) {
  std::string text(item.FreeTag("needs"));
  if (text.find('$') == npos) return text;
  try {
    return modSolver::TextFunctionSolver(text, item);
  } catch (const SolverFailure&) {
    return text;  // it names nothing that there is, so it counts as not met
  }
}

}  // namespace kvr::modNeeds
