// The entries of a template's tags, `adds(SK:Sword = 12 with Balanced, {AD:Luck #noneeds})`:
//
//   entry = [prefix ":"] name [operator value] ["with" mods] ["respond" answers] ["#donotown"] ["#noneeds"]
//
// The words and operators count only outside quotes, parentheses and braces. An entry with a comma of its own
// stands in braces.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "character/modNeeds.h"
#include "library/modPrefixes.h"

namespace kvr::templateEntries {

// Without the quotes or braces that enclose all of it; "{A} with {B}" stays.
std::string_view StripWhole(std::string_view text);

// The entries of a list, trimmed; none for an empty list.
std::vector<std::string_view> Split(std::string_view list);

// "SK:{Sword, Broad}": the prefix as written, without its colon ("" for none), and the bare name.
struct TraitReference {
  std::string prefix, name;
  ItemType type = kNoType;
};
TraitReference ReadReference(std::string_view text);
// The trait of that full name on the character; an attribute also by its symbol. nullptr for none.
clsItem* FindOn(const KVRCharacter& character, const TraitReference& reference);

struct Entry {
  std::string left;  // what stands before the operator
  modNeeds::Comparison comparison = modNeeds::Comparison::None;
  std::string value;  // "" for none
  std::string mods;
  std::vector<std::string> answers;  // for the questions of the trait, in their order
  bool ownIt = true, needIt = true;
};
Entry ReadEntry(std::string_view text);

// Both sides of a word at the top level, trimmed; `found` is false when it isn't there exactly once.
struct Sides {
  std::string_view left, right;
  bool found = false;
};
Sides SplitAtWord(std::string_view text, std::string_view word);

// A value that ends in "pts" is one of points: the number in front; "" for any other value.
std::string_view PointsOf(std::string_view value);

}  // namespace kvr::templateEntries
