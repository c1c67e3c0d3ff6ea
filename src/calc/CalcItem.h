// Where a formula is read: a trait, a modifier, or the character itself.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kvr {

class KVRCharacter;
class clsBonus;
class clsItem;
class clsMod;

// The records that a trait or modifier gives, in order of their keys. The character owns them.
struct GivenRecords {
  std::vector<clsBonus*> bonuses, conditionals;
};

class CalcItem {
 public:
  virtual ~CalcItem() = default;

  // The value of a tag in this context; "" when there is none.
  virtual std::string TagItem(std::string_view tag) = 0;
  // What "%level" stands for.
  virtual double LevelForFormula() = 0;
  // The context of "owner::"; nullptr at the top.
  virtual CalcItem* OwnerContext() = 0;
  // The character at the root; nullptr for a record that is on none.
  virtual KVRCharacter* RootOwnerChar() = 0;
  // The trait at the root of a modifier, the trait itself, nullptr for the character.
  virtual clsItem* RootOwnerItem() = 0;
  // The first modifier on this record with that lower-cased full name; nullptr if none.
  virtual clsMod* ModByLCaseFullName(std::string_view lcaseFullName) = 0;
  // nullptr for the character, which gives none.
  virtual GivenRecords* Given() { return nullptr; }
  // For messages: the full name of the trait or modifier, or of the character.
  virtual std::string NameForMessages() = 0;
};

}  // namespace kvr
