#include <gtest/gtest.h>

#include "calc/SkillWorld.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

struct Expected {
  const char* tags;
  const char* points;  // spent before
  std::int32_t level;
  const char* cost;  // spent after
};

void ExpectLevels(SkillWorld& world, std::initializer_list<Expected> cases, ItemType type = kSkills) {
  for (const Expected& c : cases) {
    SCOPED_TRACE(std::string(c.tags) + " with " + c.points);
    clsItem& skill = world.Put(type, "name(Lore)," + std::string(c.tags));
    skill.SetBasePoints(Currency::FromText(c.points));
    for (int pass = 0; pass < 3; ++pass) {
      ASSERT_TRUE(skill.Calculate());
      EXPECT_EQ(skill.Level(), c.level);
      EXPECT_EQ(NumberText(skill.BasePoints()), c.cost);
      EXPECT_EQ(skill.Points(), skill.BasePoints());
      EXPECT_EQ(skill.BaseAppPoints(), skill.AppPoints() - skill.ExtraPoints());
    }
    world.character.RemoveItem(skill.KeyText());
  }
}

// "IQ/E" is at 10 for a point, "IQ/H" at 9; each is calculated three times, and stays what it was.
TEST(Skills, LevelFromPointsDefaultsAndLimits) {
  SkillWorld world;
  clsItem& base = world.Put(kSkills, "name(Riding),type(IQ/E)");
  base.SetBasePoints(8);
  base.Calculate();
  ASSERT_EQ(base.Level(), 13);
  ExpectLevels(world, {
                          {"type(IQ/E)", "0", 0, "0"},
                          {"type(IQ/E)", "1", 10, "1"},
                          {"type(IQ/E)", "-3", 0, "0"},
                          {"type(IQ/E)", "2.5", 11, "2.5"},
                          {"type(IQ/E)", "0.5", 0, "0.5"},
                          {"type(Free)", "0", 6, "0"},
                          // A default below the start is only a level; above it, it is worth points.
                          {"type(IQ/E),default(SK:Riding-6)", "0", 7, "0"},
                          {"type(IQ/E),default(SK:Riding-6)", "1", 10, "1"},
                          {"type(IQ/H),default(SK:Riding-2)", "0", 11, "0"},
                          {"type(IQ/H),default(SK:Riding-2)", "1", 11, "1"},
                          {"type(IQ/H),default(SK:Riding-2)", "4", 12, "4"},
                          {"type(IQ/H),default(SK:Riding-2)", "8", 13, "8"},
                          // Free points and a lower level together never beat a better start.
                          {"type(Deep),default(ST:IQ-20)", "0", 0, "0"},
                          // Techniques.
                          {"type(Tech),default(SK:Riding-4)", "0", 9, "0"},
                          {"type(Tech),default(SK:Riding-4)", "2", 11, "2"},
                          {"type(Tech),default(SK:Riding-20)", "0", -7, "0"},
                          {"type(Tech)", "0", 0, "0"},
                          {"type(Tech)", "2", 2, "2"},
                          // Limits in points and in levels.
                          {"type(IQ/E),upto(4pts)", "8", 12, "4"},
                          {"type(IQ/E),upto(8 points),control_upto(2pts)", "8", 11, "2"},
                          {"type(IQ/E),control_upto(ST:IQ-6 pts)", "8", 12, "4"},
                          {"type(IQ/E),downto(4pts)", "1", 12, "4"},
                          {"type(IQ/E),downto(4pts),control_downto(2pts)", "1", 11, "2"},
                          {"type(IQ/E),downto(-2pts)", "-5", 0, "0"},
                          {"type(IQ/E),upto(11)", "8", 11, "2"},
                          {"type(IQ/E),upto(12),control_upto(SK:Riding-2)", "8", 11, "2"},
                          {"type(IQ/E),upto(0)", "8", 13, "8"},
                          {"type(IQ/E),upto(-3)", "8", 13, "8"},
                          {"type(IQ/E),upto(0pts)", "8", 13, "8"},
                          {"type(IQ/E),upto(2)", "8", 2, "1"},
                          {"type(IQ/E),control_upto(11)", "8", 11, "2"},
                          {"type(IQ/E),upto(0),control_upto(11)", "8", 11, "2"},
                          {"type(IQ/E),upto(11),control_upto(0)", "8", 11, "2"},
                          {"type(Tech),default(SK:Riding-4),upto(SK:Riding-3)", "5", 10, "1"},
                          // What no number can be made of.
                          {"type(IQ/E),upto(nonsense)", "1", 10, "1"},
                      });
  world.env.Config.UptoAffectsPoints = 0;
  ExpectLevels(world, {{"type(IQ/E),upto(11)", "8", 11, "8"}});
}

TEST(Skills, SpellsCostWholePointsUnlessTheRulesAllowLess) {
  SkillWorld world;
  ExpectLevels(world,
               {{"", "0.5", 10, "1"},
                {"", "1", 10, "1"},
                {"", "0", 0, "0"},
                {"upto(8)", "4", 8, "1"},
                {"upto(9)", "4", 9, "1"}},
               kSpells);
  world.character.AllowHalfPointSpells = -1;
  ExpectLevels(world, {{"", "0.5", 9, "0.5"}, {"upto(8)", "4", 8, "0.5"}}, kSpells);
}

TEST(Skills, WhatADefaultGivesIsWritten) {
  SkillWorld world;
  clsItem& base = world.Put(kSkills, "name(Riding),nameext(Camel),type(IQ/E)");
  base.SetBasePoints(8);
  base.Calculate();
  clsItem& skill = world.PutSkill("name(Lore),type(IQ/H),default({SK:Riding (Camel)}-2)");
  skill.SetBasePoints(2);
  skill.Calculate();
  // 11 is three steps above 8: worth 4.
  EXPECT_EQ(NumberText(skill.DefPoints()), "4");
  EXPECT_EQ(NumberText(skill.ExtraPoints()), "4");
  EXPECT_EQ(NumberText(skill.AppPoints()), "6");
  EXPECT_EQ(NumberText(skill.BaseAppPoints()), "2");
  EXPECT_EQ(skill.TagItem("deffrom"), "Riding (Camel)");
  EXPECT_EQ(skill.TagItem("deffromid"), std::to_string(base.IDKey));
  EXPECT_EQ(skill.TagItem("deflevel"), "11");
  EXPECT_EQ(skill.TagItem("stepoff"), "IQ");
  EXPECT_EQ(skill.TagItem("step"), "+1");
  EXPECT_EQ(skill.BaseLevel(), 11);
  // Without the trait that it rested on there is nothing left of it.
  base.SetBasePoints(0);
  base.Calculate();
  skill.Calculate();
  EXPECT_EQ(skill.TagItem("deffrom") + skill.TagItem("deffromid"), "");
  EXPECT_EQ(skill.TagItem("deflevel"), "0");
  EXPECT_EQ(skill.Level(), 9 + 1);
  EXPECT_EQ(skill.TagItem("step"), "+0");
}

TEST(Skills, TheAttributeIsNamed) {
  const std::pair<const char*, const char*> cases[] = {
      {"stat(ST:IQ)", "IQ +0"},
      {"stat({ST:Wits})", "Wits +0"},
      {"stat(ST:{Wits}::score)", "Wits +0"},
      {"stat({ST:Wits}-1)", "Wits-1 +0"},
      {"stat(@max(ST:IQ, 9))", "@max(ST:IQ, 9) +0"},
  };
  SkillWorld world;
  world.AddType("name(Plain),defaultstat(ST:IQ),baseadj(-1),costs(1/2)");
  for (const auto& [stat, shown] : cases) {
    clsItem& skill = world.Put(kSkills, "name(Lore),type(Plain)," + std::string(stat));
    skill.SetBasePoints(1);
    skill.Calculate();
    EXPECT_EQ(skill.TagItem("stepoff") + " " + skill.TagItem("step"), shown) << stat;
  }
}

TEST(Skills, BonusesInPointsAndLevels) {
  SkillWorld world;
  KVRCharacter& c = world.character;
  clsItem& skill = world.Put(kSkills, "name(Lore),type(IQ/E)");
  clsItem& idle = world.Put(kSkills, "name(Idle),type(IQ/E),default(ST:IQ-5)");
  clsItem& giver =
      world.Put(kAds,
                "name(Gift),cost(5),baselevel(1),gives(+2 to SK:Lore, +2 to SK:Idle, +3pts to SK:Lore, "
                "*2 to SK:Lore::points, +1 to SK:Lore::basepoints)");
  c.AddBonusesFromOwner(giver);
  skill.SetBasePoints(2);
  skill.SetTagItem("bonuspoints", "0.5");
  skill.SetTagItem("bonuslevels", "1");
  world.CalculateAll();
  // 2 * 2 + 3 + .5 + 1 is 8.5: 13, and 3 levels on it.
  EXPECT_EQ(NumberText(skill.MultPoints()), "4");
  EXPECT_EQ(NumberText(skill.ExtraPoints()), "3.5");
  EXPECT_EQ(NumberText(skill.AppPoints()), "8.5");
  EXPECT_EQ(NumberText(skill.BaseAppPoints()), "5");
  EXPECT_EQ(skill.BaseLevel(), 13);
  EXPECT_EQ(skill.Level(), 16);
  EXPECT_EQ(skill.TagItem("extralevels"), "3");
  EXPECT_EQ(skill.TagItem("syslevels"), "2");
  EXPECT_EQ(skill.TagItem("pointmult"), "2");
  EXPECT_EQ(skill.TagItem("bonusbasepoints"), "1");
  EXPECT_EQ(NumberText(skill.Points()), "2");
  EXPECT_EQ(idle.Level(), 5) << "no bonus for what was not learned";
  // The way back counts everything in: 14 costs 12 points.
  EXPECT_TRUE(skill.SetScoreTo(17));
  EXPECT_EQ(skill.Level(), 17);
  EXPECT_EQ(NumberText(skill.BasePoints()), "3.75");
  c.RemoveBonusesFromOwner(giver);
  world.CalculateAll();
  EXPECT_EQ(skill.TagItem("bonusbasepoints"), "");
  EXPECT_EQ(skill.Level(), 13);
}

TEST(Skills, AMultiplierKeepsWhatWasSpent) {
  SkillWorld world;
  clsItem& giver = world.Put(kAds, "name(Curse),cost(5),baselevel(1),gives(*.3333 to SK:Lore::points)");
  clsItem& none = world.Put(kAds, "name(Doom),cost(5),baselevel(1),gives(*0 to SK:Mind::points)");
  clsItem& skill = world.Put(kSkills, "name(Lore),type(IQ/E)");
  clsItem& mind = world.Put(kSkills, "name(Mind),type(IQ/E)");
  skill.SetBasePoints(7);
  mind.SetBasePoints(7);
  world.character.AddBonusesFromOwner(giver);
  world.character.AddBonusesFromOwner(none);
  world.CalculateAll();
  for (int i = 0; i < 5; ++i) world.character.RecalculateAll();
  EXPECT_EQ(NumberText(skill.BasePoints()), "7");
  EXPECT_EQ(NumberText(mind.BasePoints()), "7");
  EXPECT_EQ(skill.Level(), 11);
  EXPECT_EQ(mind.Level(), 0);
  EXPECT_TRUE(skill.SetScoreTo(13));
  EXPECT_EQ(skill.Level(), 13);
}

TEST(Skills, SetScoreTo) {
  struct Case {
    ItemType itemType;
    const char* tags;
    double wanted;
    std::int32_t level;
    const char* points;
    bool reached;
  };
  const Case cases[] = {
      {kSkills, "type(IQ/E)", 13, 13, "8", true},
      {kSkills, "type(IQ/E)", 9, 10, "1", true},
      {kSkills, "type(IQ/E)", -2e9, 10, "1", false},
      {kSkills, "type(IQ/E),upto(12)", 14, 12, "4", false},
      {kSkills, "type(IQ/H),default(SK:Riding-2)", 12, 12, "4", true},
      {kSkills, "type(IQ/H),default(SK:Riding-2)", 11, 11, "0", true},
      {kSkills, "type(IQ/H),default(SK:Riding-2)", 5, 11, "0", false},
      {kSkills, "type(Tech),default(SK:Riding-2)", 13, 13, "2", true},
      {kSkills, "type(Tech),default(SK:Riding-2)", 3, 11, "0", false},
      {kSpells, "", 11, 11, "2", true},
      {kSpells, "", 9, 10, "1", true},
      {kSkills, "type(None)", 9, 0, "0", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.tags) + " to " + std::to_string(c.wanted));
    SkillWorld world;
    clsItem& base = world.Put(kSkills, "name(Riding),type(IQ/E)");
    base.SetBasePoints(8);
    base.Calculate();
    clsItem& skill = world.PutSkill("name(Lore)," + std::string(c.tags), c.itemType);
    EXPECT_EQ(skill.SetScoreTo(c.wanted), c.reached);
    EXPECT_EQ(skill.Level(), c.level);
    EXPECT_EQ(NumberText(skill.Points()), c.points);
  }
}

TEST(Skills, StepsUpAndDown) {
  SkillWorld world;
  clsItem& skill = world.PutSkill("name(Lore),type(IQ/E)");
  skill.Increment();
  EXPECT_EQ(skill.Level(), 10);
  skill.Increment();
  skill.Increment();
  EXPECT_EQ(NumberText(skill.Points()), "4");
  for (int i = 0; i < 5; ++i) skill.Decrement();
  EXPECT_EQ(NumberText(skill.Points()), "1");
  EXPECT_EQ(NumberText(skill.ReturnLevelForPoints(5, false)), "12");
}

TEST(Skills, AnUnknownTypeStopsTheCalculationOfThatTrait) {
  SkillWorld world;
  clsItem& skill = world.Put(kSkills, "name(Lore),type(ZZ/H)");
  skill.SetBasePoints(4);
  skill.SetLevel(11);
  skill.SetPoints(4);
  skill.SetPreModsPoints(4);
  EXPECT_TRUE(skill.Calculate());
  EXPECT_EQ(skill.Level(), 0);
  EXPECT_EQ(skill.Points(), Currency(0));
  EXPECT_EQ(NumberText(skill.BasePoints()), "4") << "what was spent is not lost";
  EXPECT_EQ(world.Logged("Unknown Skill Type: ZZ/H"), 1);
  EXPECT_EQ(world.Logged("'Lore'"), 1);
  EXPECT_FALSE(skill.SetScoreTo(12));
  EXPECT_EQ(world.Logged("Unknown Skill Type: ZZ/H"), 2);
  world.character.SkillTypes.clear();
  world.PutSkill("name(Bare)");
  EXPECT_EQ(world.Logged("Unknown Skill Type: M/H"), 1);
}

TEST(Skills, ChildrenAddTheirPoints) {
  SkillWorld world;
  clsItem& parent = world.Put(kSkills, "name(School),type(IQ/E)");
  clsItem& child = world.Put(kSkills, "name(Lesson),type(IQ/E)");
  parent.SetBasePoints(2);
  child.SetBasePoints(4);
  parent.AddChild(child.KeyText());
  child.SetParentKey(parent.KeyText());
  world.CalculateAll();
  EXPECT_EQ(NumberText(parent.Points()), "6");
  EXPECT_EQ(NumberText(parent.PreModsPoints()), "6");
  EXPECT_EQ(parent.TagItem("childpoints"), "4");
  EXPECT_EQ(parent.Level(), 11);
  parent.RemoveChild(child.KeyText());
  parent.Calculate();
  EXPECT_EQ(NumberText(parent.Points()), "2");
  EXPECT_EQ(parent.TagItem("childpoints"), "0");
}

TEST(Skills, AnAttributeReachesEachSkillOnIt) {
  SkillWorld world;
  std::vector<clsItem*> skills;
  for (int i = 0; i < 50; ++i) {
    const std::string n = std::to_string(100 + i);
    skills.push_back(&world.Put(kSkills, "name(Skill" + n + "),type(IQ/E),default(ST:IQ-4, SK:Skill" +
                                             std::to_string(99 + i) + "-2)"));
    skills.back()->SetBasePoints(i % 3);
  }
  world.CalculateAll();
  world.wits->SetScoreTo(12);
  const auto texts = [&] {
    std::string all;
    for (clsItem* skill : skills) all += skill->TagList() + "\n";
    return all;
  };
  const std::string after = texts();
  EXPECT_EQ(skills[1]->Level(), 12);
  world.character.RecalculateAll();
  EXPECT_EQ(texts(), after);
  EXPECT_EQ(world.Logged("do not settle"), 0);
}

}  // namespace
}  // namespace kvr
