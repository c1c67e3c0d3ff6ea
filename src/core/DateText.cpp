// Dates in text: reads the usual English ways to write one, and writes today's date in the two fixed forms of
// saved files, whatever the machine's locale.
#include <fmt/format.h>

#include <charconv>
#include <chrono>
#include <ctime>
#include <optional>
#include <span>

#include "core/Numbers.h"
#include "core/Text.h"

namespace kvr {
namespace {

using std::chrono::year_month_day;

constexpr std::string_view kMonths[] = {"January",   "February", "March",    "April",
                                        "May",       "June",     "July",     "August",
                                        "September", "October",  "November", "December"};
constexpr std::string_view kWeekdays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                          "Thursday", "Friday", "Saturday"};

// Position of a name, written whole or with its first three letters; -1 when it is none.
int FindName(std::span<const std::string_view> names, std::string_view word) {
  for (std::size_t i = 0; i < names.size(); ++i)
    if (EqualNoCase(word, names[i]) || EqualNoCase(word, names[i].substr(0, 3))) return static_cast<int>(i);
  return -1;
}

// Takes a date apart from front to back.
class DateScanner {
 public:
  explicit DateScanner(std::string_view text) : rest_(Trim(text)) {}

  bool AtEnd() const { return rest_.empty(); }
  bool Skip(char mark) {
    if (rest_.empty() || rest_[0] != mark) return false;
    rest_.remove_prefix(1);
    return true;
  }
  void SkipBlanks() {
    while (Skip(' ')) {
    }
  }
  std::string_view Word() {
    std::size_t end = 0;
    while (end < rest_.size() && ((rest_[end] | 0x20) >= 'a' && (rest_[end] | 0x20) <= 'z')) ++end;
    return Take(end);
  }
  // Up to four digits; "" when there are none or more.
  std::string_view Digits() {
    std::size_t end = 0;
    while (end < rest_.size() && rest_[end] >= '0' && rest_[end] <= '9') ++end;
    return end <= 4 ? Take(end) : std::string_view();
  }

 private:
  std::string_view Take(std::size_t length) {
    const std::string_view taken = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return taken;
  }
  std::string_view rest_;
};

int Number(std::string_view digits) {
  int value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value);
  return value;
}

int Year(std::string_view digits) {
  const int year = Number(digits);
  if (digits.size() > 2) return year;
  return year < 30 ? 2000 + year : 1900 + year;
}

std::optional<year_month_day> Checked(std::string_view year, int month, std::string_view day) {
  if (year.empty() || month < 1 || month > 12 || day.size() > 2) return std::nullopt;
  const year_month_day date{std::chrono::year(Year(year)), std::chrono::month(static_cast<unsigned>(month)),
                            std::chrono::day(static_cast<unsigned>(Number(day)))};
  return date.ok() ? std::optional(date) : std::nullopt;
}

// "11/24/2026", "2026-11-24".
std::optional<year_month_day> ReadNumbers(DateScanner scan) {
  const std::string_view first = scan.Digits();
  const char mark = first.size() == 4 ? '-' : '/';
  if (!scan.Skip(mark)) return std::nullopt;
  const std::string_view second = scan.Digits();
  if (!scan.Skip(mark)) return std::nullopt;
  const std::string_view third = scan.Digits();
  if (!scan.AtEnd()) return std::nullopt;
  if (mark == '-') return Checked(first, Number(second), third);
  return Checked(third, Number(first), second);
}

// "November 24, 2026", "Tuesday, November 24, 2026".
std::optional<year_month_day> ReadNames(DateScanner scan) {
  std::string_view word = scan.Word();
  if (FindName(kWeekdays, word) >= 0) {
    scan.Skip(',');
    scan.SkipBlanks();
    word = scan.Word();
  }
  const int month = FindName(kMonths, word);
  if (month < 0) return std::nullopt;
  scan.SkipBlanks();
  const std::string_view day = scan.Digits();
  const bool comma = scan.Skip(',');
  if (!scan.Skip(' ') && !comma) return std::nullopt;
  scan.SkipBlanks();
  const std::string_view year = scan.Digits();
  return scan.AtEnd() ? Checked(year, month + 1, day) : std::nullopt;
}

std::tm Today() {
  const std::time_t now = std::time(nullptr);
  std::tm today{};
  localtime_r(&now, &today);
  return today;
}

}  // namespace

bool IsDateText(std::string& text) {
  std::optional<year_month_day> date = ReadNumbers(DateScanner(text));
  if (!date) date = ReadNames(DateScanner(text));
  if (!date) return false;
  const int year = static_cast<int>(date->year());
  text = fmt::format("{:02}/{:02}/{:04}", static_cast<unsigned>(date->month()),
                     static_cast<unsigned>(date->day()), year);
  return year >= 1800 && year <= 2200;
}

std::string LongDateToday() {
  const std::tm today = Today();
  return fmt::format("{}, {} {}, {}", kWeekdays[today.tm_wday], kMonths[today.tm_mon], today.tm_mday,
                     today.tm_year + 1900);
}

std::string ShortDateToday() {
  const std::tm today = Today();
  return fmt::format("{}/{}/{}", today.tm_mon + 1, today.tm_mday, today.tm_year + 1900);
}

}  // namespace kvr
