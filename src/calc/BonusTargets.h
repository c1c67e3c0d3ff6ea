// Which traits a bonus reaches.
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "character/KVRCharacter.h"

namespace kvr {

// A target that stands for many traits: "iqskillpoints" for the points of all skills whose type begins "iq/".
struct SpecialTarget {
  std::string_view name;      // lower case
  ItemType type;              // skills or spells
  std::string_view typeHead;  // the beginning of the skill type; "" for all
  std::string_view affects;   // "points" or "level"; "" where the rest of the sentence says it
};
// nullptr when the lower-cased name is none of them.
const SpecialTarget* FindSpecialTarget(std::string_view lowerName);

// "BYTAG:skills where cat includes magic", in any case, by its head.
bool IsTagQuestion(std::string_view target);

// The target of one record, taken apart once and compared with any number of traits. The record must outlive
// it and stay as it is.
class BonusTarget {
 public:
  explicit BonusTarget(const clsBonus& record);

  // The record applies to the trait. What a trait gives doesn't reach itself, unless it says "me".
  bool AppliesTo(clsItem& item) const;
  // The target names the trait, whoever gives the record.
  bool Names(clsItem& item) const;
  // The sentence asks for a tag and cannot be read; it reaches no trait.
  bool IsImproper() const { return improper_; }

 private:
  friend class TargetFinder;

  enum class By { Nothing, Name, Category, Group, Tag };
  enum class Test { Is, IsNot, Includes, Excludes, ListIncludes, ListExcludes };
  // One reference: a target has several when it is a list.
  struct Entry {
    By by = By::Nothing;
    ItemType type = kNoType;                 // of the traits to compare; 0 for all
    const SpecialTarget* special = nullptr;  // beside the name
    std::string name, ext;                   // for a category or group the name is all of it
    Test test = Test::Is;  // for a tag, whose name is `name` and whose wanted value is `ext`
  };

  void Read(std::string_view prefix, std::string_view name, std::string_view ext);
  void ReadList(std::string_view entries);
  Entry ReadTagQuestion(std::string_view question);
  static bool Matches(const Entry& entry, clsItem& item);
  static bool TagPasses(const Entry& entry, clsItem& item);

  const clsBonus& record_;
  std::vector<Entry> entries_;
  bool improper_ = false;
};

// Finds the traits that a target may reach without walking over all of them where it names one.
class TargetFinder {
 public:
  explicit TargetFinder(KVRCharacter& character) : character_(character) {}

  // Calls f(trait) at least once for every trait to which the target's record applies, and for some others.
  template <class F>
  void ForEachCandidate(const BonusTarget& target, F&& f) {
    const clsBonus& record = target.record_;
    if (record.TargetType < 0) return ForGivers(record, f);
    for (const BonusTarget::Entry& entry : target.entries_) {
      switch (entry.by) {
        case BonusTarget::By::Name:
          ForName(entry, f);
          if (entry.special != nullptr) ForType(entry.special->type, f);
          break;
        case BonusTarget::By::Category:
          ForKey(Categories(), entry.name, f);
          break;
        case BonusTarget::By::Group:
        case BonusTarget::By::Tag:
          ForType(entry.type, f);
          break;
        default:
          break;
      }
    }
  }

 private:
  // Traits by the hash of a text, sorted by it; among equals in their own order.
  using KeyedItems = std::vector<std::pair<std::uint64_t, clsItem*>>;

  template <class F>
  void ForType(ItemType type, F&& f) {
    if (type == kNoType) {
      for (clsItem& item : character_.Items) f(item);
    } else {
      for (clsItem& item : character_.ItemsByType[static_cast<std::size_t>(type)]) f(item);
    }
  }
  template <class F>
  void ForName(const BonusTarget::Entry& entry, F&& f) {
    if (entry.type == kNoType) return;
    const clsSortedItemList& list = character_.ItemsByType[static_cast<std::size_t>(entry.type)];
    std::size_t i = list.LowerBound([&](const clsItem& item) { return item.LCaseName() < entry.name; });
    for (; i <= list.Count() && list.Item(i).LCaseName() == entry.name; ++i) f(list.Item(i));
    if (entry.type == kStats) ForKey(Symbols(), entry.name, f);
  }
  template <class F>
  void ForKey(const KeyedItems& items, std::string_view key, F&& f) {
    const std::uint64_t hash = HashNoCase(key);
    auto place = std::ranges::lower_bound(items, hash, {}, &KeyedItems::value_type::first);
    for (; place != items.end() && place->first == hash; ++place) f(*place->second);
  }
  // For "me" and "owner": the trait at the root, and its parent.
  template <class F>
  void ForGivers(const clsBonus& record, F&& f) {
    clsItem* root = record.Owner == nullptr ? nullptr : record.Owner->RootOwnerItem();
    if (root == nullptr) return;
    f(*root);
    if (root->ParentKey().empty()) return;
    if (clsItem* parent = character_.ItemByKey(NumberOfKeyText(root->ParentKey()))) f(*parent);
  }

  // Collected when first asked for.
  const KeyedItems& Symbols();
  const KeyedItems& Categories();

  KVRCharacter& character_;
  std::optional<KeyedItems> symbols_, categories_;
};

}  // namespace kvr
