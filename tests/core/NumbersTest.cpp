#include "core/Numbers.h"

#include <gtest/gtest.h>

#include <random>

#include "core/KVRError.h"

namespace kvr {
namespace {

template <class Call>
int ErrorOf(Call&& call) {
  try {
    call();
  } catch (const KVRError& error) {
    return static_cast<int>(error.Number());
  }
  return 0;
}

TEST(Numbers, ValReadsTheLongestLeadingNumber) {
  const std::pair<std::string, double> cases[] = {
      {"", 0},
      {"12", 12},
      {"  -5 points", -5},
      {"+3", 3},
      {"1 234", 1234},
      {"- 5", -5},
      {"--5", 0},
      {"1.5.5", 1.5},
      {".5", .5},
      {".", 0},
      {"5.", 5},
      {"-.25x", -.25},
      {"1E3", 1000},
      {"1d3", 1000},
      {"1E+3", 1000},
      {"1e-2", .01},
      {"1E", 1},
      {"1E+", 1},
      {"1E+x", 1},
      {"1 E 2", 100},
      {"1\t2\r\n3", 123},
      {"&H10", 0},
      {"abc", 0},
      {"1e999", 0},
      {"1e-999", 0},
      {"0e99999999999999", 0},
      {"0.1", .1},
      {"3.14159265358979323846", 3.14159265358979323846},
      {"123456789012345678901234567890", 123456789012345678901234567890.0},
      {"9007199254740993", 9007199254740993.0},
      {"1.7976931348623157E308", 1.7976931348623157e308},
      {"1,5", 1}};
  for (const auto& [text, value] : cases) EXPECT_EQ(Val(text), value) << text;
  EXPECT_EQ(Val(std::string(400, '9')), 0);
  EXPECT_EQ(Val(std::string(400, '9') + "E-390"), 1e10);
  EXPECT_EQ(Val("." + std::string(400, '0') + "1E+400"), .1);
}

TEST(Numbers, StrictNumbers) {
  for (const char* text : {"1", "-1", "+1.5", ".5", "5.", "1E5", "1e-5", "2D+3", "00.10"}) {
    EXPECT_TRUE(IsNumeric(text)) << text;
    EXPECT_EQ(CDbl(std::string(" ") + text + "  "), Val(text));
  }
  for (const char* text :
       {"", " ", ".", "-", "1 2", "1E", "1E+", "E5", "1.2.3", "--1", "1+2", "1,5", "&H1"}) {
    EXPECT_FALSE(IsNumeric(text)) << text;
    EXPECT_EQ(ErrorOf([&] { CDbl(text); }), 13) << text;
  }
  for (const char* text : {" 1", "1 "}) EXPECT_FALSE(IsNumeric(text)) << text;
  EXPECT_EQ(ErrorOf([] { CDbl("1E400"); }), 6);
  EXPECT_EQ(CDbl("1E-400"), 0);
}

TEST(Numbers, StrShowsFifteenDigits) {
  const std::pair<double, std::string> cases[] = {{0, " 0"},
                                                  {-0.0, " 0"},
                                                  {7, " 7"},
                                                  {-7, "-7"},
                                                  {.5, " .5"},
                                                  {-.5, "-.5"},
                                                  {1.25, " 1.25"},
                                                  {-100.125, "-100.125"},
                                                  {.1 + .2, " .3"},
                                                  {1.0 / 3, " .333333333333333"},
                                                  {2.0 / 3, " .666666666666667"},
                                                  {.0001, " .0001"},
                                                  {.00012345, " .00012345"},
                                                  {.00001, " 1E-05"},
                                                  {-1.5e-7, "-1.5E-07"},
                                                  {1e15, " 1E+15"},
                                                  {1.5e15, " 1.5E+15"},
                                                  {999999999999999.0, " 999999999999999"},
                                                  {123456789012345678.0, " 1.23456789012346E+17"},
                                                  {-1e100, "-1E+100"},
                                                  {999999999999999.9, " 1E+15"},
                                                  {.00009999999999999999, " .0001"},
                                                  {99999.99999999999, " 100000"},
                                                  {9.9999999999999999e22, " 1E+23"},
                                                  {5e-324, " 5E-324"},
                                                  {123456.789, " 123456.789"},
                                                  {HUGE_VAL, " 0"}};
  for (const auto& [value, text] : cases) {
    EXPECT_EQ(Str(value), text);
    std::string appended = "x";
    AppendStr(appended, value);
    EXPECT_EQ(appended, "x" + std::string(text[0] == ' ' ? text.substr(1) : text));
  }
  EXPECT_EQ(Str(-HUGE_VAL).size() + Str(std::nan("")).size(), 3u);
}

TEST(Numbers, StrEqualsFifteenDigitPrintingForAnyDouble) {
  std::mt19937_64 random(11);
  for (int round = 0; round < 50000; ++round) {
    const std::uint64_t bits = random();
    double value;
    std::memcpy(&value, &bits, sizeof value);
    if (round % 2)
      value = static_cast<double>(static_cast<std::int64_t>(random() % 2000000) - 1000000) / 1000;
    if (!std::isfinite(value)) continue;
    char printed[40];
    std::snprintf(printed, sizeof printed, "%.14e", value);
    ASSERT_EQ(Val(Str(value)), std::strtod(printed, nullptr)) << printed;
    ASSERT_EQ(Round15(value), std::strtod(printed, nullptr)) << printed;
    std::snprintf(printed, sizeof printed, "%.17g", value);
    ASSERT_EQ(Val(printed), value) << printed;
  }
}

TEST(Numbers, RoundsHalfToEven) {
  EXPECT_EQ(CLng(2.5), 2);
  EXPECT_EQ(CLng(3.5), 4);
  EXPECT_EQ(CLng(-2.5), -2);
  EXPECT_EQ(CInt(32767.4), 32767);
  EXPECT_EQ(CLng(2147483647.49), 2147483647);
  EXPECT_EQ(CLngClamped(1e300), 2147483647);
  EXPECT_EQ(CLngClamped(-1e300), -2147483648);
  EXPECT_EQ(CLngClamped(std::nan("")), 0);
  for (double value : {32767.5, -32769.0, 1e300}) EXPECT_EQ(ErrorOf([=] { CInt(value); }), 6) << value;
  for (double value : {2147483647.5, std::nan("")}) EXPECT_EQ(ErrorOf([=] { CLng(value); }), 6) << value;
}

TEST(Numbers, NumberTextHasAtMostFourDecimals) {
  const struct {
    double value;
    std::string text, kept;
  } cases[] = {{1.5, "1.5", "1.5"},
               {2, "2", "2.0"},
               {0, "0", "0.0"},
               {-0.0, "0", "0.0"},
               {-.00001, "0", "0.0"},
               {.5, "0.5", "0.5"},
               {-.25, "-0.25", "-0.25"},
               {1.00005, "1.0001", "1.0001"},
               {-1.00005, "-1.0001", "-1.0001"},
               {.00005, "0.0001", "0.0001"},
               {.00004999, "0", "0.0"},
               {.99995, "1", "1.0"},
               {9999.99999, "10000", "10000.0"},
               {1.23456, "1.2346", "1.2346"},
               {1.10001, "1.1", "1.1"},
               {2.00001, "2", "2.0"},
               {1234567.891, "1234567.891", "1234567.891"},
               {1e15, "1000000000000000", "1000000000000000.0"},
               {-2.5e20, "-250000000000000000000", "-250000000000000000000.0"},
               {1e-300, "0", "0.0"},
               {HUGE_VAL, "0", "0.0"}};
  for (const auto& [value, text, kept] : cases) {
    EXPECT_EQ(NumberText(value), text);
    EXPECT_EQ(NumberTextKeepDecimal(value), kept);
  }
}

TEST(Numbers, ScansDigits) {
  const std::pair<std::string, std::size_t> ends[] = {
      {"", 0}, {"123", 0}, {"+12", 0}, {"-", 0}, {"12d", 3}, {"d12", 1}, {"1-2", 2}, {"1.5", 2}, {" 1", 1}};
  for (const auto& [text, end] : ends) EXPECT_EQ(LeadingNumberEnd(text), end) << text;
  EXPECT_EQ(FirstNonNumeric("12ab", 0), 3u);
  EXPECT_EQ(FirstNonNumeric("12ab", 4), 4u);
  EXPECT_EQ(FirstNonNumeric("ab12", 3), 0u);
  EXPECT_EQ(FirstNonNumeric("ab12x", 99), 5u);
  EXPECT_EQ(FirstNonNumeric("", 1), 0u);
}

TEST(Numbers, Dates) {
  const struct {
    std::string text;
    bool isDate;
    std::string rewritten;
  } cases[] = {{"1/5/2026", true, "01/05/2026"},
               {" 11/24/2026 ", true, "11/24/2026"},
               {"2026-11-24", true, "11/24/2026"},
               {"2026-1-4", true, "01/04/2026"},
               {"November 24, 2026", true, "11/24/2026"},
               {"tuesday, november 24, 2026", true, "11/24/2026"},
               {"Tue Nov 4 1999", true, "11/04/1999"},
               {"2/29/2024", true, "02/29/2024"},
               {"1/1/29", true, "01/01/2029"},
               {"1/1/30", true, "01/01/1930"},
               {"1/1/1799", false, "01/01/1799"},
               {"1/1/2201", false, "01/01/2201"},
               {"1/1/800", false, "01/01/0800"},
               {"2/29/2026", false, "2/29/2026"},
               {"13/1/2026", false, "13/1/2026"},
               {"257/1/2026", false, "257/1/2026"},
               {"24/11/2026", false, "24/11/2026"},
               {"0/1/2026", false, "0/1/2026"},
               {"1/1/20261", false, "1/1/20261"},
               {"1/1", false, "1/1"},
               {"1/1/2026 x", false, "1/1/2026 x"},
               {"Novembre 24, 2026", false, "Novembre 24, 2026"},
               {"November 24,", false, "November 24,"},
               {"November 242026", false, "November 242026"},
               {"15 points", false, "15 points"},
               {"", false, ""}};
  for (const auto& [text, isDate, rewritten] : cases) {
    std::string date = text;
    EXPECT_EQ(IsDateText(date), isDate) << text;
    EXPECT_EQ(date, rewritten);
  }
  std::string today = LongDateToday(), shortToday = ShortDateToday();
  EXPECT_TRUE(IsDateText(today) && IsDateText(shortToday));
  EXPECT_EQ(today, shortToday);
}

TEST(Currency, ConvertsHalfToEven) {
  const std::pair<double, std::int64_t> doubles[] = {{1.5, 15000},           {-1.5, -15000},  {.03125, 312},
                                                     {.09375, 938},          {-.03125, -312}, {.03126, 313},
                                                     {1e10, 100000000000000}};
  for (const auto& [value, units] : doubles) EXPECT_EQ(Currency::FromDouble(value).Units(), units) << value;
  const std::pair<std::string, std::int64_t> texts[] = {{"12", 120000},
                                                        {"-0.25", -2500},
                                                        {" 1e3 ", 10000000},
                                                        {".00005", 0},
                                                        {".00015", 2},
                                                        {".000050000000001", 1},
                                                        {"922337203685477.5807", INT64_MAX},
                                                        {"-922337203685477.5808", INT64_MIN},
                                                        {"123456789012345.6789", 1234567890123456789},
                                                        {"0.0000000000000000000000000000001", 0}};
  for (const auto& [text, units] : texts) {
    EXPECT_EQ(Currency::FromText(text).Units(), units) << text;
    EXPECT_EQ(Currency::FromVal(text + " points").Units(), units) << text;
  }
  for (const char* text : {"", "x", "1x", "1 2"})
    EXPECT_EQ(ErrorOf([&] { Currency::FromText(text); }), 13) << text;
  for (const char* text : {"922337203685477.5808", "1e20", "-1e999"}) {
    EXPECT_EQ(ErrorOf([&] { Currency::FromText(text); }), 6) << text;
    EXPECT_TRUE(Currency::FromVal(text).IsZero()) << text;
  }
  for (double value : {1e15, -1e300, HUGE_VAL, std::nan("")})
    EXPECT_EQ(ErrorOf([=] { Currency::FromDouble(value); }), 6) << value;
  EXPECT_EQ(NumberText(Currency::FromUnits(INT64_MIN)), "-922337203685477.5808");
  EXPECT_EQ(NumberText(Currency::FromUnits(-500)), "-0.05");
  EXPECT_EQ(NumberTextKeepDecimal(Currency(-15)), "-15.0");
}

TEST(Currency, SumsStayInRange) {
  const Currency most = Currency::FromUnits(INT64_MAX), least = Currency::FromUnits(INT64_MIN), one(1);
  EXPECT_EQ(most + one, most);
  EXPECT_EQ(least - one, least);
  EXPECT_EQ(least + Currency(-1), least);
  EXPECT_EQ(most - Currency(-1), most);
  EXPECT_EQ(-least, most);
  EXPECT_EQ(most * 2, most);
  EXPECT_EQ(most * -2, least);
  EXPECT_EQ(least * -1, most);
  EXPECT_EQ(Currency::FromText("2.5") * 3, Currency::FromText("7.5"));
  EXPECT_LT(least, most);
}

}  // namespace
}  // namespace kvr
