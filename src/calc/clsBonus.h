// A bonus or a conditional bonus: what one sentence of a `gives` tag says, for one trait or modifier.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "calc/CalcItem.h"
#include "library/modPrefixes.h"

namespace kvr {

// TargetType of the targets "owner" and "me".
inline constexpr std::int16_t kTargetOwner = -1, kTargetMe = -2;

class clsBonus {
 public:
  std::int32_t IDKey = 0;    // from the character's NewKeyTemp; never saved
  std::string StringValue;   // text of a text bonus
  std::string TargetPrefix;  // upper case
  std::string TargetName;    // lower case
  std::string TargetExt;     // lower case
  std::string TargetTag;     // lower case, without a trailing "$"
  std::string Bonus;         // amount, without the operator for types 2 to 4
  std::string Upto;          // limit of Value, solved
  double Value = 0;
  double ValueBeforeUpto = 0;
  std::string StringValueText;
  std::string ListAs;
  std::string Notes;            // the text after " when "
  std::string FullBonusText;    // the sentence as written
  CalcItem* Owner = nullptr;    // the trait or modifier; not owned
  std::int16_t TargetType = 0;  // item type; 0 none, -1 "owner", -2 "me"
  std::int16_t BonusType = 1;   // 1 add, 2 multiply, 3 set, 4 set multiplier
  std::string Affects;          // "level", "points", "other" or "otherstring"

  std::vector<std::int32_t> Targets;  // IDKeys of the traits it reaches

  bool Linked = false;  // its links have been made

  // Reads one sentence of a `gives` or `conditional` tag: "+1 to SK:Climbing upto 3 when outdoors". The Owner
  // must be set and be on a character. False, with a log line, when it is none (BonusText.cpp; the grammar is
  // in docs/formats/bonuses.md).
  bool CreateBonusFromText(std::string_view text);
  // Sets Affects, and takes the endings that say "points" off Bonus and TargetName.
  void SetBonusAffects();
  // Who gives it, for messages and lists: "Trait", or "Trait: Modifier".
  std::string GiverName() const;
  // Brings Value and StringValueText up to date. A formula that fails counts as 0, with a red line.
  void Calculate();

 private:
  bool failed_ = false;  // the last calculation did; it is logged once
};

}  // namespace kvr
