// The defaults of a skill: the `default` tag with its special words, what of it names a trait that may be
// used, and the best of what is left.
#include "calc/SkillDefaults.h"

#include <algorithm>
#include <optional>
#include <unordered_set>
#include <vector>

#include "calc/Combinations.h"
#include "calc/Explanation.h"
#include "calc/SkillScale.h"
#include "calc/SolverContext.h"
#include "calc/modSolver.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/modNewParser.h"
#include "core/modTools.h"

namespace kvr {
namespace {

using modSolver::DefaultSource;

constexpr std::int32_t kNoLevel = -999;

bool IsSkillOrSpell(ItemType type) {
  return type == kSkills || type == kSpells;
}

bool IsOptionalSpecialty(const clsItem& item) {
  return item.FreeTag("optspec") == "1";
}

// --- References
// -------------------------------------------------------------------------------------------------------

// What a reference in a default asks for; the tag is empty for what the solver takes by itself.
struct Reference {
  clsItem* trait = nullptr;
  std::string tag;
};

// A skill without the wanted name may be there as an optional specialty of it.
clsItem* OptionalSpecialtyOf(const KVRCharacter& character, std::string_view name, ItemType type) {
  for (std::size_t i = character.ItemPositionByNameOnly(name, type); i != 0;
       i = character.ItemPositionByNameOnly(name, type, i + 1)) {
    clsItem& item = character.Items.Item(i);
    if (IsOptionalSpecialty(item)) return &item;
  }
  return nullptr;
}

clsItem* FindTrait(const KVRCharacter& character, std::string_view name, ItemType type) {
  if (clsItem* trait = character.FindItem(name, type)) return trait;
  if (type == kStats) return character.FindItemBySymbol(name, kStats);
  return IsSkillOrSpell(type) ? OptionalSpecialtyOf(character, name, type) : nullptr;
}

// The prefixes that read another tag than the one of their type ("SK_RL:").
std::string_view TagOfPrefix(const modPrefixes::Prefix& prefix) {
  if (prefix.type == kStats) return "score";
  return IsSkillOrSpell(prefix.type) && prefix.defaultTag != "baselevel" ? prefix.defaultTag : "";
}

// The tag behind a reference: what stands behind "::", or "points" for " pts"; both are cut off.
std::optional<std::string> CutTag(std::string_view& text) {
  std::optional<std::string> tag;
  if (const std::size_t colons = text.find("::"); colons != npos) {
    tag = Trim(text.substr(colons + 2));
    text = Trim(text.substr(0, colons));
  }
  if (EndsWithNoCase(text, " pts")) {
    tag = "points";
    text = Trim(text.substr(0, text.size() - 4));
  }
  return tag;
}

// Quotes and braces may enclose the whole reference or the name alone.
Reference ReadReference(std::string_view text, const KVRCharacter& character) {
  Reference reference;
  std::string_view body = modTools::StripQuotesAndBraces(text);
  const std::optional<std::string> tag = CutTag(body);
  const auto [word, name] = modPrefixes::ExtractPrefix(modTools::StripQuotesAndBraces(body));
  ItemType type = kStats;
  reference.tag = "score";
  if (!word.empty()) {
    const modPrefixes::Prefix* prefix = modPrefixes::FindPrefix(word);
    if (prefix == nullptr) return reference;
    type = prefix->type;
    reference.tag = TagOfPrefix(*prefix);
  }
  if (tag) reference.tag = *tag;
  if (!name.empty() && type != kNoType) reference.trait = FindTrait(character, name, type);
  return reference;
}

// An optional specialty knows only a part of its skill: 2 less for whoever doesn't share it.
bool IsForeignSpecialty(const clsItem& item, const clsItem& candidate) {
  if (!IsOptionalSpecialty(candidate)) return false;
  return !IsOptionalSpecialty(item) || item.LCaseNameExt() != candidate.LCaseNameExt();
}

// --- The words for prerequisites
// --------------------------------------------------------------------------------------

std::string Joined(std::string_view before, std::string_view prerequisite, std::string_view after) {
  std::string text(before);
  if (!prerequisite.empty()) text.append("\"").append(prerequisite).append("\"");
  return text.append(after);
}

std::string AllPrerequisites(clsItem& item, std::string_view before, std::string_view after) {
  std::string list;
  for (const std::string& prerequisite : modSolver::GetPrereqArray(item)) {
    if (!list.empty()) list += ", ";
    list += Joined(before, modTools::StripQuotesAndBraces(prerequisite), after);
  }
  return list.empty() ? Joined(before, "", after) : list;
}

// Of the prerequisites that may be used, the one with the highest or the lowest value.
std::string OnePrerequisite(clsItem& item, bool highest) {
  double best = highest ? -99999 : 99999;
  std::string found;
  std::vector<SkillDefault> candidates;
  for (const std::string& prerequisite : modSolver::GetPrereqArray(item)) {
    item.privGetValidExpandedDefaultList(Joined("", modTools::StripQuotesAndBraces(prerequisite), ""),
                                         candidates);
  }
  for (const SkillDefault& candidate : candidates) {
    DefaultSource source;
    const double value = modSolver::SolverForDefaults(candidate.text, source, item);
    if (highest ? value <= best : value >= best) continue;
    best = value;
    const clsItem& trait = *item.Owner->ItemByKey(candidate.idKey);
    found = std::string(modPrefixes::ItemTypeName(trait.ItemType)) + ":" + trait.FullName();
  }
  return found;
}

// The `default` tag with its special word replaced; the text around the word is that of the whole tag.
std::string DefaultTextOf(clsItem& item) {
  const std::string_view text = item.FreeTag("default");
  for (const std::string_view word : {"prereqlist", "lowprereq", "prereq"}) {
    const std::size_t at = FindNoCase(text, word);
    if (at == npos) continue;
    const std::string before(text.substr(0, at)), after(text.substr(at + word.size()));
    if (word == "prereqlist") return AllPrerequisites(item, before, after);
    return Joined(before, OnePrerequisite(item, word == "prereq"), after);
  }
  return std::string(text);
}

// --- Tech levels
// ------------------------------------------------------------------------------------------------------

// "Engines/TL4 (Steam)" and "Engines/TL3+1 (Steam)" are names of "Engines (Steam)".
std::string NameWithoutTechLevel(const clsItem& item) {
  std::string name = item.FullName();
  const std::size_t at = FindNoCase(name, "/tl");
  if (at == npos) return name;
  return name.erase(at, name.find(' ', at) - at);
}

// The number of a tech level: what stands behind its digits ("3+1", "4^") does not count.
double TechLevelIn(std::string_view text, clsItem& item) {
  const std::size_t digit = text.find_first_of("0123456789");
  if (digit != npos) {
    const std::size_t end = FirstNonNumeric(text, digit + 1);
    if (end != 0) text = text.substr(0, end - 1);
  }
  return modSolver::Solver(text, item);
}

// For a skill known at another tech level: steep for a later one, mild for an earlier one.
std::int32_t TechLevelPenalty(double difference) {
  if (difference > 3) return kNoLevel;
  return CLngClamped(difference > 0 ? -5 * difference : 2 * difference + 1);
}

// --- The best default
// -------------------------------------------------------------------------------------------------

class BestDefault {
 public:
  BestDefault(clsItem& item, std::int32_t start) : item_(item), level_(start) {}

  void Try(std::string_view expression) {
    DefaultSource source;
    explain::Step step(item_, "default");
    const std::int32_t level = step.Is(CLngClamped(modSolver::SolverForDefaults(expression, source, item_)));
    step.Named("default from ", source.name);
    if (level <= level_) return;
    level_ = level;
    source_ = std::move(source);
  }
  void TryOtherTechLevels() {
    const std::string own(item_.FreeTag("tl"));
    if (own.empty()) return;
    for (const std::string& key :
         item_.Owner->ItemKeysByNameAndExt(NameWithoutTechLevel(item_), item_.ItemType)) {
      clsItem& other = *item_.Owner->Items.Item(key);
      if (other.IDKey == item_.IDKey || !item_.privSkillDefaultIsValid(other.IDKey)) continue;
      const double difference =
          TechLevelIn(own, item_) - TechLevelIn(std::string(other.FreeTag("tl")), other);
      const std::int32_t penalty = TechLevelPenalty(difference);
      Try(std::to_string(other.IDKey) + (penalty < 0 ? "??" : "??+") + std::to_string(penalty));
    }
  }
  std::int32_t Level() const { return level_; }
  const DefaultSource& Source() const { return source_; }

 private:
  clsItem& item_;
  std::int32_t level_;
  DefaultSource source_;
};

}  // namespace

std::string_view HeadReference(std::string_view entry) {
  modNewParser::NestingLevels levels(modNewParser::kQuotes | modNewParser::kBraces);
  for (std::size_t i = 0; i < entry.size(); ++i) {
    if (levels.Step(entry[i]) && modSolver::kExpressionMarks.find(entry[i]) != npos)
      return entry.substr(0, i);
  }
  return entry;
}

std::string DefaultInUse(clsItem& item) {
  const std::string_view written = item.FreeTag("deffrom");
  const clsSkillCosts* type = SkillTypeOf(item);
  if (!written.empty() || type == nullptr || item.AppPoints() >= type->MinCost()) return std::string(written);
  std::string name;
  std::int32_t key = 0;
  const std::int32_t level = item.privGetDefaultLevel(name, key);
  return level > 0 && level == item.BaseLevel() ? name : std::string();
}

std::vector<SkillDefault> clsItem::privGetValidDefaultList() {
  std::vector<SkillDefault> list;
  const std::string text = DefaultTextOf(*this);
  if (text.empty()) return list;
  // The list of all prerequisites repeats what stands beside its word.
  std::unordered_set<std::string_view> known;
  for (std::string_view entry : modNewParser::ParseSplitChars(text, ",", modNewParser::kNames)) {
    if (known.insert(entry).second) privGetValidExpandedDefaultList(entry, list);
  }
  return list;
}

void clsItem::privGetValidExpandedDefaultList(std::string_view entry, std::vector<SkillDefault>& list) {
  entry = Trim(entry);
  const std::string_view head = HeadReference(entry);
  const Reference reference = ReadReference(head, *Owner);
  if (reference.trait == nullptr || !privSkillDefaultIsValid(reference.trait->IDKey)) {
    explain::Note(*this, "no default from ", entry);
    return;
  }
  std::string text = std::to_string(reference.trait->IDKey) + "??" + reference.tag;
  text += entry.substr(head.size());
  if (IsForeignSpecialty(*this, *reference.trait)) text += "-2";
  list.push_back({std::move(text), reference.trait->IDKey});
}

bool clsItem::privSkillDefaultIsValid(std::int32_t candidateKey) {
  std::vector<std::int32_t> seen{IDKey};
  const bool isTechnique = FreeTag("sd") == "1";
  for (std::int32_t key = candidateKey; key != 0;) {
    const clsItem* candidate = Owner->ItemByKey(key);
    if (candidate == nullptr || std::ranges::find(seen, key) != seen.end()) return false;
    if (!IsSkillOrSpell(candidate->ItemType)) return candidate->ItemType <= kPerks;
    const std::string_view kind = candidate->FreeTag("sd");
    if (kind == "2" && CombinationHolds(*candidate, IDKey)) return false;
    if (candidate->BasePoints() <= Currency() && !isTechnique && kind != "1") return false;
    seen.push_back(key);
    key = CLngClamped(Val(candidate->FreeTag("deffromid")));
  }
  return candidateKey != 0;
}

std::int32_t clsItem::privGetDefaultLevel(std::string& name, std::int32_t& idKey) {
  name.clear();
  idKey = 0;
  if (Maneuver() == 2) return kNoLevel;
  const std::vector<SkillDefault> list = privGetValidDefaultList();
  BestDefault best(*this, list.empty() ? 0 : kNoLevel);
  for (const SkillDefault& entry : list) best.Try(entry.text);
  best.TryOtherTechLevels();
  name = best.Source().name;
  idKey = best.Source().idKey;
  return best.Level();
}

}  // namespace kvr
