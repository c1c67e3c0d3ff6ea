#include <gtest/gtest.h>

#include "character/RecordWorld.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

// "level points" after each of the steps "+" and "-".
std::string Steps(ItemType type, const char* tags, std::string_view steps, bool decrementToZero = false) {
  RecordWorld world;
  world.env.Config.DecrementToZero = decrementToZero ? -1 : 0;
  clsItem& item = world.Put(type, "name(Nerve)," + std::string(tags));
  item.Calculate();
  std::string result;
  for (char step : steps) {
    step == '+' ? item.Increment() : item.Decrement();
    result += (result.empty() ? "" : ", ") + std::to_string(item.Level()) + " " + NumberText(item.Points());
  }
  return result;
}

TEST(Editing, Steps) {
  EXPECT_EQ(Steps(kStats, "up(10),down(-10),step(1),basevalue(10)", "++---"),
            "1 10, 2 20, 1 10, 0 0, -1 -10");
  EXPECT_EQ(Steps(kStats, "up(10),step(1),basevalue(10),maxscore(11)", "++"), "1 10, 1 10");
  EXPECT_EQ(Steps(kAds, "cost(5/10),baselevel(1)", "+-"), "2 10, 1 5");
  EXPECT_EQ(Steps(kAds, "cost(5/10),baselevel(1)", "--"), "1 5, 1 5");
  EXPECT_EQ(Steps(kAds, "cost(5/10),baselevel(1)", "--", true), "0 0, 0 0");
  EXPECT_EQ(Steps(kAds, "cost(5),baselevel(1)", "++"), "1 5, 1 5");
  EXPECT_EQ(Steps(kDisads, "cost(-5/-10),baselevel(1),upto(2)", "++-"), "2 -10, 2 -10, 1 -5");
  EXPECT_EQ(Steps(kAds, "cost(5/10),baselevel(1),locked(yes)", "+-"), "1 5, 1 5");
  EXPECT_EQ(Steps(kAds, "cost(5/10),baselevel(1),locked(no)", "+"), "2 10");
}

TEST(Editing, AStepThatALimitUndoesRestoresTheLevelBought) {
  RecordWorld world;
  clsItem& keeper = world.Put(kAds, "name(Wings),cost(5/10),baselevel(3),lockstep(1)");
  clsItem& kept =
      world.Put(kAds, "name(Plume),cost(1/2),baselevel(3),keep(" + std::to_string(keeper.IDKey) + ")");
  keeper.Calculate();
  kept.Calculate();
  kept.Increment();
  EXPECT_EQ(kept.BaseLevel(), 3);
  EXPECT_EQ(kept.Points(), Currency(6 / 2));
}

// "Gap" holds a text where a number must stand, which fails in another way than a number that is too large.
TEST(Editing, AChangeThatFailsIsUndone) {
  struct Case {
    ItemType type;
    const char *tags, *failing, *value;
  };
  const Case cases[] = {
      {kStats, "up(10),down(-10),step(1),basevalue(10)", "raiseruleof", "AD:Gap::cat"},
      {kStats, "up(10),down(-10),step(1),basevalue(10)", "round", "99999"},
      {kAds, "cost(5/10),baselevel(2)", "formula", "AD:Gap::cat"},
      {kAds, "cost(5/10),baselevel(2)", "upto", "99999"},
      {kPackages, "cost(5/10),baselevel(2)", "formula", "AD:Gap::cat"},
      {kEquipment, "count(2),basecost(5)", "raiseruleof", "AD:Gap::cat"},
  };
  for (const Case& c : cases) {
    RecordWorld world;
    world.Put(kAds, "name(Gap),cat(none)");
    clsItem& item = world.Put(c.type, "name(Nerve)," + std::string(c.tags));
    ASSERT_TRUE(item.Calculate());
    item.SetTagItem(c.failing, c.value);
    const auto state = [&item] {
      std::string text;
      for (const char* tag : {"level", "baselevel", "count", "score", "points"})
        text += item.TagItem(tag) + " ";
      return text;
    };
    const std::string before = state();
    const auto change = [&](int number) {
      if (number == 0) return item.Increment();
      if (number == 1) return item.Decrement();
      item.SetScoreTo(15);
    };
    for (int number = 0; number < 3; ++number) {
      try {
        change(number);
      } catch (const SolverFailure&) {
      }
      EXPECT_EQ(state(), before) << c.tags << " " << c.value << ", change " << number;
    }
    EXPECT_GE(world.Logged(": Error "), 3) << c.tags << " " << c.value;
  }
}

TEST(Editing, CountOfEquipment) {
  RecordWorld world;
  clsItem& rope = world.Put(kEquipment, "name(Rope),count(1)");
  rope.Increment();
  EXPECT_EQ(rope.TagItem("count"), "2");
  rope.Decrement();
  rope.Decrement();
  rope.Decrement();
  EXPECT_EQ(rope.TagItem("count"), "0");
  EXPECT_TRUE(rope.SetScoreTo(12));
  EXPECT_EQ(rope.TagItem("count"), "12");
  EXPECT_TRUE(rope.SetScoreTo(3e9));
  EXPECT_EQ(rope.TagItem("count"), "2000000000");
}

TEST(Editing, SetScoreToALevel) {
  struct Case {
    const char* tags;
    double wanted;
    std::int32_t level;
    bool reached;
  };
  const Case cases[] = {
      {"cost(5/10)", 4, 4, true},
      {"cost(5/10)", 2.5, 2, false},
      {"cost(5)", 4, 1, false},
      {"cost(5/10),upto(3)", 9, 3, false},
      {"cost(5/10),baselevel(6)", 2, 2, true},
      {"cost(5/10)", -3, 0, false},
  };
  for (const Case& c : cases) {
    RecordWorld world;
    clsItem& item = world.Put(kPerks, "name(Nerve),baselevel(1)," + std::string(c.tags));
    item.Calculate();
    EXPECT_EQ(item.SetScoreTo(c.wanted), c.reached) << c.tags << c.wanted;
    EXPECT_EQ(item.Level(), c.level) << c.tags << c.wanted;
  }
}

TEST(Editing, LevelsForPointsByType) {
  RecordWorld world;
  EXPECT_EQ(world.Put(kAds, "name(Nerve),cost(5/10)").ReturnLevelForPoints(12, true), Currency(3));
  EXPECT_EQ(world.Put(kStats, "name(Vigour),cost(5/10)").ReturnLevelForPoints(12, true), Currency(0));
}

}  // namespace
}  // namespace kvr
