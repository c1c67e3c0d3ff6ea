// Brings a range of tech levels down to the one that suits a character.
#include "character/TechLevel.h"

#include "core/Numbers.h"
#include "core/modNewParser.h"

namespace kvr {

std::string ReducedTL(std::string_view range, std::int16_t characterTL) {
  const auto parts = modNewParser::ParseSplitChars(range, "-", modNewParser::kPlain);
  const std::string_view low = parts[0];
  if (parts.size() == 1) return std::string(low);
  const std::string_view high = parts[1].empty() ? low : parts[1];
  if (Val(low) <= characterTL && Val(high) >= characterTL) return std::to_string(characterTL);
  return std::string(Val(low) >= characterTL ? low : high);
}

}  // namespace kvr
