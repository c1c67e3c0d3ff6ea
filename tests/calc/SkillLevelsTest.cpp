#include <gtest/gtest.h>

#include "calc/SkillWorld.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

TEST(SkillLevels, LevelForPoints) {
  struct Case {
    const char* type;
    std::int32_t defaultLevel;
    const char* points;
    std::int32_t level;
  };
  const Case cases[] = {
      // Base -2, costs 1/2/4/8/12 and 4 for each step beyond, on 10.
      {"IQ/H", 0, "1", 9},
      {"IQ/H", 0, "2", 10},
      {"IQ/H", 0, "3", 10},
      {"IQ/H", 0, "4", 11},
      {"IQ/H", 0, "8", 12},
      {"IQ/H", 0, "12", 13},
      {"IQ/H", 0, "15.9", 13},
      {"IQ/H", 0, "31", 17},
      {"IQ/H", 0, "32", 18},
      {"IQ/H", 0, "60", 25},
      {"IQ/H", 0, "35.9", 18},
      {"iq/h", 0, "36.5", 19},
      {"IQ/H", 0, "0", 0},
      {"IQ/H", 0, "0.99", 0},
      {"IQ/H", 0, "-5", 0},
      // A default doesn't change the start of an ordinary skill.
      {"IQ/H", 12, "1", 9},
      // Without a type it is "M/H"; an unknown one leaves the default.
      {"", 0, "0.5", 9},
      {"", 0, "0.25", 0},
      {"XX/H", 7, "5", 7},
      {"Free", 0, "0", 6},
      {"Free", 0, "1", 6},
      {"Free", 0, "2", 7},
      {"Free", 0, "-2", 6},
      // A technique starts from its default, also below 1.
      {"Tech", 11, "0", 11},
      {"Tech", 11, "0.5", 11},
      {"Tech", 11, "3", 14},
      {"Tech", -3, "0", -3},
      {"IQ/H", 0, "900000000000000", 2147483647},
  };
  SkillWorld world;
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type) + " with " + c.points);
    clsItem& skill = world.PutSkill("name(Lore),type(" + std::string(c.type) + ")");
    EXPECT_EQ(skill.privGetLevel(c.defaultLevel, Currency::FromText(c.points)), c.level);
  }
}

TEST(SkillLevels, PointsForLevel) {
  struct Case {
    const char* type;
    std::int32_t defaultLevel, wanted;
    const char* points;
  };
  const Case cases[] = {
      {"IQ/H", 0, 7, "-1"},
      {"IQ/H", 0, 8, "0"},
      {"IQ/H", 0, 9, "1"},
      {"IQ/H", 0, 13, "12"},
      {"IQ/H", 0, 20, "40"},
      {"Tech", 11, 10, "-1"},
      {"Tech", 11, 11, "0"},
      {"Tech", 11, 13, "2"},
      {"XX/H", 11, 13, "0"},
      {"", 0, 10, "1"},
      {"IQ/H", 0, -2147483647, "-1"},
      {"IQ/H", 0, 2147483647, "8589934548"},
  };
  SkillWorld world;
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.type) + " at " + std::to_string(c.wanted));
    clsItem& skill = world.PutSkill("name(Lore),type(" + std::string(c.type) + ")");
    EXPECT_EQ(NumberText(skill.privGetPointsForLevel(c.defaultLevel, c.wanted)), c.points);
  }
}

TEST(SkillLevels, OddTypes) {
  SkillWorld world;
  world.AddType("name(Flat),defaultstat(ST:IQ),costs(1/1)");
  world.AddType("name(Falling),defaultstat(ST:IQ),costs(4/2)");
  world.AddType("name(Empty),defaultstat(ST:IQ)");
  world.AddType("name(Halves),defaultstat(ST:IQ),costs(.5/1)");
  world.AddType("name(Half),defaultstat(ST:IQ/4),costs(1/2)");
  // A step that costs nothing more: the level past the tenth step is that of the tenth.
  EXPECT_EQ(world.PutSkill("name(A),type(Flat)").privGetLevel(0, 1), 11);
  EXPECT_EQ(world.PutSkill("name(A),type(Flat)").privGetLevel(0, 50), 20);
  EXPECT_EQ(world.PutSkill("name(B),type(Falling)").privGetLevel(0, 500), 20);
  EXPECT_EQ(world.PutSkill("name(C),type(Empty)").privGetLevel(0, 5), 20);
  EXPECT_EQ(world.PutSkill("name(D),type(Halves)").privGetLevel(0, 8), 26);
  // The base is rounded half to even: 2.5 is 2.
  EXPECT_EQ(world.PutSkill("name(E),type(Half)").privGetLevel(0, 1), 3);
  EXPECT_EQ(world.PutSkill("name(E),type(Half),stat(ST:IQ + 4)").privGetLevel(0, 1), 15);
}

// The rules that ship: what a level costs buys that level, and less doesn't.
TEST(SkillLevels, ShippedTypesLeadFromLevelsToPointsAndBack) {
  RecordWorld world;
  world.Write("core.kdf", ShippedDataFile("brask core.kdf"));
  std::string version;
  ASSERT_TRUE(world.system.LoadDataFile("core.kdf", version));
  world.character.InitStartupValues();
  ASSERT_GE(world.character.SkillTypes.size(), 20u);
  for (const auto& type : world.character.SkillTypes) {
    SCOPED_TRACE(type->Name);
    clsItem& skill = world.Put(kSkills, "name(Lore),type(" + type->Name + ")");
    skill.Calculate();
    const bool technique = skill.Maneuver() == 1;
    const std::int32_t def = technique ? 9 : 0;
    std::int32_t start = -50;
    while (start < 50 && skill.privGetPointsForLevel(def, start) == Currency(-1)) ++start;
    EXPECT_EQ(skill.privGetPointsForLevel(def, start), Currency(0));
    for (std::int32_t level = start + 1; level < start + 60; ++level) {
      const Currency cost = skill.privGetPointsForLevel(def, level);
      EXPECT_EQ(skill.privGetLevel(def, cost), level);
      EXPECT_EQ(skill.privGetLevel(def, cost - Currency::FromUnits(1)),
                level == start + 1 && !technique ? 0 : level - 1);
      skill.SetBasePoints(cost);
      skill.Calculate();
      EXPECT_EQ(skill.Points(), cost);
    }
  }
}

}  // namespace
}  // namespace kvr
