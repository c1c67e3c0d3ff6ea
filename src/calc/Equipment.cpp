// Equipment and templates: price, weight, level and points of a piece with its contents and components.
#include "character/clsItem.h"

namespace kvr {

void clsItem::privCalcEquipmentItem() {
  CalcModifiers();
}

void clsItem::privCalcPackageItem() {
  SetPreModsPoints(Points());
  CalcModifiers();
}

void clsItem::privCalcRaiseRuleOf() {}

}  // namespace kvr
