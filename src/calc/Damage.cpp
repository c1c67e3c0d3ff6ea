// The character's base damage: what an unaided thrust and swing do.
#include <algorithm>

#include "calc/Explanation.h"
#include "calc/modSolver.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/modTags.h"

namespace kvr {
namespace {

constexpr double kHighestScore = 2000000000;

DamageDice DamageAtScore(KVRCharacter& character, double score, std::string clsBasicDamage::*base,
                         std::string clsBasicDamage::*add, std::string_view baseName,
                         std::string_view addName) {
  score = std::min(score, kHighestScore);
  const clsBasicDamage* row = basicDamage::RowForScore(character, score);
  if (row == nullptr) return {};
  const DamageDice damage{CLngClamped(basicDamage::AtScore(row->*base, score, character, baseName)),
                          CLngClamped(basicDamage::AtScore(row->*add, score, character, addName))};
  if (character.UseDiceAddsConversion == 0) return damage;
  return basicDamage::ConvertAdds(damage, character.DamageBreaks);
}

// The character's own tags set the dice or the whole text instead.
std::string Overridden(KVRCharacter& character, DamageDice& damage, std::string_view diceTag,
                       std::string_view textTag) {
  const std::string_view dice = modTags::GetTagValue(diceTag, character.CharTagList);
  if (!dice.empty()) damage.dice = CLngClamped(explain::SolvedStep(character, diceTag, dice));
  const std::string_view text = modTags::GetTagValue(textTag, character.CharTagList);
  return text.empty() ? damage.Text() : std::string(text);
}

}  // namespace

DamageDice KVRCharacter::ReturnSwFromScore(double score) {
  return DamageAtScore(*this, score, &clsBasicDamage::SWBase, &clsBasicDamage::SWAdd, "tmpSWBase",
                       "tmpSWAdd");
}

DamageDice KVRCharacter::ReturnThrFromScore(double score) {
  return DamageAtScore(*this, score, &clsBasicDamage::THBase, &clsBasicDamage::THAdd, "tmpTHBase",
                       "tmpTHAdd");
}

void KVRCharacter::CalcBaseDamage() {
  TraceScope trace("KVRCharacter:CalcBaseDamage");
  const clsItem* basis = FindItem("Damage Base", kStats);
  const double score = basis == nullptr ? 0 : basis->Score();
  explain::Section section(*this, "baseth,basethdice,basethadds,basesw,baseswdice,baseswadds");
  explain::Note(*this, "Damage Base: ", score);
  section.Now("baseth,basethdice,basethadds");
  DamageDice thrust = ReturnThrFromScore(score);
  explain::Note(*this, "thrust by the table: ", [&] { return thrust.Text(); });
  BaseTH = Overridden(*this, thrust, "basethdice", "baseth");
  section.Now("basesw,baseswdice,baseswadds");
  DamageDice swing = ReturnSwFromScore(score);
  explain::Note(*this, "swing by the table: ", [&] { return swing.Text(); });
  BaseSW = Overridden(*this, swing, "baseswdice", "basesw");
  BaseTHDice = thrust.dice;
  BaseTHAdds = thrust.adds;
  BaseSwDice = swing.dice;
  BaseSwAdds = swing.adds;
}

}  // namespace kvr
