#include <gtest/gtest.h>

#include "character/RecordWorld.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

TEST(Stats, ScoreAndPointsFromLevel) {
  struct Case {
    const char* tags;
    std::int32_t level;
    double score;
    const char* points;
    std::int32_t levelAfter;
  };
  const Case cases[] = {
      {"up(10),step(1),basevalue(10)", 3, 13, "30", 3},
      {"up(10/20/40),step(1),basevalue(10)", 5, 15, "80", 5},
      {"down(-10),step(1),basevalue(10)", -2, 8, "-20", -2},
      {"up(5),step(0.25),basevalue(5)", 3, 5.75, "15", 3},
      {"basevalue(7)", 4, 7, "0", 4},
      {"up(10),step(0),basevalue(7)", 4, 7, "0", 4},
      // Limits change the level for good.
      {"up(10),step(1),basevalue(10),maxscore(12)", 5, 12, "20", 2},
      {"up(10),step(1),basevalue(10),maxscore(12),bonuslevels(3)", 5, 15, "20", 2},
      {"up(10),step(1),basevalue(10),maxscore(12 LimitingTotal),bonuslevels(3)", 5, 12, "0", -1},
      {"up(10),step(1),basevalue(10),maxscore(0)", 5, 15, "50", 5},
      {"down(-10),step(1),basevalue(10),minscore(8)", -5, 8, "-20", -2},
      {"down(-10),step(1),basevalue(1),minscore(0)", -5, 0, "-10", -1},
      {"down(-10),step(1),basevalue(1)", -5, -4, "-50", -5},
      // 0.3 / 0.1 is 2.9999999999999996 in binary.
      {"up(1),step(0.1),basevalue(0),maxscore(0.3)", 9, 0.3, "3", 3},
      // The frozen level is a floor for what the lower limit does, and only there.
      {"up(10),step(1),basevalue(10),minscore(12),frozenlevel(4)", 0, 14, "40", 4},
      {"up(10),step(1),basevalue(10),minscore(12),frozenlevel(4)", 3, 13, "30", 3},
      {"step(0.25),basevalue(5),round(-1)", 3, 5, "0", 3},
      {"step(0.25),basevalue(5),round(1)", 3, 6, "0", 3},
      {"step(0.5),basevalue(5),round(1)", 1, 6, "0", 1},
      {"step(0.5),basevalue(5),round(@if(me::basescore > 5 then 1 else -1))", 1, 6, "0", 1},
      {"step(0.1),basevalue(0.7),round(-1)", 3, 1, "0", 3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.tags) + " at " + std::to_string(c.level));
    RecordWorld world;
    clsItem& stat = world.Put(kStats, "name(Vigour)," + std::string(c.tags));
    stat.SetLevel(c.level);
    for (int pass = 0; pass < 2; ++pass) {
      ASSERT_TRUE(stat.Calculate());
      EXPECT_DOUBLE_EQ(stat.Score(), c.score);
      EXPECT_EQ(NumberText(stat.Points()), c.points);
      EXPECT_EQ(stat.Level(), c.levelAfter);
      EXPECT_EQ(stat.BasePoints(), stat.Points());
      EXPECT_EQ(stat.BaseAppPoints(), stat.Points());
    }
  }
}

TEST(Stats, AScoreBeyondAllNumbersIsAFailure) {
  for (const char* tags : {"step(1E+308),basevalue(10)", "step(-1E+308),basevalue(10),bonuslevels(1E+308)"}) {
    RecordWorld world;
    clsItem& stat = world.Put(kStats, "name(Vigour)," + std::string(tags));
    stat.SetLevel(9);
    stat.SetScore(4);
    EXPECT_FALSE(stat.Calculate()) << tags;
    EXPECT_EQ(stat.Score(), 4);
    EXPECT_EQ(world.Logged("Error 6"), 1);
  }
}

TEST(Stats, InPlayCostsMoreAndRemembersWhatWasPaid) {
  RecordWorld world;
  clsItem& stat = world.Put(kStats, "name(Vigour),up(10),step(1),basevalue(10),inplaymult(2)");
  stat.SetLevel(3);
  stat.Calculate();
  world.character.FreezeStats();
  world.character.SetInPlayFieldOnly(true);
  EXPECT_EQ(stat.TagItem("frozenlevel"), "3");
  EXPECT_EQ(stat.TagItem("frozencost"), "60");
  EXPECT_EQ(stat.CalcStatPoints(4, true), Currency(20));
  EXPECT_EQ(stat.CalcStatPoints(4, false), Currency(40));
  stat.SetLevel(9);
  world.character.FreezeStats();
  EXPECT_EQ(stat.TagItem("frozenlevel"), "3") << "a frozen stat is not frozen anew";
}

TEST(Stats, GoingIntoPlayReachesTheStatsThatCostMoreThere) {
  RecordWorld world;
  clsItem& stat = world.Put(kStats, "name(Vigour),up(10),step(1),basevalue(10),inplaymult(2)");
  stat.SetLevel(3);
  stat.Calculate();
  for (const auto& [inPlay, points] : {std::pair("-1", 0), std::pair("0", 30)}) {
    world.character.SetTagItem("inplay", inPlay);
    EXPECT_EQ(world.character.TagItem("statcost"), std::to_string(points));
    EXPECT_EQ(stat.Points(), Currency(points));
  }
}

TEST(Stats, CalcAStatFallsBackToWrittenBonuses) {
  RecordWorld world;
  clsItem& stat = world.Put(kStats, "name(Pace),step(0.25),basevalue(5),syslevels(1),bonuslevels(0.5)");
  std::string key = stat.KeyText();
  EXPECT_EQ(NumberText(world.character.CalcAStat(key, 3)), "7.25");
  stat.SetTagItem("sysbonus", "2");
  EXPECT_EQ(NumberText(world.character.CalcAStat(key, 3)), "8.25");
  stat.SetTagItem("round", "-1");
  EXPECT_EQ(NumberText(world.character.CalcAStat(key, 3)), "8");
  EXPECT_EQ(world.character.CalcAStat("k999", 3), Currency(0));
}

TEST(Stats, SetScoreTo) {
  struct Case {
    const char* tags;
    double wanted, score;
    bool reached;
  };
  const Case cases[] = {
      {"up(10),down(-10),step(1),basevalue(10)", 14, 14, true},
      {"up(10),down(-10),step(1),basevalue(10)", 7, 7, true},
      {"up(10),down(-10),step(1),basevalue(10)", 10, 10, true},
      {"up(10),step(1),basevalue(10),maxscore(12)", 14, 12, false},
      {"up(10),step(2),basevalue(10)", 13, 14, true},
      {"up(10),step(2),basevalue(10)", 11, 10, false},
      {"up(10),step(1),basevalue(10.5),round(-1)", 12, 12, true},
      {"up(10),step(0.1),basevalue(0)", 0.3, 0.3, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.tags) + " to " + std::to_string(c.wanted));
    RecordWorld world;
    clsItem& stat = world.Put(kStats, "name(Vigour)," + std::string(c.tags));
    stat.Calculate();
    EXPECT_EQ(stat.SetScoreTo(c.wanted), c.reached);
    EXPECT_NEAR(stat.Score(), c.score, 1e-12);
  }
}

}  // namespace
}  // namespace kvr
