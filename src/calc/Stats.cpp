// Attributes and other stats: a level bought in steps from a base value, with limits, bonuses and rounding.
#include <cmath>
#include <cstdlib>

#include "calc/CalcSteps.h"
#include "calc/Explanation.h"
#include "calc/Limits.h"
#include "calc/Progression.h"
#include "calc/modSolver.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

// What limits the level of a stat.
struct StatLimits {
  double max = 0, min = 0;
  bool limiting = false, hasMin = false, frozen = false;
  std::int32_t frozenLevel = 0;
};

StatLimits ReadLimits(clsItem& stat) {
  StatLimits limits;
  LimitText max = ReadLimit(stat.FreeTag("maxscore"));
  limits.limiting = max.limiting;
  limits.max = explain::SolvedStep(stat, "highest score", max.formula);
  std::string_view min = stat.FreeTag("minscore");
  limits.hasMin = !min.empty();
  limits.min = explain::SolvedStep(stat, "lowest score", min, explain::Detail::Needed);
  std::string_view frozen = stat.FreeTag("frozenlevel");
  limits.frozen = !frozen.empty();
  limits.frozenLevel = CLngClamped(Val(frozen));
  return limits;
}

// The highest whole number of steps within the distance. Taken on what 15 digits show, so that 0.3 / 0.1
// is 3.
std::int32_t StepsWithin(double distance, double step) {
  return CLngClamped(std::floor(Round15(distance / step)));
}

// `bonuses` are added to the score behind the limit, unless the limit is one of the total.
std::int32_t LimitedLevel(clsItem& stat, double step, double baseValue, double bonuses,
                          const StatLimits& limits) {
  std::int32_t level = stat.Level();
  double base = level * step + baseValue;
  double counted = limits.limiting ? bonuses : 0;
  if (limits.max > 0 && base + counted > limits.max) {
    level = StepsWithin(limits.max - baseValue - counted, step);
    explain::Note(stat, "limited to ", limits.max, limits.limiting ? " with all bonuses" : "",
                  " by maxscore(", stat.FreeTag("maxscore"), ")");
  }
  base = level * step + baseValue;
  if (limits.hasMin && base < limits.min) {
    level = StepsWithin(limits.min - baseValue, step);
    if (limits.frozen && level < limits.frozenLevel) level = limits.frozenLevel;
    explain::Note(stat, "raised to ", limits.min, " by minscore(", stat.FreeTag("minscore"), ")");
  }
  return level;
}

// Below 0 down, above 0 to the nearest with the half upwards, 0 not at all.
double RoundScore(double score, int mode) {
  if (mode == 0) return score;
  return std::floor(Round15(mode < 0 ? score : score + 0.5));
}

int RoundMode(clsItem& stat) {
  return CInt(modSolver::Solver(stat.FreeTag("round"), stat));
}

// A former calculation's bonus where the stat was written without one of its own.
double BonusOf(const clsItem& stat, std::string_view tag, std::string_view writtenTag) {
  std::string_view own = stat.FreeTag(tag);
  return Val(own.empty() ? stat.FreeTag(writtenTag) : own);
}

}  // namespace

void clsItem::privCalcStatItem() {
  BonusList.clear();
  ConditionalList.clear();
  std::int32_t level = Level();
  explain::Section section(*this, "score,basescore");
  double baseValue = explain::SolvedStep(*this, "starts at", FreeTag("basevalue"));
  section.Now("score,level,basescore,points");
  double step = explain::SolvedStep(*this, "a level is", FreeTag("step"), explain::Detail::Needed);
  section.Now("score,syslevels");
  double sys = CalcApplicableSysBonus();
  WriteTag(*this, "syslevels", NumberText(sys));
  double bonuses = sys + Val(FreeTag("bonuslevels"));
  section.Now("score,level,basescore,points");
  StatLimits limits = ReadLimits(*this);
  double base = baseValue;
  if (step != 0) {
    level = LimitedLevel(*this, step, baseValue, bonuses, limits);
    base = level * step + baseValue;
    explain::Note(*this, level, " levels of ", step, ": ", explain::Signed{base - baseValue});
  }
  // What `round` says may read it.
  WriteTag(*this, "basescore", NumberText(base));
  section.Now("score");
  double score = RoundScore(Finite(base + bonuses), RoundMode(*this));
  explain::NoteRounded(*this, base + bonuses, score);
  section.Now("points,premodspoints");
  Currency points = step == 0 ? Currency() : CalcStatPoints(level, true);
  SetLevel(level);
  SetScore(score);
  SetBasePoints(points);
  SetPoints(points);
  SetPreModsPoints(points);
  section.End();
  SumConditionals(*this);
}

Currency clsItem::CalcStatPoints(std::int32_t level, bool inPlay) {
  const std::string_view way = level < 0 ? "down" : "up";
  Progression progression(FreeTag(way));
  Currency cost = progression.Cost(std::abs(static_cast<std::int64_t>(level)));
  explain::Note(*this, "level ", level, " of ", way, "(", FreeTag(way), ") costs ", cost);
  std::string_view multiplier = FreeTag("inplaymult");
  if (!inPlay || multiplier.empty() || Owner == nullptr || !Owner->InPlay()) return cost;
  explain::Note(*this, "in play: x", multiplier, ", less what it cost before: ", FreeTag("frozencost"));
  return Currency::FromDouble(cost.ToDouble() * Val(multiplier) - Val(FreeTag("frozencost")));
}

bool clsItem::SetStatScoreTo(double value) {
  double before = Score();
  if (Round15(before) == Round15(value)) return true;
  double step = modSolver::Solver(FreeTag("step"), *this);
  if (step == 0) step = 1;
  double baseValue = modSolver::Solver(FreeTag("basevalue"), *this);
  if (step == 1) baseValue = RoundScore(baseValue, RoundMode(*this));
  double bonuses = Val(FreeTag("syslevels")) + Val(FreeTag("bonuslevels"));
  std::int32_t level = Level();
  SetLevel(CLngClamped(RoundHalfEven(Round15((value - baseValue - bonuses) / step))));
  if (!CalculateOrUndo(*this, [&] { SetLevel(level); })) return false;
  Owner->ClearTokensForItem(*this);
  Owner->PushTrickle(*this);
  return ReachedOrPassed(before, Score(), value);
}

Currency KVRCharacter::CalcAStat(std::string_view statKey, std::int32_t level) {
  clsItem* stat = Items.Item(statKey);
  if (stat == nullptr) return 0;
  double value = modSolver::Solver(stat->FreeTag("basevalue"), *stat) +
                 level * modSolver::Solver(stat->FreeTag("step"), *stat) +
                 BonusOf(*stat, "sysbonus", "syslevels") + BonusOf(*stat, "bonus", "bonuslevels");
  int mode = RoundMode(*stat);
  return Currency::FromDouble(mode == -1 || mode == 1 ? RoundScore(value, mode) : value);
}

}  // namespace kvr
