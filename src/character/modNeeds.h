// Prerequisites: the grammar of `needs` and `taboo`, and whether a character meets them.
//
//   needs   = and-list { "|" and-list }           one and-list must be met
//   and-list = entry { "," entry }                all must be met
//   entry   = "(" needs ")" | test
//   test    = counting test | [prefix ":"] name ["::" tag] [operator value ["::" tag | "pts"]] | formula
//
// The needer is the trait whose demand is read: it never counts for itself, formulas are solved in its
// context, and its `ident` and `cat` are what some tests look at. It may be a trait that is not (yet) on the
// character, as long as its Owner is set.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "character/KVRCharacter.h"

namespace kvr::modNeeds {

enum class Comparison {
  AtLeast = 1,
  AtMost = 2,
  Unlike = 3,
  Equal = 4,
  MoreThan = 5,
  LessThan = 6,
  None = 7
};
std::string_view OperatorText(Comparison comparison);  // None reads ">="
bool Holds(Comparison comparison, Currency have, Currency value);

// The value that stands for "none stated".
inline constexpr Currency kNoValue = Currency(-9999);

// Parts of "left operator right" at depth 0, trimmed; None with an empty right side where there is no
// operator.
struct ComparisonParts {
  std::string_view left, right;
  Comparison comparison = Comparison::None;
};
ComparisonParts GetComparisonValues(std::string_view entry);

// True if satisfied; else `outList` gets the complete sets of what is missing, any one of which would do.
bool NeedsCheckORItems(clsItem& item, std::string_view needsText, std::vector<std::string>& outList);
bool NeedsCheckANDItems(clsItem& item, std::string_view text, std::vector<std::string>& outList);
// One test; rewritten to its normal form, with the defaults in it, when it fails.
bool NeedChecksOkay(clsItem& item, std::string& entry);
// True if the trait may be had; else `found` holds what stands against it, ", " between.
bool TabooCheckItems(clsItem& item, std::string_view text, std::string& found);
bool ValidNeedsCheck(const clsItem& candidate, const clsItem& needer);
// The combinations "one, other" of two lists of alternatives.
std::vector<std::string> NeedsBigArray(const std::vector<std::string>& a, const std::vector<std::string>& b);

}  // namespace kvr::modNeeds
