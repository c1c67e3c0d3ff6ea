// What the children and the components of a trait cost.
#pragma once

#include "character/clsItem.h"
#include "core/Currency.h"

namespace kvr {

// How the children of a trait count.
enum class ChildProfile { Sum, AlternativeForms, Nothing };
ChildProfile ChildProfileOf(const clsItem& item);

// The points of the children in ChildKeyList. Of alternative forms the dearest counts in full, the earliest
// of equals; of each other a fifth, rounded up by its whole points.
Currency PointsOfChildren(const clsItem& item, ChildProfile profile);

// The points of the traits in `pkids` that this one owns; 0 unless `owns` is set.
Currency PointsOfOwned(const clsItem& item);

}  // namespace kvr
