// Reads decimal numbers. Short plain ones, which is what data holds, are put together from integers; long
// ones and those with large exponents go through the library's exact conversion.
#include "core/DecimalScan.h"

#include <charconv>
#include <string>

namespace kvr {
namespace {

constexpr std::uint64_t kMantissaRoom = 999999999999999999u;  // one digit more still fits
constexpr std::uint64_t kExactInDouble = std::uint64_t{1} << 53;
constexpr int kExponentRoom = 99999999;

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsGap(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

template <Gaps gaps>
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  DecimalScan Scan() {
    const char sign = Peek();
    if (sign == '-' || sign == '+') ++at_;
    number_.negative = sign == '-';
    bool point = false;
    for (char c = Peek();; c = Peek()) {
      if (IsDigit(c)) {
        TakeDigit(c, point);
      } else if (c == '.' && !point) {
        point = true;
        ++at_;
        if (number_.found) number_.end = at_;
      } else {
        break;
      }
    }
    if (number_.found) ScanExponent();
    return number_;
  }

 private:
  // The next character of the number; NUL at the end.
  char Peek() {
    if (gaps == Gaps::Skipped)
      while (at_ < text_.size() && IsGap(text_[at_])) ++at_;
    return at_ < text_.size() ? text_[at_] : '\0';
  }

  void TakeDigit(char c, bool behindPoint) {
    number_.found = true;
    number_.end = ++at_;
    if (number_.mantissa > kMantissaRoom) {
      number_.exact = false;
      if (!behindPoint) ++number_.dropped;
      return;
    }
    number_.mantissa = number_.mantissa * 10 + static_cast<std::uint64_t>(c - '0');
    if (behindPoint) ++number_.decimals;
  }

  void ScanExponent() {
    const char mark = static_cast<char>(Peek() | 0x20);
    if (mark != 'e' && mark != 'd') return;
    ++at_;
    const char sign = Peek();
    if (sign == '-' || sign == '+') ++at_;
    int exponent = 0;
    for (char c = Peek(); IsDigit(c); c = Peek()) {
      if (exponent > kExponentRoom)
        number_.exact = false;
      else
        exponent = exponent * 10 + (c - '0');
      number_.end = ++at_;
    }
    number_.exponent = sign == '-' ? -exponent : exponent;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  DecimalScan number_;
};

// The number as the exact conversion wants it: without gaps and "+" in front, exponent with "e".
std::string PlainNumber(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  for (char c : text) {
    if (IsGap(c) || (c == '+' && plain.empty())) continue;
    plain += (c | 0x20) == 'd' ? 'e' : c;
  }
  return plain;
}

}  // namespace

DecimalScan ScanDecimal(std::string_view text, Gaps gaps) {
  return gaps == Gaps::None ? Scanner<Gaps::None>(text).Scan() : Scanner<Gaps::Skipped>(text).Scan();
}

std::optional<double> DecimalValue(const DecimalScan& number, std::string_view text) {
  static constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                       1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  const std::int64_t power = number.exponent - static_cast<std::int64_t>(number.decimals) +
                             static_cast<std::int64_t>(number.dropped);
  if (number.exact && number.mantissa <= kExactInDouble && power >= -22 && power <= 22) {
    // Both factors are exact doubles, so the one rounding gives the nearest value.
    const auto digits = static_cast<double>(number.mantissa);
    const double value = power < 0 ? digits / kPowers[-power] : digits * kPowers[power];
    return number.negative ? -value : value;
  }
  const std::string plain = PlainNumber(text.substr(0, number.end));
  double value = 0;
  const auto result = std::from_chars(plain.data(), plain.data() + plain.size(), value);
  if (result.ec == std::errc()) return value;
  if (number.mantissa == 0 || power < 0) return 0.0;  // too small for a double
  return std::nullopt;
}

}  // namespace kvr
