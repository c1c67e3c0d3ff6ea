// With which of the character's skills a weapon is used, at what level, and how well that parries.
#include "calc/CalcSteps.h"
#include "calc/Explanation.h"
#include "calc/ModeLists.h"
#include "calc/SolverContext.h"
#include "calc/WeaponTags.h"
#include "calc/modSolver.h"
#include "core/DecimalScan.h"
#include "core/Numbers.h"
#include "core/modTools.h"

namespace kvr {
namespace {

constexpr std::string_view kParryTag = "charparry";

// What a name without a prefix can mean, in this order.
constexpr ItemType kNamed[] = {kSkills, kStats, kSpells, kAds};

double LevelOf(const clsItem& trait) {
  return trait.ItemType == kStats ? trait.Score() : trait.Level();
}

// The trait of that full name; any specialty of a name without one, the best of them.
clsItem* FindUsable(const KVRCharacter& character, std::string_view name, ItemType type) {
  if (clsItem* exact = character.FindItem(name, type)) return exact;
  if (type == kStats) return character.FindItemBySymbol(name, kStats);
  clsItem* best = nullptr;
  for (std::size_t at = character.ItemPositionByNameOnly(name, type); at != 0;
       at = character.ItemPositionByNameOnly(name, type, at + 1)) {
    clsItem& trait = character.Items.Item(at);
    if (best == nullptr || trait.Level() > best->Level()) best = &trait;
  }
  return best;
}

clsItem* FindNamed(const KVRCharacter& character, std::string_view reference) {
  const auto [prefix, name] = modPrefixes::ExtractPrefix(reference);
  if (!prefix.empty()) {
    const ItemType type = modPrefixes::TypeFromPrefix(prefix);
    return type == kNoType ? nullptr : FindUsable(character, name, type);
  }
  for (ItemType type : kNamed) {
    if (clsItem* trait = FindUsable(character, name, type)) return trait;
  }
  return nullptr;
}

}  // namespace

void WeaponTags::CalcSkillUsed() {
  TraceScope trace("clsItem:privCalcCharSkillUsed");
  const std::string skills(item_.FreeTag("skillused"));
  const bool isUsed = !skills.empty() || (item_.ItemType == kEquipment && !item_.FreeTagIsEmpty("default"));
  const std::size_t modes = isUsed ? ModesCount() : 0;
  const std::vector<std::string_view> lists = modeLists::Values(skills);
  explain::Section section(item_, "charskillscore");
  const TagBonus scoreBonus = ReadBonus("skillscore");
  section.Now("charparryscore");
  const TagBonus parryBonus = ReadBonus("parryscore");
  section.Now("skillused,charskillused,charskillscore,charparryscore");
  std::vector<std::string> names(modes), scores(modes), parries(modes);
  for (std::size_t i = 0; i < modes; ++i) {
    explain::Step step(item_, [&] { return ModeName(i + 1); });
    const SkillUsed skill = SkillFor(i < lists.size() ? lists[i] : std::string_view());
    if (skill.trait == nullptr) continue;
    names[i] = skill.trait->FullName();
    explain::Note(item_, "used: ", names[i], " at ", skill.level);
    scores[i] = NumberText(WithBonus(skill.level, scoreBonus));
    parries[i] = ParryScore(skill, i + 1, parryBonus);
  }
  WriteOrDeleteTag(item_, "charskillused", modeLists::Joined(names));
  WriteOrDeleteTag(item_, "charskillscore", modeLists::Joined(scores));
  WriteOrDeleteTag(item_, "charparryscore", modeLists::Joined(parries));
}

// What the weapon defaults to counts where the character has none of the skills.
WeaponTags::SkillUsed WeaponTags::SkillFor(std::string_view skills) {
  const SkillUsed best = BestSkill(skills);
  if (best.trait != nullptr || item_.ItemType != kEquipment) return best;
  return BestSkill(std::string(item_.FreeTag("default")));
}

// The earliest of equals.
WeaponTags::SkillUsed WeaponTags::BestSkill(std::string_view list) {
  SkillUsed best;
  modNewParser::ForEachToken(list, ',', modNewParser::kNames, [&](std::string_view entry) {
    const SkillUsed skill = SkillOfEntry(Trim(entry));
    if (skill.trait == nullptr) return;
    if (best.trait == nullptr || skill.level > best.level) best = skill;
  });
  return best;
}

// "SK:Broad Blade-2": the level of the trait that stands first, and the arithmetic behind it.
WeaponTags::SkillUsed WeaponTags::SkillOfEntry(std::string_view entry) {
  SkillUsed skill;
  std::string formula;
  bool isFirst = true;
  modSolver::ForEachPart(
      entry, false,
      [&](std::string_view part) {
        if (!isFirst) {
          formula += part;
          return;
        }
        isFirst = false;
        skill.trait = FindNamed(*item_.Owner, modTools::StripQuotesAndBraces(part));
        if (skill.trait != nullptr) formula = Trim(Str(LevelOf(*skill.trait)));
      },
      [&](char mark) { formula += mark; });
  // A skill that was never learned and has no default can't be used.
  if (skill.trait == nullptr || LevelOf(*skill.trait) <= 0) return {};
  explain::Step step(item_, [&] { return skill.trait->FullName(); });
  skill.level = step.Is(modSolver::Solver(formula, item_));
  return skill;
}

std::string WeaponTags::ParryScore(const SkillUsed& skill, std::size_t mode, const TagBonus& bonus) {
  const std::string parry = Value(RowOf(kParryTag), mode);
  explain::Note(item_, "parry of the weapon: ", parry);
  if (!ScanDecimal(parry, Gaps::None).found || skill.trait->FreeTagIsEmpty("parryat")) return "";
  explain::Step step(item_, "parry with it");
  const double own = skill.trait->DefenceAtLevel("parryat", skill.level);
  return step.Is(NumberText(WithBonus(own + Val(parry), bonus)));
}

}  // namespace kvr
