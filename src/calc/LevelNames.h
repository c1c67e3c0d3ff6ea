// Words for levels: "levelnames([none, a], minor, major)" calls level 0 "none, a"'s first entry and so on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kvr::levelNames {

// The text for a level. `names` is a list "first, second" or "[zero], first, second"; a level past its end is
// the last entry with "+" and the excess. Without names it is the number, and "" for level 0 of a trait whose
// `cost` is no progression.
std::string NameOfLevel(std::string_view names, std::string_view cost, std::int32_t level);

}  // namespace kvr::levelNames
