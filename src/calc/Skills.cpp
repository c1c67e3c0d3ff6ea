// Skills and spells: the level that points and defaults buy.
#include "character/KVRCharacter.h"
#include "core/Numbers.h"

namespace kvr {

void clsItem::privCalcSkillItem() {
  CalcManeuver();
  SetPreModsPoints(Points());
  SetBaseAppPoints(AppPoints() - ExtraPoints());
}

std::int32_t clsItem::privGetLevel(std::int32_t defaultLevel, Currency /*points*/) {
  return defaultLevel;
}

Currency clsItem::privGetPointsForLevel(std::int32_t /*defaultLevel*/, std::int32_t /*wanted*/) {
  return 0;
}

bool clsItem::SetSkillScoreTo(double value) {
  return Level() == value;
}

// The skill types stand in order, the easier one before the harder.
void clsItem::SetOptionalSpecialtyStatus(bool on) {
  bool isOn = FreeTag("optspec") == "1";
  std::size_t index = Owner->ReturnSkillTypeIndexFromName(SkillType());
  const auto& types = Owner->SkillTypes;
  if (on && !isOn && index > 1 && types[index - 1]->Base() > -1) {
    SetSkillType(types[index - 2]->Name);
    SetTagItem("optspec", "1");
  } else if (!on && isOn && index != types.size()) {
    DeleteTag("optspec");
    if (index > 0) SetSkillType(types[index]->Name);
  }
  Calculate();
}

double clsItem::GetUserBonusLevels() {
  double levels = Val(FreeTag("bonuslevels"));
  if (levels != 0) BonusList.push_back((levels > 0 ? "+" : "") + NumberText(levels) + " from User");
  return levels;
}

Currency clsItem::GetUserBonusPoints() {
  Currency points = BonusPoints();
  if (!points.IsZero()) {
    BonusList.push_back((points > 0 ? "+" : "") + NumberText(points) + " pts from User");
  }
  return points;
}

}  // namespace kvr
