// Number text. Files, tags and formulas use these conversions and nothing else, so they never depend on a
// locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/Currency.h"

namespace kvr {

// The longest leading number of the text: sign, digits with at most one point, exponent with E or D. Blanks,
// tabs and line ends inside it are skipped. 0 when there is none or when it overflows; "&H" is not read.
double Val(std::string_view text);

// At most 15 significant digits, trailing zeros dropped; plain from 1E-4 up to below 1E+15, else "E" with
// sign and at least two digits. A value that is zero or positive gets a leading blank; below 1 there is no
// "0" before the point: " .5", "-.5", " 1E+15". An infinite or undefined value reads as zero.
std::string Str(double value);
// Appends Str without its leading blank.
void AppendStr(std::string& out, double value);

// The strict conversion: blanks around, sign, digits with at most one point, exponent. Error 13 otherwise, 6
// when the number is too large for a double.
double CDbl(std::string_view text);

// An optional sign, digits with at most one point, an exponent with E or D; nothing else, no blanks.
bool IsNumeric(std::string_view text);

// The value; error 6 when it is infinite or undefined.
double Finite(double value);
double RoundHalfEven(double value);
// The value that 15 significant digits show; decides "is whole" and floors of quotients.
double Round15(double value);
// Rounded half to even; error 6 outside 32 or 16 bits, or for no number.
std::int32_t CLng(double value);
std::int16_t CInt(double value);
// The same, held at the ends of the range instead of failing.
std::int32_t CLngClamped(double value);

// Pattern "####0.####": at most four decimals, rounded half away from zero on the shortest decimal text of
// the value, no trailing point, never "-0". An infinite or undefined value reads as zero.
std::string NumberText(double value);
std::string NumberText(Currency value);
// Pattern "####0.0###": at least one decimal.
std::string NumberTextKeepDecimal(double value);
std::string NumberTextKeepDecimal(Currency value);

// 1-based positions, 0 for "none".
// A digit passes; a non-digit at position 1 passes only if it is "+" or "-".
std::size_t LeadingNumberEnd(std::string_view text);
// First position at or after `start` (clamped into the text) whose character is no digit.
std::size_t FirstNonNumeric(std::string_view text, std::size_t start);

// Accepts m/d/yyyy, yyyy-mm-dd and English long dates ("November 24, 2026", with or without weekday);
// two-digit years 00-29 are 20xx, 30-99 are 19xx. A date is rewritten as "mm/dd/yyyy"; false when it is none
// or when its year lies outside 1800 to 2200 (the rewrite has then happened).
bool IsDateText(std::string& text);
// Today as "Tuesday, November 24, 2026" and as "11/24/2026".
std::string LongDateToday();
std::string ShortDateToday();

}  // namespace kvr
