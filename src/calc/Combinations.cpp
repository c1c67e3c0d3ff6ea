// The traits of a combination and the level that they give it.
#include "calc/Combinations.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "calc/CalcSteps.h"
#include "calc/Explanation.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/modNewParser.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr {
namespace {

// A joined trait by key, and its share of the attacks as it is written.
struct Part {
  std::int32_t idKey = 0;
  std::string_view attacks;
};

// A key stands with or without its "k".
std::int32_t KeyIn(std::string_view entry) {
  if (entry.starts_with('k') || entry.starts_with('K')) entry.remove_prefix(1);
  return CLngClamped(Val(entry));
}

std::vector<Part> PartsOf(const clsItem& combination) {
  std::vector<Part> parts;
  const std::string_view keys = combination.FreeTag("combokeys");
  if (keys.empty()) return parts;
  const auto attacks =
      modNewParser::ParseChars(combination.FreeTag("comboattacks"), ",", modNewParser::kPlain);
  modNewParser::ForEachToken(keys, ',', modNewParser::kPlain, [&](std::string_view entry) {
    parts.push_back({KeyIn(Trim(entry)), Trim(attacks.Token(parts.size() + 1))});
  });
  return parts;
}

double AttacksOf(const Part& part) {
  return part.attacks.empty() ? 1 : std::max(Val(part.attacks), 0.0);
}

// "{SK:Blade (Short)}"
std::string ReferenceTo(const clsItem& item) {
  return "{" + std::string(modPrefixes::ItemTypeName(item.ItemType)) + ":" + item.FullName() + "}";
}

void AppendEntry(std::string& list, std::string_view entry) {
  if (!list.empty()) list += ", ";
  list += entry;
}

clsItem* TraitNamed(const KVRCharacter& character, std::string_view reference) {
  const auto [prefix, name] = modPrefixes::ExtractPrefix(modTools::StripQuotesAndBraces(reference));
  return character.FindItem(name, prefix.empty() ? kNoType : modPrefixes::TypeFromPrefix(prefix));
}

void TakeNamedTraits(clsItem& combination) {
  std::string keys;
  for (std::string_view entry :
       modNewParser::ParseSplitChars(combination.FreeTag("combodeffrom"), ",", modNewParser::kNames)) {
    const clsItem* named = TraitNamed(*combination.Owner, entry);
    if (named == nullptr) return;
    AppendEntry(keys, std::to_string(named->IDKey));
  }
  combination.SetTagItem("combokeys", keys);
}

// The names follow the traits, so that a changed one reaches the combination.
void DropGoneTraits(clsItem& combination) {
  std::string keys, attacks, names;
  for (const Part& part : PartsOf(combination)) {
    const clsItem* item = combination.Owner->ItemByKey(part.idKey);
    if (item == nullptr) continue;
    AppendEntry(keys, std::to_string(part.idKey));
    AppendEntry(attacks, NumberText(AttacksOf(part)));
    AppendEntry(names, ReferenceTo(*item));
  }
  if (!combination.FreeTagIsEmpty("comboattacks")) WriteTag(combination, "comboattacks", attacks);
  WriteTag(combination, "combokeys", keys);
  WriteTag(combination, "combodeffrom", names);
}

bool IsCombination(const clsItem& item) {
  return item.FreeTag("sd") == "2";
}

bool LeadsBackTo(const clsItem& combination, const clsItem& part) {
  return part.IDKey == combination.IDKey ||
         (IsCombination(part) && CombinationHolds(part, combination.IDKey));
}

// The levels of the parts as they come in.
class Levels {
 public:
  explicit Levels(std::string_view flags)
      : highest_(modTags::IsItemInList("highest", flags)),
        average_(modTags::IsItemInList("average", flags)) {}

  void Add(double level, double attacks, const modSolver::DefaultSource& source) {
    weighted_ += level * attacks;
    attacks_ += attacks;
    if (found_ && (average_ || (highest_ ? level <= best_ : level >= best_))) return;
    best_ = level;
    source_ = source;
    found_ = true;
  }
  // For the player: how the levels make one.
  std::string_view Choice() const {
    return average_ ? "the average" : highest_ ? "the highest" : "the lowest";
  }
  CombinedLevelResult Result() const {
    if (!found_) return {};
    const double level = average_ ? std::floor(Round15(weighted_ / attacks_)) : best_;
    return {CLngClamped(level), source_};
  }

 private:
  bool highest_, average_, found_ = false;
  double weighted_ = 0, attacks_ = 0, best_ = 0;
  modSolver::DefaultSource source_;
};

}  // namespace

void RefreshCombinationKeys(clsItem& combination) {
  if (!combination.FreeTagIsEmpty("combokeys")) {
    DropGoneTraits(combination);
  } else if (!combination.FreeTagIsEmpty("combodeffrom")) {
    TakeNamedTraits(combination);
  }
  for (const Part& part : PartsOf(combination)) {
    const clsItem* item = combination.Owner->ItemByKey(part.idKey);
    if (item == nullptr || !LeadsBackTo(combination, *item)) continue;
    combination.Owner->Env().log.LogRed("The combination '" + combination.FullName() +
                                        "' leads back to itself through '" + item->FullName() +
                                        "' in its tag 'combokeys', which does not count.");
  }
}

CombinedLevelResult CombinedLevel(clsItem& combination) {
  Levels levels(combination.FreeTag("comboflags"));
  for (const Part& part : PartsOf(combination)) {
    const clsItem* item = combination.Owner->ItemByKey(part.idKey);
    const double attacks = AttacksOf(part);
    if (item == nullptr || attacks == 0 || LeadsBackTo(combination, *item)) continue;
    modSolver::DefaultSource source;
    explain::Step step(combination, [&] { return item->FullName(); });
    const double level = step.Is(
        RoundHalfEven(modSolver::SolverForDefaults(std::to_string(part.idKey) + "??", source, combination)));
    if (attacks != 1) explain::Note(combination, "counts for ", attacks, " attacks");
    levels.Add(level, attacks, source);
  }
  const CombinedLevelResult result = levels.Result();
  explain::Note(combination, levels.Choice(), " of them: ", result.level);
  return result;
}

bool CombinationHolds(const clsItem& combination, std::int32_t idKey) {
  std::vector<std::int32_t> seen{combination.IDKey};
  for (std::size_t i = 0; i < seen.size(); ++i) {
    const clsItem* item = combination.Owner->ItemByKey(seen[i]);
    if (item == nullptr || !IsCombination(*item)) continue;
    for (const Part& part : PartsOf(*item)) {
      if (part.idKey == idKey) return true;
      if (std::ranges::find(seen, part.idKey) == seen.end()) seen.push_back(part.idKey);
    }
  }
  return false;
}

}  // namespace kvr
