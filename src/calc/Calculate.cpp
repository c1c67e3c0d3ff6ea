// The calculation of one trait, from its inputs to the numbers that others read, and the push to those that
// do.
#include <optional>

#include "calc/CalcSteps.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

// The numbers of a trait, put back unless the calculation came to its end.
class FormerNumbers {
 public:
  explicit FormerNumbers(clsItem& item)
      : item_(item),
        base_(item.BasePoints()),
        points_(item.Points()),
        mult_(item.MultPoints()),
        def_(item.DefPoints()),
        bonus_(item.BonusPoints()),
        sys_(item.SysPoints()),
        extra_(item.ExtraPoints()),
        app_(item.AppPoints()),
        baseApp_(item.BaseAppPoints()),
        preMods_(item.PreModsPoints()),
        baseLevel_(item.BaseLevel()),
        level_(item.Level()),
        score_(item.Score()) {}
  ~FormerNumbers() {
    if (!kept_) Restore();
  }
  FormerNumbers(const FormerNumbers&) = delete;
  FormerNumbers& operator=(const FormerNumbers&) = delete;
  void KeepNew() { kept_ = true; }

 private:
  void Restore() {
    item_.SetBasePoints(base_);
    item_.SetPoints(points_);
    item_.SetMultPoints(mult_);
    item_.SetDefPoints(def_);
    item_.SetBonusPoints(bonus_);
    item_.SetSysPoints(sys_);
    item_.SetExtraPoints(extra_);
    item_.SetAppPoints(app_);
    item_.SetBaseAppPoints(baseApp_);
    item_.SetPreModsPoints(preMods_);
    item_.SetBaseLevel(baseLevel_);
    item_.SetLevel(level_);
    item_.SetScore(score_);
  }

  clsItem& item_;
  Currency base_, points_, mult_, def_, bonus_, sys_, extra_, app_, baseApp_, preMods_;
  std::int32_t baseLevel_, level_;
  double score_;
  bool kept_ = false;
};

bool IsSkill(const clsItem& item) {
  return item.ItemType == kSkills || item.ItemType == kSpells;
}

// What others may read of a trait; a difference is a change that has to reach them.
class Outcome {
 public:
  explicit Outcome(const clsItem& item) : level_(item.Level()), score_(item.Score()), points_(item.Points()) {
    if (item.ItemType == kEquipment) {
      first_ = item.FreeTag("cost");
      second_ = item.FreeTag("basecost");
      third_ = item.FreeTag("weight");
    } else if (IsSkill(item)) {
      first_ = item.FreeTag("combolevel");
    }
  }

  bool DiffersFrom(clsItem& item) const {
    switch (item.ItemType) {
      case kStats:
        return score_ != item.Score() || points_ != item.Points();
      case kEquipment: {
        std::string count(item.FreeTag("count"));
        bool counted = item.FreeTag("ocount") != count;
        if (counted) item.SetTagItem("ocount", count);
        return counted || item.FreeTag("cost") != first_ || item.FreeTag("basecost") != second_ ||
               item.FreeTag("weight") != third_;
      }
      default:
        return level_ != item.Level() || points_ != item.Points() ||
               (IsSkill(item) && item.Maneuver() == 2 && item.FreeTag("combolevel") != first_);
    }
  }

 private:
  std::int32_t level_;
  double score_;
  Currency points_;
  std::string first_, second_, third_;
};

// What the modifiers say of a trait's bonuses ("gives") and taboos: "", "gives", "taboo" or "yes" for both.
std::string_view MitigationByModifiers(const clsItem& item) {
  bool gives = false, taboo = false;
  for (const clsMod& mod : item.Mods) {
    std::string_view word = mod.Tags().Value("mitigator");
    if (word.empty()) continue;
    bool onlyGives = EqualNoCase(word, "gives"), onlyTaboo = EqualNoCase(word, "taboo");
    gives = gives || !onlyTaboo;
    taboo = taboo || !onlyGives;
  }
  if (gives) return taboo ? "yes" : "gives";
  return taboo ? "taboo" : "";
}

}  // namespace

bool clsItem::Calculate() {
  if (Owner == nullptr) return false;
  TraceScope trace("clsItem:Calculate");
  KVRCharacter::CalculationScope running(*Owner);
  RefreshPause pause(Owner->Env().events);
  ActivityLog& log = Owner->Env().log;
  bool done = LogFailure(log, [this] { CalcAll(); });
  if (!done) log.LogRed("'" + FullName() + "' could not be calculated and keeps its former values.");
  return done;
}

void clsItem::CalcAll() {
  Owner->NoteFormerState(*this);
  FormerNumbers former(*this);
  bool taboosMitigated = CalcMitigation();
  Outcome before(*this);
  // A trait that lacks what it needs doesn't count for those that need it.
  std::int16_t formerNeedsCheck = NeedsCheck();
  CalcByType();
  if (!IsSkill(*this)) SetBaseAppPoints(Points());
  bool changed = privCalcRaiseRuleOf();
  if (Owner->Env().Config.NoCalcSecondaryFeatures == 0 && privCalcWeaponTags()) changed = true;
  CheckNeedsAndTaboos(taboosMitigated);
  bool bonuses = UpdateMyBonuses();
  bool conditionals = UpdateMyConditionals();
  former.KeepNew();
  if (before.DiffersFrom(*this) || NeedsCheck() != formerNeedsCheck) changed = true;
  if (!changed && !bonuses && !conditionals) return;
  // The solver's old answers must be gone before anybody asks again.
  Owner->ClearTokensForItem(*this);
  Owner->PushRecalcItems(*this);
  Owner->SetRefreshList(ItemType);
}

// A `mitigated` tag that came with the trait's data stays; only one that a modifier brought goes with it.
bool clsItem::CalcMitigation() {
  std::string_view wanted = Mods.Empty() ? std::string_view() : MitigationByModifiers(*this);
  bool taboosMitigated = wanted == "taboo" || wanted == "yes";
  if (wanted.empty() ? !mitigatedByModifier_ : EqualNoCase(FreeTag("mitigated"), wanted)) {
    mitigatedByModifier_ = !wanted.empty();
    return taboosMitigated;
  }
  Owner->RemoveBonusesFromOwner(*this);
  Owner->RemoveConditionalsFromOwner(*this);
  mitigatedByModifier_ = !wanted.empty();
  if (wanted.empty()) {
    DeleteTag("mitigated");
  } else {
    SetTagItem("mitigated", wanted);
  }
  if (taboosMitigated) {
    DeleteTag("tabootext");
    SetTabooFailed(0);
  }
  Owner->AddBonusesFromOwner(*this);
  Owner->AddConditionalsFromOwner(*this);
  return taboosMitigated;
}

void clsItem::CalcByType() {
  switch (ItemType) {
    case kStats:
      privCalcStatItem();
      CalcModifiers();
      break;
    case kSkills:
    case kSpells:
      privCalcSkillItem();
      CalcModifiers();
      break;
    case kEquipment:
      privCalcEquipmentItem();
      break;
    case kPackages:
      privCalcPackageItem();
      break;
    default:
      privCalcAdItem();
  }
}

// Without asking and without a report: otherwise a recalculation would add traits.
void clsItem::CheckNeedsAndTaboos(bool taboosMitigated) {
  if (Owner->ItemNeedsCheck(*this, false, false)) Owner->SetRefreshList(ItemType);
  if (!taboosMitigated && Owner->ItemTabooCheck(*this, false)) Owner->SetRefreshList(ItemType);
}

void clsItem::CalcManeuver() {
  const clsSkillCosts* type = Owner->SkillType(SkillType().empty() ? "IQ/H" : SkillType());
  maneuver_ = 0;
  if (type == nullptr) return;
  std::string_view base = Trim(type->DefaultStat);
  if (EqualNoCase(base, "%default")) maneuver_ = 1;
  if (EqualNoCase(base, "%combo")) maneuver_ = 2;
  WriteTag(*this, "sd", std::to_string(maneuver_));
}

}  // namespace kvr
