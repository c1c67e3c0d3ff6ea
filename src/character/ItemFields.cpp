// How each kind of field of a trait is found by its tag, read, written, emptied and put into a list.
#include "character/ItemFields.h"

#include <algorithm>
#include <limits>

#include "core/Numbers.h"
#include "core/Text.h"

namespace kvr {
namespace {

using NumberForm = ItemFields::NumberForm;

template <class... F>
struct Overloaded : F... {
  using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

std::int16_t CIntClamped(double value) {
  constexpr std::int32_t kLow = std::numeric_limits<std::int16_t>::min(),
                         kHigh = std::numeric_limits<std::int16_t>::max();
  return static_cast<std::int16_t>(std::clamp(CLngClamped(value), kLow, kHigh));
}

std::string_view FlagText(std::int16_t flag) {
  return flag != 0 ? "-1" : "0";
}

template <class Number>
std::string Formatted(Number value, NumberForm form) {
  return form == NumberForm::Plain ? NumberText(value) : NumberTextKeepDecimal(value);
}

// The text of a stored field; "" for one that a whole list leaves out.
std::string ListText(const clsItem& item, const ItemField& field, NumberForm form) {
  return std::visit(
      Overloaded{[&](std::string clsItem::*text) { return item.*text; },
                 [&](Currency clsItem::*n) { return (item.*n).IsZero() ? "" : Formatted(item.*n, form); },
                 [&](std::int32_t clsItem::*n) { return item.*n == 0 ? "" : std::to_string(item.*n); },
                 [&](double clsItem::*n) { return item.*n == 0 ? "" : Formatted(item.*n, form); },
                 [&](std::int16_t clsItem::*flag) { return std::string(FlagText(item.*flag)); },
                 [&](const ItemField::NameSlot& name) { return item.*name.text; },
                 [](ItemField::Computed) { return std::string(); }},
      field.slot);
}

}  // namespace

std::string ItemFields::Read(const clsItem& item, const ItemField& field) {
  return std::visit(Overloaded{[&](std::string clsItem::*text) { return item.*text; },
                               [&](Currency clsItem::*n) { return NumberText(item.*n); },
                               [&](std::int32_t clsItem::*n) { return std::to_string(item.*n); },
                               [&](double clsItem::*n) { return NumberText(item.*n); },
                               [&](std::int16_t clsItem::*flag) { return std::string(FlagText(item.*flag)); },
                               [&](const ItemField::NameSlot& name) { return item.*name.text; },
                               [&](ItemField::Computed make) { return make(item); }},
                    field.slot);
}

void ItemFields::WriteStrictly(clsItem& item, const ItemField& field, std::string_view value) {
  std::visit(
      Overloaded{
          [&](std::string clsItem::*text) { item.*text = value; },
          [&](Currency clsItem::*n) { item.*n = value.empty() ? Currency() : Currency::FromText(value); },
          [&](std::int32_t clsItem::*n) { item.*n = value.empty() ? 0 : CLng(CDbl(value)); },
          // Four decimals, as everything that was ever points.
          [&](double clsItem::*n) { item.*n = value.empty() ? 0 : Currency::FromText(value).ToDouble(); },
          [&](std::int16_t clsItem::*flag) {
            item.*flag = value.empty() ? std::int16_t{0} : CInt(CDbl(value));
          },
          [&](const ItemField::NameSlot& name) { (item.*name.set)(value); }, [](ItemField::Computed) {}},
      field.slot);
}

void ItemFields::WriteTolerantly(clsItem& item, const ItemField& field, std::string_view value) {
  std::visit(Overloaded{[&](std::string clsItem::*text) { item.*text = value; },
                        [&](Currency clsItem::*n) { item.*n = Currency::FromVal(value); },
                        [&](std::int32_t clsItem::*n) { item.*n = CLngClamped(Val(value)); },
                        [&](double clsItem::*n) { item.*n = Val(value); },
                        [&](std::int16_t clsItem::*flag) { item.*flag = CIntClamped(Val(value)); },
                        [&](const ItemField::NameSlot& name) { (item.*name.set)(value); },
                        [](ItemField::Computed) {}},
             field.slot);
}

void ItemFields::Clear(clsItem& item, const ItemField& field) {
  if (!(field.rules & ItemField::kKeptOnDelete)) WriteStrictly(item, field, "");
}

void ItemFields::Copy(clsItem& item, const clsItem& from, const ItemField& field) {
  std::visit(Overloaded{[&](const ItemField::NameSlot& name) { (item.*name.set)(from.*name.text); },
                        [](ItemField::Computed) {}, [&](auto clsItem::*value) { item.*value = from.*value; }},
             field.slot);
}

void ItemFields::Append(std::string& list, const clsItem& item, const ItemField& field, NumberForm form) {
  std::string value = ListText(item, field, form);
  bool wanted = !value.empty() || (field.rules & ItemField::kAlwaysWritten);
  if (!wanted || std::holds_alternative<ItemField::Computed>(field.slot)) return;
  list.append(",").append(field.tag).append("(").append(value).append(")");
}

}  // namespace kvr
