// The tags of a trait that are kept in fields: one table, which reading, writing, deleting and both whole
// lists go by. A tag that is not in it stands in the free tag list.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "character/clsItem.h"
#include "core/Text.h"
#include "core/modTags.h"

namespace kvr {

struct ItemField {
  struct NameSlot {
    std::string clsItem::*text;
    void (clsItem::*set)(std::string_view);
  };
  // Made on reading, never stored.
  using Computed = std::string (*)(const clsItem&);
  using Slot = std::variant<std::string clsItem::*, Currency clsItem::*, std::int32_t clsItem::*,
                            double clsItem::*, std::int16_t clsItem::*, NameSlot, Computed>;
  enum Rules : unsigned {
    kPlain = 0,
    kKeptOnDelete = 1,   // DeleteTag leaves it as it is
    kAlwaysWritten = 2,  // in a whole list even when empty or zero
    kNotSaved = 4,       // the character file has another place for it, or none
  };

  std::string_view tag;
  Slot slot;
  unsigned rules = kPlain;
};

struct ItemFields {
  // nullptr for a tag without a field; any case of letters.
  static const ItemField* Find(std::string_view tag);
  // What tells the tags of this program apart: three letters in lower case, and the length. Not for an empty
  // tag.
  static constexpr std::uint32_t Letters(std::string_view tag);

  static std::string Read(const clsItem& item, const ItemField& field);
  // An empty text is zero; error 13 or 6 for a number that is none or does not fit.
  static void WriteStrictly(clsItem& item, const ItemField& field, std::string_view value);
  // The leading number of the text, zero without one; never fails.
  static void WriteTolerantly(clsItem& item, const ItemField& field, std::string_view value);
  static void Clear(clsItem& item, const ItemField& field);
  static void Copy(clsItem& item, const clsItem& from, const ItemField& field);

  enum class NumberForm { Plain, KeepDecimal };
  // Adds ",tag(value)", unless the field is empty or zero and not always written.
  static void Append(std::string& list, const clsItem& item, const ItemField& field, NumberForm form);

  // In the order in which a whole list is written.
  static constexpr std::array<ItemField, 29> kTable = {{
      {"type", &clsItem::type_},
      {"nameext", ItemField::NameSlot{&clsItem::nameExt_, &clsItem::SetNameExt}, ItemField::kKeptOnDelete},
      {"name", ItemField::NameSlot{&clsItem::name_, &clsItem::SetName},
       ItemField::kKeptOnDelete | ItemField::kAlwaysWritten},
      {"parentkey", &clsItem::parentKey_, ItemField::kKeptOnDelete | ItemField::kNotSaved},
      {"childkeylist", &clsItem::childKeyList_, ItemField::kKeptOnDelete | ItemField::kNotSaved},
      {"basepoints", &clsItem::basePoints_},
      {"points", &clsItem::points_},
      {"baselevel", &clsItem::baseLevel_},
      {"level", &clsItem::level_},
      {"score", &clsItem::score_},
      {"multpoints", &clsItem::multPoints_, ItemField::kKeptOnDelete},
      {"defpoints", &clsItem::defPoints_, ItemField::kKeptOnDelete},
      {"bonuspoints", &clsItem::bonusPoints_, ItemField::kKeptOnDelete},
      {"syspoints", &clsItem::sysPoints_, ItemField::kKeptOnDelete},
      {"extrapoints", &clsItem::extraPoints_, ItemField::kKeptOnDelete},
      {"apppoints", &clsItem::appPoints_, ItemField::kKeptOnDelete},
      {"baseapppoints", &clsItem::baseAppPoints_, ItemField::kNotSaved},
      {"premodspoints", &clsItem::preModsPoints_},
      {"needscheck", &clsItem::needsCheck_, ItemField::kAlwaysWritten},
      {"taboofailed", &clsItem::tabooFailed_, ItemField::kAlwaysWritten},
      {"adds", &clsItem::adds_},
      {"creates", &clsItem::creates_},
      {"description", &clsItem::description_},
      {"notes", &clsItem::notes_},
      {"itemtype",
       [](const clsItem& item) { return std::string(modPrefixes::CollectionName(item.ItemType)); }},
      {"fullname", [](const clsItem& item) { return item.FullName(); }},
      {"fullnametl", [](const clsItem& item) { return item.FullNameTL(); }},
      {"bonuslist", [](const clsItem& item) { return modTags::CreateListFromStringArray(item.BonusList); }},
      {"conditionallist",
       [](const clsItem& item) { return modTags::CreateListFromStringArray(item.ConditionalList); }},
  }};
};

constexpr std::uint32_t ItemFields::Letters(std::string_view tag) {
  auto letter = [&](std::size_t i) {
    return static_cast<std::uint32_t>(static_cast<unsigned char>(tag[i]) | 0x20);
  };
  return letter(0) | letter(tag.size() - 1) << 8 | letter(tag.size() / 2) << 16 |
         static_cast<std::uint32_t>(tag.size()) << 24;
}

// A hash without collisions over the table: the letters times a factor found by the compiler. Every read of a
// tag begins here, and most are of tags without a field, which the letters in the slot turn away at once.
class ItemFieldDispatch {
 public:
  consteval ItemFieldDispatch() {
    while (!FillWithoutCollision()) factor_ += 0x9E3779B2;
  }
  constexpr bool Has(std::uint32_t letters) const { return slots_[SlotOf(letters)].letters == letters; }
  // The only field that a tag of these letters can have; nullptr for none.
  constexpr const ItemField* Candidate(std::uint32_t letters) const {
    const Slot& slot = slots_[SlotOf(letters)];
    return slot.letters == letters ? &ItemFields::kTable[slot.field] : nullptr;
  }

 private:
  struct Slot {
    std::uint32_t letters = 0;
    std::uint32_t field = 0;
  };
  constexpr std::size_t SlotOf(std::uint32_t letters) const { return (letters * factor_) >> 26; }
  constexpr bool FillWithoutCollision() {
    slots_ = {};
    for (std::uint32_t i = 0; i < ItemFields::kTable.size(); ++i) {
      std::uint32_t letters = ItemFields::Letters(ItemFields::kTable[i].tag);
      Slot& slot = slots_[SlotOf(letters)];
      if (slot.letters != 0) return false;
      slot = {letters, i};
    }
    return true;
  }

  std::uint32_t factor_ = 1;
  std::array<Slot, 64> slots_{};
};
inline constexpr ItemFieldDispatch kItemFieldDispatch;

inline const ItemField* ItemFields::Find(std::string_view tag) {
  if (tag.empty()) return nullptr;
  const ItemField* field = kItemFieldDispatch.Candidate(Letters(tag));
  return field && EqualNoCase(field->tag, tag) ? field : nullptr;
}

}  // namespace kvr
