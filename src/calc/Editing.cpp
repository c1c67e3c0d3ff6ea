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

}  // namespace

void clsItem::Increment() {
  if (IsLocked(*this)) return;
  switch (ItemType) {
    case kStats:
      ChangeStatLevel(*this, StepFrom(Level(), 1));
      break;
    case kSkills:
    case kSpells:
      IncrementSkill(*this);
      break;
    case kEquipment:
      ChangeCount(*this, CountOf(*this) + 1);
      break;
    default:
      ChangeBaseLevel(*this, StepFrom(BaseLevel(), 1));
  }
}

void clsItem::Decrement() {
  if (IsLocked(*this)) return;
  switch (ItemType) {
    case kStats:
      ChangeStatLevel(*this, StepFrom(Level(), -1));
      break;
    case kSkills:
    case kSpells:
      DecrementSkill(*this);
      break;
    case kEquipment:
      ChangeCount(*this, std::max(CountOf(*this) - 1, 0.0));
      break;
    default:
      if (Owner->Env().Config.DecrementToZero != 0 || Level() > 1) {
        ChangeBaseLevel(*this, StepFrom(BaseLevel(), -1));
      }
  }
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
