// Modifiers in the calculation of a trait: each modifier is worth something at its level, the modifiers that
// it bears change that, and together they change the trait's points, or the price of a piece of equipment.
#include <cmath>
#include <functional>

#include "calc/CalcSteps.h"
#include "calc/Explanation.h"
#include "calc/LevelNames.h"
#include "calc/ModCalculation.h"
#include "calc/ModTiers.h"
#include "calc/ModValue.h"
#include "calc/modSolver.h"
#include "character/KVRCharacter.h"
#include "character/ModTree.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

// What points can hold, with room for what is added to them.
constexpr double kLargestTotal = 1e14;

bool IsTooLarge(double total) {
  return !(std::abs(total) <= kLargestTotal);
}

// Modifiers to the depth that counts, each behind the one that bears it.
struct ModsInOrder {
  std::vector<clsMod*> mods;
  std::size_t shallow = 0;  // the modifiers that these bear count as well
};

ModsInOrder InOrder(std::vector<clsMod*> outermost) {
  ModsInOrder all{std::move(outermost)};
  for (int depth = 1; depth < kDeepestMod && all.shallow < all.mods.size(); ++depth) {
    for (const std::size_t end = all.mods.size(); all.shallow < end; ++all.shallow) {
      for (clsMod& inner : all.mods[all.shallow]->Mods) all.mods.push_back(&inner);
    }
  }
  for (std::size_t i = all.shallow; i < all.mods.size(); ++i) {
    if (!all.mods[i]->Mods.Empty()) all.mods[i]->ReportFault(clsMod::Fault::TooDeep);
  }
  return all;
}

// Runs one step; false when it fails. A formula that fails has been logged by the solver, and doesn't keep
// the trait from being calculated.
bool Succeeds(ActivityLog& log, const std::function<void()>& step) {
  try {
    return LogFailure(log, step);
  } catch (const SolverFailure&) {
    return false;
  }
}

// A failed calculation may leave a text that a file brought.
void SupplyOperator(clsMod& mod) {
  const std::string_view value = mod.Tags().Value("value");
  if (value.empty() || std::string_view("*xX/+-").find(value.front()) == npos) {
    mod.SetTagItem("value", "+" + std::string(value));
  }
}

// Levels and values from the outer ones inwards, then what each bears from the inner ones outwards. A
// modifier that can't be calculated keeps the value that it had, in which what it bears counts already.
void CalcInOrder(std::vector<clsMod*> outermost, ActivityLog& log) {
  TraceScope trace("clsMod:Calculate");
  const ModsInOrder all = InOrder(std::move(outermost));
  std::vector<bool> failed(all.mods.size());
  for (std::size_t i = 0; i < all.mods.size(); ++i) {
    clsMod& mod = *all.mods[i];
    explain::Step step(
        mod, [&mod] { return mod.FullName(); }, " is worth");
    failed[i] = !Succeeds(log, [&mod] { modCalculation::CalcValue(mod); });
    SupplyOperator(mod);
    step.NeedsDetail().Is(mod.Tags().Value("value"));
  }
  for (std::size_t i = all.shallow; i-- > 0;) {
    if (!failed[i]) Succeeds(log, [mod = all.mods[i]] { mod->CalcModifiers(); });
  }
}

ModTierRules CommonRules(const KVRCharacter& character) {
  ModTierRules rules;
  rules.multiplyPercents = character.ModMultPercents != 0;
  rules.leastPercent = character.Env().Config.ModMaxNegPercentLimit;
  return rules;
}

// A value of which a file brought a formula that fails has no effect.
double TotalOf(const clsSortedModCollection& mods, double number, const ModTierRules& rules,
               KVRCharacter& character) {
  ActivityLog& log = character.Env().log;
  ModTiers tiers(number, character.Solving.record);
  for (clsMod& mod : mods) Succeeds(log, [&] { tiers.Add(mod); });
  return tiers.Total(rules);
}

std::string_view Described(clsMod::Fault fault) {
  switch (fault) {
    case clsMod::Fault::BadCost:
      return "cost: a number is missing or too large, or the cost divides by 0; it counts as 0.";
    case clsMod::Fault::TooLarge:
      return "value: the modifiers on it make it too large; they have no effect.";
    case clsMod::Fault::TooDeep:
      return "modifiers on modifiers go too deep; those on this one have no effect.";
  }
  return "";
}

}  // namespace

void clsItem::CalcModifiers() {
  if (Mods.Empty() || Owner == nullptr) return;
  TraceScope trace("clsItem:CalcModifiers");
  explain::Section section(*this, "points,cost");
  std::vector<clsMod*> mods;
  for (clsMod& mod : Mods) mods.push_back(&mod);
  CalcInOrder(std::move(mods), Owner->Env().log);
  const bool isPrice = ItemType == kEquipment;
  ModTierRules rules = CommonRules(*Owner);
  rules.rounding = isPrice ? ModTierRules::Rounding::Cents : ModTierRules::Rounding::Whole;
  rules.roundOnce = !FreeTagIsEmpty("roundlastonly");
  const double before =
      isPrice ? modSolver::Solver(FreeTag("premodscost"), *this) : PreModsPoints().ToDouble();
  explain::Note(*this, "before modifiers: ", before);
  double total = TotalOf(Mods, before, rules, *Owner);
  if (IsTooLarge(total)) {
    Owner->Env().log.LogRed("The modifiers of '" + FullName() + "' make its " +
                            (isPrice ? "cost" : "points") + " too large; they have no effect.");
    total = before;
  }
  if (isPrice) {
    std::string price;
    AppendStr(price, total);
    WriteTag(*this, "cost", price);
  } else {
    SetPoints(Currency::FromDouble(total));
  }
}

void clsMod::Calculate() {
  KVRCharacter* character = RootOwnerChar();
  if (character == nullptr) return;
  CalcInOrder({this}, character->Env().log);
}

void clsMod::CalcModifiers() {
  if (Mods.Empty()) return;
  clsItem* root = RootOwnerItem();
  if (root == nullptr || root->Owner == nullptr) return;
  explain::Step step(
      *this, [this] { return FullName(); }, " with the modifiers on it");
  ModTierRules rules = CommonRules(*root->Owner);
  if (EqualNoCase(root->FreeTag("roundmods"), "no")) rules.rounding = ModTierRules::Rounding::None;
  modValue::Value adjusted = modValue::ReadValue(Tags().Value("premodsvalue"), *this);
  const double before = adjusted.family == modValue::Family::Divide ? adjusted.number * adjusted.divisor
                                                                    : adjusted.number / adjusted.divisor;
  // A cost factor of 1 is 100 percent.
  const double unit = adjusted.suffix == modValue::Suffix::CostFactor ? 100 : 1;
  adjusted.number = TotalOf(Mods, before * unit, rules, *root->Owner) / unit;
  adjusted.divisor = 1;
  if (IsTooLarge(adjusted.number)) return ReportFault(Fault::TooLarge);
  std::string text = modValue::TextOf(adjusted);
  // "x2" stays an "x".
  const std::string_view former = Trim(Tags().Value("premodsvalue"));
  if (adjusted.family == modValue::Family::Multiply && !former.empty() && (former[0] | 0x20) == 'x')
    text[0] = former[0];
  modCalculation::WriteTag(*this, "value", step.Is(text));
  std::string number;
  AppendStr(number, adjusted.number);
  modCalculation::WriteTag(*this, "valuenum", number);
}

void clsMod::ReportFault(Fault fault) {
  const auto bit = static_cast<std::uint8_t>(fault);
  const clsItem* root = RootOwnerItem();
  if ((reportedFaults_ & bit) != 0 || root == nullptr || root->Owner == nullptr) return;
  reportedFaults_ = static_cast<std::uint8_t>(reportedFaults_ | bit);
  root->Owner->Env().log.LogRed("Modifier '" + FullName() + "' of '" + root->FullName() + "', " +
                                std::string(Described(fault)));
}

void clsMod::Increment() {
  SetTagItem("level", NumberText(Val(Tags().Value("level")) + 1));
  Calculate();
}

void clsMod::Decrement() {
  SetTagItem("level", NumberText(Val(Tags().Value("level")) - 1));
  Calculate();
}

std::string_view clsMod::ValueType() const {
  std::string_view value = Tags().Value("value");
  if (value.empty()) return "++";
  char first = value.front();
  if (value.back() == '%') return first == '-' ? "%-" : "%+";
  if (first == '/' || first == 'x' || first == 'X' || first == '*') return "**";
  return first == '-' ? "--" : "++";
}

namespace {
std::string NameOfModLevel(const clsMod& mod, std::string_view namesTag) {
  const TagText& tags = mod.Tags();
  return levelNames::NameOfLevel(tags.Value(namesTag), tags.Value("cost"),
                                 CLngClamped(Val(tags.Value("level"))));
}
}  // namespace

std::string clsMod::LevelName() {
  return NameOfModLevel(*this, "levelnames");
}

std::string clsMod::LevelCaption() {
  return NameOfModLevel(*this, "shortlevelnames");
}

}  // namespace kvr
