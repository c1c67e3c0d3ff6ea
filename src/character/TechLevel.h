// The tag `tl` of a trait or modifier: a tech level or a range of them, brought down to one when it is put on
// a character.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kvr {

// "3-5" is the character's own level within the range, else the nearer end; a range without its second end
// ("3-") ends where it begins. A text without "-" stays as it is.
std::string ReducedTL(std::string_view range, std::int16_t characterTL);

}  // namespace kvr
