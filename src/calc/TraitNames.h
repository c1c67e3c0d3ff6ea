// By which texts a trait is known to the formulas of others, and where these stand in a text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "calc/TextAutomaton.h"
#include "character/clsItem.h"

namespace kvr {

// The lower-cased texts that stand for a trait: its name, for a stat its symbol; and "damage(" for the stats
// "Damage Base" and "Striking ST", which every damage formula reads. None is empty.
class TraitNames {
 public:
  explicit TraitNames(const clsItem& item);

  // Whether one of them stands in the lower-cased text.
  bool AppearIn(std::string_view lowerText) const;
  template <class F>
  void ForEach(F&& f) const {
    for (std::string_view text : {std::string_view(symbol_), name_, std::string_view(fullName_), damage_}) {
      if (!text.empty()) f(text);
    }
  }

 private:
  std::string symbol_, fullName_;
  std::string_view name_, damage_;
};

// Whether a match of a name at `begin` refers to the trait. It does, but for "st" and "ht": these are letters
// of many words ("cost"), a prefix of references ("st:dx") and the end of other names ("striking st").
bool IsReference(std::string_view lowerText, std::size_t begin, std::string_view name);
// Whether the name stands in the text as a reference.
bool NameAppears(std::string_view lowerText, std::string_view name);

// The names of many traits, looked for in one walk over a text.
class TraitNameIndex {
 public:
  explicit TraitNameIndex(const clsSortedItemCollection& items);

  // Calls found(item) once for each trait that a text between two calls of NextTarget names. With statsOnly
  // the other traits are passed over.
  template <class Found>
  void Search(std::string_view lowerText, bool statsOnly, Found&& found) {
    automaton_.Search(lowerText, [&](std::uint32_t pattern, std::size_t end) {
      const Pattern& name = patterns_[pattern];
      if (!IsReference(lowerText, end - name.text.size(), name.text)) return;
      for (std::uint32_t trait : name.traits) {
        if (seen_[trait] == target_ || (statsOnly && items_[trait]->ItemType != kStats)) continue;
        seen_[trait] = target_;
        found(*items_[trait]);
      }
    });
  }
  void NextTarget() { ++target_; }

 private:
  struct Pattern {
    std::string text;
    std::vector<std::uint32_t> traits;  // indexes in items_
  };
  static std::vector<Pattern> PatternsOf(const std::vector<clsItem*>& items);
  static std::vector<std::string_view> TextsOf(const std::vector<Pattern>& patterns);

  std::vector<clsItem*> items_;
  std::vector<Pattern> patterns_;  // sorted
  TextAutomaton automaton_;
  std::vector<std::uint32_t> seen_;  // the last target that named the trait
  std::uint32_t target_ = 1;
};

}  // namespace kvr
