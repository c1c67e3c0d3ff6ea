// Arithmetic of points and money: conversions that round half to even and sums that stop at the ends of the
// range.
#include "core/Currency.h"

#include <limits>
#include <optional>

#include "core/DecimalScan.h"
#include "core/KVRError.h"
#include "core/Numbers.h"
#include "core/Text.h"

namespace kvr {
namespace {

constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kSmallest = std::numeric_limits<std::int64_t>::min();
constexpr double kRangeEnd = 9223372036854775808.0;  // 2^63

std::optional<Currency> Fitting(double value) {
  const double units = RoundHalfEven(value * 10000);
  if (!(units >= -kRangeEnd && units < kRangeEnd)) return std::nullopt;
  return Currency::FromUnits(static_cast<std::int64_t>(units));
}

std::uint64_t PowerOfTen(std::size_t exponent) {
  std::uint64_t power = 1;
  while (exponent-- > 0) power *= 10;
  return power;
}

// The count of ten-thousandths, rounded half to even, of a number whose digits are all in `mantissa`.
std::optional<Currency> FittingDigits(const DecimalScan& number) {
  std::uint64_t units = number.mantissa;
  if (number.decimals <= 4) {
    if (__builtin_mul_overflow(units, PowerOfTen(4 - number.decimals), &units)) return std::nullopt;
  } else if (number.decimals > 23) {
    units = 0;
  } else {
    const std::uint64_t divisor = PowerOfTen(number.decimals - 4);
    const std::uint64_t rest = units % divisor;
    units /= divisor;
    if (rest > divisor / 2 || (rest == divisor / 2 && (units & 1))) ++units;
  }
  const std::uint64_t limit = static_cast<std::uint64_t>(kLargest) + (number.negative ? 1 : 0);
  if (units > limit) return std::nullopt;
  return Currency::FromUnits(static_cast<std::int64_t>(number.negative ? 0 - units : units));
}

std::optional<Currency> Fitting(const DecimalScan& number, std::string_view text) {
  if (number.exact && number.exponent == 0) return FittingDigits(number);
  return Fitting(DecimalValue(number, text).value_or(std::numeric_limits<double>::infinity()));
}

}  // namespace

Currency Currency::FromDouble(double value) {
  const std::optional<Currency> currency = Fitting(value);
  if (!currency) throw KVRError(ErrorNumber::Overflow);
  return *currency;
}

Currency Currency::FromText(std::string_view text) {
  text = Trim(text);
  const DecimalScan number = ScanDecimal(text, Gaps::None);
  if (!number.found || number.end != text.size()) throw KVRError(ErrorNumber::TypeMismatch);
  const std::optional<Currency> currency = Fitting(number, text);
  if (!currency) throw KVRError(ErrorNumber::Overflow);
  return *currency;
}

Currency Currency::FromVal(std::string_view text) {
  const DecimalScan number = ScanDecimal(text, Gaps::Skipped);
  return number.found ? Fitting(number, text).value_or(Currency()) : Currency();
}

Currency operator+(Currency a, Currency b) {
  std::int64_t sum;
  if (__builtin_add_overflow(a.units_, b.units_, &sum)) sum = b.units_ > 0 ? kLargest : kSmallest;
  return Currency::FromUnits(sum);
}

Currency operator-(Currency a, Currency b) {
  std::int64_t difference;
  if (__builtin_sub_overflow(a.units_, b.units_, &difference))
    difference = b.units_ < 0 ? kLargest : kSmallest;
  return Currency::FromUnits(difference);
}

Currency operator*(Currency a, std::int64_t count) {
  std::int64_t product;
  if (__builtin_mul_overflow(a.units_, count, &product))
    product = (a.units_ < 0) == (count < 0) ? kLargest : kSmallest;
  return Currency::FromUnits(product);
}

}  // namespace kvr
