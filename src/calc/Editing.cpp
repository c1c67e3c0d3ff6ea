// Changing a trait by steps or to a value, as the windows and commands do it. Every change that takes effect
// is spread to what depends on the trait; one that a limit undoes leaves the trait as it was.
#include <algorithm>
#include <cmath>

#include "calc/CalcSteps.h"
#include "calc/Progression.h"
#include "calc/SkillScale.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

constexpr double kGreatestScore = 2000000000;

std::int32_t StepFrom(std::int32_t value, int step) {
  return CLngClamped(static_cast<double>(value) + step);
}

// A level can move without moving the score, so what the solver knows goes first.
bool Spread(clsItem& item, bool changed) {
  if (!changed) return false;
  item.Owner->ClearTokensForItem(item);
  item.Owner->PushTrickle(item);
  return true;
}

bool ChangeStatLevel(clsItem& item, std::int32_t level) {
  std::int32_t former = item.Level();
  item.SetLevel(level);
  const bool done = CalculateOrUndo(item, [&] { item.SetLevel(former); });
  return Spread(item, done && item.Level() != former);
}

bool ChangeBaseLevel(clsItem& item, std::int32_t baseLevel) {
  std::int32_t formerLevel = item.Level(), formerBase = item.BaseLevel();
  item.SetBaseLevel(baseLevel);
  if (!CalculateOrUndo(item, [&] { item.SetBaseLevel(formerBase); })) return false;
  if (item.Level() != formerLevel) return Spread(item, true);
  if (item.BaseLevel() != formerBase) {
    item.SetBaseLevel(formerBase);
    item.Calculate();
  }
  return false;
}

double CountOf(const clsItem& item) {
  return Val(item.FreeTag("count"));
}

bool ChangeCount(clsItem& item, double count) {
  std::string former(item.FreeTag("count"));
  double before = CountOf(item);
  item.SetTagItem("ocount", former);
  item.SetTagItem("count", NumberText(count));
  const auto undo = [&] { item.SetTagItem("count", former); };
  if (!CalculateOrUndo(item, undo)) return false;
  if (CountOf(item) != before) return Spread(item, true);
  undo();
  return false;
}

void SpendPoints(clsItem& item, Currency points) {
  const Currency former = item.BasePoints();
  item.SetBasePoints(points);
  Spread(item, CalculateOrUndo(item, [&] { item.SetBasePoints(former); }));
}

void IncrementSkill(clsItem& item) {
  item.SetSkillScoreTo(StepFrom(item.Level(), 1));
  const clsSkillCosts* type = SkillTypeOf(item);
  if (type != nullptr && item.BasePoints() <= 0) SpendPoints(item, type->MinCost());
}

// A level below the lowest goes back to the default, or else stays at the least cost.
void DecrementSkill(clsItem& item) {
  if (item.SetSkillScoreTo(StepFrom(item.Level(), -1))) return;
  const clsSkillCosts* type = SkillTypeOf(item);
  if (type == nullptr) return;
  const bool wholePoint = item.ItemType == kSpells && item.Owner->AllowHalfPointSpells == 0;
  Currency points = item.BasePoints();
  if (!item.FreeTagIsEmpty("deffrom")) {
    points = 0;
  } else if (points < type->MinCost()) {
    points = wholePoint ? Currency(1) : type->MinCost();
  }
  SpendPoints(item, points);
}

bool MoveTo(clsItem& item, double value) {
  double before = item.ItemType == kEquipment ? CountOf(item) : item.Level();
  switch (item.ItemType) {
    case kStats:
      return item.SetStatScoreTo(value);
    case kSkills:
    case kSpells:
      return item.SetSkillScoreTo(value);
    case kEquipment:
      ChangeCount(item, value);
      return ReachedOrPassed(before, CountOf(item), value);
    default:
      ChangeBaseLevel(item, CLngClamped(RoundHalfEven(value)));
      return ReachedOrPassed(before, item.Level(), value);
  }
}

bool IsLocked(const clsItem& item) {
  return IsSet(item.FreeTag("locked"));
}

void StepUp(clsItem& item) {
  switch (item.ItemType) {
    case kStats:
      ChangeStatLevel(item, StepFrom(item.Level(), 1));
      break;
    case kSkills:
    case kSpells:
      IncrementSkill(item);
      break;
    case kEquipment:
      ChangeCount(item, CountOf(item) + 1);
      break;
    default:
      ChangeBaseLevel(item, StepFrom(item.BaseLevel(), 1));
  }
}

void StepDown(clsItem& item) {
  switch (item.ItemType) {
    case kStats:
      ChangeStatLevel(item, StepFrom(item.Level(), -1));
      break;
    case kSkills:
    case kSpells:
      DecrementSkill(item);
      break;
    case kEquipment:
      ChangeCount(item, std::max(CountOf(item) - 1, 0.0));
      break;
    default:
      if (item.Owner->Env().Config.DecrementToZero != 0 || item.Level() > 1) {
        ChangeBaseLevel(item, StepFrom(item.BaseLevel(), -1));
      }
  }
}

}  // namespace

void clsItem::Increment() {
  TraceScope trace("clsItem:Increment");
  if (!IsLocked(*this)) LogFailure(Owner->Env().log, [this] { StepUp(*this); });
}

void clsItem::Decrement() {
  TraceScope trace("clsItem:Decrement");
  if (!IsLocked(*this)) LogFailure(Owner->Env().log, [this] { StepDown(*this); });
}

bool clsItem::SetScoreTo(double value) {
  TraceScope trace("clsItem:SetScoreTo");
  Owner->NoteFormerState(*this);
  bool reached = false;
  LogFailure(Owner->Env().log, [&] { reached = MoveTo(*this, std::min(value, kGreatestScore)); });
  return reached;
}

Currency clsItem::ReturnLevelForPoints(Currency points, bool roundUp) {
  if (ItemType == kSkills || ItemType == kSpells) {
    return privGetLevel(CLngClamped(Val(FreeTag("deflevel"))), points);
  }
  if (ItemType == kStats || ItemType == kEquipment) return 0;
  return Progression(FreeTag("cost")).LevelForPoints(points, roundUp);
}

}  // namespace kvr
