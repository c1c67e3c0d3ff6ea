#include "calc/Progression.h"

#include <gtest/gtest.h>

#include "core/Numbers.h"

namespace kvr {
namespace {

TEST(Progression, CostsByLevel) {
  struct Case {
    const char* text;
    std::int64_t level;
    const char* cost;
  };
  const Case cases[] = {
      {"10", 3, "30"},
      {"10/20/40", 5, "80"},
      {"-10", 2, "-20"},
      {"10/5/15", 0, "0"},
      {"10/5/15", 1, "10"},
      {"10/5/15", 3, "15"},
      {"10/5/15", 5, "35"},
      {"10/5", 3, "0"},
      {"10/5", 4, "-5"},
      {"", 1, "0"},
      {"", 7, "0"},
      {"5", -1, "0"},
      {"0.25/0.75", 3, "1.25"},
      {" 2 / 4pts /x", 2, "4"},
      {"2/4/x", 4, "-4"},
      {"1/2", 2000000000, "2000000000"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(NumberText(Progression(c.text).Cost(c.level)), c.cost) << c.text << " at " << c.level;
}

TEST(Progression, LevelsForPoints) {
  struct Case {
    const char* text;
    double points;
    const char *down, *up;
  };
  const Case cases[] = {
      {"5/10/20", 10, "2", "2"}, {"5/10/20", 12, "2", "3"},
      {"5/10/20", 40, "5", "5"}, {"5/10/20", 45, "5", "6"},
      {"5/10/20", 3, "0", "1"},  {"5", 12, "2", "3"},
      {"5/5", 9, "2", "2"},      {"", 9, "0", "0"},
      {"5/10/10", 30, "3", "3"}, {"0.0001/0", 7, "-69998", "-69998"},
  };
  for (const Case& c : cases) {
    Progression progression(c.text);
    Currency points = Currency::FromDouble(c.points);
    EXPECT_EQ(NumberText(progression.LevelForPoints(points, false)), c.down) << c.text << " for " << c.points;
    EXPECT_EQ(NumberText(progression.LevelForPoints(points, true)), c.up) << c.text << " for " << c.points;
  }
}

}  // namespace
}  // namespace kvr
