#include "calc/LevelNames.h"

#include <gtest/gtest.h>

#include "character/RecordWorld.h"

namespace kvr {
namespace {

TEST(LevelNames, NamesOfLevels) {
  struct Case {
    const char *names, *cost;
    std::int32_t level;
    const char* text;
  };
  const Case cases[] = {
      {"", "5", 0, ""},
      {"", "5/10", 0, "0"},
      {"", "5", 1, "1"},
      {"", "", 12, "12"},
      {"minor, major", "5/10", 0, "none"},
      {"minor, major", "5/10", -1, "none"},
      {"minor, major", "5/10", 1, "minor"},
      {"minor, \"major\"", "5/10", 2, "major"},
      {"minor, major", "5/10", 5, "major+3"},
      {"[\"asleep\"], drowsy, {up, and about}", "5/10", 0, "asleep"},
      {"[asleep], drowsy, {up, and about}", "5/10", 1, "drowsy"},
      {"[asleep], drowsy, {up, and about}", "5/10", 2, "{up, and about}"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(levelNames::NameOfLevel(c.names, c.cost, c.level), c.text) << c.names << c.level;
}

TEST(LevelNames, OfATraitAndItsCaption) {
  RecordWorld world;
  clsItem& item =
      world.Put(kAds, "name(Nerve),cost(5/10),levelnames(calm, cold),shortlevelnames([-], c, cc)");
  item.SetLevel(2);
  EXPECT_EQ(item.LevelName(), "cold");
  EXPECT_EQ(item.LevelCaption(), "cc");
  item.SetLevel(0);
  EXPECT_EQ(item.LevelCaption(), "-");
}

}  // namespace
}  // namespace kvr
