// Points and money: a 64-bit count of ten-thousandths.
#pragma once

#include <compare>
#include <cstdint>
#include <string_view>

namespace kvr {

class Currency {
 public:
  constexpr Currency() = default;
  constexpr Currency(int whole) : units_(static_cast<std::int64_t>(whole) * kScale) {}

  // Rounds half to even at the fourth decimal. Error 6 when the value does not fit or is no number.
  static Currency FromDouble(double value);
  // The strict reading of a decimal ("12", "-0.25", "1e3"), exact up to 19 digits, further decimals rounded
  // half to even; error 13 when it is none, 6 when it does not fit.
  static Currency FromText(std::string_view text);
  // The tolerant reading: the leading number, 0 when there is none or it does not fit.
  static Currency FromVal(std::string_view text);
  static constexpr Currency FromUnits(std::int64_t tenThousandths) {
    Currency c;
    c.units_ = tenThousandths;
    return c;
  }

  constexpr std::int64_t Units() const { return units_; }
  constexpr double ToDouble() const { return static_cast<double>(units_) / kScale; }
  constexpr bool IsZero() const { return units_ == 0; }

  // Sums stop at the ends of the range instead of wrapping.
  friend Currency operator+(Currency a, Currency b);
  friend Currency operator-(Currency a, Currency b);
  Currency operator-() const { return Currency() - *this; }
  Currency& operator+=(Currency b) { return *this = *this + b; }
  Currency& operator-=(Currency b) { return *this = *this - b; }
  // The product with a count, likewise held within the range.
  friend Currency operator*(Currency a, std::int64_t count);

  friend constexpr auto operator<=>(Currency, Currency) = default;

 private:
  static constexpr std::int64_t kScale = 10000;
  std::int64_t units_ = 0;
};

}  // namespace kvr
