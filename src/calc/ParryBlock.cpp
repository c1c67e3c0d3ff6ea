// Parry and block: what a trait's levels come to as defences, which of them the character uses, and the
// protection of its body.
#include <array>

#include "calc/CalcSteps.h"
#include "calc/ModeLists.h"
#include "calc/modSolver.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/modTools.h"

namespace kvr {

void clsItem::privCalcParryAt() {
  CalcDefence("parryat", "parrylevel");
}
void clsItem::privCalcBlockAt() {
  CalcDefence("blockat", "blocklevel");
}

// The sums of the bonuses stand in tags of their own: another level of the trait takes them from there.
void clsItem::CalcDefence(std::string_view atTag, std::string_view levelTag) {
  const std::string bonusTag = std::string(atTag) + "bonus", multTag = std::string(atTag) + "mult";
  const std::string formulas(FreeTag(atTag));
  double bonus = 0, multiplier = 1;
  if (!formulas.empty() && GetBonusAffectsFlag(atTag)) {
    multiplier = CalcApplicableTargetTagMult(atTag);
    bonus = CalcApplicableTargetTagBonus(atTag);
  }
  WriteOrDeleteTag(*this, bonusTag, bonus == 0 ? "" : NumberText(bonus));
  WriteOrDeleteTag(*this, multTag, multiplier == 1 ? "" : NumberText(multiplier));
  std::vector<std::string> levels;
  for (std::string_view formula : modeLists::Values(formulas)) {
    levels.push_back(formula.empty() ? ""
                                     : NumberText((modSolver::Solver(formula, *this) + bonus) * multiplier));
  }
  WriteOrDeleteTag(*this, levelTag, modeLists::Joined(levels));
}

double clsItem::DefenceAtLevel(std::string_view atTag, double level) {
  const std::string formulas(FreeTag(atTag));
  std::string formula(modeLists::ValueAt(formulas, 1));
  for (std::string_view word : {"%level", "me::level", "me::score"}) {
    modTools::ReplaceAll(formula, word, Trim(Str(level)));
  }
  const std::string_view multiplier = FreeTag(std::string(atTag) + "mult");
  const double times = multiplier.empty() ? 1 : Val(multiplier);
  return (modSolver::Solver(formula, *this) + Val(FreeTag(std::string(atTag) + "bonus"))) * times;
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
