// Between the source files of Lint: the checks of one record's tags.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "library/KVRSystem.h"

namespace kvr::Lint {

// What the loaded files define, and what their traits create.
class KnownNames {
 public:
  explicit KnownNames(const KVRSystem& system);

  // By the whole name; type 0 asks for any.
  bool HasTrait(ItemType type, std::string_view fullName) const;
  // By the name, whatever the extension.
  bool HasAnyOf(ItemType type, std::string_view name) const;
  // An attribute by its name or symbol.
  bool HasStat(std::string_view name) const;
  bool HasCategory(std::string_view nameOrCode) const { return Holds(categories_, nameOrCode); }
  bool HasGroup(std::string_view name) const { return Holds(groups_, name); }
  bool HasSkillType(std::string_view name) const { return system_.SkillType(name) != nullptr; }
  // An empty group asks for any.
  bool HasMod(std::string_view group, std::string_view fullName) const;

 private:
  using Names = std::unordered_set<std::string>;  // lower-cased
  static bool Holds(const Names& names, std::string_view name);
  void AddItem(const clsSystemItem& item);
  void AddCreated(std::string_view text);

  const KVRSystem& system_;
  Names traits_;  // type and full name, of traits that others create
  Names anyOf_;   // type and name, of those and of traits whose extension is chosen when they are added
  Names chosen_;  // the latter alone: any extension may come of them
  Names symbols_, categories_, groups_, mods_;
};

// Which traits bring which through `adds` and `creates`.
class Circles {
 public:
  explicit Circles(const KVRSystem& system);

  // The shortest way from a trait back to itself, "TE:A > TE:B > TE:A"; "" when there is none. Not looked for
  // any more when the search has become endless work over damaged data.
  std::string WayBack(const clsSystemItem& start);

 private:
  using Brought = std::vector<const clsSystemItem*>;

  void AddBrought(std::string_view adds, std::string_view creates, Brought& brought, int depth = 0) const;
  void DropEnds();

  const KVRSystem& system_;
  // Of the traits from which a circle may be reached.
  std::unordered_map<const clsSystemItem*, Brought> brought_;
  std::size_t steps_ = 0;
};

// Takes what is wrong and the text that was found.
using Complain = std::function<void(std::string_view what, std::string_view found)>;

// One tag of one record on its way through a check.
struct Check {
  const KnownNames& names;
  const Complain& complain;
  std::string_view tag;
  int depth = 0;  // of traits made within traits

  void Tell(std::string_view what, std::string_view found) const {
    complain(std::string(what) + " in " + std::string(tag), found);
  }
};

// Traits within traits and groups within groups are looked into so deep.
inline constexpr int kDeepest = 100;

// All tags of a record; `type` is 0 for a modifier.
void CheckTags(ItemType type, std::string_view tagString, const KnownNames& names, const Complain& complain,
               int depth = 0);

void CheckFormula(const Check& check, std::string_view formula);
void CheckNeeds(const Check& check, std::string_view needs);
void CheckBonuses(const Check& check, std::string_view sentences);
void CheckAdds(const Check& check, std::string_view entries);
void CheckCreates(const Check& check, std::string_view entries);
void CheckSelect(const Check& check, std::string_view text);

// True for a text that only adding the trait completes: it holds a directive or a variable ("%choice%").
bool IsUnsettled(std::string_view text);

// One entry of `adds`, `creates` or `sets`.
struct EffectEntry {
  ItemType type = kNoType;
  std::string name;  // behind the prefix; for `creates` the item line
  std::string with;  // the modifiers
};
EffectEntry ReadEffectEntry(std::string_view text);
// The tag string of a trait that `creates` makes.
std::string TagsOfCreated(const EffectEntry& entry);

}  // namespace kvr::Lint
