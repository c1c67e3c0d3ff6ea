// The small records of the library. A character keeps copies of most of them.
#pragma once

#include <compare>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/Text.h"
#include "library/SortedCollection.h"
#include "library/modPrefixes.h"

namespace kvr {

// Yes/no words of skill types and body parts: true when not empty, not "0", "no" or "false" in any case.
bool IsTrueWord(std::string_view value);

struct clsCategory {
  std::string Name;
  std::string Code;
  kvr::ItemType ItemType = kNoType;
};

// A member of a group (a reference to a trait) or of a list (any text in Name).
struct clsRefItem {
  std::string Group;
  std::string Name;
  std::string NameExt;
  kvr::ItemType ItemType = kNoType;

  std::string FullName() const { return modPrefixes::JoinNameAndExt(Name, NameExt); }
};

// A package of the old form: kept, used by nothing yet.
struct clsPackage {
  std::int32_t IDKey = 0;
  std::string Name, Comment, Group;
  std::vector<std::string> Lines;
};

// A row of basic damage: dice text for thrust and swing up to the score ST; may hold "st:" references.
struct clsBasicDamage {
  std::int32_t ST = 0;
  std::string THBase, THAdd, SWBase, SWAdd;
};

// Adds at or above Break become AddDice more dice, less Subtract adds.
struct clsDamageBreak {
  std::int32_t Break = 0, AddDice = 0, Subtract = 0;
};

struct clsBodyItem {
  std::string Name, Cat, BaseDB, BaseDR, BaseHP, DB, DR, HP, Group;
  bool Display = false;
  std::int32_t PosX = 0, PosY = 0;
  bool Expanded = false;
  bool Freeze = false;  // on a character: the values stand, nothing recalculates them
};

// Lower-cased text in a sorted collection.
struct SortedString {
  std::string Text;
};

// Sorted by name and type; by name, extension, type and group; by name; by text - all lower-cased.
std::weak_ordering SortOrder(const clsCategory& a, const clsCategory& b);
std::weak_ordering SortOrder(const clsRefItem& a, const clsRefItem& b);
std::weak_ordering SortOrder(const clsPackage& a, const clsPackage& b);
std::weak_ordering SortOrder(const SortedString& a, const SortedString& b);

using clsSortedPackageCollection = SortedCollection<clsPackage>;
using clsSortedStringCollection = SortedCollection<SortedString>;

class clsSortedCatCollection : public SortedCollection<clsCategory> {
 public:
  static std::string KeyOf(const clsCategory& cat);  // type + name
  std::size_t TypeCount(ItemType type) const;
};

class clsSortedRefCollection : public SortedCollection<clsRefItem> {
 public:
  static std::string GroupKeyOf(const clsRefItem& item);  // group + type + name + extension
  static std::string ListKeyOf(const clsRefItem& item);   // list + name
  // 1-based positions, 0 if none; names in any case.
  std::size_t ItemPosition(std::string_view group, std::string_view name, std::string_view ext,
                           ItemType type) const;
  std::size_t ItemPositionNoExt(std::string_view group, std::string_view name, ItemType type) const;
};

}  // namespace kvr
