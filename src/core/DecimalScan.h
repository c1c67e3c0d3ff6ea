// The one reader of decimal numbers: sign, digits with at most one point, exponent with E or D. Val, CDbl,
// IsNumeric and Currency differ only in what they accept around it.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kvr {

// Whether blanks, tabs and line ends before and inside the number are passed over.
enum class Gaps { None, Skipped };

struct DecimalScan {
  bool found = false;  // at least one digit
  bool negative = false;
  bool exact = true;           // all digits are in `mantissa` and the exponent fits
  std::uint64_t mantissa = 0;  // the digits without the point
  std::size_t decimals = 0;    // digits of the mantissa behind the point
  std::size_t dropped = 0;     // digits before the point that the mantissa has no room for
  int exponent = 0;
  std::size_t end = 0;  // position behind the number
};

// Reads the longest number at the front of the text.
DecimalScan ScanDecimal(std::string_view text, Gaps gaps);
// The nearest double of a number that was found at the front of this text; nullopt when it is too large for
// one.
std::optional<double> DecimalValue(const DecimalScan& number, std::string_view text);

}  // namespace kvr
