// Modifiers: what a modifier is worth at its level, and how the modifiers of a trait change its cost.
#include "calc/LevelNames.h"
#include "character/clsItem.h"
#include "core/Numbers.h"

namespace kvr {

void clsItem::CalcModifiers() {
  if (ItemType != kEquipment) SetPoints(PreModsPoints());
}

void clsMod::Calculate() {
  CalcModifiers();
}

void clsMod::CalcModifiers() {}

void clsMod::Increment() {
  SetTagItem("level", NumberText(Val(Tags().Value("level")) + 1));
  Calculate();
}

void clsMod::Decrement() {
  SetTagItem("level", NumberText(Val(Tags().Value("level")) - 1));
  Calculate();
}

std::string_view clsMod::ValueType() const {
  std::string_view value = Tags().Value("value");
  if (value.empty()) return "++";
  char first = value.front();
  if (value.back() == '%') return first == '-' ? "%-" : "%+";
  if (first == '/' || first == 'x' || first == '*') return "**";
  return first == '-' ? "--" : "++";
}

namespace {
std::string NameOfModLevel(const clsMod& mod, std::string_view namesTag) {
  const TagText& tags = mod.Tags();
  return levelNames::NameOfLevel(tags.Value(namesTag), tags.Value("cost"),
                                 CLngClamped(Val(tags.Value("level"))));
}
}  // namespace

std::string clsMod::LevelName() {
  return NameOfModLevel(*this, "levelnames");
}

std::string clsMod::LevelCaption() {
  return NameOfModLevel(*this, "shortlevelnames");
}

}  // namespace kvr
