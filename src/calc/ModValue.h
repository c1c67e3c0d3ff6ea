// What a modifier is worth: its `cost` as a list of levels, and the values that come of it.
//
// The first character of a cost is its operator. "+" and "-" (and none) add: "+10%", "-2", "+1 CF"; "*" and
// "x" multiply, "/" divides. Levels are separated by "/"; a multiplying cost has further levels only where
// the piece begins with "*" or "x" again, since "/2" and "*2/3" hold a divisor.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "calc/CalcItem.h"

namespace kvr::modValue {

enum class Suffix { None, Percent, CostFactor };

// The texts are views into the cost.
struct CostList {
  bool multiplies = false;
  Suffix suffix = Suffix::None;           // of additive costs: that of the first or second piece
  std::vector<std::string_view> entries;  // level 1 first; never empty

  double Count() const { return static_cast<double>(entries.size()); }
  // The number of an entry, counted from 1: the leading number of a multiplying one, behind its operator.
  double Number(std::size_t entry) const;
  double LastDifference() const;  // with one entry, that entry
};
// An empty cost is "+0".
CostList ReadCost(std::string_view cost);

enum class Family { Add, Multiply, Divide };

// A value text as numbers. One that multiplies stands for number / divisor, one that divides for
// 1 / (number * divisor).
struct Value {
  Family family = Family::Add;
  Suffix suffix = Suffix::None;
  double number = 0;
  double divisor = 1;
  bool fault = false;  // a text where a number should stand, or a division by 0
};
// "" and a text without an operator add. What is no number in a multiplying value is solved as a formula in
// the context of the modifier.
Value ReadValue(std::string_view text, CalcItem& mod);
// "+10%", "-.5", "+2 CF", "*1.5", "/3".
std::string TextOf(const Value& value);

}  // namespace kvr::modValue
