// Advantages, disadvantages, quirks and perks: the level within its limits, its cost, and what children and
// components add.
#include "calc/CalcSteps.h"
#include "calc/Children.h"
#include "calc/Limits.h"
#include "calc/Progression.h"
#include "calc/modSolver.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/modTools.h"

namespace kvr {
namespace {

struct LevelLimits {
  std::int16_t upto = 0, downto = 0;  // 0 is no limit
  bool limiting = false;
};

std::int16_t SolvedTag(clsItem& item, std::string_view tag) {
  return CInt(modSolver::Solver(item.FreeTag(tag), item));
}

LevelLimits ReadLimits(clsItem& item) {
  LevelLimits limits;
  LimitText upto = ReadLimit(item.FreeTag("upto"));
  limits.limiting = upto.limiting;
  limits.upto = CInt(modSolver::Solver(upto.formula, item));
  std::int16_t control = SolvedTag(item, "control_upto");
  if (control > 0 && (limits.upto <= 0 || control < limits.upto)) limits.upto = control;
  limits.downto = SolvedTag(item, "downto");
  control = SolvedTag(item, "control_downto");
  if (control > 0 && (limits.downto <= 0 || control > limits.downto)) limits.downto = control;
  return limits;
}

// A trait kept by one in lockstep has that one's level.
std::int32_t LevelBought(const clsItem& item) {
  std::string_view keeper = item.FreeTag("keep");
  if (keeper.empty()) return item.BaseLevel();
  const clsItem* other = item.Owner->Items.Item(std::string("k").append(keeper));
  return other != nullptr && !other->FreeTagIsEmpty("lockstep") ? other->Level() : item.BaseLevel();
}

std::int32_t LimitedLevel(std::int32_t level, double bonuses, const LevelLimits& limits) {
  if (limits.upto != 0) {
    if (!limits.limiting) {
      level = std::min<std::int32_t>(level, limits.upto);
    } else if (level + bonuses > limits.upto) {
      level = CLng(limits.upto - bonuses);
    }
  }
  if (limits.downto != 0) level = std::max<std::int32_t>(level, limits.downto);
  return std::max(level, 0);
}

Currency CostAtLevel(clsItem& item, const Progression& progression, std::int32_t level) {
  std::string_view formula = item.FreeTag("formula");
  if (formula.empty()) return progression.Cost(level);
  std::string text(formula);
  modTools::ReplaceAll(text, "%level", Str(level));
  return Currency::FromDouble(modSolver::Solver(text, item));
}

// The tag `childpoints` shows the sum with the bonuses on it, the trait costs the sum itself.
Currency AddChildren(clsItem& item) {
  if (item.ChildKeyList().empty()) return 0;
  double multiplier = item.CalcApplicableTargetTagMult("childpoints");
  double bonus = item.CalcApplicableTargetTagBonus("childpoints");
  Currency sum = PointsOfChildren(item, ChildProfileOf(item));
  WriteTag(item, "childpoints", NumberText((sum.ToDouble() + bonus) * multiplier));
  return sum;
}

}  // namespace

void clsItem::privCalcAdItem() {
  BonusList.clear();
  ConditionalList.clear();
  // What a formula finds that reads "me::level" and "me::points".
  SetLevel(1);
  SetPoints(0);
  LevelLimits limits = ReadLimits(*this);
  double user = GetUserBonusLevels();
  std::int32_t sys = CLng(CalcApplicableSysBonus());
  WriteTag(*this, "syslevels", std::to_string(sys));
  std::int32_t level = LimitedLevel(LevelBought(*this), user + sys, limits);
  SetBonusPoints(GetUserBonusPoints());
  SetSysPoints(CalcApplicableSysPoints());
  SetExtraPoints(BonusPoints() + SysPoints());
  Progression progression(FreeTag("cost"));
  // A single cost means a single level.
  if (progression.Count() == 1 && level > 1) level = 1;
  Currency cost = CostAtLevel(*this, progression, level);
  SetBaseLevel(level);
  SetPoints(cost);
  SetPreModsPoints(cost);
  SetLevel(CLng(level + user + sys));
  CalcModifiers();
  Currency total = Points() + AddChildren(*this) + PointsOfOwned(*this);
  SetPoints(total);
  SumConditionals(*this);
}

}  // namespace kvr
