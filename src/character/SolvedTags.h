// Tags that are formulas: a name ending in "$" is solved as text when it is read, one ending in "#" as a
// number.
#pragma once

#include <string>
#include <string_view>

#include "calc/CalcItem.h"

namespace kvr {

inline bool IsSolvedTag(std::string_view tag) {
  return !tag.empty() && ((tag.back() == '$') | (tag.back() == '#'));
}

// What the value of such a tag comes to in its context. A failure in it was logged by the solver and reads ""
// here: looking at a trait must never stop the program.
std::string SolvedTagValue(std::string_view tag, const std::string& value, CalcItem& context);

}  // namespace kvr
