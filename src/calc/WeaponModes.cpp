// The texts that describe a weapon in this character's hands, one value for each of its modes.
#include "character/clsItem.h"

namespace kvr {

void clsItem::privCalcWeaponTags() {}

}  // namespace kvr
