// The table of basic damage: its rows, their formulas, and the conversion of adds to dice.
#include "calc/BasicDamage.h"

#include <algorithm>
#include <cmath>

#include "calc/SolverContext.h"
#include "calc/modSolver.h"
#include "core/Numbers.h"

namespace kvr {

std::string DamageDice::Text() const {
  std::string text = std::to_string(dice) + "d";
  if (adds > 0) text += "+";
  if (adds != 0) text += std::to_string(adds);
  return text;
}

namespace basicDamage {

const clsBasicDamage* RowForScore(const KVRCharacter& character, double score) {
  const auto& rows = character.BasicDamageList;
  for (std::size_t i = 0; i + 1 < rows.size(); ++i)
    if (rows[i].ST >= score) return &rows[i];
  return rows.empty() ? nullptr : &rows.back();
}

double AtScore(std::string_view text, double score, CalcItem& context, std::string_view traceName) {
  std::string formula;
  modSolver::ForEachPart(
      text, false,
      [&](std::string_view part) {
        if (StartsWithNoCase(Trim(part), "st:"))
          AppendStr(formula, score);
        else
          formula += part;
      },
      [&](char mark) { formula += mark; });
  const KVRCharacter* character = context.RootOwnerChar();
  if (character && character->Solving.trace && !traceName.empty()) {
    character->Env().log.LogLine(TraceTop() + ": " + std::string(traceName) + " = " + formula);
  }
  return std::floor(modSolver::Solver(formula, context));
}

DamageDice ConvertAdds(DamageDice damage, std::vector<clsDamageBreak> breaks) {
  std::ranges::stable_sort(breaks, std::ranges::greater(), &clsDamageBreak::Break);
  for (const clsDamageBreak& step : breaks) {
    if (damage.adds < step.Break) continue;
    const std::int64_t adds = damage.adds;
    const std::int64_t times = step.Subtract > 0 ? (adds - step.Break) / step.Subtract + 1 : 1;
    damage.dice = CLngClamped(static_cast<double>(damage.dice + times * step.AddDice));
    damage.adds = CLngClamped(static_cast<double>(adds - times * step.Subtract));
  }
  return damage;
}

}  // namespace basicDamage
}  // namespace kvr
