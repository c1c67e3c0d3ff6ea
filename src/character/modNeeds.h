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
//
// A formula that fails counts as 0. Groups nest to 100; a demand that can be met in more than 1000 ways keeps
// the first of them.
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

// A test taken apart; views into its text.
struct Entry {
  std::string_view left;          // the whole left side, as a formula would be read
  std::string_view prefix, name;  // of the trait that it may name
  std::string_view value;         // the right side without its tag; "" for none
  std::string_view tag;           // "" for none; `baseapppoints` for "pts"
  bool tagOnRight = false;
  Comparison comparison = Comparison::None;
};
Entry ReadEntry(std::string_view text);
bool HasExtension(std::string_view name);

// Fills in what a test leaves open: the value where it is kNoValue, the tag where it is "".
void GetNeededDefaults(const DataSetOptions& options, ItemType type, Currency& value, std::string_view& tag);

// Who asks, and how.
struct Check {
  clsItem& needer;
  bool taboo = false;       // mitigated traits count as absent
  bool planned = false;     // before the trait is added: a test with an open "%choice%" or "#" counts as met
  clsItem* also = nullptr;  // counting tests count it with those on the character

  KVRCharacter& Character() const { return *needer.Owner; }
};

// What a test was read as, and what was found on the character. The views hold as long as the entry's text
// and the options.
struct Finding {
  enum class Kind { Trait, Formula, Items, Group, Category, Categories };

  explicit Finding(std::string_view text) : entry(text), parts(ReadEntry(text)) {}

  std::string_view entry;
  Entry parts;
  Kind kind = Kind::Trait;
  Comparison comparison = Comparison::None;
  Currency value = kNoValue;  // kNoValue in a counting test: the default of each trait's type
  std::string_view tag;
  ItemType type = kNoType;
  bool anyType =
      false;  // of a bare name: each trait of that name is tested with the defaults of its own type
  bool met = false;

  // Of a trait: it is there; its own needs are met; its value (the highest, where there are several). Of a
  // formula: its value.
  bool present = false, ready = false;
  Currency have;

  // Of a counting test.
  std::int32_t wanted = 0, counted = 0;
  std::int32_t perCategory = 1;
  bool others = false, sameCategory = false;
  std::string_view group;  // or category
};
Finding Examine(const Check& check, std::string_view entry);
// "SK:Sword >= 1::points": the test with its defaults in it; a counting test as it is written.
std::string NormalForm(const Finding& finding);

// True if satisfied; else `outList` gets the complete sets of what is missing, any one of which would do.
bool NeedsCheckORItems(clsItem& item, std::string_view needsText, std::vector<std::string>& outList);
bool NeedsCheckANDItems(clsItem& item, std::string_view text, std::vector<std::string>& outList);
// The same without a list of what is missing, which is the faster.
bool NeedsAreMet(const Check& check, std::string_view needsText);
// One test; rewritten to its normal form, with the defaults in it, when it fails.
bool NeedChecksOkay(clsItem& item, std::string& entry);
// True if the trait may be had; else `found` holds what stands against it, ", " between.
bool TabooCheckItems(clsItem& item, std::string_view text, std::string& found);
bool ValidNeedsCheck(const clsItem& candidate, const clsItem& needer);
// The combinations "one, other" of two lists of alternatives; at most 1000.
std::vector<std::string> NeedsBigArray(const std::vector<std::string>& a, const std::vector<std::string>& b);

// Whether a demand may hold a test that counts traits ("3 spells", "GR:Blades").
bool CountsTraits(std::string_view text);
// The trait's `needs`, its text functions solved.
std::string NeedsText(clsItem& item);
// Whether the trait's own `mitigated` sets its taboos aside.
bool TaboosAreMitigated(const clsItem& item);

// --- In words (NeedsWords.cpp)
// What is asked for ("Strong Arm level 2", "3 spells of Fire") and what is there ("you have level 1").
std::string WantedWords(const Finding& finding);
std::string HaveWords(const Finding& finding);

// One test of a demand. Place: "1" for the first alternative, "1.2" for the second of a group in it.
// Reading: the test with its defaults in it ("SK:Sword >= 1::points"); a counting test in words.
struct Term {
  std::string place, entry, reading, found;
  bool met = false;
};
std::vector<Term> NeedsTerms(clsItem& item);
// Met: it is there, and so stands against the trait.
std::vector<Term> TabooTerms(clsItem& item);

// What keeps a library trait from being taken now, a reason a line: "needs Strong Arm level 2; you have level
// 1", "can't go together with Luck". Empty when nothing does.
std::vector<std::string> WhyNot(KVRCharacter& character, const clsSystemItem& record);
// Whether WhyNot would be empty, found without the words.
bool MayBeTaken(KVRCharacter& character, const clsSystemItem& record);

}  // namespace kvr::modNeeds
