// Numbers to text and back, and the roundings between them. Nothing here looks at a locale.
#include "core/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "core/DecimalScan.h"
#include "core/KVRError.h"
#include "core/Text.h"

namespace kvr {
namespace {

constexpr double kPlainEnd = 1e15;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsPlainWhole(double value) {
  return std::abs(value) < kPlainEnd && value == std::trunc(value);
}

void AppendWhole(std::string& out, std::int64_t value) {
  char buffer[24];
  out.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

// A finite value other than 0 as d.ddd * 10^exponent, without trailing zeros.
struct Decimal {
  bool negative = false;
  char digits[20] = {};
  int count = 0;
  int exponent = 0;
};

Decimal ReadScientific(const char* p, const char* end) {
  Decimal decimal;
  if (*p == '-') {
    decimal.negative = true;
    ++p;
  }
  for (; *p != 'e'; ++p)
    if (*p != '.') decimal.digits[decimal.count++] = *p;
  ++p;
  std::from_chars(*p == '+' ? p + 1 : p, end, decimal.exponent);
  while (decimal.count > 1 && decimal.digits[decimal.count - 1] == '0') --decimal.count;
  return decimal;
}

// The decimal of a value below 1E9 with at most four decimals, which is what data holds. It has so few digits
// that no other decimal of 15 digits is the same double. The count is 0 for any other value.
Decimal FewDecimals(double value) {
  Decimal decimal;
  double scale = 10;
  for (int decimals = 1; decimals <= 4 && std::abs(value) < 1e9; ++decimals, scale *= 10) {
    const double units = std::nearbyint(value * scale);
    if (units == 0 || units / scale != value) continue;
    char* const end = std::to_chars(decimal.digits, decimal.digits + sizeof decimal.digits,
                                    static_cast<std::int64_t>(std::abs(units)))
                          .ptr;
    decimal.negative = value < 0;
    decimal.count = static_cast<int>(end - decimal.digits);
    decimal.exponent = decimal.count - 1 - decimals;
    break;
  }
  return decimal;
}

Decimal ShortestDecimal(double value) {
  const Decimal few = FewDecimals(value);
  if (few.count > 0) return few;
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific);
  return ReadScientific(buffer, result.ptr);
}

// The shortest decimal where it has at most 15 digits: any normal value has no nearer one of 15 digits then.
Decimal FifteenDigits(double value) {
  const Decimal shortest = ShortestDecimal(value);
  if (shortest.count <= 15) return shortest;
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific, 14);
  return ReadScientific(buffer, result.ptr);
}

void AppendPlain(std::string& out, const Decimal& decimal) {
  const int whole = decimal.exponent + 1;
  if (whole <= 0) {
    out += '.';
    out.append(static_cast<std::size_t>(-whole), '0');
    out.append(decimal.digits, static_cast<std::size_t>(decimal.count));
  } else if (decimal.count <= whole) {
    out.append(decimal.digits, static_cast<std::size_t>(decimal.count));
    out.append(static_cast<std::size_t>(whole - decimal.count), '0');
  } else {
    out.append(decimal.digits, static_cast<std::size_t>(whole));
    out += '.';
    out.append(decimal.digits + whole, static_cast<std::size_t>(decimal.count - whole));
  }
}

void AppendWithExponent(std::string& out, const Decimal& decimal) {
  out += decimal.digits[0];
  if (decimal.count > 1) {
    out += '.';
    out.append(decimal.digits + 1, static_cast<std::size_t>(decimal.count - 1));
  }
  out += decimal.exponent < 0 ? "E-" : "E+";
  const int size = std::abs(decimal.exponent);
  if (size < 10) out += '0';
  AppendWhole(out, size);
}

// Cuts to four decimals, half away from zero. False when nothing is left.
bool RoundToFourDecimals(Decimal& decimal) {
  const int keep = decimal.exponent + 5;
  if (keep < 0 || (keep == 0 && decimal.digits[0] < '5')) return false;
  if (decimal.count <= keep) return true;
  bool carry = decimal.digits[keep] >= '5';
  decimal.count = keep;
  while (carry && decimal.count > 0) {
    char& last = decimal.digits[decimal.count - 1];
    carry = last == '9';
    if (carry)
      --decimal.count;
    else
      ++last;
  }
  if (carry) {
    decimal.digits[0] = '1';
    decimal.count = 1;
    ++decimal.exponent;
  }
  while (decimal.count > 0 && decimal.digits[decimal.count - 1] == '0') --decimal.count;
  return decimal.count > 0;
}

// "####0.####" and, with `keepDecimal`, "####0.0###".
std::string FormatNumber(double value, bool keepDecimal) {
  std::string text;
  if (IsPlainWhole(value)) {
    AppendWhole(text, static_cast<std::int64_t>(value));
  } else {
    Decimal decimal;
    if (std::isfinite(value)) decimal = ShortestDecimal(value);
    if (decimal.count > 0 && RoundToFourDecimals(decimal)) {
      if (decimal.negative) text += '-';
      if (decimal.exponent < 0) text += '0';
      AppendPlain(text, decimal);
    } else {
      text += '0';
    }
  }
  if (keepDecimal && text.find('.') == npos) text += ".0";
  return text;
}

std::string FormatCurrency(Currency value, bool keepDecimal) {
  const std::int64_t units = value.Units();
  const std::uint64_t size =
      units < 0 ? 0 - static_cast<std::uint64_t>(units) : static_cast<std::uint64_t>(units);
  std::string text;
  if (units < 0) text += '-';
  AppendWhole(text, static_cast<std::int64_t>(size / 10000));
  const auto decimals = static_cast<unsigned>(size % 10000);
  if (decimals != 0) {
    const char digits[] = {
        static_cast<char>('0' + decimals / 1000), static_cast<char>('0' + decimals / 100 % 10),
        static_cast<char>('0' + decimals / 10 % 10), static_cast<char>('0' + decimals % 10)};
    text += '.';
    text.append(digits, sizeof digits);
    while (text.back() == '0') text.pop_back();
  } else if (keepDecimal) {
    text += ".0";
  }
  return text;
}

template <class Whole>
Whole RoundedInto(double value) {
  const double rounded = RoundHalfEven(value);
  if (!(rounded >= std::numeric_limits<Whole>::min() && rounded <= std::numeric_limits<Whole>::max()))
    throw KVRError(ErrorNumber::Overflow);
  return static_cast<Whole>(rounded);
}

// Rounding to 15 digits without making the text. The value is scaled to a whole number of 15 digits; the
// rounding error of that product is known exactly, so only a tie is left to the text. Whole number and power
// of ten are exact doubles, so their quotient is the nearest double, as reading the text would give it.
std::optional<double> RoundScaledTo15(double value) {
  static constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                                       1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};
  const double size = std::abs(value);
  if (!(size >= 1e-4 && size < kPlainEnd)) return std::nullopt;
  // 15 minus the digits before the point, plus the zeros behind it.
  std::size_t scale = size >= 1 ? 14u : 15u + (size < 0.1) + (size < 0.01) + (size < 0.001);
  while (size >= 1 && size >= kPowers[15 - scale]) --scale;
  const double product = size * kPowers[scale];
  const double whole = std::floor(product);
  const double fraction = (product - whole) + std::fma(size, kPowers[scale], -product);
  if (fraction == 0.5) return std::nullopt;
  return std::copysign((fraction < 0.5 ? whole : whole + 1) / kPowers[scale], value);
}

}  // namespace

double Val(std::string_view text) {
  const DecimalScan number = ScanDecimal(text, Gaps::Skipped);
  return number.found ? DecimalValue(number, text).value_or(0.0) : 0.0;
}

std::string Str(double value) {
  std::string text;
  if (!(value < 0)) text += ' ';
  AppendStr(text, value);
  return text;
}

void AppendStr(std::string& out, double value) {
  if (IsPlainWhole(value)) return AppendWhole(out, static_cast<std::int64_t>(value));
  if (!std::isfinite(value)) {
    out += '0';
    return;
  }
  const Decimal decimal = FifteenDigits(value);
  if (decimal.negative) out += '-';
  if (decimal.exponent >= -4 && decimal.exponent < 15)
    AppendPlain(out, decimal);
  else
    AppendWithExponent(out, decimal);
}

double CDbl(std::string_view text) {
  text = Trim(text);
  const DecimalScan number = ScanDecimal(text, Gaps::None);
  if (!number.found || number.end != text.size()) throw KVRError(ErrorNumber::TypeMismatch);
  const std::optional<double> value = DecimalValue(number, text);
  if (!value) throw KVRError(ErrorNumber::Overflow);
  return *value;
}

bool IsNumeric(std::string_view text) {
  const DecimalScan number = ScanDecimal(text, Gaps::None);
  return number.found && number.end == text.size();
}

double Finite(double value) {
  if (!std::isfinite(value)) throw KVRError(ErrorNumber::Overflow);
  return value;
}

double RoundHalfEven(double value) {
  return std::nearbyint(value);
}

double Round15(double value) {
  if (IsPlainWhole(value) || !std::isfinite(value)) return value;
  if (const std::optional<double> rounded = RoundScaledTo15(value)) return *rounded;
  std::string text;
  AppendStr(text, value);
  return Val(text);
}

std::int32_t CLng(double value) {
  return RoundedInto<std::int32_t>(value);
}
std::int16_t CInt(double value) {
  return RoundedInto<std::int16_t>(value);
}

std::int32_t CLngClamped(double value) {
  constexpr double low = std::numeric_limits<std::int32_t>::min();
  constexpr double high = std::numeric_limits<std::int32_t>::max();
  if (std::isnan(value)) return 0;
  return static_cast<std::int32_t>(std::clamp(RoundHalfEven(value), low, high));
}

std::string NumberText(double value) {
  return FormatNumber(value, false);
}
std::string NumberText(Currency value) {
  return FormatCurrency(value, false);
}
std::string NumberTextKeepDecimal(double value) {
  return FormatNumber(value, true);
}
std::string NumberTextKeepDecimal(Currency value) {
  return FormatCurrency(value, true);
}

std::size_t LeadingNumberEnd(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool sign = i == 0 && (text[i] == '+' || text[i] == '-');
    if (!IsDigit(text[i]) && !sign) return i + 1;
  }
  return 0;
}

std::size_t FirstNonNumeric(std::string_view text, std::size_t start) {
  if (text.empty()) return 0;
  for (std::size_t i = std::clamp<std::size_t>(start, 1, text.size()); i <= text.size(); ++i)
    if (!IsDigit(text[i - 1])) return i;
  return 0;
}

}  // namespace kvr
