#include "calc/Combinations.h"

#include <gtest/gtest.h>

#include "calc/SkillWorld.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

// 2 is at 10, 3 at 12, 4 at 13.
struct ComboWorld : SkillWorld {
  ComboWorld() {
    int points[] = {1, 4, 8};
    const char* names[] = {"name(Slash)", "name(Parry),nameext(Left)", "name(Kick)"};
    for (int i = 0; i < 3; ++i) {
      parts[i] = &Put(kSkills, std::string(names[i]) + ",type(IQ/E)");
      parts[i]->SetBasePoints(points[i]);
      parts[i]->Calculate();
    }
  }
  clsItem* parts[3];
};

// The type takes 2 off.
TEST(Combinations, LevelOfTheJoinedTraits) {
  struct Case {
    const char* tags;
    int points;
    std::int32_t level;
    const char* from;
  };
  const Case cases[] = {
      {"combokeys(k3, k4)", 0, 10, "Parry (Left)"},
      {"combokeys(3,4)", 2, 12, "Parry (Left)"},
      {"combokeys(3, 4, 2)", 0, 8, "Slash"},
      {"combokeys(2, 3, 4),comboattacks(0,1,1)", 0, 10, "Parry (Left)"},
      {"combokeys(2, 4),comboflags(highest)", 0, 11, "Kick"},
      // (2 * 10 + 13) / 3 is 11.
      {"combokeys(2, 4),comboflags(Average),comboattacks(2, 1)", 0, 9, "Slash"},
      {"combokeys(3, 4),comboflags(average)", 1, 11, "Parry (Left)"},
      {"combodeffrom({SK:Parry (Left)}, SK:Kick)", 0, 10, "Parry (Left)"},
      {"combodeffrom(SK:Nobody, SK:Kick)", 0, -2, ""},
      {"combokeys(2, 999)", 0, 8, "Slash"},
      {"combokeys(nonsense)", 3, 1, ""},
      {"", 0, -2, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.tags);
    ComboWorld world;
    clsItem& combination = world.Put(kSkills, "name(Flurry),type(Combo)," + std::string(c.tags));
    combination.SetBasePoints(c.points);
    for (int pass = 0; pass < 2; ++pass) {
      ASSERT_TRUE(combination.Calculate());
      EXPECT_EQ(combination.Level(), c.level);
      EXPECT_EQ(combination.TagItem("combolevel"), std::to_string(c.level - c.points));
      EXPECT_EQ(combination.TagItem("deffrom"), c.from);
      EXPECT_EQ(combination.TagItem("step"), "+" + std::to_string(c.points));
      EXPECT_EQ(combination.Points(), Currency(c.points));
    }
  }
}

TEST(Combinations, FollowsItsTraits) {
  ComboWorld world;
  clsItem& combination =
      world.Put(kSkills, "name(Flurry),type(Combo),combokeys(2, 3, 4),comboattacks(1, 2),combodeffrom()");
  world.CalculateAll();
  EXPECT_EQ(combination.TagItem("combodeffrom"), "{SK:Slash}, {SK:Parry (Left)}, {SK:Kick}");
  world.character.CreateAffectsLinks(combination);
  world.parts[0]->SetScoreTo(12);
  EXPECT_EQ(combination.Level(), 10);
  EXPECT_TRUE(combination.SetScoreTo(13));
  EXPECT_EQ(NumberText(combination.Points()), "3");
  EXPECT_FALSE(combination.SetScoreTo(4));
  EXPECT_EQ(NumberText(combination.Points()), "0") << "back to what it joins";
  world.character.RemoveItem("k2");
  combination.Calculate();
  EXPECT_EQ(combination.TagItem("combokeys"), "3, 4");
  EXPECT_EQ(combination.TagItem("comboattacks"), "2, 1");
  EXPECT_EQ(combination.TagItem("combodeffrom"), "{SK:Parry (Left)}, {SK:Kick}");
}

TEST(Combinations, CirclesDoNotCount) {
  ComboWorld world;
  clsItem& first = world.Put(kSkills, "name(First),type(Combo),combokeys(6, 3)");
  clsItem& second = world.Put(kSkills, "name(Second),type(Combo),combokeys(5, 6, 4)");
  clsItem& trick = world.Put(kSkills, "name(Trick),type(Tech),default(SK:Third+1)");
  clsItem& third = world.Put(kSkills, "name(Third),type(Combo),combokeys(7, 4)");
  first.SetBasePoints(3);
  world.CalculateAll();
  world.character.RecalculateAll();
  EXPECT_EQ(first.Level(), 10 + 3);
  EXPECT_EQ(second.Level(), 11);
  EXPECT_GT(world.Logged("leads back to itself through 'Second'"), 0);
  EXPECT_EQ(trick.Level(), 0);
  EXPECT_EQ(third.Level(), -2);
  EXPECT_EQ(world.Logged("do not settle"), 0);
}

}  // namespace
}  // namespace kvr
