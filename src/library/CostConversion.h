// Cost lists of data files below version 3 hold what each level adds; since then they hold totals.
#pragma once

#include <string_view>

#include "library/ModRecord.h"
#include "library/clsSystemItem.h"

namespace kvr {

// "1/1/2" becomes "1/2/4". A value without "/", or one that begins with "*" or "x", stays as it is.
void ChangeSystemCostsToVersion3(clsSystemItem& item, std::string_view tag);
// The same for a modifier: "+10%/+5%" becomes "+10%/+15%".
void ChangeCostsToVersion3ForMods(ModRecord& mod, std::string_view tag);

}  // namespace kvr
