// Parry and block: what a trait's levels come to as defences, which of them the character uses, and the
// protection of its body.
#include <array>

#include "calc/CalcSteps.h"
#include "calc/Explanation.h"
#include "calc/ModeLists.h"
#include "calc/modSolver.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/modTools.h"

namespace kvr {
namespace {

// What is added to a defence, and what multiplies it.
struct Adjustment {
  double adder = 0, multiplier = 1;
};

// The number of one mode in a tag of the trait; one that stands alone goes for all modes.
double OwnNumber(clsItem& item, const std::string& tag, std::size_t mode, double none) {
  const std::string list(item.FreeTag(tag));
  const std::vector<std::string_view> values = modeLists::Values(list);
  const std::size_t index = values.size() == 1 ? 0 : mode - 1;
  return index >= values.size() || values[index].empty() ? none
                                                         : explain::SolvedStep(item, tag, values[index]);
}

// The tags "parryatbonus" and "parryatmult" of the trait's own data count beside the bonuses that it is
// given.
double Adjusted(clsItem& item, double value, std::string_view atTag, std::size_t mode,
                const Adjustment& given) {
  const std::string tag(atTag);
  return (value + OwnNumber(item, tag + "bonus", mode, 0) + given.adder) *
         (OwnNumber(item, tag + "mult", mode, 1) * given.multiplier);
}

}  // namespace

void clsItem::privCalcParryAt() {
  CalcDefence("parryat", "parrylevel");
}
void clsItem::privCalcBlockAt() {
  CalcDefence("blockat", "blocklevel");
}

void clsItem::CalcDefence(std::string_view atTag, std::string_view levelTag) {
  const bool isParry = atTag == "parryat";
  explain::Section section(*this, isParry ? "parry,parryat,parrylevel" : "block,blockat,blocklevel");
  const std::string formulas(FreeTag(atTag));
  Adjustment given;
  if (!formulas.empty() && GetBonusAffectsFlag(atTag)) {
    given.multiplier = CalcApplicableTargetTagMult(atTag);
    given.adder = CalcApplicableTargetTagBonus(atTag);
  }
  std::vector<std::string> levels;
  for (std::string_view formula : modeLists::Values(formulas)) {
    explain::Step step(*this, isParry ? "parry" : "block");
    levels.push_back(formula.empty() ? ""
                                     : NumberText(Adjusted(*this, modSolver::Solver(formula, *this), atTag,
                                                           levels.size() + 1, given)));
    step.Is(levels.back());
  }
  WriteOrDeleteTag(*this, levelTag, modeLists::Joined(levels));
}

double clsItem::DefenceAtLevel(std::string_view atTag, double level) {
  const std::string formulas(FreeTag(atTag));
  std::string formula(modeLists::ValueAt(formulas, 1));
  for (std::string_view word : {"%level", "me::level", "me::score"}) {
    modTools::ReplaceAll(formula, word, Trim(Str(level)));
  }
  // The lines of the bonuses stand on the trait already.
  const std::size_t lines = BonusList.size();
  const Adjustment given{CalcApplicableTargetTagBonus(atTag), CalcApplicableTargetTagMult(atTag)};
  BonusList.resize(lines);
  return Adjusted(*this, modSolver::Solver(formula, *this), atTag, 1, given);
}

namespace {

// One of the two defences of a character.
struct Defence {
  std::string_view atTag, levelTag;
  std::int32_t& idKey;
  std::int32_t& score;
  std::string& usingName;
};

void Use(const Defence& defence, const clsItem& item) {
  defence.idKey = item.IDKey;
  defence.usingName = item.FullNameTL();
  defence.score = CLngClamped(Val(item.FreeTag(defence.levelTag)));
}

// The attribute DX, else the first trait in order; the highest is not sought.
const clsItem* FirstThatCan(const KVRCharacter& character, std::string_view atTag) {
  const clsItem* dx = character.FindItem("DX", kStats);
  if (dx != nullptr && !dx->FreeTagIsEmpty(atTag)) return dx;
  for (const clsItem& item : character.Items) {
    if (!item.FreeTagIsEmpty(atTag)) return &item;
  }
  return nullptr;
}

void Choose(const KVRCharacter& character, const Defence& defence) {
  if (defence.idKey != 0) {
    if (const clsItem* chosen = character.ItemByKey(defence.idKey)) return Use(defence, *chosen);
  }
  defence.idKey = defence.score = 0;
  defence.usingName.clear();
  if (const clsItem* first = FirstThatCan(character, defence.atTag)) Use(defence, *first);
}

}  // namespace

void KVRCharacter::CalcParryBlock() {
  TraceScope trace("KVRCharacter:CalcParryBlock");
  Choose(*this, {"parryat", "parrylevel", ParryIDKey, ParryScore, ParryUsing});
  Choose(*this, {"blockat", "blocklevel", BlockIDKey, BlockScore, BlockUsing});
  constexpr std::array<std::string_view, 6> kParts = {"Head", "Torso", "Arms", "Legs", "Hands", "Feet"};
  for (std::size_t i = 0; i < kParts.size(); ++i) {
    const clsBodyItem* part = Body.Part(kParts[i]);
    DR[i] = part == nullptr ? "" : part->DR;
    DB[i] = part == nullptr ? "" : part->DB;
  }
}

}  // namespace kvr
