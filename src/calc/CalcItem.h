// Where a formula is read: a trait, a modifier, or the character itself.
#pragma once

#include <string>
#include <string_view>

namespace kvr {

class KVRCharacter;
class clsItem;
class clsMod;

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
  // For messages: the full name of the trait or modifier, or of the character.
  virtual std::string NameForMessages() = 0;
};

}  // namespace kvr
