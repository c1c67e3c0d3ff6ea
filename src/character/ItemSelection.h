// A running selection of traits for a template: what is offered, what was taken, and whether that is enough.
// A window and a script work on it alike, through ItemPicks.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "character/TemplateEntries.h"
#include "core/EnginePrompts.h"

namespace kvr {

// How many or how much is wanted: "exactly 2", "2", "atleast 1", "upto 4", "atleast 1, upto 4". A range may
// be written from either end. A negative amount counts what disadvantages give back.
struct SelectLimits {
  bool given = false, negative = false, hasMost = false;
  Currency least, most;  // without sign

  static SelectLimits Read(std::string_view text);
  bool Fits(Currency value) const { return value >= least && (!hasMost || value <= most); }
};

// The tag "select1" taken apart.
struct SelectText {
  explicit SelectText(std::string_view text);

  std::string text, tagWith, list;
  bool multiType = false;
  SelectLimits points, number;  // exactly one trait where neither was given
};

class ItemSelection : public ItemPicks {
 public:
  ItemSelection(KVRCharacter& character, clsItem& bringer, const SelectText& wanted);

  // Adds one entry of the list.
  void Offer(std::string_view entry);
  bool CanBeMet() const;
  SelectItemsRequest Request(int index, int count);

  bool Pick(std::size_t position) override;
  bool Unpick(std::size_t position) override;
  long CurCount() const override;
  Currency CurCost() const override;
  bool OkayAllowed() const override;

  // The end: what was taken stays, or all goes back.
  void Accept();
  void Undo();
  std::vector<std::int32_t> Added() const { return Taken(false); }
  std::vector<std::int32_t> Existing() const { return Taken(true); }

 private:
  struct Offered {
    ItemType type = kNoType;
    std::string fullName;
    std::string sysKey;   // "" for a trait that the library lacks
    std::string tagList;  // of the trait to be made
    bool mayExist = false;
    std::int32_t id = 0;  // once taken
    bool existed = false;
    // When it was taken: its value, and its points where it is bought in points.
    double floor = 0;
    Currency points;
  };
  // "upto 4" or "downto 2%points": by level unless it says points.
  struct Control {
    bool given = false, byPoints = false;
    double value = 0;
  };

  void OfferEntry(std::string_view entry, std::string_view codes);
  Offered BaseOf(const templateEntries::TraitReference& wanted, std::string_view entry) const;
  void AddOffered(Offered offered, std::string_view codes);
  SelectItemsRequest Goal() const;
  Currency EstimatedCost(const Offered& offered) const;
  bool TakeExisting(Offered& offered);
  bool TakeNew(Offered& offered);
  void GiveBack(Offered& offered);
  static void NoteStart(Offered& offered, const clsItem& item);
  void RestoreExisting(const Offered& offered, clsItem& item);
  bool Step(Offered& offered, int direction);
  static Control ControlOf(const clsItem& item, std::string_view tag);
  void AcceptNew(clsItem& item);
  static void DropMarks(clsItem& item);
  clsItem* ItemOf(const Offered& offered) const;
  std::vector<std::int32_t> Taken(bool existed) const;

  KVRCharacter& character_;
  clsItem& bringer_;
  const SelectText& wanted_;
  std::vector<Offered> offered_;  // sorted by full name
};

}  // namespace kvr
