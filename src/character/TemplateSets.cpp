// Moves traits to values that data ask for: `sets`, the values in `adds` and `creates`, and those of needs. A
// lock doesn't count here: it is for the user, and whoever follows needs looks at it before.
#include "calc/CalcSteps.h"
#include "calc/modSolver.h"
#include "character/FormerState.h"
#include "character/LevelMoves.h"
#include "character/TemplateEntries.h"
#include "core/Numbers.h"

namespace kvr {

namespace {

using modNeeds::Comparison;

constexpr double kGreatestValue = 2000000000;
// Steps of a value that can't be set directly.
constexpr int kMostSteps = 1000;

bool IsPointsTag(std::string_view tag) {
  return EqualNoCase(tag, "points") || EqualNoCase(tag, "basepoints") || EqualNoCase(tag, "baseapppoints");
}

// What a trait of the type is bought in.
double BoughtValue(const clsItem& item) {
  if (item.ItemType == kStats) return item.Score();
  return item.ItemType == kEquipment ? Val(item.FreeTag("count")) : item.Level();
}

bool IsBoughtValue(const clsItem& item, std::string_view tag) {
  if (tag.empty()) return true;
  if (item.ItemType == kStats) return EqualNoCase(tag, "score");
  return EqualNoCase(tag, item.ItemType == kEquipment ? "count" : "level");
}

double ValueOf(clsItem& item, std::string_view tag) {
  return IsBoughtValue(item, tag) ? BoughtValue(item) : Val(item.TagItem(tag));
}

// Step by step until the tag has reached the value or moves no further.
bool StepTo(clsItem& item, std::string_view tag, double wanted) {
  const double start = ValueOf(item, tag);
  double step = item.ItemType == kStats ? std::abs(modSolver::Solver(item.FreeTag("step"), item)) : 1;
  if (step == 0) step = 1;
  if (wanted < start) step = -step;
  for (int steps = 0; steps < kMostSteps; ++steps) {
    const double before = ValueOf(item, tag);
    if (before == wanted || (before > wanted) == (step > 0)) break;
    item.SetScoreTo(BoughtValue(item) + step);
    if (ValueOf(item, tag) == before) break;
  }
  return ReachedOrPassed(start, ValueOf(item, tag), wanted);
}

bool MoveToPoints(clsItem& item, std::string_view tag, Currency points) {
  switch (item.ItemType) {
    case kSkills:
    case kSpells: {
      const Currency former = item.BasePoints();
      item.SetBasePoints(points);
      const bool done = CalculateOrUndo(item, [&] { item.SetBasePoints(former); });
      item.Owner->ClearTokensForItem(item);
      item.Owner->PushTrickle(item);
      return done;
    }
    case kStats:
      return StepTo(item, tag, points.ToDouble());
    case kEquipment:
      item.Owner->Env().log.LogRed("'" + item.FullName() + "' has no points to be set.");
      return false;
    default:
      return item.SetScoreTo(item.ReturnLevelForPoints(points, false).ToDouble());
  }
}

// The value to move to, so that the comparison holds; the present one where it holds already or asks for
// none.
double Target(Comparison comparison, double present, double value) {
  switch (comparison) {
    case Comparison::AtLeast:
      return std::max(present, value);
    case Comparison::MoreThan:
      return present > value ? present : value + 1;
    case Comparison::AtMost:
      return std::min(present, value);
    case Comparison::LessThan:
      return present < value ? present : value - 1;
    case Comparison::Unlike:
      return present;
    default:
      return value;
  }
}

}  // namespace

bool KVRCharacter::MoveToValue(clsItem& item, std::string_view wanted, std::string_view tag, bool always) {
  const modNeeds::ComparisonParts parts = modNeeds::GetComparisonValues(wanted);
  const std::string_view valueText = parts.right.empty() ? parts.left : parts.right;
  const std::string head = TraceTop();
  env_.log.LogLine(head + ": IDKey of item being processed = " + std::to_string(item.IDKey));
  env_.log.LogLine(head + ": Item being processed = " + item.FullName());
  env_.log.LogLine(head + ": WantedAt$ = " + std::string(valueText));
  env_.log.LogLine(head + ": Wanted$ = " + std::string(wanted));
  env_.log.LogLine(head + ": WantedTag$ = " + std::string(tag));
  env_.log.LogLine(head + ": CompareType = " + std::to_string(static_cast<int>(parts.comparison)));
  const double value = std::min(modSolver::Solver(valueText, item), kGreatestValue);
  const double present = ValueOf(item, tag);
  if (always) {
    env_.log.LogLine(head + ": WantedAtValue = " + NumberText(value));
    env_.log.LogLine(head + ": CurItemValue = " + NumberText(present));
  }
  const double target = always ? value : Target(parts.comparison, present, value);
  if (!always && target == present) return parts.comparison != Comparison::Unlike || present != value;
  NoteFormerState(item);
  SetRefreshList(item.ItemType);
  if (IsPointsTag(tag)) return MoveToPoints(item, tag, Currency::FromDouble(target));
  return IsBoughtValue(item, tag) ? SetShownLevelTo(item, target) : StepTo(item, tag, target);
}

bool KVRCharacter::SetExistingItemToValue(clsItem& item, std::string_view wanted, std::string_view tag) {
  TraceScope trace("KVRCharacter:SetExistingItemToValue");
  return MoveToValue(item, wanted, tag, false);
}

bool KVRCharacter::ForceExistingItemToValue(clsItem& item, std::string_view wanted, std::string_view tag) {
  TraceScope trace("KVRCharacter:ForceExistingItemToValue");
  env_.log.LogLine("****************************************");
  return MoveToValue(item, wanted, tag, true);
}

void KVRCharacter::HandleSets(clsItem& item) {
  const std::string list = item.TagItem("sets");
  if (list.empty()) return;
  TraceScope trace("KVRCharacter:HandleSets");
  FormerState::MakeLinks(*this);
  TrickleRecalcItems();
  for (std::string_view text : templateEntries::Split(list)) {
    LogFailure(env_.log, [&] {
      const templateEntries::Entry entry = templateEntries::ReadEntry(text);
      clsItem* found = templateEntries::FindOn(*this, templateEntries::ReadReference(entry.left));
      if (!found) {
        return env_.log.LogLine("'" + item.FullName() + "' found nothing to set for '" + std::string(text) +
                                "'.");
      }
      if (const std::string_view points = templateEntries::PointsOf(entry.value); !points.empty()) {
        ForceExistingItemToValue(*found, points, "points");
      } else if (!entry.value.empty()) {
        ForceExistingItemToValue(*found, entry.value, "");
      }
      AddModsFromAndList(*found, entry.mods);
    });
  }
}

}  // namespace kvr
