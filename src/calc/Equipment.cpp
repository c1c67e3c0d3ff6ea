// Equipment: the price and weight of one piece, of all the pieces there are of it, and of what they hold.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <unordered_set>

#include "calc/CalcSteps.h"
#include "calc/Explanation.h"
#include "calc/FormulaText.h"
#include "calc/modSolver.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/modNewParser.h"

namespace kvr {
namespace {

struct Amounts {
  Currency weight, cost;

  Amounts& operator+=(const Amounts& other) {
    weight += other.weight;
    cost += other.cost;
    return *this;
  }
};

// Tags whose sums take bonuses, in the order in which these are listed.
enum Adjusted { kBaseWeight, kBaseCost, kWeight, kCost, kChildrenWeights, kChildrenCosts };
constexpr std::array<std::string_view, 6> kAdjustedTags = {"baseweight", "basecost",        "weight",
                                                           "cost",       "childrenweights", "childrencosts"};

// What the bonuses on these tags change in the end.
constexpr std::array<std::string_view, 6> kChangedTags = {
    "baseweight,weight", "basecost,cost", "weight", "cost", "childrenweights,weight", "childrencosts,cost"};
constexpr std::string_view kWeightTags = "weight,baseweight,precountweight",
                           kCostTags = "cost,basecost,premodscost,precountcost";

enum Fault : std::uint8_t { kCountFault = 1, kWeightFault = 2, kCostFault = 4, kCircleFault = 8 };

Amounts AmountsOf(const clsItem& item) {
  return {Currency::FromVal(item.FreeTag("weight")), Currency::FromVal(item.FreeTag("cost"))};
}

bool HoldsSomething(const clsItem& item) {
  return !item.ChildKeyList().empty() || IsSet(item.FreeTag("owns"));
}

// Calls f(trait) for the pieces inside of another: its children, and the components that it owns.
template <class F>
void ForEachChild(const clsItem& item, F&& f) {
  if (Trim(item.ChildKeyList()).empty()) return;
  modNewParser::ForEachToken(item.ChildKeyList(), ',', modNewParser::kPlain, [&](std::string_view key) {
    if (clsItem* child = item.Owner->Items.Item(Trim(key))) f(*child);
  });
}

template <class F>
void ForEachOwned(const clsItem& item, F&& f) {
  if (!IsSet(item.FreeTag("owns"))) return;
  const std::string components(item.FreeTag("pkids"));
  if (components.empty()) return;
  modNewParser::ForEachToken(components, ',', modNewParser::kPlain, [&](std::string_view entry) {
    clsItem* component = item.Owner->ItemByKey(CLngClamped(Val(entry)));
    if (component != nullptr && IsSet(component->FreeTag("owned"))) f(*component);
  });
}

// Whether `wanted` is the piece itself or lies somewhere inside of it, which only a damaged file can bring.
bool Holds(clsItem& piece, const clsItem& wanted) {
  if (&piece == &wanted) return true;
  if (!HoldsSomething(piece)) return false;
  std::vector<clsItem*> waiting{&piece};
  std::unordered_set<const clsItem*> seen;
  while (!waiting.empty()) {
    const clsItem& holder = *waiting.back();
    waiting.pop_back();
    const auto look = [&](clsItem& inner) {
      if (seen.insert(&inner).second) waiting.push_back(&inner);
    };
    ForEachChild(holder, look);
    ForEachOwned(holder, look);
    if (seen.contains(&wanted)) return true;
  }
  return false;
}

// A text that solves to 0 because there is nothing in it to solve.
bool IsNoNumber(std::string_view text, const KVRCharacter& character) {
  if (text.empty() || IsNumeric(text) || formulaText::IsFormula(text)) return false;
  if (text.find_first_not_of("0123456789.+-*/\\^()=<>|& ") == npos) return false;
  return character.FindItem(text, kStats) == nullptr && character.FindItemBySymbol(text, kStats) == nullptr;
}

}  // namespace

// The steps of one calculation. All sums are fixed point.
class EquipmentSums {
 public:
  explicit EquipmentSums(clsItem& item) : item_(item) {}

  void Calculate() {
    ReadAdjustments();
    ReadCount();
    ReadBase();
    ApplyModifiers();
    Multiply();
    AddChildren();
    WriteTotals();
  }

 private:
  struct Adjustment {
    double multiplier = 1, adder = 0;
  };

  void ReadAdjustments() {
    if (item_.AppliedBonuses.empty()) return;
    for (std::size_t i = 0; i < kAdjustedTags.size(); ++i) {
      explain::Section section(item_, kChangedTags[i]);
      explain::Step step(item_, "bonuses on ", kAdjustedTags[i]);
      step.NeedsDetail();
      adjustments_[i].multiplier = item_.CalcApplicableTargetTagMult(kAdjustedTags[i]);
      adjustments_[i].adder = item_.CalcApplicableTargetTagBonus(kAdjustedTags[i]);
    }
  }

  void ReadCount() {
    explain::Section section(item_, "count");
    const std::string_view text = item_.FreeTag("count");
    explain::Note(item_, "quantity: ", text);
    const double wanted = Val(text);
    count_ = std::max(CLngClamped(wanted), 0);
    const std::int32_t most = CLngClamped(Val(item_.FreeTag("upto")));
    if (most != 0 && count_ > most) {
      count_ = most;
      explain::Note(item_, "limited to ", most, " by upto(", most, ")");
    }
    const bool isNone = wanted == 0 && IsNoNumber(text, *item_.Owner);
    Report(kCountFault, isNone || std::abs(wanted) > std::numeric_limits<std::int32_t>::max(), "count");
  }

  void ReadBase() {
    sums_.weight = Solved("baseweight", kWeightFault, kWeightTags);
    sums_.cost = Solved("basecost", kCostFault, kCostTags);
    Amounts owned;
    ForEachOwned(item_, [&](clsItem& component) { Take(component, owned, "pkids"); });
    sums_ += owned;
    sums_.weight = AdjustedSum(sums_.weight, kBaseWeight);
    sums_.cost = AdjustedSum(sums_.cost, kBaseCost);
    WriteTag(item_, "count", std::to_string(count_));
  }

  // They work on the price of one piece, and never on weight.
  void ApplyModifiers() {
    WriteTag(item_, "premodscost", NumberText(sums_.cost));
    if (item_.Mods.Empty()) return;
    WriteTag(item_, "cost", NumberText(sums_.cost));
    item_.CalcModifiers();
    sums_.cost = Currency::FromVal(item_.FreeTag("cost"));
  }

  void Multiply() {
    WriteTag(item_, "precountcost", NumberText(sums_.cost));
    WriteTag(item_, "precountweight", NumberText(sums_.weight));
    explain::Section section(item_, "cost,weight");
    if (count_ != 1) explain::Note(item_, "quantity: x", count_);
    sums_.cost = sums_.cost * count_;
    sums_.weight = sums_.weight * count_;
  }

  // Behind the multiplication: however many containers are counted, they hold their contents once.
  void AddChildren() {
    if (!Trim(item_.ChildKeyList()).empty()) {
      Amounts children;
      ForEachChild(item_, [&](clsItem& child) { Take(child, children, "childkeylist"); });
      children.cost = AdjustedSum(children.cost, kChildrenCosts);
      children.weight = AdjustedSum(children.weight, kChildrenWeights);
      WriteTag(item_, "childrencosts", NumberText(children.cost));
      WriteTag(item_, "childrenweights", NumberText(children.weight));
      sums_ += children;
    }
  }

  void WriteTotals() {
    WriteTag(item_, "cost", NumberText(AdjustedSum(sums_.cost, kCost)));
    WriteTag(item_, "weight", NumberText(AdjustedSum(sums_.weight, kWeight)));
    item_.reportedFaults_ = faults_;
  }

  // A piece that this one lies in adds nothing: the sums would grow with every calculation.
  void Take(clsItem& inner, Amounts& sum, std::string_view tag) {
    const bool isCircle = Holds(inner, item_);
    Report(kCircleFault, isCircle, tag);
    if (isCircle) return;
    const Amounts amounts = AmountsOf(inner);
    sum += amounts;
    const auto name = [&] { return inner.FullName(); };
    explain::Section section(item_, "cost,childrencosts");
    explain::Note(item_, "with ", name, ": ", amounts.cost);
    section.Now("weight,childrenweights");
    explain::Note(item_, "with ", name, ": ", amounts.weight);
  }

  Currency Solved(std::string_view tag, Fault fault, std::string_view explained) {
    explain::Section section(item_, explained);
    const std::string text(item_.FreeTag(tag));
    const double value = explain::SolvedStep(item_, "one piece", text);
    Report(fault, value == 0 && IsNoNumber(text, *item_.Owner), tag);
    return Held(value, fault, tag);
  }

  Currency AdjustedSum(Currency sum, Adjusted which) {
    const Adjustment& adjustment = adjustments_[which];
    const Fault fault =
        which == kBaseCost || which == kCost || which == kChildrenCosts ? kCostFault : kWeightFault;
    if (adjustment.adder != 0) sum += Held(adjustment.adder, fault, kAdjustedTags[which]);
    if (adjustment.multiplier != 1)
      sum = Held(sum.ToDouble() * adjustment.multiplier, fault, kAdjustedTags[which]);
    if (adjustment.adder == 0 && adjustment.multiplier == 1) return sum;
    explain::Section section(item_, kChangedTags[which]);
    explain::Note(item_, kAdjustedTags[which], " with its bonuses: ", sum);
    return sum;
  }

  // As fixed point, within what money and weight can hold.
  Currency Held(double value, Fault fault, std::string_view tag) {
    constexpr double kMost = 1e14;
    if (std::abs(value) <= kMost) return Currency::FromDouble(value);
    Report(fault, true, tag);
    return std::isnan(value) ? Currency() : Currency::FromDouble(std::copysign(kMost, value));
  }

  // Each fault is told once, as long as it lasts.
  void Report(Fault fault, bool isThere, std::string_view tag) {
    if (!isThere || (faults_ & fault) != 0) return;
    faults_ = static_cast<std::uint8_t>(faults_ | fault);
    if ((item_.reportedFaults_ & fault) != 0) return;
    item_.Owner->Env().log.LogRed("'" + item_.FullName() + "', " + std::string(tag) + ": " +
                                  Described(fault, tag));
  }

  std::string Described(Fault fault, std::string_view tag) const {
    if (fault == kCircleFault)
      return "what it holds also holds it; that adds nothing to its cost and weight.";
    const std::string text(item_.FreeTag(tag));
    if (fault == kCountFault)
      return "\"" + text + "\" is no quantity; " + std::to_string(count_) + " counts.";
    return "\"" + text + "\" is no number, or too large a one; it counts as far as it can be read.";
  }

  clsItem& item_;
  std::array<Adjustment, kAdjustedTags.size()> adjustments_;
  Amounts sums_;
  std::int32_t count_ = 0;
  std::uint8_t faults_ = 0;
};

void clsItem::privCalcEquipmentItem() {
  BonusList.clear();
  ConditionalList.clear();
  EquipmentSums(*this).Calculate();
  SumConditionals(*this);
}

}  // namespace kvr
