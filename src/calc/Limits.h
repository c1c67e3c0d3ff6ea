// Limits as traits write them: "upto(5)", "maxscore(ST:HT + 3 limitingtotal)".
#pragma once

#include <string_view>

#include "core/Text.h"

namespace kvr {

struct LimitText {
  std::string_view formula;
  // The word "limitingtotal" stands behind the formula: bonuses count towards the limit.
  bool limiting = false;
};

inline LimitText ReadLimit(std::string_view text) {
  std::size_t word = FindNoCase(text, "limitingtotal");
  return {Trim(text.substr(0, word)), word != npos};
}

}  // namespace kvr
