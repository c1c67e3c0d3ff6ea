// Advantages, disadvantages, quirks, perks and templates: the level within its limits, its cost, and what
// children and components add.
#include "calc/CalcSteps.h"
#include "calc/Children.h"
#include "calc/Explanation.h"
#include "calc/Limits.h"
#include "calc/Progression.h"
#include "calc/modSolver.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/modTools.h"

namespace kvr {
namespace {

struct LevelLimits {
  std::int32_t upto = 0, downto = 0;  // 0 is no limit
  bool limiting = false;
};

std::int32_t SolvedTag(clsItem& item, std::string_view tag) {
  if (ContainsNoCase(item.FreeTag(tag), "%points")) return 0;  // held while it is picked
  const auto detail = tag.ends_with("upto") ? explain::Detail::Optional : explain::Detail::Needed;
  return CLngClamped(explain::SolvedStep(item, tag, item.FreeTag(tag), detail));
}

LevelLimits ReadLimits(clsItem& item) {
  LevelLimits limits;
  LimitText upto = ReadLimit(item.FreeTag("upto"));
  limits.limiting = upto.limiting;
  limits.upto = CInt(explain::SolvedStep(item, "upto", upto.formula));
  std::int32_t control = SolvedTag(item, "control_upto");
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
  if (other == nullptr || !IsSet(other->FreeTag("lockstep"))) return item.BaseLevel();
  explain::Note(item, "in lockstep with ", other->FullName(), ": ", other->Level());
  return other->Level();
}

std::int32_t LimitedLevel(const clsItem& item, double bonuses, const LevelLimits& limits) {
  const std::int32_t bought = LevelBought(item);
  explain::Note(item, "levels bought: ", bought);
  std::int32_t level = bought;
  if (limits.upto != 0) {
    if (!limits.limiting) {
      level = std::min<std::int32_t>(level, limits.upto);
    } else if (level + bonuses > limits.upto) {
      level = CLng(limits.upto - bonuses);
    }
  }
  if (limits.downto != 0) level = std::max<std::int32_t>(level, limits.downto);
  level = std::max(level, 0);
  if (level < bought) {
    explain::Note(item, "limited to ", level, limits.limiting ? " before bonuses by " : " by ", [&] {
      return explain::Written(item, {"upto", "control_upto"});
    });
  } else if (level > bought) {
    explain::Note(item, "raised to ", level, " by ", [&] {
      return explain::Written(item, {"downto", "control_downto"});
    });
  }
  return level;
}

Currency CostAtLevel(clsItem& item, const Progression& progression, std::int32_t level) {
  std::string_view formula = item.FreeTag("formula");
  explain::Step step(item, "level ", level, " costs");
  if (formula.empty()) {
    step.Formula(item.FreeTag("cost"));
    return step.Is(progression.Cost(level));
  }
  std::string text(formula);
  modTools::ReplaceAll(text, "%level", Str(level));
  return step.Is(Currency::FromDouble(modSolver::Solver(text, item)));
}

// The tag `childpoints` shows the sum with the bonuses on it. A template costs just that, any other trait the
// sum itself.
Currency AddChildren(clsItem& item) {
  if (item.ChildKeyList().empty()) return 0;
  explain::Section section(item, "points,childpoints");
  explain::Step step(item, "its children");
  double multiplier = item.CalcApplicableTargetTagMult("childpoints");
  double bonus = item.CalcApplicableTargetTagBonus("childpoints");
  Currency sum = PointsOfChildren(item, ChildProfileOf(item));
  const double adjusted = (sum.ToDouble() + bonus) * multiplier;
  WriteTag(item, "childpoints", NumberText(adjusted));
  return step.Is(item.ItemType == kPackages ? Currency::FromDouble(adjusted) : sum);
}

void CalcLeveledTrait(clsItem& item) {
  item.BonusList.clear();
  item.ConditionalList.clear();
  // What a formula finds that reads "me::level" and "me::points".
  item.SetLevel(1);
  item.SetPoints(0);
  explain::Section section(item, "level,baselevel");
  const LevelLimits limits = ReadLimits(item);
  section.Now("level,syslevels");
  const double user = item.GetUserBonusLevels();
  const std::int32_t sys = CLng(item.CalcApplicableSysBonus());
  WriteTag(item, "syslevels", std::to_string(sys));
  section.Now("level,baselevel");
  std::int32_t level = LimitedLevel(item, user + sys, limits);
  section.Now("syspoints,bonuspoints,extrapoints");
  item.SetBonusPoints(item.GetUserBonusPoints());
  item.SetSysPoints(item.CalcApplicableSysPoints());
  item.SetExtraPoints(item.BonusPoints() + item.SysPoints());
  const Progression progression(item.FreeTag("cost"));
  // A single cost means a single level.
  section.Now("level,baselevel");
  if (progression.Count() == 1 && level > 1) {
    level = 1;
    explain::Note(item, "limited to 1: there is only one cost");
  }
  section.Now("points,premodspoints");
  const Currency cost = CostAtLevel(item, progression, level);
  item.SetBaseLevel(level);
  item.SetPoints(cost);
  item.SetPreModsPoints(cost);
  item.SetLevel(CLng(level + user + sys));
  section.Now("points");
  item.CalcModifiers();
  const Currency total = item.Points() + AddChildren(item) + PointsOfOwned(item);
  item.SetPoints(total);
  section.End();
  SumConditionals(item);
}

}  // namespace

void clsItem::privCalcAdItem() {
  CalcLeveledTrait(*this);
}

void clsItem::privCalcPackageItem() {
  CalcLeveledTrait(*this);
}

}  // namespace kvr
