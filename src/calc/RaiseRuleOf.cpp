// By how much a trait raises the rule of limit for the defaults that are taken from it.
#include "calc/modSolver.h"
#include "character/clsItem.h"

namespace kvr {

bool clsItem::privCalcRaiseRuleOf() {
  const std::string_view tag = FreeTag("raiseruleof");
  const bool isTarget = GetBonusAffectsFlag("raiseruleof");
  double raise = tag.empty() ? 0 : modSolver::Solver(tag, *this);
  if (isTarget) {
    const double multiplier = CalcApplicableTargetTagMult("raiseruleof");
    raise = (raise + CalcApplicableTargetTagBonus("raiseruleof")) * multiplier;
  }
  const bool changed = raise != raiseRuleOf_;
  raiseRuleOf_ = raise;
  return changed;
}

}  // namespace kvr
