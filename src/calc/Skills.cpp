// Skills, spells, techniques and combinations: the points that count, the default, and the level that both
// buy.
#include "calc/CalcSteps.h"
#include "calc/Children.h"
#include "calc/Combinations.h"
#include "calc/Explanation.h"
#include "calc/SkillDefaults.h"
#include "calc/SkillLimits.h"
#include "calc/SkillScale.h"
#include "calc/modSolver.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/modLogging.h"
#include "core/modTools.h"

namespace kvr {
namespace {

void LogUnknownType(const clsItem& item) {
  ActivityLog& log = item.Owner->Env().log;
  const std::string type(SkillTypeNameOf(item));
  log.LogRed("Unknown Skill Type: " + type);
  log.LogRed("'" + item.FullName() + "' has no level: no skill type is named as its tag 'type' says (" +
             type + ").");
}

// The cheapest start of a spell, unless parts of a point may be spent on it, is a whole point.
Currency LeastPoints(const clsItem& item, const clsSkillCosts& type) {
  const bool wholePoint = item.ItemType == kSpells && item.Owner->AllowHalfPointSpells == 0;
  return wholePoint && type.MinCost() < Currency(1) ? Currency(1) : type.MinCost();
}

// How the value that a skill rests on is shown: "Wits" for "{ST:Wits}", "Wits-1" for "{ST:Wits}-1".
std::string NameInReference(std::string_view text) {
  const std::string_view head = HeadReference(text);
  std::string_view name = modPrefixes::ExtractPrefix(modTools::StripQuotesAndBraces(head)).rest;
  name = modTools::StripQuotesAndBraces(name.substr(0, name.find("::")));
  return std::string(name).append(text.substr(head.size()));
}

// The points that come to `needed` once they are multiplied.
Currency PointsBeforeMultiplier(Currency needed, double multiplier) {
  if (multiplier == 0) return needed;
  const Currency points = Currency::FromDouble(needed.ToDouble() / multiplier);
  const bool tooFew = Currency::FromDouble(multiplier * points.ToDouble()) < needed;
  return tooFew ? points + Currency::FromUnits(1) : points;
}

// The calculation of one trait; the steps are run in order.
class SkillCalculation {
 public:
  explicit SkillCalculation(clsItem& item) : item_(item), type_(SkillTypeOf(item)) {}

  // False when the skill type is unknown, and there is nothing to calculate.
  bool Begin();
  void ReadBonuses();
  void SpendPoints();
  void FindDefault();
  void FindCombinedLevel();
  void FindLevel();
  void FindLevelAboveDefault();
  void HoldPointsToLimit();
  void HoldLevelToLimit();
  void StorePoints();
  void StoreLevels();
  void StoreRelativeLevel();
  void AddChildren();

 private:
  void RaiseToWholePoint();
  void ApplyPoints();
  void WriteDefault(std::int32_t level);
  void NoteDefault();
  auto Uptos() const {
    return [this] { return explain::Written(item_, {"upto", "control_upto"}); };
  }
  void WriteNoDefault();

  clsItem& item_;
  const clsSkillCosts* type_;
  SkillLimits limits_;
  // Points: spent, multiplied, free by a default, of the user, of other traits, all free ones, all that
  // count.
  Currency spent_, multiplied_, default_, user_, system_, extra_, applicable_;
  // Free points that bonuses on the tag `basepoints` give; they count as if they had been spent.
  Currency bonusBase_;
  double multiplier_ = 1;
  std::int32_t defaultLevel_ = 0, level_ = 0;
  std::string defaultName_;
  std::int32_t defaultKey_ = 0;
};

bool SkillCalculation::Begin() {
  item_.SetLevel(0);
  item_.SetBaseLevel(0);
  item_.SetPoints(0);
  item_.BonusList.clear();
  item_.ConditionalList.clear();
  explain::Section section(item_, "level,points");
  limits_ = ReadSkillLimits(item_);
  if (type_ != nullptr) return true;
  LogUnknownType(item_);
  WriteNoDefault();
  item_.SetPreModsPoints(0);
  item_.SetBaseAppPoints(0);
  return false;
}

void SkillCalculation::ReadBonuses() {
  explain::Section section(item_,
                           "level,apppoints,syspoints,extrapoints,multpoints,pointmult,bonusbasepoints");
  system_ = item_.CalcApplicableSysPoints();
  user_ = item_.GetUserBonusPoints();
  multiplier_ = item_.CalcApplicablePointMult();
  bonusBase_ = Currency::FromDouble(item_.CalcApplicableTargetTagBonus("basepoints"));
}

void SkillCalculation::SpendPoints() {
  explain::Section section(item_, "level,points,basepoints,apppoints");
  spent_ = item_.BasePoints();
  explain::Note(item_, "points spent: ", spent_);
  if (limits_.mostPoints > Currency() && spent_ > limits_.mostPoints) {
    spent_ = limits_.mostPoints;
    explain::Note(item_, "limited to ", explain::Points{spent_}, " by ", Uptos());
  }
  if (limits_.hasLeastPoints && spent_ < limits_.leastPoints) {
    spent_ = limits_.leastPoints;
    explain::Note(item_, "raised to ", explain::Points{spent_}, " by ", [this] {
      return explain::Written(item_, {"downto", "control_downto"});
    });
    if (spent_ > Currency()) item_.SetBasePoints(spent_);
  }
  if (spent_ < Currency()) {
    item_.Owner->Env().log.LogLine("'" + item_.FullName() + "' has " + NumberText(spent_) +
                                   " in its tag 'basepoints'; points below 0 count as 0.");
    spent_ = 0;
  }
  RaiseToWholePoint();
  ApplyPoints();
}

// A part of a point is spent on a spell only where the character's rules allow that.
void SkillCalculation::RaiseToWholePoint() {
  if (item_.ItemType != kSpells || item_.Owner->AllowHalfPointSpells != 0) return;
  if (spent_ <= Currency() || spent_ >= Currency(1)) return;
  spent_ = 1;
  explain::Note(item_, "a spell takes a whole point: 1");
}

void SkillCalculation::ApplyPoints() {
  multiplied_ = Currency::FromDouble(multiplier_ * spent_.ToDouble());
  extra_ = default_ + user_ + system_;
  applicable_ = multiplied_ + extra_ + bonusBase_;
}

void SkillCalculation::FindDefault() {
  explain::Section section(item_, "level,default,deffrom,deflevel");
  defaultLevel_ = item_.privGetDefaultLevel(defaultName_, defaultKey_);
  if (item_.Maneuver() != 0) NoteDefault();
}

// To a combination the level of what it joins is what a default is to a technique.
void SkillCalculation::FindCombinedLevel() {
  explain::Section section(item_, "level,combolevel,deffrom,deflevel");
  CombinedLevelResult combined = CombinedLevel(item_);
  defaultLevel_ = CLngClamped(static_cast<double>(combined.level) + type_->Base());
  explain::Note(item_, type_->Name, " starts at: ", defaultLevel_, " (",
                explain::Signed{static_cast<double>(type_->Base())}, ")");
  defaultName_ = std::move(combined.source.name);
  defaultKey_ = combined.source.idKey;
  WriteTag(item_, "combolevel", std::to_string(defaultLevel_));
}

// A technique or combination without points is at its default.
void SkillCalculation::FindLevelAboveDefault() {
  WriteDefault(defaultLevel_);
  level_ = defaultLevel_;
  if (type_->SubZero && applicable_ <= Currency()) return;
  const SkillScale scale(item_, *type_);
  explain::Section section(item_, "level,baselevel,type");
  level_ = scale.Level(defaultLevel_, applicable_);
}

// A default above the start value is worth the points that its level would cost, and the user's own points
// buy above it; any other is the level of a skill that has no better one.
void SkillCalculation::FindLevel() {
  if (item_.Maneuver() != 0) return FindLevelAboveDefault();
  explain::Section section(item_, "level,baselevel,type,stat");
  const SkillScale scale(item_, *type_);
  section.Now("level,baselevel");
  level_ = scale.Level(defaultLevel_, applicable_);
  section.Now("level,baselevel,default,deffrom,deflevel,defpoints");
  if (defaultLevel_ > 0 || type_->SubZero) {
    default_ = std::max(scale.PointsFor(defaultLevel_, defaultLevel_), Currency());
  }
  if (default_ > Currency()) {
    WriteDefault(defaultLevel_);
    NoteDefault();
    explain::Note(item_, "that is worth ", explain::Points{default_});
    section.Now("level,baselevel");
    ApplyPoints();
    level_ = std::max(level_, scale.Level(defaultLevel_, applicable_));
  } else {
    WriteNoDefault();
    if (level_ > 0 || defaultLevel_ <= 0) {
      explain::Note(item_, "no default in use");
      return;
    }
    level_ = defaultLevel_;
    NoteDefault();
  }
}

void SkillCalculation::NoteDefault() {
  if (!defaultName_.empty()) explain::Note(item_, "in use: ", defaultName_, " at ", defaultLevel_);
}

void SkillCalculation::WriteDefault(std::int32_t level) {
  WriteOrDeleteTag(item_, "deffrom", defaultName_);
  WriteOrDeleteTag(item_, "deffromid", defaultKey_ == 0 ? "" : std::to_string(defaultKey_));
  WriteTag(item_, "deflevel", std::to_string(level));
}

void SkillCalculation::WriteNoDefault() {
  WriteOrDeleteTag(item_, "deffrom", "");
  WriteOrDeleteTag(item_, "deffromid", "");
  WriteTag(item_, "deflevel", "0");
}

// A level past its limit doesn't cost more than the limit does.
void SkillCalculation::HoldPointsToLimit() {
  const bool optionOn = item_.Owner->Env().Config.UptoAffectsPoints != 0;
  if (!optionOn || limits_.mostLevel <= 0 || level_ <= limits_.mostLevel) return;
  const SkillScale scale(item_, *type_);
  explain::Section section(item_, "level,baselevel,points,basepoints,apppoints");
  explain::Note(item_, "level ", level_, " is past ", Uptos());
  spent_ = PointsBeforeMultiplier(scale.PointsFor(defaultLevel_, limits_.mostLevel), multiplier_);
  if (spent_ < type_->MinCost() && item_.ItemType == kSpells && item_.Owner->AllowHalfPointSpells == 0) {
    spent_ = 1;
  } else if (spent_ <= type_->MinCost()) {
    spent_ = type_->MinCost();
  }
  RaiseToWholePoint();
  ApplyPoints();
  explain::Note(item_, "points spent in its place: ", spent_);
  section.Now("level,baselevel");
  level_ = scale.Level(defaultLevel_, applicable_);
}

void SkillCalculation::HoldLevelToLimit() {
  if (limits_.mostLevel <= 0 || level_ <= limits_.mostLevel) return;
  level_ = limits_.mostLevel;
  explain::Section section(item_, "level,baselevel");
  explain::Note(item_, "limited to ", level_, " by ", Uptos());
}

// Taking the free points off what counts and dividing by the multiplier would give the points spent again,
// but for what rounding loses, and a trait must not change by being calculated twice.
void SkillCalculation::StorePoints() {
  WriteTag(item_, "pointmult", NumberText(multiplier_));
  if (!bonusBase_.IsZero()) {
    WriteTag(item_, "bonusbasepoints", NumberText(bonusBase_));
  } else if (!item_.FreeTagIsEmpty("bonusbasepoints")) {
    item_.DeleteTag("bonusbasepoints");
  }
  item_.SetMultPoints(multiplied_);
  item_.SetBonusPoints(user_);
  item_.SetSysPoints(system_);
  item_.SetDefPoints(default_);
  item_.SetExtraPoints(extra_);
  item_.SetAppPoints(applicable_);
  item_.SetBaseAppPoints(applicable_ - extra_);
  item_.SetPoints(spent_);
  item_.SetBasePoints(spent_);
}

// The points are stored by now and the level is not: a skill without either takes no bonus on its level.
void SkillCalculation::StoreLevels() {
  explain::Section section(item_, "level,syslevels,extralevels,levelmult");
  const double given = item_.CalcApplicableSysBonus(), system = RoundHalfEven(given);
  explain::NoteRounded(item_, given, system);
  const double user = item_.GetUserBonusLevels();
  const double multiplier = item_.CalcApplicableLevelMult();
  item_.SetLevel(CLng(system + user + multiplier * level_));
  item_.SetBaseLevel(level_);
  WriteTag(item_, "levelmult", NumberText(multiplier));
  WriteTag(item_, "syslevels", NumberText(system));
  WriteTag(item_, "extralevels", NumberText(system + user));
}

// "DX" and "+2"; what rests on a default or on joined traits is shown against that.
void SkillCalculation::StoreRelativeLevel() {
  const std::string stat(StatTextOf(item_, *type_));
  const bool ordinary = item_.Maneuver() == 0;
  std::string from(type_->RelName);
  if (from.empty()) from = ordinary ? NameInReference(stat) : defaultName_;
  const double relative = item_.Level() - (ordinary ? modSolver::Solver(stat, item_) : defaultLevel_);
  explain::Section section(item_, "step,stepoff");
  explain::Note(item_, "level ", item_.Level(), " against ", from, " at ", item_.Level() - relative);
  WriteTag(item_, "stepoff", from);
  WriteTag(item_, "step", (relative >= 0 ? "+" : "") + NumberText(relative));
}

void SkillCalculation::AddChildren() {
  if (!item_.ChildKeyList().empty() || !item_.FreeTagIsEmpty("childpoints")) {
    explain::Section section(item_, "points,childpoints");
    explain::Step step(item_, "its children");
    const Currency children = step.Is(PointsOfChildren(item_, ChildProfile::Sum));
    WriteTag(item_, "childpoints", NumberText(children));
    item_.SetPoints(item_.Points() + children);
  }
  item_.SetPreModsPoints(item_.Points());
}

void FinishSkill(SkillCalculation& calculation, clsItem& item) {
  calculation.FindLevel();
  calculation.HoldPointsToLimit();
  calculation.HoldLevelToLimit();
  calculation.StorePoints();
  calculation.StoreLevels();
  calculation.StoreRelativeLevel();
  calculation.AddChildren();
  SumConditionals(item);
}

}  // namespace

void clsItem::privCalcSkillItem() {
  CalcManeuver();
  if (Maneuver() == 2) return privCalcSkillComboItem();
  SkillCalculation calculation(*this);
  if (!calculation.Begin()) return;
  calculation.ReadBonuses();
  calculation.SpendPoints();
  calculation.FindDefault();
  FinishSkill(calculation, *this);
}

void clsItem::privCalcSkillComboItem() {
  RefreshCombinationKeys(*this);
  SkillCalculation calculation(*this);
  if (!calculation.Begin()) return;
  calculation.ReadBonuses();
  calculation.SpendPoints();
  calculation.FindCombinedLevel();
  FinishSkill(calculation, *this);
}

bool clsItem::SetSkillScoreTo(double value) {
  const double before = Level();
  const Currency former = BasePoints();
  const std::int32_t wanted = CLngClamped(value - Val(FreeTag("extralevels")));
  const clsSkillCosts* type = SkillTypeOf(*this);
  if (type == nullptr) {
    LogUnknownType(*this);
    return false;
  }
  Currency points = privGetPointsForLevel(CLngClamped(Val(FreeTag("deflevel"))), wanted) - ExtraPoints() -
                    Currency::FromVal(FreeTag("bonusbasepoints"));
  points = PointsBeforeMultiplier(points, Val(FreeTag("pointmult")));
  if (points <= Currency() || points < type->MinCost()) {
    points = FreeTagIsEmpty("deffrom") ? LeastPoints(*this, *type) : Currency();
  }
  SetBasePoints(points);
  if (!CalculateOrUndo(*this, [&] { SetBasePoints(former); })) return false;
  Owner->PushTrickle(*this);
  return ReachedOrPassed(before, Level(), value);
}

// The skill types stand in order, the easier one before the harder.
void clsItem::SetOptionalSpecialtyStatus(bool on) {
  bool isOn = FreeTag("optspec") == "1";
  std::size_t index = Owner->ReturnSkillTypeIndexFromName(SkillType());
  const auto& types = Owner->SkillTypes;
  if (on && !isOn && index > 1 && types[index - 1]->Base() > -1) {
    SetSkillType(types[index - 2]->Name);
    SetTagItem("optspec", "1");
  } else if (!on && isOn && (index == 0 || index < types.size())) {
    DeleteTag("optspec");
    if (index > 0) SetSkillType(types[index]->Name);
  }
  Owner->ClearTokensForItem(*this);
  Calculate();
}

double clsItem::GetUserBonusLevels() {
  double levels = Val(FreeTag("bonuslevels"));
  if (levels != 0) explain::Note(*this, "the player gives ", explain::Signed{levels});
  if (levels != 0) BonusList.push_back((levels > 0 ? "+" : "") + NumberText(levels) + " from User");
  return levels;
}

Currency clsItem::GetUserBonusPoints() {
  Currency points = BonusPoints();
  if (!points.IsZero()) {
    explain::Note(*this, "the player gives ", explain::Signed{points.ToDouble()}, " points");
    BonusList.push_back((points > 0 ? "+" : "") + NumberText(points) + " pts from User");
  }
  return points;
}

}  // namespace kvr
