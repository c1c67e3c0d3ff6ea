// Between the source files of modNeeds: the walk over traits of one name, what may count, groups, and the
// tests that count.
#pragma once

#include <string_view>

#include "character/modNeeds.h"
#include "core/modTags.h"

namespace kvr::modNeeds {

inline constexpr int kDeepestGroup = 100;

// What stands in the parentheses of "(A | B)"; up to the end where they are not closed.
inline std::string_view GroupText(std::string_view entry) {
  entry.remove_prefix(1);
  return entry.substr(0, modTags::FindCloseParen(entry));
}
inline bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
// A test with a part that is still to be chosen: "#choice..." or "%name%", and no mere sign ("Ward #2").
inline bool IsOpen(std::string_view entry) {
  for (std::size_t at = entry.find_first_of("#%"); at != npos; at = entry.find_first_of("#%", at + 1)) {
    if (at + 1 == entry.size() || !IsLetter(entry[at + 1])) continue;
    if (entry[at] == '#' || entry.find('%', at + 2) != npos) return true;
  }
  return false;
}

// Whether the trait is another than the needer, and not set aside by a mitigation while a taboo is checked.
bool MayCount(const Check& check, const clsItem& candidate);
// A tag as a number with four decimals.
Currency NumberInTag(clsItem& item, std::string_view tag);

// Tests that count (NeedsCounting.cpp). False if the entry is none.
bool CheckSpecialCases(const Check& check, Finding& finding);

// Calls test(item) for the traits from a position on as long as they bear its name (and extension), until one
// passes.
template <class Test>
bool AnyFrom(KVRCharacter& character, std::size_t position, ItemType type, bool sameExtension, Test&& test) {
  if (position == 0) return false;
  const clsItem& first = character.Items.Item(position);
  for (; position <= character.Items.Count(); ++position) {
    clsItem& item = character.Items.Item(position);
    if (item.LCaseName() != first.LCaseName()) return false;
    if (sameExtension && item.LCaseNameExt() != first.LCaseNameExt()) return false;
    if ((type == kNoType || item.ItemType == type) && test(item)) return true;
  }
  return false;
}

}  // namespace kvr::modNeeds
