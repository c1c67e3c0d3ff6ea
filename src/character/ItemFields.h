// The tags of a trait that are kept in fields: one table, which reading, writing, deleting and both whole
// lists go by. A tag that is not in it stands in the free tag list.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "character/clsItem.h"
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

  static std::string Read(const clsItem& item, const ItemField& field);
  // An empty text is zero; error 13 or 6 for a number that is none or does not fit.
  static void WriteStrictly(clsItem& item, const ItemField& field, std::string_view value);
  // The leading number of the text, zero without one; never fails.
  static void WriteTolerantly(clsItem& item, const ItemField& field, std::string_view value);
  static void Clear(clsItem& item, const ItemField& field);

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

}  // namespace kvr
