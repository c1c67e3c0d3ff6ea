// A modifier on a trait or on another modifier.
#pragma once

#include "calc/CalcItem.h"
#include "library/ModRecord.h"
#include "library/SortedCollection.h"

namespace kvr {

class clsMod;
using clsSortedModCollection = SortedCollection<clsMod>;  // keyed by key text "k17"

class clsMod final : public ModRecord, public CalcItem {
 public:
  clsMod();
  ~clsMod() override;

  clsSortedModCollection Mods;  // modifiers on this modifier, to any depth
  CalcItem* Owner = nullptr;    // the clsItem or clsMod that carries it

  // --- Calculation (calc/Modifiers.cpp; the forms of costs and values: calc/ModValue.h) ---
  // Sets `level` (held within 0 and `upto`), `premodsvalue`, `value` and `valuenum`, on the modifiers that it
  // bears too.
  void Calculate();
  // Adjusts `value` and `valuenum` by the values of the modifiers that it bears.
  void CalcModifiers();
  // What can be wrong with a modifier; each is logged once, with the trait and the tag.
  enum class Fault : std::uint8_t { BadCost = 1, TooLarge = 2, TooDeep = 4 };
  void ReportFault(Fault fault);
  void Increment();
  void Decrement();
  // "%-", "%+", "**", "--" or "++", by the tag `value`.
  std::string_view ValueType() const;
  std::string LevelName();
  std::string LevelCaption();
  bool UpdateMyBonuses();
  bool UpdateMyConditionals();

  // --- Text (character/clsMod.cpp) ---
  std::string Caption(bool withValue);
  std::string CaptionExpanded(bool withValues);
  std::string FullNameExpanded(bool withValues);
  void TerminateMods();
  void Clear() override;

  // --- As the context of a formula ---
  std::string TagItem(std::string_view tag) override { return ModRecord::TagItem(tag); }
  double LevelForFormula() override;
  CalcItem* OwnerContext() override { return Owner; }
  KVRCharacter* RootOwnerChar() override;
  clsItem* RootOwnerItem() override;
  clsMod* ModByLCaseFullName(std::string_view lcaseFullName) override;
  GivenRecords* Given() override { return &given_; }
  std::string NameForMessages() override { return FullName(); }

 private:
  GivenRecords given_;
  std::uint8_t reportedFaults_ = 0;  // bits of Fault
};

// The first modifier with that lower-cased full name; nullptr when there is none.
clsMod* FindModByName(const clsSortedModCollection& mods, std::string_view lcaseFullName);

}  // namespace kvr
